// The LDP side of the decoder: runs the library's receive path (PDU parser,
// then the message parser of every message) over each PDU the capture layer
// hands over, and prints what it sees as text, as JSON Lines, or only as
// totals. Nothing here knows about link layers or TCP.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "CaptureTypes.h"
#include "JsonWriter.h"
#include "LinkLayer.h"
#include "Output.h"
#include "RecentMap.h"
#include "TcpStream.h"
#include "ldp/wire/LdpIdentifier.h"
#include "ldp/wire/LdpWireEnums.h"
#include "vorin/Pkt.h"

namespace LdpDecode {

enum class OutputMode : std::uint8_t {
   text,         // a header line and the parsers' text forms per PDU
   json,         // one JSON object per PDU and per note; a message's text form
                 // only when it has a fault
   jsonTexts,    // as json, with the text form of every message
   summary,      // totals only, as text
   jsonSummary,  // totals only, as one JSON object
};

// What the agent does with a parse result.
enum class Verdict : std::uint8_t { accept, notification, ignore };
Verdict verdictOf(Ldp::LdpStatusCode code) noexcept;
// "malformedTlv (8)", "unknownMessageTypeIgnore (0x80000004)".
std::string statusCodeText(Ldp::LdpStatusCode code);
// "the agent answers with a Notification carrying malformedTlv (8)", ...
std::string verdictText(Ldp::LdpStatusCode code);

// Where a PDU or a note comes from.
struct Origin {
   // The frame that completed it; null for hex input and for notes made at the
   // end of the capture.
   FrameMeta const * frame = nullptr;
   std::uint64_t firstFrame = 0;        // the frame that carried its first byte, when known
   FlowKey const * flow = nullptr;      // null for hex input
   std::string const * flowText = nullptr;  // "10.0.0.1:646 > 10.0.0.2:1025  TCP", made once per flow
   std::uint64_t streamOffset = 0;      // TCP and hex input: position of its first byte
};

// Messages per type (the U bit left out), in type order. Counting the same type
// as the message before costs no lookup.
class TypeCounts {
 public:
   using Map = std::map<std::uint16_t, std::uint64_t>;

   TypeCounts() = default;
   TypeCounts(TypeCounts const & o) : counts_(o.counts_) {}
   TypeCounts & operator=(TypeCounts const & o) {
      counts_ = o.counts_;
      last_ = nullptr;
      return *this;
   }

   void count(std::uint16_t type) {
      if (!last_ || lastType_ != type) {
         last_ = &counts_[type];
         lastType_ = type;
      }
      ++*last_;
   }
   void add(TypeCounts const & o) {
      for (auto const & [type, n] : o.counts_) {
         counts_[type] += n;
      }
   }
   // The count of one type; 0 when none was seen.
   std::uint64_t operator[](std::uint16_t type) const {
      auto const it = counts_.find(type);
      return it == counts_.end() ? 0 : it->second;
   }
   bool operator==(TypeCounts const & o) const { return counts_ == o.counts_; }
   Map::const_iterator begin() const noexcept { return counts_.begin(); }
   Map::const_iterator end() const noexcept { return counts_.end(); }

 private:
   Map counts_;
   std::uint16_t lastType_ = 0;
   std::uint64_t * last_ = nullptr;  // the count of lastType_
};

struct Totals {
   std::uint64_t frames = 0;
   std::uint64_t udpFrames = 0;
   std::uint64_t tcpFrames = 0;
   std::uint64_t otherIpFrames = 0;
   std::uint64_t notIpFrames = 0;
   std::uint64_t fragmentFrames = 0;
   std::uint64_t malformedFrames = 0;
   std::uint64_t pdus = 0;
   std::uint64_t invalidPdus = 0;
   std::uint64_t messages = 0;
   std::uint64_t invalidMessages = 0;   // refused: the agent answers with a Notification
   std::uint64_t ignoredMessages = 0;   // unknown type with the U bit: skipped silently
   TypeCounts messagesPerType;
   std::map<std::uint32_t, std::uint64_t> faults;   // status code -> PDUs and messages refused with it
   // The identifiers and the sessions seen, the most recent ones only: a
   // capture with more of them drops the least recently seen and counts them.
   static constexpr std::size_t maxListed = 4096;
   RecentMap<Ldp::LdpIdentifier, bool> ldpIds{maxListed};
   std::map<std::string, std::uint64_t> notes;      // note kind -> count
   StreamStats tcp;
   std::uint64_t tcpStreams = 0;

