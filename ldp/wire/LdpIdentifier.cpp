#include "ldp/wire/LdpIdentifier.h"

#include <string>

#include "zon/Exception.h"

namespace Ldp {

LdpIdentifier LdpIdentifier::fromString(std::string_view text) {
   auto colon = text.rfind(':');
   std::string space(colon == std::string_view::npos ? std::string_view() : text.substr(colon + 1));
   if (space.empty() || space.size() > 5 || space.find_first_not_of("0123456789") != std::string::npos ||
       std::stoul(space) > 0xFFFF) {
      throw Zon::ParseException("not an LDP identifier: '" + std::string(text) + "'");
   }
   return LdpIdentifier(Vorin::IpAddr::fromString(text.substr(0, colon)),
                        static_cast<std::uint16_t>(std::stoul(space)));
}

Zon::String8 LdpIdentifier::stringValue() const {
   return Zon::String8(lsrId_.stringValue() + ":" + std::to_string(labelSpace()));
}

} // namespace Ldp
