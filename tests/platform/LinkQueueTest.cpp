// The FIFO link queue and the bounded ring: key order, no reuse of keys, the end
// of the key space, a full ring.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "zon/BoundedQueue.h"
#include "zon/LinkQueue.h"

namespace {

using Queue = Zon::LinkQueue<std::string>;
static_assert(sizeof(Queue) == sizeof(void *));

std::vector<std::uint32_t> keys(Queue const & q) {
   std::vector<std::uint32_t> out;
   for (auto const & kv : q) {
      out.push_back(kv.first);
   }
   return out;
}

TEST(ZonLinkQueue, FirstInFirstOutWithIncreasingKeys) {
   Queue q;
   EXPECT_EQ(q.headKey(), 0u);
   EXPECT_FALSE(q.tailKey());
   EXPECT_FALSE(q.dequeue());
   EXPECT_EQ(q.enqueue("a"), 0u);
   EXPECT_EQ(q.enqueue("b"), 1u);
   EXPECT_EQ(q.enqueue("c"), 2u);
   EXPECT_EQ(q.headKey(), 0u);
   EXPECT_EQ(*q.tailKey(), 2u);
   EXPECT_EQ(q.value(1), "b");
   EXPECT_EQ(q.find(3), nullptr);
   EXPECT_EQ(q.value(3), "");
   auto d = q.dequeue();
   ASSERT_TRUE(d);
   EXPECT_EQ(d->first, 0u);
   EXPECT_EQ(d->second, "a");
   EXPECT_EQ(q.headKey(), 1u);
   EXPECT_EQ(q.dequeues(), 1u);
   EXPECT_TRUE(q.erase(2));
   EXPECT_FALSE(q.erase(2));
   EXPECT_EQ(keys(q), (std::vector<std::uint32_t>{1}));
   // Keys of removed elements are not handed out again.
   EXPECT_EQ(q.enqueue("d"), 3u);
   std::vector<std::uint32_t> told;
   q.eraseEach([&](std::uint32_t k) { told.push_back(k); });
   EXPECT_EQ(told, (std::vector<std::uint32_t>{1, 3}));
   EXPECT_EQ(q.headKey(), 4u); // empty: the key the next element gets
   EXPECT_EQ(q.enqueue("e"), 4u);
   EXPECT_EQ(q.size(), 1u);
}

TEST(ZonLinkQueue, IndexSpaceRunsOut) {
   Queue q(0xfffffffeu);
   EXPECT_EQ(q.enqueue("x"), 0xfffffffeu);
   EXPECT_EQ(q.enqueue("y"), 0xffffffffu);
   EXPECT_EQ(q.nextKey(), Queue::keySpace);
   q.dequeue();
   q.dequeue();
   try {
      q.enqueue("z"); // emptying the queue does not give keys back
      FAIL() << "no exception";
   } catch (Zon::RangeException const & e) {
      EXPECT_STREQ(e.what(), "linkqueue index space full");
   }
   EXPECT_TRUE(q.empty());
}

// (key, value) pairs of a ring, oldest first.
std::vector<std::pair<std::uint32_t, int>> items(Zon::BoundedQueue<int> const & q) {
   std::vector<std::pair<std::uint32_t, int>> out;
   q.forEach([&](std::uint32_t k, int v) { out.emplace_back(k, v); });
   return out;
}

// A refused enqueue drops nothing to make room and changes nothing: not the
// elements, not the keys, not the dequeue count. A full ring takes an element
// again once one is taken out; a used-up key space never does.
TEST(ZonBoundedQueue, RefusedEnqueuesChangeNothing) {
   struct Row {
      char const * what;
      std::uint32_t capacity;
      std::uint32_t firstKey;
      char const * error;
      bool acceptsAfterDequeue;
   };
   Row const rows[] = {
      {"ring full", 2, 0, "bounded queue full (capacity 2)", true},
      {"key space used up with room left", 3, 0xfffffffeu, "linkqueue index space full", false},
      {"key space used up and ring full", 2, 0xfffffffeu, "linkqueue index space full", false},
   };
   for (Row const & r : rows) {
      SCOPED_TRACE(r.what);
      Zon::BoundedQueue<int> q(r.capacity, r.firstKey);
      EXPECT_EQ(q.headKey(), r.firstKey);
      q.enqueue(1);
      q.enqueue(2);
      auto const before = items(q);
      EXPECT_EQ(before, (std::vector<std::pair<std::uint32_t, int>>{{r.firstKey, 1}, {r.firstKey + 1, 2}}));
      std::uint64_t const nextKey = q.nextKey();
      try {
         q.enqueue(3);
         ADD_FAILURE() << "enqueued";
      } catch (Zon::RangeException const & e) {
         EXPECT_STREQ(e.what(), r.error);
      }
      EXPECT_EQ(items(q), before);
      EXPECT_EQ(q.nextKey(), nextKey);
      EXPECT_EQ(q.dequeues(), 0u);
      EXPECT_EQ(q.dequeue()->second, 1);
      if (r.acceptsAfterDequeue) {
         EXPECT_EQ(q.enqueue(3), r.firstKey + 2);
      } else {
         EXPECT_THROW(q.enqueue(3), Zon::RangeException);
         EXPECT_EQ(items(q), (std::vector<std::pair<std::uint32_t, int>>{{r.firstKey + 1, 2}}));
      }
   }
}

} // namespace
