// TLV parsers: one TLV of a received buffer, addressed by offset and read in place.
// LdpTlvParser reads the common header; each typed parser sees the same bytes as
// its TLV value type (header2()) and answers that type's fields, validate() and
// text form.
//
// Nothing here reads outside the received bytes. The header view exists only when
// the TLV's four header bytes were received, header2() only when the TLV's bytes,
// as far as its own length field says, were received and cover the value type.
// Without a view every accessor answers 0 (false, or the empty string for
// stringValue()), with one exception: validate() of a TLV whose header was
// received but whose length claims bytes that were not is badTlvLength. A TLV
// received whole but shorter than its value type still validates and prints as
// its value type says (its header alone decides that).
#pragma once

#include <cstdint>
#include <utility>

#include "ldp/parser/LdpPktReader.h"
#include "ldp/wire/LdpHdr.h"
#include "ldp/wire/LdpIdentifier.h"
#include "ldp/wire/LdpTlv.h"
#include "ldp/wire/LdpWireEnums.h"
#include "vorin/IpAddr.h"
#include "vorin/Pkt.h"
#include "zon/Ptr.h"
#include "zon/String.h"

namespace Ldp {

class LdpTlvParser : public Zon::PtrInterface {
 public:
   using Ptr = Zon::Ptr<LdpTlvParser>;

   LdpTlvParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);

   Zon::Ptr<Vorin::Pkt> const & pkt() const noexcept { return pkt_; }
   std::uint32_t offset() const noexcept { return offset_; }
   // The TLV header; null when its four bytes were not received.
   LdpTlvHdr * header() const noexcept { return header_; }

   LdpTlvType type() const noexcept { return header_ ? header_->type() : LdpTlvType(0); }
   bool unknown() const noexcept { return header_ && header_->unknown(); }
   bool forwardUnknown() const noexcept { return header_ && header_->forwardUnknown(); }
   std::uint16_t length() const noexcept { return header_ ? header_->length() : 0; }

 protected:
   ~LdpTlvParser() override = default;

   // True when the whole TLV, header and value as far as its length field says,
   // was received.
   bool received() const noexcept;
   // The TLV seen as T; null unless the whole TLV was received and covers T.
   template <typename T>
   T * viewAs() const noexcept {
      if (!header_) {
         return nullptr;
      }
      return LdpPktReader(*pkt_).view<T>(offset_, byteSize());
   }
   // Header and value as the length field says, without the 16-bit wrap of
   // totalLength(): a length of 0xFFFC claims 65536 bytes, not 0.
   // Needs the header.
   std::uint32_t byteSize() const noexcept {
      return std::uint32_t(header_->length()) + LdpTlvHdr::tlvHdrSizeExclude;
   }

 private:
   void handleHeader();

   Zon::Ptr<Vorin::Pkt> pkt_;
   std::uint32_t offset_;
   LdpTlvHdr * header_ = nullptr;
};

// The part every typed parser shares: header2(), validate() and stringValue() of
// the value type T.
template <typename T>
class LdpTypedTlvParser : public LdpTlvParser {
 public:
   using TlvType = T;

   // The TLV seen as T; null unless its bytes were received and cover T.
   T * header2() const noexcept { return viewAs<T>(); }

   // T's validate(); success (0) without a header, badTlvLength when the TLV's
   // length runs past the received bytes.
   LdpStatusCode validate() const;
   // T's text form; empty when the TLV was not received whole.
   Zon::String8 stringValue() const;

 protected:
   using LdpTlvParser::LdpTlvParser;
   ~LdpTypedTlvParser() override = default;

   // The field that `get` reads from header2(), or `none` without the view.
   template <typename F, typename R = decltype(std::declval<F>()(std::declval<T const &>()))>
   R field(F get, R none = R()) const noexcept {
      T const * t = header2();
      return t ? get(*t) : none;
   }

 private:
   // A TLV received whole but shorter than T: its header in an otherwise zeroed T,
   // whose validate() and text form then depend on the header alone.
   bool shortTlv(T & standIn) const noexcept;
};

