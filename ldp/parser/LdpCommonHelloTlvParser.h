// The typed TLV parser of LdpCommonHelloTlv.
#pragma once

#include <cstdint>

#include "ldp/parser/LdpTypedTlvParser.h"
#include "ldp/wire/LdpTlv.h"

namespace Ldp {

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

extern template class LdpTypedTlvParser<LdpCommonHelloTlv>;

Zon::Ptr<LdpCommonHelloTlvParser> ldpCommonHelloTlvParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                 std::uint32_t offset);

} // namespace Ldp
