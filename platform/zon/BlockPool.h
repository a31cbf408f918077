// Recycled memory for small objects that are made and dropped at a high rate,
// such as the parsers built for every received message. A class opts in by
// deriving from PoolAllocated: its `new` and `delete` then take blocks from and
// give them back to a free list of the calling thread, sorted by size, instead
// of going to the general heap each time.
//
// A block may be released on another thread than the one that took it (it
// joins that thread's list); each thread keeps a bounded number of blocks per
// size and hands the rest, and its whole list when it ends, back to the heap.
// Builds with AddressSanitizer pass every request straight to the heap, so that
// a use after release is still caught.
#pragma once

#include <cstddef>

namespace Zon {

class BlockPool {
 public:
   // Blocks up to this size are recycled; larger ones come from the heap.
   static constexpr std::size_t maxBlockBytes = 512;
   // Blocks of one size kept per thread.
   static constexpr std::size_t maxFreeBlocks = 256;

   static void * allocate(std::size_t bytes);
   // `bytes` must be the size that was passed to allocate.
   static void release(void * block, std::size_t bytes) noexcept;
   // Blocks of `bytes`' size on the calling thread's free list.
   static std::size_t freeBlocks(std::size_t bytes) noexcept;
   // False in builds that pass every request to the heap.
   static bool recycles() noexcept;
};

// Mix-in for a class whose objects should live in pool blocks. With a virtual
// destructor, `delete` receives the size of the object's own class.
struct PoolAllocated {
   static void * operator new(std::size_t bytes) { return BlockPool::allocate(bytes); }
   static void operator delete(void * block, std::size_t bytes) noexcept { BlockPool::release(block, bytes); }
};

} // namespace Zon
