// The TLV parsers: fields read in place at an offset, the bounds of the header
// views, and the in-place status bit setters.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "ldp/parser/LdpTlvParser.h"
#include "support/Hex.h"

using namespace Ldp;
using TestSupport::hexPkt;
using TestSupport::toHex;
using Code = LdpStatusCode;

namespace {

TEST(LdpTlvParser, HeaderFieldsWithUAndFBits) {
   // Two bytes of something else, then an IPv4 transport address TLV with U and F set.
   auto pkt = hexPkt("abab | c401 0004 0a000001");
   auto p = ldpTlvParserFactory(pkt, 2);
   ASSERT_NE(p->header(), nullptr);
   EXPECT_EQ(p->pkt(), pkt);
   EXPECT_EQ(p->offset(), 2u);
   EXPECT_EQ(p->type(), LdpTlvType::ipv4TransportAddrTlv);
   EXPECT_TRUE(p->unknown());
   EXPECT_TRUE(p->forwardUnknown());
   EXPECT_EQ(p->length(), 4);

   auto plain = ldpTlvParserFactory(hexPkt("0402 0004 00000007"), 0);
   EXPECT_EQ(plain->type(), LdpTlvType::configSeqNumTlv);
   EXPECT_FALSE(plain->unknown());
   EXPECT_FALSE(plain->forwardUnknown());
}

TEST(LdpTlvParser, NoHeaderWhenItsBytesWereNotReceived) {
   for (std::uint32_t offset : {0u, 1u, 3u, 9u}) {
      auto p = ldpTlvParserFactory(hexPkt("c401 00"), offset);
      EXPECT_EQ(p->header(), nullptr) << offset;
      EXPECT_EQ(p->type(), LdpTlvType(0)) << offset;
      EXPECT_FALSE(p->unknown()) << offset;
      EXPECT_FALSE(p->forwardUnknown()) << offset;
      EXPECT_EQ(p->length(), 0) << offset;
   }
}

TEST(LdpTlvParser, TypedFieldsAreReadInHostOrder) {
   auto hello = ldpCommonHelloTlvParserFactory(hexPkt("0400 0004 002d 8000"), 0);
   EXPECT_EQ(hello->holdTime(), 45);
   EXPECT_TRUE(hello->targetedHello());
   EXPECT_FALSE(hello->requestSendTargetedHello());
   EXPECT_EQ(hello->stringValue(), "CommonHelloTlv: HT(45),1,0");
   auto request = ldpCommonHelloTlvParserFactory(hexPkt("0400 0004 002d 4000"), 0);
   EXPECT_FALSE(request->targetedHello());
   EXPECT_TRUE(request->requestSendTargetedHello());

   // As sent by a router: version 1, keepalive 30, D set, path vector limit 32.
   auto session = ldpCommonSessionParamTlvParserFactory(hexPkt("0500 000e 0001 001e 4020 1000 c0a80001 0002"), 0);
   EXPECT_EQ(session->protocolVersion(), 1);
   EXPECT_EQ(session->keepAliveTime(), 30);
   EXPECT_EQ(session->maxPduLength(), 4096);
   EXPECT_EQ(session->recvLdpIdentifier().stringValue(), "192.168.0.1:2");
   EXPECT_EQ(session->validate(), Code::success);
   EXPECT_EQ(session->stringValue(), "LdpCommonSessionParamTlv: KA(30), A(0), D(1), PduLen(4096), 192.168.0.1:2");

   auto reqId = ldpLabelReqMsgIdTlvParserFactory(hexPkt("0600 0004 8000002a"), 0);
   EXPECT_EQ(reqId->reqMsgId(), 0x8000002au);
   auto seq = ldpConfigSeqNumTlvParserFactory(hexPkt("0402 0004 01020304"), 0);
   EXPECT_EQ(seq->configSeqNum(), 0x01020304u);
   auto pv = ldpPathVectorTlvParserFactory(hexPkt("0104 0008 0a000001 0a000002"), 0);
   EXPECT_EQ(pv->lsrIdNum(), 2u);
   EXPECT_EQ(pv->stringValue(), "LdpPathVectorTlv: [10.0.0.1, 10.0.0.2]");
   auto hops = ldpHopCountTlvParserFactory(hexPkt("0103 0001 05"), 0);
   EXPECT_EQ(hops->stringValue(), "LdpHopCountTlv: 5");
   auto label = ldpGenLabelTlvParserFactory(hexPkt("0200 0004 fff00010"), 0);
   EXPECT_EQ(label->stringValue(), "GenLabelTlv: L(16)");
   auto v4 = ldpIpTransportAddrTlvParserFactory(hexPkt("0401 0004 c0a80002"), 0);
   EXPECT_EQ(v4->stringValue(), "192.168.0.2");
   auto v6 = ldpIp6TransportAddrTlvParserFactory(hexPkt("0403 0010 20010db8 00000000 00000000 00000001"), 0);
   EXPECT_EQ(v6->stringValue(), "2001:db8::1");

   auto list = ldpAddressListTlvParserFactory(hexPkt("0101 000a 0001 0a000001 c0a80102"), 0);
   EXPECT_EQ(list->family(), 1);
   EXPECT_EQ(list->numAddress(), 2u);
   EXPECT_EQ(list->address(1).stringValue(), "192.168.1.2");
   EXPECT_EQ(list->stringValue(), "LdpAddressListTlv( 10.0.0.1, 2, ... )");
}

TEST(LdpTlvParser, StatusWordBits) {
   // E set, F clear, status data 1 (badLdpId); message 0x11223344 of type Init.
   auto pkt = hexPkt("0300 000a 80000001 11223344 0200");
   auto s = ldpStatusTlvParserFactory(pkt, 0);
   EXPECT_TRUE(s->statusError());
   EXPECT_FALSE(s->statusForwardUnknown());
   EXPECT_EQ(s->statusData(), Code::badLdpId);
   EXPECT_EQ(s->msgId(), 0x11223344u);
   EXPECT_EQ(s->msgType(), LdpMsgType::LdpInit);
   EXPECT_EQ(s->stringValue(), "StatusTlv(badLdpId): LdpInit:287454020 u(0), fu(0), e(1), efu(0)");

   // The setters write the buffer in place, take the low bit of the argument and
   // keep the other 31 bits of the status word.
   s->statusForwardUnknownIs(3);
   EXPECT_EQ(toHex(pkt->bytes()), "0300000ac0000001112233440200");
   s->statusErrorIs(2);
   EXPECT_EQ(toHex(pkt->bytes()), "0300000a40000001112233440200");
   EXPECT_FALSE(s->statusError());
   EXPECT_TRUE(s->statusForwardUnknown());
   EXPECT_EQ(s->statusData(), Code::badLdpId);
   s->statusForwardUnknownIs(0);
   EXPECT_EQ(toHex(pkt->bytes()), "0300000a00000001112233440200");

   // Without the view the setters write nothing.
   auto cut = hexPkt("0300 000a 80000001 1122");
   auto t = ldpStatusTlvParserFactory(cut, 0);
   t->statusErrorIs(0);
   t->statusForwardUnknownIs(1);
   EXPECT_EQ(toHex(cut->bytes()), "0300000a800000011122");
}

// What a typed parser says about the TLV it was built on.
struct Seen {
   bool header;
   bool header2;
   Code code;
   std::string text;
};

template <typename P>
Seen seen(Zon::Ptr<P> const & p) {
   return {p->header() != nullptr, p->header2() != nullptr, p->validate(), p->stringValue()};
}

struct ViewCase {
   char const * name;
   std::function<Seen()> parse;
   Seen expected;
};

// The packets end exactly where the hex ends, so a read past them is caught by
// AddressSanitizer.
TEST(LdpTlvParser, ViewsExistOnlyOverReceivedBytes) {
   ViewCase const cases[] = {
       {"hello, whole", [] { return seen(ldpCommonHelloTlvParserFactory(hexPkt("0400 0004 000f 0000"), 0)); },
        {true, true, Code::success, "CommonHelloTlv: HT(15),0,0"}},
       {"hello, value cut short", [] { return seen(ldpCommonHelloTlvParserFactory(hexPkt("0400 0004 000f 00"), 0)); },
        {true, false, Code::badTlvLength, ""}},
       {"hello, header cut short", [] { return seen(ldpCommonHelloTlvParserFactory(hexPkt("0400 00"), 0)); },
        {false, false, Code::success, ""}},
       {"hello, length 2 received whole",
        [] { return seen(ldpCommonHelloTlvParserFactory(hexPkt("0400 0002 000f | 0401 0004 0a000001"), 0)); },
        {true, false, Code::badTlvLength, "Error LdpCommonHelloTlv: badTlvLength"}},
       {"hello, length 6 covers the value type",
        [] { return seen(ldpCommonHelloTlvParserFactory(hexPkt("0400 0006 000f 0000 0000"), 0)); },
        {true, true, Code::badTlvLength, "Error LdpCommonHelloTlv: badTlvLength"}},
       {"hello, length 0xFFFC claims more than was received",
        [] { return seen(ldpCommonHelloTlvParserFactory(hexPkt("0400 fffc 000f 0000"), 0)); },
        {true, false, Code::badTlvLength, ""}},
       {"session parameters, length 2",
        [] { return seen(ldpCommonSessionParamTlvParserFactory(hexPkt("0500 0002 0001"), 0)); },
        {true, false, Code::badTlvLength, "Error LdpCommonSessionParamTlv: badTlvLength"}},
       {"session parameters, keepalive 2",
        [] {
           return seen(ldpCommonSessionParamTlvParserFactory(hexPkt("0500 000e 0001 0002 0000 0000 0a000001 0000"), 0));
        },
        {true, true, Code::sessionRejectBadKeepAliveTime,
         "Error LdpCommonSessionParamTlv: sessionRejectBadKeepAliveTime"}},
       {"address list, length 1 has no family",
        [] { return seen(ldpAddressListTlvParserFactory(hexPkt("0101 0001 00"), 0)); },
        {true, false, Code::malformedTlv, "LdpAddressListTlv( Invalid TLV )"}},
       {"address list, family 3",
        [] { return seen(ldpAddressListTlvParserFactory(hexPkt("0101 0006 0003 0a000001"), 0)); },
        {true, true, Code::unsupportedAddressFamily, "LdpAddressListTlv( Invalid TLV )"}},
       {"address list, addresses cut short",
        [] { return seen(ldpAddressListTlvParserFactory(hexPkt("0101 000a 0001 0a000001 0a"), 0)); },
        {true, false, Code::badTlvLength, ""}},
       {"hop count, length 0", [] { return seen(ldpHopCountTlvParserFactory(hexPkt("0103 0000"), 0)); },
        {true, false, Code::badTlvLength, "Error LdpHopCountTlv: badTlvLength"}},
       {"path vector, length 0", [] { return seen(ldpPathVectorTlvParserFactory(hexPkt("0104 0000"), 0)); },
        {true, true, Code::badTlvLength, "Error LdpPathVectorTlv: badTlvLength"}},
       {"path vector, ids cut short",
        [] { return seen(ldpPathVectorTlvParserFactory(hexPkt("0104 0008 0a000001 0a00"), 0)); },
        {true, false, Code::badTlvLength, ""}},
       {"status, length 12",
        [] { return seen(ldpStatusTlvParserFactory(hexPkt("0300 000c 00000000 00000000 0000 0000"), 0)); },
        {true, true, Code::badTlvLength, "Error LdpStatusTlv: badTlvLength"}},
       {"ipv6 transport, length 4",
        [] { return seen(ldpIp6TransportAddrTlvParserFactory(hexPkt("0403 0004 0a000001"), 0)); },
        {true, false, Code::badTlvLength, "Error Ip6TransportAddrTlv: badTlvLength"}},
       {"offset past the bytes", [] { return seen(ldpGenLabelTlvParserFactory(hexPkt("0200 0004 00000010"), 9)); },
        {false, false, Code::success, ""}},
   };
   for (auto const & c : cases) {
      Seen const s = c.parse();
      EXPECT_EQ(s.header, c.expected.header) << c.name;
      EXPECT_EQ(s.header2, c.expected.header2) << c.name;
      EXPECT_EQ(s.code, c.expected.code) << c.name;
      EXPECT_EQ(s.text, c.expected.text) << c.name;
   }
}

TEST(LdpTlvParser, AccessorsAnswerZeroWithoutTheView) {
   auto hello = ldpCommonHelloTlvParserFactory(hexPkt("0400 0004 ffff ff"), 0);
   EXPECT_EQ(hello->holdTime(), 0);
   EXPECT_FALSE(hello->targetedHello());
   EXPECT_FALSE(hello->requestSendTargetedHello());
   auto session = ldpCommonSessionParamTlvParserFactory(hexPkt("0500 000e 0001 001e 4020 1000 c0a80001 00"), 0);
   EXPECT_EQ(session->protocolVersion(), 0);
   EXPECT_EQ(session->keepAliveTime(), 0);
   EXPECT_EQ(session->maxPduLength(), 0);
   EXPECT_EQ(session->recvLdpIdentifier(), LdpIdentifier());
   auto status = ldpStatusTlvParserFactory(hexPkt("0300 000a ffffffff ffffffff ff"), 0);
   EXPECT_FALSE(status->statusError());
   EXPECT_FALSE(status->statusForwardUnknown());
   EXPECT_EQ(status->statusData(), Code::success);
   EXPECT_EQ(status->msgId(), 0u);
   EXPECT_EQ(status->msgType(), LdpMsgType(0));
   EXPECT_EQ(ldpLabelReqMsgIdTlvParserFactory(hexPkt("0600 0004 ffff"), 0)->reqMsgId(), 0u);
   EXPECT_EQ(ldpConfigSeqNumTlvParserFactory(hexPkt("0402 0004 ffff"), 0)->configSeqNum(), 0u);
   EXPECT_EQ(ldpPathVectorTlvParserFactory(hexPkt("0104 0004 ffff"), 0)->lsrIdNum(), 0u);
   auto list = ldpAddressListTlvParserFactory(hexPkt("0101 0006 0001 ffff"), 0);
   EXPECT_EQ(list->family(), 0);
   EXPECT_EQ(list->numAddress(), 0u);
   EXPECT_EQ(list->address(0), Vorin::IpGenAddr());
}

TEST(LdpTlvParserDeath, NullPacket) {
   EXPECT_DEATH(ldpTlvParserFactory(Zon::Ptr<Vorin::Pkt>(), 0), "\npkt_\n");
}

} // namespace
