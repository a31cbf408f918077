// What the Label Withdraw and Label Release message parsers share: a FEC TLV
// first, an optional Generic Label TLV second, an optional Status TLV anywhere.
#pragma once

#include <cstdint>

#include "ldp/parser/LdpFecMsgParser.h"
#include "ldp/wire/LdpTlv.h"

namespace Ldp {

class LdpLabelWithdrawReleaseMsgParser : public LdpFecMsgParser {
 public:
   LdpGenLabelTlv * msgGenLabelTlv() const noexcept { return slotAs<LdpGenLabelTlv>(Slot::genLabel); }
   void msgGenLabelTlvIs(LdpGenLabelTlv * t) noexcept { slotIs(Slot::genLabel, t); }

 protected:
   LdpLabelWithdrawReleaseMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset)
       : LdpFecMsgParser(pkt, offset) {}
   ~LdpLabelWithdrawReleaseMsgParser() override = default;

   // "<title>   Msg Id: %d,   FEC: ..." and each present TLV, or
   // `invalidPrefix` + reason.
   Zon::String8 withdrawReleaseText(char const * title, char const * invalidPrefix) const;
};

} // namespace Ldp
