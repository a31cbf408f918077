#include "Decoder.h"

namespace LdpDecode {

namespace {
constexpr std::size_t minPduSize = 14;  // the smallest PDU length the PDU parser accepts, plus 4
}

// One TCP direction: its stream and what its PDUs and notes are printed with.
struct Decoder::Flow final : StreamSink {
   Flow(Decoder & d, FlowKey const & k)
       : decoder(d), key(k), text(k.src.text() + " > " + k.dst.text() + "  TCP"), stream(*this) {}

   // While frames come in, a PDU or note belongs to the frame being decoded.
   // At the end of the capture (data held behind a gap, an unfinished PDU) there
   // is no such frame: a PDU is shown at the frame of its last byte, a note at
   // the end of the capture.
   Origin origin(FrameMeta const * frame, std::uint64_t firstFrame, std::uint64_t streamOffset) const {
      Origin o;
      o.frame = raw ? nullptr : frame;
      o.firstFrame = firstFrame;
      o.flow = raw ? nullptr : &key;
      o.flowText = raw ? nullptr : &text;
      o.streamOffset = streamOffset;
      return o;
   }
   void streamPdu(StreamPdu const & pdu) override {
      FrameMeta const * frame = decoder.finishing_ ? &pdu.lastFrame : &decoder.frame_;
      decoder.reporter_.pdu(origin(frame, pdu.firstFrame, pdu.streamOffset), pdu.pkt, pdu.offset);
   }
   void streamNote(StreamNote const & note) override {
      FrameMeta const * frame = decoder.finishing_ ? nullptr : &decoder.frame_;
      decoder.reporter_.streamNote(origin(frame, 0, note.streamOffset), note);
   }

   Decoder & decoder;
   FlowKey key;
   std::string text;
   TcpStream stream;
   bool raw = false;
};

Decoder::Decoder(ReportSink & reporter) : reporter_(reporter) {}

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
   Flow & f = tcpFlow(s.flow);
   if (s.firstFragment) {
      // The fragments behind this one are not reassembled: the stream finds
      // the rest of the segment missing when the next segment comes.
      reporter_.note(f.origin(&frame_, frame_.number, 0), "firstFragment",
                     "first fragment of an IP datagram (fragments are not reassembled): it carries the first " +
                         std::to_string(s.payload.size() + s.missingBytes) + " payload bytes of the TCP segment");
   }
   f.stream.segment(s.seq, s.tcpFlags, s.payload, s.missingBytes, meta);
}

void Decoder::datagram(Segment const & s) {
   auto it = udpFlows_.find(s.flow);
   if (it == udpFlows_.end()) {
      it = udpFlows_.emplace(s.flow, s.flow.src.text() + " > " + s.flow.dst.text() + "  UDP").first;
   }
   Origin o;
   o.frame = &frame_;
   o.firstFrame = frame_.number;
   o.flow = &it->first;
   o.flowText = &it->second;
   if (s.payload.empty()) {
      reporter_.note(o, "emptyDatagram", "UDP datagram without payload");
      return;
   }
   // The agent's socket gets the whole datagram: a PDU parsed from part of it
   // would be judged on bytes the agent never sees cut short. The datagram is
   // noted instead, as a gap is in a TCP stream.
   std::string const held = std::to_string(s.payload.size()) + " of the datagram's " +
                            std::to_string(s.payload.size() + s.missingBytes) + " payload bytes";
   if (s.firstFragment) {
      reporter_.note(o, "firstFragment",
                     "first fragment of an IP datagram (fragments are not reassembled): it holds " + held +
                         "; its PDU is not parsed");
      return;
   }
   if (s.missingBytes) {
      reporter_.note(o, "truncatedDatagram", "the capture holds " + held + "; its PDU is not parsed");
      return;
   }
   // The hello socket reads one datagram and parses one PDU at its start;
   // bytes behind that PDU are never looked at.
   reporter_.pdu(o, Vorin::Pkt::fromBytes(s.payload), 0);
   if (s.payload.size() >= 4) {
      std::size_t const size = std::size_t((s.payload[2] << 8) | s.payload[3]) + 4;
      if (size >= minPduSize && size < s.payload.size()) {
         reporter_.note(o, "bytesAfterPdu",
                        "the datagram holds " + std::to_string(s.payload.size() - size) +
                            " bytes behind its PDU, which the hello socket does not read");
      }
   }
}

void Decoder::rawStream(std::span<std::uint8_t const> bytes) {
   flows_.push_back(std::make_unique<Flow>(*this, FlowKey{}));
   Flow & f = *flows_.back();
   f.raw = true;
   f.stream.startSynced();
   f.stream.segment(0, 0, bytes, 0, FrameMeta{});
}

void Decoder::finish() {
   finishing_ = true;
   for (auto & f : flows_) {
      f->stream.finish();
      if (!f->raw) {
         reporter_.tcpStreamDone(f->stream.stats());
      }
   }
   reporter_.finish();
}

} // namespace LdpDecode
