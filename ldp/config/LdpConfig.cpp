// Hand-written behaviour of the configuration root.
#include "ldp/config/LdpConfig.h"

namespace Ldp {

// After initialization the default VRF always has a Config.
void LdpConfigColl::handleInitialized() {
   L3::VrfName const defaultVrf("default");
   configIs(defaultVrf);
   initializedIs(true);
}

} // namespace Ldp

#include "ldp/wire/LdpProtoParam.h"
#include "ldp/wire/LdpTlv.h"

// The wire layer depends on nothing else of libLdp, so the session parameter
// TLV keeps its own copy of the buffer size; it must stay the protocol's.
static_assert(Ldp::LdpCommonSessionParamTlv::maxPduLengthLimit == Ldp::LdpProtoParam::ldpPktBufferSize);
