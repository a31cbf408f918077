#include "ParallelReporter.h"

namespace LdpDecode {

ParallelReporter::ParallelReporter(OutputMode mode, Output & out, unsigned workers)
    : mode_(mode), out_(out), main_(mode, out), open_(newBatch()) {
   for (unsigned i = 0; i < std::max(1u, workers); ++i) {
      auto w = std::make_unique<Worker>();
      w->reporter = std::make_unique<Reporter>(mode, w->out);
      workers_.push_back(std::move(w));
   }
   self_.reporter = std::make_unique<Reporter>(mode, self_.out);
   for (auto & w : workers_) {
      w->thread = std::thread([this, &w = *w] { work(w); });
   }
}

std::unique_ptr<ParallelReporter::Batch> ParallelReporter::newBatch() {
   auto b = std::make_unique<Batch>();
   b->jobs.reserve(batchPdus + batchPdus / 4);  // notes come on top of the PDUs
   return b;
}

ParallelReporter::~ParallelReporter() {
   {
      std::lock_guard<std::mutex> lock(mutex_);
      stopping_ = true;
   }
   workReady_.notify_all();
   for (auto & w : workers_) {
      if (w->thread.joinable()) {
         w->thread.join();
      }
   }
}

ParallelReporter::Job & ParallelReporter::add(Job::Kind kind, Origin const & origin, Vorin::Pkt const * pkt) {
   // A batch ends only where the packet buffer changes, so that all users of a
   // buffer stay on one thread: before a PDU of another buffer, or before a
   // note, since the capture layer hands over the PDUs of one buffer back to
   // back. Notes count like PDUs, so that a long run of them is written as it
   // comes rather than gathered to the end.
   if (open_->jobs.size() >= batchPdus && (!pkt || pkt != lastPkt_)) {
      submit();
   }
   if (pkt) {
      lastPkt_ = pkt;
   }
   Job & j = open_->jobs.emplace_back();
   j.kind = kind;
   j.hasFrame = origin.frame != nullptr;
   if (origin.frame) {
      j.frame = *origin.frame;
   }
   j.firstFrame = origin.firstFrame;
   j.flow = origin.flow;
   j.flowText = origin.flowText;
   j.streamOffset = origin.streamOffset;
   return j;
}

void ParallelReporter::pdu(Origin const & origin, Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset) {
   Job & j = add(Job::Kind::pdu, origin, pkt.ptr());
   j.pkt = pkt;
   j.offset = offset;
}

void ParallelReporter::streamNote(Origin const & origin, StreamNote const & note) {
   Job & j = add(Job::Kind::streamNote, origin, nullptr);
   j.note = static_cast<std::uint32_t>(open_->notes.size());
   open_->notes.push_back(Note{note, {}, {}});
}

void ParallelReporter::note(Origin const & origin, std::string_view kind, std::string const & text) {
   Job & j = add(Job::Kind::note, origin, nullptr);
   j.note = static_cast<std::uint32_t>(open_->notes.size());
   open_->notes.push_back(Note{StreamNote{}, std::string(kind), text});
}

void ParallelReporter::submit() {
   if (open_->jobs.empty()) {
      return;
   }
   std::shared_ptr<Batch> b(open_.release());
   open_ = newBatch();
   inFlight_.push_back(b);
   {
      std::lock_guard<std::mutex> lock(mutex_);
      queue_.push_back(std::move(b));
   }
   workReady_.notify_one();
   while (inFlight_.size() > batchesPerWorker * workers_.size()) {
      writeOldest();
   }
}

void ParallelReporter::writeOldest() {
   std::shared_ptr<Batch> b = inFlight_.front();
   // Rather than wait for the oldest batch, the reading thread parses batches
   // that no worker has taken yet.
   while (true) {
      std::shared_ptr<Batch> mine;
      {
         std::unique_lock<std::mutex> lock(mutex_);
         if (b->done) {
            break;
         }
         if (queue_.empty()) {
            batchDone_.wait(lock, [&] { return b->done; });
            break;
         }
         mine = std::move(queue_.front());
         queue_.pop_front();
      }
      runBatch(self_, *mine);
   }
   out_.writeThrough(b->text);
   {
      // Its buffer serves the text of a later batch.
      std::lock_guard<std::mutex> lock(mutex_);
      if (spareTexts_.size() < maxSpareTexts) {
         spareTexts_.push_back(std::move(b->text));
      }
   }
   // The packets go back on the thread that made them, so that their memory
   // is reused there rather than piling up in the workers' heaps.
   b->jobs.clear();
   b->kept.clear();
   inFlight_.pop_front();
}

void ParallelReporter::render(Reporter & r, Batch const & b, Job const & job) {
   Origin o;
   o.frame = job.hasFrame ? &job.frame : nullptr;
   o.firstFrame = job.firstFrame;
   o.flow = job.flow;
   o.flowText = job.flowText;
   o.streamOffset = job.streamOffset;
   switch (job.kind) {
    case Job::Kind::pdu:
      r.pdu(o, job.pkt, job.offset);
      break;
    case Job::Kind::streamNote:
      r.streamNote(o, b.notes[job.note].streamNote);
      break;
    case Job::Kind::note:
      r.note(o, b.notes[job.note].kind, b.notes[job.note].text);
      break;
   }
}

void ParallelReporter::work(Worker & w) {
   while (true) {
      std::shared_ptr<Batch> b;
      {
         std::unique_lock<std::mutex> lock(mutex_);
         workReady_.wait(lock, [&] { return stopping_ || !queue_.empty(); });
         if (queue_.empty()) {
            return;
         }
         b = std::move(queue_.front());
         queue_.pop_front();
      }
      runBatch(w, *b);
   }
}

void ParallelReporter::runBatch(Worker & w, Batch & b) {
   for (Job const & job : b.jobs) {
      render(*w.reporter, b, job);
   }
   std::string spare;
   {
      std::lock_guard<std::mutex> lock(mutex_);
      if (!spareTexts_.empty()) {
         spare = std::move(spareTexts_.back());
         spareTexts_.pop_back();
      }
   }
   b.text = w.out.take(std::move(spare));
   {
      std::lock_guard<std::mutex> lock(mutex_);
      b.done = true;
   }
   batchDone_.notify_all();
}

void ParallelReporter::finish() {
   submit();
   while (!inFlight_.empty()) {
      writeOldest();
   }
   {
      std::lock_guard<std::mutex> lock(mutex_);
      stopping_ = true;
   }
   workReady_.notify_all();
   for (auto & w : workers_) {
      w->thread.join();
      main_.absorb(w->reporter->totals());
   }
   main_.absorb(self_.reporter->totals());
   main_.finish();
}

} // namespace LdpDecode
