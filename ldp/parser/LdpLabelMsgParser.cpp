// The label messages' parsers: each message type is a table of the TLVs it names,
// walked by LdpFecMsgParser::labelMessageStep.
#include "ldp/parser/LdpLabelMsgParser.h"

#include <string>

#include "zon/Assert.h"

namespace Ldp {

namespace {

using Slot = LdpFecMsgParser::Slot;
using FecValidity = LdpFecMsgParser::FecValidity;

template <typename T>
LdpStatusCode validateAs(LdpTlvHdr const & t) {
   return static_cast<T const &>(t).validate();
}

// A TLV of type T checked by `size`, filling `slot`.
template <typename T>
constexpr LdpLabelTlvRule sizedRule(LdpTlvType type, Slot slot, LdpTlvSize size, char const * sizeReason,
                                    char const * valueReason) {
   return {.type = type,
           .slot = slot,
           .size = size,
           .validate = &validateAs<T>,
           .sizeReason = sizeReason,
           .valueReason = valueReason};
}

// The rows the label messages share.
constexpr LdpLabelTlvRule fecFirst = LdpLabelTlvRule{.type = LdpTlvType::fecTlv, .slot = Slot::fec}
                                         .at(0, "FecTlv is not the 1st TLV in the message")
                                         .mandatory("Missing LdpFecTlv");
constexpr LdpLabelTlvRule genLabel =
    sizedRule<LdpGenLabelTlv>(LdpTlvType::genLabelTlv, Slot::genLabel, LdpTlvSize::exactlyOf<LdpGenLabelTlv>(),
                              "Invalid size for LdpGenLabelTlv", "LdpGenLabelTlv validation failure");
constexpr LdpLabelTlvRule reqMsgId = sizedRule<LdpLabelReqMsgIdTlv>(
    LdpTlvType::labelReqMsgIdTlv, Slot::reqMsgId, LdpTlvSize::exactlyOf<LdpLabelReqMsgIdTlv>(),
    "Invalid size for LdpLabelReqMsgIdTlv", "LdpLabelReqMsgIdTlv validation failure");
constexpr LdpLabelTlvRule hopCount =
    sizedRule<LdpHopCountTlv>(LdpTlvType::hopCountTlv, Slot::hopCount, LdpTlvSize::exactlyOf<LdpHopCountTlv>(),
                              "Invalid size for LdpHopCountTlv", "LdpHopCountTlv validation failure");
constexpr LdpLabelTlvRule pathVector = sizedRule<LdpPathVectorTlv>(
    LdpTlvType::pathVectorTlv, Slot::pathVector, LdpTlvSize::notEmptyOf<LdpPathVectorTlv>(),
    "Invalid size for LdpPathVectorTlv", "LdpPathVectorTlv validation failure");
constexpr LdpLabelTlvRule pwStatus =
    sizedRule<LdpPwStatusTlv>(LdpTlvType::pwStatusTlv, Slot::pwStatus, LdpTlvSize::exactlyOf<LdpPwStatusTlv>(),
                              "Invalid size for LdpPwStatusTlv", "LdpPwStatusTlv validation failure");
constexpr LdpLabelTlvRule status =
    sizedRule<LdpStatusTlv>(LdpTlvType::statusTlv, Slot::status, LdpTlvSize::exactlyOf<LdpStatusTlv>(),
                            "Invalid size for LdpStatusTlv", "LdpStatusTlv validation failure");

constexpr LdpLabelTlvRule mappingTlvs[] = {
    fecFirst,
    genLabel.at(1, "LdpGenLabelTlv is not the 2nd TLV in the message").mandatory("Missing LdpGenLabelTlv"),
    reqMsgId,
    hopCount,
    pathVector,
    pwStatus,
};
constexpr LdpLabelMsgShape mappingShape{LdpMsgType::LdpLabelMapping, "msgHdr_->type() == LdpLabelMapping_", 2,
                                        "Message does not have at least 2 TLV", FecValidity::checked,
                                        "LDP Mapping Msg can not have Wildcard FEC TLV", mappingTlvs};

constexpr LdpLabelTlvRule requestTlvs[] = {fecFirst, hopCount, pathVector};
constexpr LdpLabelMsgShape requestShape{LdpMsgType::LdpLabelRequest, "msgHdr_->type() == LdpLabelRequest_", 1,
                                        "Message does not have at least 1 TLV", FecValidity::checked,
                                        "LDP Request Msg can not have Wildcard FEC TLV", requestTlvs};

// Withdraw and Release accept the Wildcard FEC.
constexpr LdpLabelTlvRule withdrawReleaseTlvs[] = {
    fecFirst,
    genLabel.at(1, "Label Tlv is not the 2nd TLV in the message"),
    status,
};
constexpr LdpLabelMsgShape withdrawShape{LdpMsgType::LdpLabelWithdraw, "msgHdr_->type() == LdpLabelWithdraw_", 1,
                                         "Message does not have at least 1 TLV", FecValidity::checked, nullptr,
                                         withdrawReleaseTlvs};
constexpr LdpLabelMsgShape releaseShape{LdpMsgType::LdpLabelRelease, "msgHdr_->type() == LdpLabelRelease_", 1,
                                        "Message does not have at least 1 TLV", FecValidity::unchecked, nullptr,
                                        withdrawReleaseTlvs};

constexpr LdpLabelTlvRule abortTlvs[] = {
    fecFirst,
    reqMsgId.at(1, "LdpLabelReqMsgIdTlv is not the 2nd TLV in the message").mandatory("Missing LdpLabelReqMsgIdTlv"),
};
constexpr LdpLabelMsgShape abortShape{LdpMsgType::LdpLabelAbortReq, "msgHdr_->type() == LdpLabelAbortReq_", 2,
                                      "Message does not have at least 2 TLV", FecValidity::checked,
                                      "LDP Abort Msg can not have Wildcard FEC TLV", abortTlvs};

template <typename P>
Zon::Ptr<P> make(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset) {
   return Zon::validPtr(Zon::makePtr<P>(pkt, offset));
}

} // namespace

// ---- Label Mapping ---------------------------------------------------------

LdpLabelMappingMsgParser::LdpLabelMappingMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset)
    : LdpFecMsgParser(pkt, offset) {
   labelMessageStep(mappingShape);
}

