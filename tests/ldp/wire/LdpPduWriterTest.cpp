// The PDU writer's bytes, its length fields, and its bounds: a buffer that is too
// small fails for good and is never written past its end.
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "ldp/wire/LdpPduWriter.h"
#include "ldp/wire/LdpPwHdr.h"
#include "support/Hex.h"

using namespace Ldp;
using Vorin::IpAddr;
using Vorin::IpGenAddr;
using Vorin::IpGenPrefix;

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes written(LdpPduWriter const & w) { return Bytes(w.bytes().begin(), w.bytes().end()); }

// A Label Mapping of 10.1.0.0/16 to label 17 with a PWid element of one MTU
// sub-TLV in a second FEC TLV: every kind of scope.
void mapping(LdpPduWriter & w) {
   w.pduBegin(LdpIdentifier(IpAddr(10, 0, 0, 1), 0));
   w.msgBegin(LdpMsgType::LdpLabelMapping, 7);
   w.tlvBegin(LdpTlvType::fecTlv);
   w.prefixElement(IpGenPrefix::fromString("10.1.0.0/16"));
   w.end();
   w.genLabelTlv(17);
   w.tlvBegin(LdpTlvType::fecTlv);
   w.pwIdElementBegin(Pseudowire::PseudowireType::ethernet, true, 1, 100);
   w.pwMtuSubTlv(1500);
   w.end();
   w.end();
   w.end();
   w.end();
}

Bytes const mappingBytes = TestSupport::hexBytes(
    "0001 0034 0a000001 0000"                   // PDU: version 1, length 52
    "0400 002a 00000007"                        // Label Mapping, length 42, id 7
    "0100 0006 02 0001 10 0a01"                 // FEC: 10.1.0.0/16
    "0200 0004 00000011"                        // label 17
    "0100 0010 80 8005 08 00000001 00000064"    // FEC: PWid, C bit, ethernet, info 8
    "01 04 05dc");                              //    MTU 1500

TEST(LdpPduWriter, fillsEveryLengthWhenItsScopeCloses) {
   std::array<std::uint8_t, 128> buf{};
   LdpPduWriter w(buf);
   mapping(w);
   ASSERT_TRUE(w.ok());
   EXPECT_EQ(w.depth(), 0u);
   EXPECT_EQ(written(w), mappingBytes);
}

// Every buffer shorter than the PDU fails: size 0, and not one byte written past
// the end (the guard bytes behind the buffer stay as they were).
TEST(LdpPduWriter, tooSmallBufferFailsWithoutWritingPastItsEnd) {
   for (std::size_t n = 0; n < mappingBytes.size(); ++n) {
      std::vector<std::uint8_t> buf(n + 16, 0xEE);
      LdpPduWriter w(std::span<std::uint8_t>(buf.data(), n));
      mapping(w);
      EXPECT_FALSE(w.ok()) << n;
      EXPECT_EQ(w.size(), 0u) << n;
      EXPECT_TRUE(w.bytes().empty()) << n;
      for (std::size_t i = n; i < buf.size(); ++i) {
         ASSERT_EQ(buf[i], 0xEE) << "buffer " << n << " written at " << i;
      }
   }
   std::vector<std::uint8_t> exact(mappingBytes.size());
   LdpPduWriter w(exact);
   mapping(w);
   EXPECT_TRUE(w.ok());
   EXPECT_EQ(written(w), mappingBytes);
}

TEST(LdpPduWriter, failureSticksUntilReset) {
   std::array<std::uint8_t, 12> buf{};
   LdpPduWriter w(buf);
   w.pduBegin(LdpIdentifier());
   w.genLabelTlv(1); // 8 bytes after 10: no room
   EXPECT_FALSE(w.ok());
   w.end();
   w.hopCountTlv(1); // would fit now, but the failure stands
   EXPECT_FALSE(w.ok());
   EXPECT_EQ(w.size(), 0u);
   w.reset();
   EXPECT_TRUE(w.ok());
   w.hopCountTlv(1);
   EXPECT_EQ(w.size(), 5u);
}

// Misuse and lengths a field cannot hold fail like a full buffer.
struct Misuse {
   char const * name;
   std::function<void(LdpPduWriter &)> write;
};

