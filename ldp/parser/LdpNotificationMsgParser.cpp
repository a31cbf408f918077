#include "ldp/parser/LdpNotificationMsgParser.h"

#include <string>

#include "ldp/parser/LdpPwStatusTlvParser.h"
#include "zon/Assert.h"

namespace Ldp {

namespace {

constexpr auto missingMessageParams = LdpStatusCode::missingMessageParams;

} // namespace

// ---- Notification ----------------------------------------------------------

LdpNotificationMsgParser::LdpNotificationMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset)
    : LdpFecMsgParser(pkt, offset) {
   handleInitialized();
}

// The TLVs stand at fixed places: Status first; for a PW status notification
// then PW Status and FEC.
void LdpNotificationMsgParser::handleInitialized() {
   if (!fecMessageStepStart()) {
      return;
   }
   ZON_ASSERT_TEXT(msgHdr()->type() == LdpMsgType::LdpNotification, "msgHdr_->type() == LdpNotification_");
   if (tlvNum() == 0) {
      fault(missingMessageParams, "Missing Status TLV");
      return;
   }
   if (tlvHdrAt(0).type() != LdpTlvType::statusTlv) {
      fault(missingMessageParams, "1st TLV is not Status TLV");
      return;
   }
   auto * status = sizedTlv<LdpStatusTlv>(0, "Status TLV is not the right size");
   if (!status) {
      return;
   }
   // statusData() is the status word without its E and F bits.
   if (status->statusData() != LdpStatusCode::pwStatus) {
      msgStatusTlvIs(status);
      statusCodeIs(LdpStatusCode::success);
      return;
   }
   if (tlvNum() < 3) {
      fault(missingMessageParams, "Missing PW Status TLVs");
      return;
   }
   if (tlvHdrAt(1).type() != LdpTlvType::pwStatusTlv) {
      fault(missingMessageParams, "2nd TLV is not PW Status TLV");
      return;
   }
   auto const pwStatus = Zon::validPtr(Zon::makePtr<LdpPwStatusTlvParser>(pkt(), tlvOffsetAt(1), reader()));
   if (LdpStatusCode const code = pwStatus->validate(); code != LdpStatusCode::success) {
      fault(code, "LdpPwStatusTlv validation failure");
      return;
   }
   if (tlvHdrAt(2).type() != LdpTlvType::fecTlv) {
      fault(missingMessageParams, "FecTlv is not the 3rd TLV in the message");
      return;
   }
   if (!fecTlvStep(2, FecValidity::checked, nullptr)) {
      return;
   }
   LdpFecTlvParser const & fec = *ldpFecTlvParser();
   if (fec.fecElementNum() == 0) {
      fault(missingMessageParams, "PW FEC TLV has no FEC elements");
      return;
   }
   LdpFecTlvParser::ElementPtr const first = fec.fecElement(0);
   if (!first || first->type() != LdpFecElementType::pwIdElement) {
      fault(missingMessageParams, "PW FEC TLV element is not PWID FEC element");
      return;
   }
   msgPwStatusTlvIs(pwStatus->header2());
   msgStatusTlvIs(status);
   statusCodeIs(LdpStatusCode::success);
}

Zon::String8 LdpNotificationMsgParser::stringValue() const {
   if (!validMsg()) {
      return Zon::String8("Invalid LDP Notification Msg: " + reason());
   }
   std::string s = msgFecTlv() ? fecMessageText("LDP Notification Msg:\n") : "LDP Notification Msg:\n" + msgIdText();
   appendTlv(s, msgStatusTlv());
   appendTlv(s, msgPwStatusTlv());
   return Zon::String8(std::move(s));
}

// ---- factories -------------------------------------------------------------

Zon::Ptr<LdpNotificationMsgParser> ldpNotificationMsgParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                   std::uint32_t offset) {
   return Zon::validPtr(Zon::makePtr<LdpNotificationMsgParser>(pkt, offset));
}

} // namespace Ldp
