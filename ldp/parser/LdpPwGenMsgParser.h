// The Notification message parser, and the parser of the PW Status TLV that
// pseudowire status notifications carry.
#pragma once

#include <cstdint>

#include "ldp/parser/LdpLabelMsgParser.h"
#include "ldp/parser/LdpTlvParser.h"
#include "ldp/wire/LdpPwHdr.h"
#include "ldp/wire/LdpTlv.h"

namespace Ldp {

// The PW Status TLV at an offset, read in place. Like the typed TLV parsers:
// header2() exists only when the TLV's bytes, as far as its length field says,
// were received and cover LdpPwStatusTlv; without it the accessors answer 0.
// validate() is LdpPwStatusTlv's, also for a TLV received whole but shorter
// than the value type (its header alone decides then), success without a header
// and badTlvLength when the length runs past the received bytes.
class LdpPwStatusTlvParser : public LdpTlvParser {
 public:
   using Ptr = Zon::Ptr<LdpPwStatusTlvParser>;

   LdpPwStatusTlvParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset) : LdpTlvParser(pkt, offset) {}

   LdpPwStatusTlv * header2() const noexcept { return viewAs<LdpPwStatusTlv>(); }

   // The status word; 0 (pwForwarding) without the view.
   std::uint32_t status() const noexcept {
      LdpPwStatusTlv const * t = header2();
      return t ? t->status() : 0;
   }
   // True when every bit of `flags` (LdpPwStatusField's constants) is set.
   bool flag(std::uint32_t flags) const noexcept { return (status() & flags) == flags; }

   LdpStatusCode validate() const;
   // LdpPwStatusTlv's text form; empty when the TLV was not received whole.
   Zon::String8 stringValue() const;

 protected:
   ~LdpPwStatusTlvParser() override = default;

 private:
   // A TLV received whole but shorter than LdpPwStatusTlv: its header in an
   // otherwise zeroed value.
   bool shortTlv(LdpPwStatusTlv & standIn) const noexcept;
};

class LdpNotificationMsgParser : public LdpFecMsgParser {
 public:
   using Ptr = Zon::Ptr<LdpNotificationMsgParser>;

   LdpNotificationMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);

   LdpPwStatusTlv * msgPwStatusTlv() const noexcept { return msgPwStatusTlv_; }
   void msgPwStatusTlvIs(LdpPwStatusTlv * t) noexcept { msgPwStatusTlv_ = t; }

   char const * fwkType() const noexcept override { return "Ldp::LdpNotificationMsgParser"; }
   // "LDP Notification Msg:\n   Msg Id: %d," (with "   FEC: ..." for a PW
   // status notification) and each present TLV, or
   // "Invalid LDP Notification Msg: " + reason.
   Zon::String8 stringValue() const override;

 protected:
   ~LdpNotificationMsgParser() override = default;

 private:
   void handleInitialized();

   LdpPwStatusTlv * msgPwStatusTlv_ = nullptr;
};

Zon::Ptr<LdpPwStatusTlvParser> ldpPwStatusTlvParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);
Zon::Ptr<LdpNotificationMsgParser> ldpNotificationMsgParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                   std::uint32_t offset);

} // namespace Ldp
