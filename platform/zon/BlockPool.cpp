#include "zon/BlockPool.h"

#include <new>

namespace Zon {

constinit thread_local BlockPool::FreeLists zonBlockPoolLists __attribute__((tls_model("initial-exec"))){};

#ifndef ZON_BLOCK_POOL_PASS_THROUGH
namespace {

// Empties and closes the thread's lists when the thread ends.
struct Reaper {
   bool used = false;
   ~Reaper() {
      BlockPool::FreeLists & lists = zonBlockPoolLists;
      lists.closed = true;
      for (std::size_t c = 0; c < BlockPool::sizeClasses; ++c) {
         while (BlockPool::FreeBlock * b = lists.head[c]) {
            lists.head[c] = b->next;
            ::operator delete(b);
         }
         lists.count[c] = 0;
      }
   }
};

thread_local Reaper reaper;

// Registers the calling thread's Reaper once.
void arm() noexcept {
   if (!zonBlockPoolLists.armed) {
      zonBlockPoolLists.armed = true;
      reaper.used = true;
   }
}

} // namespace
#endif

void * BlockPool::allocateSlow(std::size_t bytes) {
#ifndef ZON_BLOCK_POOL_PASS_THROUGH
   if (bytes - 1 < maxBlockBytes) {
      arm();  // the first block of a thread
      return ::operator new((classOf(bytes) + 1) * granule);
   }
#endif
   return ::operator new(bytes);
}

void BlockPool::releaseSlow(void * block, [[maybe_unused]] std::size_t bytes) noexcept {
#ifndef ZON_BLOCK_POOL_PASS_THROUGH
   if (block && bytes - 1 < maxBlockBytes && !zonBlockPoolLists.armed) {
      // A thread that releases blocks it never took keeps them too.
      arm();
      release(block, bytes);
      return;
   }
#endif
   ::operator delete(block);
}

std::size_t BlockPool::freeBlocks(std::size_t bytes) noexcept {
   return bytes - 1 < maxBlockBytes ? zonBlockPoolLists.count[classOf(bytes)] : 0;
}

bool BlockPool::recycles() noexcept {
#ifdef ZON_BLOCK_POOL_PASS_THROUGH
   return false;
#else
   return true;
#endif
}

} // namespace Zon
