// The Label Mapping, Request, Withdraw, Release and Abort Request parsers: every
// prefix of a valid message, the fault of each rule in check order, the views
// they expose, text forms and the assertions that guard the caller's side.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "ldp/parser/LdpMsgParserGet.h"
#include "ldp/parser/LdpLabelMsgParser.h"
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

// A message of `type` (4 hex digits) with id 5 around `tlvs`.
std::string message(char const * type, std::string const & tlvs) {
   return TestSupport::messageHex(type, "00000005", tlvs);
}

// A TLV of `type` around `value`.
std::string tlv(char const * type, std::string const & value) { return TestSupport::tlvHex(type, value); }

using TestSupport::literal;

using TestSupport::checkFaults;
using TestSupport::FaultCase;
using TestSupport::outcomeOf;
using TestSupport::viaGet;

// The TLVs the tables are made of.
std::string const prefixFec = tlv("0100", "02 0001 18 0a0102");
std::string const wildcardFec = tlv("0100", "01");
std::string const badFec = tlv("0100", "81 0005 00 00000007");
std::string const genLabel = tlv("0200", "00000010");
std::string const reqMsgId = tlv("0600", "0000002a");
std::string const hopCount = tlv("0103", "03");
std::string const pathVector = tlv("0104", "0a000001 0a000002");
std::string const pwStatus = tlv("096a", "00000001");
// Status: shutdown with the E bit, about message 7 of type Label Mapping.
std::string const status = tlv("0300", "8000000a 00000007 0400");
// Unknown vendor-private type 0x3e01, with and without the U bit.
std::string const unknownU = tlv("be01", "");
std::string const unknownNoU = tlv("3e01", "");

// A PWid element of PW type 5 with the C bit, group ID 7, PW ID 100 and all five
// interface parameter sub-TLVs: MTU 1500, description "ge0", VLAN 100,
// fragmentation capable, VCCV CC 1 / CV 2.
constexpr char const * pwFecValue = "80 8005 19 00000007 00000064 | 01 04 05dc | 03 05 676530 | 06 04 0064 |"
                                    "09 04 0001 | 0c 04 0102";

// ---- every prefix ----------------------------------------------------------

// The message header then its TLVs: a cut inside the header is a message too
// small, one inside a TLV leaves the message longer than the bytes received.
std::vector<Fragment> truncation(char const * type, std::vector<std::string> const & tlvs) {
   std::string all;
   for (auto const & t : tlvs) {
      all += t;
   }
   std::string const whole = message(type, all);
   std::vector<Fragment> f{{whole.substr(0, whole.find('|')), Code::malformedTlv, "MSG too small, size = {n}"}};
   for (auto const & t : tlvs) {
      f.push_back({t, Code::badTlvLength, "Packet is too small, size: {n}"});
   }
   return f;
}

TEST(LdpLabelMsgParser, MappingOfAPrefixEveryPrefix) {
   TestSupport::checkEveryPrefix(truncation("0400", {prefixFec, genLabel, reqMsgId, hopCount, pathVector}),
                                 {Code::success, ""}, viaGet);
}

TEST(LdpLabelMsgParser, MappingOfAPseudowireEveryPrefix) {
   TestSupport::checkEveryPrefix(truncation("0400", {tlv("0100", pwFecValue), genLabel, pwStatus}),
                                 {Code::success, ""}, viaGet);
}

TEST(LdpLabelMsgParser, RequestEveryPrefix) {
   TestSupport::checkEveryPrefix(truncation("0401", {prefixFec, hopCount, pathVector}), {Code::success, ""}, viaGet);
}

TEST(LdpLabelMsgParser, WithdrawEveryPrefix) {
   TestSupport::checkEveryPrefix(truncation("0402", {prefixFec, genLabel, status}), {Code::success, ""}, viaGet);
}

TEST(LdpLabelMsgParser, ReleaseEveryPrefix) {
   TestSupport::checkEveryPrefix(truncation("0403", {prefixFec, genLabel}), {Code::success, ""}, viaGet);
}

TEST(LdpLabelMsgParser, AbortEveryPrefix) {
   TestSupport::checkEveryPrefix(truncation("0404", {prefixFec, reqMsgId}), {Code::success, ""}, viaGet);
}

// ---- Label Mapping ---------------------------------------------------------

