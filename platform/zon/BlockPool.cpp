#include "zon/BlockPool.h"

#include <cstdint>
#include <new>

#if defined(__SANITIZE_ADDRESS__)
#define ZON_BLOCK_POOL_PASS_THROUGH 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZON_BLOCK_POOL_PASS_THROUGH 1
#endif
#endif

namespace Zon {

namespace {

constexpr std::size_t granule = 16; // the heap's own alignment: every block keeps it
constexpr std::size_t sizeClasses = BlockPool::maxBlockBytes / granule;

constexpr std::size_t classOf(std::size_t bytes) noexcept { return (bytes + granule - 1) / granule - 1; }

struct FreeBlock {
   FreeBlock * next;
};

// One per thread: a singly linked list of free blocks per size class. It is
// trivially destructible, so that it stays usable while other thread-local and
// static objects are destroyed; the Reaper empties and closes it when the
// thread ends.
struct FreeLists {
   FreeBlock * head[sizeClasses];
   std::uint16_t count[sizeClasses];
   bool armed;   // the Reaper of this thread is registered
   bool closed;  // the thread is ending: blocks go straight back to the heap

   void * take(std::size_t c) noexcept {
      FreeBlock * b = head[c];
      if (b) {
         head[c] = b->next;
         --count[c];
      }
      return b;
   }
   bool give(std::size_t c, void * block) noexcept {
      if (closed || count[c] >= BlockPool::maxFreeBlocks) {
         return false;
      }
      auto * b = static_cast<FreeBlock *>(block);
      b->next = head[c];
      head[c] = b;
      ++count[c];
      return true;
   }
   void drain() noexcept {
      closed = true;
      for (std::size_t c = 0; c < sizeClasses; ++c) {
         while (FreeBlock * b = head[c]) {
            head[c] = b->next;
            ::operator delete(b);
         }
         count[c] = 0;
      }
   }
};

// Initial-exec: one load relative to the thread pointer instead of a call to
// find the library's thread-local block on every request.
constinit thread_local FreeLists freeLists __attribute__((tls_model("initial-exec"))){};

struct Reaper {
   bool used = false;
   ~Reaper() { freeLists.drain(); }
};

thread_local Reaper reaper;

// Registers the calling thread's Reaper once, on the thread's first block.
inline void arm() noexcept {
   if (!freeLists.armed) {
      freeLists.armed = true;
      reaper.used = true;
   }
}

} // namespace

void * BlockPool::allocate(std::size_t bytes) {
#ifndef ZON_BLOCK_POOL_PASS_THROUGH
   if (bytes && bytes <= maxBlockBytes) {
      std::size_t const c = classOf(bytes);
      if (void * b = freeLists.take(c)) {
         return b;
      }
      arm();
      return ::operator new((c + 1) * granule);
   }
#endif
   return ::operator new(bytes);
}

void BlockPool::release(void * block, [[maybe_unused]] std::size_t bytes) noexcept {
#ifndef ZON_BLOCK_POOL_PASS_THROUGH
   if (block && bytes && bytes <= maxBlockBytes) {
      std::size_t const c = classOf(bytes);
      arm(); // a thread may release blocks it never took
      if (freeLists.give(c, block)) {
         return;
      }
   }
#endif
   ::operator delete(block);
}

std::size_t BlockPool::freeBlocks(std::size_t bytes) noexcept {
   return bytes && bytes <= maxBlockBytes ? freeLists.count[classOf(bytes)] : 0;
}

bool BlockPool::recycles() noexcept {
#ifdef ZON_BLOCK_POOL_PASS_THROUGH
   return false;
#else
   return true;
#endif
}

} // namespace Zon
