#include "Decoder.h"

#include <algorithm>

namespace LdpDecode {

namespace {
constexpr std::size_t minPduSize = 14;  // the smallest PDU length the PDU parser accepts, plus 4
}

// What the reports of a TCP direction point to. It may outlive its flow: the
// reporter keeps it until those reports are written.
struct FlowName {
   FlowKey key;
   std::string text;
};

// One TCP direction: its stream and what its PDUs and notes are printed with.
struct Decoder::Flow final : StreamSink {
   Flow(Decoder & d, FlowKey const & k)
       : decoder(d), name(std::make_shared<FlowName>(FlowName{k, k.src.text() + " > " + k.dst.text() + "  TCP"})),
         stream(*this) {}

   // While frames come in, a PDU or note belongs to the frame being decoded.
   // At the end of the capture (data held behind a gap, an unfinished PDU) there
   // is no such frame: a PDU is shown at the frame of its last byte, a note at
   // the end of the capture. A stream ended early (retired) shows its notes at
   // the frame being decoded and its PDUs at the frame of their last byte.
   Origin origin(FrameMeta const * frame, std::uint64_t firstFrame, std::uint64_t streamOffset) const {
      Origin o;
      o.frame = raw ? nullptr : frame;
      o.firstFrame = firstFrame;
      o.flow = raw ? nullptr : &name->key;
      o.flowText = raw ? nullptr : &name->text;
      o.streamOffset = streamOffset;
      return o;
   }
   void streamPdu(StreamPdu const & pdu) override {
      FrameMeta const * frame = decoder.finishing_ || retiring ? &pdu.lastFrame : &decoder.frame_;
      decoder.reporter_.pdu(origin(frame, pdu.firstFrame, pdu.streamOffset), pdu.pkt, pdu.offset);
   }
   void streamNote(StreamNote const & note) override {
      FrameMeta const * frame = decoder.finishing_ ? nullptr : &decoder.frame_;
      decoder.reporter_.streamNote(origin(frame, 0, note.streamOffset), note);
   }

