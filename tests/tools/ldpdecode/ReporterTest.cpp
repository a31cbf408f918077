#include "Reporter.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <iterator>
#include <string>
#include <vector>

#include "Decoder.h"
#include "ParallelReporter.h"
#include "ldp/parser/LdpPduParser.h"
#include "support/Hex.h"

using namespace LdpDecode;
using TestSupport::hexBytes;
using TestSupport::hexPkt;

namespace {

std::string const mappingPdu =
    "0001 0021 0a000001 0000 | 0400 0017 00000002 | 0100 0007 02 0001 18 0a0000 | 0200 0004 00000010";
// A Keepalive, a message of unknown type 0x3fff with the U bit, one of unknown
// type 0x3ffe without it.
std::string const unknownTypesPdu =
    "0001 001e 0a000001 0000 | 0201 0004 00000008 | bfff 0004 00000009 | 3ffe 0004 0000000a";
std::string const version2Pdu = "0002 000e 0a000001 0000 | 0201 0004 00000001";
std::string const ignoredOnlyPdu = "0001 000e 0a000002 0000 | bfff 0004 00000009";

struct Fixture {
   FrameMeta frame{7, 1, 2};
   FlowKey flow{Transport::tcp, {Vorin::IpGenAddr::fromString("10.0.0.1"), 646},
                {Vorin::IpGenAddr::fromString("10.0.0.2"), 1025}};
   std::string flowText = "10.0.0.1:646 > 10.0.0.2:1025  TCP";

