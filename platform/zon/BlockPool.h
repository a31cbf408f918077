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
//
// The free lists are initial-exec thread-local data of the platform library, so
// that taking and giving a block is a handful of inline instructions: a program
// that loads the library with dlopen needs the little static TLS room (about
// 330 bytes) that the C library keeps for such cases.
#pragma once

#include <cstddef>
#include <cstdint>

#if defined(__SANITIZE_ADDRESS__)
#define ZON_BLOCK_POOL_PASS_THROUGH 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZON_BLOCK_POOL_PASS_THROUGH 1
#endif
#endif

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

   // The calling thread's lists. Trivially destructible, so that they stay
   // usable while other thread-local and static objects are destroyed; they
   // are emptied and closed when the thread ends.
   static constexpr std::size_t granule = 16;  // the heap's own alignment: every block keeps it
   static constexpr std::size_t sizeClasses = maxBlockBytes / granule;
   struct FreeBlock {
      FreeBlock * next;
   };
   struct FreeLists {
      FreeBlock * head[sizeClasses];
      std::uint16_t count[sizeClasses];
      bool armed;   // the thread's clean-up is registered
      bool closed;  // the thread is ending: blocks go straight back to the heap
   };

 private:
   static constexpr std::size_t classOf(std::size_t bytes) noexcept { return (bytes + granule - 1) / granule - 1; }
   static void * allocateSlow(std::size_t bytes);
   static void releaseSlow(void * block, std::size_t bytes) noexcept;
};

extern constinit thread_local BlockPool::FreeLists zonBlockPoolLists __attribute__((tls_model("initial-exec")));

inline void * BlockPool::allocate(std::size_t bytes) {
#ifndef ZON_BLOCK_POOL_PASS_THROUGH
   if (bytes - 1 < maxBlockBytes) {  // 1 to maxBlockBytes
      BlockPool::FreeLists & lists = zonBlockPoolLists;
      std::size_t const c = classOf(bytes);
      if (FreeBlock * b = lists.head[c]) {
         lists.head[c] = b->next;
         --lists.count[c];
         return b;
      }
   }
#endif
   return allocateSlow(bytes);
}

inline void BlockPool::release(void * block, [[maybe_unused]] std::size_t bytes) noexcept {
#ifndef ZON_BLOCK_POOL_PASS_THROUGH
   if (block && bytes - 1 < maxBlockBytes) {
      BlockPool::FreeLists & lists = zonBlockPoolLists;
      std::size_t const c = classOf(bytes);
      if (lists.armed && !lists.closed && lists.count[c] < maxFreeBlocks) {
         auto * b = static_cast<FreeBlock *>(block);
         b->next = lists.head[c];
         lists.head[c] = b;
         ++lists.count[c];
         return;
      }
   }
#endif
   releaseSlow(block, bytes);
}

// Mix-in for a class whose objects should live in pool blocks. With a virtual
// destructor, `delete` receives the size of the object's own class.
struct PoolAllocated {
   static void * operator new(std::size_t bytes) { return BlockPool::allocate(bytes); }
   static void operator delete(void * block, std::size_t bytes) noexcept { BlockPool::release(block, bytes); }
};

} // namespace Zon
