// Small value types shared by the capture layer: where a frame came from, the
// endpoints of a transport flow, and the transport payload that the link and IP
// layers hand to the LDP side.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>

#include "vorin/IpAddr.h"

namespace LdpDecode {

// The well-known LDP port, for both the UDP hello socket and TCP sessions.
constexpr std::uint16_t ldpPort = 646;

enum class Transport : std::uint8_t { udp, tcp };

char const * transportName(Transport t) noexcept;

struct Endpoint {
   Vorin::IpGenAddr addr;
   std::uint16_t port = 0;

   // "10.0.0.1:646", "[2001:db8::1]:646".
   std::string text() const;

   bool operator==(Endpoint const &) const noexcept = default;
   std::strong_ordering operator<=>(Endpoint const &) const noexcept = default;
};

// One direction of a transport flow: bytes from src to dst.
struct FlowKey {
   Transport transport = Transport::tcp;
   Endpoint src;
   Endpoint dst;

   FlowKey reversed() const noexcept { return {transport, dst, src}; }
   bool operator==(FlowKey const &) const noexcept = default;
   std::strong_ordering operator<=>(FlowKey const &) const noexcept = default;
};

struct FlowKeyHash {
   std::size_t operator()(FlowKey const & k) const noexcept;
};

// The capture's record of one frame: its 1-based number and time stamp.
struct FrameMeta {
   std::uint64_t number = 0;
   std::int64_t seconds = 0;
   std::uint32_t micros = 0;
};

// "2023-08-10 12:34:56.789012" (UTC).
std::string timeText(FrameMeta const & f);
// ISO 8601, UTC: "2023-08-10T12:34:56.789012Z".
std::string isoTimeText(FrameMeta const & f);

// TCP flag bits as they stand in the header.
namespace TcpFlag {
constexpr std::uint8_t fin = 0x01;
constexpr std::uint8_t syn = 0x02;
constexpr std::uint8_t rst = 0x04;
} // namespace TcpFlag

// The transport payload of one frame, as far as it was captured. A view into the
// frame's bytes: valid only while the frame is.
struct Segment {
   FlowKey flow;
   std::uint32_t seq = 0;      // TCP sequence number of the first payload byte (SYN: the ISN)
   std::uint8_t tcpFlags = 0;  // TcpFlag bits; 0 for UDP
   std::span<std::uint8_t const> payload;
   // Payload bytes that the IP and transport headers announce but the capture
   // does not hold (a snap length shorter than the frame).
   std::uint32_t missingBytes = 0;
   // The first fragment of a fragmented IP datagram: the transport header is
   // here, the rest of the payload is in fragments that are not reassembled.
   bool firstFragment = false;
};

} // namespace LdpDecode
