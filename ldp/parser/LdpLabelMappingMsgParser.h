// The Label Mapping message parser: a FEC TLV first, a Generic Label TLV second,
// and optionally a Label Request Message ID, Hop Count, Path Vector and PW Status
// TLV anywhere.
#pragma once

#include <cstdint>

#include "ldp/parser/LdpFecMsgParser.h"
#include "ldp/wire/LdpPwHdr.h"
#include "ldp/wire/LdpTlv.h"

namespace Ldp {

class LdpLabelMappingMsgParser : public LdpFecMsgParser {
 public:
   using Ptr = Zon::Ptr<LdpLabelMappingMsgParser>;

   LdpLabelMappingMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);

   LdpGenLabelTlv * msgGenLabelTlv() const noexcept { return slotAs<LdpGenLabelTlv>(Slot::genLabel); }
   LdpLabelReqMsgIdTlv * msgReqMsgIdTlv() const noexcept { return slotAs<LdpLabelReqMsgIdTlv>(Slot::reqMsgId); }
   LdpHopCountTlv * msgHopCountTlv() const noexcept { return slotAs<LdpHopCountTlv>(Slot::hopCount); }
   LdpPathVectorTlv * msgPathVectorTlv() const noexcept { return slotAs<LdpPathVectorTlv>(Slot::pathVector); }
   LdpPwStatusTlv * msgPwStatusTlv() const noexcept { return slotAs<LdpPwStatusTlv>(Slot::pwStatus); }

   void msgGenLabelTlvIs(LdpGenLabelTlv * t) noexcept { slotIs(Slot::genLabel, t); }
   void msgReqMsgIdTlvIs(LdpLabelReqMsgIdTlv * t) noexcept { slotIs(Slot::reqMsgId, t); }
   void msgHopCountTlvIs(LdpHopCountTlv * t) noexcept { slotIs(Slot::hopCount, t); }
   void msgPathVectorTlvIs(LdpPathVectorTlv * t) noexcept { slotIs(Slot::pathVector, t); }
   void msgPwStatusTlvIs(LdpPwStatusTlv * t) noexcept { slotIs(Slot::pwStatus, t); }

   char const * fwkType() const noexcept override { return "Ldp::LdpLabelMappingMsgParser"; }
   // "LDP Label Mapping Msg:\n   Msg Id: %d,   FEC: ..." and each present TLV, or
   // "Invalid LDP Label Mapping Msg: " + reason.
   Zon::String8 stringValue() const override;

 protected:
   ~LdpLabelMappingMsgParser() override = default;
};

Zon::Ptr<LdpLabelMappingMsgParser> ldpLabelMappingMsgParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                   std::uint32_t offset);

} // namespace Ldp
