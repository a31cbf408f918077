#include "ldp/parser/LdpLabelMsgParser.h"

#include <string>

#include "zon/Assert.h"

namespace Ldp {

namespace {

constexpr auto missingMessageParams = LdpStatusCode::missingMessageParams;
constexpr auto malformedTlv = LdpStatusCode::malformedTlv;
constexpr auto unknownFec = LdpStatusCode::unknownFec;

} // namespace

// ---- shared pieces ---------------------------------------------------------

bool LdpFecMsgParser::fecMessageStepStart() {
   TRACE(ldpGenMsgParserTrace, traceFunction, fwkType() << "::handleInitialized");
   initialized_ = true;
   return messageStepStart();
}

bool LdpFecMsgParser::fecTlvStep(std::uint32_t i, FecValidity validity, char const * wildcardReason) {
   msgFecTlvIs(tlvAt(i));
   LdpFecTlvParser const & fec = *ldpFecTlvParserIs(pkt(), tlvOffsetAt(i), nullptr);
   if (validity == FecValidity::checked && !fecParserValidStep()) {
      return false;
   }
   if (wildcardReason && fec.hasWildcardFecElement()) {
      return fault(unknownFec, wildcardReason);
   }
   return true;
}

bool LdpFecMsgParser::firstFecTlvStep(std::uint32_t i, FecValidity validity, char const * wildcardReason) {
   if (i != 0) {
      return fault(missingMessageParams, "FecTlv is not the 1st TLV in the message");
   }
   return fecTlvStep(i, validity, wildcardReason);
}

bool LdpFecMsgParser::fecParserValidStep() {
   LdpFecTlvParser const & fec = *ldpFecTlvParser();
   return fec.valid() || faultFrom(fec);
}

LdpPathVectorTlv * LdpFecMsgParser::pathVectorStep(std::uint32_t i) {
   // The size as the 16-bit item size: a length that wraps it below 5 is empty.
   auto const size = static_cast<std::uint16_t>(tlvAt(i)->length() + LdpTlvHdr::tlvHdrSizeExclude);
   LdpPathVectorTlv * t = size >= 5 ? tlvAs<LdpPathVectorTlv>(i) : nullptr;
   if (!t) {
      fault(malformedTlv, "Invalid size for LdpPathVectorTlv");
      return nullptr;
   }
   return validated(t, "LdpPathVectorTlv validation failure") ? t : nullptr;
}

std::string LdpFecMsgParser::fecMessageText(char const * title) const {
   ZON_ASSERT(msgFecTlv());
   std::string s = title + msgIdText();
   s += "   FEC: ";
   if (ldpFecTlvParser()) {
      s += ldpFecTlvParser()->stringValue();
   }
   return s;
}

// ---- Label Mapping ---------------------------------------------------------

LdpLabelMappingMsgParser::LdpLabelMappingMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset)
    : LdpFecMsgParser(pkt, offset) {
   handleInitialized();
}

void LdpLabelMappingMsgParser::handleInitialized() {
   if (!fecMessageStepStart()) {
      return;
   }
   ZON_ASSERT_TEXT(msgHdr()->type() == LdpMsgType::LdpLabelMapping, "msgHdr_->type() == LdpLabelMapping_");
   if (tlvNum() < 2) {
      fault(missingMessageParams, "Message does not have at least 2 TLV");
      return;
   }
   for (std::uint32_t i = 0; i < tlvNum(); ++i) {
      switch (tlvAt(i)->type()) {
       case LdpTlvType::fecTlv:
         if (!firstFecTlvStep(i, FecValidity::checked, "LDP Mapping Msg can not have Wildcard FEC TLV")) {
            return;
         }
         break;
       case LdpTlvType::genLabelTlv:
         if (i != 1) {
            fault(missingMessageParams, "LdpGenLabelTlv is not the 2nd TLV in the message");
            return;
         }
         if (!fixedTlvStep(i, msgGenLabelTlv_, "Invalid size for LdpGenLabelTlv",
                           "LdpGenLabelTlv validation failure")) {
            return;
         }
         break;
       case LdpTlvType::labelReqMsgIdTlv:
         if (!fixedTlvStep(i, msgReqMsgIdTlv_, "Invalid size for LdpLabelReqMsgIdTlv",
                           "LdpLabelReqMsgIdTlv validation failure")) {
            return;
         }
         break;
       case LdpTlvType::hopCountTlv:
         if (!fixedTlvStep(i, msgHopCountTlv_, "Invalid size for LdpHopCountTlv",
                           "LdpHopCountTlv validation failure")) {
            return;
         }
         break;
       case LdpTlvType::pathVectorTlv: {
         auto * t = pathVectorStep(i);
         if (!t) {
            return;
         }
         msgPathVectorTlv_ = t;
         break;
       }
       case LdpTlvType::pwStatusTlv:
         if (!fixedTlvStep(i, msgPwStatusTlv_, "Invalid size for LdpPwStatusTlv",
                           "LdpPwStatusTlv validation failure")) {
            return;
         }
         break;
       default:
         break;
      }
   }
   if (!msgFecTlv()) {
      fault(missingMessageParams, "Missing LdpFecTlv");
   } else if (!msgGenLabelTlv_) {
      fault(missingMessageParams, "Missing LdpGenLabelTlv");
   }
}

