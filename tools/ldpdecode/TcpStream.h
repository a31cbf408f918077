// One direction of an LDP TCP session, reassembled into PDUs. Segments may come
// in any order, repeated or overlapping; the stream delivers each PDU once, in
// stream order, exactly as the unsegmented byte stream holds it. A capture that
// joins a session mid-way, or loses bytes, is resynchronised on the next
// plausible PDU header, and the stream says so: no byte is ever invented.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <span>
#include <vector>

#include "CaptureTypes.h"
#include "vorin/Pkt.h"

namespace LdpDecode {

// One PDU taken out of the stream.
struct StreamPdu {
   // Holds the PDU, and possibly its neighbours of the same segment run.
   Zon::Ptr<Vorin::Pkt> pkt;
   std::uint32_t offset = 0;        // where the PDU begins in pkt
   std::uint32_t size = 0;          // bytes of the PDU in pkt
   std::uint64_t streamOffset = 0;  // position of its first byte in the stream
   std::uint64_t firstFrame = 0;    // the frame that carried its first byte
   FrameMeta lastFrame;             // the frame that carried its last byte
   // The header is not one of a PDU (version, or a length out of bounds): pkt
   // holds just enough bytes for the PDU parser to judge the header, and the
   // stream resynchronises behind it.
   bool badHeader = false;
};

enum class StreamNoteKind : std::uint8_t {
   joinedMidStream,  // data without a SYN before it: bytes skipped to the first header
   resynchronised,   // bytes skipped after a bad header or a gap
   gap,              // bytes the capture does not hold
   endInsidePdu,     // the stream ended (capture end, FIN, RST, new SYN) inside a PDU
};

struct StreamNote {
   StreamNoteKind kind = StreamNoteKind::gap;
   std::uint64_t streamOffset = 0;  // where the skipped or missing bytes begin
   std::uint64_t bytes = 0;         // skipped bytes (joined, resynchronised) or missing bytes (gap)
   bool headerFound = true;         // joined, resynchronised: false when the stream ended first
   std::uint64_t pduBytes = 0;      // gap, end: bytes of an unfinished PDU that were dropped
   std::uint32_t pduSize = 0;       // gap, end: its announced size; 0 when its length was not received
};

class StreamSink {
 public:
   virtual void streamPdu(StreamPdu const & pdu) = 0;
   virtual void streamNote(StreamNote const & note) = 0;

 protected:
   ~StreamSink() = default;
};

struct StreamStats {
   std::uint64_t segments = 0;          // segments that carried payload
   std::uint64_t retransmitted = 0;     // segments holding only bytes seen before
   std::uint64_t overlapBytes = 0;      // bytes seen before inside segments that also held new ones
   std::uint64_t outOfOrder = 0;        // segments that arrived ahead of a missing one
   std::uint64_t gaps = 0;
   std::uint64_t gapBytes = 0;
   std::uint64_t skippedBytes = 0;      // bytes passed over while resynchronising
   std::uint64_t afterClose = 0;        // segments after FIN or RST, ignored
};

// The first test used to resynchronise: version 1, a PDU length from 18 to
// 9600 bytes, and a first message of a known type whose length fits in the PDU.
// Needs minPduBytes bytes at p.
bool plausiblePduHeader(std::uint8_t const * p) noexcept;
// The second, on the whole PDU: its messages, all of known types, fill the PDU
// exactly, and the TLVs of each message fill the message exactly. Bytes inside a
// PDU (an address list, a label) pass the first test now and then; they almost
// never pass this one.
bool wellFramedPdu(std::span<std::uint8_t const> pdu) noexcept;

class TcpStream {
 public:
   // Bytes of out-of-order data held while waiting for a missing segment; past
   // this the missing bytes are taken as lost (a gap).
   static constexpr std::size_t maxOutOfOrderBytes = 4u << 20;
   // What each held segment counts toward that limit besides its bytes: a
   // segment the capture cut off entirely holds none, yet takes memory.
   static constexpr std::size_t heldEntryCost = 64;
   // A PDU header plus one message header: what a header check needs.
   static constexpr std::size_t minPduBytes = 18;

