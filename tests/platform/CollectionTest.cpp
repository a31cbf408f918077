// The runtime's collections against std::map / std::set under random operations,
// their one-pointer promise and the counters' wrap-around.
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <map>
#include <random>
#include <set>
#include <vector>

#include "zon/Collection.h"

namespace {

static_assert(sizeof(Zon::ValueMap<int, int>) == sizeof(void *));
static_assert(sizeof(Zon::ValueMap<int, int, Zon::Ordered>) == sizeof(void *));
static_assert(sizeof(Zon::ValueSet<int>) == sizeof(void *));
static_assert(sizeof(Zon::EntityMap<int, Zon::Entity>) == sizeof(void *));
static_assert(sizeof(Zon::Child<Zon::Entity>) == sizeof(void *));

template <typename C>
std::map<int, int> contents(C const & c) {
   std::map<int, int> out;
   for (auto const & [k, v] : c) {
      out.emplace(k, v);
   }
   return out;
}

template <typename Order>
void randomValueMap(unsigned seed) {
   std::mt19937 rng(seed);
   Zon::ValueMap<int, std::uint8_t, Order> m;
   std::map<int, std::uint8_t> ref;
   for (int step = 0; step < 20000; ++step) {
      int const k = static_cast<int>(rng() % 64);
      std::uint8_t const v = static_cast<std::uint8_t>(rng() % 4);
      switch (rng() % 16) {
       case 0: case 1: case 2: case 3: case 4: case 5: { // insert or replace
         auto [it, inserted] = ref.try_emplace(k, v);
         bool const changed = inserted || it->second != v;
         it->second = v;
         ASSERT_EQ(m.set(k, v), changed) << "step " << step;
         break;
       }
       case 6: case 7: case 8: // delete
         ASSERT_EQ(m.erase(k), ref.erase(k) == 1) << "step " << step;
         break;
       case 9: case 10: case 11: { // counter step, wraps at 8 bits
         std::uint8_t const old = ref.count(k) ? ref[k] : 0;
         std::uint8_t const now = static_cast<std::uint8_t>(old + v * 100);
         ref[k] = now;
         auto r = m.add(k, static_cast<std::uint8_t>(v * 100));
         ASSERT_EQ(r.value, now);
         ASSERT_EQ(r.changed, now != old);
         break;
       }
       case 12: { // counter step down
         std::uint8_t const old = ref.count(k) ? ref[k] : 0;
         std::uint8_t const now = static_cast<std::uint8_t>(old - v);
         ref[k] = now;
         auto r = m.sub(k, v);
         ASSERT_EQ(r.value, now);
         ASSERT_EQ(r.changed, v != 0);
         break;
       }
       case 13: // empty it, in key order for an ordered map
         if (rng() % 8 == 0) {
            std::vector<int> keys;
            m.eraseEach([&](int key) {
               EXPECT_FALSE(m.contains(key)); // already gone when told
               keys.push_back(key);
            });
            std::set<int> expected;
            for (auto const & kv : ref) {
               expected.insert(kv.first);
            }
            ASSERT_EQ(std::set<int>(keys.begin(), keys.end()), expected);
            if (std::is_same_v<Order, Zon::Ordered>) {
               ASSERT_TRUE(std::is_sorted(keys.begin(), keys.end()));
            }
            ref.clear();
            ASSERT_FALSE(m.allocated());
         }
         break;
       default: { // lookups
         auto it = ref.find(k);
         ASSERT_EQ(m.contains(k), it != ref.end());
         ASSERT_EQ(m.value(k), it != ref.end() ? it->second : 0);
         break;
       }
      }
      ASSERT_EQ(m.size(), ref.size());
   }
   std::map<int, int> expected(ref.begin(), ref.end());
   EXPECT_EQ(contents(m), expected);
   if constexpr (std::is_same_v<Order, Zon::Ordered>) {
      std::vector<int> order;
      for (auto const & kv : m) {
         order.push_back(kv.first);
      }
      EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
   }
}

TEST(ZonValueMap, MatchesStdMapHashed) { randomValueMap<Zon::Hashed>(1); }
TEST(ZonValueMap, MatchesStdMapOrdered) { randomValueMap<Zon::Ordered>(2); }

TEST(ZonValueMap, AllocatesOnFirstInsertOnly) {
   Zon::ValueMap<int, int> m;
   EXPECT_FALSE(m.allocated());
   EXPECT_EQ(m.begin(), m.end());
   EXPECT_EQ(m.find(1), nullptr);
   EXPECT_FALSE(m.erase(1));
   EXPECT_FALSE(m.allocated()); // lookups and misses allocate nothing
   m.set(1, 0);
   EXPECT_TRUE(m.allocated());
   EXPECT_EQ(m.value(1), 0);
   EXPECT_TRUE(m.contains(1)); // present with the default value
   m.eraseEach([](int) {});
   EXPECT_FALSE(m.allocated());
}

TEST(ZonValueMap, EraseEachSurvivesInsertsFromTheCallback) {
   Zon::ValueMap<int, int, Zon::Ordered> m;
   m.set(1, 1);
   m.set(2, 2);
   std::vector<int> told;
   m.eraseEach([&](int k) {
      told.push_back(k);
      if (k == 1) {
         m.set(10, 10); // arrives while emptying: removed as well
      }
   });
   EXPECT_EQ(told, (std::vector<int>{1, 2, 10}));
   EXPECT_EQ(m.size(), 0u);
}

TEST(ZonValueSet, MatchesStdSet) {
   for (bool ordered : {false, true}) {
      std::mt19937 rng(ordered ? 3 : 4);
      Zon::ValueSet<std::uint32_t> hashed;
      Zon::ValueSet<std::uint32_t, Zon::Ordered> sorted;
      std::set<std::uint32_t> ref;
      for (int step = 0; step < 10000; ++step) {
         std::uint32_t const k = rng() % 50;
         switch (rng() % 5) {
          case 0: case 1: {
            bool const added = ref.insert(k).second;
            ASSERT_EQ(ordered ? sorted.insert(k) : hashed.insert(k), added);
            break;
          }
          case 2: {
            bool const removed = ref.erase(k) == 1;
            ASSERT_EQ(ordered ? sorted.erase(k) : hashed.erase(k), removed);
            break;
          }
          default:
            ASSERT_EQ(ordered ? sorted.contains(k) : hashed.contains(k), ref.count(k) == 1);
         }
      }
      std::set<std::uint32_t> got = ordered ? std::set<std::uint32_t>(sorted.begin(), sorted.end())
                                            : std::set<std::uint32_t>(hashed.begin(), hashed.end());
      EXPECT_EQ(got, ref);
      if (ordered) {
         EXPECT_TRUE(std::equal(ref.begin(), ref.end(), sorted.begin()));
      }
   }
}

struct Item : Zon::Entity {
   explicit Item(int v) : Zon::Entity(Zon::nameOf(v)), value(v) {}
   int value;
};

TEST(ZonEntityMap, MatchesStdMap) {
   std::mt19937 rng(5);
   auto owner = Zon::makePtr<Item>(0);
   Zon::EntityMap<int, Item, Zon::Ordered> m;
   std::map<int, Zon::Ptr<Item>> ref;
   for (int step = 0; step < 10000; ++step) {
      int const k = static_cast<int>(rng() % 40);
      switch (rng() % 6) {
       case 0: case 1: {
         auto e = Zon::makePtr<Item>(k);
         m.insert(k, e, owner.ptr());
         if (auto it = ref.find(k); it != ref.end()) {
            ASSERT_EQ(it->second->parent(), nullptr); // replaced, unlinked
         }
         ref[k] = e;
         break;
       }
       case 2: {
         auto it = ref.find(k);
         Zon::Ptr<Item> taken = m.take(k);
         ASSERT_EQ(taken, it == ref.end() ? Zon::Ptr<Item>() : it->second);
         if (taken) {
            ASSERT_EQ(taken->parent(), nullptr);
            ref.erase(it);
         }
         break;
       }
       default: {
         auto it = ref.find(k);
         ASSERT_EQ(m.find(k), it == ref.end() ? Zon::Ptr<Item>() : it->second);
         if (it != ref.end()) {
            ASSERT_EQ(it->second->parent(), owner.ptr());
         }
       }
      }
      ASSERT_EQ(m.size(), ref.size());
   }
   auto it = ref.begin();
   for (auto const & [k, e] : m) {
      ASSERT_NE(it, ref.end());
      EXPECT_EQ(k, it->first);
      EXPECT_EQ(e, it->second);
      ++it;
   }
   std::vector<int> told;
   m.eraseEach([&](int k) { told.push_back(k); });
   EXPECT_EQ(told.size(), ref.size());
   for (auto const & kv : ref) {
      EXPECT_EQ(kv.second->parent(), nullptr);
      EXPECT_EQ(kv.second->references(), 1u); // only the reference map holds it now
   }
}

TEST(ZonCounter, WrapsAtItsWidth) {
   EXPECT_EQ(Zon::wrapAdd<std::uint8_t>(255, 1), 0);
   EXPECT_EQ(Zon::wrapAdd<std::uint16_t>(65535, 2), 1);
   EXPECT_EQ(Zon::wrapAdd<std::uint32_t>(4294967295u, 1), 0u);
   EXPECT_EQ(Zon::wrapAdd<std::uint64_t>(std::numeric_limits<std::uint64_t>::max(), 1), 0u);
   EXPECT_EQ(Zon::wrapSub<std::uint16_t>(0, 1), 65535);
   EXPECT_EQ(Zon::wrapSub<std::uint32_t>(3, 5), 4294967294u);
}

} // namespace
