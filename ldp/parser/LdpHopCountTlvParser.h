// The typed TLV parser of LdpHopCountTlv.
#pragma once

#include <cstdint>

#include "ldp/parser/LdpTypedTlvParser.h"
#include "ldp/wire/LdpTlv.h"

namespace Ldp {

class LdpHopCountTlvParser : public LdpTypedTlvParser<LdpHopCountTlv> {
 public:
   using Ptr = Zon::Ptr<LdpHopCountTlvParser>;
   using LdpTypedTlvParser::LdpTypedTlvParser;
};

extern template class LdpTypedTlvParser<LdpHopCountTlv>;

Zon::Ptr<LdpHopCountTlvParser> ldpHopCountTlvParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);

} // namespace Ldp
