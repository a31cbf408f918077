// The TLV group parser, the PDU parser and the message header step.
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "ldp/parser/LdpCapabilityMsgParser.h"
#include "ldp/parser/LdpMsgParserGet.h"
#include "ldp/parser/LdpMsgParser.h"
#include "ldp/parser/LdpPduParser.h"
#include "ldp/parser/LdpTlvGroupParser.h"
#include "ldp/trace/LdpTrace.h"
#include "support/Hex.h"
#include "support/Truncation.h"

using namespace Ldp;
using TestSupport::hexBytes;
using TestSupport::hexPkt;
using TestSupport::Outcome;
using Code = LdpStatusCode;

namespace {

struct GroupCase {
   char const * name;
   char const * hex;
   std::uint32_t offset;
   std::uint32_t size;
   Code code;
   char const * reason;
   std::vector<std::uint32_t> offsets;
};

TEST(LdpTlvGroupParser, Framing) {
   GroupCase const cases[] = {
       {"empty group at the end of the bytes", "0000", 2, 0, Code::success, "", {}},
       {"items of 8 and 12 bytes", "ff 0001 0004 aabbccdd 0002 0008 0011223344556677", 1, 20, Code::success, "", {1, 9}},
       {"second item truncated by the size", "0001 0004 aabbccdd 0002 0008 0011223344556677", 0, 19,
        Code::badTlvLength, "Msg/Tlv is corrupted/truncated", {0}},
       {"size 3, no room for a header", "000100", 0, 3, Code::badTlvLength, "Msg/Tlv header is corrupted", {}},
       {"size 3, header read from the bytes behind", "0001 0000", 0, 3, Code::badTlvLength,
        "Msg/Tlv is corrupted/truncated", {}},
       {"group past the received bytes", "0001 0000", 0, 5, Code::badTlvLength, "Packet is too small, size: 4", {}},
       {"length 0xFFFC wraps to 0", "0001 0000 0002 fffc", 0, 8, Code::badTlvLength, "Msg/Tlv header is corrupted",
        {0}},
       {"bytes end after an item", "0001 0000 0002 00", 0, 7, Code::badTlvLength, "Msg/Tlv header is corrupted",
        {0}},
       {"item ends exactly at the group end", "0001 0000 0002 0000 ffff", 0, 8, Code::success, "", {0, 4}},
   };
   for (auto const & c : cases) {
      auto g = ldpTlvGroupParserFactory("");
      g->pktIs(hexPkt(c.hex));
      g->offsetIs(c.offset);
      g->sizeIs(c.size);
      EXPECT_TRUE(g->parseTlvGroup());
      EXPECT_EQ(g->statusCode(), c.code) << c.name;
      EXPECT_EQ(g->reason(), c.reason) << c.name;
      EXPECT_EQ(g->valid(), c.code == Code::success) << c.name;
      ASSERT_EQ(g->tlvNum(), c.offsets.size()) << c.name;
      for (std::uint32_t i = 0; i < c.offsets.size(); ++i) {
         EXPECT_EQ(g->tlvOffset(i), c.offsets[i]) << c.name << " entry " << i;
      }
   }
}

TEST(LdpTlvGroupParser, ManyItemsSpillFromInlineStorage) {
   std::string hex;
   for (int i = 0; i < 20; ++i) {
      hex += "0001 0000 ";
   }
   auto g = ldpTlvGroupParserFactory("msgs");
   g->pktIs(hexPkt(hex));
   g->sizeIs(80);
   g->parseTlvGroup();
   ASSERT_TRUE(g->valid());
   ASSERT_EQ(g->tlvNum(), 20u);
   for (std::uint32_t i = 0; i < 20; ++i) {
      EXPECT_EQ(g->tlvOffset(i), 4 * i);
   }
   g->tlvOffsetDel(3);
   EXPECT_EQ(g->tlvNum(), 19u);
   EXPECT_EQ(g->tlvOffset(3), 0u);
   EXPECT_EQ(g->tlvOffset(4), 16u);
   g->tlvOffsetIs(3, 99);
   EXPECT_EQ(g->tlvOffset(3), 99u);
   g->tlvOffsetDelAll();
   EXPECT_EQ(g->tlvNum(), 0u);
   EXPECT_EQ(g->name(), "msgs");
}

TEST(LdpTlvGroupParserDeath, OffsetBeyondTheBytes) {
   auto g = ldpTlvGroupParserFactory("");
   g->pktIs(hexPkt("0001"));
   g->offsetIs(3);
   EXPECT_DEATH(g->parseTlvGroup(), "pkt_->frontBytes\\(\\) >= offset_");
}

// PDU header ahead of a keepalive message (type 0x0201, length 4, id 1).
constexpr char const * keepalivePdu = "0001 000e 0a000001 0000 | 0201 0004 00000001";

Outcome pduOutcome(std::vector<std::uint8_t> const & bytes, std::uint32_t offset = 0) {
   auto p = ldpPduParserFactory(Vorin::Pkt::fromBytes(bytes), offset);
   return {p->statusCode(), p->reason()};
}

TEST(LdpPduParser, KeepalivePduEveryPrefix) {
   TestSupport::checkEveryPrefix(
       {
           {"0001 000e 0a000001 0000", Code::badPduLength, "PDU too small, size = {n}"},
           {"0201 0004 00000001", Code::badPduLength, "PDU too small, size = {n}"},
       },
       {Code::success, ""}, [](auto const & b) { return pduOutcome(b); });
}

struct PduCase {
   char const * name;
   std::string hex;
   Code code;
   std::string reason;
};

std::string pduWithLength(char const * version, char const * length, std::string body = "0201 0004 00000001") {
   return std::string(version) + length + "0a000001 0000" + body;
}

TEST(LdpPduParser, HeaderChecksInOrder) {
   PduCase const cases[] = {
       {"length 9596 passes the upper bound, body missing", pduWithLength("0001", "257c"), Code::malformedTlv,
        "LDP PDU Messages are malformed"},
       {"length 9597 too big", pduWithLength("0001", "257d"), Code::badPduLength,
        "PDU length field too big, length = 9601"},
       {"length 10 passes the lower bound", pduWithLength("0001", "000a"), Code::malformedTlv,
        "LDP PDU Messages are malformed"},
       {"length 9 too small", pduWithLength("0001", "0009"), Code::badPduLength,
        "PDU length field too small, length = 13"},
       {"length 0xFFFC wraps to 0", pduWithLength("0001", "fffc"), Code::badPduLength,
        "PDU length field too small, length = 0"},
       {"bad version, good length", pduWithLength("0002", "000e"), Code::badVersion, "LDP Version 2 not supported"},
       {"bad version, bad length", pduWithLength("0002", "0009"), Code::badPduLength,
        "PDU length field too small, length = 13"},
       {"length beyond the received bytes", pduWithLength("0001", "0020"), Code::malformedTlv,
        "LDP PDU Messages are malformed"},
       {"unknown message type is framing only", pduWithLength("0001", "000e", "3fff 0004 00000001"), Code::success,
        ""},
   };
   for (auto const & c : cases) {
      Outcome o = pduOutcome(hexBytes(c.hex));
      EXPECT_EQ(o.code, c.code) << c.name;
      EXPECT_EQ(o.reason, c.reason) << c.name;
   }
}

TEST(LdpPduParser, SplitsMessagesAtAnOffset) {
   // Two bytes of something else, then a PDU with a keepalive and an address
   // withdraw-sized unknown message, then trailing bytes that are not the PDU's.
   auto pkt = hexPkt("abab | 0001 001a 0a000001 0003 | 0201 0004 00000001 | 8f00 0008 00000002 00000000 | cccc");
   auto p = ldpPduParserFactory(pkt, 2);
   ASSERT_TRUE(p->validLdpPdu());
   EXPECT_TRUE(p->initialized());
   EXPECT_EQ(p->version(), 1);
   EXPECT_EQ(p->length(), 26);
   EXPECT_EQ(p->totalLength(), 30);
   EXPECT_EQ(p->ldpIdentifier().stringValue(), "10.0.0.1:3");
   ASSERT_EQ(p->messageNum(), 2u);
   EXPECT_EQ(p->messageOffset(0), 12u);
   EXPECT_EQ(p->messageOffset(1), 20u);
   EXPECT_EQ(p->tlvGroupParser()->name(), "");
}

TEST(LdpPduParser, GroupParserKeepsThePreciseReason) {
   auto p = ldpPduParserFactory(hexPkt(pduWithLength("0001", "0020")), 0);
   EXPECT_EQ(p->tlvGroupParser()->reason(), "Packet is too small, size: 18");
   EXPECT_EQ(p->stringValue(), "Error LDP PDU: LDP PDU Messages are malformed");
}

TEST(LdpPduParser, TextFormOfAValidPdu) {
   auto p = ldpPduParserFactory(hexPkt(keepalivePdu), 0);
   EXPECT_EQ(p->stringValue(), "LdpPduHdr: Ver(1),Len(14),LdpId: 10.0.0.1:0\n0: LDP KeepAlive Msg:\n   Msg Id: 1,\n");
}

TEST(LdpPduParser, ShortBufferHasNoHeaderView) {
   auto p = ldpPduParserFactory(hexPkt("0001 000e 0a"), 0);
   EXPECT_EQ(p->header(), nullptr);
   EXPECT_EQ(p->version(), 0);
   EXPECT_EQ(p->messageNum(), 0u);
   auto empty = ldpPduParserFactory(Vorin::Pkt::fromBytes({}), 0);
   EXPECT_EQ(empty->statusCode(), Code::badPduLength);
   EXPECT_EQ(empty->reason(), "PDU too small, size = 0");
}

TEST(LdpPduParser, HeaderSetter) {
   auto p = ldpPduParserFactory(hexPkt("0001 000e 0a"), 0);
   auto other = hexPkt("0002 0020 0a000001 0005");
   p->headerIs(reinterpret_cast<LdpPduHdr const *>(other->front()));
   EXPECT_EQ(p->version(), 2);
   EXPECT_EQ(p->totalLength(), 36);
   EXPECT_EQ(p->ldpIdentifier().stringValue(), "10.0.0.1:5");
   p->headerIs(nullptr);
   EXPECT_EQ(p->header(), nullptr);
   EXPECT_EQ(p->length(), 0);
}

TEST(LdpPduParserDeath, OffsetBeyondTheBytes) {
   EXPECT_DEATH(ldpPduParserFactory(hexPkt(keepalivePdu), 23), "pkt_->frontBytes\\(\\) >= offset_");
   EXPECT_DEATH(ldpPduParserFactory(Zon::Ptr<Vorin::Pkt>(), 0), "\nheader_\n");
}

Outcome msgOutcome(std::vector<std::uint8_t> const & bytes) {
   auto m = ldpMsgParserFactory(Vorin::Pkt::fromBytes(bytes), 0);
   return {m->statusCode(), m->reason()};
}

TEST(LdpMsgParser, HeaderStep) {
   PduCase const cases[] = {
       {"unknown type, U set", "bfff 0004 00000001", Code::unknownMessageTypeIgnore, "Unknown Message Type: 16383"},
       {"unknown type, U clear", "3fff 0004 00000001", Code::unknownMessageType, "Unknown Message Type: 16383"},
       {"unknown type checked before the size", "3fff 00", Code::unknownMessageType, "Unknown Message Type: 16383"},
       {"type word not received", "02", Code::malformedTlv, "MSG too small, size = 1"},
       {"keepalive", "0201 0004 00000001", Code::success, ""},
       {"capability", "0202 0004 00000001", Code::success, ""},
       {"length 3 too small", "0201 0003 00000001", Code::malformedTlv, "MSG length field too small, length = 7"},
       {"length 0xFFFD wraps to 1", "0201 fffd 00000001", Code::malformedTlv,
        "MSG length field too small, length = 1"},
       {"length 4093 too big", "0201 0ffd 00000001", Code::malformedTlv, "MSG length field too big, length = 4097"},
       {"length 4092 accepted, TLVs missing", "0201 0ffc 00000001", Code::badTlvLength,
        "Packet is too small, size: 8"},
       {"unknown TLV with U set is skipped", "0201 000c 00000001 8102 0000 3e00 0000", Code::success, ""},
       {"unknown TLV without U", "0201 000c 00000001 3e00 0000 0102 0000", Code::unknownTlv,
        "Unknown TLV Type: 258"},
       {"TLV runs past the message", "0201 000a 00000001 0100 0004 0000 0000", Code::badTlvLength,
        "Msg/Tlv is corrupted/truncated"},
   };
   for (auto const & c : cases) {
      Outcome o = msgOutcome(hexBytes(c.hex));
      EXPECT_EQ(o.code, c.code) << c.name;
      EXPECT_EQ(o.reason, c.reason) << c.name;
   }
}

TEST(LdpMsgParser, KeepaliveEveryPrefix) {
   TestSupport::checkEveryPrefix(
       {
           {"0201 0004 00000001", Code::malformedTlv, "MSG too small, size = {n}"},
       },
       {Code::success, ""}, msgOutcome);
}

TEST(LdpMsgParser, TruncatedHeaderHasNoView) {
   auto m = ldpMsgParserFactory(hexPkt("0201 0004 00"), 0);
   EXPECT_EQ(m->msgHdr(), nullptr);
   EXPECT_EQ(m->stringValue(), "Message Error: MSG too small, size = 5");
}

TEST(LdpMsgParserGet, KeepaliveAndCapabilityGetTheBaseParser) {
   for (char const * hex : {"0201 0004 00000009", "0202 0004 00000009"}) {
      auto m = ldpMsgParserGet(hexPkt(hex), 0);
      EXPECT_TRUE(m->validMsg()) << hex;
      EXPECT_STREQ(m->fwkType(), "Ldp::LdpMsgParser") << hex;
      EXPECT_EQ(m->msgHdr()->msgId(), 9u);
   }
}

TEST(LdpMsgParserGetDeath, Preconditions) {
   EXPECT_DEATH(ldpMsgParserGet(Zon::Ptr<Vorin::Pkt>(), 0), "\npkt\n");
   EXPECT_DEATH(ldpMsgParserGet(Vorin::Pkt::fromBytes({}), 0), "\npkt->frontBytes\\(\\)\n");
   EXPECT_DEATH(ldpMsgParserFactory(hexPkt("0201"), 3), "pkt_->frontBytes\\(\\) >= offset_");
   EXPECT_DEATH(ldpMsgParserFactory(Zon::Ptr<Vorin::Pkt>(), 0), "\nmsgHdr_\n");
}

} // namespace

