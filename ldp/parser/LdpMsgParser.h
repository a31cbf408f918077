// Message parsers. The base class checks what every message shares (the header
// step: type, size, TLV framing, unknown TLVs); one subclass per message type adds
// the checks of its own TLVs (the message step) as the last act of its constructor.
// Every TLV a parser exposes is a view into the packet, which the parser keeps
// alive; a fault of the received bytes ends as a status code and a reason, never
// as an exception or an abort.
#pragma once

#include <cstdint>

#include "ldp/parser/LdpFecTlvParser.h"
#include "ldp/wire/LdpProtoParam.h"
#include "ldp/parser/LdpParseFault.h"
#include "ldp/parser/LdpPktReader.h"
#include "ldp/parser/LdpTlvGroupParser.h"
#include "ldp/wire/LdpHdr.h"
#include "ldp/wire/LdpTlv.h"
#include "vorin/Pkt.h"
#include "zon/BlockPool.h"
#include "zon/Ptr.h"

namespace Ldp {

// The size rule of a TLV whose size a message checks itself: its length field
// must be `length` exactly, or (notEmpty) the TLV must hold more than its header,
// its item size counted in 16 bits like the group parser's. A TLV that passes is
// seen as a view of `viewBytes`, the size of its value type.
struct LdpTlvSize {
   enum class Rule : std::uint8_t { exactly, notEmpty };
   Rule rule = Rule::exactly;
   std::uint16_t length = 0;
   std::uint32_t viewBytes = 0;

   // T's required length.
   template <typename T>
   static constexpr LdpTlvSize exactlyOf() noexcept {
      return {Rule::exactly, T::requiredLength, std::uint32_t(sizeof(T))};
   }
   // Any length that leaves the TLV non-empty.
   template <typename T>
   static constexpr LdpTlvSize notEmptyOf() noexcept {
      return {Rule::notEmpty, 0, std::uint32_t(sizeof(T))};
   }
};

class LdpMsgParser : public Zon::PtrInterface, public Zon::PoolAllocated {
 public:
   using Ptr = Zon::Ptr<LdpMsgParser>;

   // The largest message accepted.
   static constexpr std::uint32_t maxMsgSize = LdpProtoParam::defaultMaxPduLength;

   LdpMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);

   Zon::Ptr<Vorin::Pkt> const & pkt() const noexcept { return pkt_; }
   std::uint32_t offset() const noexcept { return offset_; }
   // The message header; null when its eight bytes were not received.
   LdpMsgHdr * msgHdr() const noexcept { return msgHdr_; }
   Zon::Ptr<LdpTlvGroupParser> const & tlvGroupParser() const noexcept { return tlvGroupParser_; }
   Zon::String8 const & reason() const noexcept { return result_.reason(); }
   LdpStatusCode statusCode() const noexcept { return result_.statusCode(); }
   bool validMsg() const noexcept { return result_.ok(); }
   // True when the checks every message shares passed (the message's own checks
   // may still fail).
   bool headerStepValid() const noexcept { return headerStepValid_; }
   // The FEC TLV of a message that has one, and its parser.
   LdpTlvHdr * msgFecTlv() const noexcept { return msgFecTlv_; }
   Zon::Ptr<LdpFecTlvParser> const & ldpFecTlvParser() const noexcept { return ldpFecTlvParser_; }
   // The Status TLV, where the message type uses one.
   LdpStatusTlv * msgStatusTlv() const noexcept { return msgStatusTlv_; }

