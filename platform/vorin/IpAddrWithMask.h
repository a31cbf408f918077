// An interface's IPv4 address with the length of its subnet's prefix: the
// address keeps its host bits ("10.1.2.3/24" is not "10.1.2.0/24"). Ordered by
// address, then length; text "a.b.c.d/len".
#pragma once

#include <compare>
#include <cstdint>
#include <functional>
#include <string_view>

#include "vorin/IpAddr.h"
#include "zon/String.h"

namespace Vorin {

class IpAddrWithMask {
 public:
   static constexpr std::uint8_t maxLength = 32;

   constexpr IpAddrWithMask() noexcept = default;
   // RangeException "IpAddrWithMask::length > 32 not allowed" above 32.
   IpAddrWithMask(IpAddr address, unsigned length);
   // "10.1.2.3/24"; ParseException otherwise, RangeException for a length above 32.
   static IpAddrWithMask fromString(std::string_view text);

   constexpr IpAddr address() const noexcept { return address_; }
   constexpr std::uint8_t length() const noexcept { return length_; }
   // The subnet: the address with its host bits cleared.
   constexpr IpAddr subnet() const noexcept {
      return IpAddr(length_ == 0 ? 0u : address_.value() & ~((1ull << (32 - length_)) - 1));
   }
   constexpr bool contains(IpAddr a) const noexcept {
      return IpAddrWithMask(a, length_, Unchecked{}).subnet() == subnet();
   }

   Zon::String8 stringValue() const;
   constexpr auto operator<=>(IpAddrWithMask const &) const noexcept = default;

 private:
   struct Unchecked {};
   constexpr IpAddrWithMask(IpAddr a, std::uint8_t length, Unchecked) noexcept : address_(a), length_(length) {}

   IpAddr address_;
   std::uint8_t length_ = 0;
};

} // namespace Vorin

template <>
struct std::hash<Vorin::IpAddrWithMask> {
   std::size_t operator()(Vorin::IpAddrWithMask const & a) const noexcept {
      return std::hash<Vorin::IpAddr>()(a.address()) * 33u + a.length();
   }
};
