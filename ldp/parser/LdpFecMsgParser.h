// What the messages that carry a FEC TLV share: Label Mapping, Label Request,
// Label Withdraw, Label Release, Label Abort Request and the pseudowire status
// Notification. The label messages' TLVs are checked by one walk over a table per
// message type (LdpLabelMsgShape); each row says where a TLV must stand, which
// view it fills, its size rule and the reasons of its faults.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>

#include "ldp/parser/LdpFecTlvParser.h"
#include "ldp/parser/LdpMsgParser.h"
#include "ldp/wire/LdpTlv.h"

namespace Ldp {

struct LdpLabelMsgShape;
struct LdpLabelTlvRule;

class LdpFecMsgParser : public LdpMsgParser {
 public:
   bool initialized() const noexcept { return initialized_; }

   // The views a label message fills, besides the base's FEC and Status TLVs.
   enum class Slot : std::uint8_t { fec, status, genLabel, reqMsgId, hopCount, pathVector, pwStatus };

   enum class FecValidity { checked, unchecked };

 protected:
   LdpFecMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset) : LdpMsgParser(pkt, offset) {}
   ~LdpFecMsgParser() override = default;

   // The common frame of the message step (marks the parser initialized); false
   // when the header step or the framing failed.
   bool fecMessageStepStart();

   // The message step of a label message: the common frame, the type assertion,
   // the TLV count, then each TLV whose type the shape names through its row
   // (its place, then the FEC TLV's step, or the size check, the view and
   // validate()); the first fault ends the walk. After a walk without fault,
   // each mandatory row whose view is still unset is missing, in table order.
   void labelMessageStep(LdpLabelMsgShape const & shape);

   // TLV `i` is the FEC TLV: sets msgFecTlv and builds its parser. With
   // `checked` the parser's fault is copied; a Wildcard element is refused with
   // `wildcardReason` (unknownFec) unless that is null. False after a fault.
   bool fecTlvStep(std::uint32_t i, FecValidity validity, char const * wildcardReason);

   // The view a slot holds, and its setter.
   LdpTlvHdr * slot(Slot s) const noexcept;
   void slotIs(Slot s, LdpTlvHdr * t) noexcept;
   template <typename T>
   T * slotAs(Slot s) const noexcept {
      return static_cast<T *>(slot(s));
   }

   // "<title>   Msg Id: %d,   FEC: <FEC text>"; asserts "msgFecTlv()".
   std::string fecMessageText(char const * title) const;
   // Appends "\n   " and the TLV's text when the TLV is present.
   template <typename T>
   static void appendTlv(std::string & s, T const * t) {
      if (t) {
         s += "\n   ";
         s += t->stringValue();
      }
   }

 private:
   static constexpr std::size_t ownSlots = 5; // genLabel .. pwStatus
   std::array<LdpTlvHdr *, ownSlots> views_{};
   bool initialized_ = false;
};

// One TLV type a label message names: where it must stand (`index`, or any
// place), the view it fills, its size rule (the FEC TLV's is its parser's) and
// the reasons of its faults. `missingReason` makes it mandatory. A later TLV of
// the same type replaces the view, unless its place refuses it.
struct LdpLabelTlvRule {
   static constexpr std::int8_t anyIndex = -1;

   LdpTlvType type;
   LdpFecMsgParser::Slot slot;
   std::int8_t index = anyIndex;
   char const * placeReason = nullptr;    // missingMessageParams
   LdpTlvSize size{};                     // not used by the FEC TLV
   LdpStatusCode (*validate)(LdpTlvHdr const &) = nullptr;
   char const * sizeReason = nullptr;     // malformedTlv
   char const * valueReason = nullptr;    // validate()'s code
   char const * missingReason = nullptr;  // missingMessageParams

   // This row, standing at index `i` only.
   constexpr LdpLabelTlvRule at(std::int8_t i, char const * reason) const noexcept {
      LdpLabelTlvRule r = *this;
      r.index = i;
      r.placeReason = reason;
      return r;
   }
   // This row, mandatory.
   constexpr LdpLabelTlvRule mandatory(char const * reason) const noexcept {
      LdpLabelTlvRule r = *this;
      r.missingReason = reason;
      return r;
   }
};

// A label message type: its own type (and the text of the assertion on it), the
// least number of TLVs, how its FEC TLV's parser counts, and its TLV rows, the
// mandatory ones first.
struct LdpLabelMsgShape {
   LdpMsgType type;
   char const * typeAssertion;
   std::uint32_t minTlvs;
   char const * tooFewReason;
   LdpFecMsgParser::FecValidity fecValidity;
   char const * wildcardReason; // null: a Wildcard FEC is accepted
   std::span<LdpLabelTlvRule const> tlvs;
   // One bit per slot (slotBit) that a mandatory row fills: the walk checks them
   // all at once and looks for the missing row only when one is.
   std::uint32_t mandatorySlots;

   constexpr LdpLabelMsgShape(LdpMsgType type, char const * typeAssertion, std::uint32_t minTlvs,
                              char const * tooFewReason, LdpFecMsgParser::FecValidity fecValidity,
                              char const * wildcardReason, std::span<LdpLabelTlvRule const> tlvs) noexcept
       : type(type),
         typeAssertion(typeAssertion),
         minTlvs(minTlvs),
         tooFewReason(tooFewReason),
         fecValidity(fecValidity),
         wildcardReason(wildcardReason),
         tlvs(tlvs),
         mandatorySlots(0) {
      for (LdpLabelTlvRule const & r : tlvs) {
         if (r.missingReason) {
            mandatorySlots |= slotBit(r.slot);
         }
      }
   }

   static constexpr std::uint32_t slotBit(LdpFecMsgParser::Slot s) noexcept { return 1u << unsigned(s); }

   // The row of TLV type `type`; null when the message does not name it.
   LdpLabelTlvRule const * rule(LdpTlvType type) const noexcept {
      for (LdpLabelTlvRule const & r : tlvs) {
         if (r.type == type) {
            return &r;
         }
      }
      return nullptr;
   }
};

} // namespace Ldp
