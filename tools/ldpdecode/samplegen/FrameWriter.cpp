#include "FrameWriter.h"

#include <pcap/pcap.h>

#include <stdexcept>

namespace LdpSamples {

namespace {

void put16(Bytes & b, std::uint16_t v) {
   b.push_back(static_cast<std::uint8_t>(v >> 8));
   b.push_back(static_cast<std::uint8_t>(v));
}

void put32(Bytes & b, std::uint32_t v) {
   put16(b, static_cast<std::uint16_t>(v >> 16));
   put16(b, static_cast<std::uint16_t>(v));
}

void putAddr(Bytes & b, Vorin::IpGenAddr const & a) {
   appendBytes(b, a.bytes(), a.byteLength());
}

// The Internet checksum of the bytes, starting from a partial sum.
std::uint16_t checksum(Bytes const & b, std::uint32_t sum = 0) {
   for (std::size_t i = 0; i + 1 < b.size(); i += 2) {
      sum += static_cast<std::uint32_t>((b[i] << 8) | b[i + 1]);
   }
   if (b.size() % 2) {
      sum += static_cast<std::uint32_t>(b.back() << 8);
   }
   while (sum >> 16) {
      sum = (sum & 0xFFFF) + (sum >> 16);
   }
   return static_cast<std::uint16_t>(~sum);
}

// The sum over the pseudo header of a UDP or TCP checksum.
std::uint32_t pseudoSum(Vorin::IpGenAddr const & src, Vorin::IpGenAddr const & dst, std::uint8_t proto,
                        std::size_t length) {
   Bytes p;
   putAddr(p, src);
   putAddr(p, dst);
   std::uint32_t sum = 0;
   for (std::size_t i = 0; i < p.size(); i += 2) {
      sum += static_cast<std::uint32_t>((p[i] << 8) | p[i + 1]);
   }
   return sum + proto + static_cast<std::uint32_t>(length);
}

void fillChecksum(Bytes & l4, std::size_t at, Vorin::IpGenAddr const & src, Vorin::IpGenAddr const & dst,
                  std::uint8_t proto) {
   std::uint16_t c = checksum(l4, pseudoSum(src, dst, proto, l4.size()));
   if (c == 0 && proto == IpProto::udp) {
      c = 0xFFFF;
   }
   l4[at] = static_cast<std::uint8_t>(c >> 8);
   l4[at + 1] = static_cast<std::uint8_t>(c);
}

} // namespace

std::uint16_t etherTypeOf(Vorin::IpGenAddr const & a) {
   return a.isV6() ? EtherType::ipv6 : EtherType::ipv4;
}

Bytes ethernet(Mac const & dst, Mac const & src, std::uint16_t etherType, Bytes const & payload) {
   Bytes b(dst.begin(), dst.end());
   appendBytes(b, src.data(), src.size());
   put16(b, etherType);
   appendBytes(b, payload);
   while (b.size() < 60) {  // the minimum frame, as a capture shows it
      b.push_back(0);
   }
   return b;
}

Bytes frameRelay(std::uint16_t dlci, Bytes const & ipPacket, bool snap) {
   // DLCI high six bits, C/R 0, EA 0; DLCI low four bits, FECN, BECN, DE 0, EA 1.
   Bytes b;
   b.reserve(10 + ipPacket.size());
   b.push_back(std::uint8_t((dlci >> 4) << 2));
   b.push_back(std::uint8_t(((dlci & 0x0F) << 4) | 0x01));
   b.push_back(0x03);
   bool const v6 = !ipPacket.empty() && ipPacket[0] >> 4 == 6;
   if (snap) {
      for (std::uint8_t const x : {0x00, 0x80, 0x00, 0x00, 0x00}) {  // pad, NLPID, OUI
         b.push_back(x);
      }
      put16(b, v6 ? EtherType::ipv6 : EtherType::ipv4);
   } else {
      b.push_back(v6 ? 0x8E : 0xCC);
   }
   appendBytes(b, ipPacket);
   return b;
}

Bytes ip(Vorin::IpGenAddr const & src, Vorin::IpGenAddr const & dst, std::uint8_t proto, Bytes const & payload,
         std::uint8_t ttl) {
   Bytes b;
   if (src.isV6()) {
      put32(b, 0x60000000u);
      put16(b, static_cast<std::uint16_t>(payload.size()));
      b.push_back(proto);
      b.push_back(ttl);
      putAddr(b, src);
      putAddr(b, dst);
   } else {
      b.push_back(0x45);
      b.push_back(0xC0);  // precedence 6, as LDP sends
      put16(b, static_cast<std::uint16_t>(20 + payload.size()));
      put16(b, 0);
      put16(b, 0x4000);  // don't fragment
      b.push_back(ttl);
      b.push_back(proto);
      put16(b, 0);
      putAddr(b, src);
      putAddr(b, dst);
      std::uint16_t const c = checksum(b);
      b[10] = static_cast<std::uint8_t>(c >> 8);
      b[11] = static_cast<std::uint8_t>(c);
   }
   appendBytes(b, payload);
   return b;
}

Bytes udp(Vorin::IpGenAddr const & src, std::uint16_t sport, Vorin::IpGenAddr const & dst, std::uint16_t dport,
          Bytes const & payload) {
   Bytes b;
   put16(b, sport);
   put16(b, dport);
   put16(b, static_cast<std::uint16_t>(8 + payload.size()));
   put16(b, 0);
   appendBytes(b, payload);
   fillChecksum(b, 6, src, dst, IpProto::udp);
   return ip(src, dst, IpProto::udp, b, src.isV6() ? 255 : 1);
}

Bytes tcp(Vorin::IpGenAddr const & src, std::uint16_t sport, Vorin::IpGenAddr const & dst, std::uint16_t dport,
          std::uint32_t seq, std::uint32_t ack, std::uint8_t flags, Bytes const & payload) {
   Bytes b;
   put16(b, sport);
   put16(b, dport);
   put32(b, seq);
   put32(b, ack);
   b.push_back(0x50);
   b.push_back(flags);
   put16(b, 65535);
   put16(b, 0);
   put16(b, 0);
   appendBytes(b, payload);
   fillChecksum(b, 16, src, dst, IpProto::tcp);
   return ip(src, dst, IpProto::tcp, b);
}

TcpConnection::TcpConnection(Vorin::IpGenAddr a, std::uint16_t aPort, Vorin::IpGenAddr b, std::uint16_t bPort,
                             std::uint32_t isnA, std::uint32_t isnB)
    : a_{a, aPort, isnA, isnA}, b_{b, bPort, isnB, isnB} {}

Bytes TcpConnection::segment(bool fromA, std::uint32_t seq, std::uint8_t flags, Bytes const & payload) {
   Side const & s = fromA ? a_ : b_;
   Side const & r = fromA ? b_ : a_;
   std::uint32_t const ack = (flags & TcpFlags::ack) ? r.next : 0;
   return tcp(s.addr, s.port, r.addr, r.port, seq, ack, flags, payload);
}

Bytes TcpConnection::syn() {
   Bytes const b = segment(true, a_.next, TcpFlags::syn, {});
   ++a_.next;
   return b;
}

Bytes TcpConnection::synAck() {
   Bytes const b = segment(false, b_.next, TcpFlags::syn | TcpFlags::ack, {});
   ++b_.next;
   return b;
}

Bytes TcpConnection::ack(bool fromA) {
   return segment(fromA, (fromA ? a_ : b_).next, TcpFlags::ack, {});
}

Bytes TcpConnection::data(bool fromA, Bytes const & payload) {
   Side & s = fromA ? a_ : b_;
   Bytes const b = segment(fromA, s.next, TcpFlags::psh | TcpFlags::ack, payload);
   s.next += static_cast<std::uint32_t>(payload.size());
   return b;
}

Bytes TcpConnection::dataAt(bool fromA, std::uint32_t offset, Bytes const & payload) {
   Side const & s = fromA ? a_ : b_;
   return segment(fromA, s.isn + 1 + offset, TcpFlags::psh | TcpFlags::ack, payload);
}

Bytes TcpConnection::fin(bool fromA) {
   Side & s = fromA ? a_ : b_;
   Bytes const b = segment(fromA, s.next, TcpFlags::fin | TcpFlags::ack, {});
   ++s.next;
   return b;
}

std::uint32_t TcpConnection::sent(bool fromA) const noexcept {
   Side const & s = fromA ? a_ : b_;
   return s.next - s.isn - 1;
}

PcapWriter::PcapWriter(std::string const & path, int dlt) {
   dead_ = pcap_open_dead_with_tstamp_precision(dlt, 262144, PCAP_TSTAMP_PRECISION_MICRO);
   dumper_ = dead_ ? pcap_dump_open(dead_, path.c_str()) : nullptr;
   if (!dumper_) {
      std::string const why = dead_ ? pcap_geterr(dead_) : "pcap_open_dead failed";
      if (dead_) {
         pcap_close(dead_);
      }
      throw std::runtime_error(path + ": " + why);
   }
}

PcapWriter::~PcapWriter() {
   pcap_dump_close(dumper_);
   pcap_close(dead_);
}

void PcapWriter::write(std::uint64_t micros, Bytes const & frame, std::size_t captured) {
   pcap_pkthdr h{};
   h.ts.tv_sec = static_cast<time_t>(micros / 1000000);
   h.ts.tv_usec = static_cast<suseconds_t>(micros % 1000000);
   h.len = static_cast<bpf_u_int32>(frame.size());
   h.caplen = static_cast<bpf_u_int32>(captured && captured < frame.size() ? captured : frame.size());
   pcap_dump(reinterpret_cast<u_char *>(dumper_), &h, frame.data());
}

namespace {

// pcapng fields are in the writer's byte order, told by the section's magic.
void putHost32(Bytes & b, std::uint32_t v) {
   auto const * p = reinterpret_cast<std::uint8_t const *>(&v);
   appendBytes(b, p, 4);
}

void putHost16(Bytes & b, std::uint16_t v) {
   auto const * p = reinterpret_cast<std::uint8_t const *>(&v);
   appendBytes(b, p, 2);
}

} // namespace

PcapngWriter::PcapngWriter(std::string const & path, std::uint16_t linkType) : f_(std::fopen(path.c_str(), "wb")) {
   if (!f_) {
      throw std::runtime_error(path + ": cannot create");
   }
   Bytes shb;
   putHost32(shb, 0x1A2B3C4D);  // byte-order magic
   putHost16(shb, 1);           // version 1.0
   putHost16(shb, 0);
   putHost32(shb, 0xFFFFFFFF);  // section length not given
   putHost32(shb, 0xFFFFFFFF);
   block(0x0A0D0D0A, shb);
   Bytes idb;
   putHost16(idb, linkType);
   putHost16(idb, 0);
   putHost32(idb, 262144);  // snap length
   block(0x00000001, idb);
}

PcapngWriter::~PcapngWriter() {
   std::fclose(f_);
}

void PcapngWriter::block(std::uint32_t type, Bytes const & body) {
   Bytes b;
   auto const total = static_cast<std::uint32_t>(12 + (body.size() + 3) / 4 * 4);
   putHost32(b, type);
   putHost32(b, total);
   appendBytes(b, body);
   while (b.size() % 4) {
      b.push_back(0);
   }
   putHost32(b, total);
   std::fwrite(b.data(), 1, b.size(), f_);
}

void PcapngWriter::write(std::uint64_t micros, Bytes const & frame) {
   Bytes epb;
   putHost32(epb, 0);  // interface 0
   putHost32(epb, static_cast<std::uint32_t>(micros >> 32));
   putHost32(epb, static_cast<std::uint32_t>(micros));
   putHost32(epb, static_cast<std::uint32_t>(frame.size()));
   putHost32(epb, static_cast<std::uint32_t>(frame.size()));
   appendBytes(epb, frame);
   block(0x00000006, epb);
}

} // namespace LdpSamples
