// The FEC TLV parser: every fault of its table in check order, the elements it
// builds, the bounds of the TLV value and of a PWid element's PW information,
// the Wildcard rule, the element collection and the text form.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "ldp/parser/LdpFecTlvParser.h"
#include "ldp/trace/LdpTrace.h"
#include "support/Hex.h"
#include "support/Truncation.h"

using namespace Ldp;
using TestSupport::hexBytes;
using TestSupport::hexPkt;
using Code = LdpStatusCode;

namespace {

// "nnnn": the number of bytes of `hex`, as `digits` hex digits.
std::string lengthOf(std::string const & hex, int digits) {
   char buf[8];
   std::snprintf(buf, sizeof buf, "%0*zx", digits, hexBytes(hex).size());
   return buf;
}

// A FEC TLV around `elements`.
std::string fecTlv(std::string const & elements) { return "0100 " + lengthOf(elements, 4) + " | " + elements; }

// A PWid element of PW type word `typeWord` (C bit and PW type), group ID 7,
// whose PW information (PW ID and sub-TLVs) is `info`.
std::string pwElement(char const * typeWord, std::string const & info) {
   return std::string("80 ") + typeWord + " " + lengthOf(info, 2) + " 00000007 " + info;
}

LdpFecTlvParser::Ptr parse(std::string const & hex, Zon::Ptr<LdpProtoParam const> const & param = nullptr) {
   return ldpFecTlvParserFactory(hexPkt(hex), 0, param);
}

struct FecCase {
   char const * name;
   std::string elements; // the FEC TLV's value
   Code code;
   char const * reason;
};

void checkFecFaults(std::vector<FecCase> const & cases) {
   for (auto const & c : cases) {
      auto const p = parse(fecTlv(c.elements));
      EXPECT_EQ(p->statusCode(), c.code) << c.name;
      EXPECT_EQ(p->reason(), c.reason) << c.name;
      EXPECT_EQ(p->valid(), c.code == Code::success) << c.name;
   }
}

constexpr char const * pwId100 = "00000064 ";

TEST(LdpFecTlvParser, IpElementFaults) {
   checkFecFaults({
       {"element type 0x81", "81 0005 00 00000001", Code::unknownFec, "Unhandled FEC TLV Element type 0x81"},
       {"CR-LSP element", "04 00000000", Code::unknownFec, "Unhandled FEC TLV Element type 0x04"},
       {"prefix length 32", "02 0001 20 0a000001", Code::success, ""},
       {"prefix length 33, five octets", "02 0001 21 0a000001 80", Code::malformedTlv,
        "Invalid FEC Prefix Element: PreLen 33 is too large for IPv4"},
       {"prefix length 33, four octets left", "02 0001 21 0a000001", Code::malformedTlv,
        "Invalid FEC Prefix Element: prefix bits: 33, remaining packet octets: 8"},
       {"prefix length 0", "02 0001 00", Code::success, ""},
       {"prefix length 128 of IPv6", "02 0002 80 20010db8 00000000 00000000 00000001", Code::success, ""},
       {"prefix length 129 of IPv6", "02 0002 81 20010db8 00000000 00000000 00000001 00", Code::malformedTlv,
        "Invalid FEC Prefix Element: PreLen 129 is too large for IPv6"},
       {"prefix of family 3", "02 0003 08 0a", Code::unsupportedAddressFamily,
        "Invalid FEC Prefix Element address family 0x3"},
       {"prefix length checked before the family", "02 0003 10 0a", Code::malformedTlv,
        "Invalid FEC Prefix Element: prefix bits: 16, remaining packet octets: 5"},
       {"prefix header of three octets", "02 0001", Code::malformedTlv,
        "Invalid FEC Prefix Element: TLV value is too small"},
       {"prefix after a prefix, header cut", "02 0001 08 0a | 02 0001", Code::malformedTlv,
        "Invalid FEC Prefix Element: TLV value is too small"},
       {"host address of IPv4", "03 0001 04 0a000001", Code::success, ""},
       {"host address family 2, length 4", "03 0002 04 0a000001", Code::malformedTlv,
        "Invalid FEC Host Addr Element: hostAddrLen 4 is not valid IPv6 size"},
       {"host address family 1, length 16", "03 0001 10 20010db8 00000000 00000000 00000001", Code::malformedTlv,
        "Invalid FEC Host Addr Element: hostAddrLen 16 is not valid IPv4 size"},
       {"host address family 3", "03 0003 04 0a000001", Code::unsupportedAddressFamily,
        "Invalid FEC Host Address Element address family 0x3"},
       {"host address longer than the value", "03 0001 05 0a000001", Code::malformedTlv,
        "Invalid FEC Host Address Element: hostAddrLen: 5, remaining packet octets: 8"},
       {"host address header of three octets", "03 0001", Code::malformedTlv,
        "Invalid FEC Host Address Element: TLV value is too small"},
   });
}

TEST(LdpFecTlvParser, WildcardRule) {
   checkFecFaults({
       {"wildcard alone", "01", Code::success, ""},
       {"wildcard after a prefix", "02 0001 08 0a | 01", Code::unknownFec,
        "FEC TLV Wildcard Element must be the only FEC Element in the FEC TLV"},
       {"wildcard followed by a byte", "01 | 02", Code::unknownFec,
        "FEC TLV Wildcard Element must be the only FEC Element in the FEC TLV"},
       {"two wildcards", "01 01", Code::unknownFec,
        "FEC TLV Wildcard Element must be the only FEC Element in the FEC TLV"},
   });
   auto const alone = parse(fecTlv("01"));
   EXPECT_TRUE(alone->hasWildcardFecElement());
   ASSERT_EQ(alone->fecElementNum(), 1u);
   EXPECT_EQ(alone->fecElement(0)->type(), LdpFecElementType::wildcardElement);

   std::string const mixed = fecTlv("02 0001 08 0a | 01 | 03 0001 04 0a000001");
   // No protocol parameters: the strict rule.
   auto const none = parse(mixed);
   EXPECT_TRUE(none->strict());
   EXPECT_EQ(none->protoParam(), nullptr);
   EXPECT_EQ(none->statusCode(), Code::unknownFec);
   EXPECT_FALSE(none->hasWildcardFecElement());
   // Protocol parameters as configured by default: strict as well.
   auto const param = Zon::makePtr<LdpProtoParam>(Zon::Name("param"));
   auto const byDefault = parse(mixed, param);
   EXPECT_TRUE(byDefault->strict());
   EXPECT_EQ(byDefault->protoParam(), param);
   EXPECT_EQ(byDefault->statusCode(), Code::unknownFec);
   // With the switch off a Wildcard may stand anywhere.
   param->fecTlvStrictPrefixWildcardOnlyElementIs(false);
   auto const loose = parse(mixed, param);
   EXPECT_TRUE(loose->valid()) << loose->reason();
   EXPECT_FALSE(loose->strict());
   EXPECT_TRUE(loose->hasWildcardFecElement());
   EXPECT_EQ(loose->fecElementNum(), 3u);
   EXPECT_TRUE(parse(fecTlv("01 01"), param)->valid());
}

TEST(LdpFecTlvParser, PwIdElementFaults) {
   std::string const p = pwId100;
   checkFecFaults({
       {"PW type 5, pwInfoLen 0", pwElement("0005", ""), Code::success, ""},
       {"PW type 5 with the C bit", pwElement("8005", p), Code::success, ""},
       {"PW type 4", pwElement("0004", p), Code::success, ""},
       {"PW type 6", pwElement("0006", p), Code::unknownFec, "Invalid FEC PW ID Element: Unknown PW type 0x0006"},
       {"PW type 6 with the C bit", pwElement("8006", p), Code::unknownFec,
        "Invalid FEC PW ID Element: Unknown PW type 0x0006"},
       {"pwInfoLen 2", pwElement("0005", "0000"), Code::badTlvLength,
        "Invalid FEC PW ID Element: TLV value length must be 0 or >= 4"},
       {"pwInfoLen 3", pwElement("0005", "000000"), Code::badTlvLength,
        "Invalid FEC PW ID Element: TLV value length must be 0 or >= 4"},
       {"seven octets", "80 0005 00 000000", Code::malformedTlv, "Invalid FEC PW ID Element: TLV is too small"},
       {"PW type checked before pwInfoLen", "80 0006 08 00000007 00000064", Code::unknownFec,
        "Invalid FEC PW ID Element: Unknown PW type 0x0006"},
       {"pwInfoLen beyond the value", "80 0005 08 00000007 00000064", Code::malformedTlv,
        "Invalid FEC PW ID Element: TLV value is too small"},
       {"PW ID 0", pwElement("0005", "00000000"), Code::malformedTlv, "Invalid FEC PW ID Element: PW ID cannot be 0"},
       {"unknown sub-TLV of length 4", pwElement("0005", p + "02 04 abcd"), Code::success, ""},
       {"unknown sub-TLV of length 2", pwElement("0005", p + "7f 02"), Code::success, ""},
       {"unknown sub-TLV of length 1", pwElement("0005", p + "02 01"), Code::badTlvLength,
        "Invalid PW Intf param element: Unrecognized packet invalid length"},
       {"unknown sub-TLV of length 0", pwElement("0005", p + "02 00"), Code::badTlvLength,
        "Invalid PW Intf param element: Unrecognized packet invalid length"},
       {"one octet of sub-TLV", pwElement("0005", p + "01"), Code::malformedTlv,
        "Invalid PW Intf param element: TLV is too small"},
       {"one octet after a sub-TLV", pwElement("0005", p + "01 04 05dc | 09"), Code::malformedTlv,
        "Invalid PW Intf param element: TLV is too small"},
       {"MTU sub-TLV cut", pwElement("0005", p + "01 04 05"), Code::malformedTlv,
        "Invalid PW Intf param element: TLV value is too small"},
       {"MTU sub-TLV of length 2 without room for its value", pwElement("0005", p + "01 02"), Code::malformedTlv,
        "Invalid PW Intf param element: TLV value is too small"},
       {"description longer than the PW information", pwElement("0005", p + "03 0a 676530"), Code::malformedTlv,
        "Invalid PW Intf param element: TLV value is too small"},
       {"MTU sub-TLV of length 6", pwElement("0005", p + "01 06 05dc 0000"), Code::badTlvLength,
        "Invalid PW Intf param element: PW MTU validation failure"},
       {"MTU sub-TLV of length 3", pwElement("0005", p + "01 03 05dc"), Code::badTlvLength,
        "Invalid PW Intf param element: PW MTU validation failure"},
       {"description with a NUL", pwElement("0005", p + "03 05 6700 30"), Code::badTlvLength,
        "Invalid PW Intf param element: PW Description validation failure"},
       {"description of length 1", pwElement("0005", p + "03 01 00"), Code::badTlvLength,
        "Invalid PW Intf param element: PW Description validation failure"},
       {"VLAN sub-TLV of length 5", pwElement("0005", p + "06 05 0064 00"), Code::badTlvLength,
        "Invalid PW Intf param element: Requested VLAN Id validation failure"},
       {"VLAN 4094", pwElement("0005", p + "06 04 0ffe"), Code::success, ""},
       {"VLAN 4095", pwElement("0005", p + "06 04 0fff"), Code::malformedTlv,
        "Invalid PW Intf param element: Requested VLAN Id validation failure"},
       {"VLAN 65535", pwElement("0005", p + "06 04 ffff"), Code::malformedTlv,
        "Invalid PW Intf param element: Requested VLAN Id validation failure"},
       {"fragmentation indicator of length 2", pwElement("0005", p + "09 02 0000"), Code::badTlvLength,
        "Invalid PW Intf param element: Fragmentation indicator validation failure"},
       {"VCCV of length 5", pwElement("0005", p + "0c 05 0102 00"), Code::badTlvLength,
        "Invalid PW Intf param element: VCCV param validation failure"},
       {"unknown sub-TLV longer than the PW information", pwElement("0005", p + "02 08 0000"), Code::malformedTlv,
        "Invalid FEC PW ID Element: TLV value length mismatch. Expected 8 octets but found 12 octets."},
       {"first sub-TLV fault ends the element", pwElement("0005", p + "01 06 05dc 0000 | 06 04 0fff"),
        Code::badTlvLength, "Invalid PW Intf param element: PW MTU validation failure"},
   });
}

TEST(LdpFecTlvParser, TheTlvValueBoundsEveryElement) {
   // The FEC TLV's value is 5 bytes; the bytes after it belong to the next TLV
   // and must not complete the prefix.
   auto const prefix = parse("0100 0005 02 0001 18 0a | 01 02 0200 0004 00000010");
   EXPECT_EQ(prefix->statusCode(), Code::malformedTlv);
   EXPECT_EQ(prefix->reason(), "Invalid FEC Prefix Element: prefix bits: 24, remaining packet octets: 5");
   auto const host = parse("0100 0007 03 0001 04 0a0000 | 01 0200 0004 00000010");
   EXPECT_EQ(host->reason(), "Invalid FEC Host Address Element: hostAddrLen: 4, remaining packet octets: 7");
   // The PW information is 6 bytes: the MTU sub-TLV's value lies outside it,
   // though inside the TLV value.
   auto const pw = parse(fecTlv("80 0005 06 00000007 00000064 0104 | 05dc"));
   EXPECT_EQ(pw->statusCode(), Code::malformedTlv);
   EXPECT_EQ(pw->reason(), "Invalid PW Intf param element: TLV value is too small");
}

TEST(LdpFecTlvParser, TlvLargerThanTheBytes) {
   // Every prefix of a TLV with three elements, one of them a PWid element with
   // sub-TLVs, fails on the TLV's own size; bytes after it are never read.
   std::string const pw = pwElement("8005", std::string(pwId100) + "01 04 05dc 0c 04 0102");
   TestSupport::checkEveryPrefix(
       {
           {"0100 " + lengthOf("02 0001 18 0a0102 03 0001 04 0a000001" + pw, 4), Code::badTlvLength,
            "FEC TLV is too small, size: {n}"},
           {"02 0001 18 0a0102", Code::badTlvLength, "FEC TLV is too small, size: {n}"},
           {"03 0001 04 0a000001", Code::badTlvLength, "FEC TLV is too small, size: {n}"},
           {pw, Code::badTlvLength, "FEC TLV is too small, size: {n}"},
       },
       {Code::success, ""},
       [](std::vector<std::uint8_t> const & b) -> TestSupport::Outcome {
          auto p = ldpFecTlvParserFactory(Vorin::Pkt::fromBytes(b), 0);
          return {p->statusCode(), p->reason()};
       });
}

TEST(LdpFecTlvParser, OffsetAndEmptyValue) {
   auto const pkt = hexPkt("ffffff | 0100 000e 02 0001 10 0a01 | 03 0001 04 0a000001");
   auto const p = ldpFecTlvParserFactory(pkt, 3);
   ASSERT_TRUE(p->valid()) << p->reason();
   EXPECT_TRUE(p->initialized());
   EXPECT_EQ(p->offset(), 3u);
   EXPECT_EQ(p->pkt(), pkt);
   EXPECT_EQ(p->fecElementNum(), 2u);
   // A header cut after its type word: nothing is read past the bytes.
   auto const cut = ldpFecTlvParserFactory(hexPkt("ffff 0100"), 2);
   EXPECT_EQ(cut->statusCode(), Code::badTlvLength);
   EXPECT_EQ(cut->reason(), "FEC TLV is too small, size: 4");
   // An empty value holds no element and is valid.
   auto const empty = parse("0100 0000");
   EXPECT_TRUE(empty->valid());
   EXPECT_EQ(empty->fecElementNum(), 0u);
   EXPECT_EQ(empty->stringValue(), "");
}

TEST(LdpFecTlvParser, IpElements) {
   auto const p = parse(fecTlv("02 0001 10 0a01 | 02 0001 00 | 02 0002 20 20010db8 | 03 0001 04 c0a80001 |"
                               "03 0002 10 20010db8 00000000 00000000 00000001 | 02 0001 19 0a0102ff"));
   ASSERT_TRUE(p->valid()) << p->reason();
   ASSERT_EQ(p->fecElementNum(), 6u);
   std::vector<std::string> const want{"10.1.0.0/16",     "0.0.0.0/0",         "2001:db8::/32",
                                       "192.168.0.1/32", "2001:db8::1/128", "10.1.2.128/25"};
   for (std::uint32_t i = 0; i < want.size(); ++i) {
      EXPECT_EQ(p->fecElement(i)->fwdEqvCls().prefix().stringValue(), want[i]) << "element " << i;
   }
   EXPECT_EQ(p->fecElement(3)->type(), LdpFecElementType::hostAddrElement);
   EXPECT_EQ(p->fecElement(5)->type(), LdpFecElementType::prefixElement);
   EXPECT_FALSE(p->hasWildcardFecElement());
}

TEST(LdpFecTlvParser, PwIdElementWithEverySubTlv) {
   std::string const info = std::string(pwId100) + "01 04 05dc | 03 05 676530 | 06 04 0064 | 09 04 0001 | 0c 04 0102 |"
                                                   "7e 03 00";
   auto const p = parse(fecTlv(pwElement("8005", info)));
   ASSERT_TRUE(p->valid()) << p->reason();
   ASSERT_EQ(p->fecElementNum(), 1u);
   auto const & pw = p->fecElement(0)->pwFwdEqvCls();
   EXPECT_EQ(pw.pwType(), Pseudowire::PseudowireType::ethernet);
   EXPECT_TRUE(pw.controlWord());
   EXPECT_EQ(pw.groupId().value(), 7u);
   EXPECT_EQ(pw.pwId().value(), 100u);
   EXPECT_EQ(pw.params().groupId().value(), 7u);
   EXPECT_EQ(pw.params().mtu(), 1500);
   EXPECT_EQ(pw.params().intfDescription(), "ge0");
   EXPECT_EQ(pw.params().requestedVlanId().value(), 100);
   EXPECT_TRUE(pw.params().fragCapable());
   EXPECT_EQ(pw.params().vccvCcTypes(), 1);
   EXPECT_EQ(pw.params().vccvCvTypes(), 2);

   // No PW information: no PW ID, no parameters.
   auto const bare = parse(fecTlv(pwElement("0004", "") + "|" + pwElement("0005", "00000009")));
   ASSERT_TRUE(bare->valid()) << bare->reason();
   ASSERT_EQ(bare->fecElementNum(), 2u);
   EXPECT_EQ(bare->fecElement(0)->pwFwdEqvCls().pwType(), Pseudowire::PseudowireType::ethernetTagged);
   EXPECT_FALSE(bare->fecElement(0)->pwFwdEqvCls().controlWord());
   EXPECT_EQ(bare->fecElement(0)->pwFwdEqvCls().pwId().value(), 0u);
   EXPECT_EQ(bare->fecElement(0)->pwFwdEqvCls().params().mtu(), 0); // no MTU signalled
   EXPECT_EQ(bare->fecElement(1)->pwFwdEqvCls().pwId().value(), 9u);
}

TEST(LdpFecTlvParser, ElementsBeforeAFaultStay) {
   auto const p = parse(fecTlv("02 0001 08 0a | 03 0001 04 0a000001 | 02 0005 08 0a"));
   EXPECT_EQ(p->statusCode(), Code::unsupportedAddressFamily);
   EXPECT_EQ(p->fecElementNum(), 2u);
   EXPECT_EQ(p->stringValue(), "Error FEC TLV: Invalid FEC Prefix Element address family 0x5");
}

TEST(LdpFecTlvParser, TextForm) {
   auto const p = parse(fecTlv("02 0001 18 0a0102 | 03 0001 04 0a000001 | 02 0002 20 20010db8"));
   EXPECT_EQ(p->stringValue(),
             "Prefix FEC Element, Address Family: 1, PreLen: 24, Prefix: 10.1.2.0/24; "
             "Host Address FEC Element, Address Family: 1, HostAddrLen: 4, Addr: 10.0.0.1; "
             "Prefix FEC Element, Address Family: 2, PreLen: 32, Prefix: 2001:db8::/32");
   EXPECT_EQ(parse(fecTlv("01"))->stringValue(), "Wildcard FEC Element");
   auto const pw = parse(fecTlv(pwElement("0005", "00000064")));
   EXPECT_EQ(pw->stringValue(), pw->fecElement(0)->stringValue());
}

TEST(LdpFecTlvParser, ElementCollection) {
   auto const p = parse(fecTlv("01"));
   auto const wildcard = p->fecElement(0);
   auto const a = LdpFecTlvParser::ElementPtr(ldpFecTlvHostAddrElementFactory(Vorin::IpGenAddr::fromString("10.0.0.1")));
   auto const b = LdpFecTlvParser::ElementPtr(ldpFecTlvHostAddrElementFactory(Vorin::IpGenAddr::fromString("10.0.0.2")));
   EXPECT_EQ(p->fecElement(1), nullptr);
   EXPECT_EQ(p->newFecElement(0, a), wildcard); // taken: the existing element stays
   EXPECT_EQ(p->newFecElement(5, a), a);
   p->fecElementIs(3, b); // between two entries
   EXPECT_EQ(p->fecElementNum(), 3u);
   EXPECT_EQ(p->fecElement(0), wildcard);
   EXPECT_EQ(p->fecElement(3), b);
   EXPECT_EQ(p->fecElement(5), a);
   EXPECT_EQ(p->fecElement(4), nullptr);
   p->fecElementIs(5, b); // replaces
   EXPECT_EQ(p->fecElement(5), b);
   EXPECT_EQ(p->fecElementNum(), 3u);
   p->fecElementDel(3);
   p->fecElementDel(4); // absent: nothing happens
   EXPECT_EQ(p->fecElementNum(), 2u);
   EXPECT_EQ(p->fecElement(3), nullptr);
   EXPECT_EQ(p->fecElement(5), b);
   p->fecElementDelAll();
   EXPECT_EQ(p->fecElementNum(), 0u);
   EXPECT_EQ(p->fecElement(0), nullptr);
   // Refilled after emptying, the first entry lives inline again.
   p->fecElementIs(2, a);
   EXPECT_EQ(p->fecElement(2), a);
   p->fecElementDel(2);
   EXPECT_EQ(p->fecElementNum(), 0u);
   // The collection holds the last references: deleting releases them.
   EXPECT_EQ(a->references(), 1u);
   EXPECT_EQ(b->references(), 1u);
}

// The records the parsers write at `level` and below while alive.
struct TraceRecords {
   std::vector<std::string> lines;
   int savedLevel;
   explicit TraceRecords(int level) : savedLevel(ldpGenMsgParserTrace.level()) {
      ldpGenMsgParserTrace.levelIs(level);
      Trace::sinkIs([this](Trace::Source const & s, int lvl, std::string_view text) {
         lines.push_back(s.name() + "/" + std::to_string(lvl) + ":" + std::string(text));
      });
   }
   ~TraceRecords() {
      Trace::sinkIs({});
      ldpGenMsgParserTrace.levelIs(savedLevel);
   }
   bool has(std::string const & line) const {
      for (auto const & l : lines) {
         if (l == line) {
            return true;
         }
      }
      return false;
   }
};

TEST(LdpFecTlvParser, Trace) {
   {
      // Progress at detail level: the start, the unrecognized sub-TLV, the count.
      TraceRecords t(traceDetail);
      auto const p = ldpFecTlvParserFactory(
          hexPkt("ffff | " + fecTlv("02 0001 18 0a0102 | " + pwElement("0005", std::string(pwId100) + "7e 03 00"))), 2);
      ASSERT_TRUE(p->valid()) << p->reason();
      EXPECT_TRUE(t.has("LdpGenMsgParser/6:   Parse FEC TLV frontBytes: 28, offset: 2"))
          << testing::PrintToString(t.lines);
      EXPECT_TRUE(t.has("LdpGenMsgParser/6:Ignoring unrecognized PW intf sub-TLV (code 0x7e)"))
          << testing::PrintToString(t.lines);
      EXPECT_EQ(t.lines.back(), "LdpGenMsgParser/6:FEC TLV parsed 2 elements");
   }
   {
      // A fault at error level, once, with its reason; nothing at error level
      // for a good TLV.
      TraceRecords t(traceError);
      parse(fecTlv("02 0001 08 0a"));
      EXPECT_TRUE(t.lines.empty()) << testing::PrintToString(t.lines);
      parse(fecTlv("02 0001 08 0a | 81"));
      EXPECT_EQ(t.lines, std::vector<std::string>{"LdpGenMsgParser/5:Unhandled FEC TLV Element type 0x81"});
   }
}

TEST(LdpFecTlvParserDeathTest, PwIdElementPositionPastTheEnd) {
   auto const p = parse(fecTlv(pwElement("0005", "00000064")));
   auto element = ldpFecTlvPwIdElementFactory();
   std::uint32_t pos = 12;
   EXPECT_DEATH(p->parseFecTlvPwIdElement(pos, 11, *element), "currOffset <= endOffset");
}

} // namespace
