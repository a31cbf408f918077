// The Initialization message parser: its capability TLVs first (through
// LdpCapabilityParser), then a Common Session Parameters TLV that must stand
// first.
#pragma once

#include <cstdint>

#include "ldp/parser/LdpCapabilityParser.h"
#include "ldp/wire/LdpTlv.h"

namespace Ldp {

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

Zon::Ptr<LdpInitMsgParser> ldpInitMsgParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt, std::uint32_t offset);

} // namespace Ldp
