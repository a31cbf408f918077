// The Hello, Initialization, Capability, Address and Address Withdraw message
// parsers: every prefix of a valid message, the fault of each rule, text forms
// and the assertions that guard the caller's side.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "ldp/parser/LdpMsgParserGet.h"
#include "ldp/parser/LdpPduParser.h"
#include "ldp/parser/LdpSessionMsgParser.h"
#include "support/DeathText.h"
#include "support/Hex.h"
#include "support/MsgFaults.h"
#include "support/Truncation.h"

using namespace Ldp;
using TestSupport::Fragment;
using TestSupport::hexBytes;
using TestSupport::hexPkt;
using TestSupport::Outcome;
using Code = LdpStatusCode;

namespace {

// A message of `type` (4 hex digits) with id 1 around `tlvs`.
std::string message(char const * type, std::string const & tlvs) {
   return TestSupport::messageHex(type, "00000001", tlvs);
}

using TestSupport::literal;

using TestSupport::checkFaults;
using TestSupport::FaultCase;
using TestSupport::outcomeOf;
using TestSupport::viaGet;

// Common hello (hold time 15), IPv4 transport address, configuration sequence
// number 7, and a dual-stack TLV (0x0701 with the U bit) that is skipped.
constexpr char const * helloMsg =
    "0100 0024 00000000 | 0400 0004 000f 0000 | 0401 0004 c0a80002 | 0402 0004 00000007 | 8701 0004 40000000";
// Session parameters (keepalive 30, D set, path vector limit 32) and a typed
// wildcard FEC capability, as a router sent them.
constexpr char const * initMsg =
    "0200 001b 00000001 | 0500 000e 0001 001e 4020 0000 c0a80001 0000 | 850b 0001 80";
// Dynamic capability, then multi-topology with two bytes of data.
constexpr char const * capabilityMsg = "0202 0010 00000005 | 8506 0001 80 | 850c 0003 80 0001";
constexpr char const * addressMsg = "0300 0012 00000003 | 0101 000a 0001 0a000001 0a000002";
constexpr char const * addressWithdrawMsg =
    "0301 001a 00000004 | 0101 0012 0002 fe800000 00000000 7850c6ff fec00000";

// ---- every prefix ----------------------------------------------------------

std::vector<Fragment> truncation(std::vector<std::string> const & tlvs, std::string const & header) {
   std::vector<Fragment> f{{header, Code::malformedTlv, "MSG too small, size = {n}"}};
   for (auto const & t : tlvs) {
      f.push_back({t, Code::badTlvLength, "Packet is too small, size: {n}"});
   }
   return f;
}

TEST(LdpSessionMsgParser, HelloEveryPrefix) {
   TestSupport::checkEveryPrefix(truncation({"0400 0004 000f 0000", "0401 0004 c0a80002", "0402 0004 00000007",
                                             "8701 0004 40000000"},
                                            "0100 0024 00000000"),
                                 {Code::success, ""}, viaGet);
}

TEST(LdpSessionMsgParser, InitEveryPrefix) {
   // A good Initialization carries the text of its status code as its reason.
   TestSupport::checkEveryPrefix(
       truncation({"0500 000e 0001 001e 4020 0000 c0a80001 0000", "850b 0001 80"}, "0200 001b 00000001"),
       {Code::success, "success"}, viaGet);
}

TEST(LdpSessionMsgParser, CapabilityEveryPrefix) {
   TestSupport::checkEveryPrefix(truncation({"8506 0001 80", "850c 0003 80 0001"}, "0202 0010 00000005"),
                                 {Code::success, ""}, [](auto const & b) {
                                    return outcomeOf(ldpCapabilityMsgParserFactory(Vorin::Pkt::fromBytes(b), 0));
                                 });
}

TEST(LdpSessionMsgParser, AddressEveryPrefix) {
   TestSupport::checkEveryPrefix(truncation({"0101 000a 0001 0a000001 0a000002"}, "0300 0012 00000003"),
                                 {Code::success, ""}, viaGet);
}

TEST(LdpSessionMsgParser, AddressWithdrawEveryPrefix) {
   TestSupport::checkEveryPrefix(
       truncation({"0101 0012 0002 fe800000 00000000 7850c6ff fec00000"}, "0301 001a 00000004"),
       {Code::success, ""}, viaGet);
}

// ---- Hello -----------------------------------------------------------------

constexpr char const * commonHello = "0400 0004 000f 0000 |";
constexpr char const * ipv4Transport = "0401 0004 0a000001 |";
constexpr char const * ipv6Transport = "0403 0010 20010db8 00000000 00000000 00000001 |";

TEST(LdpHelloMsgParser, Faults) {
   std::string const h = commonHello;
   checkFaults(
       {
           {"no TLV", message("0100", ""), Code::missingMessageParams, "Message has 0 TLV"},
           {"common hello second", message("0100", ipv4Transport + h), Code::missingMessageParams,
            "LdpCommonHelloTlv is not the 1st TLV in the message"},
           {"common hello of size 2", message("0100", "0400 0002 000f"), Code::malformedTlv,
            "Invalid size for LdpCommonHelloTlv"},
           {"common hello of size 5", message("0100", "0400 0005 000f 0000 00"), Code::malformedTlv,
            "Invalid size for LdpCommonHelloTlv"},
           {"IPv4 transport of size 5", message("0100", h + "0401 0005 0a000001 00"), Code::malformedTlv,
            "Invalid size for LdpIpTransportAddrTlv"},
           {"configuration sequence number of size 3", message("0100", h + "0402 0003 000007"),
            Code::malformedTlv, "Invalid size for LdpConfigSeqNumTlv"},
           {"IPv6 transport of size 4", message("0100", h + "0403 0004 0a000001"), Code::malformedTlv,
            "Invalid size for LdpIp6TransportAddrTlv"},
           {"IPv6 then IPv4 transport", message("0100", h + ipv6Transport + ipv4Transport), Code::malformedTlv,
            "LdpIpv6TransportAddrTlv already existed"},
           {"IPv4 then IPv6 transport", message("0100", h + ipv4Transport + ipv6Transport), Code::malformedTlv,
            "LdpIpv4TransportAddrTlv already existed"},
           {"size checked before the exclusive pair", message("0100", h + ipv6Transport + "0401 0002 0a00"),
            Code::malformedTlv, "Invalid size for LdpIpTransportAddrTlv"},
           {"first fault ends the walk",
            message("0100", "0400 0002 000f |" + std::string(ipv6Transport) + ipv4Transport), Code::malformedTlv,
            "Invalid size for LdpCommonHelloTlv"},
           {"no common hello", message("0100", ipv4Transport), Code::missingMessageParams,
            "Missing LdpCommonHelloTlv"},
           {"unknown TLV without U", message("0100", h + "3e01 0000"), Code::unknownTlv, "Unknown TLV Type: 15873"},
           {"TLVs of other messages are skipped", message("0100", h + "0200 0004 00000010 | 0101 0000"),
            Code::success, ""},
       },
       [](auto const & pkt) { return outcomeOf(ldpHelloMsgParserFactory(pkt, 0)); });
}

TEST(LdpHelloMsgParser, ViewsAndReplacedTlvs) {
   auto pkt = hexPkt("ffff |" + message("0100", std::string(commonHello) +
                                                   "0402 0004 00000007 | 0402 0004 00000009 | " + ipv4Transport +
                                                   "0401 0004 0a000002"));
   auto p = ldpHelloMsgParserFactory(pkt, 2);
   ASSERT_TRUE(p->validMsg()) << p->reason();
   EXPECT_TRUE(p->initialized());
   EXPECT_STREQ(p->fwkType(), "Ldp::LdpHelloMsgParser");
   EXPECT_EQ(p->msgCommonHelloTlv()->holdTime(), 15);
   // A second TLV of the same type replaces the first view.
   EXPECT_EQ(p->msgConfigSeqTlv()->configSeqNum(), 9u);
   EXPECT_EQ(p->msgIpTransportTlv()->ipAddr().stringValue(), "10.0.0.2");
   EXPECT_EQ(p->msgIp6TransportTlv(), nullptr);
   EXPECT_EQ(reinterpret_cast<std::uint8_t *>(p->msgCommonHelloTlv()), pkt->front() + 10);
}

TEST(LdpHelloMsgParser, TextForms) {
   auto p = ldpMsgParserGet(hexPkt(helloMsg), 0);
   EXPECT_STREQ(p->fwkType(), "Ldp::LdpHelloMsgParser");
   EXPECT_EQ(p->stringValue(),
             "LDP Hello Msg:\n   Msg Id: 0,\n   CommonHelloTlv: HT(15),0,0\n   192.168.0.2\n   ConfigSeqNumTlv: 7");
   auto v6 = ldpHelloMsgParserFactory(hexPkt(message("0100", std::string(commonHello) + ipv6Transport)), 0);
   EXPECT_EQ(v6->stringValue(), "LDP Hello Msg:\n   Msg Id: 1,\n   CommonHelloTlv: HT(15),0,0\n   2001:db8::1");
   auto bad = ldpHelloMsgParserFactory(hexPkt(message("0100", "")), 0);
   EXPECT_EQ(bad->stringValue(), "Invalid LDP Hello Msg: Message has 0 TLV");
}

TEST(LdpHelloMsgParser, PduTextFromACapturedHello) {
   // A UDP hello as a router sent it: one message at offset 10.
   auto pkt = hexPkt("0001 0026 c0a80002 0000 | 0100 001c 00000000 | 0400 0004 000f 0000 | 0401 0004 c0a80002 |"
                     "8701 0004 40000000");
   auto pdu = ldpPduParserFactory(pkt, 0);
   ASSERT_TRUE(pdu->validLdpPdu());
   EXPECT_EQ(pdu->stringValue(), "LdpPduHdr: Ver(1),Len(38),LdpId: 192.168.0.2:0\n"
                                 "0: LDP Hello Msg:\n   Msg Id: 0,\n   CommonHelloTlv: HT(15),0,0\n   192.168.0.2\n");
}

// ---- Initialization --------------------------------------------------------

constexpr char const * sessionParams = "0500 000e 0001 001e 4020 1000 0a000001 0000 |";

TEST(LdpInitMsgParser, Faults) {
   std::string const s = sessionParams;
   checkFaults(
       {
           {"no TLV", message("0200", ""), Code::missingMessageParams, "Missing CommonSessionParam TLV"},
           {"another TLV first", message("0200", ipv4Transport + s), Code::missingMessageParams,
            "1st TLV is not commonSessionParam TLV"},
           {"capability first", message("0200", "8506 0001 80 |" + s), Code::missingMessageParams,
            "1st TLV is not commonSessionParam TLV"},
           {"second session parameters", message("0200", s + s), Code::missingMessageParams,
            "CommonSessionParamTlv is not the 1st TLV in the message"},
           {"session parameters of size 13", message("0200", "0500 000d 0001 001e 4020 1000 0a000001 00"),
            Code::malformedTlv, "LdpCommonSessionParamTlv TLV is not the right size"},
           {"version 2", message("0200", "0500 000e 0002 001e 4020 1000 0a000001 0000"), Code::badVersion,
            "badVersion"},
           {"keepalive 2", message("0200", "0500 000e 0001 0002 4020 1000 0a000001 0000"),
            Code::sessionRejectBadKeepAliveTime, "sessionRejectBadKeepAliveTime"},
           {"maximum PDU 9601", message("0200", "0500 000e 0001 001e 4020 2581 0a000001 0000"),
            Code::rejectMaxPduLength, "rejectMaxPduLength"},
           {"capability before the session parameters are looked at", message("0200", "8506 0002 8000"),
            Code::malformedTlv, "dynamicCapabilityTlv TLV is not the right size"},
           {"capability fault wins over a session parameter fault",
            message("0200", "0500 000e 0001 0002 4020 1000 0a000001 0000 | 8506 0002 8000"), Code::malformedTlv,
            "dynamicCapabilityTlv TLV is not the right size"},
           {"unknown TLV with U is skipped", message("0200", s + "bf01 0000"), Code::success, "success"},
       },
       [](auto const & pkt) { return outcomeOf(ldpInitMsgParserFactory(pkt, 0)); });
}

TEST(LdpInitMsgParser, ViewsAndTextForms) {
   auto pkt = hexPkt(initMsg);
   auto p = ldpMsgParserGet(pkt, 0);
   ASSERT_STREQ(p->fwkType(), "Ldp::LdpInitMsgParser");
   auto init = Zon::ptrCast<LdpInitMsgParser>(p);
   EXPECT_TRUE(init->initialized());
   EXPECT_EQ(init->msgSessionParamTlv()->keepAliveTime(), 30);
   EXPECT_EQ(reinterpret_cast<std::uint8_t *>(init->msgSessionParamTlv()), pkt->front() + 8);
   ASSERT_EQ(init->capabilitiesNum(), 1u);
   EXPECT_TRUE(init->capabilities(LdpTlvType::typedWildcardFecCapabilityTlv)->state());
   EXPECT_EQ(p->stringValue(),
             "LDP Init Msg:\n   Msg Id: 1,\n   LdpCommonSessionParamTlv: KA(30), A(0), D(1), PduLen(0), "
             "192.168.0.1:0\n   LdpCapabilityParameterTlv(typedWildcardFecCapabilityTlv): S(1)");
   auto bad = ldpInitMsgParserFactory(hexPkt(message("0200", "0500 000e 0001 0002 4020 1000 0a000001 0000")), 0);
   EXPECT_EQ(bad->stringValue(), "Invalid LDP Init Msg: sessionRejectBadKeepAliveTime");
}

// ---- Capability ------------------------------------------------------------

TEST(LdpCapabilityMsgParser, ServedByTheBaseParserThroughGet) {
   // A wrong-sized capability: only the Capability parser looks at it.
   auto pkt = hexPkt(message("0202", "850a 0002 8000"));
   auto base = ldpMsgParserGet(pkt, 0);
   EXPECT_STREQ(base->fwkType(), "Ldp::LdpMsgParser");
   EXPECT_TRUE(base->validMsg());
   auto p = ldpCapabilityMsgParserFactory(pkt, 0);
   EXPECT_TRUE(p->initialized());
   EXPECT_EQ(p->statusCode(), Code::malformedTlv);
   EXPECT_EQ(p->reason(), "mbbCapabilityTlv TLV is not the right size");
   EXPECT_EQ(p->stringValue(), "Invalid LDP Capability Msg: mbbCapabilityTlv TLV is not the right size");
}

TEST(LdpCapabilityMsgParser, TextForm) {
   auto p = ldpCapabilityMsgParserFactory(hexPkt(capabilityMsg), 0);
   EXPECT_STREQ(p->fwkType(), "Ldp::LdpCapabilityMsgParser");
   EXPECT_EQ(p->stringValue(), "LDP Capability Msg:\n   Msg Id: 5,\n"
                               "   LdpCapabilityParameterTlv(dynamicCapabilityTlv): S(1)\n"
                               "   LdpCapabilityParameterTlv(multiTopologyCapabilityTlv): S(1)");
}

// ---- Address and Address Withdraw ------------------------------------------

TEST(LdpAddressMsgParser, FaultsOfBothTypes) {
   for (char const * type : {"0300", "0301"}) {
      SCOPED_TRACE(type);
      checkFaults(
          {
              {"no TLV", message(type, ""), Code::missingMessageParams, "Message does not have at least 1 TLV"},
              {"address list second", message(type, std::string(ipv4Transport) + "0101 0006 0001 0a000001"),
               Code::missingMessageParams, "AddressListTlv is not the 1st TLV in the message"},
              {"no address list", message(type, ipv4Transport), Code::missingMessageParams,
               "Missing LdpAddressListTlv"},
              {"family 3", message(type, "0101 0006 0003 0a000001"), Code::unsupportedAddressFamily,
               "unsupportedAddressFamily"},
              {"IPv4 list of length 9", message(type, "0101 0009 0001 0a000001 0a0000"), Code::malformedTlv,
               "malformedTlv"},
              {"IPv6 list of length 6", message(type, "0101 0006 0002 0a000001"), Code::malformedTlv,
               "malformedTlv"},
              {"length 1 holds no family", message(type, "0101 0001 00"), Code::malformedTlv, "malformedTlv"},
              {"length 0", message(type, "0101 0000"), Code::malformedTlv, "malformedTlv"},
              // 0xFFFE + 4 wraps the group parser's item size to 2, which the
              // message's length covers; the TLV header's other two bytes lie
              // behind the message.
              {"length claims bytes never received", std::string(type) + "0006 00000001 0101 fffe",
               Code::badTlvLength, "badTlvLength"},
              {"two lists", message(type, "0101 0006 0001 0a000001 | 0101 0006 0001 0a000002"),
               Code::missingMessageParams, "AddressListTlv is not the 1st TLV in the message"},
              {"unknown TLV with U is skipped", message(type, "0101 0006 0001 0a000001 | bf01 0000"), Code::success,
               ""},
          },
          [](auto const & pkt) { return outcomeOf(ldpMsgParserGet(pkt, 0)); });
   }
}

TEST(LdpAddressMsgParser, ListReferencesThePacket) {
   // An Address message from a capture, behind its PDU header.
   auto pkt = hexPkt("0001 0038 c0a80002 0000 | 0300 002e 00000003 | 0101 0026 0001 1a000002 0c000002 17000002 "
                     "c0a80002 c0a80102 c0a80202 c0a80302 c0a80402 c0a80502");
   auto pdu = ldpPduParserFactory(pkt, 0);
   ASSERT_TRUE(pdu->validLdpPdu());
   auto p = ldpMsgParserGet(pkt, pdu->messageOffset(0));
   ASSERT_STREQ(p->fwkType(), "Ldp::LdpAddressMsgParser");
   auto a = Zon::ptrCast<LdpAddressMsgParser>(p);
   EXPECT_TRUE(a->initialized());
   auto const & list = a->addressListTlv();
   EXPECT_EQ(list->pkt(), pkt);
   EXPECT_EQ(list->offset(), 18u);
   EXPECT_EQ(list->family(), 1);
   ASSERT_EQ(list->numAddress(), 9u);
   EXPECT_EQ(list->address(0).stringValue(), "26.0.0.2");
   EXPECT_EQ(list->address(8).stringValue(), "192.168.5.2");
   EXPECT_EQ(p->stringValue(), "LDP Address Msg:\n   Msg Id: 3,\n   LdpAddressListTlv( 26.0.0.2, 9, ... )");
}

TEST(LdpAddressMsgParser, TextForms) {
   auto withdraw = ldpMsgParserGet(hexPkt(addressWithdrawMsg), 0);
   EXPECT_STREQ(withdraw->fwkType(), "Ldp::LdpAddressWithdrawMsgParser");
   EXPECT_EQ(withdraw->stringValue(),
             "LDP Address Withdraw Msg:\n   Msg Id: 4,\n   LdpAddressListTlv( fe80::7850:c6ff:fec0:0, 1 )");
   auto one = ldpMsgParserGet(hexPkt(message("0300", "0101 0006 0001 0a000001")), 0);
   EXPECT_EQ(one->stringValue(), "LDP Address Msg:\n   Msg Id: 1,\n   LdpAddressListTlv( 10.0.0.1, 1 )");
   auto bad = ldpMsgParserGet(hexPkt(message("0300", "0101 0006 0003 0a000001")), 0);
   EXPECT_EQ(bad->stringValue(), "Invalid LDP Address Msg: unsupportedAddressFamily");
   auto badWithdraw = ldpMsgParserGet(hexPkt(message("0301", "")), 0);
   EXPECT_EQ(badWithdraw->stringValue(), "Invalid LDP Address Withdraw Msg: Message does not have at least 1 TLV");
}

// ---- received bytes never reach an assertion -------------------------------

TEST(LdpSessionMsgParser, EveryOneByteChangeEndsInAResult) {
   for (char const * hex : {helloMsg, initMsg, capabilityMsg, addressMsg, addressWithdrawMsg}) {
      auto const good = hexBytes(hex);
      for (std::size_t at = 0; at < good.size(); ++at) {
         for (int change : {0x00, 0xff, 0x80, 0x01, 0x40}) {
            auto bytes = good;
            bytes[at] = static_cast<std::uint8_t>(change == 0x80 || change == 0x40 ? bytes[at] ^ change : change);
            auto pkt = Vorin::Pkt::fromBytes(bytes);
            auto p = ldpMsgParserGet(pkt, 0);
            EXPECT_FALSE(p->stringValue().empty());
            // The Capability parser too, wherever its message step can run.
            auto base = ldpMsgParserFactory(pkt, 0);
            if (!base->validMsg() || base->msgHdr()->type() == LdpMsgType::LdpCapability) {
               EXPECT_FALSE(ldpCapabilityMsgParserFactory(pkt, 0)->stringValue().empty());
            }
         }
      }
   }
}

// ---- assertions ------------------------------------------------------------

TEST(LdpSessionMsgParserDeath, MessageOfAnotherType) {
   auto keepalive = hexPkt("0201 0004 00000001");
   EXPECT_DEATH(ldpHelloMsgParserFactory(keepalive, 0), literal("msgHdr_->type() == LdpHello_"));
   EXPECT_DEATH(ldpInitMsgParserFactory(keepalive, 0), literal("msgHdr_->type() == LdpInit_"));
   EXPECT_DEATH(ldpCapabilityMsgParserFactory(keepalive, 0), literal("msgHdr_->type() == LdpCapability_"));
   EXPECT_DEATH(ldpAddressMsgParserFactory(hexPkt(addressWithdrawMsg), 0), literal("msgHdr_->type() == LdpAddress_"));
   EXPECT_DEATH(ldpAddressWithdrawMsgParserFactory(hexPkt(addressMsg), 0),
                literal("msgHdr_->type() == LdpAddressWithdraw_"));
}

TEST(LdpSessionMsgParserDeath, MandatoryTlvsWhenPrinting) {
   auto hello = ldpHelloMsgParserFactory(hexPkt(helloMsg), 0);
   ASSERT_TRUE(hello->validMsg());
   hello->msgCommonHelloTlvIs(nullptr);
   EXPECT_DEATH(hello->stringValue(), literal("msgCommonHelloTlv()"));
   auto address = ldpAddressMsgParserFactory(hexPkt(addressMsg), 0);
   ASSERT_TRUE(address->validMsg());
   address->addressListTlvIs(nullptr);
   EXPECT_DEATH(address->stringValue(), literal("addressListTlv()"));
   auto withdraw = ldpAddressWithdrawMsgParserFactory(hexPkt(addressWithdrawMsg), 0);
   withdraw->addressListTlvIs(nullptr);
   EXPECT_DEATH(withdraw->stringValue(), literal("addressListTlv()"));
}

} // namespace
