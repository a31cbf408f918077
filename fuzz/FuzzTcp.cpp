// Fuzz harness of TCP reassembly. The fuzzer's bytes choose a byte stream (PDUs
// written by the PDU writer, with runs of junk between them), a starting
// sequence number, and a series of segments cut out of that stream: in any
// order, with holes, repeats, overlaps, payloads the capture cut short, FIN and
// RST. A plain reference keeps every byte that any segment carried. Each PDU the
// stream delivers must hold exactly the stream's bytes at its offset, every one
// of them carried by some segment (none invented), in stream order and each
// byte at most once. And none may be lost: a stream that began with its SYN
// must deliver every PDU of its leading run of PDUs (no junk before it) whose
// bytes all arrived in order, whole, before any FIN or RST.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <set>
#include <utility>
#include <vector>

#include "TcpStream.h"
#include "ldp/wire/LdpPduWriter.h"

namespace {

[[noreturn]] void fail(char const * what) {
   std::fprintf(stderr, "reassembly fault: %s\n", what);
   std::abort();
}

class Source {
 public:
   Source(std::uint8_t const * p, std::size_t n) : p_(p), n_(n) {}
   bool empty() const { return at_ >= n_; }
   std::uint8_t u8() { return at_ < n_ ? p_[at_++] : 0; }
   std::uint16_t u16() { return static_cast<std::uint16_t>(u8() << 8 | u8()); }
   std::uint32_t u32() { return std::uint32_t(u16()) << 16 | u16(); }

 private:
   std::uint8_t const * p_;
   std::size_t n_;
   std::size_t at_ = 0;
};

// The true stream: a few PDUs and junk. `leading` gets the extents of the PDUs
// that come before any junk.
std::vector<std::uint8_t> makeStream(Source & s, std::vector<std::pair<std::size_t, std::size_t>> & leading) {
   bool junkSeen = false;
   std::vector<std::uint8_t> out(4096);
   Ldp::LdpPduWriter w(out);
   unsigned const pieces = 1 + s.u8() % 8;
   for (unsigned i = 0; i < pieces; ++i) {
      std::uint8_t const kind = s.u8();
      if (kind % 4 == 0) { // junk
         std::uint8_t junk[32];
         unsigned const n = 1 + kind / 4 % 32;
         for (unsigned j = 0; j < n; ++j) {
            junk[j] = s.u8();
         }
         w.raw(std::span<std::uint8_t const>(junk, n));
         junkSeen = true;
         continue;
      }
      std::size_t const start = w.size();
      w.pduBegin(Ldp::LdpIdentifier(Vorin::IpAddr(10, 0, 0, 1), 0));
      unsigned const msgs = 1 + kind % 4;
      for (unsigned m = 0; m < msgs; ++m) {
         w.msgBegin(Ldp::LdpMsgType::LdpLabelMapping, s.u8());
         w.tlvBegin(Ldp::LdpTlvType::fecTlv);
         w.prefixElement(Vorin::IpGenPrefix(Vorin::IpGenAddr(Vorin::IpAddr(s.u32())), s.u8() % 33));
         w.end();
         w.genLabelTlv(s.u16());
         w.end();
      }
      w.end();
      if (!junkSeen) {
         leading.emplace_back(start, w.size());
      }
   }
   if (!w.ok()) {
      fail("stream does not fit");
   }
   out.resize(w.size());
   return out;
}

class Checker : public LdpDecode::StreamSink {
 public:
   Checker(std::vector<std::uint8_t> const & truth, std::vector<bool> const & have)
       : truth_(truth), have_(have) {}
   std::uint64_t base = 0; // the true offset of stream offset 0
   std::set<std::uint64_t> delivered; // true offsets of the PDUs with a good header

