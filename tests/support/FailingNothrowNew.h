// Lets a test make the nothrow operator new fail, as a heap that has run out
// would, to check that factories refuse with "null ValidPtr". It replaces the
// global nothrow operator new: include it in exactly one source file of a test
// program.
#pragma once

#include <new>

namespace LdpTest {

inline bool nothrowAllocationFails = false;

// Fails the nothrow allocations while it lives.
struct NothrowAllocationFailure {
   NothrowAllocationFailure() { nothrowAllocationFails = true; }
   ~NothrowAllocationFailure() { nothrowAllocationFails = false; }
   NothrowAllocationFailure(NothrowAllocationFailure const &) = delete;
   NothrowAllocationFailure & operator=(NothrowAllocationFailure const &) = delete;
};

} // namespace LdpTest

void * operator new(std::size_t n, std::nothrow_t const &) noexcept {
   if (LdpTest::nothrowAllocationFails) {
      return nullptr;
   }
   try {
      return ::operator new(n);
   } catch (std::bad_alloc const &) {
      return nullptr;
   }
}
