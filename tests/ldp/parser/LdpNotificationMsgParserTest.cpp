// The Notification parser (plain and PW status, fixed TLV places) and the PW
// Status TLV parser.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "ldp/parser/LdpMsgParserGet.h"
#include "ldp/parser/LdpPwGenMsgParser.h"
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

using TestSupport::viaGet;

// A Notification with id 9 around `tlvs`.
std::string notification(std::string const & tlvs) { return TestSupport::messageHex("0001", "00000009", tlvs); }

std::string tlv(char const * type, std::string const & value) { return TestSupport::tlvHex(type, value); }

// Status TLVs: shutdown (E set) about message 7 of type Label Mapping, and the
// PW status code 0x28 with E and F set (they are masked off).
std::string const shutdownStatus = tlv("0300", "8000000a 00000007 0400");
std::string const pwStatusStatus = tlv("0300", "c0000028 00000000 0000");
std::string const pwStatus = tlv("096a", "00000003");
std::string const pwFec = tlv("0100", "80 0005 04 00000007 00000064");
std::string const prefixFec = tlv("0100", "02 0001 18 0a0102");

TEST(LdpNotificationMsgParser, EveryPrefix) {
   for (auto const & tlvs : {std::vector<std::string>{shutdownStatus},
                             std::vector<std::string>{pwStatusStatus, pwStatus, pwFec}}) {
      std::string all;
      for (auto const & t : tlvs) {
         all += t;
      }
      std::string const whole = notification(all);
      std::vector<Fragment> f{{whole.substr(0, whole.find('|')), Code::malformedTlv, "MSG too small, size = {n}"}};
      for (auto const & t : tlvs) {
         f.push_back({t, Code::badTlvLength, "Packet is too small, size: {n}"});
      }
      TestSupport::checkEveryPrefix(f, {Code::success, ""}, viaGet);
   }
}

TEST(LdpNotificationMsgParser, Faults) {
   struct Case {
      char const * name;
      std::string tlvs;
      Code code;
      char const * reason;
   };
   std::vector<Case> const cases{
       {"no TLV", "", Code::missingMessageParams, "Missing Status TLV"},
       {"first TLV not Status", pwStatus + shutdownStatus, Code::missingMessageParams, "1st TLV is not Status TLV"},
       {"Status of size 9", tlv("0300", "8000000a 00000007 04"), Code::malformedTlv,
        "Status TLV is not the right size"},
       {"Status of size 11", tlv("0300", "8000000a 00000007 0400 00"), Code::malformedTlv,
        "Status TLV is not the right size"},
       {"plain status, later TLVs ignored", shutdownStatus + tlv("0100", "81"), Code::success, ""},
       {"PW status, two TLVs", pwStatusStatus + pwStatus, Code::missingMessageParams, "Missing PW Status TLVs"},
       {"PW status, second TLV not PW Status", pwStatusStatus + pwFec + pwStatus, Code::missingMessageParams,
        "2nd TLV is not PW Status TLV"},
       {"PW Status of size 8", pwStatusStatus + tlv("096a", "00000003 00000000") + pwFec, Code::badTlvLength,
        "LdpPwStatusTlv validation failure"},
       {"PW Status of size 0", pwStatusStatus + tlv("096a", "") + pwFec, Code::badTlvLength,
        "LdpPwStatusTlv validation failure"},
       {"PW status, third TLV not FEC", pwStatusStatus + pwStatus + shutdownStatus, Code::missingMessageParams,
        "FecTlv is not the 3rd TLV in the message"},
       {"FEC fault copied", pwStatusStatus + pwStatus + tlv("0100", "80 0006 00 00000007"), Code::unknownFec,
        "Invalid FEC PW ID Element: Unknown PW type 0x0006"},
       {"empty FEC", pwStatusStatus + pwStatus + tlv("0100", ""), Code::missingMessageParams,
        "PW FEC TLV has no FEC elements"},
       {"prefix FEC", pwStatusStatus + pwStatus + prefixFec, Code::missingMessageParams,
        "PW FEC TLV element is not PWID FEC element"},
       {"wildcard FEC", pwStatusStatus + pwStatus + tlv("0100", "01"), Code::missingMessageParams,
        "PW FEC TLV element is not PWID FEC element"},
       {"PWid element first, then a prefix", pwStatusStatus + pwStatus + tlv("0100", "80 0005 00 00000007 02 0001 00"),
        Code::success, ""},
       {"PW status with a fourth TLV", pwStatusStatus + pwStatus + pwFec + shutdownStatus, Code::success, ""},
   };
   for (auto const & c : cases) {
      auto const p = ldpNotificationMsgParserFactory(hexPkt(notification(c.tlvs)), 0);
      EXPECT_EQ(p->statusCode(), c.code) << c.name;
      EXPECT_EQ(p->reason(), c.reason) << c.name;
   }
}

