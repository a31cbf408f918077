#include "TcpStream.h"

#include <algorithm>
#include <iterator>

#include "ldp/wire/LdpWireEnums.h"

namespace LdpDecode {

namespace {

constexpr std::uint16_t be16(std::uint8_t const * p) noexcept {
   return static_cast<std::uint16_t>((p[0] << 8) | p[1]);
}

// The PDU size that a header announces: length field plus the 4 bytes it does
// not count, in 16 bits as on the wire.
constexpr std::uint16_t announcedSize(std::uint8_t const * p) noexcept {
   return static_cast<std::uint16_t>(be16(p + 2) + 4);
}

constexpr std::uint16_t maxPduSize = 9600;     // the PDU parser's upper bound
constexpr std::uint16_t minFramedPdu = 14;     // the smallest size the PDU parser accepts
constexpr std::size_t pduHdrBytes = 10;
constexpr std::size_t msgHdrBytes = 8;
constexpr std::size_t compactAbove = 64 * 1024;

} // namespace

bool plausiblePduHeader(std::uint8_t const * p) noexcept {
   std::uint16_t const size = announcedSize(p);
   if (be16(p) != 1 || size < TcpStream::minPduBytes || size > maxPduSize) {
      return false;
   }
   std::uint8_t const * msg = p + pduHdrBytes;
   std::uint32_t const msgSize = std::uint32_t(be16(msg + 2)) + 4;
   return Ldp::isKnownMsgType(be16(msg) & 0x7FFF) && msgSize >= msgHdrBytes && msgSize <= size - pduHdrBytes;
}

bool wellFramedPdu(std::span<std::uint8_t const> pdu) noexcept {
   if (pdu.size() < TcpStream::minPduBytes || announcedSize(pdu.data()) != pdu.size()) {
      return false;
   }
   std::size_t at = pduHdrBytes;
   while (at < pdu.size()) {
      if (pdu.size() - at < msgHdrBytes || !Ldp::isKnownMsgType(be16(&pdu[at]) & 0x7FFF)) {
         return false;
      }
      std::size_t const msgEnd = at + std::size_t(be16(&pdu[at + 2])) + 4;
      if (msgEnd > pdu.size() || msgEnd < at + msgHdrBytes) {
         return false;
      }
      std::size_t tlv = at + msgHdrBytes;
      while (tlv < msgEnd) {
         if (msgEnd - tlv < 4) {
            return false;
         }
         tlv += std::size_t(be16(&pdu[tlv + 2])) + 4;
      }
      if (tlv != msgEnd) {
         return false;
      }
      at = msgEnd;
   }
   return true;
}

void TcpStream::reset() {
   state_ = State::idle;
   seqBase_ = 0;
   next_ = 0;
   buf_.clear();
   head_ = 0;
   synced_ = true;
   resync_ = Resync::midStream;
   resyncFrom_ = 0;
   held_.clear();
   heldBytes_ = 0;
   finSeen_ = false;
   finAt_ = 0;
   marks_.clear();
   raw_ = false;
}

void TcpStream::open(std::uint32_t seqOfFirstByte, bool synced) {
   reset();
   state_ = State::open;
   seqBase_ = seqOfFirstByte;
   synced_ = synced;
}

void TcpStream::startSynced() {
   open(0, true);
   raw_ = true;
}

std::int64_t TcpStream::offsetOf(std::uint32_t seq) const noexcept {
   // The nearest stream offset with this sequence number: sequence numbers wrap.
   auto const expected = static_cast<std::uint32_t>(seqBase_ + static_cast<std::uint32_t>(next_));
   auto const delta = static_cast<std::int32_t>(seq - expected);
   return static_cast<std::int64_t>(next_) + delta;
}

void TcpStream::segment(std::uint32_t seq, std::uint8_t flags, std::span<std::uint8_t const> payload,
                        std::uint32_t missingBytes, FrameMeta const & frame) {
   std::uint32_t dataSeq = seq;
   bool const hasData = !payload.empty() || missingBytes != 0;
   if (flags & TcpFlag::syn) {
      dataSeq = seq + 1;
      bool const repeated = state_ != State::idle && dataSeq == seqBase_;
      if (!repeated) {
         endData();
         open(dataSeq, true);
      }
   } else if (state_ == State::idle) {
      if (!hasData) {
         return;
      }
      open(seq, false);
   }
   if (state_ == State::closed) {
      stats_.afterClose += hasData ? 1 : 0;
      return;
   }
   if (hasData) {
      ++stats_.segments;
      data(offsetOf(dataSeq), payload, missingBytes, frame);
   }
   if (flags & TcpFlag::rst) {
      endData();
      return;
   }
   if (flags & TcpFlag::fin) {
      std::int64_t const end = offsetOf(dataSeq) + static_cast<std::int64_t>(payload.size()) + missingBytes;
      finSeen_ = true;
      finAt_ = std::max<std::uint64_t>(finAt_, end < 0 ? 0 : static_cast<std::uint64_t>(end));
      closeIfFinished();
   }
}

void TcpStream::data(std::int64_t off, std::span<std::uint8_t const> bytes, std::uint32_t missing,
                     FrameMeta const & frame) {
   auto const next = static_cast<std::int64_t>(next_);
   std::int64_t const end = off + static_cast<std::int64_t>(bytes.size());
   std::int64_t const claimedEnd = end + missing;
   if (claimedEnd <= next) {
      ++stats_.retransmitted;
      return;
   }
   if (off < next) {
      auto const trim = static_cast<std::uint64_t>(next - off);
      if (trim >= bytes.size()) {
         // Only the part the capture cut off lies ahead: it is missing, but
         // for what held segments hold.
         stats_.overlapBytes += bytes.size();
         drainHeld(static_cast<std::uint64_t>(claimedEnd));
         closeIfFinished();
         return;
      }
      stats_.overlapBytes += trim;
      bytes = bytes.subspan(static_cast<std::size_t>(trim));
      off = next;
   }
   if (off > next) {
      ++stats_.outOfOrder;
      hold(static_cast<std::uint64_t>(off), bytes, missing, frame);
      while (heldBytes_ > maxOutOfOrderBytes && !held_.empty()) {
         drainHeld(held_.begin()->first);
      }
      closeIfFinished();
      return;
   }
   append(bytes, frame);
   drainHeld(next_ + missing);
   closeIfFinished();
}

void TcpStream::hold(std::uint64_t off, std::span<std::uint8_t const> bytes, std::uint32_t missing,
                     FrameMeta const & frame) {
   auto it = held_.find(off);
   if (it == held_.end()) {
      Held & h = held_[off];
      h.bytes.assign(bytes.begin(), bytes.end());
      h.missingAfter = missing;
      h.frame = frame;
      heldBytes_ += bytes.size() + heldEntryCost;
      return;
   }
   // Two segments from the same byte: the longer capture of it is kept, and
   // the further end either of them claims.
   Held & h = it->second;
   std::uint64_t const heldEnd = h.bytes.size() + std::uint64_t(h.missingAfter);
   std::uint64_t const claimed = std::max<std::uint64_t>(bytes.size() + std::uint64_t(missing), heldEnd);
   if (bytes.size() <= h.bytes.size()) {
      if (claimed == heldEnd) {
         ++stats_.retransmitted;
         return;
      }
      h.missingAfter = static_cast<std::uint32_t>(claimed - h.bytes.size());
      return;
   }
   heldBytes_ += bytes.size() - h.bytes.size();
   h.bytes.assign(bytes.begin(), bytes.end());
   h.missingAfter = static_cast<std::uint32_t>(claimed - bytes.size());
   h.frame = frame;
}

void TcpStream::drainHeld(std::uint64_t missingTo) {
   while (true) {
      if (!held_.empty() && held_.begin()->first <= next_) {
         auto it = held_.begin();
         std::uint64_t const off = it->first;
         Held h = std::move(it->second);
         held_.erase(it);
         heldBytes_ -= h.bytes.size() + heldEntryCost;
         std::uint64_t const end = off + h.bytes.size();
         missingTo = std::max(missingTo, end + h.missingAfter);
         if (end <= next_) {
            stats_.overlapBytes += h.bytes.size();
            continue;
         }
         auto const skip = static_cast<std::size_t>(next_ - off);
         stats_.overlapBytes += skip;
         append(std::span<std::uint8_t const>(h.bytes).subspan(skip), h.frame);
         continue;
      }
      if (missingTo <= next_) {
         return;
      }
      // Held segments without a captured byte that begin inside the missing
      // bytes only lengthen them.
      while (!held_.empty() && held_.begin()->first <= missingTo && held_.begin()->second.bytes.empty()) {
         missingTo = std::max(missingTo, held_.begin()->first + held_.begin()->second.missingAfter);
         heldBytes_ -= heldEntryCost;
         held_.erase(held_.begin());
      }
      // The bytes a held segment holds are not missing: the gap ends where it begins.
      std::uint64_t const stop = held_.empty() ? missingTo : std::min(missingTo, held_.begin()->first);
      gapAt(stop - next_);
   }
}

void TcpStream::append(std::span<std::uint8_t const> bytes, FrameMeta const & frame) {
   if (bytes.empty()) {
      return;
   }
   if (marks_.empty() || marks_.back().frame.number != frame.number) {
      marks_.push_back({next_, frame});
   }
   if (buffered() == 0) {
      // Nothing pending: cut PDUs straight out of the segment and keep only
      // an unfinished tail.
      buf_.clear();
      head_ = 0;
      std::size_t const used = this->frame(bytes, next_, false);
      buf_.assign(bytes.begin() + static_cast<std::ptrdiff_t>(used), bytes.end());
      next_ += bytes.size();
      dropMarksBefore(next_ - buffered());
      return;
   }
   buf_.insert(buf_.end(), bytes.begin(), bytes.end());
   next_ += bytes.size();
   std::size_t const have = buffered();
   head_ += this->frame(std::span<std::uint8_t const>(buf_).subspan(head_), next_ - have, false);
   if (head_ == buf_.size()) {
      buf_.clear();
      head_ = 0;
   } else if (head_ > compactAbove && head_ * 2 > buf_.size()) {
      buf_.erase(buf_.begin(), buf_.begin() + static_cast<std::ptrdiff_t>(head_));
      head_ = 0;
   }
   dropMarksBefore(next_ - buffered());
}

void TcpStream::gapAt(std::uint64_t missing) {
   if (missing == 0) {
      return;
   }
   StreamNote note;
   note.kind = StreamNoteKind::gap;
   note.streamOffset = next_;
   note.bytes = missing;
   std::size_t const have = buffered();
   if (synced_) {
      note.pduBytes = have;
      note.pduSize = have >= 4 ? announcedSize(&buf_[head_]) : 0;
   } else {
      noteResync(next_, false);
   }
   ++stats_.gaps;
   stats_.gapBytes += missing;
   sink_.streamNote(note);
   buf_.clear();
   head_ = 0;
   next_ += missing;
   dropMarksBefore(next_);
   synced_ = false;
   resync_ = Resync::gap;
   resyncFrom_ = next_;
}

void TcpStream::closeIfFinished() {
   if (state_ == State::open && finSeen_ && next_ >= finAt_ && held_.empty()) {
      endData();
   }
}

void TcpStream::endData() {
   if (state_ != State::open) {
      return;
   }
   while (!held_.empty()) {
      drainHeld(held_.begin()->first);
   }
   std::size_t const have = buffered();
   std::span<std::uint8_t const> const rest(buf_.data() + head_, have);
   std::size_t const used = frame(rest, next_ - have, true);
   std::size_t const left = have - used;
   if (left && synced_ && raw_) {
      // A raw stream lost nothing: its last bytes are a PDU as it was given,
      // for the parser to judge.
      emit(Vorin::Pkt::fromBytes(rest.subspan(used)), 0, static_cast<std::uint32_t>(left), next_ - left, false);
   } else if (left && synced_) {
      StreamNote note;
      note.kind = StreamNoteKind::endInsidePdu;
      note.streamOffset = next_ - left;
      note.pduBytes = left;
      note.pduSize = left >= 4 ? announcedSize(rest.data() + used) : 0;
      sink_.streamNote(note);
   }
   buf_.clear();
   head_ = 0;
   marks_.clear();
   state_ = State::closed;
}

void TcpStream::finish() {
   endData();
}

std::size_t TcpStream::frame(std::span<std::uint8_t const> data, std::uint64_t base, bool final) {
   std::size_t p = 0;
   run_.clear();
   while (true) {
      std::size_t const avail = data.size() - p;
      if (!synced_) {
         std::size_t q = p;
         bool found = false;
         for (; q + minPduBytes <= data.size(); ++q) {
            if (!plausiblePduHeader(&data[q])) {
               continue;
            }
            std::size_t const size = announcedSize(&data[q]);
            if (q + size > data.size()) {
               if (final) {
                  continue;
               }
               break; // decided when the whole candidate PDU is here
            }
            if (wellFramedPdu(data.subspan(q, size))) {
               found = true;
               break;
            }
         }
         if (found) {
            noteResync(base + q, true);
            synced_ = true;
            p = q;
            continue;
         }
         if (final) {
            p = data.size();
            noteResync(base + p, false);
         } else {
            // Kept for the next segment: a candidate PDU, or the last bytes,
            // which may begin a header.
            p = q;
         }
         break;
      }
      if (avail < 4) {
         break;
      }
      std::uint16_t const version = be16(&data[p]);
      std::uint16_t const size = announcedSize(&data[p]);
      if (version == 1 && size >= minFramedPdu && size <= maxPduSize) {
         if (avail < size) {
            break;
         }
         if (size < minPduBytes) {
            // Alone in its buffer, so that the parser's verdict on it does not
            // depend on the bytes that happen to follow.
            flushRun(data, base);
            emit(Vorin::Pkt::fromBytes(data.subspan(p, size)), 0, size, base + p, false);
         } else {
            run_.push_back({p, size});
         }
         p += size;
         continue;
      }
      if (avail < minPduBytes) {
         break;
      }
      // Not a PDU header: the parser judges it on the bytes a header check
      // needs, and the stream looks for the next header from the byte behind it.
      flushRun(data, base);
      emit(Vorin::Pkt::fromBytes(data.subspan(p, minPduBytes)), 0, minPduBytes, base + p, true);
      synced_ = false;
      resync_ = Resync::badHeader;
      resyncFrom_ = base + p;
      p += 1;
   }
   flushRun(data, base);
   return p;
}

void TcpStream::flushRun(std::span<std::uint8_t const> data, std::uint64_t base) {
   if (run_.empty()) {
      return;
   }
   std::size_t const from = run_.front().at;
   std::size_t const to = run_.back().at + run_.back().size;
   auto const pkt = Vorin::Pkt::fromBytes(data.subspan(from, to - from));
   for (RunPdu const & r : run_) {
      emit(pkt, static_cast<std::uint32_t>(r.at - from), r.size, base + r.at, false);
   }
   run_.clear();
}

void TcpStream::emit(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t at, std::uint32_t size,
                     std::uint64_t streamOffset, bool badHeader) {
   StreamPdu pdu;
   pdu.pkt = pkt;
   pdu.offset = at;
   pdu.size = size;
   pdu.streamOffset = streamOffset;
   pdu.firstFrame = frameOf(streamOffset).number;
   pdu.lastFrame = frameOf(streamOffset + size - 1);
   pdu.badHeader = badHeader;
   sink_.streamPdu(pdu);
}

void TcpStream::noteResync(std::uint64_t foundAt, bool found) {
   std::uint64_t const skipped = foundAt - resyncFrom_;
   stats_.skippedBytes += skipped;
   if (resync_ == Resync::gap && skipped == 0) {
      return; // the data behind the gap began with a header: the gap note says it all
   }
   StreamNote note;
   note.kind = resync_ == Resync::midStream ? StreamNoteKind::joinedMidStream : StreamNoteKind::resynchronised;
   note.streamOffset = resyncFrom_;
   note.bytes = skipped;
   note.headerFound = found;
   sink_.streamNote(note);
   resyncFrom_ = foundAt;
}

FrameMeta TcpStream::frameOf(std::uint64_t streamOffset) const {
   // The last frame whose bytes begin at or before the offset.
   auto const behind = std::upper_bound(marks_.begin(), marks_.end(), streamOffset,
                                        [](std::uint64_t off, FrameMark const & m) { return off < m.offset; });
   return behind == marks_.begin() ? FrameMeta{} : std::prev(behind)->frame;
}

void TcpStream::dropMarksBefore(std::uint64_t streamOffset) {
   while (marks_.size() > 1 && marks_[1].offset <= streamOffset) {
      marks_.pop_front();
   }
}

} // namespace LdpDecode