class LdpCommonHelloTlvParser : public LdpTypedTlvParser<LdpCommonHelloTlv> {
 public:
   using Ptr = Zon::Ptr<LdpCommonHelloTlvParser>;
   using LdpTypedTlvParser::LdpTypedTlvParser;

   std::uint16_t holdTime() const noexcept { return field([](auto const & t) { return t.holdTime(); }); }
   bool targetedHello() const noexcept { return field([](auto const & t) { return t.targetedHello(); }); }
   bool requestSendTargetedHello() const noexcept {
      return field([](auto const & t) { return t.requestSendTargetedHello(); });
   }
};

class LdpCommonSessionParamTlvParser : public LdpTypedTlvParser<LdpCommonSessionParamTlv> {
 public:
   using Ptr = Zon::Ptr<LdpCommonSessionParamTlvParser>;
   using LdpTypedTlvParser::LdpTypedTlvParser;

   std::uint16_t protocolVersion() const noexcept {
      return field([](auto const & t) { return t.protocolVersion(); });
   }
   std::uint16_t keepAliveTime() const noexcept { return field([](auto const & t) { return t.keepAliveTime(); }); }
   std::uint16_t maxPduLength() const noexcept { return field([](auto const & t) { return t.maxPduLength(); }); }
   LdpIdentifier recvLdpIdentifier() const noexcept {
      return field([](auto const & t) { return t.recvLdpIdentifier(); });
   }
};

class LdpStatusTlvParser : public LdpTypedTlvParser<LdpStatusTlv> {
 public:
   using Ptr = Zon::Ptr<LdpStatusTlvParser>;
   using LdpTypedTlvParser::LdpTypedTlvParser;

   // E (bit 31) and F (bit 30) of the status word. The setters write the low bit
   // of their argument into the received buffer, keeping the other 31 bits.
   bool statusError() const noexcept { return field([](auto const & t) { return t.statusError(); }); }
   void statusErrorIs(unsigned bit) noexcept;
   bool statusForwardUnknown() const noexcept {
      return field([](auto const & t) { return t.statusForwardUnknown(); });
   }
   void statusForwardUnknownIs(unsigned bit) noexcept;
   // The low 30 bits of the status word.
   LdpStatusCode statusData() const noexcept { return field([](auto const & t) { return t.statusData(); }); }
   std::uint32_t msgId() const noexcept { return field([](auto const & t) { return t.msgId(); }); }
   LdpMsgType msgType() const noexcept { return field([](auto const & t) { return t.msgType(); }); }
};

class LdpGenLabelTlvParser : public LdpTypedTlvParser<LdpGenLabelTlv> {
 public:
   using Ptr = Zon::Ptr<LdpGenLabelTlvParser>;
   using LdpTypedTlvParser::LdpTypedTlvParser;
};

class LdpLabelReqMsgIdTlvParser : public LdpTypedTlvParser<LdpLabelReqMsgIdTlv> {
 public:
   using Ptr = Zon::Ptr<LdpLabelReqMsgIdTlvParser>;
   using LdpTypedTlvParser::LdpTypedTlvParser;

   std::uint32_t reqMsgId() const noexcept { return field([](auto const & t) { return t.reqMsgId(); }); }
};

// Also the object that the Address and Address Withdraw parsers keep for their
// address list: it references the packet and the offset, the addresses stay in
// the packet.
class LdpAddressListTlvParser : public LdpTypedTlvParser<LdpAddressListTlv> {
 public:
   using Ptr = Zon::Ptr<LdpAddressListTlvParser>;
   using LdpTypedTlvParser::LdpTypedTlvParser;

   // The family number as on the wire (1 IPv4, 2 IPv6).
   std::uint16_t family() const noexcept { return field([](auto const & t) { return t.family(); }); }
   unsigned numAddress() const noexcept { return field([](auto const & t) { return t.numAddress(); }); }
   // The i-th address from 0; i must be below numAddress() (asserted by the value
   // type). 0.0.0.0 without the view.
   Vorin::IpGenAddr address(unsigned i) const noexcept {
      return field([i](auto const & t) { return t.address(i); });
   }
};