Zon::String8 LdpLabelMappingMsgParser::stringValue() const {
   if (!validMsg()) {
      return Zon::String8("Invalid LDP Label Mapping Msg: " + reason());
   }
   std::string s = fecMessageText("LDP Label Mapping Msg:\n");
   ZON_ASSERT(msgGenLabelTlv());
   appendTlv(s, msgGenLabelTlv_);
   appendTlv(s, msgReqMsgIdTlv_);
   appendTlv(s, msgHopCountTlv_);
   appendTlv(s, msgPathVectorTlv_);
   appendTlv(s, msgPwStatusTlv_);
   return Zon::String8(std::move(s));
}

// ---- Label Request ---------------------------------------------------------

LdpLabelRequestMsgParser::LdpLabelRequestMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset)
    : LdpFecMsgParser(pkt, offset) {
   handleInitialized();
}

void LdpLabelRequestMsgParser::handleInitialized() {
   if (!fecMessageStepStart()) {
      return;
   }
   ZON_ASSERT_TEXT(msgHdr()->type() == LdpMsgType::LdpLabelRequest, "msgHdr_->type() == LdpLabelRequest_");
   if (tlvNum() < 1) {
      fault(missingMessageParams, "Message does not have at least 1 TLV");
      return;
   }
   for (std::uint32_t i = 0; i < tlvNum(); ++i) {
      switch (tlvAt(i)->type()) {
       case LdpTlvType::fecTlv:
         if (!firstFecTlvStep(i, FecValidity::checked, "LDP Request Msg can not have Wildcard FEC TLV")) {
            return;
         }
         break;
       case LdpTlvType::hopCountTlv:
         if (!fixedTlvStep(i, msgHopCountTlv_, "Invalid size for LdpHopCountTlv",
                           "LdpHopCountTlv validation failure")) {
            return;
         }
         break;
       case LdpTlvType::pathVectorTlv: {
         auto * t = pathVectorStep(i);
         if (!t) {
            return;
         }
         msgPathVectorTlv_ = t;
         break;
       }
       default:
         break;
      }
   }
   if (!msgFecTlv()) {
      fault(missingMessageParams, "Missing LdpFecTlv");
      return;
   }
   fecParserValidStep();
}

Zon::String8 LdpLabelRequestMsgParser::stringValue() const {
   if (!validMsg()) {
      return Zon::String8("Invalid LDP Label Request Msg: " + reason());
   }
   std::string s = fecMessageText("LDP Label Request Msg:\n");
   appendTlv(s, msgHopCountTlv_);
   appendTlv(s, msgPathVectorTlv_);
   return Zon::String8(std::move(s));
}

// ---- Label Withdraw and Label Release --------------------------------------

void LdpLabelWithdrawReleaseMsgParser::withdrawReleaseStep(LdpMsgType own, char const * typeAssertion,
                                                           FecValidity fecValidity) {
   if (!fecMessageStepStart()) {
      return;
   }
   ZON_ASSERT_TEXT(msgHdr()->type() == own, typeAssertion);
   if (tlvNum() < 1) {
      fault(missingMessageParams, "Message does not have at least 1 TLV");
      return;
   }
   for (std::uint32_t i = 0; i < tlvNum(); ++i) {
      switch (tlvAt(i)->type()) {
       case LdpTlvType::fecTlv:
         // Both accept the Wildcard element.
         if (!firstFecTlvStep(i, fecValidity, nullptr)) {
            return;
         }
         break;
       case LdpTlvType::genLabelTlv:
         if (i != 1) {
            fault(missingMessageParams, "Label Tlv is not the 2nd TLV in the message");
            return;
         }
         if (!fixedTlvStep(i, msgGenLabelTlv_, "Invalid size for LdpGenLabelTlv",
                           "LdpGenLabelTlv validation failure")) {
            return;
         }
         break;
       case LdpTlvType::statusTlv: {
         LdpStatusTlv * t = nullptr;
         bool const ok = fixedTlvStep(i, t, "Invalid size for LdpStatusTlv", "LdpStatusTlv validation failure");
         msgStatusTlvIs(t);
         if (!ok) {
            return;
         }
         break;
       }
       default:
         break;
      }
   }
   if (!msgFecTlv()) {
      fault(missingMessageParams, "Missing LdpFecTlv");
   }
}

