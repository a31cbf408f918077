// Reflection of generated code: every attribute kind listed in declaration order
// with its kind, schema type and value text; hashed holders printed in a stable
// order; a base class's attributes first; notifications recorded by name and key.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/ModelTables.h"
#include "tests/gen/GenDerived.h"
#include "tests/gen/GenSample.h"

namespace {

using GenTest::Colour;
using GenTest::Pair;
using GenTest::Sample;
using LdpTest::expectAttrs;
using LdpTest::Records;

TEST(GenReflect, EveryKindIsListedWithItsKindAndType) {
   auto s = GenTest::sampleFactory("s");
   std::vector<std::string> listed;
   for (Zon::AttrText const & a : Zon::attrTexts(*s)) {
      listed.push_back(std::string(a.info.name) + " " + std::string(a.info.kind) + " " + std::string(a.info.type));
   }
   EXPECT_EQ(listed, (std::vector<std::string>{
                        "count scalar std::uint32_t", "label scalar Zon::String8", "colour scalar Colour",
                        "pair scalar Pair", "hits counter std::uint16_t", "level counter std::uint32_t",
                        "weight map std::uint32_t std::uint16_t", "sortedWeight map std::uint32_t std::uint16_t",
                        "member set Vorin::IpAddr", "perColour counters Colour std::uint32_t",
                        "item coll std::uint32_t Item", "tag coll Zon::Name Tag", "leaf child Leaf",
                        "log queue Pair", "limit const std::uint8_t"}));
   // Only what notifies has an id, and the id leads back to the attribute.
   for (Zon::AttrText const & a : Zon::attrTexts(*s)) {
      bool const notifies = a.info.kind != "const";
      EXPECT_EQ(a.info.id != Zon::noAttrId, notifies) << a.info.name;
      if (notifies) {
         ASSERT_NE(s->attrInfo(a.info.id), nullptr);
         EXPECT_EQ(s->attrInfo(a.info.id)->name, a.info.name);
      }
   }
   EXPECT_EQ(s->attrInfo(Sample::Attr::attrCount), nullptr);
}

TEST(GenReflect, ValueTextsOfEveryKind) {
   auto s = GenTest::sampleFactory("s");
   expectAttrs(*s, {{"count", "7"}, {"label", "'none'"}, {"colour", "blue"},
                    {"pair", "Value('GenTest::Pair', ** {'left': 1, 'right': '', 'colour': green})"},
                    {"hits", "0"}, {"level", "10"}, {"weight", "{}"}, {"sortedWeight", "{}"}, {"member", "{}"},
                    {"perColour", "{}"}, {"item", "{}"}, {"tag", "{}"}, {"leaf", "None"}, {"log", "{}"},
                    {"limit", "10"}});
   // Hashed holders are listed sorted by text, ordered ones in key order.
   for (std::uint32_t k : {30u, 4u, 200u}) {
      s->weightIs(k, static_cast<std::uint16_t>(k + 1));
      s->sortedWeightIs(k, 1);
      s->itemIs(k, "o");
   }
   s->memberIs(Vorin::IpAddr(10, 0, 0, 2));
   s->memberIs(Vorin::IpAddr(9, 0, 0, 1));
   s->perColourInc(Colour::red, 2);
   s->tagIs("b");
   s->tagIs("a");
   s->leafIs("leaf1");
   s->logEnq(Pair(5, "x", Colour::red));
   s->labelIs("it's");
   expectAttrs(*s,
               {{"label", "'it\\'s'"},
                {"weight", "{200: 201, 30: 31, 4: 5}"},
                {"sortedWeight", "{4: 1, 30: 1, 200: 1}"},
                {"member", "{9.0.0.1, 10.0.0.2}"},
                {"perColour", "{red: 2}"},
                {"item", "{4, 30, 200}"},
                {"tag", "{'a', 'b'}"},
                {"leaf", "'leaf1'"},
                {"log", "{0: Value('GenTest::Pair', ** {'left': 5, 'right': 'x', 'colour': red})}"}},
               LdpTest::Coverage::some);
   expectAttrs(*s->item(4), {{"id", "4"}, {"owner", "'o'"}, {"weight", "3"}});
   expectAttrs(Pair(2, "r", Colour::blue), {{"left", "2"}, {"right", "'r'"}, {"colour", "blue"}});
}

TEST(GenReflect, BaseAttributesComeFirst) {
   auto sq = Zon::makePtr<GenTest::Square>("sq");
   expectAttrs(*sq, {{"sides", "0"}, {"side", "1"}, {"leaf", "None"}});
   EXPECT_EQ(Zon::attrTexts(*sq).front().info.name, "sides");
   ASSERT_NE(sq->attrInfo(GenTest::Shape::Attr::sides), nullptr);
   EXPECT_EQ(sq->attrInfo(GenTest::Shape::Attr::sides)->name, "sides");
}

TEST(GenReflect, RecorderNamesAttributeAndKey) {
   auto s = GenTest::sampleFactory("s");
   auto sq = Zon::makePtr<GenTest::Square>("sq");
   Zon::AttrRecorder r(s.ptr());
   Zon::AttrRecorder onlyLevel(s.ptr(), Sample::Attr::level);
   Zon::AttrRecorder base(sq.ptr());
   s->countIs(7); // unchanged: nobody hears
   s->countIs(8);
   s->weightIs(3, 4);
   s->memberIs(Vorin::IpAddr(10, 0, 0, 1));
   s->perColourInc(Colour::green, 1);
   s->itemIs(9, "o");
   s->tagIs("t");
   s->leafIs("l");
   s->levelInc(1);
   s->logEnq(Pair());
   s->logDeq();
   sq->sidesIs(4);
   EXPECT_EQ(r.take(), (Records{"count", "weight[3]", "member[10.0.0.1]", "perColour[green]", "item[9]", "tag[t]",
                                "leaf", "level", "log[0]", "log[0]"}));
   EXPECT_EQ(onlyLevel.take(), Records{"level"});
   EXPECT_EQ(base.take(), Records{"sides"});
   r.notifierIs(nullptr);
   s->countIs(9);
   EXPECT_TRUE(r.records().empty());
}

} // namespace
