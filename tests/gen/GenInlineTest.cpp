// A schema's inline behaviour comes with its generated header: this file includes
// nothing else and calls it.
#include <gtest/gtest.h>

#include "tests/gen/GenInline.h"

namespace {

TEST(GenInline, TheGeneratedHeaderBringsTheInlineBody) {
   auto slot = Zon::makePtr<GenTest::Slot>("slot");
   EXPECT_EQ(slot->put(7), 1u);
   EXPECT_EQ(slot->put(9), 2u);
   EXPECT_EQ(slot->held(), 9u);
}

} // namespace
