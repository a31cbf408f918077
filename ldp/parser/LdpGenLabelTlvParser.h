// The typed TLV parser of LdpGenLabelTlv.
#pragma once

#include <cstdint>

#include "ldp/parser/LdpTypedTlvParser.h"
#include "ldp/wire/LdpTlv.h"

namespace Ldp {

class LdpGenLabelTlvParser : public LdpTypedTlvParser<LdpGenLabelTlv> {
 public:
   using Ptr = Zon::Ptr<LdpGenLabelTlvParser>;
   using LdpTypedTlvParser::LdpTypedTlvParser;
};

extern template class LdpTypedTlvParser<LdpGenLabelTlv>;

Zon::Ptr<LdpGenLabelTlvParser> ldpGenLabelTlvParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);

} // namespace Ldp
