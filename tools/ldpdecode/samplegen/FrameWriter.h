// Writes frames into capture files for samples and tests: Ethernet, IPv4, IPv6,
// UDP and TCP headers with correct lengths and checksums, one TCP connection's
// sequence numbers, and the files themselves (pcap through libpcap; a minimal
// pcapng writer for the tests that read pcapng).
#pragma once

#include <array>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "PduWriter.h"
#include "vorin/IpAddr.h"

struct pcap;
struct pcap_dumper;

namespace LdpSamples {

using Mac = std::array<std::uint8_t, 6>;

namespace EtherType {
constexpr std::uint16_t ipv4 = 0x0800;
constexpr std::uint16_t ipv6 = 0x86DD;
constexpr std::uint16_t arp = 0x0806;
constexpr std::uint16_t vlan = 0x8100;
constexpr std::uint16_t mpls = 0x8847;
} // namespace EtherType

namespace IpProto {
constexpr std::uint8_t icmp = 1;
constexpr std::uint8_t tcp = 6;
constexpr std::uint8_t udp = 17;
} // namespace IpProto

namespace TcpFlags {
constexpr std::uint8_t fin = 0x01;
constexpr std::uint8_t syn = 0x02;
constexpr std::uint8_t rst = 0x04;
constexpr std::uint8_t psh = 0x08;
constexpr std::uint8_t ack = 0x10;
} // namespace TcpFlags

Bytes ethernet(Mac const & dst, Mac const & src, std::uint16_t etherType, Bytes const & payload);
// A Frame Relay frame (RFC 2427) on a DLCI carrying an IP packet: the two-byte
// Q.922 address, UI control, then the NLPID of IPv4 or IPv6, or, with `snap`,
// the pad byte, the SNAP NLPID, OUI 00-00-00 and the ethertype.
Bytes frameRelay(std::uint16_t dlci, Bytes const & ipPacket, bool snap);
// IPv4 or IPv6 by the family of the addresses.
Bytes ip(Vorin::IpGenAddr const & src, Vorin::IpGenAddr const & dst, std::uint8_t proto, Bytes const & payload,
         std::uint8_t ttl = 64);
Bytes udp(Vorin::IpGenAddr const & src, std::uint16_t sport, Vorin::IpGenAddr const & dst, std::uint16_t dport,
          Bytes const & payload);
Bytes tcp(Vorin::IpGenAddr const & src, std::uint16_t sport, Vorin::IpGenAddr const & dst, std::uint16_t dport,
          std::uint32_t seq, std::uint32_t ack, std::uint8_t flags, Bytes const & payload);
// The ethertype that carries an IP packet of this family.
std::uint16_t etherTypeOf(Vorin::IpGenAddr const & a);

// One TCP connection from a (the side that opens it) to b. Each call returns
// an IP packet and advances the sender's sequence number by what it carries.
class TcpConnection {
 public:
   TcpConnection(Vorin::IpGenAddr a, std::uint16_t aPort, Vorin::IpGenAddr b, std::uint16_t bPort,
                 std::uint32_t isnA, std::uint32_t isnB);

   Bytes syn();
   Bytes synAck();
   Bytes ack(bool fromA);
   Bytes data(bool fromA, Bytes const & payload);
   // Bytes at `offset` of the sender's stream (0 is its first data byte), sent
   // again or out of order: sequence numbers do not advance.
   Bytes dataAt(bool fromA, std::uint32_t offset, Bytes const & payload);
   Bytes fin(bool fromA);
   // The sender's data bytes so far.
   std::uint32_t sent(bool fromA) const noexcept;

 private:
   struct Side {
      Vorin::IpGenAddr addr;
      std::uint16_t port;
      std::uint32_t isn;
      std::uint32_t next;  // next sequence number to send
   };
   Bytes segment(bool fromA, std::uint32_t seq, std::uint8_t flags, Bytes const & payload);
   Side a_;
   Side b_;
};

// A pcap file written through libpcap.
class PcapWriter {
 public:
   PcapWriter(std::string const & path, int dlt);
   ~PcapWriter();
   PcapWriter(PcapWriter const &) = delete;
   PcapWriter & operator=(PcapWriter const &) = delete;

   // A frame at `micros` microseconds after the epoch; `captured` bytes of it
   // are kept (all when 0), as a short snap length does.
   void write(std::uint64_t micros, Bytes const & frame, std::size_t captured = 0);

 private:
   pcap * dead_;
   pcap_dumper * dumper_;
};

// A pcapng file: one section, one interface, enhanced packet blocks.
class PcapngWriter {
 public:
   PcapngWriter(std::string const & path, std::uint16_t linkType);
   ~PcapngWriter();
   PcapngWriter(PcapngWriter const &) = delete;
   PcapngWriter & operator=(PcapngWriter const &) = delete;

   void write(std::uint64_t micros, Bytes const & frame);

 private:
   void block(std::uint32_t type, Bytes const & body);
   std::FILE * f_;
};

} // namespace LdpSamples
