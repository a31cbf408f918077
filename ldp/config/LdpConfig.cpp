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