Zon::String8 LdpLabelMappingMsgParser::stringValue() const {
   if (!validMsg()) {
      return Zon::String8("Invalid LDP Label Mapping Msg: " + reason());
   }
   std::string s = fecMessageText("LDP Label Mapping Msg:\n");
   ZON_ASSERT(msgGenLabelTlv());
   appendTlv(s, msgGenLabelTlv());
   appendTlv(s, msgReqMsgIdTlv());
   appendTlv(s, msgHopCountTlv());
   appendTlv(s, msgPathVectorTlv());
   appendTlv(s, msgPwStatusTlv());
   return Zon::String8(std::move(s));
}

// ---- Label Request ---------------------------------------------------------

LdpLabelRequestMsgParser::LdpLabelRequestMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset)
    : LdpFecMsgParser(pkt, offset) {
   labelMessageStep(requestShape);
}

Zon::String8 LdpLabelRequestMsgParser::stringValue() const {
   if (!validMsg()) {
      return Zon::String8("Invalid LDP Label Request Msg: " + reason());
   }
   std::string s = fecMessageText("LDP Label Request Msg:\n");
   appendTlv(s, msgHopCountTlv());
   appendTlv(s, msgPathVectorTlv());
   return Zon::String8(std::move(s));
}

// ---- Label Withdraw and Label Release --------------------------------------

Zon::String8 LdpLabelWithdrawReleaseMsgParser::withdrawReleaseText(char const * title,
                                                                    char const * invalidPrefix) const {
   if (!validMsg()) {
      return Zon::String8(invalidPrefix + reason());
   }
   std::string s = fecMessageText(title);
   appendTlv(s, msgGenLabelTlv());
   appendTlv(s, msgStatusTlv());
   return Zon::String8(std::move(s));
}

LdpLabelWithdrawMsgParser::LdpLabelWithdrawMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset)
    : LdpLabelWithdrawReleaseMsgParser(pkt, offset) {
   labelMessageStep(withdrawShape);
}

Zon::String8 LdpLabelWithdrawMsgParser::stringValue() const {
   return withdrawReleaseText("LDP Label Withdraw Msg:\n", "Invalid LDP Label Withdraw Msg: ");
}

LdpLabelReleaseMsgParser::LdpLabelReleaseMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset)
    : LdpLabelWithdrawReleaseMsgParser(pkt, offset) {
   labelMessageStep(releaseShape);
}

Zon::String8 LdpLabelReleaseMsgParser::stringValue() const {
   return withdrawReleaseText("LDP Label Release Msg:\n", "Invalid LDP Label Release Msg: ");
}

// ---- Label Abort Request ---------------------------------------------------

LdpLabelAbortReqMsgParser::LdpLabelAbortReqMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset)
    : LdpFecMsgParser(pkt, offset) {
   labelMessageStep(abortShape);
}

Zon::String8 LdpLabelAbortReqMsgParser::stringValue() const {
   if (!validMsg()) {
      return Zon::String8("Invalid LDP Label Abort Request Msg: " + reason());
   }
   std::string s = fecMessageText("LDP Label Abort Request Msg:\n");
   appendTlv(s, msgReqMsgIdTlv());
   return Zon::String8(std::move(s));
}

// ---- factories -------------------------------------------------------------

Zon::Ptr<LdpLabelMappingMsgParser> ldpLabelMappingMsgParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                   std::uint32_t offset) {
   return make<LdpLabelMappingMsgParser>(pkt, offset);
}

Zon::Ptr<LdpLabelRequestMsgParser> ldpLabelRequestMsgParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                   std::uint32_t offset) {
   return make<LdpLabelRequestMsgParser>(pkt, offset);
}

Zon::Ptr<LdpLabelWithdrawMsgParser> ldpLabelWithdrawMsgParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                     std::uint32_t offset) {
   return make<LdpLabelWithdrawMsgParser>(pkt, offset);
}

Zon::Ptr<LdpLabelReleaseMsgParser> ldpLabelReleaseMsgParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                   std::uint32_t offset) {
   return make<LdpLabelReleaseMsgParser>(pkt, offset);
}

Zon::Ptr<LdpLabelAbortReqMsgParser> ldpLabelAbortReqMsgParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                     std::uint32_t offset) {
   return make<LdpLabelAbortReqMsgParser>(pkt, offset);
}

} // namespace Ldp
