#include "vorin/IpAddr.h"

#include <arpa/inet.h>

#include <algorithm>
#include <string>

#include "zon/Exception.h"

namespace Vorin {

namespace {
[[noreturn]] void badText(char const * what, std::string_view text) {
   throw Zon::ParseException(std::string("not ") + what + ": '" + std::string(text) + "'");
}
} // namespace

IpAddr IpAddr::fromString(std::string_view text) {
   std::string s(text);
   std::uint8_t b[4];
   if (inet_pton(AF_INET, s.c_str(), b) != 1) {
      badText("an IPv4 address", text);
   }
   return IpAddr(b[0], b[1], b[2], b[3]);
}

Zon::String8 IpAddr::stringValue() const {
   char buf[16];
   int n = std::snprintf(buf, sizeof buf, "%u.%u.%u.%u", b_[0], b_[1], b_[2], b_[3]);
   return Zon::String8(buf, static_cast<std::size_t>(n));
}

Ip6Addr Ip6Addr::fromString(std::string_view text) {
   std::string s(text);
   std::uint8_t b[16];
   if (inet_pton(AF_INET6, s.c_str(), b) != 1) {
      badText("an IPv6 address", text);
   }
   return Ip6Addr(b);
}

Zon::String8 Ip6Addr::stringValue() const {
   char buf[INET6_ADDRSTRLEN];
   inet_ntop(AF_INET6, b_, buf, sizeof buf);
   return Zon::String8(buf);
}

IpGenAddr::IpGenAddr(AddressFamily af, std::uint8_t const * bytes) noexcept
    : af_(af == ipv6_ ? ipv6_ : ipv4_) {
   std::memcpy(b_.data(), bytes, byteLength());
}

IpGenAddr IpGenAddr::fromString(std::string_view text) {
   if (text.find(':') != std::string_view::npos) {
      return IpGenAddr(Ip6Addr::fromString(text));
   }
   return IpGenAddr(IpAddr::fromString(text));
}

bool IpGenAddr::isUnspecified() const noexcept {
   return std::all_of(b_.begin(), b_.end(), [](std::uint8_t c) { return c == 0; });
}

Zon::String8 IpGenAddr::stringValue() const { return isV6() ? v6().stringValue() : v4().stringValue(); }

IpGenPrefix::IpGenPrefix(IpGenAddr const & addr, unsigned length) noexcept
    : addr_(addr), len_(static_cast<std::uint8_t>(std::min(length, addr.bitLength()))) {
   // The host bits are cleared: the bits of a partial octet, then every octet
   // behind it.
   unsigned const full = len_ / 8;
   unsigned const partial = len_ % 8;
   unsigned clearFrom = full;
   if (partial) {
      addr_.b_[full] = static_cast<std::uint8_t>(addr_.b_[full] & (0xFFu << (8 - partial)));
      ++clearFrom;
   }
   std::fill(addr_.b_.begin() + clearFrom, addr_.b_.end(), std::uint8_t(0));
}

IpGenPrefix IpGenPrefix::fromString(std::string_view text) {
   auto slash = text.find('/');
   if (slash == std::string_view::npos) {
      badText("an IP prefix", text);
   }
   IpGenAddr a = IpGenAddr::fromString(text.substr(0, slash));
   std::string lenText(text.substr(slash + 1));
   if (lenText.empty() || lenText.size() > 3 ||
       lenText.find_first_not_of("0123456789") != std::string::npos) {
      badText("an IP prefix", text);
   }
   unsigned len = static_cast<unsigned>(std::stoul(lenText));
   if (len > a.bitLength()) {
      badText("an IP prefix", text);
   }
   return IpGenPrefix(a, len);
}

Zon::String8 IpGenPrefix::stringValue() const {
   return Zon::String8(addr_.stringValue() + "/" + std::to_string(len_));
}

std::size_t hashBytes(void const * p, std::size_t n) noexcept {
   // FNV-1a: small keys, no need for anything stronger.
   std::size_t h = static_cast<std::size_t>(1469598103934665603ull);
   auto const * c = static_cast<unsigned char const *>(p);
   for (std::size_t i = 0; i < n; ++i) {
      h = (h ^ c[i]) * static_cast<std::size_t>(1099511628211ull);
   }
   return h;
}

} // namespace Vorin
