// The Capability message parser: its message step is the capability TLVs' walk.
#pragma once

#include <cstdint>

#include "ldp/parser/LdpCapabilityParser.h"

namespace Ldp {

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

Zon::Ptr<LdpCapabilityMsgParser> ldpCapabilityMsgParserFactory(Zon::Ptr<Vorin::Pkt> const & pkt,
                                                               std::uint32_t offset);

} // namespace Ldp
