// The parser of the PW Status TLV that pseudowire status notifications and label
// mappings carry: a typed TLV parser whose value type is LdpPwStatusTlv.
#pragma once

#include <cstdint>

#include "ldp/parser/LdpTypedTlvParser.h"
#include "ldp/wire/LdpPwHdr.h"

namespace Ldp {

class LdpPwStatusTlvParser : public LdpTypedTlvParser<LdpPwStatusTlv> {
 public:
   using Ptr = Zon::Ptr<LdpPwStatusTlvParser>;
   using LdpTypedTlvParser::LdpTypedTlvParser;

   // The status word; 0 (pwForwarding) without the view.
   std::uint32_t status() const noexcept { return field([](auto const & t) { return t.status(); }); }
   // True when every bit of `flags` (LdpPwStatusField's constants) is set.
   bool flag(std::uint32_t flags) const noexcept { return (status() & flags) == flags; }
};

extern template class LdpTypedTlvParser<LdpPwStatusTlv>;

Zon::Ptr<LdpPwStatusTlvParser> ldpPwStatusTlvParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);

} // namespace Ldp
