#include "ldp/parser/LdpMsgParser.h"

#include "zon/Assert.h"

namespace Ldp {

LdpMsgParser::LdpMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset)
    : pkt_(pkt), offset_(offset) {
   headerStep();
}

LdpMsgParser::LdpMsgParser(HeaderStepOf, LdpMsgParser const & failed)
    : pkt_(failed.pkt_),
      offset_(failed.offset_),
      reader_(failed.reader_),
      msgHdr_(failed.msgHdr_),
      tlvGroupParser_(failed.tlvGroupParser_),
      result_(failed.result_) {
   ZON_ASSERT(!failed.headerStepValid());
}

Zon::Ptr<LdpTlvGroupParser> LdpMsgParser::tlvGroupParserIs(Zon::String8 const & name) {
   if (!tlvGroupParser_ || tlvGroupParser_->name() != name) {
      tlvGroupParser_ = ldpTlvGroupParserFactory(name);
   }
   return tlvGroupParser_;
}

Zon::Ptr<LdpTlvGroupParser> LdpMsgParser::newTlvGroupParser(Zon::String8 const & name) {
   tlvGroupParser_ = ldpTlvGroupParserFactory(name);
   return tlvGroupParser_;
}

Zon::Ptr<LdpFecTlvParser> LdpMsgParser::ldpFecTlvParserIs(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset,
                                                          Zon::Ptr<LdpProtoParam const> const & protoParam) {
   if (!ldpFecTlvParser_ || ldpFecTlvParser_->pkt() != pkt || ldpFecTlvParser_->offset() != offset ||
       ldpFecTlvParser_->protoParam() != protoParam) {
      newLdpFecTlvParser(pkt, offset, protoParam);
   }
   return ldpFecTlvParser_;
}

Zon::Ptr<LdpFecTlvParser> LdpMsgParser::newLdpFecTlvParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset,
                                                           Zon::Ptr<LdpProtoParam const> const & protoParam) {
   // A FEC TLV of this message's packet is bounded by the message.
   ldpFecTlvParser_ = Zon::validPtr(Zon::makePtr<LdpFecTlvParser>(
       pkt, offset, protoParam, pkt == pkt_ && reader_.remaining(offset) > 0 ? &reader_ : nullptr));
   return ldpFecTlvParser_;
}

void LdpMsgParser::headerStep() {
   // Without a packet there is no header to point at: the caller's error.
   ZON_ASSERT_TEXT(pkt_ && pkt_->front(), "msgHdr_");
   ZON_ASSERT_TEXT(pkt_->frontBytes() >= offset_, "pkt_->frontBytes() >= offset_");
   LdpPktReader const front(*pkt_);
   msgHdr_ = front.view<LdpMsgHdr>(offset_);
   tlvGroupParserIs(Zon::String8());
   result_ = LdpParseFault();

   // The type is checked before the size; when the type word itself was not
   // received there is nothing to check and the size fault below reports it.
   if (auto const word = front.u16(offset_)) {
      std::uint16_t const type = *word & 0x7FFF;
      if (!isKnownMsgType(type)) {
         fault((*word & 0x8000) ? LdpStatusCode::unknownMessageTypeIgnore : LdpStatusCode::unknownMessageType,
               Zon::format("Unknown Message Type: %d", type));
         return;
      }
   }
   if (!msgHdr_) {
      fault(LdpStatusCode::malformedTlv, Zon::format("MSG too small, size = %d", pkt_->frontBytes()));
      return;
   }
   std::uint16_t const total = msgHdr_->totalLength(); // 16-bit: wraps like the wire field
   if (total > maxMsgSize) {
      fault(LdpStatusCode::malformedTlv, Zon::format("MSG length field too big, length = %d", total));
      return;
   }
   if (total <= 7) {
      fault(LdpStatusCode::malformedTlv, Zon::format("MSG length field too small, length = %d", total));
      return;
   }
   reader_ = front.child(offset_, total);
   tlvGroupParser_->pktIs(pkt_);
   tlvGroupParser_->offsetIs(offset_ + static_cast<std::uint32_t>(LdpMsgHdr::wireBytes));
   tlvGroupParser_->sizeIs(total - static_cast<std::uint32_t>(LdpMsgHdr::wireBytes));
   tlvGroupParser_->parseTlvGroup();
   if (!tlvGroupParser_->valid()) {
      faultFrom(*tlvGroupParser_);
      return;
   }
   for (std::uint32_t i = 0; i < tlvNum(); ++i) {
      // The framing read every recorded header from the front bytes.
      LdpTlvHdr const * tlv = front.view<LdpTlvHdr const>(tlvOffsetAt(i));
      ZON_ASSERT(tlv);
      LdpStatusCode const code = tlv->validateTlvHdr();
      if (code != LdpStatusCode::success && code != LdpStatusCode::unknownMessageTypeIgnore) {
         fault(code, Zon::format("Unknown TLV Type: %d", static_cast<int>(tlv->type())));
         return;
      }
   }
   headerStepValid_ = true;
}

LdpTlvHdr * LdpMsgParser::sizedTlv(std::uint32_t i, LdpTlvSize size, char const * sizeReason) {
   std::uint32_t const offset = tlvOffsetAt(i);
   if (LdpTlvHdr * t = reader_.view<LdpTlvHdr>(offset)) [[likely]] {
      std::uint16_t const length = t->length();
      bool const rightSize =
          size.rule == LdpTlvSize::Rule::exactly
              ? length == size.length
              // 16-bit like the group parser's item size: a length that wraps it is empty
              : static_cast<std::uint16_t>(length + LdpTlvHdr::tlvHdrSizeExclude) > LdpTlvHdr::wireBytes;
      std::uint32_t const bytes = std::uint32_t(length) + LdpTlvHdr::tlvHdrSizeExclude;
      if (rightSize && bytes >= size.viewBytes && reader_.contains(offset, bytes)) [[likely]] {
         return t;
      }
   }
   fault(LdpStatusCode::malformedTlv, sizeReason);
   return nullptr;
}

bool LdpMsgParser::messageStepStart() {
   if (!validMsg()) {
      return false;
   }
   if (!tlvGroupParser_->valid()) {
      return faultFrom(*tlvGroupParser_);
   }
   return true;
}

Zon::String8 LdpMsgParser::stringValue() const {
   if (!validMsg()) {
      return Zon::String8("Message Error: " + reason());
   }
   // The base parser serves the messages without a class of their own.
   char const * title = "LDP Msg:\n";
   switch (msgHdr_->type()) {
    case LdpMsgType::LdpKeepAlive: title = "LDP KeepAlive Msg:\n"; break;
    case LdpMsgType::LdpCapability: title = "LDP Capability Msg:\n"; break;
    default: break;
   }
   return Zon::String8(title + msgIdText());
}

Zon::String8 LdpMsgParser::msgIdText() const {
   return Zon::format("   Msg Id: %d,", static_cast<int>(msgHdr_->msgId()));
}

Zon::Ptr<LdpMsgParser> ldpMsgParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset) {
   return Zon::validPtr(Zon::makePtr<LdpMsgParser>(pkt, offset));
}

} // namespace Ldp
