#include "ldp/wire/LdpTlv.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "support/DeathText.h"
#include "support/Hex.h"
#include "support/Overlay.h"
#include "trace/Trace.h"

using namespace Ldp;
using TestSupport::hexBytes;
using TestSupport::toHex;
using TestSupport::overlay;
using TestSupport::ExactBuf;

namespace {


using TestSupport::literal;

// Records every trace line while alive.
struct TraceCapture {
   std::vector<std::string> lines;
   int savedLevel;
   TraceCapture() : savedLevel(Trace::source("LdpHdr").level()) {
      Trace::source("LdpHdr").levelIs(5);
      Trace::sinkIs([this](Trace::Source const & s, int level, std::string_view text) {
         lines.push_back(s.name() + "/" + std::to_string(level) + ":" + std::string(text));
      });
   }
   ~TraceCapture() {
      Trace::sinkIs({});
      Trace::source("LdpHdr").levelIs(savedLevel);
   }
};

// ---- fixed-size TLVs: length check, error text, type assertion ----------------

// `typeHex` is the TLV type word; the value bytes are zero.
template <typename T>
void checkFixedLength(char const * typeHex, char const * errorPrefix) {
   SCOPED_TRACE(typeHex);
   auto zeroValue = std::string(2 * (T::wireBytes - 4), '0');
   auto withLength = [&](unsigned len) {
      return overlay<T>(std::string(typeHex) + toHex(Vorin::NetU16::fromHost(std::uint16_t(len))) + zeroValue);
   };
   EXPECT_EQ(withLength(T::requiredLength).validate(), LdpStatusCode::success);
   EXPECT_EQ(withLength(T::requiredLength + 1).validate(), LdpStatusCode::badTlvLength);
   EXPECT_EQ(withLength(T::requiredLength - 1).validate(), LdpStatusCode::badTlvLength);
   EXPECT_EQ(withLength(0xFFFF).validate(), LdpStatusCode::badTlvLength);
   EXPECT_EQ(withLength(T::requiredLength + 1).stringValue(), std::string(errorPrefix) + "badTlvLength");
}

TEST(LdpTlvFixed, LengthMustEqualRequiredLength) {
   checkFixedLength<LdpCommonHelloTlv>("0400", "Error LdpCommonHelloTlv: ");
   checkFixedLength<LdpIpTransportAddrTlv>("0401", "Error IpTransportAddrTlv: ");
   checkFixedLength<LdpIp6TransportAddrTlv>("0403", "Error Ip6TransportAddrTlv: ");
   checkFixedLength<LdpConfigSeqNumTlv>("0402", "Error ConfigSeqNumTlv: ");
   checkFixedLength<LdpStatusTlv>("0300", "Error LdpStatusTlv: ");
   checkFixedLength<LdpGenLabelTlv>("0200", "Error GenLabelTlv: ");
   checkFixedLength<LdpLabelReqMsgIdTlv>("0600", "Error LabelReqMsgIdTlv: ");
   checkFixedLength<LdpHopCountTlv>("0103", "Error LdpHopCountTlv: ");
   // U and F bits do not matter to these checks, and the header is not validated.
   EXPECT_EQ(overlay<LdpHopCountTlv>("c103 0001 05").validate(), LdpStatusCode::success);
   // A status TLV of length 12 (as some senders pad it) is refused.
   EXPECT_EQ(overlay<LdpStatusTlv>("0300 000c 00000000 00000000 0000").validate(), LdpStatusCode::badTlvLength);
}

template <typename T>
void validateAs(char const * typeHex) {
   auto t = overlay<T>(std::string(typeHex) + toHex(Vorin::NetU16::fromHost(T::requiredLength)) +
                       std::string(2 * (T::wireBytes - 4), '0'));
   (void)t.validate();
}

TEST(LdpTlvFixedDeathTest, ValidateAssertsItsOwnType) {
   EXPECT_DEATH(validateAs<LdpCommonHelloTlv>("0401"), literal("type() == commonHelloTlv_"));
   EXPECT_DEATH(validateAs<LdpIpTransportAddrTlv>("0403"), literal("type() == ipv4TransportAddrTlv_"));
   EXPECT_DEATH(validateAs<LdpIp6TransportAddrTlv>("0401"), literal("type() == ipv6TransportAddrTlv_"));
   EXPECT_DEATH(validateAs<LdpConfigSeqNumTlv>("0400"), literal("type() == configSeqNumTlv_"));
   EXPECT_DEATH(validateAs<LdpStatusTlv>("0301"), literal("type() == statusTlv_"));
   EXPECT_DEATH(validateAs<LdpGenLabelTlv>("0201"), literal("type() == genLabelTlv_"));
   EXPECT_DEATH(validateAs<LdpLabelReqMsgIdTlv>("0200"), literal("type() == labelReqMsgIdTlv_"));
   EXPECT_DEATH(validateAs<LdpHopCountTlv>("0104"), literal("type() == hopCountTlv_"));
   ExactBuf pv("0103 0004 0a000001");
   EXPECT_DEATH((void)pv.as<LdpPathVectorTlv>().validate(), literal("type() == pathVectorTlv_"));
}

// ---- hello, transport addresses, sequence number ------------------------------

TEST(LdpCommonHelloTlv, FieldsFlagsAndText) {
   auto t = overlay<LdpCommonHelloTlv>("0400 0004 000f 8000");
   EXPECT_EQ(t.type(), LdpTlvType::commonHelloTlv);
   EXPECT_EQ(t.holdTime(), 15);
   EXPECT_TRUE(t.targetedHello());
   EXPECT_FALSE(t.requestSendTargetedHello());
   EXPECT_EQ(t.stringValue(), "CommonHelloTlv: HT(15),1,0");
   EXPECT_EQ(t.targetHelloField().stringValue(), "Value('Ldp::LdpCommonHelloTargetField', ** {'v0': 128, 'v1': 0})");

   // Setters take the low bit and keep every other bit, reserved ones included.
   LdpCommonHelloTargetField f(0x3FFF);
   f.targetedHelloIs(3);
   EXPECT_EQ(f.value(), 0xBFFF);
   f.requestSendTargetedHelloIs(1);
   EXPECT_EQ(f.value(), 0xFFFF);
   f.targetedHelloIs(2);
   EXPECT_EQ(f.value(), 0x7FFF);
   EXPECT_TRUE(f.requestSendTargetedHello());

   t.holdTimeIs(0xFFFF);
   t.targetHelloFieldIs(LdpCommonHelloTargetField(0x4001));
   EXPECT_EQ(toHex(t), "04000004ffff4001");
   EXPECT_EQ(t.stringValue(), "CommonHelloTlv: HT(65535),0,1");
}

TEST(LdpTransportAddrTlv, AddressesAndText) {
   auto v4 = overlay<LdpIpTransportAddrTlv>("0401 0004 0a000001");
   EXPECT_EQ(v4.ipAddr(), Vorin::IpAddr(10, 0, 0, 1));
   EXPECT_EQ(v4.stringValue(), "10.0.0.1");
   v4.ipAddrIs(Vorin::IpAddr(192, 168, 0, 255));
   EXPECT_EQ(toHex(v4), "04010004c0a800ff");

   auto v6 = overlay<LdpIp6TransportAddrTlv>("0403 0010 20010db8 00000000 00000000 00000001");
   EXPECT_EQ(v6.ip6Addr(), Vorin::Ip6Addr::fromString("2001:db8::1"));
   EXPECT_EQ(v6.stringValue(), "2001:db8::1");
}

TEST(LdpConfigSeqNumTlv, ValueAndText) {
   auto t = overlay<LdpConfigSeqNumTlv>("0402 0004 01020304");
   EXPECT_EQ(t.configSeqNum(), 0x01020304u);
   EXPECT_EQ(t.stringValue(), "ConfigSeqNumTlv: 16909060");
   t.configSeqNumIs(0xFFFFFFFF); // printed with %d
   EXPECT_EQ(t.stringValue(), "ConfigSeqNumTlv: -1");
}

// ---- common session parameters ------------------------------------------------

TEST(LdpCommonSessionParamTlv, FieldsFromGoldenBytes) {
   auto t = overlay<LdpCommonSessionParamTlv>("0500 000e 0001 001e 80 ff 1000 0a000002 0003");
   EXPECT_EQ(t.protocolVersion(), 1);
   EXPECT_EQ(t.keepAliveTime(), 30);
   EXPECT_TRUE(t.advDiscipline());
   EXPECT_FALSE(t.loopDetect());
   EXPECT_EQ(t.pathVecLim(), 255);
   EXPECT_EQ(t.maxPduLength(), 4096);
   EXPECT_EQ(t.recvLdpIdentifier(), LdpIdentifier(Vorin::IpAddr(10, 0, 0, 2), 3));
   EXPECT_EQ(t.validate(), LdpStatusCode::success);
   EXPECT_EQ(t.stringValue(), "LdpCommonSessionParamTlv: KA(30), A(1), D(0), PduLen(4096), 10.0.0.2:3");
   EXPECT_EQ(t.adField().stringValue(), "Value('Ldp::LdpCommonSessionParamTlvAdField', ** {'v0': 128})");

   t.advDisciplineIs(0);
   t.loopDetectIs(3);
   t.pathVecLimIs(0);
   t.maxPduLengthIs(0x2580);
   EXPECT_EQ(toHex(t), "0500000e0001001e4000" "25800a0000020003");
}

TEST(LdpCommonSessionParamTlv, AdFieldBits) {
   LdpCommonSessionParamTlvAdField f(0x3F);
   EXPECT_EQ(f.reserved(), 0x3F);
   f.advDisciplineIs(1);
   EXPECT_EQ(f.value(), 0xBF);
   f.loopDetectIs(1);
   EXPECT_EQ(f.value(), 0xFF);
   f.advDisciplineIs(2);
   EXPECT_EQ(f.value(), 0x7F);
   EXPECT_TRUE(f.loopDetect());
   f.reservedIs(0xC0);
   EXPECT_EQ(f.value(), 0x40);
}

TEST(LdpCommonSessionParamTlv, ValidateOrderAndTrace) {
   struct Case {
      char const * hex;
      LdpStatusCode expected;
      char const * trace; // null: nothing traced
   };
   //                      type len  ver  KA   ad lim pdu  receiver
   Case const cases[] = {
       {"0500 000e 0001 0003 00 00 2580 0a000002 0000", LdpStatusCode::success, nullptr},
       {"0500 000e 0001 0002 00 00 2580 0a000002 0000", LdpStatusCode::sessionRejectBadKeepAliveTime,
        "   Rejected. keepAliveTime is out of range."},
       {"0500 000e 0001 0000 00 00 1000 0a000002 0000", LdpStatusCode::sessionRejectBadKeepAliveTime,
        "   Rejected. keepAliveTime is out of range."},
       {"0500 000e 0001 0003 00 00 2581 0a000002 0000", LdpStatusCode::rejectMaxPduLength,
        "   Rejected. maxPduLength is out of range."},
       {"0500 000e 0002 0000 00 00 ffff 0a000002 0000", LdpStatusCode::badVersion,
        "   Rejected. Protocol version is not 1"},
       {"0500 000e 0000 001e 00 00 1000 0a000002 0000", LdpStatusCode::badVersion,
        "   Rejected. Protocol version is not 1"},
       {"0500 000e 0001 ffff 00 00 0000 0a000002 0000", LdpStatusCode::success, nullptr}, // no PDU floor
       // Length before the parameters, header before the length.
       {"0500 000d 0002 0000 00 00 ffff 0a000002 0000", LdpStatusCode::badTlvLength, nullptr},
       {"0500 000f 0001 001e 00 00 1000 0a000002 0000", LdpStatusCode::badTlvLength, nullptr},
       {"0102 000d 0002 0000 00 00 ffff 0a000002 0000", LdpStatusCode::unknownTlv, nullptr},
       {"8102 000e 0002 0000 00 00 ffff 0a000002 0000", LdpStatusCode::unknownMessageTypeIgnore, nullptr},
   };
   for (auto const & c : cases) {
      SCOPED_TRACE(c.hex);
      auto t = overlay<LdpCommonSessionParamTlv>(c.hex);
      TraceCapture cap;
      EXPECT_EQ(t.validate(), c.expected);
      if (c.trace) {
         ASSERT_EQ(cap.lines.size(), 1u);
         EXPECT_EQ(cap.lines[0], std::string("LdpHdr/5:") + c.trace);
      } else {
         EXPECT_TRUE(cap.lines.empty());
      }
   }
   auto bad = overlay<LdpCommonSessionParamTlv>(cases[4].hex);
   EXPECT_EQ(bad.stringValue(), "Error LdpCommonSessionParamTlv: badVersion");
}

// ---- status ---------------------------------------------------------------------

TEST(LdpStatusTlv, FieldsFlagsAndText) {
   auto t = overlay<LdpStatusTlv>("0300 000a 8000000a 00000007 0200");
   EXPECT_TRUE(t.statusError());
   EXPECT_FALSE(t.statusForwardUnknown());
   EXPECT_EQ(t.statusData(), LdpStatusCode::shutdown);
   EXPECT_EQ(t.msgId(), 7u);
   EXPECT_EQ(t.msgType(), LdpMsgType::LdpInit);
   EXPECT_EQ(t.stringValue(), "StatusTlv(shutdown): LdpInit:7 u(0), fu(0), e(1), efu(0)");
   EXPECT_EQ(t.statusCode().stringValue(),
             "Value('Ldp::LdpStatusTlvStatusCode', ** {'v0': 128, 'v1': 0, 'v2': 0, 'v3': 10})");

   // TLV U/F bits and status E/F bits are reported separately; an unnamed message
   // type prints as its number.
   auto u = overlay<LdpStatusTlv>("c300 000a 40000019 ffffffff 0999");
   EXPECT_EQ(u.stringValue(), "StatusTlv(internalError): 2457:4294967295 u(1), fu(1), e(0), efu(1)");

   t.statusCodeIs(LdpStatusTlvStatusCode(0xFFFFFFFF));
   t.statusDataIs(LdpStatusCode::badLdpId); // keeps E and F
   EXPECT_EQ(t.statusCode().value(), 0xC0000001u);
   t.statusErrorIs(2);
   EXPECT_EQ(t.statusCode().value(), 0x40000001u);
   t.statusForwardUnknownIs(0);
   t.statusErrorIs(1);
   t.msgIdIs(0x01020304);
   t.msgTypeIs(LdpMsgType::LdpLabelAbortReq);
   EXPECT_EQ(toHex(t), "0300000a80000001010203040404");
}

// ---- labels ---------------------------------------------------------------------

TEST(LdpGenLabelTlv, LabelIsTheLow20Bits) {
   auto t = overlay<LdpGenLabelTlv>("0200 0004 fff00010");
   EXPECT_EQ(t.label(), Vorin::MplsLabel(16));
   EXPECT_EQ(t.stringValue(), "GenLabelTlv: L(16)");
   EXPECT_EQ(t.labelField().stringValue(),
             "Value('Ldp::LdpGenLabelTlvLabel', ** {'v0': 255, 'v1': 240, 'v2': 0, 'v3': 16})");
   t.labelIs(Vorin::MplsLabel(0xABCDE));
   EXPECT_EQ(toHex(t), "02000004fffabcde");
   t.labelIs(Vorin::MplsLabel(Vorin::MplsLabel::max));
   EXPECT_EQ(t.label().value(), Vorin::MplsLabel::max);
   EXPECT_EQ(toHex(t), "02000004ffffffff");
}

TEST(LdpLabelReqMsgIdAndHopCount, ValuesAndText) {
   auto r = overlay<LdpLabelReqMsgIdTlv>("0600 0004 8000002a");
   EXPECT_EQ(r.reqMsgId(), 0x8000002Au);
   EXPECT_EQ(r.stringValue(), "LabelReqMsgIdTlv: ID(2147483690)");
   auto h = overlay<LdpHopCountTlv>("0103 0001 ff");
   EXPECT_EQ(h.hopCount(), 255);
   EXPECT_EQ(h.stringValue(), "LdpHopCountTlv: 255");
}

// ---- path vector ----------------------------------------------------------------

TEST(LdpPathVectorTlv, IdsPositionsAndText) {
   ExactBuf b("0104 000c 0a000001 0a000002 0a000001");
   auto & t = b.as<LdpPathVectorTlv>();
   EXPECT_EQ(t.validate(), LdpStatusCode::success);
   EXPECT_EQ(t.lsrIdNum(), 3u);
   EXPECT_EQ(t.lsrId(1), Vorin::IpAddr(10, 0, 0, 2));
   EXPECT_EQ(t.lsrId(3), Vorin::IpAddr());
   EXPECT_EQ(t.lsrIdPosition(Vorin::IpAddr(10, 0, 0, 1)), 1u); // first match
   EXPECT_EQ(t.lsrIdPosition(Vorin::IpAddr(10, 0, 0, 2)), 2u);
   EXPECT_EQ(t.lsrIdPosition(Vorin::IpAddr(10, 0, 0, 3)), 0u);
   EXPECT_EQ(t.stringValue(), "LdpPathVectorTlv: [10.0.0.1, 10.0.0.2, 10.0.0.1]");
   t.lsrIdIs(2, Vorin::IpAddr(1, 2, 3, 4));
   EXPECT_EQ(b.hex(), "0104000c0a0000010a00000201020304");
}

TEST(LdpPathVectorTlv, BadLengthsHoldNoIds) {
   for (char const * hex : {"0104 0000", "0104 0006 0a000001 0a00", "0104 0003 0a0000"}) {
      SCOPED_TRACE(hex);
      ExactBuf b(hex);
      auto const & t = b.as<LdpPathVectorTlv>();
      EXPECT_EQ(t.validate(), LdpStatusCode::badTlvLength);
      EXPECT_EQ(t.lsrIdNum(), 0u);
      EXPECT_EQ(t.lsrId(0), Vorin::IpAddr());
      EXPECT_EQ(t.lsrIdPosition(Vorin::IpAddr()), 0u);
      EXPECT_EQ(t.stringValue(), "Error LdpPathVectorTlv: badTlvLength");
   }
}

// ---- address list ---------------------------------------------------------------

TEST(LdpAddressListTlv, ValidateAndCount) {
   struct Case {
      char const * hex; // exactly the TLV's bytes
      LdpStatusCode expected;
      unsigned numAddress;
      char const * text;
   };
   Case const cases[] = {
       {"0101 000a 0001 0a000001 0a000002", LdpStatusCode::success, 2, "LdpAddressListTlv( 10.0.0.1, 2, ... )"},
       {"0101 0006 0001 c0a80001", LdpStatusCode::success, 1, "LdpAddressListTlv( 192.168.0.1, 1 )"},
       {"0101 0009 0001 0a000001 0a0000", LdpStatusCode::malformedTlv, 0, "LdpAddressListTlv( Invalid TLV )"},
       {"0101 0002 0001", LdpStatusCode::malformedTlv, 0, "LdpAddressListTlv( Invalid TLV )"},
       // The family is checked before the count.
       {"0101 0006 0003 0a000001", LdpStatusCode::unsupportedAddressFamily, 0, "LdpAddressListTlv( Invalid TLV )"},
       {"0101 0009 0003 0a000001 0a0000", LdpStatusCode::unsupportedAddressFamily, 0,
        "LdpAddressListTlv( Invalid TLV )"},
       {"0101 0012 0002 20010db8 00000000 00000000 00000001", LdpStatusCode::success, 1,
        "LdpAddressListTlv( 2001:db8::1, 1 )"},
       {"0101 0006 0002 0a000001", LdpStatusCode::malformedTlv, 0, "LdpAddressListTlv( Invalid TLV )"},
       // Too short to hold the family: nothing past the header is read.
       {"0101 0000", LdpStatusCode::malformedTlv, 0, "LdpAddressListTlv( Invalid TLV )"},
       {"0101 0001 00", LdpStatusCode::malformedTlv, 0, "LdpAddressListTlv( Invalid TLV )"},
       // The header comes first; the text form does not depend on validate().
       {"0102 0006 0003 0a000001", LdpStatusCode::unknownTlv, 0, "LdpAddressListTlv( Invalid TLV )"},
       {"8102 0006 0001 0a000001", LdpStatusCode::unknownMessageTypeIgnore, 1, "LdpAddressListTlv( 10.0.0.1, 1 )"},
       {"8102 0000", LdpStatusCode::unknownMessageTypeIgnore, 0, "LdpAddressListTlv( Invalid TLV )"},
   };
   for (auto const & c : cases) {
      SCOPED_TRACE(c.hex);
      ExactBuf b(c.hex);
      auto const & t = b.as<LdpAddressListTlv>();
      EXPECT_EQ(t.validate(), c.expected);
      EXPECT_EQ(t.numAddress(), c.numAddress);
      EXPECT_EQ(t.stringValue(), c.text);
   }
}

TEST(LdpAddressListTlv, AddressOffsets) {
   ExactBuf v4("0101 000e 0001 0a000001 0a000002 0a000003");
   auto const & t4 = v4.as<LdpAddressListTlv>();
   EXPECT_EQ(t4.family(), Vorin::ipv4_);
   EXPECT_EQ(t4.address(0), Vorin::IpGenAddr(Vorin::IpAddr(10, 0, 0, 1)));
   EXPECT_EQ(t4.address(2), Vorin::IpGenAddr(Vorin::IpAddr(10, 0, 0, 3)));

   ExactBuf v6("0101 0022 0002 20010db8 00000000 00000000 00000001 20010db8 00000000 00000000 00000002");
   auto & t6 = v6.as<LdpAddressListTlv>();
   EXPECT_EQ(t6.numAddress(), 2u);
   EXPECT_EQ(t6.address(0), Vorin::IpGenAddr::fromString("2001:db8::1"));
   EXPECT_EQ(t6.address(1), Vorin::IpGenAddr::fromString("2001:db8::2"));
   EXPECT_EQ(t6.stringValue(), "LdpAddressListTlv( 2001:db8::1, 2, ... )");

   t6.familyIs(Vorin::ipv4_);
   EXPECT_EQ(v6.hex().substr(0, 12), "010100220001");
   EXPECT_EQ(t6.numAddress(), 8u);
}

TEST(LdpTlvViewDeathTest, IndexAndFamilyAssertions) {
   ExactBuf pv("0104 0008 0a000001 0a000002");
   EXPECT_DEATH(pv.as<LdpPathVectorTlv>().lsrIdIs(2, Vorin::IpAddr()), literal("i < lsrIdNum()"));
   ExactBuf two("0101 000a 0001 0a000001 0a000002");
   EXPECT_DEATH((void)two.as<LdpAddressListTlv>().address(2), literal("offset < numAddress()"));
   ExactBuf v6("0101 0012 0002 20010db8 00000000 00000000 00000001");
   EXPECT_DEATH((void)v6.as<LdpAddressListTlv>().address(1), literal("offset < numAddress()"));
   ExactBuf empty("0101 0000");
   EXPECT_DEATH((void)empty.as<LdpAddressListTlv>().address(0), literal("offset < numAddress()"));
   ExactBuf family3("0101 0006 0003 0a000001");
   EXPECT_DEATH((void)family3.as<LdpAddressListTlv>().address(0), literal("family() == Vorin::ipv4_"));
}

// ---- capability parameter -------------------------------------------------------

TEST(LdpCapabilityParameterTlv, StateBitAndText) {
   ExactBuf b("0506 0001 80");
   auto & t = b.as<LdpCapabilityParameterTlv>();
   EXPECT_TRUE(t.state());
   EXPECT_EQ(t.validate(), LdpStatusCode::success);
   EXPECT_EQ(t.stringValue(), "LdpCapabilityParameterTlv(dynamicCapabilityTlv): S(1)");
   EXPECT_EQ(t.stateBit().stringValue(), "Value('Ldp::LdpStateBit', ** {'v0': 128})");

   LdpStateBit s(0xFF);
   s.stateIs(2);
   EXPECT_EQ(s.value(), 0x7F);
   s.stateIs(1);
   EXPECT_EQ(s.value(), 0xFF);

   ExactBuf empty("050b 0000");
   EXPECT_EQ(empty.as<LdpCapabilityParameterTlv>().validate(), LdpStatusCode::badTlvLength);
   EXPECT_EQ(empty.as<LdpCapabilityParameterTlv>().stringValue(), "Error LdpCapabilityParameterTlv: badTlvLength");
   ExactBuf unknown("0505 0001 80");
   EXPECT_EQ(unknown.as<LdpCapabilityParameterTlv>().validate(), LdpStatusCode::unknownTlv);
}

} // namespace