std::vector<Misuse> const misuses = {
    {"endWithoutScope", [](LdpPduWriter & w) { w.end(); }},
    {"tooDeep",
     [](LdpPduWriter & w) {
        for (unsigned i = 0; i <= LdpPduWriter::maxDepth; ++i) {
           w.tlvBegin(LdpTlvType::fecTlv);
        }
     }},
    {"tlvLongerThan16Bits",
     [](LdpPduWriter & w) {
        static std::array<std::uint8_t, 0x10000> const big{};
        w.tlvBegin(LdpTlvType::fecTlv);
        w.raw(big);
        w.end();
     }},
    {"pwInfoLongerThan8Bits",
     [](LdpPduWriter & w) {
        w.pwIdElementBegin(Pseudowire::PseudowireType::ethernet, false, 0, 1);
        for (int i = 0; i < 4; ++i) {
           w.pwDescriptionSubTlv(std::string(80, 'x'));
        }
        w.end();
     }},
    {"addressListOfMixedFamilies",
     [](LdpPduWriter & w) {
        std::array<IpGenAddr, 2> const a = {IpGenAddr::fromString("10.0.0.1"), IpGenAddr::fromString("::1")};
        w.addressListTlv(a);
     }},
    {"descriptionTooLong",
     [](LdpPduWriter & w) {
        w.pwDescriptionSubTlv(std::string(LdpPwIntfDescSubTlv::maxDescriptionChars + 1, 'x'));
     }},
};

class LdpPduWriterMisuse : public ::testing::TestWithParam<Misuse> {};

TEST_P(LdpPduWriterMisuse, fails) {
   std::vector<std::uint8_t> buf(0x20000);
   LdpPduWriter w(buf);
   GetParam().write(w);
   EXPECT_FALSE(w.ok());
   EXPECT_EQ(w.size(), 0u);
}

INSTANTIATE_TEST_SUITE_P(Cases, LdpPduWriterMisuse, ::testing::ValuesIn(misuses),
                         [](auto const & info) { return std::string(info.param.name); });

// Fixed TLVs and elements, byte for byte.
struct Layout {
   char const * name;
   std::function<void(LdpPduWriter &)> write;
   char const * hex;
};

std::vector<Layout> const layouts = {
    {"commonHello", [](LdpPduWriter & w) { w.commonHelloTlv(15, true, false); }, "0400 0004 000f 8000"},
    {"sessionParams",
     [](LdpPduWriter & w) { w.sessionParamTlv(30, 4096, LdpIdentifier(IpAddr(2, 2, 2, 2), 0), true, 8, false); },
     "0500 000e 0001 001e 40 08 1000 02020202 0000"},
    {"capabilityCarriesTheUBit",
     [](LdpPduWriter & w) { w.capabilityTlv(LdpTlvType::dynamicCapabilityTlv, true); }, "8506 0001 80"},
    {"emptyAddressListIsIpv4", [](LdpPduWriter & w) { w.addressListTlv({}); }, "0101 0002 0001"},
    {"status",
     [](LdpPduWriter & w) { w.statusTlv(LdpStatusCode::noRoute, true, true, 9, 0x0401); },
     "0300 000a c000000d 00000009 0401"},
    {"pathVector",
     [](LdpPduWriter & w) {
        std::array<IpAddr, 2> const ids = {IpAddr(1, 1, 1, 1), IpAddr(3, 3, 3, 3)};
        w.pathVectorTlv(ids);
     },
     "0104 0008 01010101 03030303"},
    {"ipv6PrefixKeepsWholeOctets",
     [](LdpPduWriter & w) { w.prefixElement(IpGenPrefix::fromString("2001:db8::/33")); }, "02 0002 21 20010db800"},
    {"hostAddress", [](LdpPduWriter & w) { w.hostAddrElement(IpGenAddr::fromString("10.0.0.1")); },
     "03 0001 04 0a000001"},
    {"typedWildcardOfPwId",
     [](LdpPduWriter & w) { w.typedWildcardElement(LdpFecElementType::pwIdElement, 0); }, "05 80 00"},
    {"pwDescription", [](LdpPduWriter & w) { w.pwDescriptionSubTlv("ab"); }, "03 04 6162"},
    {"pwVlanFragVccv",
     [](LdpPduWriter & w) {
        w.pwRequestedVlanIdSubTlv(100);
        w.pwFragIndicatorSubTlv(0x8000);
        w.pwVccvSubTlv(1, 2);
     },
     "06 04 0064 09 04 8000 0c 04 01 02"},
    {"rawTlvKeepsTheTypeWord",
     [](LdpPduWriter & w) {
        std::array<std::uint8_t, 2> const v = {0xAB, 0xCD};
        w.rawTlv(0xBE01, v);
     },
     "be01 0002 abcd"},
    {"messageUBit", [](LdpPduWriter & w) { w.msgBegin(LdpMsgType::LdpKeepAlive, 3, true), w.end(); },
     "8201 0004 00000003"},
};

class LdpPduWriterLayout : public ::testing::TestWithParam<Layout> {};

TEST_P(LdpPduWriterLayout, writesTheWireBytes) {
   std::array<std::uint8_t, 64> buf{};
   LdpPduWriter w(buf);
   GetParam().write(w);
   ASSERT_TRUE(w.ok());
   EXPECT_EQ(written(w), TestSupport::hexBytes(GetParam().hex));
}

INSTANTIATE_TEST_SUITE_P(Cases, LdpPduWriterLayout, ::testing::ValuesIn(layouts),
                         [](auto const & info) { return std::string(info.param.name); });

} // namespace
