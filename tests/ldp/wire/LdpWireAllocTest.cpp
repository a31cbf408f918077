// Heap allocations of the checks that the receive path runs on every item: a
// validate() must not build strings or other heap objects just to decide.
// This file replaces the global operator new of the test program to count
// allocations; GCC then takes library code that frees with the sized delete for
// a mismatch.
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <string>

#include "ldp/wire/LdpPwHdr.h"
#include "support/Hex.h"

namespace {
std::atomic<std::uint64_t> allocations{0};
}

void * operator new(std::size_t n) {
   allocations.fetch_add(1, std::memory_order_relaxed);
   if (void * p = std::malloc(n ? n : 1)) {
      return p;
   }
   throw std::bad_alloc();
}
void operator delete(void * p) noexcept { std::free(p); }
void operator delete(void * p, std::size_t) noexcept { std::free(p); }

namespace {

using namespace Ldp;

TEST(LdpWireAlloc, DescriptionSubTlvValidatesWithoutAllocating) {
   // Descriptions longer than any short-string buffer: 80 characters, and 40
   // characters followed by a NUL and 39 more.
   std::string const full = "03 52" + std::string(160, '6');
   std::string const cut = "03 52" + std::string(80, '6') + "00" + std::string(78, '6');
   auto const fullBytes = TestSupport::hexBytes(full);
   auto const cutBytes = TestSupport::hexBytes(cut);
   auto const & fullDesc = *reinterpret_cast<LdpPwIntfDescSubTlv const *>(fullBytes.data());
   auto const & cutDesc = *reinterpret_cast<LdpPwIntfDescSubTlv const *>(cutBytes.data());

   std::uint64_t const before = allocations.load();
   LdpStatusCode const fullCode = fullDesc.validate();
   LdpStatusCode const cutCode = cutDesc.validate();
   std::uint64_t const after = allocations.load();

   EXPECT_EQ(fullCode, LdpStatusCode::success);
   EXPECT_EQ(cutCode, LdpStatusCode::badTlvLength);
   EXPECT_EQ(after - before, 0u);
}

} // namespace
