// Reading the generic value text back: field order, literals, and that types
// refuse out-of-range values with their own error.
#include <gtest/gtest.h>

#include <string>

#include "acl/PrefixList.h"
#include "mpls/FwdEqvClass.h"
#include "vorin/IpAddr.h"
#include "vorin/MplsLabel.h"
#include "zon/Value.h"
#include "zon/ValueParse.h"

// An enumeration over a signed type, whose unnamed values print as negative numbers.
namespace ValueParseTestNs {
#define VALUE_PARSE_TEST_LEVELS(X) X(low, -2) X(high, 2)
enum class Level : std::int8_t { VALUE_PARSE_TEST_LEVELS(ZON_ENUMERATOR) };
ZON_ENUM_DECLARE(Level);
} // namespace ValueParseTestNs
ZON_ENUM_TRAITS(ValueParseTestNs::Level);
ZON_ENUM_DEFINE(ValueParseTestNs, Level, VALUE_PARSE_TEST_LEVELS)

namespace {

TEST(ZonValueParse, ReadsWhatValueTextWrites) {
   Mpls::FwdEqvClass pw(Pseudowire::PseudowireType::ethernet, Pseudowire::PseudowireId(100));
   std::string text = Zon::ValueText("Ns::T")
                          .field("s", Zon::String8("it's, {x}\n"))
                          .field("b", true)
                          .field("d", 0.1)
                          .field("i", std::int64_t(-7))
                          .field("fec", pw)
                          .field("addr", Vorin::IpGenAddr::fromString("2001:db8::1"))
                          .str();
   Zon::ValueTextReader r(text, "Ns::T");
   EXPECT_EQ(Zon::valueFromText<Zon::String8>(r.field("s")), "it's, {x}\n");
   EXPECT_TRUE(Zon::valueFromText<bool>(r.field("b")));
   EXPECT_EQ(Zon::valueFromText<double>(r.field("d")), 0.1);
   EXPECT_EQ(Zon::valueFromText<std::int16_t>(r.field("i")), -7);
   EXPECT_EQ(r.field("fec"), pw.stringValue()); // brackets keep its comma inside
   EXPECT_EQ(Zon::valueFromText<Vorin::IpGenAddr>(r.field("addr")),
             Vorin::IpGenAddr::fromString("2001:db8::1"));
   EXPECT_NO_THROW(r.end());
}

TEST(ZonValueParse, MismatchesFail) {
   struct Case {
      char const * text;
      char const * why;
   };
   Case const cases[] = {
       {"Value('Ns::U', ** {'a': 1, 'b': 2})", "another type"},
       {"Value('Ns::T', ** {'b': 1, 'a': 2})", "fields in another order"},
       {"Value('Ns::T', ** {'a': 1,'b': 2})", "no blank after the comma"},
       {"Value('Ns::T', ** {'a': 1})", "a field missing"},
       {"Value('Ns::T', ** {'a': 1, 'b': 2, 'c': 3})", "a field too many"},
       {"Value('Ns::T', ** {'a': 1, 'b': 2}) ", "text after the end"},
       {"Value('Ns::T', ** {'a': , 'b': 2})", "an empty literal"},
       {"Value('Ns::T', ** {'a': 'x, 'b': 2})", "an unterminated string"},
       {"Value('Ns::T', ** {'a': 1, 'b': 2}", "no closing bracket"},
   };
   for (auto const & c : cases) {
      EXPECT_THROW(
          {
             Zon::ValueTextReader r(c.text, "Ns::T");
             Zon::valueFromText<int>(r.field("a"));
             Zon::valueFromText<int>(r.field("b"));
             r.end();
          },
          Zon::ParseException)
          << c.why;
   }
}

TEST(ZonValueParse, Literals) {
   EXPECT_THROW(Zon::valueFromText<bool>("true"), Zon::ParseException);
   EXPECT_EQ(Zon::valueFromText<std::uint8_t>("255"), 255);
   EXPECT_THROW(Zon::valueFromText<std::uint8_t>("256"), Zon::ParseException);
   EXPECT_THROW(Zon::valueFromText<std::uint32_t>("-1"), Zon::ParseException);
   EXPECT_THROW(Zon::valueFromText<std::uint32_t>("12x"), Zon::ParseException);
   EXPECT_EQ(Zon::valueFromText<std::uint64_t>("18446744073709551615"), 18446744073709551615u);
   EXPECT_EQ(Zon::valueFromText<Zon::Seconds>("60.0").value(), 60.0);
   EXPECT_EQ(Zon::valueFromText<Zon::String>("'a\\\\b\\'c\\x01'"), std::string("a\\b'c\x01"));
   EXPECT_THROW(Zon::valueFromText<Zon::String>("abc"), Zon::ParseException);
   EXPECT_THROW(Zon::valueFromText<Zon::String>("'a\\q'"), Zon::ParseException);
   EXPECT_EQ(Zon::valueFromText<Pseudowire::PseudowireType>("ethernet"),
             Pseudowire::PseudowireType::ethernet);
   EXPECT_EQ(Zon::valueFromText<Pseudowire::PseudowireType>("300"),
             static_cast<Pseudowire::PseudowireType>(300)); // printed as a number
   EXPECT_THROW(Zon::valueFromText<Pseudowire::PseudowireType>("Ethernet"), Zon::ParseException);
}

TEST(ZonValueParse, UnnamedEnumValueMustFitItsType) {
   // AclAction is held in 8 bits: 256 is not one of its values, not 0.
   EXPECT_EQ(Zon::valueFromText<Acl::AclAction>("1"), Acl::AclAction::permit);
   EXPECT_EQ(Zon::valueFromText<Acl::AclAction>("255"), static_cast<Acl::AclAction>(255));
   EXPECT_THROW(Zon::valueFromText<Acl::AclAction>("256"), Zon::ParseException);
   EXPECT_THROW(Zon::valueFromText<Acl::AclAction>("-1"), Zon::ParseException);
   using ValueParseTestNs::Level;
   EXPECT_EQ(Zon::valueFromText<Level>("low"), Level::low);
   Level const unnamed = static_cast<Level>(-5);
   EXPECT_EQ(Zon::ValueText("T").field("l", unnamed).str(), "Value('T', ** {'l': -5})");
   EXPECT_EQ(Zon::valueFromText<Level>("-5"), unnamed); // reads back what was printed
   EXPECT_THROW(Zon::valueFromText<Level>("-129"), Zon::ParseException);
}

TEST(ZonValueParse, LabelOutOfRangeGivesTheLabelsOwnError) {
   EXPECT_EQ(Zon::valueFromText<Vorin::MplsLabel>("1048577").value(), Vorin::MplsLabel::luWithdraw);
   EXPECT_EQ(Zon::valueFromText<Vorin::MplsLabel>("0").value(), 0u);
   for (char const * text : {"1048578", "4294967295", "4294967296", "99999999999999999999999", "-1"}) {
      try {
         Zon::valueFromText<Vorin::MplsLabel>(text);
         ADD_FAILURE() << text << ": no exception";
      } catch (Zon::RangeException const & e) {
         EXPECT_STREQ(e.what(), "MplsLabel::value < MplsLabel::min or > MplsLabel::luWithdraw not allowed")
             << text;
      }
   }
   EXPECT_THROW(Zon::valueFromText<Vorin::MplsLabel>("1e3"), Zon::ParseException);
}

} // namespace
