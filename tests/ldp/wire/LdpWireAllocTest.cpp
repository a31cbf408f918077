// Heap allocations of the checks that the receive path runs on every item: a
// validate() must not build strings or other heap objects just to decide.
// The allocations are counted by replacing the global operator new of the test
// program; GCC then takes library code that frees with the sized delete for a
// mismatch.
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <string>

#include "ldp/wire/LdpPduWriter.h"
#include "ldp/wire/LdpPwHdr.h"
#include "support/AllocCount.h"
#include "support/Hex.h"

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

   std::uint64_t const before = TestSupport::heapAllocations.load();
   LdpStatusCode const fullCode = fullDesc.validate();
   LdpStatusCode const cutCode = cutDesc.validate();
   std::uint64_t const after = TestSupport::heapAllocations.load();

   EXPECT_EQ(fullCode, LdpStatusCode::success);
   EXPECT_EQ(cutCode, LdpStatusCode::badTlvLength);
   EXPECT_EQ(after - before, 0u);
}

// The send side writes every PDU into a buffer it owns: not one allocation for
// a message with scopes of every kind.
TEST(LdpWireAlloc, PduWriterWritesWithoutAllocating) {
   std::uint8_t buf[256];
   std::uint64_t const before = TestSupport::heapAllocations.load();
   LdpPduWriter w(buf);
   w.pduBegin(LdpIdentifier(Vorin::IpAddr(10, 0, 0, 1), 0));
   w.msgBegin(LdpMsgType::LdpLabelMapping, 7);
   w.tlvBegin(LdpTlvType::fecTlv);
   w.prefixElement(Vorin::IpGenPrefix(Vorin::IpGenAddr(Vorin::IpAddr(10, 1, 0, 0)), 16));
   w.pwIdElementBegin(Pseudowire::PseudowireType::ethernet, true, 1, 100);
   w.pwDescriptionSubTlv("a description longer than a short string buffer holds");
   w.pwMtuSubTlv(1500);
   w.end();
   w.end();
   w.genLabelTlv(17);
   w.end();
   w.end();
   std::uint64_t const after = TestSupport::heapAllocations.load();
   EXPECT_TRUE(w.ok());
   EXPECT_EQ(after - before, 0u);
}

} // namespace
