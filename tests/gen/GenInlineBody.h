// The inline behaviour that GenInline.zon declares: the generated header
// includes this file after its classes.
#pragma once

#include "tests/gen/GenInline.h"

namespace GenTest {

inline std::uint32_t Slot::put(std::uint32_t v) {
   heldIs(v);
   return writesInc(1);
}

} // namespace GenTest
