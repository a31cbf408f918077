// Fuzz harness of the link-layer decoder: the first byte picks the link type,
// the rest is one captured frame. The payload handed out must lie inside the
// frame's bytes.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "LinkLayer.h"

namespace {

LdpDecode::LinkType const linkTypes[] = {
    LdpDecode::LinkType::ethernet,  LdpDecode::LinkType::linuxSll, LdpDecode::LinkType::linuxSll2,
    LdpDecode::LinkType::ppp,       LdpDecode::LinkType::pppHdlc,  LdpDecode::LinkType::ciscoHdlc,
    LdpDecode::LinkType::pppoe,     LdpDecode::LinkType::rawIp,    LdpDecode::LinkType::rawIpv4,
    LdpDecode::LinkType::rawIpv6,   LdpDecode::LinkType::bsdNull,  LdpDecode::LinkType::bsdLoop,
    LdpDecode::LinkType::frameRelay,
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * data, std::size_t size) {
   if (size == 0) {
      return 0;
   }
   auto const link = linkTypes[data[0] % std::size(linkTypes)];
   std::span<std::uint8_t const> const frame(data + 1, size - 1);
   LdpDecode::Segment seg;
   if (LdpDecode::decodeFrame(link, frame, seg) != LdpDecode::FrameKind::ldp) {
      return 0;
   }
   // The payload is a view into the frame: anywhere else is a fault.
   if (!seg.payload.empty() &&
       (seg.payload.data() < frame.data() || seg.payload.data() + seg.payload.size() > frame.data() + frame.size())) {
      std::abort();
   }
   unsigned sum = 0;
   for (std::uint8_t b : seg.payload) {
      sum += b;
   }
   volatile unsigned keep = sum + seg.seq + seg.tcpFlags + seg.missingBytes;
   (void)keep;
   return 0;
}
