// Parsers of the label distribution messages, the ones that carry a FEC TLV:
// Label Mapping, Label Request, Label Withdraw, Label Release and Label Abort
// Request. Each runs the base header step, then its own message step as the last
// act of its constructor; the FEC TLV goes to the FEC TLV parser, every other
// TLV it exposes is a view into the packet.
#pragma once

#include <cstdint>
#include <string>

#include "ldp/parser/LdpFecTlvParser.h"
#include "ldp/parser/LdpMsgParser.h"
#include "ldp/wire/LdpPwHdr.h"
#include "ldp/wire/LdpTlv.h"

namespace Ldp {

// What the messages with a FEC TLV share: the FEC TLV's check and the pieces of
// the fixed-size TLV checks and of the text forms.
class LdpFecMsgParser : public LdpMsgParser {
 public:
   bool initialized() const noexcept { return initialized_; }

 protected:
   LdpFecMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset) : LdpMsgParser(pkt, offset) {}
   ~LdpFecMsgParser() override = default;

   // The common frame of the message step (marks the parser initialized); false
   // when the header step or the framing failed.
   bool fecMessageStepStart();

   enum class FecValidity { checked, unchecked };
   // TLV `i` is the FEC TLV: sets msgFecTlv and builds its parser. With
   // `checked` the parser's fault is copied; a Wildcard element is refused with
   // `wildcardReason` (unknownFec) unless that is null. False after a fault.
   bool fecTlvStep(std::uint32_t i, FecValidity validity, char const * wildcardReason);
   // fecTlvStep for a FEC TLV found at index `i`, which must be 0.
   bool firstFecTlvStep(std::uint32_t i, FecValidity validity, char const * wildcardReason);
   // The FEC parser's fault, copied when there is one; false then.
   bool fecParserValidStep();

   // The Path Vector TLV `i`: not empty (its 16-bit size at least 5), then its
   // validate(). Null after a fault.
   LdpPathVectorTlv * pathVectorStep(std::uint32_t i);

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
   bool initialized_ = false;
};

class LdpLabelMappingMsgParser : public LdpFecMsgParser {
 public:
   using Ptr = Zon::Ptr<LdpLabelMappingMsgParser>;

   LdpLabelMappingMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);

   LdpGenLabelTlv * msgGenLabelTlv() const noexcept { return msgGenLabelTlv_; }
   LdpLabelReqMsgIdTlv * msgReqMsgIdTlv() const noexcept { return msgReqMsgIdTlv_; }
   LdpHopCountTlv * msgHopCountTlv() const noexcept { return msgHopCountTlv_; }
   LdpPathVectorTlv * msgPathVectorTlv() const noexcept { return msgPathVectorTlv_; }
   LdpPwStatusTlv * msgPwStatusTlv() const noexcept { return msgPwStatusTlv_; }

   void msgGenLabelTlvIs(LdpGenLabelTlv * t) noexcept { msgGenLabelTlv_ = t; }
   void msgReqMsgIdTlvIs(LdpLabelReqMsgIdTlv * t) noexcept { msgReqMsgIdTlv_ = t; }
   void msgHopCountTlvIs(LdpHopCountTlv * t) noexcept { msgHopCountTlv_ = t; }
   void msgPathVectorTlvIs(LdpPathVectorTlv * t) noexcept { msgPathVectorTlv_ = t; }
   void msgPwStatusTlvIs(LdpPwStatusTlv * t) noexcept { msgPwStatusTlv_ = t; }

   char const * fwkType() const noexcept override { return "Ldp::LdpLabelMappingMsgParser"; }
   // "LDP Label Mapping Msg:\n   Msg Id: %d,   FEC: ..." and each present TLV, or
   // "Invalid LDP Label Mapping Msg: " + reason.
   Zon::String8 stringValue() const override;

 protected:
   ~LdpLabelMappingMsgParser() override = default;

 private:
   void handleInitialized();

   LdpGenLabelTlv * msgGenLabelTlv_ = nullptr;
   LdpLabelReqMsgIdTlv * msgReqMsgIdTlv_ = nullptr;
   LdpHopCountTlv * msgHopCountTlv_ = nullptr;
   LdpPathVectorTlv * msgPathVectorTlv_ = nullptr;
   LdpPwStatusTlv * msgPwStatusTlv_ = nullptr;
};

class LdpLabelRequestMsgParser : public LdpFecMsgParser {
 public:
   using Ptr = Zon::Ptr<LdpLabelRequestMsgParser>;

   LdpLabelRequestMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);

   LdpHopCountTlv * msgHopCountTlv() const noexcept { return msgHopCountTlv_; }
   LdpPathVectorTlv * msgPathVectorTlv() const noexcept { return msgPathVectorTlv_; }

   void msgHopCountTlvIs(LdpHopCountTlv * t) noexcept { msgHopCountTlv_ = t; }
   void msgPathVectorTlvIs(LdpPathVectorTlv * t) noexcept { msgPathVectorTlv_ = t; }

   char const * fwkType() const noexcept override { return "Ldp::LdpLabelRequestMsgParser"; }
   // "LDP Label Request Msg:\n   Msg Id: %d,   FEC: ..." and each present TLV,
   // or "Invalid LDP Label Request Msg: " + reason.
   Zon::String8 stringValue() const override;

 protected:
   ~LdpLabelRequestMsgParser() override = default;

 private:
   void handleInitialized();

   LdpHopCountTlv * msgHopCountTlv_ = nullptr;
   LdpPathVectorTlv * msgPathVectorTlv_ = nullptr;
};

// What Label Withdraw and Label Release share: FEC TLV first, an optional
// Generic Label TLV second, an optional Status TLV anywhere.
class LdpLabelWithdrawReleaseMsgParser : public LdpFecMsgParser {
 public:
   LdpGenLabelTlv * msgGenLabelTlv() const noexcept { return msgGenLabelTlv_; }
   void msgGenLabelTlvIs(LdpGenLabelTlv * t) noexcept { msgGenLabelTlv_ = t; }

 protected:
   LdpLabelWithdrawReleaseMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset)
       : LdpFecMsgParser(pkt, offset) {}
   ~LdpLabelWithdrawReleaseMsgParser() override = default;

   // The message step of a message of type `own`; `typeAssertion` is the text
   // printed when the message is of another type. `fecValidity` says whether
   // the FEC TLV parser's fault counts.
   void withdrawReleaseStep(LdpMsgType own, char const * typeAssertion, FecValidity fecValidity);
   Zon::String8 withdrawReleaseText(char const * title, char const * invalidPrefix) const;

 private:
   LdpGenLabelTlv * msgGenLabelTlv_ = nullptr;
};

class LdpLabelWithdrawMsgParser : public LdpLabelWithdrawReleaseMsgParser {
 public:
   using Ptr = Zon::Ptr<LdpLabelWithdrawMsgParser>;

   LdpLabelWithdrawMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);

   char const * fwkType() const noexcept override { return "Ldp::LdpLabelWithdrawMsgParser"; }
   // "LDP Label Withdraw Msg:\n   Msg Id: %d,   FEC: ..." and each present TLV,
   // or "Invalid LDP Label Withdraw Msg: " + reason.
   Zon::String8 stringValue() const override;

 protected:
   ~LdpLabelWithdrawMsgParser() override = default;
};

// Like Label Withdraw, except that the FEC TLV parser's validity is not looked
// at: a Release whose FEC TLV is malformed is still a good message, and the
// caller reads ldpFecTlvParser() itself.
class LdpLabelReleaseMsgParser : public LdpLabelWithdrawReleaseMsgParser {
 public:
   using Ptr = Zon::Ptr<LdpLabelReleaseMsgParser>;

   LdpLabelReleaseMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);

   char const * fwkType() const noexcept override { return "Ldp::LdpLabelReleaseMsgParser"; }
   // "LDP Label Release Msg:\n   Msg Id: %d,   FEC: ..." and each present TLV,
   // or "Invalid LDP Label Release Msg: " + reason.
   Zon::String8 stringValue() const override;

 protected:
   ~LdpLabelReleaseMsgParser() override = default;
};

class LdpLabelAbortReqMsgParser : public LdpFecMsgParser {
 public:
   using Ptr = Zon::Ptr<LdpLabelAbortReqMsgParser>;

   LdpLabelAbortReqMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);

   LdpLabelReqMsgIdTlv * msgReqMsgIdTlv() const noexcept { return msgReqMsgIdTlv_; }
   void msgReqMsgIdTlvIs(LdpLabelReqMsgIdTlv * t) noexcept { msgReqMsgIdTlv_ = t; }

   char const * fwkType() const noexcept override { return "Ldp::LdpLabelAbortReqMsgParser"; }
   // "LDP Label Abort Request Msg:\n   Msg Id: %d,   FEC: ..." and the request
   // id, or "Invalid LDP Label Abort Request Msg: " + reason.
   Zon::String8 stringValue() const override;

 protected:
   ~LdpLabelAbortReqMsgParser() override = default;

 private:
   void handleInitialized();

   LdpLabelReqMsgIdTlv * msgReqMsgIdTlv_ = nullptr;
};

Zon::Ptr<LdpLabelMappingMsgParser> ldpLabelMappingMsgParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                   std::uint32_t offset);
Zon::Ptr<LdpLabelRequestMsgParser> ldpLabelRequestMsgParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                   std::uint32_t offset);
Zon::Ptr<LdpLabelWithdrawMsgParser> ldpLabelWithdrawMsgParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                     std::uint32_t offset);
Zon::Ptr<LdpLabelReleaseMsgParser> ldpLabelReleaseMsgParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                   std::uint32_t offset);
Zon::Ptr<LdpLabelAbortReqMsgParser> ldpLabelAbortReqMsgParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                     std::uint32_t offset);

} // namespace Ldp