   Origin origin() const {
      Origin o;
      o.frame = &frame;
      o.firstFrame = 7;
      o.flow = &flow;
      o.flowText = &flowText;
      return o;
   }
};

std::string const headerLine = "frame 7  1970-01-01 00:00:01.000002  10.0.0.1:646 > 10.0.0.2:1025  TCP\n";

TEST(Reporter, TextIsTheHeaderLineThenThePduParsersTextThenTheFaults) {
   struct Row {
      char const * what;
      std::string pdu;
      std::string faults;
   };
   Row const rows[] = {
       {"valid", mappingPdu, ""},
       {"unknown message types", unknownTypesPdu,
        "  ignored: message 1 (unknown 0x3fff, id 9): unknownMessageTypeIgnore (0x80000004): Unknown Message Type: 16383; "
        "the agent ignores it silently\n"
        "  fault: message 2 (unknown 0x3ffe, id 10): unknownMessageType (4): Unknown Message Type: 16382; the agent "
        "answers with a Notification carrying unknownMessageType (4)\n"},
       {"message without room for its ID", "0001 0012 0a000001 0000 | 0201 0000 | 0201 0004 00000005",
        "  fault: message 0 (LdpKeepAlive): malformedTlv (8): MSG length field too small, length = 4; the agent "
        "answers with a Notification carrying malformedTlv (8)\n"},
       {"bad version", version2Pdu,
        "  fault: PDU: badVersion (2): LDP Version 2 not supported; the agent answers with a Notification "
        "carrying badVersion (2)\n"},
   };
   for (Row const & row : rows) {
      Fixture f;
      Output out(nullptr);
      Reporter reporter(OutputMode::text, out);
      auto const pkt = hexPkt(row.pdu);
      reporter.pdu(f.origin(), pkt, 0);
      auto const pdu = Ldp::ldpPduParserFactory(pkt, 0);
      std::string pduText = pdu->stringValue();
      if (!pdu->validLdpPdu()) {
         pduText += '\n';
      }
      EXPECT_EQ(out.take(), headerLine + pduText + row.faults + "\n") << row.what;
   }
}

TEST(Reporter, PduBeganInAnEarlierFrame) {
   Fixture f;
   Output out(nullptr);
   Reporter reporter(OutputMode::text, out);
   Origin o = f.origin();
   o.firstFrame = 5;
   reporter.note(o, "gap", "gap: 3 bytes");
   EXPECT_EQ(out.take(),
             "frame 7  1970-01-01 00:00:01.000002  10.0.0.1:646 > 10.0.0.2:1025  TCP  (begins in frame 5)  note: "
             "gap: 3 bytes\n\n");
}

TEST(Reporter, TotalsCountFaultsButNotIgnoredMessages) {
   for (OutputMode mode : {OutputMode::text, OutputMode::json, OutputMode::jsonTexts, OutputMode::summary}) {
      Fixture f;
      Output out(nullptr);
      Reporter reporter(mode, out);
      reporter.pdu(f.origin(), hexPkt(ignoredOnlyPdu), 0);
      EXPECT_FALSE(reporter.faultFound());
      for (auto const * hex : {&mappingPdu, &unknownTypesPdu, &version2Pdu}) {
         reporter.pdu(f.origin(), hexPkt(*hex), 0);
      }
      Totals const & t = reporter.totals();
      EXPECT_EQ(t.pdus, 4u);
      EXPECT_EQ(t.invalidPdus, 1u);
      EXPECT_EQ(t.messages, 5u);
      EXPECT_EQ(t.messagesPerType[0x0400], 1u);
      EXPECT_EQ(t.messagesPerType[0x0201], 1u);
      EXPECT_EQ(t.messagesPerType[0x3fff], 2u);
      EXPECT_EQ(t.messagesPerType[0x3ffe], 1u);
      EXPECT_EQ(t.ignoredMessages, 2u);
      EXPECT_EQ(t.invalidMessages, 1u);
      EXPECT_EQ(t.faults, (std::map<std::uint32_t, std::uint64_t>{{2, 1}, {4, 1}}));
      EXPECT_EQ(t.faultCount(), 2u);
      EXPECT_TRUE(reporter.faultFound());
      ASSERT_EQ(t.ldpIds.size(), 2u);
      EXPECT_EQ(t.ldpIds.begin()->first.stringValue(), "10.0.0.1:0");
      ASSERT_EQ(t.sessions.size(), 1u);
      auto const & s = t.sessions.begin()->second;
      EXPECT_EQ(s.pdus, 3u);  // the valid ones
      EXPECT_TRUE(s.hasLdpId[0]);
      EXPECT_FALSE(s.hasLdpId[1]);
   }
}

TEST(Reporter, SummaryModesWriteNothingBeforeTheEnd) {
   Fixture f;
   Output out(nullptr);
   Reporter reporter(OutputMode::summary, out);
   reporter.pdu(f.origin(), hexPkt(unknownTypesPdu), 0);
   reporter.note(f.origin(), "gap", "gap");
   EXPECT_EQ(out.pending(), "");
   reporter.finish();
   EXPECT_NE(out.pending().find("unknownMessageType (4)"), std::string::npos);
}

TEST(Reporter, JsonHasOneObjectPerPduWithEachMessagesVerdict) {
   Fixture f;
   Output out(nullptr);
   Reporter reporter(OutputMode::json, out);
   reporter.pdu(f.origin(), hexPkt(unknownTypesPdu), 0);
   reporter.pdu(f.origin(), hexPkt(version2Pdu), 0);
   std::string const text = out.take();
   auto const nl = text.find('\n');
   ASSERT_NE(nl, std::string::npos);
   auto const first = nlohmann::json::parse(text.substr(0, nl));
   auto const second = nlohmann::json::parse(text.substr(nl + 1));
   EXPECT_EQ(first["type"], "pdu");
   EXPECT_EQ(first["frame"], 7);
   EXPECT_EQ(first["src"], "10.0.0.1");
   EXPECT_EQ(first["dstPort"], 1025);
   EXPECT_EQ(first["ldpId"], "10.0.0.1:0");
   EXPECT_EQ(first["valid"], true);
   ASSERT_EQ(first["messages"].size(), 3u);
   EXPECT_EQ(first["messages"][0]["action"], "accept");
   EXPECT_EQ(first["messages"][1]["action"], "ignore");
   EXPECT_EQ(first["messages"][1]["status"], "unknownMessageTypeIgnore");
   EXPECT_EQ(first["messages"][1]["statusCode"], 0x80000004u);
   EXPECT_EQ(first["messages"][2]["action"], "notification");
   EXPECT_EQ(first["messages"][2]["msgId"], 10);
   EXPECT_EQ(first["messages"][2]["offset"], 26);
   EXPECT_EQ(second["valid"], false);
   EXPECT_EQ(second["status"], "badVersion");
   EXPECT_EQ(second["reason"], "LDP Version 2 not supported");
   EXPECT_EQ(second["messages"].size(), 0u);
}

// A message's text form is in its JSON when it has a fault, and with
// --json-text (jsonTexts) always; its fields are there either way.
TEST(Reporter, JsonCarriesTheTextOfFaultyMessagesAndOfAllWithJsonTexts) {
   for (OutputMode mode : {OutputMode::json, OutputMode::jsonTexts}) {
      Fixture f;
      Output out(nullptr);
      Reporter reporter(mode, out);
      reporter.pdu(f.origin(), hexPkt(unknownTypesPdu), 0);
      auto const messages = nlohmann::json::parse(out.take())["messages"];
      ASSERT_EQ(messages.size(), 3u);
      EXPECT_EQ(messages[0]["valid"], true);
      EXPECT_EQ(messages[0].contains("text"), mode == OutputMode::jsonTexts);
      EXPECT_TRUE(messages[0].contains("msgId"));
      for (int i : {1, 2}) {
         EXPECT_EQ(messages[i]["valid"], false);
         ASSERT_TRUE(messages[i].contains("text")) << i;
         EXPECT_FALSE(messages[i]["text"].get<std::string>().empty()) << i;
      }
   }
}

TEST(Reporter, StatusCodeAndVerdictTexts) {
   using Ldp::LdpStatusCode;
   EXPECT_EQ(statusCodeText(LdpStatusCode::malformedTlv), "malformedTlv (8)");
   EXPECT_EQ(statusCodeText(LdpStatusCode::unknownMessageTypeIgnore), "unknownMessageTypeIgnore (0x80000004)");
   EXPECT_EQ(verdictOf(LdpStatusCode::success), Verdict::accept);
   EXPECT_EQ(verdictOf(LdpStatusCode::unknownMessageTypeIgnore), Verdict::ignore);
   EXPECT_EQ(verdictOf(LdpStatusCode::pwStatus), Verdict::notification);
   EXPECT_EQ(verdictText(LdpStatusCode::badTlvLength),
             "the agent answers with a Notification carrying badTlvLength (7)");
}

// Frames of raw IPv4 around a TCP or UDP payload.
std::vector<std::uint8_t> ipFrame(bool tcp, char const * src, char const * dst, std::uint16_t sport,
                                  std::uint16_t dport, std::uint32_t seq, std::uint8_t flags,
                                  std::vector<std::uint8_t> const & payload) {
   std::size_t const l4 = tcp ? 20 : 8;
   std::size_t const total = 20 + l4 + payload.size();
   auto const s = Vorin::IpAddr::fromString(src);
   auto const d = Vorin::IpAddr::fromString(dst);
   std::vector<std::uint8_t> f = {0x45, 0, std::uint8_t(total >> 8), std::uint8_t(total), 0, 0, 0, 0, 64,
                                  std::uint8_t(tcp ? 6 : 17), 0, 0};
   f.insert(f.end(), s.bytes(), s.bytes() + 4);
   f.insert(f.end(), d.bytes(), d.bytes() + 4);
   f.insert(f.end(), {std::uint8_t(sport >> 8), std::uint8_t(sport), std::uint8_t(dport >> 8), std::uint8_t(dport)});
   if (tcp) {
      f.insert(f.end(), {std::uint8_t(seq >> 24), std::uint8_t(seq >> 16), std::uint8_t(seq >> 8), std::uint8_t(seq),
                         0, 0, 0, 0, 0x50, flags, 0xff, 0xff, 0, 0, 0, 0});
   } else {
      std::size_t const len = 8 + payload.size();
      f.insert(f.end(), {std::uint8_t(len >> 8), std::uint8_t(len), 0, 0});
   }
   f.insert(f.end(), payload.begin(), payload.end());
   return f;
}

TEST(Decoder, TcpDirectionsAreReassembledAndUdpDatagramsAreOnePduEach) {
   auto const stream = hexBytes(mappingPdu + unknownTypesPdu);
   std::vector<std::uint8_t> const firstPart(stream.begin(), stream.begin() + 30);
   std::vector<std::uint8_t> const rest(stream.begin() + 30, stream.end());
   Output out(nullptr);
   Reporter reporter(OutputMode::text, out);
   Decoder decoder(reporter);
   decoder.linkTypeIs(LinkType::rawIp);
   std::uint64_t n = 0;
   auto frame = [&](std::vector<std::uint8_t> const & bytes) {
      FrameMeta const meta{++n, 1700000000, 0};
      decoder.frame(meta, bytes);
   };
   frame(ipFrame(true, "10.0.0.1", "10.0.0.2", 646, 40000, 99, TcpFlag::syn, {}));
   frame(ipFrame(true, "10.0.0.1", "10.0.0.2", 646, 40000, 100, 0x18, firstPart));
   frame(ipFrame(false, "10.0.0.2", "224.0.0.2", 646, 646, 0, 0, hexBytes(ignoredOnlyPdu)));
   frame(ipFrame(true, "10.0.0.1", "10.0.0.2", 646, 40000, 130, 0x18, rest));
   frame(ipFrame(false, "10.0.0.2", "10.0.0.1", 53, 53, 0, 0, {1, 2, 3}));
   auto withTail = hexBytes(ignoredOnlyPdu + "0102");
   frame(ipFrame(false, "10.0.0.2", "224.0.0.2", 646, 646, 0, 0, withTail));
   decoder.finish();
   std::string const text = out.take();
   EXPECT_NE(text.find("frame 3  2023-11-14 22:13:20.000000  10.0.0.2:646 > 224.0.0.2:646  UDP\n"),
             std::string::npos)
       << text;
   EXPECT_NE(text.find("frame 4  2023-11-14 22:13:20.000000  10.0.0.1:646 > 10.0.0.2:40000  TCP  (begins in frame 2)\n"
                       "LdpPduHdr: Ver(1),Len(33)"),
             std::string::npos)
       << text;
   EXPECT_NE(text.find("frame 6  2023-11-14 22:13:20.000000  10.0.0.2:646 > 224.0.0.2:646  UDP  note: the datagram "
                       "holds 2 bytes behind its PDU, which the hello socket does not read\n"),
             std::string::npos)
       << text;
   Totals const & t = reporter.totals();
   EXPECT_EQ(t.frames, 6u);
   EXPECT_EQ(t.tcpFrames, 3u);
   EXPECT_EQ(t.udpFrames, 2u);
   EXPECT_EQ(t.otherIpFrames, 1u);
   EXPECT_EQ(t.pdus, 4u);
   EXPECT_EQ(t.tcpStreams, 1u);
   EXPECT_EQ(t.tcp.segments, 2u);
   ASSERT_EQ(t.sessions.size(), 1u);
   EXPECT_EQ(t.sessions.begin()->first.first.text(), "10.0.0.1:646");
   EXPECT_EQ(t.sessions.begin()->second.pdus, 2u);
}

// The frame cut to its first `keep` bytes of IP datagram, as the first
// fragment of a longer datagram (the IP length says `keep`) or as a snap length
// leaves it (the IP length still says the whole).
std::vector<std::uint8_t> firstFragment(std::vector<std::uint8_t> f, std::size_t keep) {
   f.resize(keep);
   f[2] = std::uint8_t(keep >> 8);
   f[3] = std::uint8_t(keep);
   f[6] = 0x20;  // more fragments
   return f;
}
std::vector<std::uint8_t> snapped(std::vector<std::uint8_t> f, std::size_t keep) {
   f.resize(keep);
   return f;
}

TEST(Decoder, DatagramsNotWhollyCapturedAreNotedThenParsedOnWhatIsHeld) {
   auto const hello = hexBytes(ignoredOnlyPdu);
   auto const udp = ipFrame(false, "10.0.0.2", "224.0.0.2", 646, 646, 0, 0, hello);
   auto const tcp = ipFrame(true, "10.0.0.1", "10.0.0.2", 646, 40000, 100, 0x18, hexBytes(mappingPdu));
   struct Row {
      char const * what;
      std::vector<std::uint8_t> frame;
      std::string note;  // expected after the header line; empty for none
      std::uint64_t pdus;
      std::uint64_t faults;
   };
   Row const rows[] = {
       {"whole datagram", udp, "", 1, 0},
       {"datagram cut by the snap length", snapped(udp, 36),
        "UDP  note: the capture holds 8 of the datagram's 18 payload bytes\n", 1, 1},
       {"first fragment", firstFragment(udp, 40),
        "UDP  note: first fragment of an IP datagram (fragments are not reassembled): it holds 12 of the "
        "datagram's 18 payload bytes\n",
        1, 1},
       {"TCP segment in a first fragment", firstFragment(tcp, 60),
        "TCP  note: first fragment of an IP datagram (fragments are not reassembled): it carries the first 20 "
        "payload bytes of the TCP segment\n",
        0, 0},
   };
   for (Row const & row : rows) {
      Output out(nullptr);
      Reporter reporter(OutputMode::text, out);
      Decoder decoder(reporter);
      decoder.linkTypeIs(LinkType::rawIp);
      decoder.frame(FrameMeta{1, 1700000000, 0}, row.frame);
      decoder.finish();
      std::string const text = out.take();
      if (!row.note.empty()) {
         EXPECT_NE(text.find(row.note), std::string::npos) << row.what << "\n" << text;
      }
      EXPECT_EQ(reporter.totals().pdus, row.pdus) << row.what;
      EXPECT_EQ(reporter.totals().faultCount(), row.faults) << row.what;
   }
}

// Connections opened, carrying one PDU and closed in turn, each on its own
// port: every flow is freed at its close, and the totals count them all. The
// same through worker threads, whose reports are written after the flows that
// made them are gone.
TEST(Decoder, ClosedConnectionsAreFreedAndStillCounted) {
   constexpr std::uint16_t connections = 1000;
   auto const pdu = hexBytes(mappingPdu);
   auto const run = [&](ReportSink & reporter) {
      Decoder decoder(reporter);
      decoder.linkTypeIs(LinkType::rawIp);
      std::uint64_t n = 0;
      auto frame = [&](bool fromA, std::uint16_t port, std::uint32_t seq, std::uint8_t flags,
                       std::vector<std::uint8_t> const & payload = {}) {
         decoder.frame(FrameMeta{++n, 1700000000, 0},
                       fromA ? ipFrame(true, "10.0.0.1", "10.0.0.2", 646, port, seq, flags, payload)
                             : ipFrame(true, "10.0.0.2", "10.0.0.1", port, 646, seq, flags, payload));
      };
      for (std::uint16_t i = 0; i < connections; ++i) {
         std::uint16_t const port = std::uint16_t(40000 + i);
         frame(true, port, 99, TcpFlag::syn);
         frame(false, port, 499, TcpFlag::syn | 0x10);
         frame(true, port, 100, 0x18, pdu);
         frame(true, port, 137, TcpFlag::fin | 0x10);
         frame(false, port, 500, TcpFlag::fin | 0x10);
         frame(true, port, 138, 0x10);
         frame(true, port, 100, 0x18, pdu);  // retransmitted after the close: ignored
      }
      EXPECT_EQ(decoder.liveFlows(), 0u);
      // Bare ACK, FIN and RST of connections not followed make no flow.
      frame(true, 1, 5, 0x10);
      frame(true, 2, 5, TcpFlag::fin);
      frame(false, 3, 5, TcpFlag::rst);
      EXPECT_EQ(decoder.liveFlows(), 0u);
      decoder.finish();
      Totals const & t = reporter.totals();
      EXPECT_EQ(t.tcpStreams, 2u * connections);
      EXPECT_EQ(t.tcp.segments, connections);
      EXPECT_EQ(t.tcp.afterClose, connections);
      EXPECT_EQ(t.pdus, connections);
      EXPECT_EQ(t.sessions.size(), connections);
      for (auto const & [ends, session] : t.sessions) {
         EXPECT_EQ(session.pdus, 1u) << ends.second.text();
      }
   };
   Output one(nullptr);
   Reporter reporter(OutputMode::text, one);
   run(reporter);
   Output many(nullptr);
   ParallelReporter parallel(OutputMode::text, many, 2);
   run(parallel);
   EXPECT_EQ(many.pending(), one.pending());
}

// Past its limit of flows the decoder ends the least recently used one, as
// the end of the capture would: its unfinished PDU is reported and counted.
TEST(Decoder, TheLeastRecentlyUsedFlowEndsPastTheLimit) {
   auto const part = hexBytes(mappingPdu);
   std::vector<std::uint8_t> const first(part.begin(), part.begin() + 30);
   Output out(nullptr);
   Reporter reporter(OutputMode::text, out);
   Decoder decoder(reporter, 2);
   decoder.linkTypeIs(LinkType::rawIp);
   std::uint64_t n = 0;
   auto frame = [&](std::uint16_t port, std::uint32_t seq, std::uint8_t flags, std::vector<std::uint8_t> const & p) {
      decoder.frame(FrameMeta{++n, 1700000000, 0}, ipFrame(true, "10.0.0.1", "10.0.0.2", 646, port, seq, flags, p));
   };
   frame(40000, 99, TcpFlag::syn, {});
   frame(40001, 99, TcpFlag::syn, {});
   frame(40000, 100, 0x18, first);  // 40000 is now used more recently than 40001
   frame(40002, 99, TcpFlag::syn, {});
   EXPECT_EQ(decoder.liveFlows(), 2u);
   decoder.finish();
   std::string const text = out.take();
   EXPECT_NE(text.find("frame 4  2023-11-14 22:13:20.000000  10.0.0.1:646 > 10.0.0.2:40001  TCP  note: more than 2 "
                       "TCP directions at once: the stream of the least recently used one ends here\n"),
             std::string::npos)
       << text;
   EXPECT_NE(text.find("end of capture  10.0.0.1:646 > 10.0.0.2:40000  TCP  note: the stream ends inside a PDU: 30 "
                       "bytes of 37 received\n"),
             std::string::npos)
       << text;
   EXPECT_EQ(reporter.totals().tcpStreams, 3u);
   EXPECT_EQ(reporter.totals().tcp.segments, 1u);
}

TEST(Decoder, RawStreamSplitsPdusAndHandsTheUnfinishedLastOneToTheParser) {
   Output out(nullptr);
   Reporter reporter(OutputMode::text, out);
   Decoder decoder(reporter);
   auto const bytes = hexBytes(mappingPdu + "0001 00");
   decoder.rawStream(bytes);
   decoder.finish();
   std::string const text = out.take();
   EXPECT_EQ(text.rfind("hex input  byte 0\nLdpPduHdr: Ver(1),Len(33)", 0), 0u) << text;
   EXPECT_NE(text.find("hex input  byte 37\nError LDP PDU: PDU too small, size = 3\n"), std::string::npos) << text;
   EXPECT_EQ(text.find("note:"), std::string::npos) << text;
   EXPECT_EQ(reporter.totals().pdus, 2u);
   EXPECT_EQ(reporter.totals().invalidPdus, 1u);
   EXPECT_EQ(reporter.totals().tcpStreams, 0u);
}

} // namespace

