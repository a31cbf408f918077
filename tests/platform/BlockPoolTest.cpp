#include <gtest/gtest.h>

#include <cstdint>
#include <thread>
#include <vector>

#include "zon/BlockPool.h"
#include "zon/Ptr.h"

using Zon::BlockPool;

namespace {

TEST(ZonBlockPool, ReusesAReleasedBlockOfTheSameSizeClass) {
   if (!BlockPool::recycles()) {
      GTEST_SKIP() << "this build passes every request to the heap";
   }
   void * a = BlockPool::allocate(40);
   std::size_t const before = BlockPool::freeBlocks(40);
   BlockPool::release(a, 40);
   EXPECT_EQ(BlockPool::freeBlocks(40), before + 1);
   // 33..48 bytes share one class: a request of 48 gets the block back.
   EXPECT_EQ(BlockPool::freeBlocks(48), before + 1);
   void * b = BlockPool::allocate(48);
   EXPECT_EQ(b, a);
   EXPECT_EQ(BlockPool::freeBlocks(40), before);
   BlockPool::release(b, 48);
}

TEST(ZonBlockPool, LargeBlocksAndTheCapGoToTheHeap) {
   std::size_t const large = BlockPool::maxBlockBytes + 1;
   BlockPool::release(BlockPool::allocate(large), large);
   EXPECT_EQ(BlockPool::freeBlocks(large), 0u);
   EXPECT_EQ(BlockPool::freeBlocks(0), 0u);

   // More blocks than a thread keeps: the list stops at the cap.
   std::vector<void *> blocks;
   for (std::size_t i = 0; i < BlockPool::maxFreeBlocks + 10; ++i) {
      blocks.push_back(BlockPool::allocate(200));
   }
   for (void * b : blocks) {
      BlockPool::release(b, 200);
   }
   EXPECT_EQ(BlockPool::freeBlocks(200), BlockPool::recycles() ? BlockPool::maxFreeBlocks : 0u);
}

TEST(ZonBlockPool, ABlockReleasedOnAnotherThreadJoinsThatThreadsList) {
   void * block = BlockPool::allocate(96);
   std::size_t onOther = 0;
   std::thread([&] {
      BlockPool::release(block, 96);
      onOther = BlockPool::freeBlocks(96);
   }).join();  // the thread's list goes back to the heap as it ends
   EXPECT_EQ(onOther, BlockPool::recycles() ? 1u : 0u);
}

struct Base : Zon::PtrInterface, Zon::PoolAllocated {
   std::uint64_t a = 1;
};
struct Derived final : Base {
   std::uint8_t payload[150] = {};
};

TEST(ZonBlockPool, DeleteThroughTheBaseReleasesTheDerivedSize) {
   if (!BlockPool::recycles()) {
      GTEST_SKIP() << "this build passes every request to the heap";
   }
   static_assert(sizeof(Derived) > 2 * sizeof(Base));
   std::size_t const derivedBefore = BlockPool::freeBlocks(sizeof(Derived));
   {
      Zon::Ptr<Base> p(new Derived);
      EXPECT_EQ(p->a, 1u);
   }
   EXPECT_EQ(BlockPool::freeBlocks(sizeof(Derived)), derivedBefore + 1);
   Zon::Ptr<Base> again(new Derived);
   EXPECT_EQ(BlockPool::freeBlocks(sizeof(Derived)), derivedBefore);
}

} // namespace
