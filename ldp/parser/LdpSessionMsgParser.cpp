#include "ldp/parser/LdpSessionMsgParser.h"

#include <string>

#include "zon/Assert.h"

namespace Ldp {

namespace {

constexpr auto missingMessageParams = LdpStatusCode::missingMessageParams;

void appendTlv(std::string & s, Zon::String8 const & text) {
   s += "\n   ";
   s += text;
}

} // namespace

// ---- Hello -----------------------------------------------------------------

LdpHelloMsgParser::LdpHelloMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset)
    : LdpMsgParser(pkt, offset) {
   handleInitialized();
}

void LdpHelloMsgParser::handleInitialized() {
   TRACE(ldpGenMsgParserTrace, traceFunction, "LdpHelloMsgParser::handleInitialized");
   initialized_ = true;
   if (!messageStepStart()) {
      return;
   }
   ZON_ASSERT_TEXT(msgHdr()->type() == LdpMsgType::LdpHello, "msgHdr_->type() == LdpHello_");
   if (tlvNum() == 0) {
      fault(missingMessageParams, "Message has 0 TLV");
      return;
   }
   for (std::uint32_t i = 0; i < tlvNum(); ++i) {
      switch (tlvHdrAt(i).type()) {
       case LdpTlvType::commonHelloTlv:
         if (i != 0) {
            fault(missingMessageParams, "LdpCommonHelloTlv is not the 1st TLV in the message");
            return;
         }
         if (!fixedTlvStep(i, msgCommonHelloTlv_, "Invalid size for LdpCommonHelloTlv",
                           "LdpCommonHelloTlv validation failure")) {
            return;
         }
         break;
       case LdpTlvType::ipv4TransportAddrTlv:
         // One transport address, of either family.
         if (!fixedTlvStep(i, msgIpTransportTlv_, "Invalid size for LdpIpTransportAddrTlv",
                           "LdpIpTransportAddrTlv validation failure", msgIp6TransportTlv_ != nullptr,
                           "LdpIpv6TransportAddrTlv already existed")) {
            return;
         }
         break;
       case LdpTlvType::configSeqNumTlv:
         if (!fixedTlvStep(i, msgConfigSeqTlv_, "Invalid size for LdpConfigSeqNumTlv",
                           "LdpConfigSeqNumTlv validation failure")) {
            return;
         }
         break;
       case LdpTlvType::ipv6TransportAddrTlv:
         if (!fixedTlvStep(i, msgIp6TransportTlv_, "Invalid size for LdpIp6TransportAddrTlv",
                           "LdpIp6TransportAddrTlv validation failure", msgIpTransportTlv_ != nullptr,
                           "LdpIpv4TransportAddrTlv already existed")) {
            return;
         }
         break;
       default:
         break;
      }
   }
   if (!msgCommonHelloTlv_) {
      fault(missingMessageParams, "Missing LdpCommonHelloTlv");
   }
}

Zon::String8 LdpHelloMsgParser::stringValue() const {
   if (!validMsg()) {
      return Zon::String8("Invalid LDP Hello Msg: " + reason());
   }
   ZON_ASSERT(msgCommonHelloTlv());
   std::string s = "LDP Hello Msg:\n" + msgIdText();
   appendTlv(s, msgCommonHelloTlv_->stringValue());
   if (msgIpTransportTlv_) {
      appendTlv(s, msgIpTransportTlv_->stringValue());
   }
   if (msgIp6TransportTlv_) {
      appendTlv(s, msgIp6TransportTlv_->stringValue());
   }
   if (msgConfigSeqTlv_) {
      appendTlv(s, msgConfigSeqTlv_->stringValue());
   }
   return Zon::String8(std::move(s));
}

// ---- Initialization --------------------------------------------------------

LdpInitMsgParser::LdpInitMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset)
    : LdpCapabilityParser(pkt, offset) {
   handleInitialized();
}

void LdpInitMsgParser::handleInitialized() {
   TRACE(ldpGenMsgParserTrace, traceFunction, "LdpInitMsgParser::handleInitialized");
   initialized_ = true;
   if (!messageStepStart()) {
      return;
   }
   ZON_ASSERT_TEXT(msgHdr()->type() == LdpMsgType::LdpInit, "msgHdr_->type() == LdpInit_");
   // Capabilities first: a bad capability TLV is reported before the session
   // parameters are looked at.
   parseCapabilityTlvs();
   if (!validMsg()) {
      return;
   }
   if (tlvNum() == 0) {
      fault(missingMessageParams, "Missing CommonSessionParam TLV");
      return;
   }
   for (std::uint32_t i = 0; i < tlvNum(); ++i) {
      if (tlvHdrAt(i).type() != LdpTlvType::commonSessionParamTlv) {
         if (i == 0) {
            fault(missingMessageParams, "1st TLV is not commonSessionParam TLV");
            return;
         }
         continue; // capability TLVs were handled above, others are skipped
      }
      if (i != 0) {
         fault(missingMessageParams, "CommonSessionParamTlv is not the 1st TLV in the message");
         return;
      }
      auto * t = sizedTlv<LdpCommonSessionParamTlv>(i, "LdpCommonSessionParamTlv TLV is not the right size");
      if (!t) {
         return;
      }
      msgSessionParamTlv_ = t;
      if (auto const code = t->validate(); code != LdpStatusCode::success) {
         fault(code, Ldp::stringValue(code));
         return;
      }
   }
   // The reason of a good Initialization is the text of its status code.
   reasonIs(Ldp::stringValue(statusCode()));
}