TEST(LdpNotificationMsgParser, ViewsAndText) {
   auto const pkt = hexPkt(notification(pwStatusStatus + pwStatus + pwFec));
   auto const p = ldpMsgParserGet(pkt, 0);
   ASSERT_TRUE(p->validMsg()) << p->reason();
   EXPECT_STREQ(p->fwkType(), "Ldp::LdpNotificationMsgParser");
   auto const n = Zon::ptrCast<LdpNotificationMsgParser>(p);
   EXPECT_TRUE(n->initialized());
   EXPECT_EQ(reinterpret_cast<std::uint8_t *>(n->msgStatusTlv()), pkt->front() + 8);
   EXPECT_EQ(reinterpret_cast<std::uint8_t *>(n->msgPwStatusTlv()), pkt->front() + 22);
   EXPECT_EQ(reinterpret_cast<std::uint8_t *>(n->msgFecTlv()), pkt->front() + 30);
   EXPECT_EQ(n->msgPwStatusTlv()->status(), 3u);
   EXPECT_EQ(n->ldpFecTlvParser()->fecElement(0)->pwFwdEqvCls().pwId().value(), 100u);
   EXPECT_EQ(p->stringValue(),
             "LDP Notification Msg:\n   Msg Id: 9,   FEC: " + n->ldpFecTlvParser()->fecElement(0)->stringValue() +
                 "\n   StatusTlv(pwStatus): 0:0 u(0), fu(0), e(1), efu(1)\n   LdpPwStatusTlv: 0x00000003");

   auto const plain = ldpMsgParserGet(hexPkt(notification(shutdownStatus)), 0);
   auto const pn = Zon::ptrCast<LdpNotificationMsgParser>(plain);
   EXPECT_EQ(pn->msgFecTlv(), nullptr);
   EXPECT_EQ(pn->msgPwStatusTlv(), nullptr);
   EXPECT_EQ(pn->ldpFecTlvParser(), nullptr);
   EXPECT_EQ(plain->stringValue(),
             "LDP Notification Msg:\n   Msg Id: 9,\n   StatusTlv(shutdown): LdpLabelMapping:7 u(0), fu(0), e(1), efu(0)");
   EXPECT_EQ(ldpMsgParserGet(hexPkt(notification("")), 0)->stringValue(),
             "Invalid LDP Notification Msg: Missing Status TLV");
}

TEST(LdpNotificationMsgParserDeathTest, MessageOfAnotherType) {
   EXPECT_DEATH(ldpNotificationMsgParserFactory(hexPkt("0201 0004 00000001"), 0),
                "\nmsgHdr_->type\\(\\) == LdpNotification_\n");
}

// ---- PW Status TLV parser --------------------------------------------------

TEST(LdpPwStatusTlvParser, ReadsInPlace) {
   auto const pkt = hexPkt("ff | 096a 0004 00000011 | 096a 0000 | 096a 0008 00000001 00000000 | 096a 0010 0000");
   auto const good = ldpPwStatusTlvParserFactory(pkt, 1);
   EXPECT_EQ(good->validate(), Code::success);
   EXPECT_EQ(good->status(), 0x11u);
   EXPECT_TRUE(good->flag(LdpPwStatusField::pwNotForwarding | LdpPwStatusField::localPsnPwEgrTransFault));
   EXPECT_FALSE(good->flag(LdpPwStatusField::localACIngrRecvFault));
   EXPECT_EQ(good->type(), LdpTlvType::pwStatusTlv);
   EXPECT_EQ(reinterpret_cast<std::uint8_t *>(good->header2()), pkt->front() + 1);
   EXPECT_EQ(good->stringValue(), "LdpPwStatusTlv: 0x00000011");

   // Received whole but shorter than the value type: its header decides.
   auto const empty = ldpPwStatusTlvParserFactory(pkt, 9);
   EXPECT_EQ(empty->header2(), nullptr);
   EXPECT_EQ(empty->validate(), Code::badTlvLength);
   EXPECT_EQ(empty->status(), 0u);
   EXPECT_EQ(empty->stringValue(), "Error LdpPwStatusTlv: badTlvLength");

   auto const eight = ldpPwStatusTlvParserFactory(pkt, 13);
   EXPECT_EQ(eight->validate(), Code::badTlvLength);
   EXPECT_EQ(eight->status(), 1u);

   // The length claims bytes that were not received.
   auto const cut = ldpPwStatusTlvParserFactory(pkt, 25);
   EXPECT_EQ(cut->header2(), nullptr);
   EXPECT_EQ(cut->validate(), Code::badTlvLength);
   EXPECT_EQ(cut->stringValue(), "");

   // No header at all.
   auto const none = ldpPwStatusTlvParserFactory(pkt, 31);
   EXPECT_EQ(none->header(), nullptr);
   EXPECT_EQ(none->validate(), Code::success);
   EXPECT_EQ(none->status(), 0u);
}

} // namespace
