#include "pseudowire/PseudowireTypes.h"

#include <charconv>
#include <cstdio>
#include <string>

#include "zon/Exception.h"
#include "zon/Value.h"
#include "zon/ValueParse.h"

ZON_ENUM_DEFINE(Pseudowire, PseudowireType, PSEUDOWIRE_TYPES)
ZON_ENUM_DEFINE(Pseudowire, PseudowireConnectorStatus, PSEUDOWIRE_CONNECTOR_STATUSES)

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

PseudowireLdpStatusFlags PseudowireLdpStatusFlags::fromString(std::string_view text) {
   std::string_view digits = text;
   if (digits.size() > 2 && digits[0] == '0' && (digits[1] == 'x' || digits[1] == 'X')) {
      digits.remove_prefix(2);
   }
   std::uint32_t v = 0;
   auto const [end, ec] = std::from_chars(digits.data(), digits.data() + digits.size(), v, 16);
   if (digits.empty() || ec != std::errc() || end != digits.data() + digits.size()) {
      throw Zon::ParseException("not PW status flags: '" + std::string(text) + "'");
   }
   return PseudowireLdpStatusFlags(v);
}

Zon::String8 PseudowireLdpStatusFlags::stringValue() const {
   char buf[11];
   std::snprintf(buf, sizeof buf, "0x%08x", static_cast<unsigned>(value_));
   return Zon::String8(buf);
}

PseudowireLdpRequestKey PseudowireLdpRequestKey::fromString(std::string_view text) {
   Zon::ValueTextReader reader(text, "Pseudowire::PseudowireLdpRequestKey");
   auto const peer = Zon::valueFromText<Vorin::IpGenAddr>(reader.field("peer"));
   auto const pwId = Zon::valueFromText<PseudowireId>(reader.field("pwId"));
   reader.end();
   return PseudowireLdpRequestKey(peer, pwId);
}

Zon::String8 PseudowireLdpRequestKey::stringValue() const {
   return Zon::ValueText("Pseudowire::PseudowireLdpRequestKey").field("peer", peer_).field("pwId", pwId_).str();
}

} // namespace Pseudowire