   explicit TcpStream(StreamSink & sink) : sink_(sink) {}
   TcpStream(TcpStream const &) = delete;
   TcpStream & operator=(TcpStream const &) = delete;

   // One TCP segment of this direction: sequence number, TcpFlag bits, the
   // captured payload and the payload bytes the capture cut off behind it.
   void segment(std::uint32_t seq, std::uint8_t flags, std::span<std::uint8_t const> payload,
                std::uint32_t missingBytes, FrameMeta const & frame);
   // The end of the capture: missing bytes become gaps, an unfinished PDU is
   // reported.
   void finish();
   // A byte stream known to start at a PDU boundary (no TCP around it). It
   // holds every byte there is: at its end, the bytes of an unfinished PDU are
   // handed over as a PDU, for the parser to find its fault.
   void startSynced();

   StreamStats const & stats() const noexcept { return stats_; }
   // Ended by FIN or RST, with nothing left to deliver.
   bool closed() const noexcept { return state_ == State::closed; }
   // Frames remembered for the bytes not yet taken out as PDUs: one for each
   // frame that carried a byte still kept, however long the stream runs.
   std::size_t frameMarks() const noexcept { return marks_.size(); }

 private:
   enum class State : std::uint8_t { idle, open, closed };
   enum class Resync : std::uint8_t { midStream, badHeader, gap };
   struct Held {
      std::vector<std::uint8_t> bytes;
      std::uint32_t missingAfter = 0;
      FrameMeta frame;
   };
   struct FrameMark {
      std::uint64_t offset;
      FrameMeta frame;
   };
   struct RunPdu {
      std::size_t at;
      std::uint32_t size;
   };

   void open(std::uint32_t seqOfFirstByte, bool synced);
   std::int64_t offsetOf(std::uint32_t seq) const noexcept;
   void data(std::int64_t off, std::span<std::uint8_t const> bytes, std::uint32_t missing, FrameMeta const & frame);
   void append(std::span<std::uint8_t const> bytes, FrameMeta const & frame);
   void hold(std::uint64_t off, std::span<std::uint8_t const> bytes, std::uint32_t missing, FrameMeta const & frame);
   // Takes in the held segments that the contiguous data has reached. Bytes up
   // to missingTo that no held segment holds are a gap.
   void drainHeld(std::uint64_t missingTo);
   void gapAt(std::uint64_t missing);
   void closeIfFinished();
   void endData();
   void reset();

   // Cuts PDUs out of data, whose first byte is at stream offset base; returns
   // the bytes consumed. At the end of the stream (final) nothing is kept back.
   std::size_t frame(std::span<std::uint8_t const> data, std::uint64_t base, bool final);
   void flushRun(std::span<std::uint8_t const> data, std::uint64_t base);
   void emit(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t at, std::uint32_t size, std::uint64_t streamOffset,
             bool badHeader);
   void noteResync(std::uint64_t foundAt, bool found);
   // The frame that carried the byte at streamOffset, among those not yet
   // taken out as PDUs.
   FrameMeta frameOf(std::uint64_t streamOffset) const;
   // Forgets the frames of bytes before streamOffset, which is at or before
   // the first byte still kept.
   void dropMarksBefore(std::uint64_t streamOffset);
   std::size_t buffered() const noexcept { return buf_.size() - head_; }

   StreamSink & sink_;
   State state_ = State::idle;
   std::uint32_t seqBase_ = 0;   // sequence number of stream offset 0
   std::uint64_t next_ = 0;      // stream offset behind the contiguous data
   std::vector<std::uint8_t> buf_;
   std::size_t head_ = 0;        // buf_[head_] is the first unconsumed byte, at next_ - buffered()
   bool synced_ = true;
   Resync resync_ = Resync::midStream;
   std::uint64_t resyncFrom_ = 0;
   std::map<std::uint64_t, Held> held_;
   std::size_t heldBytes_ = 0;   // held bytes plus heldEntryCost for each held segment
   bool raw_ = false;            // started by startSynced: nothing of the stream is missing
   bool finSeen_ = false;
   std::uint64_t finAt_ = 0;
   std::deque<FrameMark> marks_;
   std::vector<RunPdu> run_;
   StreamStats stats_;
};

} // namespace LdpDecode
