// Counts every heap allocation of the program that includes this header: it
// replaces the global operator new and delete, so exactly one source file of a
// program may include it. That file also turns off GCC's -Wmismatched-new-delete
// before its first include, since GCC then takes library code that frees with the
// sized delete for a mismatch.
#pragma once

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace TestSupport {

inline std::atomic<std::uint64_t> heapAllocations{0};

} // namespace TestSupport

void * operator new(std::size_t n) {
   TestSupport::heapAllocations.fetch_add(1, std::memory_order_relaxed);
   if (void * p = std::malloc(n ? n : 1)) {
      return p;
   }
   throw std::bad_alloc();
}
void operator delete(void * p) noexcept { std::free(p); }
void operator delete(void * p, std::size_t) noexcept { std::free(p); }