TEST(LdpLabelMappingMsgParser, Faults) {
   checkFaults(
       {
           {"one TLV", message("0400", prefixFec), Code::missingMessageParams,
            "Message does not have at least 2 TLV"},
           {"FEC second", message("0400", reqMsgId + prefixFec + genLabel), Code::missingMessageParams,
            "FecTlv is not the 1st TLV in the message"},
           {"label first, FEC second", message("0400", genLabel + prefixFec), Code::missingMessageParams,
            "LdpGenLabelTlv is not the 2nd TLV in the message"},
           {"label third", message("0400", prefixFec + hopCount + genLabel), Code::missingMessageParams,
            "LdpGenLabelTlv is not the 2nd TLV in the message"},
           {"second FEC", message("0400", prefixFec + genLabel + prefixFec), Code::missingMessageParams,
            "FecTlv is not the 1st TLV in the message"},
           {"wildcard FEC", message("0400", wildcardFec + genLabel), Code::unknownFec,
            "LDP Mapping Msg can not have Wildcard FEC TLV"},
           {"FEC fault copied", message("0400", badFec + genLabel), Code::unknownFec,
            "Unhandled FEC TLV Element type 0x81"},
           {"label of size 5", message("0400", prefixFec + tlv("0200", "00000010 00")), Code::malformedTlv,
            "Invalid size for LdpGenLabelTlv"},
           {"label of size 3", message("0400", prefixFec + tlv("0200", "000010")), Code::malformedTlv,
            "Invalid size for LdpGenLabelTlv"},
           {"request id of size 2", message("0400", prefixFec + genLabel + tlv("0600", "002a")), Code::malformedTlv,
            "Invalid size for LdpLabelReqMsgIdTlv"},
           {"hop count of size 0", message("0400", prefixFec + genLabel + tlv("0103", "")), Code::malformedTlv,
            "Invalid size for LdpHopCountTlv"},
           {"hop count of size 2", message("0400", prefixFec + genLabel + tlv("0103", "0003")), Code::malformedTlv,
            "Invalid size for LdpHopCountTlv"},
           {"empty path vector", message("0400", prefixFec + genLabel + tlv("0104", "")), Code::malformedTlv,
            "Invalid size for LdpPathVectorTlv"},
           {"path vector of size 6", message("0400", prefixFec + genLabel + tlv("0104", "0a000001 0a00")),
            Code::badTlvLength, "LdpPathVectorTlv validation failure"},
           {"path vector of size 1", message("0400", prefixFec + genLabel + tlv("0104", "0a")), Code::badTlvLength,
            "LdpPathVectorTlv validation failure"},
           {"PW status of size 8", message("0400", prefixFec + genLabel + tlv("096a", "00000001 00000000")),
            Code::malformedTlv, "Invalid size for LdpPwStatusTlv"},
           {"no FEC", message("0400", reqMsgId + hopCount), Code::missingMessageParams, "Missing LdpFecTlv"},
           {"no label", message("0400", prefixFec + hopCount), Code::missingMessageParams, "Missing LdpGenLabelTlv"},
           {"first fault ends the walk",
            message("0400", prefixFec + tlv("0200", "00") + tlv("0600", "00")), Code::malformedTlv,
            "Invalid size for LdpGenLabelTlv"},
           {"unknown TLV with U third", message("0400", prefixFec + genLabel + unknownU + hopCount), Code::success,
            ""},
           {"unknown TLV with U last", message("0400", prefixFec + genLabel + hopCount + unknownU), Code::success, ""},
           {"unknown TLV with U first: the FEC is no longer first", message("0400", unknownU + prefixFec + genLabel),
            Code::missingMessageParams, "FecTlv is not the 1st TLV in the message"},
           {"unknown TLV without U", message("0400", prefixFec + genLabel + unknownNoU), Code::unknownTlv,
            "Unknown TLV Type: 15873"},
           {"TLVs of other messages are skipped", message("0400", prefixFec + genLabel + status), Code::success, ""},
       },
       [](auto const & pkt) { return outcomeOf(ldpLabelMappingMsgParserFactory(pkt, 0)); });
}

