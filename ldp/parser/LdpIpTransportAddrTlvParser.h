// The typed TLV parser of LdpIpTransportAddrTlv.
#pragma once

#include <cstdint>

#include "ldp/parser/LdpTypedTlvParser.h"
#include "ldp/wire/LdpTlv.h"

namespace Ldp {

class LdpIpTransportAddrTlvParser : public LdpTypedTlvParser<LdpIpTransportAddrTlv> {
 public:
   using Ptr = Zon::Ptr<LdpIpTransportAddrTlvParser>;
   using LdpTypedTlvParser::LdpTypedTlvParser;
};

extern template class LdpTypedTlvParser<LdpIpTransportAddrTlv>;

Zon::Ptr<LdpIpTransportAddrTlvParser> ldpIpTransportAddrTlvParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                         std::uint32_t offset);

} // namespace Ldp
