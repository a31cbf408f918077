#include "TcpStream.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "CaptureTypes.h"
#include "support/Hex.h"

using namespace LdpDecode;
using TestSupport::hexBytes;
using TestSupport::toHex;

namespace {

// PDUs of one session direction, written out byte for byte.
std::string const keepalive = "0001 000e 0a000001 0000 | 0201 0004 00000001";  // 18 bytes
std::string const mapping =                                                     // 37 bytes
    "0001 0021 0a000001 0000 | 0400 0017 00000002 | 0100 0007 02 0001 18 0a0000 | 0200 0004 00000010";
std::string const address =                                                     // 32 bytes
    "0001 001c 0a000001 0000 | 0300 0012 00000003 | 0101 000a 0001 0a000001 0a000002";
std::string const twoKeepalives =                                               // 26 bytes
    "0001 0016 0a000001 0000 | 0201 0004 00000004 | 0201 0004 00000005";

std::string normal(std::string const & hex) {
   auto const b = hexBytes(hex);
   return toHex(std::span<std::uint8_t const>(b));
}

std::string pduEvent(std::string const & hex, std::uint64_t at) {
   return "pdu " + normal(hex) + " @" + std::to_string(at);
}

struct Recorder final : StreamSink {
   std::vector<std::string> events;
   std::vector<StreamPdu> pdus;

