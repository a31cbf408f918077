#include "ParallelReporter.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/Hex.h"

using namespace LdpDecode;
using TestSupport::hexBytes;

namespace {

// A Label Mapping, a PDU with an unknown message, and one with a bad version.
std::vector<std::string> const pdus = {
    "0001 0021 0a000001 0000 | 0400 0017 00000002 | 0100 0007 02 0001 18 0a0000 | 0200 0004 00000010",
    "0001 001e 0a000001 0000 | 0201 0004 00000008 | bfff 0004 00000009 | 3ffe 0004 0000000a",
    "0002 000e 0a000001 0000 | 0201 0004 00000001",
};

// Feeds the same reports to a sink: buffers of one to four PDUs, with notes in
// between, enough of them to fill many batches; the last frames carry another
// LDP identifier, and a long run of notes without PDUs stands in the middle.
void feed(ReportSink & sink, std::vector<FrameMeta> const & frames, FlowKey const & flow, std::string const & text) {
   for (std::size_t i = 0; i < frames.size(); ++i) {
      bool const lateId = i + 10 >= frames.size();
      bool const onlyNotes = i >= 600 && i < 900;
      Origin o;
      o.frame = &frames[i];
      o.firstFrame = frames[i].number;
      o.flow = &flow;
      o.flowText = &text;
      std::size_t const count = 1 + i % 4;
      std::vector<std::uint8_t> buffer;
      std::vector<std::uint32_t> offsets;
      for (std::size_t k = 0; k < count && !onlyNotes; ++k) {
         offsets.push_back(static_cast<std::uint32_t>(buffer.size()));
         std::string hex = pdus[(i + k) % pdus.size()];
         if (lateId) {
            hex.replace(hex.find("0a000001"), 8, "0a000009");
         }
         auto const b = hexBytes(hex);
         buffer.insert(buffer.end(), b.begin(), b.end());
      }
      auto const pkt = Vorin::Pkt::fromBytes(buffer);
      for (std::uint32_t at : offsets) {
         sink.pdu(o, pkt, at);
      }
      if (i % 97 == 0 || onlyNotes) {
         sink.note(o, "gap", "gap: " + std::to_string(i));
      }
      sink.frameSeen(FrameKind::ldp, Transport::tcp);
   }
   sink.finish();
}

TEST(ParallelReporter, WritesExactlyWhatOneReporterWrites) {
   std::vector<FrameMeta> frames;
   for (std::uint64_t n = 1; n <= 1500; ++n) {
      frames.push_back({n, static_cast<std::int64_t>(1700000000 + n), 0});
   }
   FlowKey const flow{Transport::tcp, {Vorin::IpGenAddr::fromString("10.0.0.1"), 646},
                      {Vorin::IpGenAddr::fromString("10.0.0.2"), 1025}};
   std::string const text = "10.0.0.1:646 > 10.0.0.2:1025  TCP";
   for (OutputMode mode : {OutputMode::text, OutputMode::json, OutputMode::jsonTexts, OutputMode::summary}) {
      Output one(nullptr);
      Reporter reporter(mode, one);
      feed(reporter, frames, flow, text);
      for (unsigned workers : {1u, 2u, 3u}) {
         Output many(nullptr);
         ParallelReporter parallel(mode, many, workers);
         feed(parallel, frames, flow, text);
         EXPECT_EQ(many.pending(), one.pending()) << "workers " << workers;
         Totals const & a = reporter.totals();
         Totals const & b = parallel.totals();
         EXPECT_EQ(b.frames, a.frames);
         EXPECT_EQ(b.pdus, a.pdus);
         EXPECT_EQ(b.messages, a.messages);
         EXPECT_EQ(b.faults, a.faults);
         EXPECT_EQ(b.notes, a.notes);
         EXPECT_EQ(b.messagesPerType, a.messagesPerType);
         ASSERT_EQ(b.sessions.size(), 1u);
         EXPECT_EQ(b.sessions.begin()->second.pdus, a.sessions.begin()->second.pdus);
         for (int side = 0; side < 2; ++side) {
            EXPECT_EQ(b.sessions.begin()->second.ldpId[side], a.sessions.begin()->second.ldpId[side]);
         }
         EXPECT_EQ(a.sessions.begin()->second.ldpId[0].stringValue(), "10.0.0.9:0");
         EXPECT_EQ(parallel.faultFound(), reporter.faultFound());
      }
   }
}

TEST(ParallelReporter, ARunOfNotesIsWrittenAsItComes) {
   // Notes hold no packet: they end batches like PDUs do, so that a capture of
   // nothing but notes is not gathered in memory to the end.
   Output out(nullptr);
   ParallelReporter parallel(OutputMode::text, out, 2);
   FrameMeta const frame{1, 1700000000, 0};
   Origin o;
   o.frame = &frame;
   std::size_t const notes = ParallelReporter::batchPdus * (ParallelReporter::batchesPerWorker * 2 + 2);
   for (std::size_t i = 0; i < notes; ++i) {
      parallel.note(o, "gap", "gap " + std::to_string(i));
   }
   EXPECT_NE(out.pending().find("gap 0\n"), std::string::npos);
   parallel.finish();
   EXPECT_NE(out.pending().find("gap " + std::to_string(notes - 1) + "\n"), std::string::npos);
}

} // namespace