TEST(LdpLabelMappingMsgParser, Views) {
   auto const pkt = hexPkt("ffff | " + message("0400", prefixFec + genLabel + reqMsgId + hopCount + pathVector +
                                                          pwStatus));
   auto const p = ldpLabelMappingMsgParserFactory(pkt, 2);
   ASSERT_TRUE(p->validMsg()) << p->reason();
   EXPECT_TRUE(p->initialized());
   EXPECT_STREQ(p->fwkType(), "Ldp::LdpLabelMappingMsgParser");
   // Views lie in the packet: FEC TLV at 2 + 8, the label right after its 11 bytes.
   EXPECT_EQ(reinterpret_cast<std::uint8_t *>(p->msgFecTlv()), pkt->front() + 10);
   EXPECT_EQ(reinterpret_cast<std::uint8_t *>(p->msgGenLabelTlv()), pkt->front() + 21);
   EXPECT_EQ(p->ldpFecTlvParser()->offset(), 10u);
   ASSERT_EQ(p->ldpFecTlvParser()->fecElementNum(), 1u);
   EXPECT_EQ(p->ldpFecTlvParser()->fecElement(0)->fwdEqvCls().prefix().stringValue(), "10.1.2.0/24");
   EXPECT_EQ(p->msgGenLabelTlv()->label().value(), 16u);
   EXPECT_EQ(p->msgReqMsgIdTlv()->reqMsgId(), 42u);
   EXPECT_EQ(p->msgHopCountTlv()->hopCount(), 3);
   EXPECT_EQ(p->msgPathVectorTlv()->lsrIdNum(), 2u);
   EXPECT_EQ(p->msgPwStatusTlv()->status(), 1u);
   EXPECT_EQ(p->msgStatusTlv(), nullptr);
}

TEST(LdpLabelMappingMsgParser, PseudowireFec) {
   auto const p = ldpLabelMappingMsgParserFactory(hexPkt(message("0400", tlv("0100", pwFecValue) + genLabel)), 0);
   ASSERT_TRUE(p->validMsg()) << p->reason();
   auto const & pw = p->ldpFecTlvParser()->fecElement(0)->pwFwdEqvCls();
   EXPECT_EQ(pw.pwId().value(), 100u);
   EXPECT_TRUE(pw.controlWord());
   EXPECT_EQ(pw.params().mtu(), 1500);
   EXPECT_EQ(pw.params().intfDescription(), "ge0");
   EXPECT_EQ(pw.params().requestedVlanId().value(), 100);
   EXPECT_TRUE(pw.params().fragCapable());
   EXPECT_EQ(pw.params().vccvCvTypes(), 2);
}

TEST(LdpLabelMappingMsgParser, TextForms) {
   auto const p = ldpMsgParserGet(hexPkt(message("0400", prefixFec + genLabel + reqMsgId + hopCount + pathVector +
                                                             pwStatus)),
                                  0);
   EXPECT_STREQ(p->fwkType(), "Ldp::LdpLabelMappingMsgParser");
   EXPECT_EQ(p->stringValue(), "LDP Label Mapping Msg:\n   Msg Id: 5,   FEC: Prefix FEC Element, Address Family: 1, "
                               "PreLen: 24, Prefix: 10.1.2.0/24\n   GenLabelTlv: L(16)\n   LabelReqMsgIdTlv: ID(42)\n"
                               "   LdpHopCountTlv: 3\n   LdpPathVectorTlv: [10.0.0.1, 10.0.0.2]\n"
                               "   LdpPwStatusTlv: 0x00000001");
   auto const bare = ldpMsgParserGet(hexPkt(message("0400", prefixFec + genLabel)), 0);
   EXPECT_EQ(bare->stringValue(), "LDP Label Mapping Msg:\n   Msg Id: 5,   FEC: Prefix FEC Element, Address Family: 1, "
                                  "PreLen: 24, Prefix: 10.1.2.0/24\n   GenLabelTlv: L(16)");
   auto const bad = ldpMsgParserGet(hexPkt(message("0400", wildcardFec + genLabel)), 0);
   EXPECT_EQ(bad->stringValue(), "Invalid LDP Label Mapping Msg: LDP Mapping Msg can not have Wildcard FEC TLV");
}

// ---- Label Request ---------------------------------------------------------