class LdpIpTransportAddrTlvParser : public LdpTypedTlvParser<LdpIpTransportAddrTlv> {
 public:
   using Ptr = Zon::Ptr<LdpIpTransportAddrTlvParser>;
   using LdpTypedTlvParser::LdpTypedTlvParser;
};

class LdpConfigSeqNumTlvParser : public LdpTypedTlvParser<LdpConfigSeqNumTlv> {
 public:
   using Ptr = Zon::Ptr<LdpConfigSeqNumTlvParser>;
   using LdpTypedTlvParser::LdpTypedTlvParser;

   std::uint32_t configSeqNum() const noexcept { return field([](auto const & t) { return t.configSeqNum(); }); }
};

class LdpIp6TransportAddrTlvParser : public LdpTypedTlvParser<LdpIp6TransportAddrTlv> {
 public:
   using Ptr = Zon::Ptr<LdpIp6TransportAddrTlvParser>;
   using LdpTypedTlvParser::LdpTypedTlvParser;
};

class LdpHopCountTlvParser : public LdpTypedTlvParser<LdpHopCountTlv> {
 public:
   using Ptr = Zon::Ptr<LdpHopCountTlvParser>;
   using LdpTypedTlvParser::LdpTypedTlvParser;
};

class LdpPathVectorTlvParser : public LdpTypedTlvParser<LdpPathVectorTlv> {
 public:
   using Ptr = Zon::Ptr<LdpPathVectorTlvParser>;
   using LdpTypedTlvParser::LdpTypedTlvParser;

   unsigned lsrIdNum() const noexcept { return field([](auto const & t) { return t.lsrIdNum(); }); }
};

extern template class LdpTypedTlvParser<LdpCommonHelloTlv>;
extern template class LdpTypedTlvParser<LdpCommonSessionParamTlv>;
extern template class LdpTypedTlvParser<LdpStatusTlv>;
extern template class LdpTypedTlvParser<LdpGenLabelTlv>;
extern template class LdpTypedTlvParser<LdpLabelReqMsgIdTlv>;
extern template class LdpTypedTlvParser<LdpAddressListTlv>;
extern template class LdpTypedTlvParser<LdpIpTransportAddrTlv>;
extern template class LdpTypedTlvParser<LdpConfigSeqNumTlv>;
extern template class LdpTypedTlvParser<LdpIp6TransportAddrTlv>;
extern template class LdpTypedTlvParser<LdpHopCountTlv>;
extern template class LdpTypedTlvParser<LdpPathVectorTlv>;

Zon::Ptr<LdpTlvParser> ldpTlvParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);
Zon::Ptr<LdpCommonHelloTlvParser> ldpCommonHelloTlvParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                 std::uint32_t offset);
Zon::Ptr<LdpCommonSessionParamTlvParser> ldpCommonSessionParamTlvParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                               std::uint32_t offset);
Zon::Ptr<LdpStatusTlvParser> ldpStatusTlvParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);
Zon::Ptr<LdpGenLabelTlvParser> ldpGenLabelTlvParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);
Zon::Ptr<LdpLabelReqMsgIdTlvParser> ldpLabelReqMsgIdTlvParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                     std::uint32_t offset);
Zon::Ptr<LdpAddressListTlvParser> ldpAddressListTlvParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                 std::uint32_t offset);
Zon::Ptr<LdpIpTransportAddrTlvParser> ldpIpTransportAddrTlvParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                         std::uint32_t offset);
Zon::Ptr<LdpConfigSeqNumTlvParser> ldpConfigSeqNumTlvParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                   std::uint32_t offset);
Zon::Ptr<LdpIp6TransportAddrTlvParser> ldpIp6TransportAddrTlvParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                           std::uint32_t offset);
Zon::Ptr<LdpHopCountTlvParser> ldpHopCountTlvParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);
Zon::Ptr<LdpPathVectorTlvParser> ldpPathVectorTlvParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                               std::uint32_t offset);

} // namespace Ldp