namespace {

TEST(LdpMsgParserGet, HeaderFaultsComeFromTheBaseParserMessageFaultsFromTheOwnClass) {
   struct Case {
      char const * hex;
      char const * fwkType;
      char const * text;
   };
   Case const cases[] = {
       // Hello whose length is too big: the shared checks fail, the base answers.
       {"0100 0ffd 00000001", "Ldp::LdpMsgParser", "Message Error: MSG length field too big, length = 4097"},
       // Hello with a TLV type nobody knows and no U bit: still a shared check.
       {"0100 0008 00000001 0102 0000", "Ldp::LdpMsgParser", "Message Error: Unknown TLV Type: 258"},
       // Hello without TLVs passes the shared checks and fails its own.
       {"0100 0004 00000001", "Ldp::LdpHelloMsgParser", "Invalid LDP Hello Msg: Message has 0 TLV"},
       // Label Mapping truncated inside its header.
       {"0400 0004 0000", "Ldp::LdpMsgParser", "Message Error: MSG too small, size = 6"},       // The U bit of a known type plays no part in the dispatch.
       {"8100 0004 00000001", "Ldp::LdpHelloMsgParser", "Invalid LDP Hello Msg: Message has 0 TLV"},
       {"8300 0004 00000001", "Ldp::LdpAddressMsgParser",
        "Invalid LDP Address Msg: Message does not have at least 1 TLV"},
       {"8201 0004 00000001", "Ldp::LdpMsgParser", "LDP KeepAlive Msg:\n   Msg Id: 1,"},
   };
   for (auto const & c : cases) {
      auto m = ldpMsgParserGet(hexPkt(c.hex), 0);
      EXPECT_STREQ(m->fwkType(), c.fwkType) << c.hex;
      EXPECT_EQ(m->stringValue(), c.text) << c.hex;
   }
}

} // namespace

