// The typed TLV parser of LdpPathVectorTlv.
#pragma once

#include <cstdint>

#include "ldp/parser/LdpTypedTlvParser.h"
#include "ldp/wire/LdpTlv.h"

namespace Ldp {

class LdpPathVectorTlvParser : public LdpTypedTlvParser<LdpPathVectorTlv> {
 public:
   using Ptr = Zon::Ptr<LdpPathVectorTlvParser>;
   using LdpTypedTlvParser::LdpTypedTlvParser;

   unsigned lsrIdNum() const noexcept { return field([](auto const & t) { return t.lsrIdNum(); }); }
};

extern template class LdpTypedTlvParser<LdpPathVectorTlv>;

Zon::Ptr<LdpPathVectorTlvParser> ldpPathVectorTlvParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                               std::uint32_t offset);

} // namespace Ldp
