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

struct FlowName;

class Decoder {
 public:
   // TCP directions followed at once; past this the least recently used one
   // is ended, as at the end of the capture, to make room.
   static constexpr std::size_t defaultMaxFlows = 65536;
   // UDP flows whose names are kept for the datagrams to come; past this the
   // least recently used name is let go (reports not yet written keep it).
   static constexpr std::size_t defaultMaxUdpFlows = 4096;

   explicit Decoder(ReportSink & reporter, std::size_t maxFlows = defaultMaxFlows,
                    std::size_t maxUdpFlows = defaultMaxUdpFlows);
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
   // UDP flow names held now.
   std::size_t udpFlowsHeld() const noexcept { return udpIndex_.size(); }

 private:
   struct Flow;
   using FlowList = std::list<std::unique_ptr<Flow>>;

   void datagram(Segment const & s);
   // The name of a UDP flow, made on its first datagram.
   FlowName const & udpName(FlowKey const & key);
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
   // The names of the recent UDP flows, the most recently used first. A report
   // may be written after its frame is gone: a name let go is handed to the
   // reporter, which keeps it until its reports are written.
   using UdpNames = std::list<std::shared_ptr<FlowName>>;
   std::size_t maxUdpFlows_;
   UdpNames udpLru_;
   std::unordered_map<FlowKey, UdpNames::iterator, FlowKeyHash> udpIndex_;
};

} // namespace LdpDecode