TEST(LdpLabelRequestMsgParser, Faults) {
   checkFaults(
       {
           {"no TLV", message("0401", ""), Code::missingMessageParams, "Message does not have at least 1 TLV"},
           {"FEC second", message("0401", hopCount + prefixFec), Code::missingMessageParams,
            "FecTlv is not the 1st TLV in the message"},
           {"wildcard FEC", message("0401", wildcardFec), Code::unknownFec,
            "LDP Request Msg can not have Wildcard FEC TLV"},
           {"FEC fault copied", message("0401", badFec + hopCount), Code::unknownFec,
            "Unhandled FEC TLV Element type 0x81"},
           {"hop count of size 2", message("0401", prefixFec + tlv("0103", "0003")), Code::malformedTlv,
            "Invalid size for LdpHopCountTlv"},
           {"empty path vector", message("0401", prefixFec + tlv("0104", "")), Code::malformedTlv,
            "Invalid size for LdpPathVectorTlv"},
           {"path vector of size 5", message("0401", prefixFec + tlv("0104", "0a000001 00")), Code::badTlvLength,
            "LdpPathVectorTlv validation failure"},
           {"no FEC", message("0401", hopCount), Code::missingMessageParams, "Missing LdpFecTlv"},
           {"FEC alone", message("0401", prefixFec), Code::success, ""},
           {"label skipped", message("0401", prefixFec + genLabel), Code::success, ""},
       },
       [](auto const & pkt) { return outcomeOf(ldpLabelRequestMsgParserFactory(pkt, 0)); });
}

TEST(LdpLabelRequestMsgParser, ViewsAndText) {
   auto const p = ldpMsgParserGet(hexPkt(message("0401", prefixFec + hopCount + pathVector)), 0);
   EXPECT_STREQ(p->fwkType(), "Ldp::LdpLabelRequestMsgParser");
   auto const r = Zon::ptrCast<LdpLabelRequestMsgParser>(p);
   EXPECT_TRUE(r->initialized());
   EXPECT_EQ(r->msgHopCountTlv()->hopCount(), 3);
   EXPECT_EQ(r->msgPathVectorTlv()->lsrId(1).stringValue(), "10.0.0.2");
   EXPECT_EQ(p->stringValue(), "LDP Label Request Msg:\n   Msg Id: 5,   FEC: Prefix FEC Element, Address Family: 1, "
                               "PreLen: 24, Prefix: 10.1.2.0/24\n   LdpHopCountTlv: 3\n"
                               "   LdpPathVectorTlv: [10.0.0.1, 10.0.0.2]");
   auto const bad = ldpMsgParserGet(hexPkt(message("0401", "")), 0);
   EXPECT_EQ(bad->stringValue(), "Invalid LDP Label Request Msg: Message does not have at least 1 TLV");
}

// ---- Label Withdraw and Label Release --------------------------------------

// The rules the two share; `code`/`reason` of the row whose FEC TLV is malformed
// differ between them.
std::vector<FaultCase> withdrawReleaseCases(char const * type, Code badFecCode, char const * badFecReason) {
   return {
       {"no TLV", message(type, ""), Code::missingMessageParams, "Message does not have at least 1 TLV"},
       {"FEC second", message(type, status + prefixFec), Code::missingMessageParams,
        "FecTlv is not the 1st TLV in the message"},
       {"label first, FEC second: the label is seen first", message(type, genLabel + prefixFec),
        Code::missingMessageParams, "Label Tlv is not the 2nd TLV in the message"},
       {"wildcard FEC", message(type, wildcardFec + genLabel), Code::success, ""},
       {"malformed FEC", message(type, badFec + genLabel), badFecCode, badFecReason},
       {"label third", message(type, prefixFec + status + genLabel), Code::missingMessageParams,
        "Label Tlv is not the 2nd TLV in the message"},
       {"label of size 2", message(type, prefixFec + tlv("0200", "0010")), Code::malformedTlv,
        "Invalid size for LdpGenLabelTlv"},
       {"status of size 9", message(type, prefixFec + tlv("0300", "8000000a 00000007 04")), Code::malformedTlv,
        "Invalid size for LdpStatusTlv"},
       {"status second, no label", message(type, prefixFec + status), Code::success, ""},
       {"FEC alone", message(type, prefixFec), Code::success, ""},
       {"no FEC", message(type, status), Code::missingMessageParams, "Missing LdpFecTlv"},
   };
}

TEST(LdpLabelWithdrawMsgParser, Faults) {
   checkFaults(withdrawReleaseCases("0402", Code::unknownFec, "Unhandled FEC TLV Element type 0x81"),
               [](auto const & pkt) { return outcomeOf(ldpLabelWithdrawMsgParserFactory(pkt, 0)); });
}

TEST(LdpLabelReleaseMsgParser, Faults) {
   // The Release never looks at its FEC TLV parser's validity.
   checkFaults(withdrawReleaseCases("0403", Code::success, ""),
               [](auto const & pkt) { return outcomeOf(ldpLabelReleaseMsgParserFactory(pkt, 0)); });
}

