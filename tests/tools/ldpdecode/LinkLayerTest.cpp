#include "LinkLayer.h"

#include <gtest/gtest.h>

#include <string>

#include "support/Hex.h"

using namespace LdpDecode;
using TestSupport::hexBytes;
using TestSupport::toHex;

namespace {

// IPv4 UDP 10.0.0.1:646 -> 224.0.0.2:646, ten payload bytes 00..09.
std::string const ip4udp =
    "4500 0026 0000 0000 4011 0000 0a000001 e0000002 | 0286 0286 0012 0000 | 00010203040506070809";
// IPv4 TCP 192.168.0.1:58320 -> 192.168.0.2:646, seq 100, PSH ACK, payload deadbeef.
std::string const ip4tcp =
    "4500 002c 0000 4000 4006 0000 c0a80001 c0a80002 | e3d0 0286 00000064 00000000 5018 ffff 0000 0000 | deadbeef";
// IPv6 TCP [2001:db8::1]:646 -> [2001:db8::2]:65000, seq 1000, FIN ACK, payload cafe0001.
std::string const ip6Addrs = "20010db8000000000000000000000001 20010db8000000000000000000000002";
std::string const tcp6 = "0286 fde8 000003e8 00000000 5011 ffff 0000 0000 | cafe0001";
std::string const ip6tcp = "6000 0000 0018 0640 " + ip6Addrs + " | " + tcp6;
std::string const eth = "01005e000002 001122334455 ";

std::string const udpSeen = "UDP 10.0.0.1:646 > 224.0.0.2:646 payload 00010203040506070809";
std::string const tcpSeen = "TCP 192.168.0.1:58320 > 192.168.0.2:646 payload deadbeef seq 100 flags 18";
std::string const tcp6Seen = "TCP [2001:db8::1]:646 > [2001:db8::2]:65000 payload cafe0001 seq 1000 flags 11";

std::string describe(FrameKind kind, Segment const & s) {
   switch (kind) {
    case FrameKind::otherIp:
      return "other IP";
    case FrameKind::notIp:
      return "not IP";
    case FrameKind::fragment:
      return "fragment";
    case FrameKind::malformed:
      return "malformed";
    case FrameKind::ldp:
      break;
   }
   std::string d = std::string(transportName(s.flow.transport)) + " " + s.flow.src.text() + " > " +
                   s.flow.dst.text() + " payload " + toHex(s.payload);
   if (s.flow.transport == Transport::tcp) {
      char tail[48];
      std::snprintf(tail, sizeof tail, " seq %u flags %02x", s.seq, s.tcpFlags);
      d += tail;
   }
   if (s.missingBytes) {
      d += " missing " + std::to_string(s.missingBytes);
   }
   if (s.firstFragment) {
      d += " first fragment";
   }
   return d;
}

struct Row {
   char const * what;
   LinkType link;
   std::string frame;
   std::string seen;
};

TEST(DecodeFrame, EveryLinkTypeDownToTheLdpPayload) {
   Row const rows[] = {
       {"Ethernet, IPv4, UDP", LinkType::ethernet, eth + "0800" + ip4udp, udpSeen},
       {"Ethernet padding is not payload", LinkType::ethernet, eth + "0800" + ip4tcp + "000000000000", tcpSeen},
       {"802.1Q", LinkType::ethernet, eth + "8100 0064 0800" + ip4udp, udpSeen},
       {"QinQ", LinkType::ethernet, eth + "88a8 0064 8100 00c8 0800" + ip4udp, udpSeen},
       {"two MPLS labels", LinkType::ethernet, eth + "8847 000100ff 000111ff" + ip4udp, udpSeen},
       {"MPLS over 802.1Q", LinkType::ethernet, eth + "8100 0064 8847 000111ff" + ip4udp, udpSeen},
       {"MPLS, then a control word", LinkType::ethernet, eth + "8847 000111ff 00000000 0102", "not IP"},
       {"MPLS stack never ends", LinkType::ethernet, eth + "8847 000100ff 000100ff", "malformed"},
       {"802.3 with SNAP", LinkType::ethernet, eth + "0030 aaaa03 000000 0800" + ip4udp, udpSeen},
       {"802.3 with plain LLC", LinkType::ethernet, eth + "0026 424203 0000 0000", "not IP"},
       {"PPPoE session", LinkType::ethernet, eth + "8864 1100 0001 0028 0021" + ip4udp, udpSeen},
       {"ARP", LinkType::ethernet, eth + "0806 0001 0800 0604 0001", "not IP"},
       {"Ethernet header cut", LinkType::ethernet, "01005e000002 0011223344", "malformed"},
       {"Linux cooked v1", LinkType::linuxSll, "0000 0304 0006 001122334455 0000 0800" + ip4udp, udpSeen},
       {"Linux cooked v2, IPv6", LinkType::linuxSll2, "86dd 0000 00000002 0001 00 06 001122334455 0000" + ip6tcp,
        tcp6Seen},
       {"PPP with address and control", LinkType::ppp, "ff03 0021" + ip4udp, udpSeen},
       {"PPP without address and control", LinkType::ppp, "0021" + ip4udp, udpSeen},
       {"PPP with compressed protocol", LinkType::ppp, "21" + ip4udp, udpSeen},
       {"PPP, IPv6", LinkType::ppp, "ff03 0057" + ip6tcp, tcp6Seen},
       {"PPP, MPLS", LinkType::ppp, "ff03 0281 000111ff" + ip4udp, udpSeen},
       {"PPP, LCP", LinkType::ppp, "ff03 c021 0101 0004", "not IP"},
       {"PPP in HDLC framing", LinkType::pppHdlc, "ff03 0021" + ip4udp, udpSeen},
       {"Cisco HDLC frame in PPP serial", LinkType::pppHdlc, "0f00 0800" + ip4udp, udpSeen},
       {"Cisco HDLC", LinkType::ciscoHdlc, "8f00 0800" + ip4udp, udpSeen},
       {"PPPoE link type", LinkType::pppoe, "1100 0001 0028 0021" + ip4udp, udpSeen},
       {"raw IP, version 4", LinkType::rawIp, ip4udp, udpSeen},
       {"raw IP, version 6", LinkType::rawIp, ip6tcp, tcp6Seen},
       {"raw IP, version 5", LinkType::rawIp, "5000 0000", "not IP"},
       {"raw IPv4 refuses IPv6", LinkType::rawIpv4, ip6tcp, "malformed"},
       {"IPv6 hop-by-hop header", LinkType::rawIpv6,
        "6000 0000 0020 0040 " + ip6Addrs + " | 0600 0000 00000000 | " + tcp6, tcp6Seen},
       {"IPv6 destination options header cut", LinkType::rawIpv6,
        "6000 0000 0020 3c40 " + ip6Addrs + " | 0603 0000 00000000 | " + tcp6, "malformed"},
       {"BSD loopback, little-endian family", LinkType::bsdNull, "02000000" + ip4udp, udpSeen},
       {"BSD loopback, big-endian family", LinkType::bsdNull, "00000002" + ip4udp, udpSeen},
       {"BSD loopback, IPv6 family 30", LinkType::bsdNull, "1e000000" + ip6tcp, tcp6Seen},
       {"BSD loopback, unknown family", LinkType::bsdNull, "07000000" + ip4udp, "not IP"},
       {"OpenBSD loopback, IPv6 family 24", LinkType::bsdLoop, "00000018" + ip6tcp, tcp6Seen},
       {"Frame Relay, IPv4", LinkType::frameRelay, "1841 03 cc" + ip4udp, udpSeen},
       {"Frame Relay, IPv6", LinkType::frameRelay, "1841 03 8e" + ip6tcp, tcp6Seen},
       {"Frame Relay, pad byte", LinkType::frameRelay, "1841 03 00 cc" + ip4udp, udpSeen},
       {"Frame Relay, SNAP", LinkType::frameRelay, "1841 03 00 80 000000 0800" + ip4udp, udpSeen},
       {"Frame Relay, SNAP of another OUI", LinkType::frameRelay, "1841 03 00 80 0080c2 0007" + ip4udp, "not IP"},
       {"Frame Relay, 4-byte address", LinkType::frameRelay, "1840 0001 03 cc" + ip4udp, udpSeen},
       {"Frame Relay, address never ends", LinkType::frameRelay, "1840 0000 03 cc" + ip4udp, "malformed"},
       {"Frame Relay, 1-byte address", LinkType::frameRelay, "19 03 cc" + ip4udp, "malformed"},
       {"Frame Relay, Q.933 signalling", LinkType::frameRelay, "0001 03 08 00 75", "not IP"},
       {"Frame Relay, not UI", LinkType::frameRelay, "1841 13 cc" + ip4udp, "not IP"},
       {"Frame Relay, cut after the control", LinkType::frameRelay, "1841 03", "malformed"},
       {"Frame Relay, SNAP cut", LinkType::frameRelay, "1841 03 80 0000", "malformed"},
   };
   for (Row const & row : rows) {
      auto const b = hexBytes(row.frame);
      Segment s;
      FrameKind const kind = decodeFrame(row.link, b, s);
      EXPECT_EQ(describe(kind, s), row.seen) << row.what;
   }
}

TEST(DecodeFrame, IpAndTransportLimits) {
   Row const rows[] = {
       {"another UDP port", LinkType::rawIp,
        "4500 0026 0000 0000 4011 0000 0a000001 e0000002 | 0035 0035 0012 0000 | 00010203040506070809",
        "other IP"},
       {"LDP port as source only", LinkType::rawIp,
        "4500 0026 0000 0000 4011 0000 0a000001 e0000002 | 0286 0035 0012 0000 | 00010203040506070809",
        "UDP 10.0.0.1:646 > 224.0.0.2:53 payload 00010203040506070809"},
       {"ICMP", LinkType::rawIp, "4500 001c 0000 0000 4001 0000 0a000001 0a000002 | 0800 0000 0000 0000",
        "other IP"},
       {"fragment at an offset", LinkType::rawIp,
        "4500 0026 0000 0001 4011 0000 0a000001 e0000002 | 0286 0286 0012 0000 | 00010203040506070809",
        "fragment"},
       {"first fragment", LinkType::rawIp,
        "4500 0026 0000 2000 4011 0000 0a000001 e0000002 | 0286 0286 0030 0000 | 00010203040506070809",
        udpSeen + " missing 30 first fragment"},
       {"IPv6 fragment at an offset", LinkType::rawIp,
        "6000 0000 0020 2c40 " + ip6Addrs + " | 0600 0008 00000001 | " + tcp6, "fragment"},
       {"UDP length beyond the capture", LinkType::rawIp,
        "4500 0026 0000 0000 4011 0000 0a000001 e0000002 | 0286 0286 0020 0000 | 00010203040506070809",
        udpSeen + " missing 14"},
       {"UDP length below its header", LinkType::rawIp,
        "4500 0026 0000 0000 4011 0000 0a000001 e0000002 | 0286 0286 0007 0000 | 00010203040506070809",
        "malformed"},
       {"UDP bytes beyond its length are not payload", LinkType::rawIp,
        "4500 0026 0000 0000 4011 0000 0a000001 e0000002 | 0286 0286 000c 0000 | 00010203040506070809",
        "UDP 10.0.0.1:646 > 224.0.0.2:646 payload 00010203"},
       {"IP total length beyond the capture", LinkType::rawIp,
        "4500 0100 0000 4000 4006 0000 c0a80001 c0a80002 | e3d0 0286 00000064 00000000 5018 ffff 0000 0000 | "
        "deadbeef",
        tcpSeen + " missing 212"},
       {"IP total length 0 (segmentation offload)", LinkType::rawIp,
        "4500 0000 0000 4000 4006 0000 c0a80001 c0a80002 | e3d0 0286 00000064 00000000 5018 ffff 0000 0000 | "
        "deadbeef",
        tcpSeen},
       {"IP total length below its header", LinkType::rawIp, "4500 0010 0000 0000 4011 0000 0a000001 e0000002",
        "malformed"},
       {"IPv4 header cut", LinkType::rawIp, "4500 0026 0000", "malformed"},
       {"IPv4 header length 16", LinkType::rawIp, "4400 0026 0000 0000 4011 0000 0a000001 e0000002", "malformed"},
       {"IPv4 options", LinkType::rawIp,
        "4600 002a 0000 0000 4011 0000 0a000001 e0000002 01010101 | 0286 0286 0012 0000 | 00010203040506070809",
        udpSeen},
       {"TCP data offset beyond the segment", LinkType::rawIp,
        "4500 002c 0000 4000 4006 0000 c0a80001 c0a80002 | e3d0 0286 00000064 00000000 f018 ffff 0000 0000 | "
        "deadbeef",
        "malformed"},
       {"TCP header cut", LinkType::rawIp, "4500 0020 0000 4000 4006 0000 c0a80001 c0a80002 | e3d0 0286 00000064",
        "malformed"},
       {"IPv6 header cut", LinkType::rawIp, "6000 0000 0018 0640 20010db8", "malformed"},
   };
   for (Row const & row : rows) {
      auto const b = hexBytes(row.frame);
      Segment s;
      FrameKind const kind = decodeFrame(row.link, b, s);
      EXPECT_EQ(describe(kind, s), row.seen) << row.what;
   }
}

TEST(LinkTypeOfDlt, MapsTheSupportedTypesOnly) {
   struct Dlt {
      int dlt;
      std::optional<LinkType> link;
   };
   Dlt const rows[] = {
       {1, LinkType::ethernet},   {113, LinkType::linuxSll}, {276, LinkType::linuxSll2},
       {9, LinkType::ppp},        {50, LinkType::pppHdlc},   {104, LinkType::ciscoHdlc},
       {51, LinkType::pppoe},     {12, LinkType::rawIp},     {228, LinkType::rawIpv4},
       {229, LinkType::rawIpv6},  {0, LinkType::bsdNull},    {108, LinkType::bsdLoop},
       {107, LinkType::frameRelay},
       {105, std::nullopt},       {147, std::nullopt},       {-1, std::nullopt},
   };
   for (Dlt const & row : rows) {
      EXPECT_EQ(linkTypeOfDlt(row.dlt), row.link) << "DLT " << row.dlt;
   }
}

} // namespace
