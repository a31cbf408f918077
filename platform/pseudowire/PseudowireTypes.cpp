#include "pseudowire/PseudowireTypes.h"

#include <string>

#include "zon/Exception.h"

ZON_ENUM_DEFINE(Pseudowire, PseudowireType, PSEUDOWIRE_TYPES)

namespace Pseudowire {

Zon::String8 GroupId::stringValue() const { return Zon::String8(std::to_string(value_)); }

Zon::String8 PseudowireId::stringValue() const { return Zon::String8(std::to_string(value_)); }

VlanIdOrNone::VlanIdOrNone(std::uint32_t v) {
   if (v > max) {
      throw Zon::RangeException("VlanIdOrNone::value > 4094 not allowed");
   }
   value_ = static_cast<std::uint16_t>(v);
}

Zon::String8 VlanIdOrNone::stringValue() const { return Zon::String8(std::to_string(value_)); }

} // namespace Pseudowire
