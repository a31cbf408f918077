#include "LinkLayer.h"

#include <pcap/dlt.h>

#include <algorithm>

namespace LdpDecode {

namespace {

using Bytes = std::span<std::uint8_t const>;

constexpr std::uint16_t be16(std::uint8_t const * p) noexcept {
   return static_cast<std::uint16_t>((p[0] << 8) | p[1]);
}
constexpr std::uint32_t be32(std::uint8_t const * p) noexcept {
   return (std::uint32_t(p[0]) << 24) | (std::uint32_t(p[1]) << 16) | (std::uint32_t(p[2]) << 8) | p[3];
}

namespace EtherType {
constexpr std::uint16_t ipv4 = 0x0800;
constexpr std::uint16_t ipv6 = 0x86DD;
constexpr std::uint16_t vlan = 0x8100;
constexpr std::uint16_t qinq = 0x88A8;
constexpr std::uint16_t qinqOld1 = 0x9100;
constexpr std::uint16_t qinqOld2 = 0x9200;
constexpr std::uint16_t mplsUnicast = 0x8847;
constexpr std::uint16_t mplsMulticast = 0x8848;
constexpr std::uint16_t pppoeSession = 0x8864;
constexpr std::uint16_t maxLength = 1500; // below this the field is an 802.3 length
} // namespace EtherType

namespace PppProto {
constexpr std::uint16_t ipv4 = 0x0021;
constexpr std::uint16_t ipv6 = 0x0057;
constexpr std::uint16_t mplsUnicast = 0x0281;
constexpr std::uint16_t mplsMulticast = 0x0283;
} // namespace PppProto

namespace IpProto {
constexpr std::uint8_t hopByHop = 0;
constexpr std::uint8_t tcp = 6;
constexpr std::uint8_t udp = 17;
constexpr std::uint8_t routing = 43;
constexpr std::uint8_t fragment = 44;
constexpr std::uint8_t auth = 51;
constexpr std::uint8_t destOpts = 60;
} // namespace IpProto

constexpr unsigned maxVlanTags = 8;
constexpr unsigned maxMplsLabels = 16;
constexpr unsigned maxIpv6ExtHeaders = 8;

FrameKind decodeIp(Bytes b, Segment & out) noexcept;

FrameKind decodeTransport(std::uint8_t proto, Bytes b, std::uint32_t ipMissing, Segment & out) noexcept {
   if (proto == IpProto::udp) {
      if (b.size() < 8) {
         return FrameKind::malformed;
      }
      std::uint16_t const sport = be16(&b[0]);
      std::uint16_t const dport = be16(&b[2]);
      if (sport != ldpPort && dport != ldpPort) {
         return FrameKind::otherIp;
      }
      std::uint32_t claimed = be16(&b[4]);
      if (claimed == 0) { // a jumbogram: the IP layer gave the size
         claimed = static_cast<std::uint32_t>(b.size()) + ipMissing;
      }
      if (claimed < 8) {
         return FrameKind::malformed;
      }
      claimed -= 8;
      auto const have = static_cast<std::uint32_t>(b.size() - 8);
      out.flow.transport = Transport::udp;
      out.flow.src.port = sport;
      out.flow.dst.port = dport;
      out.seq = 0;
      out.tcpFlags = 0;
      out.payload = b.subspan(8, std::min(claimed, have));
      out.missingBytes = claimed > have ? claimed - have : 0;
      return FrameKind::ldp;
   }
   if (proto == IpProto::tcp) {
      if (b.size() < 20) {
         return FrameKind::malformed;
      }
      std::uint16_t const sport = be16(&b[0]);
      std::uint16_t const dport = be16(&b[2]);
      if (sport != ldpPort && dport != ldpPort) {
         return FrameKind::otherIp;
      }
      std::size_t const dataOffset = std::size_t(b[12] >> 4) * 4;
      if (dataOffset < 20 || dataOffset > b.size()) {
         return FrameKind::malformed;
      }
      out.flow.transport = Transport::tcp;
      out.flow.src.port = sport;
      out.flow.dst.port = dport;
      out.seq = be32(&b[4]);
      out.tcpFlags = b[13];
      out.payload = b.subspan(dataOffset);
      out.missingBytes = ipMissing;
      return FrameKind::ldp;
   }
   return FrameKind::otherIp;
}

FrameKind decodeIpv4(Bytes b, Segment & out) noexcept {
   if (b.size() < 20 || (b[0] >> 4) != 4) {
      return FrameKind::malformed;
   }
   std::size_t const ihl = std::size_t(b[0] & 0x0F) * 4;
   if (ihl < 20 || ihl > b.size()) {
      return FrameKind::malformed;
   }
   std::size_t total = be16(&b[2]);
   if (total == 0) { // segmentation offload on the capturing host leaves it 0
      total = b.size();
   }
   if (total < ihl) {
      return FrameKind::malformed;
   }
   std::uint16_t const frag = be16(&b[6]);
   if ((frag & 0x1FFF) != 0) {
      return FrameKind::fragment;
   }
   out.firstFragment = (frag & 0x2000) != 0;
   std::size_t const have = std::min(total, b.size());
   auto const missing = static_cast<std::uint32_t>(total - have);
   out.flow.src.addr = Vorin::IpGenAddr(Vorin::ipv4_, &b[12]);
   out.flow.dst.addr = Vorin::IpGenAddr(Vorin::ipv4_, &b[16]);
   return decodeTransport(b[9], b.subspan(ihl, have - ihl), missing, out);
}

FrameKind decodeIpv6(Bytes b, Segment & out) noexcept {
   if (b.size() < 40 || (b[0] >> 4) != 6) {
      return FrameKind::malformed;
   }
   std::size_t total = 40 + std::size_t(be16(&b[4]));
   if (total == 40) { // a jumbogram or offload: take what was captured
      total = b.size();
   }
   std::size_t const have = std::min(total, b.size());
   auto const missing = static_cast<std::uint32_t>(total - have);
   std::uint8_t next = b[6];
   std::size_t pos = 40;
   for (unsigned n = 0; n < maxIpv6ExtHeaders; ++n) {
      std::size_t len = 0;
      if (next == IpProto::hopByHop || next == IpProto::routing || next == IpProto::destOpts) {
         if (pos + 2 > have) {
            return FrameKind::malformed;
         }
         len = (std::size_t(b[pos + 1]) + 1) * 8;
      } else if (next == IpProto::auth) {
         if (pos + 2 > have) {
            return FrameKind::malformed;
         }
         len = (std::size_t(b[pos + 1]) + 2) * 4;
      } else if (next == IpProto::fragment) {
         if (pos + 8 > have) {
            return FrameKind::malformed;
         }
         std::uint16_t const frag = be16(&b[pos + 2]);
         if ((frag & 0xFFF8) != 0) {
            return FrameKind::fragment;
         }
         out.firstFragment = (frag & 0x0001) != 0;
         len = 8;
      } else {
         break;
      }
      if (pos + len > have) {
         return FrameKind::malformed;
      }
      next = b[pos];
      pos += len;
   }
   out.flow.src.addr = Vorin::IpGenAddr(Vorin::ipv6_, &b[8]);
   out.flow.dst.addr = Vorin::IpGenAddr(Vorin::ipv6_, &b[24]);
   return decodeTransport(next, b.subspan(pos, have - pos), missing, out);
}

FrameKind decodeIp(Bytes b, Segment & out) noexcept {
   if (b.empty()) {
      return FrameKind::malformed;
   }
   switch (b[0] >> 4) {
    case 4:
      return decodeIpv4(b, out);
    case 6:
      return decodeIpv6(b, out);
    default:
      return FrameKind::notIp;
   }
}

// A label stack, then (by the first nibble) IP; anything else is not IP.
FrameKind decodeMpls(Bytes b, Segment & out) noexcept {
   std::size_t pos = 0;
   for (unsigned n = 0;; ++n) {
      if (n == maxMplsLabels || pos + 4 > b.size()) {
         return FrameKind::malformed;
      }
      bool const bottom = b[pos + 2] & 0x01;
      pos += 4;
      if (bottom) {
         break;
      }
   }
   Bytes const rest = b.subspan(pos);
   if (!rest.empty() && ((rest[0] >> 4) == 4 || (rest[0] >> 4) == 6)) {
      return decodeIp(rest, out);
   }
   return FrameKind::notIp;
}

FrameKind decodePppProtocol(std::uint16_t proto, Bytes b, Segment & out) noexcept {
   switch (proto) {
    case PppProto::ipv4:
      return decodeIpv4(b, out);
    case PppProto::ipv6:
      return decodeIpv6(b, out);
    case PppProto::mplsUnicast:
    case PppProto::mplsMulticast:
      return decodeMpls(b, out);
    default:
      return FrameKind::notIp;
   }
}

// The PPP protocol field, one byte when compressed (its low bit set), then the
// payload.
FrameKind decodePpp(Bytes b, Segment & out) noexcept {
   if (b.size() >= 2 && b[0] == 0xFF && b[1] == 0x03) {
      b = b.subspan(2);
   }
   if (b.empty()) {
      return FrameKind::malformed;
   }
   if (b[0] & 0x01) {
      return decodePppProtocol(b[0], b.subspan(1), out);
   }
   if (b.size() < 2) {
      return FrameKind::malformed;
   }
   return decodePppProtocol(be16(&b[0]), b.subspan(2), out);
}

FrameKind decodePppoe(Bytes b, Segment & out) noexcept {
   if (b.size() < 8) {
      return FrameKind::malformed;
   }
   // Version/type, code, session id, length; then the PPP protocol field.
   return decodePppProtocol(be16(&b[6]), b.subspan(8), out);
}

FrameKind decodeEtherType(std::uint16_t type, Bytes b, Segment & out) noexcept {
   switch (type) {
    case EtherType::ipv4:
      return decodeIpv4(b, out);
    case EtherType::ipv6:
      return decodeIpv6(b, out);
    case EtherType::mplsUnicast:
    case EtherType::mplsMulticast:
      return decodeMpls(b, out);
    case EtherType::pppoeSession:
      return decodePppoe(b, out);
    default:
      return FrameKind::notIp;
   }
}

constexpr bool isVlanTag(std::uint16_t type) noexcept {
   return type == EtherType::vlan || type == EtherType::qinq || type == EtherType::qinqOld1 ||
          type == EtherType::qinqOld2;
}

FrameKind decodeEthernet(Bytes b, Segment & out) noexcept {
   if (b.size() < 14) {
      return FrameKind::malformed;
   }
   std::size_t pos = 12;
   std::uint16_t type = be16(&b[pos]);
   pos += 2;
   for (unsigned n = 0; isVlanTag(type); ++n) {
      if (n == maxVlanTags || pos + 4 > b.size()) {
         return FrameKind::malformed;
      }
      type = be16(&b[pos + 2]);
      pos += 4;
   }
   if (type <= EtherType::maxLength) {
      // 802.3 with an LLC header: only SNAP (AA AA 03, OUI, ethertype) carries IP.
      if (pos + 8 > b.size()) {
         return FrameKind::notIp;
      }
      if (b[pos] != 0xAA || b[pos + 1] != 0xAA || b[pos + 2] != 0x03) {
         return FrameKind::notIp;
      }
      type = be16(&b[pos + 6]);
      pos += 8;
   }
   return decodeEtherType(type, b.subspan(pos), out);
}

FrameKind decodeCiscoHdlc(Bytes b, Segment & out) noexcept {
   if (b.size() < 4) {
      return FrameKind::malformed;
   }
   return decodeEtherType(be16(&b[2]), b.subspan(4), out);
}

namespace Nlpid {
constexpr std::uint8_t snap = 0x80;
constexpr std::uint8_t ipv6 = 0x8E;
constexpr std::uint8_t ipv4 = 0xCC;
} // namespace Nlpid

// Frame Relay with the multiprotocol encapsulation of RFC 2427: a Q.922 address
// of two to four bytes (the EA bit, bit 0, ends it), the UI control byte 0x03,
// an optional pad byte 0x00, then the NLPID: IPv4, IPv6, or SNAP (an OUI, then
// an ethertype when the OUI is 00-00-00).
FrameKind decodeFrameRelay(Bytes b, Segment & out) noexcept {
   std::size_t pos = 0;
   for (;;) {
      if (pos == b.size() || pos == 4) {
         return FrameKind::malformed;
      }
      if (b[pos++] & 0x01) {
         break;
      }
   }
   if (pos < 2) {
      return FrameKind::malformed; // an address is at least two bytes
   }
   if (pos == b.size() || b[pos] != 0x03) {
      return FrameKind::notIp; // not a UI frame (Q.933 signalling uses UI too, with NLPID 0x08)
   }
   ++pos;
   if (pos < b.size() && b[pos] == 0x00) {
      ++pos;
   }
   if (pos == b.size()) {
      return FrameKind::malformed;
   }
   std::uint8_t const nlpid = b[pos++];
   switch (nlpid) {
    case Nlpid::ipv4:
      return decodeIpv4(b.subspan(pos), out);
    case Nlpid::ipv6:
      return decodeIpv6(b.subspan(pos), out);
    case Nlpid::snap:
      if (pos + 5 > b.size()) {
         return FrameKind::malformed;
      }
      if (b[pos] != 0 || b[pos + 1] != 0 || b[pos + 2] != 0) {
         return FrameKind::notIp; // bridged frames and other organisations' protocols
      }
      return decodeEtherType(be16(&b[pos + 3]), b.subspan(pos + 5), out);
    default:
      return FrameKind::notIp;
   }
}

FrameKind decodeLoopback(std::uint32_t family, Bytes b, Segment & out) noexcept {
   switch (family) {
    case 2: // AF_INET everywhere
      return decodeIpv4(b, out);
    case 10: // AF_INET6 of Linux, NetBSD/OpenBSD, FreeBSD, Darwin
    case 24:
    case 28:
    case 30:
      return decodeIpv6(b, out);
    default:
      return FrameKind::notIp;
   }
}

} // namespace

std::optional<LinkType> linkTypeOfDlt(int dlt) noexcept {
   switch (dlt) {
    case DLT_EN10MB:
      return LinkType::ethernet;
    case DLT_LINUX_SLL:
      return LinkType::linuxSll;
    case DLT_LINUX_SLL2:
      return LinkType::linuxSll2;
    case DLT_PPP:
      return LinkType::ppp;
    case DLT_PPP_SERIAL:
      return LinkType::pppHdlc;
    case DLT_C_HDLC:
      return LinkType::ciscoHdlc;
    case DLT_PPP_ETHER:
      return LinkType::pppoe;
    case DLT_RAW:
      return LinkType::rawIp;
    case DLT_IPV4:
      return LinkType::rawIpv4;
    case DLT_IPV6:
      return LinkType::rawIpv6;
    case DLT_NULL:
      return LinkType::bsdNull;
    case DLT_LOOP:
      return LinkType::bsdLoop;
    case DLT_FRELAY:
      return LinkType::frameRelay;
    default:
      return std::nullopt;
   }
}

std::string supportedLinkTypesText() {
   return "EN10MB (Ethernet), LINUX_SLL, LINUX_SLL2, PPP, PPP_SERIAL, C_HDLC, PPP_ETHER, RAW, IPV4, IPV6, "
          "NULL, LOOP, FRELAY (Frame Relay)";
}

FrameKind decodeFrame(LinkType link, std::span<std::uint8_t const> frame, Segment & out) noexcept {
   Bytes const b = frame;
   switch (link) {
    case LinkType::ethernet:
      return decodeEthernet(b, out);
    case LinkType::linuxSll:
      // Packet type, ARPHRD type, address length, 8 address bytes, protocol.
      if (b.size() < 16) {
         return FrameKind::malformed;
      }
      return decodeEtherType(be16(&b[14]), b.subspan(16), out);
    case LinkType::linuxSll2:
      // Protocol, reserved, interface index, ARPHRD type, packet type, address length, address.
      if (b.size() < 20) {
         return FrameKind::malformed;
      }
      return decodeEtherType(be16(&b[0]), b.subspan(20), out);
    case LinkType::ppp:
      return decodePpp(b, out);
    case LinkType::pppHdlc:
      if (!b.empty() && (b[0] == 0x0F || b[0] == 0x8F)) {
         return decodeCiscoHdlc(b, out);
      }
      return decodePpp(b, out);
    case LinkType::ciscoHdlc:
      return decodeCiscoHdlc(b, out);
    case LinkType::pppoe:
      return decodePppoe(b, out);
    case LinkType::rawIp:
      return decodeIp(b, out);
    case LinkType::rawIpv4:
      return decodeIpv4(b, out);
    case LinkType::rawIpv6:
      return decodeIpv6(b, out);
    case LinkType::bsdNull: {
      if (b.size() < 4) {
         return FrameKind::malformed;
      }
      // Written in the capturing host's byte order, which the file does not
      // record: a family is a small number, so the order that gives one wins.
      std::uint32_t const little = b[0] | (std::uint32_t(b[1]) << 8) | (std::uint32_t(b[2]) << 16) |
                                   (std::uint32_t(b[3]) << 24);
      return decodeLoopback(little < 256 ? little : be32(&b[0]), b.subspan(4), out);
    }
    case LinkType::bsdLoop:
      if (b.size() < 4) {
         return FrameKind::malformed;
      }
      return decodeLoopback(be32(&b[0]), b.subspan(4), out);
    case LinkType::frameRelay:
      return decodeFrameRelay(b, out);
   }
   return FrameKind::notIp;
}

} // namespace LdpDecode
