// The Hello message parser: a Common Hello Parameters TLV first, and optionally
// one transport address TLV (IPv4 or IPv6) and a Configuration Sequence Number
// TLV anywhere.
#pragma once

#include <cstdint>

#include "ldp/parser/LdpMsgParser.h"
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

Zon::Ptr<LdpHelloMsgParser> ldpHelloMsgParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);

} // namespace Ldp