Zon::String8 LdpLabelWithdrawReleaseMsgParser::withdrawReleaseText(char const * title,
                                                                    char const * invalidPrefix) const {
   if (!validMsg()) {
      return Zon::String8(invalidPrefix + reason());
   }
   std::string s = fecMessageText(title);
   appendTlv(s, msgGenLabelTlv_);
   appendTlv(s, msgStatusTlv());
   return Zon::String8(std::move(s));
}

LdpLabelWithdrawMsgParser::LdpLabelWithdrawMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset)
    : LdpLabelWithdrawReleaseMsgParser(pkt, offset) {
   withdrawReleaseStep(LdpMsgType::LdpLabelWithdraw, "msgHdr_->type() == LdpLabelWithdraw_", FecValidity::checked);
}

Zon::String8 LdpLabelWithdrawMsgParser::stringValue() const {
   return withdrawReleaseText("LDP Label Withdraw Msg:\n", "Invalid LDP Label Withdraw Msg: ");
}

LdpLabelReleaseMsgParser::LdpLabelReleaseMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset)
    : LdpLabelWithdrawReleaseMsgParser(pkt, offset) {
   withdrawReleaseStep(LdpMsgType::LdpLabelRelease, "msgHdr_->type() == LdpLabelRelease_", FecValidity::unchecked);
}

Zon::String8 LdpLabelReleaseMsgParser::stringValue() const {
   return withdrawReleaseText("LDP Label Release Msg:\n", "Invalid LDP Label Release Msg: ");
}

// ---- Label Abort Request ---------------------------------------------------

LdpLabelAbortReqMsgParser::LdpLabelAbortReqMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset)
    : LdpFecMsgParser(pkt, offset) {
   handleInitialized();
}

void LdpLabelAbortReqMsgParser::handleInitialized() {
   if (!fecMessageStepStart()) {
      return;
   }
   ZON_ASSERT_TEXT(msgHdr()->type() == LdpMsgType::LdpLabelAbortReq, "msgHdr_->type() == LdpLabelAbortReq_");
   if (tlvNum() < 2) {
      fault(missingMessageParams, "Message does not have at least 2 TLV");
      return;
   }
   for (std::uint32_t i = 0; i < tlvNum(); ++i) {
      switch (tlvAt(i)->type()) {
       case LdpTlvType::fecTlv:
         if (!firstFecTlvStep(i, FecValidity::checked, "LDP Abort Msg can not have Wildcard FEC TLV")) {
            return;
         }
         break;
       case LdpTlvType::labelReqMsgIdTlv:
         if (i != 1) {
            fault(missingMessageParams, "LdpLabelReqMsgIdTlv is not the 2nd TLV in the message");
            return;
         }
         if (!fixedTlvStep(i, msgReqMsgIdTlv_, "Invalid size for LdpLabelReqMsgIdTlv",
                           "LdpLabelReqMsgIdTlv validation failure")) {
            return;
         }
         break;
       default:
         break;
      }
   }
   if (!msgFecTlv()) {
      fault(missingMessageParams, "Missing LdpFecTlv");
   } else if (!msgReqMsgIdTlv_) {
      fault(missingMessageParams, "Missing LdpLabelReqMsgIdTlv");
   }
}

Zon::String8 LdpLabelAbortReqMsgParser::stringValue() const {
   if (!validMsg()) {
      return Zon::String8("Invalid LDP Label Abort Request Msg: " + reason());
   }
   std::string s = fecMessageText("LDP Label Abort Request Msg:\n");
   appendTlv(s, msgReqMsgIdTlv_);
   return Zon::String8(std::move(s));
}

// ---- factories -------------------------------------------------------------

Zon::Ptr<LdpLabelMappingMsgParser> ldpLabelMappingMsgParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                   std::uint32_t offset) {
   return Zon::validPtr(Zon::makePtr<LdpLabelMappingMsgParser>(pkt, offset));
}

Zon::Ptr<LdpLabelRequestMsgParser> ldpLabelRequestMsgParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                   std::uint32_t offset) {
   return Zon::validPtr(Zon::makePtr<LdpLabelRequestMsgParser>(pkt, offset));
}

Zon::Ptr<LdpLabelWithdrawMsgParser> ldpLabelWithdrawMsgParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                     std::uint32_t offset) {
   return Zon::validPtr(Zon::makePtr<LdpLabelWithdrawMsgParser>(pkt, offset));
}

Zon::Ptr<LdpLabelReleaseMsgParser> ldpLabelReleaseMsgParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                   std::uint32_t offset) {
   return Zon::validPtr(Zon::makePtr<LdpLabelReleaseMsgParser>(pkt, offset));
}

Zon::Ptr<LdpLabelAbortReqMsgParser> ldpLabelAbortReqMsgParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                     std::uint32_t offset) {
   return Zon::validPtr(Zon::makePtr<LdpLabelAbortReqMsgParser>(pkt, offset));
}

} // namespace Ldp
