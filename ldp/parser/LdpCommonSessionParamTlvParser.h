// The typed TLV parser of LdpCommonSessionParamTlv.
#pragma once

#include <cstdint>

#include "ldp/parser/LdpTypedTlvParser.h"
#include "ldp/wire/LdpTlv.h"

namespace Ldp {

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

extern template class LdpTypedTlvParser<LdpCommonSessionParamTlv>;

Zon::Ptr<LdpCommonSessionParamTlvParser> ldpCommonSessionParamTlvParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                               std::uint32_t offset);

} // namespace Ldp