namespace {

// Records what the parsers trace at error level while alive.
struct ErrorTrace {
   std::vector<std::string> lines;
   int savedLevel;
   ErrorTrace() : savedLevel(ldpGenMsgParserTrace.level()) {
      ldpGenMsgParserTrace.levelIs(traceError);
      Trace::sinkIs([this](Trace::Source const & s, int level, std::string_view text) {
         lines.push_back(s.name() + "/" + std::to_string(level) + ":" + std::string(text));
      });
   }
   ~ErrorTrace() {
      Trace::sinkIs({});
      ldpGenMsgParserTrace.levelIs(savedLevel);
   }
};

TEST(LdpMsgParserGet, HeaderFaultOfAKnownTypeIsTracedOnce) {
   // Types with a class of their own and types served by the base parser alike:
   // the parser that ldpMsgParserGet returns ran the header step once.
   struct Case {
      char const * hex;
      std::vector<std::string> trace;
   };
   Case const cases[] = {
       {"0100 0ffd 00000001", {"LdpGenMsgParser/5:MSG length field too big, length = 4097"}},
       {"0300 0008 00000001 0102 0000", {"LdpGenMsgParser/5:Unknown TLV Type: 258"}},
       {"0400 0004 0000", {"LdpGenMsgParser/5:MSG too small, size = 6"}},
       {"0201 0003 00000001", {"LdpGenMsgParser/5:MSG length field too small, length = 7"}},
       {"0100 000a 00000001 0400 0004",
        {"LdpGenMsgParser/5:Packet is too small, size: 12"}},
   };
   for (auto const & c : cases) {
      ErrorTrace t;
      auto m = ldpMsgParserGet(hexPkt(c.hex), 0);
      EXPECT_STREQ(m->fwkType(), "Ldp::LdpMsgParser") << c.hex;
      EXPECT_EQ(t.lines, c.trace) << c.hex;
   }
}

TEST(LdpMsgParserGet, FaultOfAnInnerParserIsTracedOnceByTheParserThatFoundIt) {
   // A Label Mapping whose FEC element has an unknown type: the FEC TLV parser
   // traces the fault, the message parser takes it over without a second record.
   ErrorTrace t;
   auto m = ldpMsgParserGet(hexPkt("0400 0014 00000005 | 0100 0004 09000000 | 0200 0004 00000011"), 0);
   EXPECT_EQ(m->statusCode(), Code::unknownFec);
   EXPECT_EQ(t.lines, std::vector<std::string>{"LdpGenMsgParser/5:Unhandled FEC TLV Element type 0x09"});
}

TEST(LdpMsgParserGet, FallbackParserKeepsTheHeaderStepResult) {
   // A Hello whose single TLV runs past the message: the base parser answers
   // with the group parser's fault, its header view and its TLV entries.
   auto pkt = hexPkt("ffff | 0100 0010 00000007 | 0400 0004 000f 0000 | 0401 0008");
   auto m = ldpMsgParserGet(pkt, 2);
   EXPECT_STREQ(m->fwkType(), "Ldp::LdpMsgParser");
   EXPECT_FALSE(m->headerStepValid());
   EXPECT_EQ(m->pkt(), pkt);
   EXPECT_EQ(m->offset(), 2u);
   ASSERT_NE(m->msgHdr(), nullptr);
   EXPECT_EQ(m->msgHdr()->msgId(), 7u);
   EXPECT_EQ(m->statusCode(), Code::badTlvLength);
   EXPECT_EQ(m->reason(), "Msg/Tlv is corrupted/truncated");
   EXPECT_EQ(m->tlvGroupParser()->reason(), "Msg/Tlv is corrupted/truncated");
   EXPECT_EQ(m->tlvGroupParser()->tlvNum(), 1u);
   EXPECT_EQ(m->tlvGroupParser()->tlvOffset(0), 10u);
   EXPECT_EQ(m->msgFecTlv(), nullptr);
   EXPECT_EQ(m->stringValue(), "Message Error: Msg/Tlv is corrupted/truncated");
}

// ---- a message's TLVs stay inside it ----------------------------------------

// A TLV length of 0xFFFD..0xFFFF wraps the framing's 16-bit item size to 1..3
// bytes, so the last TLV of a message can end its header in the next message and
// claim 65K bytes behind it. When those bytes were received and would parse (here
// `next`, which continues the length word), the TLV is still refused, with the
// code of a TLV that runs past its bytes.
struct EscapeCase {
   char const * name;
   std::string message; // ends inside the last TLV's header
   std::string next;    // the bytes behind it: the rest of that header and 64K
   Code code;
   std::string reason;
};

std::string repeated(std::string const & hex, int n) {
   std::string s;
   for (int i = 0; i < n; ++i) {
      s += hex;
   }
   return s;
}

TEST(LdpMsgParser, LastTlvCannotReachIntoTheNextMessage) {
   // 13107 prefix elements of 5 bytes fill a value of 0xFFFF bytes.
   std::string const prefixes = repeated("02 0001 08 0a", 13107);
   // An IPv4 address list of 0xFFFE bytes: the family and 16383 addresses.
   std::string const addresses = "0001" + repeated("0a000001", 16383);
   EscapeCase const cases[] = {
       {"FEC TLV of a Label Request", "0401 0007 00000005 | 0100 ff", "ff" + prefixes, Code::badTlvLength,
        "FEC TLV is too small, size: "},
       {"address list of an Address", "0300 0006 00000005 | 0101", "fffe" + addresses, Code::badTlvLength,
        "badTlvLength"},
       {"capability TLV of a Capability", "0202 0007 00000005 | 850c ff", "ff" + prefixes, Code::malformedTlv,
        "multiTopologyCapabilityTlv TLV is not the right size"},
   };
   for (auto const & c : cases) {
      auto const pkt = hexPkt(c.message + c.next);
      std::string reason = c.reason;
      if (reason.ends_with("size: ")) {
         reason += std::to_string(pkt->frontBytes());
      }
      LdpMsgParser::Ptr const p = c.message.starts_with("0202") ? LdpMsgParser::Ptr(ldpCapabilityMsgParserFactory(pkt, 0))
                                                                : ldpMsgParserGet(pkt, 0);
      ASSERT_TRUE(p->headerStepValid()) << c.name << ": " << p->reason();
      EXPECT_EQ(p->statusCode(), c.code) << c.name;
      EXPECT_EQ(p->reason(), reason) << c.name;
   }
}

} // namespace
