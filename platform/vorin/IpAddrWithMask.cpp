#include "vorin/IpAddrWithMask.h"

#include <charconv>
#include <cstdio>
#include <string>

#include "zon/Exception.h"

namespace Vorin {

IpAddrWithMask::IpAddrWithMask(IpAddr address, unsigned length) : address_(address) {
   if (length > maxLength) {
      throw Zon::RangeException("IpAddrWithMask::length > 32 not allowed");
   }
   length_ = static_cast<std::uint8_t>(length);
}

IpAddrWithMask IpAddrWithMask::fromString(std::string_view text) {
   std::size_t const slash = text.find('/');
   std::string_view const len = slash == std::string_view::npos ? std::string_view() : text.substr(slash + 1);
   unsigned length = 0;
   auto const [end, ec] = std::from_chars(len.data(), len.data() + len.size(), length);
   if (len.empty() || len.size() > 3 || ec != std::errc() || end != len.data() + len.size()) {
      throw Zon::ParseException("not an address with mask: '" + std::string(text) + "'");
   }
   return IpAddrWithMask(IpAddr::fromString(text.substr(0, slash)), length);
}

Zon::String8 IpAddrWithMask::stringValue() const {
   std::string s(address_.stringValue());
   s += '/';
   s += std::to_string(length_);
   return Zon::String8(std::move(s));
}

} // namespace Vorin
