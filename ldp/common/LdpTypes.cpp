// The shared keys' hashes and the validity of a pseudowire FEC session id.
#include "ldp/common/LdpTypes.h"

#include "zon/Hash.h"

namespace Ldp {

// The session hash spreads the LSR id (host order) and adds the label space;
// every step is unsigned 32-bit arithmetic, so the result is the same on every
// platform and wraps at 2^32.
std::size_t LdpSessionId::hash() const noexcept {
   std::uint32_t h = peerLdpId_.lsrId().value() * 32767u - 1u;
   h = (h ^ (h >> 12)) * 5u;
   h = ((h >> 4) ^ h) * 2057u;
   return static_cast<std::uint32_t>((h ^ (h >> 16)) + peerLdpId_.labelSpace());
}

std::size_t LdpAdjId::hash() const noexcept {
   return Zon::hashFields32(peerLdpId_, intfId_, targetIpAddr_, static_cast<std::uint8_t>(kind_));
}

std::size_t PwFecSessionId::hash() const noexcept {
   return Zon::hashFields32(peerLdpId_, static_cast<std::uint16_t>(pwType_), pwId_);
}

bool PwFecSessionId::isValid() const noexcept {
   return peerLdpId_ != LdpIdentifier() && pwId_.value() != 0;
}

} // namespace Ldp
