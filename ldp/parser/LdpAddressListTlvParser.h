// The typed TLV parser of LdpAddressListTlv.
// Also the object that the Address and Address Withdraw parsers keep for their
// address list: it references the packet and the offset, the addresses stay in
// the packet.
#pragma once

#include <cstdint>

#include "ldp/parser/LdpTypedTlvParser.h"
#include "ldp/wire/LdpTlv.h"
#include "vorin/IpAddr.h"

namespace Ldp {

class LdpAddressListTlvParser : public LdpTypedTlvParser<LdpAddressListTlv> {
 public:
   using Ptr = Zon::Ptr<LdpAddressListTlvParser>;
   using LdpTypedTlvParser::LdpTypedTlvParser;

   // The family number as on the wire (1 IPv4, 2 IPv6).
   std::uint16_t family() const noexcept { return field([](auto const & t) { return t.family(); }); }
   unsigned numAddress() const noexcept { return field([](auto const & t) { return t.numAddress(); }); }
   // The i-th address from 0; i must be below numAddress() (asserted by the value
   // type). 0.0.0.0 without the view.
   Vorin::IpGenAddr address(unsigned i) const noexcept {
      return field([i](auto const & t) { return t.address(i); });
   }
};

extern template class LdpTypedTlvParser<LdpAddressListTlv>;

Zon::Ptr<LdpAddressListTlvParser> ldpAddressListTlvParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                 std::uint32_t offset);

} // namespace Ldp
