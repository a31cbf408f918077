// The capture pipeline: frame -> link layer -> IP -> UDP datagram or TCP
// segment -> per-direction stream -> PDU -> ReportSink. UDP datagrams are one
// PDU each, as the agent's hello socket reads them; TCP directions are
// reassembled into PDUs.
#pragma once

#include <cstdint>
#include <deque>
#include <list>
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
   // TCP directions followed at once; past this the least recently used one
   // is ended, as at the end of the capture, to make room.
   static constexpr std::size_t defaultMaxFlows = 65536;

   explicit Decoder(ReportSink & reporter, std::size_t maxFlows = defaultMaxFlows);
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

   // TCP directions held now: those not yet closed on both sides.
   std::size_t liveFlows() const noexcept { return flowIndex_.size(); }

 private:
   struct Flow;
   using FlowList = std::list<std::unique_ptr<Flow>>;

   void datagram(Segment const & s);
   // The flow of key; a new one only when create is set, else null.
   Flow * tcpFlow(FlowKey const & key, bool create);
   // Ends a TCP direction while the capture goes on: its stream finishes and
   // it is freed. Its counts go to the totals, or, when it closed, to closed_.
   void retire(Flow & f, bool closed);
   void retireIfClosed(Flow & f);
   void rememberClosed(FlowKey const & key, StreamStats const & stats);

   ReportSink & reporter_;
   std::size_t maxFlows_;
   LinkType link_ = LinkType::ethernet;
   FrameMeta frame_;
   std::unordered_map<FlowKey, Flow *, FlowKeyHash> flowIndex_;
   FlowList flows_;          // in the order they began
   std::list<Flow *> lru_;   // TCP flows, the most recently used first
   Flow * lastFlow_ = nullptr;
   // Directions of connections closed on both sides, with their counts, which
   // segments after the close still add to (a retransmitted FIN, say). A
   // direction's counts go to the totals when it leaves: the oldest past
   // maxFlows_, one that opens again with a SYN, the rest at the end.
   std::unordered_map<FlowKey, StreamStats, FlowKeyHash> closed_;
   std::deque<FlowKey> closedOrder_;  // the oldest first; may name one that left
   bool finishing_ = false;
   // The text of each UDP flow, kept for the whole run: a report may be
   // written after the frame that made it is gone.
   std::unordered_map<FlowKey, std::string, FlowKeyHash> udpFlows_;
};

} // namespace LdpDecode
