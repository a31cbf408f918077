#include "mpls/FwdEqvClass.h"

namespace Mpls {

Zon::String8 FwdEqvClass::stringValue() const {
   switch (kind_) {
    case ipPrefix_: return prefix_.stringValue();
    case pseudowire_:
      return Zon::String8("pw(" + Pseudowire::stringValue(pwType_) + ", " + pwId_.stringValue() + ")");
    case none_: break;
   }
   return Zon::String8("none");
}

} // namespace Mpls

#include "mpls/FecFilteredState.h"

ZON_ENUM_DEFINE(Mpls, FecFilteredState, MPLS_FEC_FILTERED_STATES)
