#include "Reporter.h"

#include <cstdio>

#include "JsonMessage.h"
#include "JsonWriter.h"
#include "ldp/parser/LdpMsgParserGet.h"
#include "ldp/parser/LdpMsgParser.h"
#include "ldp/parser/LdpPduParser.h"
#include "zon/Enum.h"

namespace LdpDecode {

using Ldp::LdpStatusCode;

namespace {

char const * verdictKey(Verdict v) noexcept {
   switch (v) {
    case Verdict::accept:
      return "accept";
    case Verdict::notification:
      return "notification";
    case Verdict::ignore:
      return "ignore";
   }
   return "accept";
}

void putStatus(JsonWriter & w, LdpStatusCode code, std::string_view reason) {
   w.field("valid", code == LdpStatusCode::success);
   writeStatusCode(w, code);
   w.field("reason", reason);
   w.plainField("action", verdictKey(verdictOf(code)));
}

std::string number(std::uint64_t n) {
   return std::to_string(n);
}

// The name of a message type; "unknown 0x3e00" for a type without one.
std::string msgTypeName(std::size_t type) {
   auto const t = static_cast<Ldp::LdpMsgType>(type);
   if (Ldp::isKnownMsgType(static_cast<std::uint16_t>(type))) {
      return Zon::valueToStrep(t);
   }
   char buf[24];
   std::snprintf(buf, sizeof buf, "unknown 0x%04x", static_cast<unsigned>(type));
   return buf;
}

} // namespace

Verdict verdictOf(LdpStatusCode code) noexcept {
   if (code == LdpStatusCode::success) {
      return Verdict::accept;
   }
   return code == LdpStatusCode::unknownMessageTypeIgnore ? Verdict::ignore : Verdict::notification;
}

std::string statusCodeText(LdpStatusCode code) {
   auto const n = static_cast<std::uint32_t>(code);
   char num[24];
   if (n & 0x80000000u) {
      std::snprintf(num, sizeof num, " (0x%08x)", n);
   } else {
      std::snprintf(num, sizeof num, " (%u)", n);
   }
   return Zon::valueToStrep(code) + num;
}

std::string verdictText(LdpStatusCode code) {
   switch (verdictOf(code)) {
    case Verdict::accept:
      return "the agent accepts it";
    case Verdict::ignore:
      return "the agent ignores it silently";
    case Verdict::notification:
      break;
   }
   return "the agent answers with a Notification carrying " + statusCodeText(code);
}

std::uint64_t Totals::faultCount() const noexcept {
   std::uint64_t n = 0;
   for (auto const & [code, count] : faults) {
      n += count;
   }
   return n;
}

void Totals::add(Totals const & o) {
   frames += o.frames;
   udpFrames += o.udpFrames;
   tcpFrames += o.tcpFrames;
   otherIpFrames += o.otherIpFrames;
   notIpFrames += o.notIpFrames;
   fragmentFrames += o.fragmentFrames;
   malformedFrames += o.malformedFrames;
   pdus += o.pdus;
   invalidPdus += o.invalidPdus;
   messages += o.messages;
   invalidMessages += o.invalidMessages;
   ignoredMessages += o.ignoredMessages;
   messagesPerType.add(o.messagesPerType);
   for (auto const & [code, n] : o.faults) {
      faults[code] += n;
   }
   ldpIds.add(o.ldpIds, [](bool &, bool) {});
   for (auto const & [kind, n] : o.notes) {
      notes[kind] += n;
   }
   tcp.segments += o.tcp.segments;
   tcp.retransmitted += o.tcp.retransmitted;
   tcp.overlapBytes += o.tcp.overlapBytes;
   tcp.outOfOrder += o.tcp.outOfOrder;
   tcp.gaps += o.tcp.gaps;
   tcp.gapBytes += o.tcp.gapBytes;
   tcp.skippedBytes += o.tcp.skippedBytes;
   tcp.afterClose += o.tcp.afterClose;
   tcpStreams += o.tcpStreams;
   sessions.add(o.sessions, [](Session & mine, Session const & s) {
      mine.pdus += s.pdus;
      for (int side = 0; side < 2; ++side) {
         if (s.hasLdpId[side] && (!mine.hasLdpId[side] || s.ldpIdSeen[side] >= mine.ldpIdSeen[side])) {
            mine.ldpId[side] = s.ldpId[side];
            mine.hasLdpId[side] = true;
            mine.ldpIdSeen[side] = s.ldpIdSeen[side];
         }
      }
   });
}

void Reporter::absorb(Totals const & other) {
   totals_.add(other);
   lastFlowValid_ = false;  // the session map may hold new entries
   lastIdValid_ = false;
}

void Reporter::frameSeen(FrameKind kind, Transport transport) noexcept {
   ++totals_.frames;
   switch (kind) {
    case FrameKind::ldp:
      ++(transport == Transport::udp ? totals_.udpFrames : totals_.tcpFrames);
      break;
    case FrameKind::otherIp:
      ++totals_.otherIpFrames;
      break;
    case FrameKind::notIp:
      ++totals_.notIpFrames;
      break;
    case FrameKind::fragment:
      ++totals_.fragmentFrames;
      break;
    case FrameKind::malformed:
      ++totals_.malformedFrames;
      break;
   }
}

void Reporter::tcpStreamDone(StreamStats const & s) noexcept {
   Totals one;
   one.tcpStreams = 1;
   one.tcp = s;
   totals_.add(one);
}

void Reporter::putOrigin(JsonWriter & w, Origin const & o) {
   if (o.frame) {
      w.field("frame", o.frame->number);
      if (o.firstFrame && o.firstFrame != o.frame->number) {
         w.field("firstFrame", o.firstFrame);
      }
      if (isoTimeFrame_ != o.frame->number || isoTimeText_.empty()) {
         isoTimeFrame_ = o.frame->number;
         isoTimeText_ = isoTimeText(*o.frame);
      }
      w.plainField("time", isoTimeText_);
   } else if (o.flow) {
      w.field("endOfCapture", true);
   } else {
      w.field("input", "hex");
   }
   if (o.flow) {
      w.plainField("transport", transportName(o.flow->transport));
      w.key("src");
      writeAddress(w, o.flow->src.addr);
      w.field("srcPort", o.flow->src.port);
      w.key("dst");
      writeAddress(w, o.flow->dst.addr);
      w.field("dstPort", o.flow->dst.port);
   }
   if (!o.flow || o.flow->transport == Transport::tcp) {
      w.field("streamOffset", o.streamOffset);
   }
}

void Reporter::headerLine(Origin const & o) {
   if (!o.frame) {
      if (o.flowText) {
         out_ << "end of capture  " << *o.flowText;
      } else {
         out_ << "hex input  byte " << number(o.streamOffset);
      }
      return;
   }
   if (timeFrame_ != o.frame->number || timeText_.empty()) {
      timeFrame_ = o.frame->number;
      timeText_ = timeText(*o.frame);
   }
   out_ << "frame " << number(o.frame->number) << "  " << timeText_;
   if (o.flowText) {
      out_ << "  " << *o.flowText;
   }
   if (o.firstFrame && o.firstFrame != o.frame->number) {
      out_ << "  (begins in frame " << number(o.firstFrame) << ')';
   }
}

void Reporter::countSession(Origin const & o, Ldp::LdpIdentifier const & id) {
   if (!lastIdValid_ || !(id == lastId_)) {
      totals_.ldpIds.touch(id);
      lastId_ = id;
      lastIdValid_ = true;
   }
   if (!o.flow || o.flow->transport != Transport::tcp) {
      return;
   }
   if (!lastFlowValid_ || !(*o.flow == lastFlow_)) {
      bool const srcFirst = o.flow->src < o.flow->dst;
      auto key = srcFirst ? std::make_pair(o.flow->src, o.flow->dst) : std::make_pair(o.flow->dst, o.flow->src);
      lastSession_ = &totals_.sessions.touch(key);
      lastSide_ = srcFirst ? 0 : 1;
      lastFlow_ = *o.flow;
      lastFlowValid_ = true;
   }
   lastSession_->ldpId[lastSide_] = id;
   lastSession_->hasLdpId[lastSide_] = true;
   lastSession_->ldpIdSeen[lastSide_] = {o.frame ? o.frame->number : o.firstFrame, o.streamOffset};
   ++lastSession_->pdus;
}

void Reporter::pdu(Origin const & origin, Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset) {
   auto const pdu = Ldp::ldpPduParserFactory(pkt, offset);
   ++totals_.pdus;
   bool const valid = pdu->validLdpPdu();
   if (valid) {
      countSession(origin, pdu->ldpIdentifier());
   } else {
      ++totals_.invalidPdus;
      ++totals_.faults[static_cast<std::uint32_t>(pdu->statusCode())];
   }
   std::uint32_t const messages = valid ? pdu->messageNum() : 0;
   totals_.messages += messages;

   if (mode_ == OutputMode::summary || mode_ == OutputMode::jsonSummary) {
      for (std::uint32_t i = 0; i < messages; ++i) {
         auto const msg = Ldp::ldpMsgParserGet(pkt, pdu->messageOffset(i));
         if (auto const * h = msg->msgHdr()) {
            totals_.messagesPerType.count(static_cast<std::uint16_t>(h->type()) & 0x7FFF);
         }
         LdpStatusCode const code = msg->statusCode();
         if (code != LdpStatusCode::success) {
            if (code == LdpStatusCode::unknownMessageTypeIgnore) {
               ++totals_.ignoredMessages;
            } else {
               ++totals_.invalidMessages;
               ++totals_.faults[static_cast<std::uint32_t>(code)];
            }
         }
      }
      return;
   }

   if (mode_ == OutputMode::json || mode_ == OutputMode::jsonTexts) {
      JsonWriter w(out_);
      w.beginObject();
      w.plainField("type", "pdu");
      putOrigin(w, origin);
      if (auto const * h = pdu->header()) {
         w.field("version", h->version());
         w.field("length", h->length());
         w.key("ldpId");
         writeLdpId(w, h->ldpIdentifier());
      }
      putStatus(w, pdu->statusCode(), pdu->reason());
      w.field("text", std::string_view(valid ? pdu->header()->stringValue() : pdu->stringValue()));
      w.array("messages");
      for (std::uint32_t i = 0; i < messages; ++i) {
         std::uint32_t const at = pdu->messageOffset(i);
         auto const msg = Ldp::ldpMsgParserGet(pkt, at);
         w.beginObject();
         w.field("index", i);
         w.field("offset", at - offset);
         if (auto const * h = msg->msgHdr()) {
            auto const type = static_cast<std::uint16_t>(h->type());
            totals_.messagesPerType.count(type & 0x7FFF);
            w.key("type");
            if (Ldp::isKnownMsgType(type)) {
               writeEnumName(w, h->type());
            } else {
               w.null();
            }
            w.field("typeCode", type);
            w.field("uBit", h->unknown());
            w.field("length", h->length());
            if (h->totalLength() >= Ldp::LdpMsgHdr::wireBytes) {
               w.field("msgId", h->msgId());
            }
         }
         LdpStatusCode const code = msg->statusCode();
         if (code == LdpStatusCode::unknownMessageTypeIgnore) {
            ++totals_.ignoredMessages;
         } else if (code != LdpStatusCode::success) {
            ++totals_.invalidMessages;
            ++totals_.faults[static_cast<std::uint32_t>(code)];
         }
         putStatus(w, code, msg->reason());
         w.plainField("parser", msg->fwkType());
         // The text form is the costliest part of a message's JSON and says
         // nothing the fields do not; a fault's text helps to read the fault.
         if (code != LdpStatusCode::success || mode_ == OutputMode::jsonTexts) {
            w.field("text", std::string_view(msg->stringValue()));
         }
         writeMessageTlvs(w, *msg);
         w.endObject();
      }
      w.endArray();
      w.endObject();
      out_ << '\n';
      return;
   }

   // Text: the header line, then the PDU's text form, which is the PDU header's
   // text and, per message, "\n<i>: " and the message parser's text, and a final
   // newline. It is put together here from the parts so that each message is
   // parsed once for both its text and its verdict.
   headerLine(origin);
   out_ << '\n';
   if (!valid) {
      out_ << pdu->stringValue() << '\n';
      out_ << "  fault: PDU: " << statusCodeText(pdu->statusCode()) << ": " << pdu->reason() << "; "
           << verdictText(pdu->statusCode()) << '\n';
      out_ << '\n';
      return;
   }
   out_ << pdu->header()->stringValue();
   std::string faults;
   char index[24];
   for (std::uint32_t i = 0; i < messages; ++i) {
      auto const msg = Ldp::ldpMsgParserGet(pkt, pdu->messageOffset(i));
      auto const * h = msg->msgHdr();
      if (h) {
         totals_.messagesPerType.count(static_cast<std::uint16_t>(h->type()) & 0x7FFF);
      }
      std::snprintf(index, sizeof index, "\n%u: ", static_cast<unsigned>(i));
      out_ << index << msg->stringValue();
      LdpStatusCode const code = msg->statusCode();
      if (code == LdpStatusCode::success) {
         continue;
      }
      if (code == LdpStatusCode::unknownMessageTypeIgnore) {
         ++totals_.ignoredMessages;
         faults += "  ignored: message ";
      } else {
         ++totals_.invalidMessages;
         ++totals_.faults[static_cast<std::uint32_t>(code)];
         faults += "  fault: message ";
      }
      faults += std::to_string(i);
      if (h) {
         faults += " (" + msgTypeName(static_cast<std::uint16_t>(h->type()));
         if (h->totalLength() >= Ldp::LdpMsgHdr::wireBytes) {  // else the ID is not part of the message
            faults += ", id " + std::to_string(h->msgId());
         }
         faults += ")";
      }
      faults += ": " + statusCodeText(code) + ": " + msg->reason() + "; " + verdictText(code) + '\n';
   }
   out_ << '\n' << faults << '\n';
}

void Reporter::streamNote(Origin const & origin, StreamNote const & n) {
   std::string text;
   char const * kind = "";
   switch (n.kind) {
    case StreamNoteKind::joinedMidStream:
      kind = "joinedMidStream";
      text = "joined the stream mid-way (no SYN seen): ";
      if (!n.headerFound) {
         text += "no PDU header found in " + number(n.bytes) + " bytes";
      } else if (n.bytes) {
         text += "skipped " + number(n.bytes) + " bytes to the first PDU header";
      } else {
         text += "its first segment begins with a PDU header";
      }
      break;
    case StreamNoteKind::resynchronised:
      kind = "resynchronised";
      text = n.headerFound ? "resynchronised: skipped " + number(n.bytes) + " bytes to the next PDU header"
                           : "no PDU header found in the " + number(n.bytes) + " bytes that follow";
      break;
    case StreamNoteKind::gap:
      kind = "gap";
      text = "gap: " + number(n.bytes) + " bytes at stream byte " + number(n.streamOffset) +
             " are not in the capture";
      if (n.pduBytes) {
         text += "; dropped " + number(n.pduBytes) + " bytes of an unfinished PDU";
         if (n.pduSize) {
            text += " of " + number(n.pduSize) + " bytes";
         }
      }
      break;
    case StreamNoteKind::endInsidePdu:
      kind = "endInsidePdu";
      text = "the stream ends inside a PDU: " + number(n.pduBytes) + " bytes";
      if (n.pduSize) {
         text += " of " + number(n.pduSize);
      }
      text += " received";
      break;
   }
   Origin o = origin;
   o.streamOffset = n.streamOffset;
   note(o, kind, text);
}

void Reporter::note(Origin const & origin, std::string_view kind, std::string const & text) {
   ++totals_.notes[std::string(kind)];
   if (mode_ == OutputMode::text) {
      headerLine(origin);
      out_ << "  note: " << text << "\n\n";
   } else if (mode_ == OutputMode::json || mode_ == OutputMode::jsonTexts) {
      JsonWriter w(out_);
      w.beginObject();
      w.plainField("type", "note");
      putOrigin(w, origin);
      w.field("note", kind);
      w.field("text", text);
      w.endObject();
      out_ << '\n';
   }
}

void Reporter::finish() {
   if (mode_ == OutputMode::summary) {
      writeSummaryText();
   } else if (mode_ == OutputMode::jsonSummary) {
      writeSummaryJson();
   }
}

namespace {

std::string sessionSide(Endpoint const & e, bool hasId, Ldp::LdpIdentifier const & id) {
   return (hasId ? std::string(id.stringValue()) : std::string("?")) + " (" + e.text() + ")";
}

} // namespace

void Reporter::writeSummaryText() {
   Totals const & t = totals_;
   char line[160];
   auto row = [&](int indent, std::string const & name, std::uint64_t value, std::string const & extra = {}) {
      std::snprintf(line, sizeof line, "%*s%-*s %10llu", indent, "", 32 - indent, name.c_str(),
                    static_cast<unsigned long long>(value));
      out_ << line << extra << '\n';
   };
   row(0, "frames", t.frames);
   row(2, "LDP over UDP", t.udpFrames);
   row(2, "LDP over TCP", t.tcpFrames);
   row(2, "other IP", t.otherIpFrames);
   row(2, "not IP", t.notIpFrames);
   row(2, "IP fragments (not decoded)", t.fragmentFrames);
   row(2, "malformed", t.malformedFrames);
   row(0, "PDUs", t.pdus);
   row(2, "invalid", t.invalidPdus);
   row(0, "messages", t.messages);
   for (auto const & [type, n] : t.messagesPerType) {
      row(2, msgTypeName(type), n);
   }
   row(2, "invalid", t.invalidMessages);
   row(2, "ignored (unknown type, U bit)", t.ignoredMessages);
   row(0, "faults", t.faultCount());
   for (auto const & [code, count] : t.faults) {
      row(2, statusCodeText(static_cast<LdpStatusCode>(code)), count);
   }
   auto const dropped = [&](std::uint64_t n) {
      if (n) {
         out_ << "  (" << number(n) << " dropped from this list, which keeps the " << number(Totals::maxListed)
              << " most recent)\n";
      }
   };
   row(0, "LDP identifiers", t.ldpIds.size());
   for (auto const & [id, seen] : t.ldpIds) {
      out_ << "  " << id.stringValue() << '\n';
   }
   dropped(t.ldpIds.dropped());
   row(0, "sessions", t.sessions.size());
   for (auto const & [key, s] : t.sessions) {
      out_ << "  " << sessionSide(key.first, s.hasLdpId[0], s.ldpId[0]) << " <-> "
           << sessionSide(key.second, s.hasLdpId[1], s.ldpId[1]) << ": " << number(s.pdus) << " PDUs\n";
   }
   dropped(t.sessions.dropped());
   row(0, "TCP streams", t.tcpStreams);
   row(2, "segments with data", t.tcp.segments);
   row(2, "retransmitted", t.tcp.retransmitted);
   row(2, "out of order", t.tcp.outOfOrder);
   row(2, "overlapping bytes", t.tcp.overlapBytes);
   row(2, "gaps", t.tcp.gaps);
   row(2, "bytes missing in gaps", t.tcp.gapBytes);
   row(2, "bytes skipped to resynchronise", t.tcp.skippedBytes);
   row(2, "segments after FIN or RST", t.tcp.afterClose);
   if (!t.notes.empty()) {
      out_ << "notes\n";
      for (auto const & [kind, count] : t.notes) {
         row(2, kind, count);
      }
   }
}

void Reporter::writeSummaryJson() {
   Totals const & t = totals_;
   JsonWriter w(out_);
   w.beginObject();
   w.field("type", "summary");
   w.object("frames")
       .field("total", t.frames)
       .field("ldpUdp", t.udpFrames)
       .field("ldpTcp", t.tcpFrames)
       .field("otherIp", t.otherIpFrames)
       .field("notIp", t.notIpFrames)
       .field("fragments", t.fragmentFrames)
       .field("malformed", t.malformedFrames)
       .endObject();
   w.object("pdus").field("total", t.pdus).field("invalid", t.invalidPdus).endObject();
   w.object("messages")
       .field("total", t.messages)
       .field("invalid", t.invalidMessages)
       .field("ignored", t.ignoredMessages)
       .object("perType");
   for (auto const & [type, n] : t.messagesPerType) {
      w.field(msgTypeName(type), n);
   }
   w.endObject().endObject();
   w.object("faults").field("total", t.faultCount()).object("perStatus");
   for (auto const & [code, count] : t.faults) {
      w.field(std::string_view(Zon::valueToStrep(static_cast<LdpStatusCode>(code))), count);
   }
   w.endObject().endObject();
   w.array("ldpIds");
   for (auto const & [id, seen] : t.ldpIds) {
      w.plainValue(std::string_view(id.stringValue()));
   }
   w.endArray();
   w.field("ldpIdsDropped", t.ldpIds.dropped());
   w.array("sessions");
   for (auto const & [key, s] : t.sessions) {
      w.beginObject();
      w.plainField("a", std::string_view(key.first.text()));
      w.key("aLdpId");
      s.hasLdpId[0] ? w.value(std::string_view(s.ldpId[0].stringValue())) : w.null();
      w.plainField("b", std::string_view(key.second.text()));
      w.key("bLdpId");
      s.hasLdpId[1] ? w.value(std::string_view(s.ldpId[1].stringValue())) : w.null();
      w.field("pdus", s.pdus);
      w.endObject();
   }
   w.endArray();
   w.field("sessionsDropped", t.sessions.dropped());
   w.object("tcp")
       .field("streams", t.tcpStreams)
       .field("segments", t.tcp.segments)
       .field("retransmitted", t.tcp.retransmitted)
       .field("outOfOrder", t.tcp.outOfOrder)
       .field("overlapBytes", t.tcp.overlapBytes)
       .field("gaps", t.tcp.gaps)
       .field("gapBytes", t.tcp.gapBytes)
       .field("skippedBytes", t.tcp.skippedBytes)
       .field("afterClose", t.tcp.afterClose)
       .endObject();
   w.object("notes");
   for (auto const & [kind, count] : t.notes) {
      w.field(kind, count);
   }
   w.endObject();
   w.endObject();
   out_ << '\n';
}

} // namespace LdpDecode