Zon::String8 LdpInitMsgParser::stringValue() const {
   if (!validMsg()) {
      return Zon::String8("Invalid LDP Init Msg: " + reason());
   }
   std::string s = "LDP Init Msg:\n" + msgIdText();
   if (msgSessionParamTlv_) {
      appendTlv(s, msgSessionParamTlv_->stringValue());
   }
   s += capabilitiesText();
   return Zon::String8(std::move(s));
}

// ---- Capability ------------------------------------------------------------

LdpCapabilityMsgParser::LdpCapabilityMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset)
    : LdpCapabilityParser(pkt, offset) {
   handleInitialized();
}

void LdpCapabilityMsgParser::handleInitialized() {
   TRACE(ldpGenMsgParserTrace, traceFunction, "LdpCapabilityMsgParser::handleInitialized");
   initialized_ = true;
   if (!messageStepStart()) {
      return;
   }
   ZON_ASSERT_TEXT(msgHdr()->type() == LdpMsgType::LdpCapability, "msgHdr_->type() == LdpCapability_");
   parseCapabilityTlvs();
}

Zon::String8 LdpCapabilityMsgParser::stringValue() const {
   if (!validMsg()) {
      return Zon::String8("Invalid LDP Capability Msg: " + reason());
   }
   return Zon::String8("LDP Capability Msg:\n" + msgIdText() + capabilitiesText());
}

// ---- Address and Address Withdraw ------------------------------------------

void LdpAddressListMsgParser::addressListStep(LdpMsgType own, char const * typeAssertion) {
   TRACE(ldpGenMsgParserTrace, traceFunction, fwkType() << "::handleInitialized");
   initialized_ = true;
   if (!messageStepStart()) {
      return;
   }
   ZON_ASSERT_TEXT(msgHdr()->type() == own, typeAssertion);
   if (tlvNum() == 0) {
      fault(missingMessageParams, "Message does not have at least 1 TLV");
      return;
   }
   for (std::uint32_t i = 0; i < tlvNum(); ++i) {
      if (tlvHdrAt(i).type() != LdpTlvType::addrListTlv) {
         continue;
      }
      if (i != 0) {
         fault(missingMessageParams, "AddressListTlv is not the 1st TLV in the message");
         return;
      }
      addressListTlv_ = Zon::validPtr(Zon::makePtr<LdpAddressListTlvParser>(pkt(), tlvOffsetAt(i), reader()));
      if (auto const code = addressListTlv_->validate(); code != LdpStatusCode::success) {
         fault(code, Ldp::stringValue(code));
         return;
      }
   }
   if (!addressListTlv_) {
      fault(missingMessageParams, "Missing LdpAddressListTlv");
   }
}

Zon::String8 LdpAddressListMsgParser::addressListText(char const * title, char const * invalidPrefix) const {
   if (!validMsg()) {
      return Zon::String8(invalidPrefix + reason());
   }
   ZON_ASSERT(addressListTlv());
   std::string s = title + msgIdText();
   appendTlv(s, addressListTlv_->stringValue());
   return Zon::String8(std::move(s));
}

LdpAddressMsgParser::LdpAddressMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset)
    : LdpAddressListMsgParser(pkt, offset) {
   addressListStep(LdpMsgType::LdpAddress, "msgHdr_->type() == LdpAddress_");
}

Zon::String8 LdpAddressMsgParser::stringValue() const {
   return addressListText("LDP Address Msg:\n", "Invalid LDP Address Msg: ");
}

LdpAddressWithdrawMsgParser::LdpAddressWithdrawMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset)
    : LdpAddressListMsgParser(pkt, offset) {
   addressListStep(LdpMsgType::LdpAddressWithdraw, "msgHdr_->type() == LdpAddressWithdraw_");
}

Zon::String8 LdpAddressWithdrawMsgParser::stringValue() const {
   return addressListText("LDP Address Withdraw Msg:\n", "Invalid LDP Address Withdraw Msg: ");
}

// ---- factories -------------------------------------------------------------

Zon::Ptr<LdpHelloMsgParser> ldpHelloMsgParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset) {
   return Zon::validPtr(Zon::makePtr<LdpHelloMsgParser>(pkt, offset));
}

Zon::Ptr<LdpInitMsgParser> ldpInitMsgParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset) {
   return Zon::validPtr(Zon::makePtr<LdpInitMsgParser>(pkt, offset));
}

Zon::Ptr<LdpCapabilityMsgParser> ldpCapabilityMsgParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                               std::uint32_t offset) {
   return Zon::validPtr(Zon::makePtr<LdpCapabilityMsgParser>(pkt, offset));
}

Zon::Ptr<LdpAddressMsgParser> ldpAddressMsgParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset) {
   return Zon::validPtr(Zon::makePtr<LdpAddressMsgParser>(pkt, offset));
}

Zon::Ptr<LdpAddressWithdrawMsgParser> ldpAddressWithdrawMsgParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                         std::uint32_t offset) {
   return Zon::validPtr(Zon::makePtr<LdpAddressWithdrawMsgParser>(pkt, offset));
}

} // namespace Ldp