TEST(LdpLabelReleaseMsgParser, MalformedFecLeftToTheCaller) {
   auto const p = ldpLabelReleaseMsgParserFactory(hexPkt(message("0403", badFec + genLabel)), 0);
   ASSERT_TRUE(p->validMsg());
   ASSERT_TRUE(p->ldpFecTlvParser());
   EXPECT_FALSE(p->ldpFecTlvParser()->valid());
   EXPECT_EQ(p->ldpFecTlvParser()->reason(), "Unhandled FEC TLV Element type 0x81");
   EXPECT_EQ(p->msgGenLabelTlv()->label().value(), 16u);
   EXPECT_EQ(p->stringValue(), "LDP Label Release Msg:\n   Msg Id: 5,   FEC: Error FEC TLV: Unhandled FEC TLV Element "
                               "type 0x81\n   GenLabelTlv: L(16)");
}

TEST(LdpLabelWithdrawMsgParser, ViewsAndText) {
   auto const p = ldpMsgParserGet(hexPkt(message("0402", wildcardFec + genLabel + status)), 0);
   EXPECT_STREQ(p->fwkType(), "Ldp::LdpLabelWithdrawMsgParser");
   ASSERT_TRUE(p->validMsg()) << p->reason();
   EXPECT_TRUE(p->ldpFecTlvParser()->hasWildcardFecElement());
   EXPECT_EQ(p->msgStatusTlv()->statusData(), Code::shutdown);
   EXPECT_EQ(p->stringValue(), "LDP Label Withdraw Msg:\n   Msg Id: 5,   FEC: Wildcard FEC Element\n"
                               "   GenLabelTlv: L(16)\n   StatusTlv(shutdown): LdpLabelMapping:7 u(0), fu(0), e(1), "
                               "efu(0)");
   auto const release = ldpMsgParserGet(hexPkt(message("0403", prefixFec)), 0);
   EXPECT_STREQ(release->fwkType(), "Ldp::LdpLabelReleaseMsgParser");
   EXPECT_EQ(release->stringValue(), "LDP Label Release Msg:\n   Msg Id: 5,   FEC: Prefix FEC Element, Address "
                                     "Family: 1, PreLen: 24, Prefix: 10.1.2.0/24");
   EXPECT_EQ(ldpMsgParserGet(hexPkt(message("0402", "")), 0)->stringValue(),
             "Invalid LDP Label Withdraw Msg: Message does not have at least 1 TLV");
   EXPECT_EQ(ldpMsgParserGet(hexPkt(message("0403", "")), 0)->stringValue(),
             "Invalid LDP Label Release Msg: Message does not have at least 1 TLV");
}

// ---- Label Abort Request ---------------------------------------------------

TEST(LdpLabelAbortReqMsgParser, Faults) {
   checkFaults(
       {
           {"one TLV", message("0404", prefixFec), Code::missingMessageParams, "Message does not have at least 2 TLV"},
           {"FEC second", message("0404", hopCount + prefixFec + reqMsgId), Code::missingMessageParams,
            "FecTlv is not the 1st TLV in the message"},
           {"request id first, FEC second: the request id is seen first", message("0404", reqMsgId + prefixFec),
            Code::missingMessageParams, "LdpLabelReqMsgIdTlv is not the 2nd TLV in the message"},
           {"wildcard FEC", message("0404", wildcardFec + reqMsgId), Code::unknownFec,
            "LDP Abort Msg can not have Wildcard FEC TLV"},
           {"FEC fault copied", message("0404", badFec + reqMsgId), Code::unknownFec,
            "Unhandled FEC TLV Element type 0x81"},
           {"request id third", message("0404", prefixFec + hopCount + reqMsgId), Code::missingMessageParams,
            "LdpLabelReqMsgIdTlv is not the 2nd TLV in the message"},
           {"request id of size 5", message("0404", prefixFec + tlv("0600", "0000002a 00")), Code::malformedTlv,
            "Invalid size for LdpLabelReqMsgIdTlv"},
           {"no request id", message("0404", prefixFec + hopCount), Code::missingMessageParams,
            "Missing LdpLabelReqMsgIdTlv"},
           {"no FEC", message("0404", hopCount + reqMsgId), Code::missingMessageParams, "Missing LdpFecTlv"},
       },
       [](auto const & pkt) { return outcomeOf(ldpLabelAbortReqMsgParserFactory(pkt, 0)); });
}

