// ldpdecode-samples: writes the captures that ldpdecode is shown and tested
// with. Every PDU is built from libLdp's wire types (PduWriter); frames and files
// come from FrameWriter.
//
//   ldpdecode-samples samples DIR      the bundled samples (samples/ in the tree)
//   ldpdecode-samples testdata DIR     inputs of the command-line tests
//   ldpdecode-samples bench FRAMES OUT one long session, for the benchmark
#include <pcap/dlt.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <string>

#include "FrameWriter.h"
#include "PduWriter.h"

using namespace LdpSamples;
using Ldp::LdpIdentifier;
using Ldp::LdpMsgType;
using Ldp::LdpStatusCode;
using Ldp::LdpTlvType;
using Vorin::IpAddr;
using Vorin::IpGenAddr;
using Vorin::IpGenPrefix;

namespace {

constexpr std::uint16_t ldpPort = 646;
constexpr std::uint64_t startMicros = 1709283600ull * 1000000;  // 2024-03-01 09:00:00 UTC

IpGenAddr addr(char const * text) {
   return IpGenAddr::fromString(text);
}

IpGenPrefix prefix(char const * text) {
   return IpGenPrefix::fromString(text);
}

LdpIdentifier ldpId(char const * text) {
   return LdpIdentifier::fromString(text);
}

Mac const r1Mac = {0x02, 0, 0, 0, 0, 0x01};
Mac const r2Mac = {0x02, 0, 0, 0, 0, 0x02};
Mac const allRouters4 = {0x01, 0x00, 0x5e, 0, 0, 0x02};
Mac const allRouters6 = {0x33, 0x33, 0, 0, 0, 0x02};

// Frames between two routers on one Ethernet link, time stamped in steps.
// The link between the two routers: Ethernet, or a Frame Relay circuit (DLCI
// 100) whose unicast frames carry the IP NLPIDs and whose multicast frames the
// SNAP form.
enum class LinkKind { ethernet, frameRelay };

class Link {
 public:
   Link(PcapWriter & w, std::uint64_t start, LinkKind kind = LinkKind::ethernet) : w_(w), t_(start), kind_(kind) {}

   void toPeer(bool fromFirst, Bytes const & ipPacket, std::uint64_t stepMicros = 1000) {
      if (kind_ == LinkKind::frameRelay) {
         put(frameRelay(100, ipPacket, false), stepMicros);
         return;
      }
      Mac const & src = fromFirst ? r1Mac : r2Mac;
      Mac const & dst = fromFirst ? r2Mac : r1Mac;
      put(ethernet(dst, src, ipPacket[0] >> 4 == 6 ? EtherType::ipv6 : EtherType::ipv4, ipPacket), stepMicros);
   }
   void multicast(bool fromFirst, Bytes const & ipPacket, std::uint64_t stepMicros = 1000) {
      if (kind_ == LinkKind::frameRelay) {
         put(frameRelay(100, ipPacket, true), stepMicros);
         return;
      }
      bool const v6 = ipPacket[0] >> 4 == 6;
      put(ethernet(v6 ? allRouters6 : allRouters4, fromFirst ? r1Mac : r2Mac, v6 ? EtherType::ipv6 : EtherType::ipv4,
                   ipPacket),
          stepMicros);
   }
   void put(Bytes const & frame, std::uint64_t stepMicros = 1000, std::size_t captured = 0) {
      t_ += stepMicros;
      w_.write(t_, frame, captured);
   }

