// The typed TLV parser of LdpConfigSeqNumTlv.
#pragma once

#include <cstdint>

#include "ldp/parser/LdpTypedTlvParser.h"
#include "ldp/wire/LdpTlv.h"

namespace Ldp {

class LdpConfigSeqNumTlvParser : public LdpTypedTlvParser<LdpConfigSeqNumTlv> {
 public:
   using Ptr = Zon::Ptr<LdpConfigSeqNumTlvParser>;
   using LdpTypedTlvParser::LdpTypedTlvParser;

   std::uint32_t configSeqNum() const noexcept { return field([](auto const & t) { return t.configSeqNum(); }); }
};

extern template class LdpTypedTlvParser<LdpConfigSeqNumTlv>;

Zon::Ptr<LdpConfigSeqNumTlvParser> ldpConfigSeqNumTlvParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                   std::uint32_t offset);

} // namespace Ldp
