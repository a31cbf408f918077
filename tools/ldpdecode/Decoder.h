// The capture pipeline: frame -> link layer -> IP -> UDP datagram or TCP
// segment -> per-direction stream -> PDU -> ReportSink. UDP datagrams are one
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
   explicit Decoder(ReportSink & reporter);
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

   ReportSink & reporter_;
   LinkType link_ = LinkType::ethernet;
   FrameMeta frame_;
   std::unordered_map<FlowKey, Flow *, FlowKeyHash> flowIndex_;
   std::vector<std::unique_ptr<Flow>> flows_;   // in the order they began
   Flow * lastFlow_ = nullptr;
   bool finishing_ = false;
   // The text of each UDP flow, kept for the whole run: a report may be
   // written after the frame that made it is gone.
   std::unordered_map<FlowKey, std::string, FlowKeyHash> udpFlows_;
};

} // namespace LdpDecode
