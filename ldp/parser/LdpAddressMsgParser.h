// The Address message parser.
#pragma once

#include <cstdint>

#include "ldp/parser/LdpAddressListMsgParser.h"

namespace Ldp {

class LdpAddressMsgParser : public LdpAddressListMsgParser {
 public:
   using Ptr = Zon::Ptr<LdpAddressMsgParser>;

   LdpAddressMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);

   char const * fwkType() const noexcept override { return "Ldp::LdpAddressMsgParser"; }
   // "LDP Address Msg:\n   Msg Id: %d," and the address list, or
   // "Invalid LDP Address Msg: " + reason.
   Zon::String8 stringValue() const override;

 protected:
   ~LdpAddressMsgParser() override = default;
};

Zon::Ptr<LdpAddressMsgParser> ldpAddressMsgParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);

} // namespace Ldp
