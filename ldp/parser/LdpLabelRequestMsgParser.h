// The Label Request message parser: a FEC TLV first, and optionally a Hop Count
// and a Path Vector TLV anywhere.
#pragma once

#include <cstdint>

#include "ldp/parser/LdpFecMsgParser.h"
#include "ldp/wire/LdpTlv.h"

namespace Ldp {

class LdpLabelRequestMsgParser : public LdpFecMsgParser {
 public:
   using Ptr = Zon::Ptr<LdpLabelRequestMsgParser>;

   LdpLabelRequestMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);

   LdpHopCountTlv * msgHopCountTlv() const noexcept { return slotAs<LdpHopCountTlv>(Slot::hopCount); }
   LdpPathVectorTlv * msgPathVectorTlv() const noexcept { return slotAs<LdpPathVectorTlv>(Slot::pathVector); }

   void msgHopCountTlvIs(LdpHopCountTlv * t) noexcept { slotIs(Slot::hopCount, t); }
   void msgPathVectorTlvIs(LdpPathVectorTlv * t) noexcept { slotIs(Slot::pathVector, t); }

   char const * fwkType() const noexcept override { return "Ldp::LdpLabelRequestMsgParser"; }
   // "LDP Label Request Msg:\n   Msg Id: %d,   FEC: ..." and each present TLV,
   // or "Invalid LDP Label Request Msg: " + reason.
   Zon::String8 stringValue() const override;

 protected:
   ~LdpLabelRequestMsgParser() override = default;
};

Zon::Ptr<LdpLabelRequestMsgParser> ldpLabelRequestMsgParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                   std::uint32_t offset);

} // namespace Ldp
