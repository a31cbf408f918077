// Via's short text and hash, and the children that the FEC entities make at birth.
#include "ldp/status/LdpFec.h"

#include <string>

#include "zon/Hash.h"

namespace Ldp {

Zon::String8 Via::shortStringValue() const {
   std::string s(hop_.stringValue());
   s += '-';
   s += intfId_.stringValue();
   return Zon::String8(std::move(s));
}

std::size_t Via::hash() const noexcept { return Zon::hashFields32(hop_, intfId_); }

void LdpFecConfig::constructed() {
   mplsLabelSetIs("labelSet", fwdEqvClass_);
   advertisedToIs("advertisedTo", fwdEqvClass_);
}

void LdpFecStatus::constructed() { ldpXsessionNotificationIs(""); }

} // namespace Ldp