   void msgHdrIs(LdpMsgHdr * h) noexcept { msgHdr_ = h; }
   void statusCodeIs(LdpStatusCode c) noexcept { result_.statusCodeIs(c); }
   virtual void reasonIs(Zon::String8 r) { result_.reasonIs(std::move(r)); }
   Zon::Ptr<LdpTlvGroupParser> tlvGroupParserIs(Zon::String8 const & name);
   Zon::Ptr<LdpTlvGroupParser> newTlvGroupParser(Zon::String8 const & name);
   void tlvGroupParserDel() noexcept { tlvGroupParser_ = nullptr; }
   void msgFecTlvIs(LdpTlvHdr * t) noexcept { msgFecTlv_ = t; }
   void msgStatusTlvIs(LdpStatusTlv * t) noexcept { msgStatusTlv_ = t; }
   // The parser of the FEC TLV at `offset` of `pkt`: ldpFecTlvParserIs keeps the
   // current one when it parsed that TLV already with the same parameters,
   // newLdpFecTlvParser always builds a new one. The message parsers pass no
   // parameters (the strict Wildcard rule).
   Zon::Ptr<LdpFecTlvParser> ldpFecTlvParserIs(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset,
                                               Zon::Ptr<LdpProtoParam const> const & protoParam);
   Zon::Ptr<LdpFecTlvParser> newLdpFecTlvParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset,
                                                Zon::Ptr<LdpProtoParam const> const & protoParam);
   void ldpFecTlvParserDel() noexcept { ldpFecTlvParser_ = nullptr; }

   // The run-time class of the parser, e.g. "Ldp::LdpMsgParser".
   virtual char const * fwkType() const noexcept { return "Ldp::LdpMsgParser"; }
   // "Message Error: " + reason when invalid; subclasses print their message.
   virtual Zon::String8 stringValue() const;

 protected:
   ~LdpMsgParser() override = default;

   // Records a fault unless one is recorded already; returns false.
   bool fault(LdpStatusCode code, Zon::String8 reason) {
      return result_.fault(code, std::move(reason), ldpGenMsgParserTrace);
   }
   // Copies the status and reason of a parser that this one built; that parser
   // traced the fault when it found it.
   template <typename P>
   bool faultFrom(P const & p) {
      return result_.faultFrom(p.statusCode(), p.reason());
   }

   // The message's TLVs, by index in message order. tlvHdrAt gives a copy of the
   // 4-byte header of a recorded TLV (the group parser read those bytes). Its
   // length field is the peer's word: a length of 0xFFFD..0xFFFF wraps the 16-bit
   // item size to 1..3 bytes, so the header may end behind the message and the
   // value claim far more bytes than the message holds. The header's type and
   // length are therefore read as values, and tlvView (tlvAs<T>) hands out a view
   // only when the TLV's unwrapped extent (length + 4) covers `viewBytes` (T) and
   // lies wholly inside the message; size checks that fail must treat a null view
   // like any other size fault.
   std::uint32_t tlvNum() const noexcept { return tlvGroupParser_->tlvNum(); }
   std::uint32_t tlvOffsetAt(std::uint32_t index) const noexcept { return tlvGroupParser_->tlvOffset(index); }
   LdpTlvHdr tlvHdrAt(std::uint32_t index) const noexcept {
      LdpTlvHdr const * h = index < tlvNum() ? LdpPktReader(*pkt_).view<LdpTlvHdr const>(tlvOffsetAt(index)) : nullptr;
      return h ? *h : LdpTlvHdr();
   }
   // A header that does not lie in the message cannot have its TLV in it: one
   // reader, the message's, answers both questions.
   LdpTlvHdr * tlvView(std::uint32_t index, std::uint32_t viewBytes) const noexcept {
      if (index >= tlvNum()) {
         return nullptr;
      }
      std::uint32_t const offset = tlvOffsetAt(index);
      // Asked first, so that a refused TLV does not mark the reader failed for
      // the parsers that are cut from it later.
      if (!reader_.contains(offset, LdpTlvHdr::wireBytes)) {
         return nullptr;
      }
      LdpTlvHdr const * h = reader_.view<LdpTlvHdr const>(offset);
      std::uint32_t const bytes = std::uint32_t(h->length()) + LdpTlvHdr::tlvHdrSizeExclude;
      return bytes >= viewBytes && reader_.contains(offset, bytes) ? reader_.view<LdpTlvHdr>(offset, bytes) : nullptr;
   }
   template <typename T>
   T * tlvAs(std::uint32_t index) const noexcept {
      return static_cast<T *>(tlvView(index, sizeof(T)));
   }

   // The one size check: TLV `i` when it passes `size` (and its bytes were
   // received); otherwise null and a malformedTlv fault with `sizeReason`.
   LdpTlvHdr * sizedTlv(std::uint32_t i, LdpTlvSize size, char const * sizeReason);
   template <typename T>
   T * sizedTlv(std::uint32_t i, char const * sizeReason) {
      return static_cast<T *>(sizedTlv(i, LdpTlvSize::exactlyOf<T>(), sizeReason));
   }
   // A fixed-size TLV `i`: its size check; then, when `conflict` is set, a
   // malformedTlv fault with `conflictReason`; then `slot` points to it; then its
   // validate(), whose code fails it with `validationReason`. False after a fault
   // (`slot` stays as it was after a size or conflict fault).
   template <typename T>
   bool fixedTlvStep(std::uint32_t i, T *& slot, char const * sizeReason, char const * validationReason,
                     bool conflict = false, char const * conflictReason = nullptr) {
      T * t = sizedTlv<T>(i, sizeReason);
      if (!t) {
         return false;
      }
      if (conflict) {
         return fault(LdpStatusCode::malformedTlv, conflictReason);
      }
      slot = t;
      if (LdpStatusCode const code = t->validate(); code != LdpStatusCode::success) {
         return fault(code, validationReason);
      }
      return true;
   }

   // "   Msg Id: %d," of a valid message's text form.
   Zon::String8 msgIdText() const;

   // The common start of every message step: false when the header step or the
   // TLV framing already failed (their fault stands).
   bool messageStepStart();

   // The reader of the message, bounded by its length (as far as its bytes were
   // received): every view the parser and the parsers it builds hand out comes
   // from it. Empty until the header step has checked the length.
   LdpPktReader const & reader() const noexcept { return reader_; }

 private:
   friend Ptr ldpMsgParserGet(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);

   // A base parser that takes over the header step's outcome from `failed`, a
   // parser whose header step failed, instead of running it (and tracing its
   // fault) a second time. `failed` is dropped afterwards; the two share the
   // TLV group parser until then.
   struct HeaderStepOf {};
   LdpMsgParser(HeaderStepOf, LdpMsgParser const & failed);

   void headerStep();

   Zon::Ptr<Vorin::Pkt> pkt_;
   std::uint32_t offset_;
   // The message's own reader (the header step and tlvHdrAt read the message and
   // TLV headers, as values only, from the packet's front bytes).
   LdpPktReader reader_;
   LdpMsgHdr * msgHdr_ = nullptr;
   Zon::Ptr<LdpTlvGroupParser> tlvGroupParser_;
   LdpParseFault result_;
   LdpTlvHdr * msgFecTlv_ = nullptr;
   Zon::Ptr<LdpFecTlvParser> ldpFecTlvParser_;
   LdpStatusTlv * msgStatusTlv_ = nullptr;
   bool headerStepValid_ = false;
};

Zon::Ptr<LdpMsgParser> ldpMsgParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);

} // namespace Ldp
