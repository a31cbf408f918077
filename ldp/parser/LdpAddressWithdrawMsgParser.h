// The Address Withdraw message parser.
#pragma once

#include <cstdint>

#include "ldp/parser/LdpAddressListMsgParser.h"

namespace Ldp {

class LdpAddressWithdrawMsgParser : public LdpAddressListMsgParser {
 public:
   using Ptr = Zon::Ptr<LdpAddressWithdrawMsgParser>;

   LdpAddressWithdrawMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);

   char const * fwkType() const noexcept override { return "Ldp::LdpAddressWithdrawMsgParser"; }
   // "LDP Address Withdraw Msg:\n   Msg Id: %d," and the address list, or
   // "Invalid LDP Address Withdraw Msg: " + reason.
   Zon::String8 stringValue() const override;

 protected:
   ~LdpAddressWithdrawMsgParser() override = default;
};

Zon::Ptr<LdpAddressWithdrawMsgParser> ldpAddressWithdrawMsgParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                         std::uint32_t offset);

} // namespace Ldp
