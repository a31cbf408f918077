#include "Decoder.h"

namespace LdpDecode {

// One TCP direction: its stream and what its PDUs and notes are printed with.
struct Decoder::Flow final : StreamSink {
   Flow(Decoder & d, FlowKey const & k)
       : decoder(d), key(k), text(k.src.text() + " > " + k.dst.text() + "  TCP"), stream(*this) {}

   Origin origin(std::uint64_t firstFrame, std::uint64_t streamOffset) const {
      Origin o;
      o.frame = decoder.frame_.number ? &decoder.frame_ : nullptr;
      o.firstFrame = firstFrame;
      o.flow = raw ? nullptr : &key;
      o.flowText = raw ? nullptr : &text;
      o.streamOffset = streamOffset;
      return o;
   }
   void streamPdu(StreamPdu const & pdu) override {
      decoder.reporter_.pdu(origin(pdu.firstFrame, pdu.streamOffset), pdu.pkt, pdu.offset);
   }
   void streamNote(StreamNote const & note) override {
      decoder.reporter_.streamNote(origin(0, note.streamOffset), note);
   }

   Decoder & decoder;
   FlowKey key;
   std::string text;
   TcpStream stream;
   bool raw = false;
};

Decoder::Decoder(Reporter & reporter) : reporter_(reporter) {}

Decoder::~Decoder() = default;

Decoder::Flow & Decoder::tcpFlow(FlowKey const & key) {
   if (lastFlow_ && lastFlow_->key == key) {
      return *lastFlow_;
   }
   auto it = flowIndex_.find(key);
   if (it == flowIndex_.end()) {
      flows_.push_back(std::make_unique<Flow>(*this, key));
      it = flowIndex_.emplace(key, flows_.back().get()).first;
   }
   lastFlow_ = it->second;
   return *lastFlow_;
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
   tcpFlow(s.flow).stream.segment(s.seq, s.tcpFlags, s.payload, s.missingBytes, meta.number);
}

void Decoder::datagram(Segment const & s) {
   udpFlowText_ = s.flow.src.text() + " > " + s.flow.dst.text() + "  UDP";
   Origin o;
   o.frame = &frame_;
   o.firstFrame = frame_.number;
   o.flow = &s.flow;
   o.flowText = &udpFlowText_;
   if (s.payload.empty()) {
      reporter_.note(o, "emptyDatagram", "UDP datagram without payload");
      return;
   }
   if (s.firstFragment) {
      reporter_.note(o, "firstFragment",
                     "first fragment of an IP datagram (fragments are not reassembled): it holds " +
                         std::to_string(s.payload.size()) + " of the datagram's " +
                         std::to_string(s.payload.size() + s.missingBytes) + " payload bytes");
   } else if (s.missingBytes) {
      reporter_.note(o, "truncatedDatagram",
                     "the capture holds " + std::to_string(s.payload.size()) + " of the datagram's " +
                         std::to_string(s.payload.size() + s.missingBytes) + " payload bytes");
   }
   // The hello socket reads one datagram and parses one PDU at its start.
   reporter_.pdu(o, Vorin::Pkt::fromBytes(s.payload), 0);
}

void Decoder::rawStream(std::span<std::uint8_t const> bytes) {
   flows_.push_back(std::make_unique<Flow>(*this, FlowKey{}));
   Flow & f = *flows_.back();
   f.raw = true;
   f.stream.startSynced();
   f.stream.segment(0, 0, bytes, 0, 0);
}

void Decoder::finish() {
   for (auto & f : flows_) {
      f->stream.finish();
      if (!f->raw) {
         reporter_.tcpStreamDone(f->stream.stats());
      }
   }
   reporter_.finish();
}

} // namespace LdpDecode