   void streamPdu(LdpDecode::StreamPdu const & pdu) override {
      if (!pdu.pkt || std::uint64_t(pdu.offset) + pdu.size > pdu.pkt->frontBytes()) {
         fail("PDU outside its packet");
      }
      // PDUs come in stream order; a PDU's bytes are delivered once (the bytes
      // of a refused header may be searched again for the next header).
      if (started_ && pdu.streamOffset <= lastStart_) {
         fail("PDU delivered out of order or twice");
      }
      if (!pdu.badHeader && pdu.streamOffset < goodEnd_) {
         fail("PDU overlaps the one before");
      }
      started_ = true;
      lastStart_ = pdu.streamOffset;
      if (!pdu.badHeader) {
         goodEnd_ = pdu.streamOffset + pdu.size;
         delivered.insert(base + pdu.streamOffset);
      }
      std::uint8_t const * p = pdu.pkt->front() + pdu.offset;
      for (std::uint32_t i = 0; i < pdu.size; ++i) {
         std::uint64_t const at = base + pdu.streamOffset + i;
         if (at >= truth_.size() || !have_[at]) {
            fail("byte no segment carried");
         }
         if (p[i] != truth_[at]) {
            fail("byte differs from the stream");
         }
      }
   }
   void streamNote(LdpDecode::StreamNote const &) override {}

 private:
   std::vector<std::uint8_t> const & truth_;
   std::vector<bool> const & have_;
   bool started_ = false;
   std::uint64_t lastStart_ = 0;
   std::uint64_t goodEnd_ = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * data, std::size_t size) {
   Source s(data, size);
   std::vector<std::pair<std::size_t, std::size_t>> leading;
   std::vector<std::uint8_t> const truth = makeStream(s, leading);
   std::vector<bool> have(truth.size(), false);
   std::uint32_t const isn = s.u32();
   bool const syn = s.u8() & 1;

   Checker checker(truth, have);
   LdpDecode::TcpStream stream(checker);
   LdpDecode::FrameMeta frame;
   if (syn) {
      stream.segment(isn, LdpDecode::TcpFlag::syn, {}, 0, frame);
   }
   std::uint32_t const seqOfByte0 = isn + 1;
   bool first = true;
   std::size_t sentTo = 0; // behind the last segment
   // The bytes from the stream's start that arrived in order: each segment
   // began at or before this end, was captured whole and had no FIN or RST.
   // It stops growing at the first segment that does not.
   std::size_t inOrderTo = 0;
   bool inOrder = syn;
   for (unsigned n = 0; n < 64 && !s.empty(); ++n) {
      ++frame.number;
      std::uint8_t const op = s.u8();
      // Most segments follow the one before, as a sender sends them; the others
      // go anywhere (holes, repeats, overlaps, reordering).
      std::size_t const random = s.u16() % truth.size();
      std::size_t const off = (op & 0xC0) && sentTo < truth.size() ? sentTo : random;
      std::size_t const len = 1 + s.u16() % (truth.size() - off);
      // The capture may cut the payload short: the rest is missing.
      std::size_t const captured = (op & 0x10) ? s.u16() % (len + 1) : len;
      std::uint8_t flags = 0;
      if ((op & 0x7) == 1) {
         flags = LdpDecode::TcpFlag::fin;
      } else if ((op & 0x7) == 2 && (op & 0x20)) {
         flags = LdpDecode::TcpFlag::rst;
      }
      if (first && !syn) {
         checker.base = off; // a stream joined mid-way counts from its first segment
      }
      first = false;
      inOrder = inOrder && off <= inOrderTo && captured == len && flags == 0;
      if (inOrder && off + len > inOrderTo) {
         inOrderTo = off + len;
      }
      sentTo = off + len;
      for (std::size_t i = off; i < off + captured; ++i) {
         have[i] = true;
      }
      // A copy of just the captured bytes, so that a read past them is seen.
      std::vector<std::uint8_t> const payload(truth.begin() + off, truth.begin() + off + captured);
      stream.segment(seqOfByte0 + static_cast<std::uint32_t>(off), flags, payload,
                     static_cast<std::uint32_t>(len - captured), frame);
   }
   stream.finish();
   for (auto const & [start, end] : leading) {
      if (end <= inOrderTo && !checker.delivered.count(start)) {
         fail("a PDU whose bytes all arrived in order was not delivered");
      }
   }
   return 0;
}
