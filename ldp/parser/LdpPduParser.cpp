#include "ldp/parser/LdpPduParser.h"

#include "ldp/parser/LdpMsgParserGet.h"
#include "ldp/parser/LdpMsgParser.h"
#include "ldp/parser/LdpPktReader.h"
#include "zon/Assert.h"

namespace Ldp {

LdpPduParser::LdpPduParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset)
    : pkt_(pkt), offset_(offset) {
   handleHeader();
   tlvGroupParser_ = ldpTlvGroupParserFactory(Zon::String8());
   handleInitialized();
}

void LdpPduParser::handleHeader() {
   // The view exists only when the header's ten bytes were received; a buffer
   // that ends earlier is reported by the size check of handleInitialized.
   if (pkt_) {
      header_ = LdpPktReader(*pkt_).view<LdpPduHdr const>(offset_);
   }
}

void LdpPduParser::handleInitialized() {
   Trace::Source const & trace = ldpGenMsgParserTrace;
   TRACE(trace, traceFunction, "handleInitialized");
   initialized_ = true;
   // Without a packet there is no header to lay over it: the caller's error.
   ZON_ASSERT_TEXT(pkt_, "header_");
   ZON_ASSERT_TEXT(pkt_->frontBytes() >= offset_, "pkt_->frontBytes() >= offset_");
   std::uint32_t const frontBytes = pkt_->frontBytes();
   if (std::uint64_t(offset_) + minPduBytes > frontBytes) {
      result_.fault(LdpStatusCode::badPduLength, Zon::format("PDU too small, size = %d", frontBytes), trace);
      return;
   }
   std::uint16_t const size = header_->totalLength(); // 16-bit: wraps like the wire field
   if (size > maxPduSize) {
      result_.fault(LdpStatusCode::badPduLength, Zon::format("PDU length field too big, length = %d", size),
                    trace);
      return;
   }
   if (size <= 13) {
      result_.fault(LdpStatusCode::badPduLength, Zon::format("PDU length field too small, length = %d", size),
                    trace);
      return;
   }
   if (header_->version() != 1) {
      result_.fault(LdpStatusCode::badVersion, Zon::format("LDP Version %d not supported", header_->version()),
                    trace);
      return;
   }
   TRACE(trace, traceDetail, "   LdpHeader: " << header_->stringValue());
   tlvGroupParser_->pktIs(pkt_);
   tlvGroupParser_->offsetIs(offset_ + static_cast<std::uint32_t>(LdpPduHdr::wireBytes));
   tlvGroupParser_->sizeIs(size - static_cast<std::uint32_t>(LdpPduHdr::wireBytes));
   tlvGroupParser_->parseTlvGroup();
   if (!tlvGroupParser_->valid()) {
      result_.fault(LdpStatusCode::malformedTlv, Zon::String8("LDP PDU Messages are malformed"), trace);
   }
}

Zon::String8 LdpPduParser::stringValue() const {
   if (!validLdpPdu()) {
      return Zon::String8("Error LDP PDU: " + reason());
   }
   std::string out = header_->stringValue();
   for (std::uint32_t i = 0; i < messageNum(); ++i) {
      out += Zon::format("\n%d: ", i);
      if (auto msg = ldpMsgParserGet(pkt_, messageOffset(i))) {
         out += msg->stringValue();
      }
   }
   out += '\n';
   return Zon::String8(std::move(out));
}

Zon::Ptr<LdpPduParser> ldpPduParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset) {
   return Zon::validPtr(Zon::makePtr<LdpPduParser>(pkt, offset));
}

} // namespace Ldp
