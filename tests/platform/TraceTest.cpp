#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "trace/Trace.h"

namespace {

struct Captured {
   std::vector<std::string> lines;
   Captured() {
      Trace::sinkIs([this](Trace::Source const & s, int level, std::string_view text) {
         lines.push_back(s.name() + "/" + std::to_string(level) + ": " + std::string(text));
      });
   }
   ~Captured() { Trace::sinkIs({}); }
};

TEST(Trace, LevelsGateRecordsAndTextIsNotBuiltWhenOff) {
   Captured cap;
   Trace::Source & src = Trace::source("TraceTestA");
   EXPECT_EQ(&src, &Trace::source("TraceTestA"));
   EXPECT_EQ(src.level(), 0);
   int built = 0;
   auto expensive = [&built] {
      ++built;
      return "x";
   };
   TRACE(src, 5, "off " << expensive());
   EXPECT_EQ(built, 0);
   src.levelIs(6);
   TRACE(src, 5, "error " << 42);
   TRACE(src, 6, "detail");
   TRACE(src, 8, "function");
   ASSERT_EQ(cap.lines.size(), 2u);
   EXPECT_EQ(cap.lines[0], "TraceTestA/5: error 42");
   EXPECT_EQ(cap.lines[1], "TraceTestA/6: detail");
   src.levelIs(0);
}

TEST(Trace, ConfigureAppliesToPresentAndFutureSources) {
   Trace::Source & a = Trace::source("TraceTestB");
   Trace::configure("TraceTestB=9,TraceTestC=3,bad,=4,TraceTestD=x");
   EXPECT_EQ(a.level(), 9);
   EXPECT_EQ(Trace::source("TraceTestC").level(), 3);
   EXPECT_EQ(Trace::source("TraceTestD").level(), 0);
   Trace::configure("*=2");
   EXPECT_EQ(Trace::source("TraceTestNew").level(), 2);
   EXPECT_EQ(a.level(), 9); // a named setting beats the wildcard
   Trace::configure("*=0,TraceTestB=0,TraceTestC=0");
}

} // namespace