   Decoder & decoder;
   std::shared_ptr<FlowName const> name;
   TcpStream stream;
   bool raw = false;
   bool retiring = false;
   FlowList::iterator self;          // its place in flows_
   std::list<Flow *>::iterator lru;  // its place in lru_
};

Decoder::Decoder(ReportSink & reporter, std::size_t maxFlows, std::size_t maxUdpFlows)
    : reporter_(reporter), maxFlows_(std::max<std::size_t>(maxFlows, 1)),
      maxUdpFlows_(std::max<std::size_t>(maxUdpFlows, 1)) {}

Decoder::~Decoder() = default;

Decoder::Flow * Decoder::tcpFlow(FlowKey const & key, bool create) {
   if (lastFlow_ && lastFlow_->name->key == key) {
      return lastFlow_;
   }
   Flow * f = nullptr;
   if (auto const it = flowIndex_.find(key); it != flowIndex_.end()) {
      f = it->second;
      lru_.splice(lru_.begin(), lru_, f->lru);
   } else {
      if (!create) {
         return nullptr;
      }
      if (flowIndex_.size() >= maxFlows_) {
         Flow & oldest = *lru_.back();
         reporter_.note(oldest.origin(&frame_, 0, 0), "flowLimit",
                        "more than " + std::to_string(maxFlows_) +
                            " TCP directions at once: the stream of the least recently used one ends here");
         retire(oldest, false);
      }
      f = flows_.insert(flows_.end(), std::make_unique<Flow>(*this, key))->get();
      f->self = std::prev(flows_.end());
      f->lru = lru_.insert(lru_.begin(), f);
      flowIndex_.emplace(key, f);
   }
   lastFlow_ = f;
   return f;
}

void Decoder::retire(Flow & f, bool closed) {
   f.retiring = true;
   f.stream.finish();
   if (closed) {
      rememberClosed(f.name->key, f.stream.stats());
   } else {
      reporter_.tcpStreamDone(f.stream.stats());
   }
   flowIndex_.erase(f.name->key);
   lru_.erase(f.lru);
   if (lastFlow_ == &f) {
      lastFlow_ = nullptr;
   }
   reporter_.keepUntilWritten(std::move(f.name));
   flows_.erase(f.self);
}

void Decoder::retireIfClosed(Flow & f) {
   if (!f.stream.closed()) {
      return;
   }
   // A direction without a flow has carried neither a SYN nor data.
   auto const it = flowIndex_.find(f.name->key.reversed());
   Flow * const reverse = it == flowIndex_.end() ? nullptr : it->second;
   if (reverse && !reverse->stream.closed()) {
      return;
   }
   retire(f, true);
   if (reverse) {
      retire(*reverse, true);
   }
}

void Decoder::rememberClosed(FlowKey const & key, StreamStats const & stats) {
   if (auto const [it, added] = closed_.try_emplace(key, stats); !added) {
      reporter_.tcpStreamDone(it->second);  // an earlier connection of the same ports
      it->second = stats;
   }
   closedOrder_.push_back(key);
   while (closedOrder_.size() > maxFlows_) {
      if (auto const it = closed_.find(closedOrder_.front()); it != closed_.end()) {
         reporter_.tcpStreamDone(it->second);
         closed_.erase(it);
      }
      closedOrder_.pop_front();
   }
}

void Decoder::frame(FrameMeta const & meta, std::span<std::uint8_t const> bytes) {
   frame_ = meta;
   Segment s;
   FrameKind const kind = decodeFrame(link_, bytes, s);
   reporter_.frameSeen(kind, s.flow.transport);
   if (kind != FrameKind::ldp) {
      return;
   }
   if (s.flow.transport == Transport::udp) {
      datagram(s);
      return;
   }
   Flow * flow = tcpFlow(s.flow, false);
   if (!flow) {
      bool const syn = (s.tcpFlags & TcpFlag::syn) != 0;
      bool const data = !s.payload.empty() || s.missingBytes;
      if (auto const c = closed_.find(s.flow); c != closed_.end()) {
         if (!syn) {
            // As a closed stream does: counted and ignored.
            c->second.afterClose += data ? 1 : 0;
            return;
         }
         reporter_.tcpStreamDone(c->second);
         closed_.erase(c);
      }
      // A bare ACK, FIN or RST of a flow not followed means nothing to a stream.
      if (!syn && !data && !s.firstFragment) {
         return;
      }
      flow = tcpFlow(s.flow, true);
   }
   Flow & f = *flow;
   if (s.firstFragment) {
      // The fragments behind this one are not reassembled: the stream finds
      // the rest of the segment missing when the next segment comes.
      reporter_.note(f.origin(&frame_, frame_.number, 0), "firstFragment",
                     "first fragment of an IP datagram (fragments are not reassembled): it carries the first " +
                         std::to_string(s.payload.size() + s.missingBytes) + " payload bytes of the TCP segment");
   }
   f.stream.segment(s.seq, s.tcpFlags, s.payload, s.missingBytes, meta);
   retireIfClosed(f);
}

FlowName const & Decoder::udpName(FlowKey const & key) {
   if (auto it = udpIndex_.find(key); it != udpIndex_.end()) {
      udpLru_.splice(udpLru_.begin(), udpLru_, it->second);
      return *udpLru_.front();
   }
   if (udpIndex_.size() >= maxUdpFlows_) {
      std::shared_ptr<FlowName> & oldest = udpLru_.back();
      udpIndex_.erase(oldest->key);
      reporter_.keepUntilWritten(std::move(oldest));
      udpLru_.pop_back();
   }
   udpLru_.push_front(std::make_shared<FlowName>(FlowName{key, key.src.text() + " > " + key.dst.text() + "  UDP"}));
   udpIndex_.emplace(key, udpLru_.begin());
   return *udpLru_.front();
}

void Decoder::datagram(Segment const & s) {
   FlowName const & name = udpName(s.flow);
   Origin o;
   o.frame = &frame_;
   o.firstFrame = frame_.number;
   o.flow = &name.key;
   o.flowText = &name.text;
   if (s.payload.empty()) {
      reporter_.note(o, "emptyDatagram", "UDP datagram without payload");
      return;
   }
   // A datagram the capture does not hold whole is still parsed on the bytes
   // it holds: crafted PDUs often come that way, and their fault is what they
   // are kept for. The note says which bytes the verdict rests on.
   std::string const held = std::to_string(s.payload.size()) + " of the datagram's " +
                            std::to_string(s.payload.size() + s.missingBytes) + " payload bytes";
   if (s.firstFragment) {
      reporter_.note(o, "firstFragment",
                     "first fragment of an IP datagram (fragments are not reassembled): it holds " + held);
   } else if (s.missingBytes) {
      reporter_.note(o, "truncatedDatagram", "the capture holds " + held);
   }
   // The hello socket reads one datagram and parses one PDU at its start;
   // bytes behind that PDU are never looked at.
   reporter_.pdu(o, Vorin::Pkt::fromBytes(s.payload), 0);
   if (s.payload.size() >= 4 && !s.missingBytes) {
      std::size_t const size = std::size_t((s.payload[2] << 8) | s.payload[3]) + 4;
      if (size >= minPduSize && size < s.payload.size()) {
         reporter_.note(o, "bytesAfterPdu",
                        "the datagram holds " + std::to_string(s.payload.size() - size) +
                            " bytes behind its PDU, which the hello socket does not read");
      }
   }
}

void Decoder::rawStream(std::span<std::uint8_t const> bytes) {
   Flow & f = *flows_.emplace_back(std::make_unique<Flow>(*this, FlowKey{}));
   f.self = std::prev(flows_.end());
   f.raw = true;
   f.stream.startSynced();
   f.stream.segment(0, 0, bytes, 0, FrameMeta{});
}

void Decoder::finish() {
   finishing_ = true;
   for (FlowKey const & key : closedOrder_) {
      if (auto const it = closed_.find(key); it != closed_.end()) {
         reporter_.tcpStreamDone(it->second);
         closed_.erase(it);
      }
   }
   closedOrder_.clear();
   for (auto & f : flows_) {
      f->stream.finish();
      if (!f->raw) {
         reporter_.tcpStreamDone(f->stream.stats());
      }
   }
   reporter_.finish();
}

} // namespace LdpDecode
