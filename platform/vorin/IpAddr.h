// IP address value types. IpAddr and Ip6Addr hold their bytes in network order
// with alignment 1, so they can stand inside wire structures; IpGenAddr holds
// either family, IpGenPrefix an address with a prefix length.
#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string_view>

#include "zon/String.h"

namespace Vorin {

enum AddressFamily : std::uint8_t {
   ipunknown_ = 0,
   ipv4_ = 1,
   ipv6_ = 2,
};

class IpAddr {
 public:
   constexpr IpAddr() noexcept = default;
   // From a host-order 32-bit value (0x0a000001 is 10.0.0.1).
   constexpr explicit IpAddr(std::uint32_t hostOrder) noexcept { valueIs(hostOrder); }
   constexpr IpAddr(std::uint8_t a, std::uint8_t b, std::uint8_t c, std::uint8_t d) noexcept
       : b_{a, b, c, d} {}
   // Parses a dotted quad; ParseException when it is not one.
   static IpAddr fromString(std::string_view text);

   constexpr std::uint32_t value() const noexcept {
      return (std::uint32_t(b_[0]) << 24) | (std::uint32_t(b_[1]) << 16) |
             (std::uint32_t(b_[2]) << 8) | std::uint32_t(b_[3]);
   }
   constexpr void valueIs(std::uint32_t v) noexcept {
      b_[0] = std::uint8_t(v >> 24);
      b_[1] = std::uint8_t(v >> 16);
      b_[2] = std::uint8_t(v >> 8);
      b_[3] = std::uint8_t(v);
   }
   constexpr std::uint8_t const * bytes() const noexcept { return b_; }
   constexpr bool isZero() const noexcept { return value() == 0; }

   Zon::String8 stringValue() const;

   constexpr bool operator==(IpAddr const & o) const noexcept { return value() == o.value(); }
   constexpr std::strong_ordering operator<=>(IpAddr const & o) const noexcept {
      return value() <=> o.value();
   }

 private:
   std::uint8_t b_[4] = {0, 0, 0, 0};
};

class Ip6Addr {
 public:
   constexpr Ip6Addr() noexcept = default;
   explicit Ip6Addr(std::uint8_t const * sixteenBytes) noexcept { std::memcpy(b_, sixteenBytes, 16); }
   static Ip6Addr fromString(std::string_view text);

   constexpr std::uint8_t const * bytes() const noexcept { return b_; }
   // The shortest text form: lower case, "::" for the longest zero run.
   Zon::String8 stringValue() const;

   bool operator==(Ip6Addr const & o) const noexcept { return std::memcmp(b_, o.b_, 16) == 0; }
   std::strong_ordering operator<=>(Ip6Addr const & o) const noexcept {
      return std::memcmp(b_, o.b_, 16) <=> 0;
   }

 private:
   std::uint8_t b_[16] = {};
};

static_assert(sizeof(IpAddr) == 4 && alignof(IpAddr) == 1);
static_assert(sizeof(Ip6Addr) == 16 && alignof(Ip6Addr) == 1);

// An IPv4 or IPv6 address. The default is the unspecified IPv4 address 0.0.0.0.
class IpGenAddr {
 public:
   IpGenAddr() noexcept : af_(ipv4_) {}
   IpGenAddr(IpAddr a) noexcept : af_(ipv4_) { std::memcpy(b_.data(), a.bytes(), 4); }
   IpGenAddr(Ip6Addr const & a) noexcept : af_(ipv6_) { std::memcpy(b_.data(), a.bytes(), 16); }
   // An address of family `af` from its 4 or 16 network-order bytes.
   IpGenAddr(AddressFamily af, std::uint8_t const * bytes) noexcept;
   // Either form of text; ParseException when it is neither.
   static IpGenAddr fromString(std::string_view text);

   AddressFamily af() const noexcept { return af_; }
   bool isV4() const noexcept { return af_ == ipv4_; }
   bool isV6() const noexcept { return af_ == ipv6_; }
   // 4 for IPv4, 16 for IPv6.
   unsigned byteLength() const noexcept { return af_ == ipv6_ ? 16 : 4; }
   unsigned bitLength() const noexcept { return byteLength() * 8; }
   IpAddr v4() const noexcept { return IpAddr(b_[0], b_[1], b_[2], b_[3]); }
   Ip6Addr v6() const noexcept { return Ip6Addr(b_.data()); }
   std::uint8_t const * bytes() const noexcept { return b_.data(); }
   bool isUnspecified() const noexcept;

   Zon::String8 stringValue() const;

   bool operator==(IpGenAddr const & o) const noexcept = default;
   std::strong_ordering operator<=>(IpGenAddr const & o) const noexcept = default;

 private:
   friend class IpGenPrefix;
   AddressFamily af_;
   std::array<std::uint8_t, 16> b_{};
};

// An address and a prefix length. Bits beyond the length are cleared, so two
// prefixes compare equal exactly when they denote the same set of addresses.
class IpGenPrefix {
 public:
   IpGenPrefix() noexcept = default;
   // The length is capped at the family's bit length.
   IpGenPrefix(IpGenAddr const & addr, unsigned length) noexcept;
   // "10.0.0.0/8" or "2001:db8::/32"; ParseException otherwise.
   static IpGenPrefix fromString(std::string_view text);

   IpGenAddr const & address() const noexcept { return addr_; }
   unsigned length() const noexcept { return len_; }
   AddressFamily af() const noexcept { return addr_.af(); }

   Zon::String8 stringValue() const;

   bool operator==(IpGenPrefix const & o) const noexcept = default;
   std::strong_ordering operator<=>(IpGenPrefix const & o) const noexcept = default;

 private:
   IpGenAddr addr_;
   std::uint8_t len_ = 0;
};

std::size_t hashBytes(void const * p, std::size_t n) noexcept;

} // namespace Vorin

template <>
struct std::hash<Vorin::IpAddr> {
   std::size_t operator()(Vorin::IpAddr a) const noexcept { return std::hash<std::uint32_t>()(a.value()); }
};
template <>
struct std::hash<Vorin::IpGenAddr> {
   std::size_t operator()(Vorin::IpGenAddr const & a) const noexcept {
      return Vorin::hashBytes(a.bytes(), 16) ^ a.af();
   }
};
template <>
struct std::hash<Vorin::IpGenPrefix> {
   std::size_t operator()(Vorin::IpGenPrefix const & p) const noexcept {
      return std::hash<Vorin::IpGenAddr>()(p.address()) * 31 + p.length();
   }
};
