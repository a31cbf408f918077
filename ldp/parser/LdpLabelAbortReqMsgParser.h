// The Label Abort Request message parser: a FEC TLV first and a Label Request
// Message ID TLV second.
#pragma once

#include <cstdint>

#include "ldp/parser/LdpFecMsgParser.h"
#include "ldp/wire/LdpTlv.h"

namespace Ldp {

class LdpLabelAbortReqMsgParser : public LdpFecMsgParser {
 public:
   using Ptr = Zon::Ptr<LdpLabelAbortReqMsgParser>;

   LdpLabelAbortReqMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);

   LdpLabelReqMsgIdTlv * msgReqMsgIdTlv() const noexcept { return slotAs<LdpLabelReqMsgIdTlv>(Slot::reqMsgId); }
   void msgReqMsgIdTlvIs(LdpLabelReqMsgIdTlv * t) noexcept { slotIs(Slot::reqMsgId, t); }

   char const * fwkType() const noexcept override { return "Ldp::LdpLabelAbortReqMsgParser"; }
   // "LDP Label Abort Request Msg:\n   Msg Id: %d,   FEC: ..." and the request
   // id, or "Invalid LDP Label Abort Request Msg: " + reason.
   Zon::String8 stringValue() const override;

 protected:
   ~LdpLabelAbortReqMsgParser() override = default;
};

Zon::Ptr<LdpLabelAbortReqMsgParser> ldpLabelAbortReqMsgParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                     std::uint32_t offset);

} // namespace Ldp
