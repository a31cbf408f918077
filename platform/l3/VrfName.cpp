#include "l3/VrfName.h"

#include "zon/Exception.h"

namespace L3 {

std::string VrfName::checked(std::string_view name) {
   if (name.size() > maxBytes) {
      throw Zon::RangeException("VrfName::bytes > 100 not allowed");
   }
   return std::string(name);
}

} // namespace L3
