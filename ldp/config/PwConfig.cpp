// The pseudowire FEC session's construction: the id is checked, then the member
// that the session is made for is added.
#include "ldp/config/PwConfig.h"

#include "zon/Assert.h"

namespace Ldp {

void PwFecSessionConfig::constructed() {
   handlePwFecSessionId();
   memberIs(initMember(), true);
}

void PwFecSessionConfig::handlePwFecSessionId() const { ZON_ASSERT(pwFecSessionId().isValid()); }

} // namespace Ldp
