// The Label Withdraw message parser: a FEC TLV (the Wildcard FEC allowed) first,
// an optional Generic Label TLV second, an optional Status TLV anywhere.
#pragma once

#include <cstdint>

#include "ldp/parser/LdpLabelWithdrawReleaseMsgParser.h"

namespace Ldp {

class LdpLabelWithdrawMsgParser : public LdpLabelWithdrawReleaseMsgParser {
 public:
   using Ptr = Zon::Ptr<LdpLabelWithdrawMsgParser>;

   LdpLabelWithdrawMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);

   char const * fwkType() const noexcept override { return "Ldp::LdpLabelWithdrawMsgParser"; }
   // "LDP Label Withdraw Msg:\n   Msg Id: %d,   FEC: ..." and each present TLV,
   // or "Invalid LDP Label Withdraw Msg: " + reason.
   Zon::String8 stringValue() const override;

 protected:
   ~LdpLabelWithdrawMsgParser() override = default;
};

Zon::Ptr<LdpLabelWithdrawMsgParser> ldpLabelWithdrawMsgParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                     std::uint32_t offset);

} // namespace Ldp
