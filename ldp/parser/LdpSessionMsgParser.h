// Parsers of the messages that set up and keep a session and its address
// bindings: Hello, Initialization, Capability, Address and Address Withdraw.
// Each runs the base header step, then its own message step as the last act of
// its constructor; the TLVs it exposes are views into the packet (the address
// list is an object that references the packet).
#pragma once

#include <cstdint>

#include "ldp/parser/LdpCapabilityParser.h"
#include "ldp/parser/LdpMsgParser.h"
#include "ldp/parser/LdpTlvParser.h"
#include "ldp/wire/LdpTlv.h"

namespace Ldp {

class LdpHelloMsgParser : public LdpMsgParser {
 public:
   using Ptr = Zon::Ptr<LdpHelloMsgParser>;

   LdpHelloMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);

   LdpCommonHelloTlv * msgCommonHelloTlv() const noexcept { return msgCommonHelloTlv_; }
   LdpIpTransportAddrTlv * msgIpTransportTlv() const noexcept { return msgIpTransportTlv_; }
   LdpIp6TransportAddrTlv * msgIp6TransportTlv() const noexcept { return msgIp6TransportTlv_; }
   LdpConfigSeqNumTlv * msgConfigSeqTlv() const noexcept { return msgConfigSeqTlv_; }
   bool initialized() const noexcept { return initialized_; }

   void msgCommonHelloTlvIs(LdpCommonHelloTlv * t) noexcept { msgCommonHelloTlv_ = t; }
   void msgIpTransportTlvIs(LdpIpTransportAddrTlv * t) noexcept { msgIpTransportTlv_ = t; }
   void msgIp6TransportTlvIs(LdpIp6TransportAddrTlv * t) noexcept { msgIp6TransportTlv_ = t; }
   void msgConfigSeqTlvIs(LdpConfigSeqNumTlv * t) noexcept { msgConfigSeqTlv_ = t; }

   char const * fwkType() const noexcept override { return "Ldp::LdpHelloMsgParser"; }
   // "LDP Hello Msg:\n   Msg Id: %d," and each present TLV, or
   // "Invalid LDP Hello Msg: " + reason.
   Zon::String8 stringValue() const override;

 protected:
   ~LdpHelloMsgParser() override = default;

 private:
   void handleInitialized();

   LdpCommonHelloTlv * msgCommonHelloTlv_ = nullptr;
   LdpIpTransportAddrTlv * msgIpTransportTlv_ = nullptr;
   LdpIp6TransportAddrTlv * msgIp6TransportTlv_ = nullptr;
   LdpConfigSeqNumTlv * msgConfigSeqTlv_ = nullptr;
   bool initialized_ = false;
};

class LdpInitMsgParser : public LdpCapabilityParser {
 public:
   using Ptr = Zon::Ptr<LdpInitMsgParser>;

   LdpInitMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);

   LdpCommonSessionParamTlv * msgSessionParamTlv() const noexcept { return msgSessionParamTlv_; }
   bool initialized() const noexcept { return initialized_; }
   void msgSessionParamTlvIs(LdpCommonSessionParamTlv * t) noexcept { msgSessionParamTlv_ = t; }

   char const * fwkType() const noexcept override { return "Ldp::LdpInitMsgParser"; }
   // "LDP Init Msg:\n   Msg Id: %d," with the session parameters and the
   // capabilities, or "Invalid LDP Init Msg: " + reason.
   Zon::String8 stringValue() const override;

 protected:
   ~LdpInitMsgParser() override = default;

 private:
   void handleInitialized();

   LdpCommonSessionParamTlv * msgSessionParamTlv_ = nullptr;
   bool initialized_ = false;
};

class LdpCapabilityMsgParser : public LdpCapabilityParser {
 public:
   using Ptr = Zon::Ptr<LdpCapabilityMsgParser>;

   LdpCapabilityMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);

   bool initialized() const noexcept { return initialized_; }

   char const * fwkType() const noexcept override { return "Ldp::LdpCapabilityMsgParser"; }
   // "LDP Capability Msg:\n   Msg Id: %d," with the capabilities, or
   // "Invalid LDP Capability Msg: " + reason.
   Zon::String8 stringValue() const override;

 protected:
   ~LdpCapabilityMsgParser() override = default;

 private:
   void handleInitialized();

   bool initialized_ = false;
};

// What Address and Address Withdraw share: one Address List TLV, first of the
// message, kept as an object that references the packet.
class LdpAddressListMsgParser : public LdpMsgParser {
 public:
   Zon::Ptr<LdpAddressListTlvParser> const & addressListTlv() const noexcept { return addressListTlv_; }
   void addressListTlvIs(Zon::Ptr<LdpAddressListTlvParser> t) noexcept { addressListTlv_ = std::move(t); }
   bool initialized() const noexcept { return initialized_; }

 protected:
   LdpAddressListMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset) : LdpMsgParser(pkt, offset) {}
   ~LdpAddressListMsgParser() override = default;

   // The message step of a message of type `own`; `typeAssertion` is the text
   // printed when the message is of another type.
   void addressListStep(LdpMsgType own, char const * typeAssertion);
   Zon::String8 addressListText(char const * title, char const * invalidPrefix) const;

 private:
   Zon::Ptr<LdpAddressListTlvParser> addressListTlv_;
   bool initialized_ = false;
};

class LdpAddressMsgParser : public LdpAddressListMsgParser {
 public:
   using Ptr = Zon::Ptr<LdpAddressMsgParser>;

   LdpAddressMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);

   char const * fwkType() const noexcept override { return "Ldp::LdpAddressMsgParser"; }
   // "LDP Address Msg:\n   Msg Id: %d," and the address list, or
   // "Invalid LDP Address Msg: " + reason.
   Zon::String8 stringValue() const override;

 protected:
   ~LdpAddressMsgParser() override = default;
};

class LdpAddressWithdrawMsgParser : public LdpAddressListMsgParser {
 public:
   using Ptr = Zon::Ptr<LdpAddressWithdrawMsgParser>;

   LdpAddressWithdrawMsgParser(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);

   char const * fwkType() const noexcept override { return "Ldp::LdpAddressWithdrawMsgParser"; }
   // "LDP Address Withdraw Msg:\n   Msg Id: %d," and the address list, or
   // "Invalid LDP Address Withdraw Msg: " + reason.
   Zon::String8 stringValue() const override;

 protected:
   ~LdpAddressWithdrawMsgParser() override = default;
};

Zon::Ptr<LdpHelloMsgParser> ldpHelloMsgParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);
Zon::Ptr<LdpInitMsgParser> ldpInitMsgParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);
Zon::Ptr<LdpCapabilityMsgParser> ldpCapabilityMsgParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                               std::uint32_t offset);
Zon::Ptr<LdpAddressMsgParser> ldpAddressMsgParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);
Zon::Ptr<LdpAddressWithdrawMsgParser> ldpAddressWithdrawMsgParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                                         std::uint32_t offset);

} // namespace Ldp
