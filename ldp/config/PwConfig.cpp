// The pseudowire FEC session's construction: the id is checked, then the member
// that the session is made for is added.
#include "ldp/config/PwConfig.h"

#include "zon/Assert.h"

namespace Ldp {

PwFecSessionConfig::PwFecSessionConfig(PwFecSessionId const & pwFecSessionId, PwFecSessionMember initMember)
    : Zon::Entity(Zon::nameOf(pwFecSessionId)), pwFecSessionId_(pwFecSessionId), initMember_(initMember) {
   handlePwFecSessionId();
   memberIs(initMember, true);
}

void PwFecSessionConfig::handlePwFecSessionId() const { ZON_ASSERT(pwFecSessionId().isValid()); }

} // namespace Ldp
