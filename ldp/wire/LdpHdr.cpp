#include "ldp/wire/LdpHdr.h"

#include <string>

#include "zon/Value.h"

namespace Ldp {

Zon::String8 wireWordText(char const * typeName, std::uint8_t const * bytes, unsigned n) {
   static char const * const names[] = {"v0", "v1", "v2", "v3"};
   Zon::ValueText t(typeName);
   for (unsigned i = 0; i < n && i < 4; ++i) {
      t.field(names[i], bytes[i]);
   }
   return t.str();
}

Zon::String8 LdpPduHdr::stringValue() const {
   return Zon::String8(Zon::format("LdpPduHdr: Ver(%d),Len(%d),LdpId: ", version(), length()) +
                       ldpIdentifier_.stringValue());
}

Zon::String8 LdpHdrMsgUbitAndTypeField::stringValue() const {
   std::uint8_t const b[2] = {word_.byte(0), word_.byte(1)};
   return wireWordText("Ldp::LdpHdrMsgUbitAndTypeField", b, 2);
}

Zon::String8 LdpTlvTypeField::stringValue() const {
   std::uint8_t const b[2] = {word_.byte(0), word_.byte(1)};
   return wireWordText("Ldp::LdpTlvTypeField", b, 2);
}

} // namespace Ldp
