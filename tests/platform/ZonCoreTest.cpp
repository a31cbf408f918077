#include <gtest/gtest.h>

#include <sstream>

#include "zon/Assert.h"
#include "zon/Enum.h"
#include "zon/Ptr.h"
#include "zon/Seconds.h"
#include "zon/String.h"
#include "zon/Value.h"

namespace {

struct Counted : Zon::PtrInterface {
   explicit Counted(int * alive) : alive_(alive) { ++*alive_; }
   ~Counted() override { --*alive_; }
   int * alive_;
};
struct Derived : Counted {
   using Counted::Counted;
};

TEST(ZonPtr, CountsAndReleases) {
   int alive = 0;
   {
      Zon::Ptr<Counted> a(new Counted(&alive));
      EXPECT_EQ(a->references(), 1u);
      {
         Zon::Ptr<Counted> b = a;
         Zon::Ptr<Counted const> c = b; // to const
         EXPECT_EQ(a->references(), 3u);
         Zon::Ptr<Counted> d = std::move(b);
         EXPECT_FALSE(b);
         EXPECT_EQ(a->references(), 3u);
         EXPECT_TRUE(d == a);
      }
      EXPECT_EQ(a->references(), 1u);
      a = a; // self assignment keeps the object
      EXPECT_EQ(alive, 1);
      Zon::Ptr<Counted> base = Zon::makePtr<Derived>(&alive);
      EXPECT_EQ(alive, 2);
      EXPECT_TRUE(Zon::dynamicPtrCast<Derived>(base));
      EXPECT_FALSE(Zon::dynamicPtrCast<Derived>(a));
      base = nullptr;
      EXPECT_EQ(alive, 1);
   }
   EXPECT_EQ(alive, 0);
}

TEST(ZonPtr, CopyOfObjectStartsUncounted) {
   int alive = 0;
   Zon::Ptr<Counted> a(new Counted(&alive));
   Zon::Ptr<Counted> b(new Counted(*a));
   EXPECT_EQ(a->references(), 1u);
   EXPECT_EQ(b->references(), 1u);
}

TEST(ZonPtr, ValidPtrRefusesNull) {
   int alive = 0;
   EXPECT_NO_THROW(Zon::validPtr(Zon::Ptr<Counted>(new Counted(&alive))));
   try {
      Zon::validPtr(Zon::Ptr<Counted>());
      FAIL() << "no exception";
   } catch (Zon::RangeException const & e) {
      EXPECT_STREQ(e.what(), "null ValidPtr");
   }
}

TEST(ZonAssert, PrintsConditionTextAndAborts) {
   int x = 1;
   EXPECT_DEATH(ZON_ASSERT(x == 2), "\nx == 2\n");
   EXPECT_DEATH(ZON_ASSERT_TEXT(x == 2, "type() == statusTlv_"), "\ntype\\(\\) == statusTlv_\n");
   ZON_ASSERT(x == 1); // holds: nothing happens
}

TEST(ZonString, FormatAndDistinctTypes) {
   EXPECT_EQ(Zon::format("PDU too small, size = %d", 17), "PDU too small, size = 17");
   std::string longText(1000, 'x');
   EXPECT_EQ(Zon::format("%s!", longText.c_str()), longText + "!");
   Zon::String8 s("abc");
   EXPECT_EQ(s.bytes(), 3u);
   EXPECT_STREQ(s.charPtr(), "abc");
   static_assert(!std::is_same_v<Zon::String8, Zon::Name>);
}

TEST(ZonSeconds, TestsCanSetTheClock) {
   Zon::nowSourceIs([] { return Zon::Seconds(42.5); });
   EXPECT_EQ(Zon::Seconds::now().value(), 42.5);
   Zon::nowSourceIs({});
   Zon::Seconds a = Zon::Seconds::now();
   EXPECT_LE(a, Zon::Seconds::now());
   EXPECT_NE(a.value(), 42.5);
}

} // namespace

namespace ZonTest {
#define TEST_COLOURS(X) X(red, 1) X(green, 2) X(blue, 7)
enum class Colour : std::uint8_t { TEST_COLOURS(ZON_ENUMERATOR) };
ZON_ENUM_DECLARE(Colour);
} // namespace ZonTest

ZON_ENUM_TRAITS(ZonTest::Colour);
ZON_ENUM_DEFINE(ZonTest, Colour, TEST_COLOURS)

using ZonTest::Colour;

namespace {

TEST(ZonEnum, Registry) {
   EXPECT_EQ(Zon::valueToStrep(Colour::blue), "blue");
   EXPECT_EQ(Zon::valueToStrep(static_cast<Colour>(3)), "3"); // no enumerator: the number
   EXPECT_EQ(Zon::strepToValue<Colour>("green"), Colour::green);
   EXPECT_THROW(Zon::strepToValue<Colour>("Green"), Zon::ParseException);
   EXPECT_EQ(Zon::sequenceToValue<Colour>(2), Colour::blue);
   EXPECT_THROW(Zon::sequenceToValue<Colour>(3), Zon::RangeException);
   ASSERT_EQ(Zon::enumInfo("ZonTest::Colour"), &Zon::EnumTraits<Colour>::info());
   EXPECT_EQ(Zon::enumInfo("Test::Nothing"), nullptr);
   EXPECT_EQ(stringValue(Colour::red), "red");
   std::ostringstream os;
   os << Colour::blue << static_cast<Colour>(9);
   EXPECT_EQ(os.str(), "blue9");
   EXPECT_EQ(ZonTest::ColourInstance("green"), Colour::green);
   EXPECT_EQ(ZonTest::ColourInstance(7), Colour::blue);
}

struct Inner {
   Zon::String8 stringValue() const { return Zon::String8("inner"); }
};

TEST(ZonValue, GenericTextForm) {
   Zon::String8 t = Zon::ValueText("Ns::T")
                        .field("b", true)
                        .field("byte", std::uint8_t(200))
                        .field("neg", -3)
                        .field("d", 5.0)
                        .field("e", 0.1)
                        .field("s", Zon::String8("it's\n"))
                        .field("c", Colour::green)
                        .field("i", Inner())
                        .str();
   EXPECT_EQ(t, "Value('Ns::T', ** {'b': True, 'byte': 200, 'neg': -3, 'd': 5.0, 'e': 0.1, "
                "'s': 'it\\'s\\n', 'c': green, 'i': inner})");
   EXPECT_EQ(Zon::ValueText("Ns::Empty").str(), "Value('Ns::Empty', ** {})");
}

} // namespace
