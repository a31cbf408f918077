#include "ldp/parser/LdpTlvParser.h"

#include "ldp/parser/LdpPwStatusTlvParser.h"

#include "zon/Assert.h"

namespace Ldp {

LdpTlvParser::LdpTlvParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset) : pkt_(pkt), offset_(offset) {
   ZON_ASSERT(pkt_);
   handleHeader(LdpPktReader(*pkt_));
}

LdpTlvParser::LdpTlvParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset, LdpPktReader const & bound)
    : pkt_(pkt), offset_(offset) {
   ZON_ASSERT(pkt_);
   handleHeader(bound);
}

void LdpTlvParser::handleHeader(LdpPktReader const & bound) {
   // Callers build TLV parsers at offsets a group parser recorded; a header that
   // does not lie in the bound is left unset rather than read.
   header_ = bound.view<LdpTlvHdr>(offset_);
   if (header_) {
      tlv_ = bound.child(offset_, byteSize());
   } else {
      headerCut_ = std::uint64_t(offset_) + LdpTlvHdr::wireBytes <= pkt_->frontBytes();
   }
}

template <typename T>
bool LdpTypedTlvParser<T>::shortTlv(T & standIn) const noexcept {
   if (!received() || byteSize() >= sizeof(T)) {
      return false;
   }
   static_cast<LdpTlvHdr &>(standIn) = *header();
   return true;
}

template <typename T>
LdpStatusCode LdpTypedTlvParser<T>::validate() const {
   if (T const * t = header2()) {
      return t->validate();
   }
   if (T standIn; shortTlv(standIn)) {
      return standIn.validate();
   }
   // A TLV that runs past its bound (a length near 0xFFFF wraps the group
   // parser's 16-bit item size) is refused here, so that a caller cannot take a
   // TLV it can never read for a good one.
   return header() || headerCut() ? LdpStatusCode::badTlvLength : LdpStatusCode::success;
}

template <typename T>
Zon::String8 LdpTypedTlvParser<T>::stringValue() const {
   if (T const * t = header2()) {
      return t->stringValue();
   }
   if (T standIn; shortTlv(standIn)) {
      return standIn.stringValue();
   }
   return Zon::String8();
}

template class LdpTypedTlvParser<LdpCommonHelloTlv>;
template class LdpTypedTlvParser<LdpCommonSessionParamTlv>;
template class LdpTypedTlvParser<LdpStatusTlv>;
template class LdpTypedTlvParser<LdpGenLabelTlv>;
template class LdpTypedTlvParser<LdpLabelReqMsgIdTlv>;
template class LdpTypedTlvParser<LdpAddressListTlv>;
template class LdpTypedTlvParser<LdpIpTransportAddrTlv>;
template class LdpTypedTlvParser<LdpConfigSeqNumTlv>;
template class LdpTypedTlvParser<LdpIp6TransportAddrTlv>;
template class LdpTypedTlvParser<LdpHopCountTlv>;
template class LdpTypedTlvParser<LdpPathVectorTlv>;
template class LdpTypedTlvParser<LdpPwStatusTlv>;

void LdpStatusTlvParser::statusErrorIs(unsigned bit) noexcept {
   if (LdpStatusTlv * t = header2()) {
      t->statusErrorIs(bit);
   }
}

void LdpStatusTlvParser::statusForwardUnknownIs(unsigned bit) noexcept {
   if (LdpStatusTlv * t = header2()) {
      t->statusForwardUnknownIs(bit);
   }
}

namespace {

template <typename P>
Zon::Ptr<P> make(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset) {
   return Zon::validPtr(Zon::makePtr<P>(pkt, offset));
}

} // namespace

Zon::Ptr<LdpTlvParser> ldpTlvParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset) {
   return make<LdpTlvParser>(pkt, offset);
}
Zon::Ptr<LdpCommonHelloTlvParser> ldpCommonHelloTlvParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                 std::uint32_t offset) {
   return make<LdpCommonHelloTlvParser>(pkt, offset);
}
Zon::Ptr<LdpCommonSessionParamTlvParser> ldpCommonSessionParamTlvParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                               std::uint32_t offset) {
   return make<LdpCommonSessionParamTlvParser>(pkt, offset);
}
Zon::Ptr<LdpStatusTlvParser> ldpStatusTlvParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset) {
   return make<LdpStatusTlvParser>(pkt, offset);
}
Zon::Ptr<LdpGenLabelTlvParser> ldpGenLabelTlvParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset) {
   return make<LdpGenLabelTlvParser>(pkt, offset);
}
Zon::Ptr<LdpLabelReqMsgIdTlvParser> ldpLabelReqMsgIdTlvParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                     std::uint32_t offset) {
   return make<LdpLabelReqMsgIdTlvParser>(pkt, offset);
}
Zon::Ptr<LdpAddressListTlvParser> ldpAddressListTlvParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                 std::uint32_t offset) {
   return make<LdpAddressListTlvParser>(pkt, offset);
}
Zon::Ptr<LdpIpTransportAddrTlvParser> ldpIpTransportAddrTlvParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                         std::uint32_t offset) {
   return make<LdpIpTransportAddrTlvParser>(pkt, offset);
}
Zon::Ptr<LdpConfigSeqNumTlvParser> ldpConfigSeqNumTlvParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                   std::uint32_t offset) {
   return make<LdpConfigSeqNumTlvParser>(pkt, offset);
}
Zon::Ptr<LdpIp6TransportAddrTlvParser> ldpIp6TransportAddrTlvParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                           std::uint32_t offset) {
   return make<LdpIp6TransportAddrTlvParser>(pkt, offset);
}
Zon::Ptr<LdpHopCountTlvParser> ldpHopCountTlvParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset) {
   return make<LdpHopCountTlvParser>(pkt, offset);
}
Zon::Ptr<LdpPathVectorTlvParser> ldpPathVectorTlvParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                               std::uint32_t offset) {
   return make<LdpPathVectorTlvParser>(pkt, offset);
}
Zon::Ptr<LdpPwStatusTlvParser> ldpPwStatusTlvParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset) {
   return make<LdpPwStatusTlvParser>(pkt, offset);
}

} // namespace Ldp
