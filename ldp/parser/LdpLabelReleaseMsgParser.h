// The Label Release message parser: like Label Withdraw, except that the FEC TLV
// parser's validity is not looked at: a Release whose FEC TLV is malformed is
// still a good message, and the caller reads ldpFecTlvParser() itself.
#pragma once

#include <cstdint>

#include "ldp/parser/LdpLabelWithdrawReleaseMsgParser.h"

namespace Ldp {

class LdpLabelReleaseMsgParser : public LdpLabelWithdrawReleaseMsgParser {
 public:
   using Ptr = Zon::Ptr<LdpLabelReleaseMsgParser>;

   LdpLabelReleaseMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);

   char const * fwkType() const noexcept override { return "Ldp::LdpLabelReleaseMsgParser"; }
   // "LDP Label Release Msg:\n   Msg Id: %d,   FEC: ..." and each present TLV,
   // or "Invalid LDP Label Release Msg: " + reason.
   Zon::String8 stringValue() const override;

 protected:
   ~LdpLabelReleaseMsgParser() override = default;
};

Zon::Ptr<LdpLabelReleaseMsgParser> ldpLabelReleaseMsgParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                   std::uint32_t offset);

} // namespace Ldp
