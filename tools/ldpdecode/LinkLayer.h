// Link-layer and IP decoding: from one captured frame to the UDP or TCP payload
// of an LDP flow (port 646 at either end). Every read is bounded by the captured
// bytes; a frame whose headers do not fit is reported as malformed, never read
// past.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "CaptureTypes.h"

namespace LdpDecode {

// The link types the decoder understands; the capture's link-layer header type
// (DLT value) maps onto one of these.
enum class LinkType : std::uint8_t {
   ethernet,   // Ethernet II and 802.3 SNAP, 802.1Q/802.1ad tags, MPLS, PPPoE
   linuxSll,   // Linux cooked capture, version 1
   linuxSll2,  // Linux cooked capture, version 2
   ppp,        // PPP, with or without the HDLC address and control bytes
   pppHdlc,    // PPP in HDLC-like framing (and Cisco HDLC frames found there)
   ciscoHdlc,  // Cisco HDLC
   pppoe,      // PPPoE session header, then PPP
   rawIp,      // raw IPv4 or IPv6, told apart by the version nibble
   rawIpv4,
   rawIpv6,
   bsdNull,    // BSD loopback: 4-byte address family in the capturer's byte order
   bsdLoop,    // OpenBSD loopback: the same in network byte order
   frameRelay, // Frame Relay: Q.922 address, UI control, NLPID (IPv4, IPv6, SNAP)
};

std::optional<LinkType> linkTypeOfDlt(int dlt) noexcept;
// The names of the supported link types, for error messages.
std::string supportedLinkTypesText();

// What one frame turned out to be.
enum class FrameKind : std::uint8_t {
   ldp,        // UDP or TCP with port 646 at one end: the Segment is filled in
   otherIp,    // IP, but another protocol or port
   notIp,      // ARP, other ethertypes, MPLS not followed by IP, ...
   fragment,   // an IP fragment other than the first (fragments are not reassembled)
   malformed,  // a header that does not fit in the captured bytes, or is inconsistent
};

FrameKind decodeFrame(LinkType link, std::span<std::uint8_t const> frame, Segment & out) noexcept;

} // namespace LdpDecode
