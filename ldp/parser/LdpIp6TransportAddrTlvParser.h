// The typed TLV parser of LdpIp6TransportAddrTlv.
#pragma once

#include <cstdint>

#include "ldp/parser/LdpTypedTlvParser.h"
#include "ldp/wire/LdpTlv.h"

namespace Ldp {

class LdpIp6TransportAddrTlvParser : public LdpTypedTlvParser<LdpIp6TransportAddrTlv> {
 public:
   using Ptr = Zon::Ptr<LdpIp6TransportAddrTlvParser>;
   using LdpTypedTlvParser::LdpTypedTlvParser;
};

extern template class LdpTypedTlvParser<LdpIp6TransportAddrTlv>;

Zon::Ptr<LdpIp6TransportAddrTlvParser> ldpIp6TransportAddrTlvParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                           std::uint32_t offset);

} // namespace Ldp
