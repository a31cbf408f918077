#include "ldp/parser/LdpFecMsgParser.h"

#include "zon/Assert.h"

namespace Ldp {

bool LdpFecMsgParser::fecMessageStepStart() {
   TRACE(ldpGenMsgParserTrace, traceFunction, fwkType() << "::handleInitialized");
   initialized_ = true;
   return messageStepStart();
}

void LdpFecMsgParser::labelMessageStep(LdpLabelMsgShape const & shape) {
   if (!fecMessageStepStart()) {
      return;
   }
   ZON_ASSERT_TEXT(msgHdr()->type() == shape.type, shape.typeAssertion);
   if (tlvNum() < shape.minTlvs) {
      fault(LdpStatusCode::missingMessageParams, shape.tooFewReason);
      return;
   }
   // The TLV types are read from the front bytes, as values: a header whose
   // length wraps may end behind the message.
   LdpPktReader const front(*pkt());
   std::uint32_t const count = tlvNum();
   std::uint32_t filled = 0; // slotBit of each view set by the walk
   for (std::uint32_t i = 0; i < count; ++i) {
      LdpTlvHdr const * hdr = front.view<LdpTlvHdr const>(tlvOffsetAt(i));
      LdpLabelTlvRule const * rule = hdr ? shape.rule(hdr->type()) : nullptr;
      if (!rule) {
         continue;
      }
      // Its place, then the FEC TLV's step, or the size check, the view and
      // validate().
      if (rule->index != LdpLabelTlvRule::anyIndex && i != std::uint32_t(rule->index)) {
         fault(LdpStatusCode::missingMessageParams, rule->placeReason);
         return;
      }
      if (rule->slot == Slot::fec) {
         if (!fecTlvStep(i, shape.fecValidity, shape.wildcardReason)) {
            return;
         }
         if (msgFecTlv()) {
            filled |= LdpLabelMsgShape::slotBit(Slot::fec);
         }
         continue;
      }
      LdpTlvHdr * t = sizedTlv(i, rule->size, rule->sizeReason);
      if (!t) {
         return;
      }
      slotIs(rule->slot, t);
      filled |= LdpLabelMsgShape::slotBit(rule->slot);
      if (LdpStatusCode const code = rule->validate(*t); code != LdpStatusCode::success) {
         fault(code, rule->valueReason);
         return;
      }
   }
   if ((filled & shape.mandatorySlots) == shape.mandatorySlots) [[likely]] {
      return;
   }
   // The first mandatory row (they come first) whose view is unset.
   for (LdpLabelTlvRule const & rule : shape.tlvs) {
      if (rule.missingReason && !(filled & LdpLabelMsgShape::slotBit(rule.slot))) {
         fault(LdpStatusCode::missingMessageParams, rule.missingReason);
         return;
      }
   }
}

bool LdpFecMsgParser::fecTlvStep(std::uint32_t i, FecValidity validity, char const * wildcardReason) {
   // The view exists when the whole TLV lies in the message; else its parser
   // refuses it.
   msgFecTlvIs(tlvView(i, LdpTlvHdr::wireBytes));
   LdpFecTlvParser const & fec = *ldpFecTlvParserIs(pkt(), tlvOffsetAt(i), nullptr);
   if (validity == FecValidity::checked && !fec.valid()) {
      return faultFrom(fec);
   }
   if (wildcardReason && fec.hasWildcardFecElement()) {
      return fault(LdpStatusCode::unknownFec, wildcardReason);
   }
   return true;
}

LdpTlvHdr * LdpFecMsgParser::slot(Slot s) const noexcept {
   switch (s) {
    case Slot::fec: return msgFecTlv();
    case Slot::status: return msgStatusTlv();
    default: return views_[std::size_t(s) - std::size_t(Slot::genLabel)];
   }
}

void LdpFecMsgParser::slotIs(Slot s, LdpTlvHdr * t) noexcept {
   switch (s) {
    case Slot::fec: msgFecTlvIs(t); break;
    case Slot::status: msgStatusTlvIs(static_cast<LdpStatusTlv *>(t)); break;
    default: views_[std::size_t(s) - std::size_t(Slot::genLabel)] = t; break;
   }
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

} // namespace Ldp