   void streamPdu(StreamPdu const & p) override {
      auto const bytes = p.pkt->bytes().subspan(p.offset, p.size);
      events.push_back(std::string(p.badHeader ? "bad " : "pdu ") + toHex(bytes) + " @" +
                       std::to_string(p.streamOffset));
      pdus.push_back(p);
   }
   void streamNote(StreamNote const & n) override {
      static char const * const names[] = {"joined", "resync", "gap", "end"};
      std::string e = std::string(names[static_cast<int>(n.kind)]) + " @" + std::to_string(n.streamOffset);
      if (n.kind == StreamNoteKind::joinedMidStream || n.kind == StreamNoteKind::resynchronised) {
         e += " skipped " + std::to_string(n.bytes) + (n.headerFound ? "" : " no header");
      } else {
         if (n.kind == StreamNoteKind::gap) {
            e += " missing " + std::to_string(n.bytes);
         }
         e += " unfinished " + std::to_string(n.pduBytes) + "/" + std::to_string(n.pduSize);
      }
      events.push_back(e);
   }
};

struct Seg {
   std::size_t from;
   std::size_t to;
   std::uint8_t flags = 0;
   std::uint32_t missing = 0;
};

constexpr std::uint32_t defaultIsn = 1000;

FrameMeta frameNo(std::uint64_t n) {
   return FrameMeta{n, static_cast<std::int64_t>(n), 0};
}

// Feeds a SYN, then the segments in the order given (frame i + 1 carries
// segment i), then ends the capture.
std::vector<std::string> run(std::vector<std::uint8_t> const & stream, std::vector<Seg> const & segs,
                             std::uint32_t isn = defaultIsn, Recorder * keep = nullptr) {
   Recorder local;
   Recorder & r = keep ? *keep : local;
   TcpStream s(r);
   s.segment(isn, TcpFlag::syn, {}, 0, frameNo(0));
   for (std::size_t i = 0; i < segs.size(); ++i) {
      Seg const & g = segs[i];
      s.segment(static_cast<std::uint32_t>(isn + 1 + g.from), g.flags,
                std::span<std::uint8_t const>(stream).subspan(g.from, g.to - g.from), g.missing, frameNo(i + 1));
   }
   s.finish();
   return r.events;
}

std::vector<std::uint8_t> session() {
   return hexBytes(keepalive + mapping + address + twoKeepalives);
}

std::vector<std::string> sessionEvents() {
   return {pduEvent(keepalive, 0), pduEvent(mapping, 18), pduEvent(address, 55), pduEvent(twoKeepalives, 87)};
}

TEST(TcpStream, WholeStreamGivesEachPduOnceInOneBuffer) {
   auto const stream = session();
   Recorder r;
   EXPECT_EQ(run(stream, {{0, stream.size()}}, defaultIsn, &r), sessionEvents());
   ASSERT_EQ(r.pdus.size(), 4u);
   for (auto const & p : r.pdus) {
      EXPECT_EQ(p.pkt.ptr(), r.pdus[0].pkt.ptr()) << "one buffer per run of PDUs";
      EXPECT_EQ(p.firstFrame, 1u);
   }
   EXPECT_EQ(r.pdus[2].offset, 55u);
}

TEST(TcpStream, EveryCutIntoTwoSegmentsInOrderAndReversed) {
   auto const stream = session();
   for (std::size_t k = 1; k < stream.size(); ++k) {
      EXPECT_EQ(run(stream, {{0, k}, {k, stream.size()}}), sessionEvents()) << "cut at " << k;
      EXPECT_EQ(run(stream, {{k, stream.size()}, {0, k}}), sessionEvents()) << "reversed, cut at " << k;
   }
}

TEST(TcpStream, RandomSegmentsWithDuplicatesOverlapsAndReordering) {
   auto const stream = session();
   for (unsigned seed = 1; seed <= 300; ++seed) {
      std::mt19937 rng(seed);
      std::vector<Seg> segs;
      std::size_t at = 0;
      while (at < stream.size()) {
         std::size_t const len = 1 + rng() % 40;
         std::size_t const to = std::min(stream.size(), at + len);
         segs.push_back({at, to});
         at = to;
      }
      // Repeats of whole segments and segments that straddle others.
      for (unsigned extra = rng() % 6; extra > 0; --extra) {
         std::size_t const a = rng() % stream.size();
         std::size_t const b = std::min(stream.size(), a + 1 + rng() % 50);
         segs.push_back({a, b});
         segs.push_back(segs[rng() % segs.size()]);
      }
      std::shuffle(segs.begin(), segs.end(), rng);
      EXPECT_EQ(run(stream, segs), sessionEvents()) << "seed " << seed;
   }
}

TEST(TcpStream, PduKnowsTheFramesOfItsFirstAndLastByte) {
   struct Row {
      char const * what;
      std::vector<std::uint8_t> stream;
      std::vector<Seg> segs;
      std::vector<std::string> frames;  // first-last frame of each PDU handed over, bad headers included
   };
   auto const twoFrames = [](Recorder const & r) {
      std::vector<std::string> f;
      for (auto const & p : r.pdus) {
         f.push_back(std::to_string(p.firstFrame) + "-" + std::to_string(p.lastFrame.number));
      }
      return f;
   };
   auto const afterBad = hexBytes("0002" + keepalive + mapping);  // a bad header at 0, a Keepalive at 2
   Row const rows[] = {
       {"in order", session(), {{0, 30}, {30, 113}}, {"1-1", "1-2", "2-2", "2-2"}},
       {"held, then the bytes before it", session(), {{30, 113}, {0, 30}}, {"2-2", "2-1", "1-1", "1-1"}},
       {"behind a gap", session(), {{0, 30, 0, 30}, {60, 113}}, {"1-1", "2-2"}},
       {"a PDU inside the bytes of a bad header", afterBad, {{0, 10}, {10, 57}}, {"1-2", "1-2", "2-2"}},
       {"the same, in three frames", afterBad, {{0, 4}, {4, 12}, {12, 57}}, {"1-3", "1-3", "3-3"}},
   };
   for (Row const & row : rows) {
      Recorder r;
      run(row.stream, row.segs, defaultIsn, &r);
      EXPECT_EQ(twoFrames(r), row.frames) << row.what;
   }
}

TEST(TcpStream, FramesAreForgottenOnceTheirBytesAreGoneEvenWithoutPdus) {
   std::vector<std::uint8_t> const zeros(20, 0);
   struct Row {
      char const * what;
      bool syn;
      std::vector<std::uint8_t> first;  // then segments of 20 zero bytes
   };
   Row const rows[] = {
       {"another service's bytes, joined mid-stream", false, zeros},
       {"an LDP session whose bytes stop making sense", true, hexBytes(keepalive)},
   };
   for (Row const & row : rows) {
      Recorder r;
      TcpStream s(r);
      std::uint32_t seq = 5000;
      if (row.syn) {
         s.segment(seq++, TcpFlag::syn, {}, 0, frameNo(0));
      }
      s.segment(seq, 0, row.first, 0, frameNo(1));
      seq += static_cast<std::uint32_t>(row.first.size());
      std::size_t most = 0;
      for (std::uint64_t f = 2; f < 5000; ++f, seq += 20) {
         s.segment(seq, 0, zeros, 0, frameNo(f));
         most = std::max(most, s.frameMarks());
      }
      // The stream keeps the 17 bytes that may begin a header: the last frame
      // and the one before it.
      EXPECT_LE(most, 2u) << row.what;
      s.finish();
      ASSERT_FALSE(r.events.empty()) << row.what;
      EXPECT_TRUE(r.events.back().ends_with("no header")) << row.what << ": " << r.events.back();
   }
}

TEST(TcpStream, SequenceNumbersWrapAroundZero) {
   auto const stream = session();
   for (std::size_t k = 1; k < stream.size(); k += 7) {
      EXPECT_EQ(run(stream, {{k, stream.size()}, {0, k}}, 0xFFFFFFF0u), sessionEvents()) << "cut at " << k;
   }
}

TEST(TcpStream, BadHeadersAreHandedOverThenTheStreamResynchronises) {
   struct Row {
      char const * what;
      std::string bad;  // replaces the Label Mapping PDU (37 bytes)
   };
   std::string const body = mapping.substr(9);  // behind "0001 0021"
   Row const rows[] = {
       {"version 2", "0002 0021" + body},
       {"length too small (size 13)", "0001 0009" + body},
       {"length too big (size 9601)", "0001 257d" + body},
       {"length wraps to size 0", "0001 fffc" + body},
   };
   for (Row const & row : rows) {
      auto const stream = hexBytes(keepalive + row.bad + address + twoKeepalives);
      std::vector<std::string> const expected = {pduEvent(keepalive, 0),
                                                 "bad " + normal(row.bad).substr(0, 36) + " @18",
                                                 "resync @18 skipped 37", pduEvent(address, 55),
                                                 pduEvent(twoKeepalives, 87)};
      EXPECT_EQ(run(stream, {{0, stream.size()}}), expected) << row.what;
      for (std::size_t k = 1; k < stream.size(); ++k) {
         EXPECT_EQ(run(stream, {{0, k}, {k, stream.size()}}), expected) << row.what << ", cut at " << k;
      }
   }
}

TEST(TcpStream, PduShorterThanAMessageHeaderStandsInItsOwnBuffer) {
   std::string const tiny = "0001 000a 0a000001 0000 | 0201 0000";  // size 14
   auto const stream = hexBytes(tiny + keepalive);
   std::vector<std::string> const expected = {pduEvent(tiny, 0), pduEvent(keepalive, 14)};
   for (std::size_t k = 1; k < stream.size(); ++k) {
      Recorder r;
      EXPECT_EQ(run(stream, {{0, k}, {k, stream.size()}}, defaultIsn, &r), expected) << "cut at " << k;
      ASSERT_EQ(r.pdus.size(), 2u);
      EXPECT_EQ(r.pdus[0].pkt->frontBytes(), 14u) << "cut at " << k;
   }
}

TEST(TcpStream, JoiningMidStreamSkipsToTheFirstPlausibleHeader) {
   auto const stream = session();
   struct Row {
      std::size_t start;
      std::vector<std::string> events;
   };
   Row const rows[] = {
       {0, {"joined @0 skipped 0", pduEvent(keepalive, 0), pduEvent(mapping, 18), pduEvent(address, 55),
            pduEvent(twoKeepalives, 87)}},
       {5, {"joined @0 skipped 13", pduEvent(mapping, 13), pduEvent(address, 50), pduEvent(twoKeepalives, 82)}},
       {60, {"joined @0 skipped 27", pduEvent(twoKeepalives, 27)}},
       {90, {"joined @0 skipped 23 no header"}},
   };
   for (Row const & row : rows) {
      for (std::size_t k = row.start + 1; k < stream.size(); k += 3) {
         Recorder r;
         TcpStream s(r);
         std::span<std::uint8_t const> const all(stream);
         s.segment(static_cast<std::uint32_t>(5000 + row.start), 0, all.subspan(row.start, k - row.start), 0, frameNo(1));
         s.segment(static_cast<std::uint32_t>(5000 + k), 0, all.subspan(k), 0, frameNo(2));
         s.finish();
         EXPECT_EQ(r.events, row.events) << "start " << row.start << ", cut at " << k;
      }
   }
}

TEST(TcpStream, LostSegmentIsAGapAndTheStreamResynchronises) {
   auto const stream = session();
   // Bytes 30..59 never arrive: the Label Mapping (18..54) is unfinished, the
   // data behind the gap begins inside the Address PDU (55..86).
   std::vector<std::string> const expected = {pduEvent(keepalive, 0), "gap @30 missing 30 unfinished 12/37",
                                              "resync @60 skipped 27", pduEvent(twoKeepalives, 87)};
   EXPECT_EQ(run(stream, {{0, 30}, {60, stream.size()}}), expected);
   EXPECT_EQ(run(stream, {{60, stream.size()}, {0, 30}}), expected);
}

TEST(TcpStream, SegmentCutShortByTheCaptureIsAGapAtOnce) {
   auto const stream = session();
   Recorder r;
   TcpStream s(r);
   std::span<std::uint8_t const> const all(stream);
   s.segment(defaultIsn, TcpFlag::syn, {}, 0, frameNo(0));
   s.segment(defaultIsn + 1, 0, all.subspan(0, 30), 30, frameNo(1));  // the frame held 60 payload bytes
   EXPECT_EQ(r.events, (std::vector<std::string>{pduEvent(keepalive, 0), "gap @30 missing 30 unfinished 12/37"}));
   s.segment(defaultIsn + 1 + 60, 0, all.subspan(60), 0, frameNo(2));
   s.finish();
   EXPECT_EQ(r.events.back(), pduEvent(twoKeepalives, 87));
   EXPECT_EQ(s.stats().gaps, 1u);
   EXPECT_EQ(s.stats().gapBytes, 30u);
}

TEST(TcpStream, BytesCutOffByTheCaptureAreAGapOnlyWhereNoOtherSegmentHoldsThem) {
   auto const stream = session();
   struct Row {
      char const * what;
      std::vector<Seg> segs;
      std::vector<std::string> events;
   };
   std::string const ka = pduEvent(keepalive, 0);
   std::string const tail = pduEvent(twoKeepalives, 87);
   Row const rows[] = {
       {"nothing else holds them", {{0, 30, 0, 30}, {60, 113}},
        {ka, "gap @30 missing 30 unfinished 12/37", "resync @60 skipped 27", tail}},
       {"a held segment holds them all", {{0, 18}, {30, 87}, {18, 30, 0, 57}, {87, 113}}, sessionEvents()},
       {"a held segment holds the first of them", {{0, 18}, {30, 50}, {18, 30, 0, 57}, {87, 113}},
        {ka, "gap @50 missing 37 unfinished 32/37", tail}},
       {"they reach over a held segment", {{0, 18}, {40, 87}, {30, 35, 0, 52}, {18, 30}, {87, 113}},
        {ka, "gap @35 missing 5 unfinished 17/37", "resync @40 skipped 15", pduEvent(address, 55), tail}},
       {"only they lie ahead, up to a held segment", {{0, 18}, {30, 87}, {0, 18, 0, 30}, {87, 113}},
        {ka, "gap @18 missing 12 unfinished 0/0", "resync @30 skipped 25", pduEvent(address, 55), tail}},
       {"a later segment from the same byte holds them", {{0, 18}, {30, 30, 0, 57}, {30, 87}, {18, 30}, {87, 113}},
        sessionEvents()},
       {"a shorter segment from the same byte claims more", {{0, 18}, {30, 50}, {30, 40, 0, 60}, {18, 30}},
        {ka, "gap @50 missing 50 unfinished 32/37"}},
   };
   for (Row const & row : rows) {
      EXPECT_EQ(run(stream, row.segs), row.events) << row.what;
   }
}

TEST(TcpStream, FinInsideAPduReportsTheUnfinishedPduAndLaterDataIsIgnored) {
   auto const stream = session();
   Recorder r;
   auto const events = run(stream, {{0, 30, TcpFlag::fin}, {30, stream.size()}}, defaultIsn, &r);
   EXPECT_EQ(events, (std::vector<std::string>{pduEvent(keepalive, 0), "end @18 unfinished 12/37"}));
}

TEST(TcpStream, EndOfCaptureInsideAHeaderHasNoSize) {
   auto const stream = session();
   EXPECT_EQ(run(stream, {{0, 20}}), (std::vector<std::string>{pduEvent(keepalive, 0), "end @18 unfinished 2/0"}));
}

TEST(TcpStream, RawStreamHandsItsUnfinishedLastPduToTheParser) {
   struct Row {
      char const * what;
      std::string hex;
      std::vector<std::string> events;
   };
   Row const rows[] = {
       {"ends behind a PDU", keepalive, {pduEvent(keepalive, 0)}},
       {"a PDU cut short", keepalive + "0001 0020 0a000001 0000 0201",
        {pduEvent(keepalive, 0), pduEvent("0001 0020 0a000001 0000 0201", 18)}},
       {"a header of version 2 alone", "0002 000e 0a000001 0000", {pduEvent("0002 000e 0a000001 0000", 0)}},
       {"part of a length field", keepalive + "0001 00", {pduEvent(keepalive, 0), pduEvent("0001 00", 18)}},
   };
   for (Row const & row : rows) {
      auto const bytes = hexBytes(row.hex);
      for (std::size_t k = 1; k <= bytes.size(); ++k) {
         Recorder r;
         TcpStream s(r);
         s.startSynced();
         s.segment(0, 0, std::span<std::uint8_t const>(bytes).first(k), 0, FrameMeta{});
         s.segment(static_cast<std::uint32_t>(k), 0, std::span<std::uint8_t const>(bytes).subspan(k), 0, FrameMeta{});
         s.finish();
         EXPECT_EQ(r.events, row.events) << row.what << ", cut at " << k;
      }
   }
}

TEST(TcpStream, NewSynEndsThePreviousConnection) {
   auto const stream = session();
   Recorder r;
   TcpStream s(r);
   std::span<std::uint8_t const> const all(stream);
   s.segment(100, TcpFlag::syn, {}, 0, frameNo(1));
   s.segment(101, 0, all.subspan(0, 30), 0, frameNo(2));
   s.segment(100, TcpFlag::syn, {}, 0, frameNo(3));  // the same SYN again changes nothing
   s.segment(7000, TcpFlag::syn, {}, 0, frameNo(4));
   s.segment(7001, 0, all.subspan(0, 18), 0, frameNo(5));
   s.finish();
   EXPECT_EQ(r.events, (std::vector<std::string>{pduEvent(keepalive, 0), "end @18 unfinished 12/37",
                                                 pduEvent(keepalive, 0)}));
}

TEST(TcpStream, RepeatsAndOverlapsAreCounted) {
   auto const stream = session();
   Recorder r;
   TcpStream s(r);
   std::span<std::uint8_t const> const all(stream);
   s.segment(0, TcpFlag::syn, {}, 0, frameNo(0));
   s.segment(1, 0, all.subspan(0, 18), 0, frameNo(1));
   s.segment(1, 0, all.subspan(0, 18), 0, frameNo(2));    // repeated
   s.segment(11, 0, all.subspan(10, 20), 0, frameNo(3));  // 8 bytes seen before
   s.segment(41, 0, all.subspan(40, 10), 0, frameNo(4));  // ahead of bytes 30..39
   s.segment(31, 0, all.subspan(30, 10), 0, frameNo(5));
   s.finish();
   EXPECT_EQ(s.stats().segments, 5u);
   EXPECT_EQ(s.stats().retransmitted, 1u);
   EXPECT_EQ(s.stats().overlapBytes, 8u);
   EXPECT_EQ(s.stats().outOfOrder, 1u);
   EXPECT_EQ(s.stats().gaps, 0u);
}

TEST(TcpStream, HeldDataBeyondTheLimitMakesTheMissingBytesAGap) {
   // PDUs of 1000 bytes (a Keepalive padded by a TLV with the U bit set).
   std::string pduHex = "0001 03e4 0a000001 0000 | 0201 03da 00000001 | bf00 03d2";
   pduHex += std::string(2 * 978, '0');
   auto const one = hexBytes(pduHex);
   ASSERT_EQ(one.size(), 1000u);
   std::vector<std::uint8_t> stream;
   std::size_t const count = TcpStream::maxOutOfOrderBytes / 1000 + 10;
   for (std::size_t i = 0; i < count; ++i) {
      stream.insert(stream.end(), one.begin(), one.end());
   }
   Recorder r;
   TcpStream s(r);
   std::span<std::uint8_t const> const all(stream);
   s.segment(0, TcpFlag::syn, {}, 0, frameNo(0));
   for (std::size_t at = 1000; at < stream.size(); at += 1000) {  // the first PDU never comes
      s.segment(static_cast<std::uint32_t>(1 + at), 0, all.subspan(at, 1000), 0, frameNo(at / 1000));
   }
   ASSERT_FALSE(r.events.empty()) << "the gap is declared before the capture ends";
   EXPECT_EQ(r.events[0], "gap @0 missing 1000 unfinished 0/0");
   std::size_t const delivered = r.pdus.size();
   EXPECT_GT(delivered, 4000u);
   s.finish();
   EXPECT_EQ(r.pdus.size(), count - 1);
}

TEST(TcpStream, HeldSegmentsWithoutCapturedBytesCountTowardTheLimit) {
   // Each segment lies ahead of a hole and was cut off by the capture whole.
   Recorder r;
   TcpStream s(r);
   s.segment(0, TcpFlag::syn, {}, 0, frameNo(0));
   std::size_t const enough = TcpStream::maxOutOfOrderBytes / TcpStream::heldEntryCost + 1;
   std::size_t sent = 0;
   while (r.events.empty() && sent < 2 * enough) {
      ++sent;
      s.segment(static_cast<std::uint32_t>(1 + 100 * sent), 0, {}, 100, frameNo(sent));
   }
   EXPECT_EQ(sent, enough) << "the limit is reached when the held segments alone pass it";
   // The hole and every segment held behind it make one gap.
   EXPECT_EQ(r.events, (std::vector<std::string>{"gap @0 missing " + std::to_string(100 * (sent + 1)) +
                                                 " unfinished 0/0"}));
}

TEST(PlausiblePduHeader, NeedsVersionSizeAndAFittingKnownFirstMessage) {
   struct Row {
      char const * what;
      char const * hex;  // 18 bytes
      bool plausible;
   };
   Row const rows[] = {
       {"keepalive", "0001 000e 0a000001 0000 0201 0004 00000001", true},
       {"U bit on a known type", "0001 000e 0a000001 0000 8201 0004 00000001", true},
       {"version 0", "0000 000e 0a000001 0000 0201 0004 00000001", false},
       {"version 2", "0002 000e 0a000001 0000 0201 0004 00000001", false},
       {"size 17", "0001 000d 0a000001 0000 0201 0004 00000001", false},
       {"size 9600", "0001 257c 0a000001 0000 0201 0004 00000001", true},
       {"size 9601", "0001 257d 0a000001 0000 0201 0004 00000001", false},
       {"unknown message type", "0001 000e 0a000001 0000 0999 0004 00000001", false},
       {"message longer than the PDU", "0001 000e 0a000001 0000 0201 0005 00000001", false},
       {"message shorter than its header", "0001 000e 0a000001 0000 0201 0003 00000001", false},
   };
   for (Row const & row : rows) {
      auto const b = hexBytes(row.hex);
      ASSERT_EQ(b.size(), TcpStream::minPduBytes) << row.what;
      EXPECT_EQ(plausiblePduHeader(b.data()), row.plausible) << row.what;
   }
}

TEST(WellFramedPdu, MessagesAndTheirTlvsFillThePduExactly) {
   struct Row {
      char const * what;
      std::string hex;
      bool wellFramed;
   };
   Row const rows[] = {
       {"keepalive", keepalive, true},
       {"label mapping", mapping, true},
       {"address", address, true},
       {"two messages", twoKeepalives, true},
       {"TLV one byte longer than its message",
        "0001 0021 0a000001 0000 | 0400 0017 00000002 | 0100 0008 02 0001 18 0a0000 | 0200 0004 00000010", false},
       {"PDU one byte longer than its messages",
        "0001 0017 0a000001 0000 | 0201 0004 00000004 | 0201 0004 00000005 | 00", false},
       {"second message of unknown type", "0001 0016 0a000001 0000 | 0201 0004 00000004 | 0999 0004 00000005",
        false},
       {"plausible header over the bytes of a message body",
        "0001 0012 0a000001 0000 | 0001 0008 00000000 | 0000 0201", false},
   };
   for (Row const & row : rows) {
      auto const b = hexBytes(row.hex);
      EXPECT_TRUE(plausiblePduHeader(b.data())) << row.what;
      EXPECT_EQ(wellFramedPdu(b), row.wellFramed) << row.what;
   }
}

} // namespace