   struct Session {
      Ldp::LdpIdentifier ldpId[2];
      bool hasLdpId[2] = {false, false};
      // Where each side's id was seen last (frame, stream offset), so that
      // totals added up from several reporters keep the latest one.
      std::pair<std::uint64_t, std::uint64_t> ldpIdSeen[2];
      std::uint64_t pdus = 0;
   };
   // TCP connections that carried PDUs, by their two endpoints (lower first).
   RecentMap<std::pair<Endpoint, Endpoint>, Session> sessions{maxListed};

   std::uint64_t faultCount() const noexcept;
   void add(Totals const & other);
};

// What the capture layer hands over, in capture order.
class ReportSink {
 public:
   // One PDU at offset of pkt. A PDU cut out of a stream whose header is not a
   // PDU's is judged by the PDU parser like any other.
   virtual void pdu(Origin const & origin, Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset) = 0;
   virtual void streamNote(Origin const & origin, StreamNote const & note) = 0;
   // A note of the capture layer: kind is a short key ("gap"), text a sentence.
   virtual void note(Origin const & origin, std::string_view kind, std::string const & text) = 0;
   virtual void frameSeen(FrameKind kind, Transport transport) = 0;
   virtual void tcpStreamDone(StreamStats const & stats) = 0;
   // Keeps owner, which the Origins handed over so far may point into, alive
   // until everything handed over before this call has been written.
   virtual void keepUntilWritten(std::shared_ptr<void const> owner) = 0;
   // The end of the input: writes the totals in the summary modes.
   virtual void finish() = 0;

   virtual Totals const & totals() const noexcept = 0;
   bool faultFound() const noexcept { return totals().faultCount() != 0; }

   virtual ~ReportSink() = default;
};

class Reporter final : public ReportSink {
 public:
   Reporter(OutputMode mode, Output & out) : mode_(mode), out_(out) {}

   OutputMode mode() const noexcept { return mode_; }

   void pdu(Origin const & origin, Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset) override;
   void streamNote(Origin const & origin, StreamNote const & note) override;
   void note(Origin const & origin, std::string_view kind, std::string const & text) override;
   void frameSeen(FrameKind kind, Transport transport) noexcept override;
   void tcpStreamDone(StreamStats const & stats) noexcept override;
   // Everything is written as it comes: nothing needs to be kept.
   void keepUntilWritten(std::shared_ptr<void const>) noexcept override {}
   void finish() override;

   Totals const & totals() const noexcept override { return totals_; }
   // Adds the counts of another reporter (one that worked on other PDUs).
   void absorb(Totals const & other);

 private:
   void headerLine(Origin const & origin);
   void putOrigin(JsonWriter & w, Origin const & origin);
   void countSession(Origin const & origin, Ldp::LdpIdentifier const & id);
   void writeSummaryText();
   void writeSummaryJson();

   OutputMode mode_;
   Output & out_;
   Totals totals_;
   // The last identifier and session seen, so that a run of PDUs of one
   // session costs no lookups.
   bool lastIdValid_ = false;
   Ldp::LdpIdentifier lastId_;
   // Compared by value: the Origin of a flow that has ended may be freed and
   // its memory reused by another flow.
   bool lastFlowValid_ = false;
   FlowKey lastFlow_;
   Totals::Session * lastSession_ = nullptr;
   int lastSide_ = 0;
   // The time text of the last frame printed.
   std::uint64_t timeFrame_ = 0;
   std::string timeText_;
   std::uint64_t isoTimeFrame_ = 0;
   std::string isoTimeText_;
};

} // namespace LdpDecode
