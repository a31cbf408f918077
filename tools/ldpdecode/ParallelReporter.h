// Runs the LDP side on worker threads. PDUs and notes are gathered in capture
// order into batches; each worker parses a batch with a Reporter of its own and
// writes its text into the batch; the calling thread writes the batches in the
// order they were made and, at the end, adds up the workers' counts. The output
// is byte for byte that of a single Reporter.
//
// Parsers, packets and their reference counts are never used by two threads at
// once: a batch holds every PDU of a packet buffer (a batch ends only where the
// buffer changes: at a PDU of another buffer, or at a note, which the capture
// layer never puts between the PDUs of one buffer), the capture layer keeps no
// reference to a buffer it has handed over, and a batch belongs to one worker
// at a time. The reading thread releases a batch's packets after its worker is
// done with it, so that their memory is reused where it is allocated; while it
// waits for the oldest batch, it parses batches that no worker has taken yet.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "Reporter.h"

namespace LdpDecode {

class ParallelReporter final : public ReportSink {
 public:
   // PDUs and notes per batch, and batches under way per worker, before the
   // reading thread waits for the oldest.
   static constexpr std::size_t batchPdus = 256;
   static constexpr std::size_t batchesPerWorker = 4;

   ParallelReporter(OutputMode mode, Output & out, unsigned workers);
   ~ParallelReporter();
   ParallelReporter(ParallelReporter const &) = delete;
   ParallelReporter & operator=(ParallelReporter const &) = delete;

   void pdu(Origin const & origin, Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset) override;
   void streamNote(Origin const & origin, StreamNote const & note) override;
   void note(Origin const & origin, std::string_view kind, std::string const & text) override;
   void frameSeen(FrameKind kind, Transport transport) override { main_.frameSeen(kind, transport); }
   void tcpStreamDone(StreamStats const & stats) override { main_.tcpStreamDone(stats); }
   // Held by the open batch, which is written after every batch before it.
   void keepUntilWritten(std::shared_ptr<void const> owner) override { open_->kept.push_back(std::move(owner)); }
   void finish() override;

   Totals const & totals() const noexcept override { return main_.totals(); }

 private:
   struct Job {
      enum class Kind : std::uint8_t { pdu, streamNote, note } kind = Kind::pdu;
      bool hasFrame = false;
      FrameMeta frame;
      std::uint64_t firstFrame = 0;
      FlowKey const * flow = nullptr;
      std::string const * flowText = nullptr;
      std::uint64_t streamOffset = 0;
      Zon::Ptr<Vorin::Pkt> pkt;
      std::uint32_t offset = 0;
      std::uint32_t note = 0;  // a note's index in its batch's notes
   };
   // Notes are rare: they are kept apart, so that a PDU's job stays small.
   struct Note {
      StreamNote streamNote;
      std::string kind;
      std::string text;
   };
   struct Batch {
      std::vector<Job> jobs;
      std::vector<Note> notes;
      std::string text;
      bool done = false;
      std::vector<std::shared_ptr<void const>> kept;  // freed once the batch is written
   };
   struct Worker {
      Output out{nullptr};
      std::unique_ptr<Reporter> reporter;
      std::thread thread;
   };

   static std::unique_ptr<Batch> newBatch();
   Job & add(Job::Kind kind, Origin const & origin, Vorin::Pkt const * pkt);
   void submit();
   void writeOldest();
   void work(Worker & w);
   // Parses and renders batch `b` with `w`'s reporter, then marks it done.
   void runBatch(Worker & w, Batch & b);
   static void render(Reporter & r, Batch const & b, Job const & job);

   OutputMode mode_;
   Output & out_;
   Reporter main_;  // frame and stream counts; the workers' counts are added at the end
   std::vector<std::unique_ptr<Worker>> workers_;
   Worker self_;  // the reading thread's share of the parsing (no thread of its own)
   std::unique_ptr<Batch> open_;
   Vorin::Pkt const * lastPkt_ = nullptr;  // compared only, never used
   std::deque<std::shared_ptr<Batch>> inFlight_;  // in the order made

   std::mutex mutex_;
   // Buffers of batch texts already written, for the texts of later batches
   // (under mutex_).
   static constexpr std::size_t maxSpareTexts = 16;
   std::vector<std::string> spareTexts_;
   std::condition_variable workReady_;
   std::condition_variable batchDone_;
   std::deque<std::shared_ptr<Batch>> queue_;
   bool stopping_ = false;
};

} // namespace LdpDecode