 private:
   PcapWriter & w_;
   std::uint64_t t_;
   LinkKind kind_;
};

Bytes hello(LdpIdentifier const & id, std::uint32_t msgId, IpGenAddr const & transport, std::uint32_t seq,
            bool targeted = false) {
   PduWriter p(id);
   p.msg(LdpMsgType::LdpHello, msgId).add(Tlv::commonHello(targeted ? 45 : 15, targeted, targeted));
   if (transport.isV6()) {
      p.add(Tlv::ipv6Transport(transport.v6()));
   } else {
      p.add(Tlv::ipv4Transport(transport.v4()));
   }
   p.add(Tlv::configSeqNum(seq));
   return p.bytes();
}

Bytes keepalive(LdpIdentifier const & id, std::uint32_t msgId) {
   return PduWriter(id).msg(LdpMsgType::LdpKeepAlive, msgId).bytes();
}

Bytes labelMapping(PduWriter & p, std::uint32_t msgId, Bytes const & fecElement, std::uint32_t label) {
   p.msg(LdpMsgType::LdpLabelMapping, msgId).add(Tlv::fec({fecElement})).add(Tlv::genLabel(label));
   return {};
}

Bytes concat(Bytes a, Bytes const & b) {
   appendBytes(a, b);
   return a;
}

Bytes pwFec(std::uint32_t pwId, bool withParams) {
   std::vector<Bytes> params;
   if (withParams) {
      params = {Fec::pwMtu(1500), Fec::pwDescription("R1 to R2 pw100"), Fec::pwVccv(0x02, 0x02)};
   }
   return Fec::pwId(Pseudowire::PseudowireType::ethernet, true, 1, pwId, params);
}

// The bundled session: discovery over IPv4 and IPv6, a TCP session from
// 2.2.2.2 to 1.1.1.1 with initialization and capabilities, addresses, prefix and
// pseudowire label mappings, a request that fails, an aborted request,
// withdraws, releases, a PW status notification and a shutdown.
void writeSession(std::string const & path, LinkKind kind = LinkKind::ethernet) {
   PcapWriter w(path, kind == LinkKind::frameRelay ? DLT_FRELAY : DLT_EN10MB);
   Link link(w, startMicros, kind);
   LdpIdentifier const r1 = ldpId("1.1.1.1:0");
   LdpIdentifier const r2 = ldpId("2.2.2.2:0");
   IpGenAddr const r1Link = addr("10.0.12.1");
   IpGenAddr const r2Link = addr("10.0.12.2");
   IpGenAddr const r1Ll = addr("fe80::1");
   IpGenAddr const r2Ll = addr("fe80::2");

   link.multicast(true, udp(r1Link, ldpPort, addr("224.0.0.2"), ldpPort, hello(r1, 1, addr("1.1.1.1"), 1)));
   link.multicast(false, udp(r2Link, ldpPort, addr("224.0.0.2"), ldpPort, hello(r2, 1, addr("2.2.2.2"), 3)));
   link.multicast(true, udp(r1Ll, ldpPort, addr("ff02::2"), ldpPort, hello(r1, 2, addr("2001:db8::1"), 1)));
   link.multicast(false, udp(r2Ll, ldpPort, addr("ff02::2"), ldpPort, hello(r2, 2, addr("2001:db8::2"), 3)));

   // The LSR with the higher identifier opens the session; "first" below is R1.
   TcpConnection c(addr("2.2.2.2"), 49152, addr("1.1.1.1"), ldpPort, 0x1000, 0x5000);
   bool const fromR2 = true;
   bool const fromR1 = false;
   auto send = [&](bool fromA, Bytes const & payload) { link.toPeer(!fromA, c.data(fromA, payload)); };
   link.toPeer(false, c.syn());
   link.toPeer(true, c.synAck());
   link.toPeer(false, c.ack(true));

   send(fromR2, PduWriter(r2)
                    .msg(LdpMsgType::LdpInit, 2)
                    .add(Tlv::sessionParams(30, 4096, r1, false, 0))
                    .add(Tlv::capability(LdpTlvType::dynamicCapabilityTlv, true))
                    .add(Tlv::capability(LdpTlvType::typedWildcardFecCapabilityTlv, true))
                    .bytes());
   // Two PDUs in one segment.
   send(fromR1, concat(PduWriter(r1)
                           .msg(LdpMsgType::LdpInit, 3)
                           .add(Tlv::sessionParams(30, 4096, r2, false, 0))
                           .add(Tlv::capability(LdpTlvType::dynamicCapabilityTlv, true))
                           .bytes(),
                       keepalive(r1, 4)));
   send(fromR2, keepalive(r2, 3));
   // Two messages in one PDU.
   send(fromR1, PduWriter(r1)
                    .msg(LdpMsgType::LdpAddress, 5)
                    .add(Tlv::addressList({addr("1.1.1.1"), addr("10.0.12.1"), addr("10.0.13.1")}))
                    .msg(LdpMsgType::LdpAddress, 6)
                    .add(Tlv::addressList({addr("2001:db8::1"), addr("2001:db8:13::1")}))
                    .bytes());
   send(fromR2, PduWriter(r2)
                    .msg(LdpMsgType::LdpAddress, 4)
                    .add(Tlv::addressList({addr("2.2.2.2"), addr("10.0.12.2")}))
                    .bytes());

   // One PDU of five mappings, split over two segments.
   PduWriter m(r1);
   labelMapping(m, 7, Fec::prefix(prefix("1.1.1.1/32")), 3);
   m.msg(LdpMsgType::LdpLabelMapping, 8)
       .add(Tlv::fec({Fec::prefix(prefix("10.0.13.0/24"))}))
       .add(Tlv::genLabel(24002))
       .add(Tlv::hopCount(2))
       .add(Tlv::pathVector({IpAddr(1, 1, 1, 1), IpAddr(3, 3, 3, 3)}));
   labelMapping(m, 9, Fec::prefix(prefix("2001:db8:13::/48")), 24003);
   labelMapping(m, 10, Fec::hostAddress(addr("10.0.13.5")), 24004);
   m.msg(LdpMsgType::LdpLabelMapping, 11)
       .add(Tlv::fec({pwFec(100, true)}))
       .add(Tlv::genLabel(24005))
       .add(Tlv::pwStatus(0));
   Bytes const mappings = m.bytes();
   Bytes const firstHalf(mappings.begin(), mappings.begin() + 60);
   Bytes const secondHalf(mappings.begin() + 60, mappings.end());
   send(fromR1, firstHalf);
   send(fromR1, secondHalf);

   PduWriter m2(r2);
   labelMapping(m2, 5, Fec::prefix(prefix("2.2.2.2/32")), 3);
   m2.msg(LdpMsgType::LdpLabelMapping, 6).add(Tlv::fec({pwFec(100, true)})).add(Tlv::genLabel(16001));
   send(fromR2, m2.bytes());

   send(fromR2, PduWriter(r2)
                    .msg(LdpMsgType::LdpLabelRequest, 7)
                    .add(Tlv::fec({Fec::prefix(prefix("10.0.99.0/24"))}))
                    .add(Tlv::hopCount(1))
                    .bytes());
   send(fromR1, PduWriter(r1)
                    .msg(LdpMsgType::LdpNotification, 12)
                    .add(Tlv::status(LdpStatusCode::noRoute, false, false, 7, 0x0401))
                    .bytes());
   send(fromR2, PduWriter(r2)
                    .msg(LdpMsgType::LdpLabelRequest, 8)
                    .add(Tlv::fec({Fec::prefix(prefix("10.0.13.0/24"))}))
                    .bytes());
   send(fromR2, PduWriter(r2)
                    .msg(LdpMsgType::LdpLabelAbortReq, 9)
                    .add(Tlv::fec({Fec::prefix(prefix("10.0.13.0/24"))}))
                    .add(Tlv::labelRequestMsgId(8))
                    .bytes());
   send(fromR1, PduWriter(r1)
                    .msg(LdpMsgType::LdpNotification, 13)
                    .add(Tlv::status(LdpStatusCode::labelRequestAborted, false, false, 8, 0x0401))
                    .add(Tlv::labelRequestMsgId(8))
                    .bytes());
   send(fromR2, PduWriter(r2)
                    .msg(LdpMsgType::LdpCapability, 10)
                    .add(Tlv::capability(LdpTlvType::typedWildcardFecCapabilityTlv, false))
                    .bytes());
   send(fromR1, PduWriter(r1)
                    .msg(LdpMsgType::LdpLabelWithdraw, 14)
                    .add(Tlv::fec({Fec::prefix(prefix("10.0.13.0/24"))}))
                    .add(Tlv::genLabel(24002))
                    .bytes());
   send(fromR2, PduWriter(r2)
                    .msg(LdpMsgType::LdpLabelRelease, 11)
                    .add(Tlv::fec({Fec::prefix(prefix("10.0.13.0/24"))}))
                    .add(Tlv::genLabel(24002))
                    .bytes());
   send(fromR1, PduWriter(r1)
                    .msg(LdpMsgType::LdpNotification, 15)
                    .add(Tlv::status(LdpStatusCode::pwStatus, false, false, 0, 0))
                    .add(Tlv::pwStatus(0x00000003))
                    .add(Tlv::fec({pwFec(100, false)}))
                    .bytes());
   send(fromR1, PduWriter(r1)
                    .msg(LdpMsgType::LdpLabelWithdraw, 16)
                    .add(Tlv::fec({Fec::wildcard()}))
                    .bytes());
   send(fromR2, PduWriter(r2)
                    .msg(LdpMsgType::LdpLabelRelease, 12)
                    .add(Tlv::fec({Fec::wildcard()}))
                    .bytes());
   send(fromR1, PduWriter(r1)
                    .msg(LdpMsgType::LdpAddressWithdraw, 17)
                    .add(Tlv::addressList({addr("10.0.13.1")}))
                    .bytes());
   send(fromR1, keepalive(r1, 18));
   send(fromR2, PduWriter(r2)
                    .msg(LdpMsgType::LdpNotification, 13)
                    .add(Tlv::status(LdpStatusCode::shutdown, true, false, 0, 0))
                    .bytes());
   link.toPeer(false, c.fin(true));
   link.toPeer(true, c.fin(false));
   link.toPeer(false, c.ack(true));
}

// Overwrites 16 bits at `at`.
Bytes patch16(Bytes b, std::size_t at, std::uint16_t v) {
   b.at(at) = static_cast<std::uint8_t>(v >> 8);
   b.at(at + 1) = static_cast<std::uint8_t>(v);
   return b;
}

// One faulty PDU per fault class. PDUs whose header is wrong come as UDP
// datagrams (a datagram is parsed as one PDU whatever its header says); faulty
// messages come inside a TCP session, whose framing they leave intact, and one
// bad header in that session shows how the stream resynchronises behind it.
void writeFaults(std::string const & path) {
   PcapWriter w(path, DLT_EN10MB);
   Link link(w, startMicros + 3600ull * 1000000);
   LdpIdentifier const r3 = ldpId("3.3.3.3:0");
   LdpIdentifier const r4 = ldpId("4.4.4.4:0");
   IpGenAddr const r3Link = addr("10.0.34.3");
   IpGenAddr const group = addr("224.0.0.2");
   auto datagram = [&](Bytes const & pdu) { link.multicast(true, udp(r3Link, ldpPort, group, ldpPort, pdu)); };

   Bytes const good = hello(r3, 1, addr("3.3.3.3"), 1);
   datagram(Bytes(good.begin(), good.begin() + 12));                    // badPduLength: PDU too small
   datagram(patch16(good, 2, 9597));                                    // badPduLength: length field too big
   datagram(patch16(good, 2, 9));                                       // badPduLength: length field too small
   datagram(patch16(good, 0, 2));                                       // badVersion
   datagram(patch16(good, 12, static_cast<std::uint16_t>((good[12] << 8 | good[13]) + 8)));  // message overruns the PDU
   datagram(patch16(good, 2, static_cast<std::uint16_t>((good[2] << 8 | good[3]) + 20)));    // PDU beyond the datagram
   datagram(PduWriter(r3)  // malformedTlv: IPv4 transport address after an IPv6 one
                .msg(LdpMsgType::LdpHello, 2)
                .add(Tlv::commonHello(15, false, false))
                .add(Tlv::ipv6Transport(addr("2001:db8:34::3").v6()))
                .add(Tlv::ipv4Transport(IpAddr(3, 3, 3, 3)))
                .bytes());
   datagram(PduWriter(r3)  // missingMessageParams: no Common Hello Parameters
                .msg(LdpMsgType::LdpHello, 3)
                .add(Tlv::ipv4Transport(IpAddr(3, 3, 3, 3)))
                .bytes());

   TcpConnection c(addr("4.4.4.4"), 49200, addr("3.3.3.3"), ldpPort, 0x7000, 0x9000);
   auto send = [&](Bytes const & payload) { link.toPeer(false, c.data(true, payload)); };
   link.toPeer(false, c.syn());
   link.toPeer(true, c.synAck());
   link.toPeer(false, c.ack(true));
   send(PduWriter(r4).msg(LdpMsgType::LdpInit, 1).add(Tlv::sessionParams(30, 4096, r3, false, 0)).bytes());
   link.toPeer(true, c.data(false, concat(PduWriter(r3)
                                              .msg(LdpMsgType::LdpInit, 1)
                                              .add(Tlv::sessionParams(30, 4096, r4, false, 0))
                                              .bytes(),
                                          keepalive(r3, 2))));

   std::uint32_t id = 10;
   auto mappingOf = [&](Bytes const & fecTlv, Bytes const & labelTlv) {
      return PduWriter(r4).msg(LdpMsgType::LdpLabelMapping, id++).add(fecTlv).add(labelTlv).bytes();
   };
   Bytes const fec24 = Tlv::fec({Fec::prefix(prefix("10.0.40.0/24"))});

   // unknownMessageType: type 0x3e00 without the U bit, behind a Keepalive.
   send(PduWriter(r4).msg(LdpMsgType::LdpKeepAlive, id).msgOfType(0x3e00, id + 1, false).bytes());
   id += 2;
   // Ignored, not a fault: type 0x3e01 with the U bit.
   send(PduWriter(r4).msgOfType(0x3e01, id, true).msg(LdpMsgType::LdpKeepAlive, id + 1).bytes());
   id += 2;
   // unknownTlv: a TLV of type 0x3e10 without the U bit.
   send(PduWriter(r4)
            .msg(LdpMsgType::LdpLabelMapping, id++)
            .add(fec24)
            .add(Tlv::genLabel(40001))
            .add(Tlv::raw(0x3e10, {0, 0, 0, 1}))
            .bytes());
   // malformedTlv: a message of 4 bytes (length field 0, no message ID), then a
   // good Keepalive.
   {
      Bytes b = PduWriter(r4).msg(LdpMsgType::LdpKeepAlive, id).msg(LdpMsgType::LdpKeepAlive, id + 1).bytes();
      id += 2;
      b.erase(b.begin() + 14, b.begin() + 18);
      b = patch16(patch16(b, 12, 0), 2, static_cast<std::uint16_t>(b.size() - 4));
      send(b);
   }
   // badTlvLength: the Generic Label TLV claims a byte more than the message holds.
   {
      Bytes const b = mappingOf(fec24, Tlv::genLabel(40002));
      send(patch16(b, b.size() - 6, 5));
   }
   // malformedTlv: a Generic Label TLV of 5 bytes.
   send(mappingOf(fec24, Tlv::raw(0x0200, {0, 0, 0x9c, 0x43, 0})));
   // unknownFec: a Label Mapping for the Wildcard FEC.
   send(mappingOf(Tlv::fec({Fec::wildcard()}), Tlv::genLabel(40003)));
   // missingMessageParams: a Label Mapping without a label.
   send(PduWriter(r4).msg(LdpMsgType::LdpLabelMapping, id++).add(fec24).add(Tlv::hopCount(1)).bytes());
   // malformedTlv: an IPv4 prefix of 33 bits.
   {
      Bytes fec = Tlv::fec({Fec::prefix(prefix("10.0.40.0/24"))});
      fec.back() = 0;
      fec.push_back(0);
      fec.push_back(0);
      fec = patch16(fec, 2, static_cast<std::uint16_t>(fec.size() - 4));
      fec[7] = 33;
      send(mappingOf(fec, Tlv::genLabel(40004)));
   }
   // unknownFec: a PWid element of PW type 6.
   send(mappingOf(Tlv::fec({Fec::pwId(Pseudowire::PseudowireType(6), false, 1, 200, {})}), Tlv::genLabel(40005)));
   // unsupportedAddressFamily: an address list of family 3.
   {
      Bytes list = Tlv::addressList({addr("10.0.34.4")});
      list = patch16(list, 4, 3);
      send(PduWriter(r4).msg(LdpMsgType::LdpAddress, id++).add(list).bytes());
   }
   // missingMessageParams: a Notification without a Status TLV.
   send(PduWriter(r4).msg(LdpMsgType::LdpNotification, id++).add(Tlv::hopCount(1)).bytes());
   // missingMessageParams: a PW status Notification without its PW Status TLV.
   send(PduWriter(r4)
            .msg(LdpMsgType::LdpNotification, id++)
            .add(Tlv::status(LdpStatusCode::pwStatus, false, false, 0, 0))
            .bytes());
   // badVersion inside the stream: the stream resynchronises on the Keepalive behind it.
   send(concat(patch16(keepalive(r4, id), 0, 2), keepalive(r4, id + 1)));
   id += 2;
   send(keepalive(r4, id++));
   link.toPeer(false, c.fin(true));
   link.toPeer(true, c.fin(false));
}

void writeNotLdp(std::string const & path) {
   PcapWriter w(path, DLT_EN10MB);
   Link link(w, startMicros);
   Bytes arp = {0x00, 0x01, 0x08, 0x00, 0x06, 0x04, 0x00, 0x01};
   appendBytes(arp, r1Mac.data(), r1Mac.size());
   appendBytes(arp, Bytes{10, 0, 12, 1, 0, 0, 0, 0, 0, 0, 10, 0, 12, 2});
   link.put(ethernet({0xff, 0xff, 0xff, 0xff, 0xff, 0xff}, r1Mac, EtherType::arp, arp));
   link.toPeer(true, ip(addr("10.0.12.1"), addr("10.0.12.2"), IpProto::icmp, {8, 0, 0xf7, 0xfe, 0, 1, 0, 0}));
   link.toPeer(true, udp(addr("10.0.12.1"), 5353, addr("10.0.12.2"), 53, {0x12, 0x34, 1, 0, 0, 1, 0, 0, 0, 0, 0, 0}));
   link.toPeer(false, tcp(addr("10.0.12.2"), 179, addr("10.0.12.1"), 50000, 1, 1, TcpFlags::ack, {}));
}

// A session seen from the middle, with the capture's usual troubles: the first
// segment begins inside a PDU, PDUs span segments, segments come out of order,
// twice, overlapping, and one is lost. Linux cooked v2 over IPv6, in pcapng.
void writeReassembly(std::string const & path) {
   PcapngWriter w(path, DLT_LINUX_SLL2);
   std::uint64_t t = startMicros;
   IpGenAddr const a = addr("2001:db8:56::5");
   IpGenAddr const b = addr("2001:db8:56::6");
   auto frame = [&](Bytes const & ipPacket) {
      Bytes f = {0x86, 0xdd, 0, 0, 0, 0, 0, 2, 0, 1, 0, 6};
      appendBytes(f, r1Mac.data(), r1Mac.size());
      appendBytes(f, Bytes{0, 0});
      appendBytes(f, ipPacket);
      t += 500;
      w.write(t, f);
   };
   LdpIdentifier const r5 = ldpId("5.5.5.5:0");
   // 24 PDUs of one or two mappings each.
   Bytes stream;
   for (std::uint32_t i = 0; i < 24; ++i) {
      PduWriter p(r5);
      std::string const pfx = "10.5." + std::to_string(i) + ".0/24";
      p.msg(LdpMsgType::LdpLabelMapping, 100 + i)
          .add(Tlv::fec({Fec::prefix(prefix(pfx.c_str()))}))
          .add(Tlv::genLabel(50000 + i));
      if (i % 3 == 0) {
         p.msg(LdpMsgType::LdpKeepAlive, 200 + i);
      }
      stream = concat(stream, p.bytes());
   }
   TcpConnection c(a, 646, b, 51000, 0xfffff000, 0x100);  // sequence numbers wrap inside the stream
   auto piece = [&](std::size_t from, std::size_t to) {
      return frame(c.dataAt(true, static_cast<std::uint32_t>(from), Bytes(stream.begin() + from, stream.begin() + to)));
   };
   // The capture starts at byte 20, inside the first PDU.
   piece(20, 100);
   piece(100, 150);
   piece(200, 260);  // ahead of 150..199
   piece(150, 200);
   piece(150, 200);  // again
   piece(240, 330);  // overlaps the one before
   piece(330, 400);
   // 400..480 never arrives.
   piece(480, 600);
   std::size_t at = 600;
   while (at < stream.size()) {
      std::size_t const to = std::min(stream.size(), at + 37);
      piece(at, to);
      at = to;
   }
   // The other direction from its SYN: a Keepalive, then a PDU whose version is 2,
   // then a Keepalive in the same segment.
   LdpIdentifier const r6 = ldpId("6.6.6.6:0");
   TcpConnection back(b, 51000, a, 646, 0x200, 0x300);
   frame(back.syn());
   frame(back.data(true, keepalive(r6, 1)));
   frame(back.data(true, concat(patch16(keepalive(r6, 2), 0, 2), keepalive(r6, 3))));
   frame(back.fin(true));
}

// A targeted hello in a VLAN, behind an MPLS label.
void writeMplsVlan(std::string const & path) {
   PcapWriter w(path, DLT_EN10MB);
   Bytes const packet =
       udp(addr("7.7.7.7"), ldpPort, addr("8.8.8.8"), ldpPort, hello(ldpId("7.7.7.7:0"), 1, addr("7.7.7.7"), 1, true));
   Bytes payload = {0x00, 0x64, 0x88, 0x47, 0x00, 0x3e, 0x81, 0xfe};  // VLAN 100; label 1000, bottom of stack
   appendBytes(payload, packet);
   w.write(startMicros, ethernet(r2Mac, r1Mac, EtherType::vlan, payload));
}

// A hello over PPP in HDLC framing, and one over BSD loopback with IPv6.
void writePppAndLoopback(std::string const & pppPath, std::string const & nullPath) {
   {
      PcapWriter w(pppPath, DLT_PPP_SERIAL);
      Bytes f = {0xff, 0x03, 0x00, 0x21};
      Bytes const packet =
          udp(addr("10.0.78.7"), ldpPort, addr("224.0.0.2"), ldpPort, hello(ldpId("7.7.7.7:0"), 2, addr("7.7.7.7"), 2));
      appendBytes(f, packet);
      w.write(startMicros, f);
   }
   {
      PcapWriter w(nullPath, DLT_NULL);
      Bytes f = {30, 0, 0, 0};  // AF_INET6 of the capturing host, little-endian
      Bytes const packet = udp(addr("::1"), ldpPort, addr("::1"), ldpPort,
                               hello(ldpId("7.7.7.7:0"), 3, addr("2001:db8:78::7"), 3, true));
      appendBytes(f, packet);
      w.write(startMicros, f);
   }
}

void writeFile(std::string const & path, std::string const & text) {
   std::ofstream f(path, std::ios::binary | std::ios::trunc);
   f << text;
   if (!f) {
      throw std::runtime_error(path + ": cannot write");
   }
}

void writeTestData(std::string const & dir) {
   writeNotLdp(dir + "/not-ldp.pcap");
   writeReassembly(dir + "/reassembly.pcapng");
   writeMplsVlan(dir + "/mpls-vlan.pcap");
   writePppAndLoopback(dir + "/ppp-hdlc.pcap", dir + "/null-ipv6.pcap");
   writeSession(dir + "/session-frame-relay.pcap", LinkKind::frameRelay);
   std::string const cut = dir + "/truncated.pcap";
   writeSession(cut);
   std::filesystem::resize_file(cut, std::filesystem::file_size(cut) - 30);
   {
      PcapWriter w(dir + "/unsupported-link.pcap", DLT_USER0);
      w.write(startMicros, {1, 2, 3, 4});
   }
   { PcapWriter w(dir + "/no-frames.pcap", DLT_EN10MB); }
   writeFile(dir + "/empty.pcap", "");
   writeFile(dir + "/not-a-capture.pcap", "This is a text file, not a capture.\n");
}

// One long session for the benchmark: each TCP segment one PDU of 1 to 20
// Label Mappings, a UDP hello every 50th frame.
void writeBench(std::uint64_t frames, std::string const & path) {
   PcapWriter w(path, DLT_EN10MB);
   Link link(w, startMicros);
   LdpIdentifier const r1 = ldpId("1.1.1.1:0");
   LdpIdentifier const r2 = ldpId("2.2.2.2:0");
   TcpConnection c(addr("2.2.2.2"), 49152, addr("1.1.1.1"), ldpPort, 0x1000, 0x5000);
   std::uint64_t n = 0;
   auto put = [&](bool fromR1, Bytes const & packet) {
      link.toPeer(fromR1, packet, 100);
      ++n;
   };
   put(false, c.syn());
   put(true, c.synAck());
   put(false, c.ack(true));
   put(false, c.data(true, PduWriter(r2).msg(LdpMsgType::LdpInit, 1).add(Tlv::sessionParams(30, 4096, r1, false, 0)).bytes()));
   put(true, c.data(false, PduWriter(r1).msg(LdpMsgType::LdpInit, 1).add(Tlv::sessionParams(30, 4096, r2, false, 0)).bytes()));
   std::uint32_t rng = 1;
   auto next = [&rng]() {
      rng = rng * 1103515245u + 12345u;
      return (rng >> 16) & 0x7fff;
   };
   std::uint32_t msgId = 2;
   std::uint32_t label = 16;
   std::uint32_t fec = 0;
   while (n < frames) {
      if ((n + 1) % 50 == 0) {
         put(true, udp(addr("10.0.12.1"), ldpPort, addr("224.0.0.2"), ldpPort, hello(r1, msgId++, addr("1.1.1.1"), 1)));
         continue;
      }
      PduWriter p(r1);
      unsigned const count = 1 + next() % 20;
      for (unsigned i = 0; i < count; ++i) {
         // Unicast prefixes spread over the address space as in a routing
         // table: /24 and /32 in turn, each FEC advertised once.
         std::uint32_t const spread = ++fec * 2654435761u;
         IpAddr const a(static_cast<std::uint8_t>(1 + (spread >> 24) % 223), static_cast<std::uint8_t>(spread >> 16),
                        static_cast<std::uint8_t>(spread >> 8), static_cast<std::uint8_t>(spread));
         p.msg(LdpMsgType::LdpLabelMapping, msgId++)
             .add(Tlv::fec({Fec::prefix(IpGenPrefix(IpGenAddr(a), fec % 2 ? 32 : 24))}))
             .add(Tlv::genLabel(label));
         label = label == 1048575 ? 16 : label + 1;
      }
      put(true, c.data(false, p.bytes()));
   }
}

int usage() {
   std::fputs("usage: ldpdecode-samples samples DIR | testdata DIR | bench FRAMES OUT\n", stderr);
   return 2;
}

} // namespace

int main(int argc, char ** argv) {
   try {
      std::string const cmd = argc > 1 ? argv[1] : "";
      if (cmd == "samples" && argc == 3) {
         std::filesystem::create_directories(argv[2]);
         writeSession(std::string(argv[2]) + "/ldp-session.pcap");
         writeFaults(std::string(argv[2]) + "/ldp-faults.pcap");
         return 0;
      }
      if (cmd == "testdata" && argc == 3) {
         std::filesystem::create_directories(argv[2]);
         writeTestData(argv[2]);
         return 0;
      }
      if (cmd == "bench" && argc == 4) {
         writeBench(std::strtoull(argv[2], nullptr, 10), argv[3]);
         return 0;
      }
      return usage();
   } catch (std::exception const & e) {
      std::fprintf(stderr, "ldpdecode-samples: %s\n", e.what());
      return 1;
   }
}
