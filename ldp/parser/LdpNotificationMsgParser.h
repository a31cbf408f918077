// The Notification message parser. Its TLVs stand at fixed places: a Status TLV
// first; for a pseudowire status notification then a PW Status TLV and a FEC TLV
// whose first element is a PWid element.
#pragma once

#include <cstdint>

#include "ldp/parser/LdpFecMsgParser.h"
#include "ldp/wire/LdpPwHdr.h"

namespace Ldp {

class LdpNotificationMsgParser : public LdpFecMsgParser {
 public:
   using Ptr = Zon::Ptr<LdpNotificationMsgParser>;

   LdpNotificationMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);

   LdpPwStatusTlv * msgPwStatusTlv() const noexcept { return slotAs<LdpPwStatusTlv>(Slot::pwStatus); }
   void msgPwStatusTlvIs(LdpPwStatusTlv * t) noexcept { slotIs(Slot::pwStatus, t); }

   char const * fwkType() const noexcept override { return "Ldp::LdpNotificationMsgParser"; }
   // "LDP Notification Msg:\n   Msg Id: %d," (with "   FEC: ..." for a PW
   // status notification) and each present TLV, or
   // "Invalid LDP Notification Msg: " + reason.
   Zon::String8 stringValue() const override;

 protected:
   ~LdpNotificationMsgParser() override = default;

 private:
   void handleInitialized();
};

Zon::Ptr<LdpNotificationMsgParser> ldpNotificationMsgParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                   std::uint32_t offset);

} // namespace Ldp