namespace {

// A flood of hellos from distinct UDP endpoints, each with its own LDP
// identifier: the decoder keeps the names of the recent flows only, and the
// totals the recent identifiers only, however many there were.
TEST(Decoder, UdpFlowStateStaysBoundedOverAMillionFlows) {
   Output out(nullptr);
   Reporter reporter(OutputMode::summary, out);
   Decoder decoder(reporter);
   decoder.linkTypeIs(LinkType::rawIp);
   std::vector<std::uint8_t> f = ipFrame(false, "10.0.0.1", "224.0.0.2", 646, 646, 0, 0, hexBytes(ignoredOnlyPdu));
   constexpr std::uint32_t flows = 1000000;
   std::size_t most = 0;
   std::size_t mostIds = 0;
   for (std::uint32_t i = 0; i < flows; ++i) {
      // Source address and port from i: every frame its own flow.
      f[13] = std::uint8_t(i >> 16);
      f[14] = std::uint8_t(i >> 8);
      f[15] = std::uint8_t(i);
      // The LSR id of the PDU's LDP identifier (after IP, UDP, version, length).
      std::size_t const lsrId = 20 + 8 + 4;
      for (int b = 0; b < 4; ++b) {
         f[lsrId + b] = std::uint8_t(i >> (24 - 8 * b));
      }
      FrameMeta const meta{i + 1, 1700000000, 0};
      decoder.frame(meta, f);
      most = std::max(most, decoder.udpFlowsHeld());
      mostIds = std::max(mostIds, reporter.totals().ldpIds.size());
   }
   // A flow seen again is found among the recent ones.
   decoder.frame(FrameMeta{flows + 1, 1700000000, 0}, f);
   decoder.finish();
   EXPECT_EQ(most, Decoder::defaultMaxUdpFlows);
   EXPECT_EQ(decoder.udpFlowsHeld(), Decoder::defaultMaxUdpFlows);
   EXPECT_EQ(reporter.totals().udpFrames, flows + 1);
   EXPECT_EQ(reporter.totals().pdus, flows + 1);
   // The repeated identifier was among the recent ones: each was dropped once.
   EXPECT_EQ(mostIds, Totals::maxListed);
   EXPECT_EQ(reporter.totals().ldpIds.dropped(), flows - Totals::maxListed);
   EXPECT_EQ(std::prev(reporter.totals().ldpIds.end())->first.stringValue(), "0.15.66.63:0");  // 999999
}

// Many TCP sessions through the reporter: the most recent are listed, the
// others counted, and the summary says so.
TEST(Reporter, SessionsBeyondTheBoundAreDroppedAndCounted) {
   Fixture f;
   Output out(nullptr);
   Reporter reporter(OutputMode::summary, out);
   auto const pkt = hexPkt(mappingPdu);
   std::uint32_t const sessions = Totals::maxListed + 1000;
   for (std::uint32_t i = 0; i < sessions; ++i) {
      f.flow.dst.port = std::uint16_t(1024 + i);
      reporter.pdu(f.origin(), pkt, 0);
   }
   Totals const & t = reporter.totals();
   EXPECT_EQ(t.sessions.size(), Totals::maxListed);
   EXPECT_EQ(t.sessions.dropped(), 1000u);
   // The oldest are gone, the newest is there.
   EXPECT_EQ(t.sessions.begin()->first.second.port, 1024 + 1000);
   EXPECT_EQ(std::prev(t.sessions.end())->first.second.port, 1024 + sessions - 1);
   EXPECT_EQ(t.ldpIds.size(), 1u);
   reporter.finish();
   EXPECT_NE(out.pending().find("  (1000 dropped from this list, which keeps the 4096 most recent)\n"),
             std::string::npos);
}

TEST(RecentMap, KeepsTheMostRecentlyUsedInKeyOrder) {
   RecentMap<int, int> m(3);
   m.touch(3) = 30;
   m.touch(1) = 10;
   m.touch(2) = 20;
   m.touch(3) += 1;  // 1 is now the least recent
   m.touch(4) = 40;
   EXPECT_EQ(m.size(), 3u);
   EXPECT_EQ(m.dropped(), 1u);
   std::vector<std::pair<int, int>> held;
   for (auto const & [k, v] : m) {
      held.emplace_back(k, v);
   }
   EXPECT_EQ(held, (std::vector<std::pair<int, int>>{{2, 20}, {3, 31}, {4, 40}}));

   // Adding keeps the other's most recent and combines the shared ones.
   RecentMap<int, int> other(3);
   other.touch(4) = 1;
   other.touch(5) = 50;
   other.touch(6) = 60;
   m.add(other, [](int & mine, int theirs) { mine += theirs; });
   held.clear();
   for (auto const & [k, v] : m) {
      held.emplace_back(k, v);
   }
   EXPECT_EQ(held, (std::vector<std::pair<int, int>>{{4, 41}, {5, 50}, {6, 60}}));
   EXPECT_EQ(m.dropped(), 3u);

   RecentMap<int, int> const copy = m;
   EXPECT_EQ(copy.size(), 3u);
   EXPECT_EQ(copy.dropped(), 3u);
   EXPECT_EQ(copy.begin()->second, 41);
}

} // namespace
