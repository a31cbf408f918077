// Transport values of the platform's sockets: a TCP or UDP port number and the
// IP time-to-live of sent packets. Both print as decimal numbers.
#pragma once

#include <compare>
#include <cstdint>
#include <functional>
#include <string>

#include "zon/String.h"

namespace Vorin {

class Port {
 public:
   constexpr Port() noexcept = default;
   constexpr explicit Port(std::uint16_t v) noexcept : value_(v) {}
   constexpr std::uint16_t value() const noexcept { return value_; }
   Zon::String8 stringValue() const { return Zon::String8(std::to_string(value_)); }
   constexpr auto operator<=>(Port const &) const noexcept = default;

 private:
   std::uint16_t value_ = 0;
};

class IpTtl {
 public:
   constexpr IpTtl() noexcept = default;
   constexpr explicit IpTtl(std::uint8_t v) noexcept : value_(v) {}
   constexpr std::uint8_t value() const noexcept { return value_; }
   Zon::String8 stringValue() const { return Zon::String8(std::to_string(value_)); }
   constexpr auto operator<=>(IpTtl const &) const noexcept = default;

 private:
   std::uint8_t value_ = 0;
};

} // namespace Vorin

template <>
struct std::hash<Vorin::Port> {
   std::size_t operator()(Vorin::Port p) const noexcept { return p.value(); }
};
template <>
struct std::hash<Vorin::IpTtl> {
   std::size_t operator()(Vorin::IpTtl t) const noexcept { return t.value(); }
};