TEST(LdpLabelAbortReqMsgParser, ViewsAndText) {
   auto const p = ldpMsgParserGet(hexPkt(message("0404", prefixFec + reqMsgId)), 0);
   EXPECT_STREQ(p->fwkType(), "Ldp::LdpLabelAbortReqMsgParser");
   EXPECT_EQ(Zon::ptrCast<LdpLabelAbortReqMsgParser>(p)->msgReqMsgIdTlv()->reqMsgId(), 42u);
   EXPECT_EQ(p->stringValue(), "LDP Label Abort Request Msg:\n   Msg Id: 5,   FEC: Prefix FEC Element, Address "
                               "Family: 1, PreLen: 24, Prefix: 10.1.2.0/24\n   LabelReqMsgIdTlv: ID(42)");
   EXPECT_EQ(ldpMsgParserGet(hexPkt(message("0404", prefixFec)), 0)->stringValue(),
             "Invalid LDP Label Abort Request Msg: Message does not have at least 2 TLV");
}

// ---- the base parser's FEC parser ------------------------------------------

TEST(LdpLabelMsgParser, FecParserIsKeptForTheSameTlv) {
   auto const p = ldpLabelMappingMsgParserFactory(hexPkt(message("0400", prefixFec + genLabel)), 0);
   auto const first = p->ldpFecTlvParser();
   EXPECT_TRUE(first->strict());
   EXPECT_EQ(p->ldpFecTlvParserIs(p->pkt(), 8, nullptr), first);
   auto const renewed = p->newLdpFecTlvParser(p->pkt(), 8, nullptr);
   EXPECT_NE(renewed, first);
   auto const param = Zon::makePtr<LdpProtoParam>(Zon::Name("param"));
   auto const withParam = p->ldpFecTlvParserIs(p->pkt(), 8, param);
   EXPECT_NE(withParam, renewed);
   EXPECT_EQ(withParam->protoParam(), param);
   auto const other = p->ldpFecTlvParserIs(p->pkt(), 19, param); // the label TLV, seen as a FEC TLV
   EXPECT_NE(other, withParam);
   EXPECT_EQ(other->offset(), 19u);
   p->ldpFecTlvParserDel();
   EXPECT_EQ(p->ldpFecTlvParser(), nullptr);
}

// ---- assertions ------------------------------------------------------------

using LdpLabelMsgParserDeathTest = ::testing::Test;

TEST_F(LdpLabelMsgParserDeathTest, PrintWithoutMandatoryTlvs) {
   auto const noFec = ldpLabelMappingMsgParserFactory(hexPkt(message("0400", prefixFec + genLabel)), 0);
   noFec->msgFecTlvIs(nullptr);
   EXPECT_DEATH(noFec->stringValue(), literal("msgFecTlv()"));
   auto const noLabel = ldpLabelMappingMsgParserFactory(hexPkt(message("0400", prefixFec + genLabel)), 0);
   noLabel->msgGenLabelTlvIs(nullptr);
   EXPECT_DEATH(noLabel->stringValue(), literal("msgGenLabelTlv()"));
   auto const withdraw = ldpLabelWithdrawMsgParserFactory(hexPkt(message("0402", prefixFec)), 0);
   withdraw->msgFecTlvIs(nullptr);
   EXPECT_DEATH(withdraw->stringValue(), literal("msgFecTlv()"));
}

TEST_F(LdpLabelMsgParserDeathTest, MessageOfAnotherType) {
   // A valid Label Request handed to each of the other parsers.
   auto const pkt = hexPkt(message("0401", prefixFec + genLabel + reqMsgId));
   EXPECT_DEATH(ldpLabelMappingMsgParserFactory(pkt, 0), literal("msgHdr_->type() == LdpLabelMapping_"));
   EXPECT_DEATH(ldpLabelWithdrawMsgParserFactory(pkt, 0), literal("msgHdr_->type() == LdpLabelWithdraw_"));
   EXPECT_DEATH(ldpLabelReleaseMsgParserFactory(pkt, 0), literal("msgHdr_->type() == LdpLabelRelease_"));
   EXPECT_DEATH(ldpLabelAbortReqMsgParserFactory(pkt, 0), literal("msgHdr_->type() == LdpLabelAbortReq_"));
   EXPECT_DEATH(ldpLabelRequestMsgParserFactory(hexPkt(message("0400", prefixFec + genLabel)), 0),
                literal("msgHdr_->type() == LdpLabelRequest_"));
   // An invalid message of another type ends in its header fault, not in the assertion.
   auto const bad = ldpLabelMappingMsgParserFactory(hexPkt("3fff 0004 00000005"), 0);
   EXPECT_EQ(bad->statusCode(), Code::unknownMessageType);
}

} // namespace
