// The hash of a FEC on a session.
#include "ldp/status/LdpFecSession.h"

#include "zon/Hash.h"

namespace Ldp {

std::size_t LdpFecSessionId::hash() const noexcept { return Zon::hashFields32(fwdEqvClass_, ldpSessionId_); }

} // namespace Ldp
