// The entry point of the receive path: checks the PDU header at an offset of a
// received buffer and splits the PDU body into messages. The message parsers are
// applied to messageOffset(i) by the caller. Parsing happens in the constructor;
// afterwards the object is only read.
#pragma once

#include <cstdint>

#include "ldp/wire/LdpProtoParam.h"
#include "ldp/parser/LdpParseFault.h"
#include "ldp/parser/LdpTlvGroupParser.h"
#include "ldp/wire/LdpHdr.h"
#include "vorin/Pkt.h"
#include "zon/BlockPool.h"
#include "zon/Ptr.h"

namespace Ldp {

class LdpPduParser : public Zon::PtrInterface, public Zon::PoolAllocated {
 public:
   using Ptr = Zon::Ptr<LdpPduParser>;

   // The largest PDU accepted, whatever maximum the session negotiated: the
   // size of a packet buffer.
   static constexpr std::uint32_t maxPduSize = LdpProtoParam::ldpPktBufferSize;
   // A PDU header plus one message header: the least a PDU can hold.
   static constexpr std::uint32_t minPduBytes = LdpPduHdr::wireBytes + LdpMsgHdr::wireBytes;

   LdpPduParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);

   Zon::Ptr<Vorin::Pkt> const & pkt() const noexcept { return pkt_; }
   std::uint32_t offset() const noexcept { return offset_; }
   // The header laid over the buffer; null when its ten bytes were not received.
   LdpPduHdr const * header() const noexcept { return header_; }
   LdpStatusCode statusCode() const noexcept { return result_.statusCode(); }
   Zon::String8 const & reason() const noexcept { return result_.reason(); }
   Zon::Ptr<LdpTlvGroupParser> const & tlvGroupParser() const noexcept { return tlvGroupParser_; }
   bool initialized() const noexcept { return initialized_; }

   // Header values; 0 when the header was not received.
   std::uint16_t version() const noexcept { return header() ? header()->version() : 0; }
   std::uint16_t length() const noexcept { return header() ? header()->length() : 0; }
   std::uint16_t totalLength() const noexcept { return header() ? header()->totalLength() : 0; }
   LdpIdentifier ldpIdentifier() const noexcept { return header() ? header()->ldpIdentifier() : LdpIdentifier(); }

   bool validLdpPdu() const noexcept { return result_.ok(); }
   std::uint32_t messageNum() const noexcept { return tlvGroupParser_->tlvNum(); }
   std::uint32_t messageOffset(std::uint32_t i) const noexcept { return tlvGroupParser_->tlvOffset(i); }

   void statusCodeIs(LdpStatusCode c) noexcept { result_.statusCodeIs(c); }
   void reasonIs(Zon::String8 r) { result_.reasonIs(std::move(r)); }
   void headerIs(LdpPduHdr const * h) noexcept { header_ = h; }
   void initializedIs(bool b) noexcept { initialized_ = b; }

   // The header and every message's parser text, or "Error LDP PDU: " + reason.
   Zon::String8 stringValue() const;

 private:
   void handleHeader();
   void handleInitialized();

   Zon::Ptr<Vorin::Pkt> pkt_;
   std::uint32_t offset_;
   LdpPduHdr const * header_ = nullptr;
   LdpParseFault result_;
   Zon::Ptr<LdpTlvGroupParser> tlvGroupParser_;
   bool initialized_ = false;
};

Zon::Ptr<LdpPduParser> ldpPduParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);

} // namespace Ldp
