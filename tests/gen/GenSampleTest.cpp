// Behaviour of generated code: the tiny schemas GenSample.zon and GenDerived.zon
// compiled and driven through their public operations, with a recording observer
// that checks the exact notifications.
#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "tests/gen/GenDerived.h"
#include "tests/gen/GenSample.h"

namespace GenTest {

// The hand-written method that GenSample.zon declares.
std::uint32_t Sample::total() const { return count_ + level_; }

} // namespace GenTest

namespace {

using GenTest::Colour;
using GenTest::Item;
using GenTest::Pair;
using GenTest::Sample;
using Strings = std::vector<std::string>;

// Hears every attribute of a Sample and records "attr" or "attr:key".
struct Recorder : Sample::Notifiee {
   Strings seen;
   void add(std::string s) { seen.push_back(std::move(s)); }
   void onCount() override { add("count"); }
   void onLabel() override { add("label"); }
   void onColour() override { add("colour"); }
   void onPair() override { add("pair"); }
   void onHits() override { add("hits"); }
   void onLevel() override { add("level"); }
   void onWeight(std::uint32_t k) override { add("weight:" + std::to_string(k)); }
   void onSortedWeight(std::uint32_t k) override { add("sortedWeight:" + std::to_string(k)); }
   void onMember(Vorin::IpAddr const & k) override { add("member:" + k.stringValue()); }
   void onPerColour(Colour k) override { add("perColour:" + GenTest::stringValue(k)); }
   void onItem(std::uint32_t k) override { add("item:" + std::to_string(k)); }
   void onTag(Zon::Name const & k) override { add("tag:" + k); }
   void onLeaf() override { add("leaf"); }
   void onLog(std::uint32_t k) override { add("log:" + std::to_string(k)); }
   Strings take() { return std::exchange(seen, {}); }
};

struct Fixture : ::testing::Test {
   Zon::Ptr<Sample> s = GenTest::sampleFactory("s");
   Recorder r;
   Fixture() { r.notifierIs(s.ptr()); }
};

using GenScalar = Fixture;

TEST_F(GenScalar, DefaultsFromTheSchema) {
   EXPECT_EQ(s->name(), "s");
   EXPECT_EQ(s->count(), 7u);
   EXPECT_EQ(s->label(), "none");
   EXPECT_EQ(s->colour(), Colour::blue);
   EXPECT_EQ(s->pair(), Pair(1, "", Colour::green));
   EXPECT_EQ(s->hits(), 0);
   EXPECT_EQ(s->level(), 10u);
   EXPECT_EQ(s->total(), 17u);
   EXPECT_EQ(Sample::limit, 10);
   EXPECT_FALSE(s->leaf());
   EXPECT_EQ(s->items(), 0u);
}

TEST_F(GenScalar, OnlyRealChangesNotify) {
   s->countIs(7);
   s->labelIs("none");
   s->colourIs(Colour::blue);
   s->pairIs(Pair());
   EXPECT_TRUE(r.take().empty());
   s->countIs(8);
   s->labelIs("x");
   s->colourIs(Colour::red);
   s->pairIs(Pair(2, "b", Colour::red));
   s->pairIs(Pair(2, "b", Colour::red));
   EXPECT_EQ(r.take(), (Strings{"count", "label", "colour", "pair"}));
   EXPECT_EQ(s->colour(), Colour::red);
}

TEST_F(GenScalar, CountersWrapAndNotifyOnlyOnChange) {
   EXPECT_EQ(s->hitsInc(0), 0);
   EXPECT_TRUE(r.take().empty());
   s->hitsIs(65535);
   EXPECT_EQ(s->hitsInc(1), 0); // 16 bits wrap
   EXPECT_EQ(s->levelDec(11), 4294967295u);
   EXPECT_EQ(s->levelInc(1), 0u);
   EXPECT_EQ(s->levelDec(0), 0u);
   EXPECT_EQ(r.take(), (Strings{"hits", "hits", "level", "level"}));
}

TEST_F(GenScalar, ObserverOfOneAttribute) {
   Recorder onlyLabel;
   onlyLabel.notifierIs(s.ptr(), Sample::Attr::label);
   EXPECT_EQ(onlyLabel.notifier(), s.ptr());
   s->countIs(1);
   s->labelIs("y");
   EXPECT_EQ(onlyLabel.seen, (Strings{"label"}));
}

using GenCollections = Fixture;

TEST_F(GenCollections, ValueMapsAndSetsCarryTheirKey) {
   s->weightIs(5, 1);
   s->weightIs(5, 1);
   s->newWeight(5, 2);
   EXPECT_EQ(s->weight(5), 2);
   EXPECT_EQ(s->weight(6), 0); // absent: the default value
   s->weightDel(6);
   s->weightDel(5);
   Vorin::IpAddr const a(10, 0, 0, 1), b(10, 0, 0, 2);
   s->memberIs(b);
   s->newMember(a);
   s->memberIs(a);
   EXPECT_TRUE(s->member(a));
   EXPECT_EQ(s->members(), 2u);
   s->memberDelAll(); // ordered: a before b
   EXPECT_EQ(r.take(), (Strings{"weight:5", "weight:5", "weight:5", "member:10.0.0.2", "member:10.0.0.1",
                                "member:10.0.0.1", "member:10.0.0.2"}));
   EXPECT_EQ(s->members(), 0u);
}

TEST_F(GenCollections, KeyedCountersCreateAtZeroAndNotifyOnChange) {
   EXPECT_EQ(s->perColourInc(Colour::red, 0), 0u);
   EXPECT_EQ(s->perColours(), 1u); // created at 0, nobody told
   EXPECT_TRUE(r.take().empty());
   EXPECT_EQ(s->perColourInc(Colour::green, 3), 3u);
   EXPECT_EQ(s->perColourDec(Colour::green, 4), 4294967295u);
   s->perColourIs(Colour::green, 4294967295u);
   s->newPerColour(Colour::blue, 5); // a keyed collection: create with a value
   s->newPerColour(Colour::blue, 5);
   EXPECT_EQ(s->perColour(Colour::blue), 5u);
   s->perColourDel(Colour::red);
   EXPECT_EQ(r.take(), (Strings{"perColour:green", "perColour:green", "perColour:blue", "perColour:red"}));
   s->perColourDelAll();
   EXPECT_EQ(s->perColours(), 0u);
}

TEST_F(GenCollections, InstantiatingCollection) {
   Zon::Ptr<Item> a = s->itemIs(5, "ann");
   EXPECT_EQ(a->id(), 5u);
   EXPECT_EQ(a->owner(), "ann");
   EXPECT_EQ(a->name(), "5");
   EXPECT_EQ(a->weight(), 3);
   EXPECT_EQ(a->parent(), s.ptr());
   EXPECT_EQ(s->itemIs(5, "ann"), a); // create-or-get: the same one, told once
   EXPECT_EQ(s->item(5), a);
   EXPECT_EQ(s->item(6), nullptr);
   EXPECT_EQ(r.take(), (Strings{"item:5"}));
   try {
      s->itemIs(5, "bob");
      FAIL() << "no exception";
   } catch (Zon::NameInUseException const & e) {
      EXPECT_STREQ(e.what(), "Reinstantiating the entity with name 5 where constructor parameter attribute "
                             "_owner has a different value of bob than the current value of ann not allowed");
   }
   EXPECT_THROW(s->newItem(5, "bob"), Zon::NameInUseException);
   EXPECT_EQ(s->item(5), a); // left unchanged
   EXPECT_TRUE(r.take().empty());
   // new... on an existing key returns the element as it is: nothing is lost.
   a->weightIs(9);
   Zon::Ptr<Item> again = s->newItem(5, "ann");
   EXPECT_EQ(again, a);
   EXPECT_EQ(again->weight(), 9);
   EXPECT_EQ(a->parent(), s.ptr());
   EXPECT_TRUE(r.take().empty());
   s->itemIs(7, "x");
   s->itemDel(6); // absent: nobody told
   s->itemDel(5);
   s->itemIs(1, "y");
   s->itemDelAll();
   EXPECT_EQ(r.take(), (Strings{"item:7", "item:5", "item:1", "item:1", "item:7"}));
   EXPECT_EQ(a->parent(), nullptr);
}

TEST_F(GenCollections, KeyedByItsOwnName) {
   auto t = s->tagIs("blue");
   EXPECT_EQ(t->name(), "blue");
   EXPECT_EQ(s->tag("blue"), t);
   EXPECT_EQ(r.take(), (Strings{"tag:blue"}));
}

TEST_F(GenCollections, NamedChildIsCreatedByName) {
   auto a = s->leafIs("a");
   a->sizeIs(4);
   EXPECT_EQ(a->parent(), s.ptr());
   EXPECT_EQ(s->leafIs("a"), a); // the same name keeps the child
   EXPECT_EQ(r.take(), (Strings{"leaf"}));
   auto b = s->leafIs("b"); // another name: a new, empty child
   EXPECT_NE(b, a);
   EXPECT_EQ(b->size(), 0u);
   EXPECT_EQ(a->parent(), nullptr);
   auto c = s->newLeaf("b"); // new... always makes a fresh one
   EXPECT_NE(c, b);
   s->leafDel();
   s->leafDel();
   EXPECT_FALSE(s->leaf());
   EXPECT_EQ(r.take(), (Strings{"leaf", "leaf", "leaf"}));
   Zon::Ptr<GenTest::Leaf const> none = static_cast<Sample const &>(*s).leaf();
   EXPECT_EQ(none, nullptr);
}

TEST_F(GenCollections, QueueKeysAndNotifications) {
   EXPECT_EQ(s->logDeq(), Pair()); // empty: the default value, nobody told
   EXPECT_EQ(s->logEnq(Pair(1, "a", Colour::red)), 0u);
   EXPECT_EQ(s->logEnq(Pair(2, "b", Colour::red)), 1u);
   EXPECT_EQ(s->log(1).right(), "b");
   EXPECT_EQ(s->logDeq().right(), "a");
   EXPECT_EQ(s->logEnq(Pair(3, "c", Colour::red)), 2u);
   s->logDel(1);
   s->logDelAll();
   EXPECT_EQ(s->logs(), 0u);
   EXPECT_EQ(s->log().headKey(), 3u);
   EXPECT_EQ(r.take(), (Strings{"log:0", "log:1", "log:0", "log:2", "log:1", "log:2"}));
}

TEST_F(GenCollections, ObserverMayDropTheOwnerWhileItIsEmptied) {
   s->weightIs(1, 1);
   s->weightIs(2, 2);
   struct Dropper : Sample::Notifiee {
      Zon::Ptr<Sample> * holder;
      int told = 0;
      void onWeight(std::uint32_t) override {
         ++told;
         *holder = nullptr;
      }
   } d;
   d.holder = &s;
   Sample * raw = s.ptr();
   d.notifierIs(raw);
   r.notifierIs(nullptr);
   raw->weightDelAll();
   EXPECT_EQ(d.told, 2); // emptied completely before the entity went away
   EXPECT_EQ(d.notifier(), nullptr);
}

// Random operations on a map, a set and an instantiating collection, against
// std::map / std::set, with the exact notifications each should give.
TEST_F(GenCollections, MatchReferenceUnderRandomOperations) {
   std::mt19937 rng(11);
   std::map<std::uint32_t, std::uint16_t> weights;
   std::set<std::uint32_t> items;
   for (int step = 0; step < 5000; ++step) {
      std::uint32_t const k = rng() % 32;
      std::uint16_t const v = static_cast<std::uint16_t>(rng() % 3);
      Strings expected;
      switch (rng() % 8) {
       case 0: case 1: {
         auto it = weights.find(k);
         if (it == weights.end() || it->second != v) {
            expected.push_back("sortedWeight:" + std::to_string(k));
         }
         weights[k] = v;
         s->sortedWeightIs(k, v);
         break;
       }
       case 2:
         if (weights.erase(k)) {
            expected.push_back("sortedWeight:" + std::to_string(k));
         }
         s->sortedWeightDel(k);
         break;
       case 3: case 4:
         if (items.insert(k).second) {
            expected.push_back("item:" + std::to_string(k));
         }
         ASSERT_EQ(s->itemIs(k, "o")->id(), k);
         break;
       case 5:
         if (items.erase(k)) {
            expected.push_back("item:" + std::to_string(k));
         }
         s->itemDel(k);
         break;
       case 6:
         if (rng() % 16 == 0) {
            for (auto const & kv : weights) {
               expected.push_back("sortedWeight:" + std::to_string(kv.first));
            }
            weights.clear();
            s->sortedWeightDelAll();
         }
         break;
       default:
         ASSERT_EQ(s->sortedWeight(k), weights.count(k) ? weights[k] : 0);
         ASSERT_EQ(s->item(k) != nullptr, items.count(k) == 1);
      }
      ASSERT_EQ(r.take(), expected) << "step " << step;
      ASSERT_EQ(s->sortedWeights(), weights.size());
      ASSERT_EQ(s->items(), items.size());
   }
   auto it = weights.begin();
   for (auto const & [k, v] : s->sortedWeight()) {
      ASSERT_NE(it, weights.end());
      EXPECT_EQ(k, it->first);
      EXPECT_EQ(v, it->second);
      ++it;
   }
}

TEST(GenValue, TextFormAndParse) {
   Pair p(42, "it's", Colour::red);
   EXPECT_EQ(p.stringValue(), "Value('GenTest::Pair', ** {'left': 42, 'right': 'it\\'s', 'colour': red})");
   EXPECT_EQ(Pair::fromString(p.stringValue()), p);
   EXPECT_THROW(Pair::fromString("Value('GenTest::Pair', ** {'left': 42, 'colour': red, 'right': 'x'})"),
                Zon::ParseException);
   EXPECT_THROW(Pair::fromString("Value('GenTest::Pair', ** {'left': 42, 'right': 'x', 'colour': pink})"),
                Zon::ParseException);
   EXPECT_LT(Pair(1, "b", Colour::red), Pair(2, "a", Colour::red)); // ordered by fields in order
}

TEST(GenValue, BitViewsTouchOnlyTheirBit) {
   GenTest::Flags f(0x1234);
   EXPECT_EQ(GenTest::Flags::bitHigh, 15u);
   EXPECT_FALSE(f.low());
   f.lowIs(true);
   f.highIs(true);
   EXPECT_EQ(f.bits(), 0x9235);
   f.lowIs(false);
   EXPECT_EQ(f.bits(), 0x9234);
   EXPECT_TRUE(f.high());
   EXPECT_EQ(f.stringValue(), "Value('GenTest::Flags', ** {'bits': 37428})");
}

TEST(GenEnum, RegisteredUnderItsQualifiedName) {
   EXPECT_EQ(Zon::enumInfo("GenTest::Colour"), &Zon::EnumTraits<Colour>::info());
   EXPECT_EQ(GenTest::stringValue(Colour::blue), "blue");
   EXPECT_EQ(static_cast<int>(Colour::blue), 7);
}

// A derived entity's Notifiee hears its base's attributes too.
struct SquareRecorder : GenTest::Square::Notifiee {
   Strings seen;
   void onSides() override { seen.push_back("sides"); }
   void onSide() override { seen.push_back("side"); }
   void onLeaf() override { seen.push_back("leaf"); }
};

TEST(GenDerived, BaseAttributesKeepTheirIds) {
   static_assert(GenTest::Square::Attr::sides == GenTest::Shape::Attr::sides);
   static_assert(GenTest::Square::Attr::side == GenTest::Shape::Attr::attrCount);
   auto sq = Zon::makePtr<GenTest::Square>("sq");
   SquareRecorder r;
   r.notifierIs(sq.ptr());
   EXPECT_EQ(sq->side(), 1);
   sq->sidesIs(4);
   sq->sideIs(2);
   sq->leafIs("l");
   EXPECT_EQ(r.seen, (Strings{"sides", "side", "leaf"}));
   Zon::Ptr<GenTest::Shape> asShape = sq;
   EXPECT_EQ(asShape->sides(), 4);
}

} // namespace
