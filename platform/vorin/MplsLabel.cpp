#include "vorin/MplsLabel.h"

#include <string>

#include "zon/Exception.h"

namespace Vorin {

std::uint32_t MplsLabel::checked(std::uint32_t v) {
   if (v > luWithdraw) {
      throw Zon::RangeException("MplsLabel::value < MplsLabel::min or > MplsLabel::luWithdraw not allowed");
   }
   return v;
}

Zon::String8 MplsLabel::stringValue() const { return Zon::String8(std::to_string(value_)); }

} // namespace Vorin
