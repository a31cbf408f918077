// Round trips through the PDU writer and the parsers: for every message kind the
// writer builds a PDU, the PDU and message parsers read it back, and every field
// written comes back equal.
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "ldp/parser/LdpCapabilityParser.h"
#include "ldp/parser/LdpFecTlvParser.h"
#include "ldp/parser/LdpLabelMsgParser.h"
#include "ldp/parser/LdpPduParser.h"
#include "ldp/parser/LdpPwGenMsgParser.h"
#include "ldp/parser/LdpSessionMsgParser.h"
#include "ldp/parser/LdpTlvParser.h"
#include "ldp/wire/LdpPduWriter.h"
#include "ldp/wire/LdpPwHdr.h"

using namespace Ldp;
using Vorin::IpAddr;
using Vorin::IpGenAddr;
using Vorin::IpGenPrefix;
using PwType = Pseudowire::PseudowireType;

namespace {

LdpIdentifier const sender(IpAddr(10, 0, 0, 1), 0);
LdpIdentifier const receiver(IpAddr(10, 0, 0, 2), 3);
std::uint32_t const msgId = 0x01020304;

IpGenPrefix prefix(char const * text) { return IpGenPrefix::fromString(text); }
IpGenAddr addr(char const * text) { return IpGenAddr::fromString(text); }

// The FEC TLVs the label messages carry.
void prefixFec(LdpPduWriter & w) {
   w.tlvBegin(LdpTlvType::fecTlv);
   w.prefixElement(prefix("10.1.0.0/16"));
   w.prefixElement(prefix("2001:db8:1::/48"));
   w.prefixElement(prefix("0.0.0.0/0"));
   w.hostAddrElement(addr("10.9.9.9"));
   w.hostAddrElement(addr("2001:db8::9"));
   w.end();
}
void wildcardFec(LdpPduWriter & w) {
   w.tlvBegin(LdpTlvType::fecTlv);
   w.wildcardElement();
   w.end();
}
// PW type 5 with the C bit, group 7, PW id 100 and all five sub-TLVs.
void pwFec(LdpPduWriter & w) {
   w.tlvBegin(LdpTlvType::fecTlv);
   w.pwIdElementBegin(PwType::ethernet, true, 7, 100);
   w.pwMtuSubTlv(1500);
   w.pwDescriptionSubTlv("ge-0/0/1 to R2");
   w.pwRequestedVlanIdSubTlv(100);
   w.pwFragIndicatorSubTlv(0x8000);
   w.pwVccvSubTlv(0x03, 0x02);
   w.end();
   w.end();
}

void expectPrefixFec(LdpFecTlvParser const & f) {
   ASSERT_TRUE(f.valid()) << f.reason();
   ASSERT_EQ(f.fecElementNum(), 5u);
   std::vector<IpGenPrefix> const want = {prefix("10.1.0.0/16"), prefix("2001:db8:1::/48"), prefix("0.0.0.0/0"),
                                          prefix("10.9.9.9/32"), prefix("2001:db8::9/128")};
   for (std::uint32_t i = 0; i < 5; ++i) {
      auto const e = f.fecElement(i);
      EXPECT_EQ(e->type(), i < 3 ? LdpFecElementType::prefixElement : LdpFecElementType::hostAddrElement);
      EXPECT_EQ(e->fwdEqvCls().prefix(), want[i]) << i;
   }
}
void expectWildcardFec(LdpFecTlvParser const & f) {
   ASSERT_TRUE(f.valid()) << f.reason();
   ASSERT_EQ(f.fecElementNum(), 1u);
   EXPECT_TRUE(f.hasWildcardFecElement());
   EXPECT_EQ(f.fecElement(0)->type(), LdpFecElementType::wildcardElement);
}
void expectPwFec(LdpFecTlvParser const & f) {
   ASSERT_TRUE(f.valid()) << f.reason();
   ASSERT_EQ(f.fecElementNum(), 1u);
   auto const & pw = f.fecElement(0)->pwFwdEqvCls();
   EXPECT_EQ(pw.pwType(), PwType::ethernet);
   EXPECT_TRUE(pw.controlWord());
   EXPECT_EQ(pw.groupId().value(), 7u);
   EXPECT_EQ(pw.pwId().value(), 100u);
   EXPECT_EQ(pw.params().mtu(), 1500);
   EXPECT_EQ(std::string(pw.params().intfDescription()), "ge-0/0/1 to R2");
   EXPECT_EQ(pw.params().requestedVlanId().value(), 100);
   EXPECT_TRUE(pw.params().fragCapable());
   EXPECT_EQ(pw.params().vccvCcTypes(), 0x03);
   EXPECT_EQ(pw.params().vccvCvTypes(), 0x02);
}

using Pkt = Zon::Ptr<Vorin::Pkt>;

struct RoundTrip {
   char const * name;
   LdpMsgType type;
   std::function<void(LdpPduWriter &)> tlvs;                     // the message's TLVs
   std::function<void(Pkt const &, std::uint32_t offset)> check;  // parses the message and checks it
};

template <typename P>
void expectValid(P const & p) {
   ASSERT_TRUE(p.validMsg()) << p.reason();
   ASSERT_NE(p.msgHdr(), nullptr);
   EXPECT_EQ(p.msgHdr()->msgId(), msgId);
}

std::vector<RoundTrip> const roundTrips = {
    {"helloIpv4", LdpMsgType::LdpHello,
     [](LdpPduWriter & w) {
        w.commonHelloTlv(45, true, true);
        w.ipv4TransportTlv(IpAddr(10, 0, 0, 1));
        w.configSeqNumTlv(77);
     },
     [](Pkt const & pkt, std::uint32_t at) {
        auto p = ldpHelloMsgParserFactory(pkt, at);
        expectValid(*p);
        ASSERT_NE(p->msgCommonHelloTlv(), nullptr);
        EXPECT_EQ(p->msgCommonHelloTlv()->holdTime(), 45);
        EXPECT_TRUE(p->msgCommonHelloTlv()->targetedHello());
        EXPECT_TRUE(p->msgCommonHelloTlv()->requestSendTargetedHello());
        ASSERT_NE(p->msgIpTransportTlv(), nullptr);
        EXPECT_EQ(p->msgIpTransportTlv()->ipAddr(), IpAddr(10, 0, 0, 1));
        ASSERT_NE(p->msgConfigSeqTlv(), nullptr);
        EXPECT_EQ(p->msgConfigSeqTlv()->configSeqNum(), 77u);
     }},
    {"helloIpv6", LdpMsgType::LdpHello,
     [](LdpPduWriter & w) {
        w.commonHelloTlv(15, false, false);
        w.ipv6TransportTlv(addr("2001:db8::1").v6());
     },
     [](Pkt const & pkt, std::uint32_t at) {
        auto p = ldpHelloMsgParserFactory(pkt, at);
        expectValid(*p);
        EXPECT_EQ(p->msgCommonHelloTlv()->holdTime(), 15);
        EXPECT_FALSE(p->msgCommonHelloTlv()->targetedHello());
        ASSERT_NE(p->msgIp6TransportTlv(), nullptr);
        EXPECT_EQ(p->msgIp6TransportTlv()->ip6Addr(), addr("2001:db8::1").v6());
        EXPECT_EQ(p->msgConfigSeqTlv(), nullptr);
     }},
    {"initialization", LdpMsgType::LdpInit,
     [](LdpPduWriter & w) {
        w.sessionParamTlv(30, 4096, receiver, true, 16, true);
        w.capabilityTlv(LdpTlvType::dynamicCapabilityTlv, true);
        w.capabilityTlv(LdpTlvType::typedWildcardFecCapabilityTlv, true);
     },
     [](Pkt const & pkt, std::uint32_t at) {
        auto p = ldpInitMsgParserFactory(pkt, at);
        expectValid(*p);
        auto const * s = p->msgSessionParamTlv();
        ASSERT_NE(s, nullptr);
        EXPECT_EQ(s->protocolVersion(), 1);
        EXPECT_EQ(s->keepAliveTime(), 30);
        EXPECT_EQ(s->maxPduLength(), 4096);
        EXPECT_EQ(s->recvLdpIdentifier(), receiver);
        EXPECT_TRUE(s->loopDetect());
        EXPECT_TRUE(s->advDiscipline());
        EXPECT_EQ(s->pathVecLim(), 16);
        ASSERT_EQ(p->capabilitiesNum(), 2u);
        ASSERT_NE(p->capabilities(LdpTlvType::dynamicCapabilityTlv), nullptr);
        EXPECT_TRUE(p->capabilities(LdpTlvType::dynamicCapabilityTlv)->state());
        EXPECT_TRUE(p->capabilities(LdpTlvType::dynamicCapabilityTlv)->unknown());
        EXPECT_NE(p->capabilities(LdpTlvType::typedWildcardFecCapabilityTlv), nullptr);
     }},
    {"keepalive", LdpMsgType::LdpKeepAlive, [](LdpPduWriter &) {},
     [](Pkt const & pkt, std::uint32_t at) {
        auto p = ldpMsgParserFactory(pkt, at);
        expectValid(*p);
        EXPECT_EQ(p->msgHdr()->type(), LdpMsgType::LdpKeepAlive);
        EXPECT_EQ(p->msgHdr()->length(), 4);
     }},
    {"capability", LdpMsgType::LdpCapability,
     [](LdpPduWriter & w) { w.capabilityTlv(LdpTlvType::typedWildcardFecCapabilityTlv, false); },
     [](Pkt const & pkt, std::uint32_t at) {
        auto p = ldpCapabilityMsgParserFactory(pkt, at);
        expectValid(*p);
        ASSERT_EQ(p->capabilitiesNum(), 1u);
        ASSERT_NE(p->capabilities(LdpTlvType::typedWildcardFecCapabilityTlv), nullptr);
        EXPECT_FALSE(p->capabilities(LdpTlvType::typedWildcardFecCapabilityTlv)->state());
     }},
    {"addressIpv4", LdpMsgType::LdpAddress,
     [](LdpPduWriter & w) {
        std::array<IpGenAddr, 3> const a = {addr("1.1.1.1"), addr("10.0.12.1"), addr("192.168.255.254")};
        w.addressListTlv(a);
     },
     [](Pkt const & pkt, std::uint32_t at) {
        auto p = ldpAddressMsgParserFactory(pkt, at);
        expectValid(*p);
        auto const & l = *p->addressListTlv();
        EXPECT_EQ(l.family(), Vorin::ipv4_);
        ASSERT_EQ(l.numAddress(), 3u);
        EXPECT_EQ(l.address(0), addr("1.1.1.1"));
        EXPECT_EQ(l.address(2), addr("192.168.255.254"));
     }},
    {"addressWithdrawIpv6", LdpMsgType::LdpAddressWithdraw,
     [](LdpPduWriter & w) {
        std::array<IpGenAddr, 2> const a = {addr("2001:db8::1"), addr("fe80::1")};
        w.addressListTlv(a);
     },
     [](Pkt const & pkt, std::uint32_t at) {
        auto p = ldpAddressWithdrawMsgParserFactory(pkt, at);
        expectValid(*p);
        auto const & l = *p->addressListTlv();
        EXPECT_EQ(l.family(), Vorin::ipv6_);
        ASSERT_EQ(l.numAddress(), 2u);
        EXPECT_EQ(l.address(1), addr("fe80::1"));
     }},
    {"labelMappingPrefixes", LdpMsgType::LdpLabelMapping,
     [](LdpPduWriter & w) {
        prefixFec(w);
        w.genLabelTlv(1048575);
        w.labelReqMsgIdTlv(9);
        w.hopCountTlv(3);
        std::array<IpAddr, 2> const ids = {IpAddr(1, 1, 1, 1), IpAddr(3, 3, 3, 3)};
        w.pathVectorTlv(ids);
     },
     [](Pkt const & pkt, std::uint32_t at) {
        auto p = ldpLabelMappingMsgParserFactory(pkt, at);
        expectValid(*p);
        expectPrefixFec(*p->ldpFecTlvParser());
        EXPECT_EQ(p->msgGenLabelTlv()->label().value(), 1048575u);
        EXPECT_EQ(p->msgReqMsgIdTlv()->reqMsgId(), 9u);
        EXPECT_EQ(p->msgHopCountTlv()->hopCount(), 3);
        ASSERT_EQ(p->msgPathVectorTlv()->lsrIdNum(), 2u);
        EXPECT_EQ(p->msgPathVectorTlv()->lsrId(1), IpAddr(3, 3, 3, 3));
        EXPECT_EQ(p->msgPwStatusTlv(), nullptr);
     }},
    {"labelMappingPw", LdpMsgType::LdpLabelMapping,
     [](LdpPduWriter & w) {
        pwFec(w);
        w.genLabelTlv(24005);
        w.pwStatusTlv(LdpPwStatusField::localACEgrTransFault | LdpPwStatusField::pwNotForwarding);
     },
     [](Pkt const & pkt, std::uint32_t at) {
        auto p = ldpLabelMappingMsgParserFactory(pkt, at);
        expectValid(*p);
        expectPwFec(*p->ldpFecTlvParser());
        EXPECT_EQ(p->msgGenLabelTlv()->label().value(), 24005u);
        ASSERT_NE(p->msgPwStatusTlv(), nullptr);
        EXPECT_EQ(p->msgPwStatusTlv()->status(), 0x5u);
     }},
    {"labelRequest", LdpMsgType::LdpLabelRequest,
     [](LdpPduWriter & w) {
        prefixFec(w);
        w.hopCountTlv(1);
     },
     [](Pkt const & pkt, std::uint32_t at) {
        auto p = ldpLabelRequestMsgParserFactory(pkt, at);
        expectValid(*p);
        expectPrefixFec(*p->ldpFecTlvParser());
        EXPECT_EQ(p->msgHopCountTlv()->hopCount(), 1);
        EXPECT_EQ(p->msgPathVectorTlv(), nullptr);
     }},
    {"labelWithdrawWildcard", LdpMsgType::LdpLabelWithdraw,
     [](LdpPduWriter & w) {
        wildcardFec(w);
        w.genLabelTlv(16);
     },
     [](Pkt const & pkt, std::uint32_t at) {
        auto p = ldpLabelWithdrawMsgParserFactory(pkt, at);
        expectValid(*p);
        expectWildcardFec(*p->ldpFecTlvParser());
        EXPECT_EQ(p->msgGenLabelTlv()->label().value(), 16u);
     }},
    {"labelReleaseWithStatus", LdpMsgType::LdpLabelRelease,
     [](LdpPduWriter & w) {
        pwFec(w);
        w.genLabelTlv(24005);
        w.statusTlv(LdpStatusCode::noRoute, false, true, 7, std::uint16_t(LdpMsgType::LdpLabelRequest));
     },
     [](Pkt const & pkt, std::uint32_t at) {
        auto p = ldpLabelReleaseMsgParserFactory(pkt, at);
        expectValid(*p);
        expectPwFec(*p->ldpFecTlvParser());
        ASSERT_NE(p->msgStatusTlv(), nullptr);
        EXPECT_EQ(p->msgStatusTlv()->statusData(), LdpStatusCode::noRoute);
        EXPECT_TRUE(p->msgStatusTlv()->statusForwardUnknown());
        EXPECT_FALSE(p->msgStatusTlv()->statusError());
        EXPECT_EQ(p->msgStatusTlv()->msgId(), 7u);
        EXPECT_EQ(p->msgStatusTlv()->msgType(), LdpMsgType::LdpLabelRequest);
     }},
    // An unknown TLV with the U and F bits: skipped by the message parser, read
    // back as written by the TLV parser.
    {"labelMappingWithUnknownTlv", LdpMsgType::LdpLabelMapping,
     [](LdpPduWriter & w) {
        prefixFec(w);
        w.genLabelTlv(17);
        std::array<std::uint8_t, 3> const value = {0xAB, 0xCD, 0xEF};
        w.rawTlv(0x8000 | 0x4000 | 0x3E05, value);
     },
     [](Pkt const & pkt, std::uint32_t at) {
        auto p = ldpLabelMappingMsgParserFactory(pkt, at);
        expectValid(*p);
        EXPECT_EQ(p->msgGenLabelTlv()->label().value(), 17u);
        ASSERT_EQ(p->tlvGroupParser()->tlvNum(), 3u);
        std::uint32_t const offset = p->tlvGroupParser()->tlvOffset(2);
        auto t = ldpTlvParserFactory(pkt, offset);
        EXPECT_EQ(static_cast<std::uint16_t>(t->type()), 0x3E05);
        EXPECT_TRUE(t->unknown());
        EXPECT_TRUE(t->forwardUnknown());
        ASSERT_EQ(t->length(), 3u);
        std::uint8_t const * v = pkt->front() + offset + LdpTlvHdr::tlvHdrSizeExclude;
        EXPECT_EQ(std::vector<std::uint8_t>(v, v + 3), (std::vector<std::uint8_t>{0xAB, 0xCD, 0xEF}));
     }},
    {"labelAbortRequest", LdpMsgType::LdpLabelAbortReq,
     [](LdpPduWriter & w) {
        prefixFec(w);
        w.labelReqMsgIdTlv(0xFFFFFFFF);
     },
     [](Pkt const & pkt, std::uint32_t at) {
        auto p = ldpLabelAbortReqMsgParserFactory(pkt, at);
        expectValid(*p);
        expectPrefixFec(*p->ldpFecTlvParser());
        EXPECT_EQ(p->msgReqMsgIdTlv()->reqMsgId(), 0xFFFFFFFFu);
     }},
    {"notificationShutdown", LdpMsgType::LdpNotification,
     [](LdpPduWriter & w) { w.statusTlv(LdpStatusCode::shutdown, true, false, 0, 0); },
     [](Pkt const & pkt, std::uint32_t at) {
        auto p = ldpNotificationMsgParserFactory(pkt, at);
        expectValid(*p);
        ASSERT_NE(p->msgStatusTlv(), nullptr);
        EXPECT_EQ(p->msgStatusTlv()->statusData(), LdpStatusCode::shutdown);
        EXPECT_TRUE(p->msgStatusTlv()->statusError());
        EXPECT_EQ(p->msgStatusTlv()->msgId(), 0u);
        EXPECT_FALSE(p->msgStatusTlv()->statusForwardUnknown());
        EXPECT_EQ(p->msgStatusTlv()->msgType(), LdpMsgType(0));
     }},
    {"notificationPwStatus", LdpMsgType::LdpNotification,
     [](LdpPduWriter & w) {
        w.statusTlv(LdpStatusCode::pwStatus, false, false, 0x11, std::uint16_t(LdpMsgType::LdpLabelMapping));
        w.pwStatusTlv(LdpPwStatusField::localACIngrRecvFault);
        pwFec(w);
     },
     [](Pkt const & pkt, std::uint32_t at) {
        auto p = ldpNotificationMsgParserFactory(pkt, at);
        expectValid(*p);
        EXPECT_EQ(p->msgStatusTlv()->statusData(), LdpStatusCode::pwStatus);
        EXPECT_EQ(p->msgStatusTlv()->msgId(), 0x11u);
        EXPECT_EQ(p->msgStatusTlv()->msgType(), LdpMsgType::LdpLabelMapping);
        ASSERT_NE(p->msgPwStatusTlv(), nullptr);
        EXPECT_EQ(p->msgPwStatusTlv()->status(), LdpPwStatusField::localACIngrRecvFault);
        ASSERT_TRUE(p->ldpFecTlvParser());
        expectPwFec(*p->ldpFecTlvParser());
     }},
};

class WriterRoundTrip : public ::testing::TestWithParam<RoundTrip> {};

TEST_P(WriterRoundTrip, parsesBackEveryField) {
   RoundTrip const & c = GetParam();
   std::array<std::uint8_t, 4096> buf{};
   LdpPduWriter w(buf);
   // Two PDUs back to back: the second one holds the message under test after
   // a Keepalive, so that both message offsets and PDU lengths are exercised.
   w.pduBegin(receiver);
   w.msgBegin(LdpMsgType::LdpKeepAlive, 1);
   w.end();
   w.end();
   std::size_t const second = w.size();
   w.pduBegin(sender);
   w.msgBegin(LdpMsgType::LdpKeepAlive, 2);
   w.end();
   w.msgBegin(c.type, msgId);
   c.tlvs(w);
   w.end();
   w.end();
   ASSERT_TRUE(w.ok());
   ASSERT_EQ(w.depth(), 0u);

   auto pkt = Vorin::Pkt::fromBytes(w.bytes());
   auto first = ldpPduParserFactory(pkt, 0);
   ASSERT_TRUE(first->validLdpPdu()) << first->reason();
   EXPECT_EQ(first->totalLength(), second);
   EXPECT_EQ(first->ldpIdentifier(), receiver);

   auto pdu = ldpPduParserFactory(pkt, static_cast<std::uint32_t>(second));
   ASSERT_TRUE(pdu->validLdpPdu()) << pdu->reason();
   EXPECT_EQ(pdu->version(), 1);
   EXPECT_EQ(pdu->ldpIdentifier(), sender);
   EXPECT_EQ(second + pdu->totalLength(), w.size());
   ASSERT_EQ(pdu->messageNum(), 2u);
   c.check(pkt, pdu->messageOffset(1));
}

INSTANTIATE_TEST_SUITE_P(EveryMessageKind, WriterRoundTrip, ::testing::ValuesIn(roundTrips),
                         [](auto const & info) { return std::string(info.param.name); });

// The Typed Wildcard element is written as its layout says; the parsers do not
// take it, and refuse it as an unknown FEC element rather than misreading it.
TEST(WriterRoundTrip, typedWildcardElementIsRefusedAsUnknownFec) {
   std::array<std::uint8_t, 64> buf{};
   LdpPduWriter w(buf);
   w.tlvBegin(LdpTlvType::fecTlv);
   w.typedWildcardElement(LdpFecElementType::prefixElement, Vorin::ipv6_);
   w.end();
   ASSERT_TRUE(w.ok());
   std::vector<std::uint8_t> const want = {0x01, 0x00, 0x00, 0x05, 0x05, 0x02, 0x02, 0x00, 0x02};
   EXPECT_EQ(std::vector<std::uint8_t>(w.bytes().begin(), w.bytes().end()), want);
   auto fec = ldpFecTlvParserFactory(Vorin::Pkt::fromBytes(w.bytes()), 0);
   EXPECT_EQ(fec->statusCode(), LdpStatusCode::unknownFec);
}

} // namespace
