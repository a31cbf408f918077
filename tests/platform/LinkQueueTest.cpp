// The FIFO link queue: key order, no reuse of keys, the end of the key space.
#include <gtest/gtest.h>

#include <string>
#include <vector>

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

} // namespace
