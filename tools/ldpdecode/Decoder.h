// The capture pipeline: frame -> link layer -> IP -> UDP datagram or TCP
// segment -> per-direction stream -> PDU -> Reporter. UDP datagrams are one
// PDU each, as the agent's hello socket reads them; TCP directions are
// reassembled into PDUs.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "CaptureTypes.h"
#include "LinkLayer.h"
#include "Reporter.h"
#include "TcpStream.h"

namespace LdpDecode {

class Decoder {
 public:
   explicit Decoder(Reporter & reporter);
   ~Decoder();
   Decoder(Decoder const &) = delete;
   Decoder & operator=(Decoder const &) = delete;

   void linkTypeIs(LinkType link) noexcept { link_ = link; }

   // One captured frame, as far as the capture holds it.
   void frame(FrameMeta const & meta, std::span<std::uint8_t const> bytes);
   // Raw LDP bytes (hex input): one stream of PDUs, beginning with a header.
   void rawStream(std::span<std::uint8_t const> bytes);
   // The end of the input: every TCP stream is finished in the order it began.
   void finish();

 private:
   struct Flow;

   void datagram(Segment const & s);
   Flow & tcpFlow(FlowKey const & key);

   Reporter & reporter_;
   LinkType link_ = LinkType::ethernet;
   FrameMeta frame_;
   std::unordered_map<FlowKey, Flow *, FlowKeyHash> flowIndex_;
   std::vector<std::unique_ptr<Flow>> flows_;   // in the order they began
   Flow * lastFlow_ = nullptr;
   std::string udpFlowText_;
};

} // namespace LdpDecode
