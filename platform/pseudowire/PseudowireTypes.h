// Pseudowire value types: the 15-bit PW type, the group and PW identifiers, and the
// VLAN id that a pseudowire may request.
#pragma once

#include <compare>
#include <cstdint>
#include <functional>

#include "zon/Enum.h"
#include "zon/String.h"

namespace Pseudowire {

// PW types of the IANA registry; values without an enumerator are kept as numbers.
#define PSEUDOWIRE_TYPES(X)                                                             \
   X(pwTypeUnknown, 0x0000)                                                             \
   X(frameRelayDlci, 0x0001)                                                            \
   X(atmAal5Sdu, 0x0002)                                                                \
   X(atmTransparent, 0x0003)                                                            \
   X(ethernetTagged, 0x0004)                                                            \
   X(ethernet, 0x0005)                                                                  \
   X(hdlc, 0x0006)                                                                      \
   X(ppp, 0x0007)

enum class PseudowireType : std::uint16_t { PSEUDOWIRE_TYPES(ZON_ENUMERATOR) };
ZON_ENUM_DECLARE(PseudowireType);

class GroupId {
 public:
   constexpr GroupId() noexcept = default;
   constexpr explicit GroupId(std::uint32_t v) noexcept : value_(v) {}
   constexpr std::uint32_t value() const noexcept { return value_; }
   Zon::String8 stringValue() const;
   constexpr auto operator<=>(GroupId const &) const noexcept = default;

 private:
   std::uint32_t value_ = 0;
};

class PseudowireId {
 public:
   constexpr PseudowireId() noexcept = default;
   constexpr explicit PseudowireId(std::uint32_t v) noexcept : value_(v) {}
   constexpr std::uint32_t value() const noexcept { return value_; }
   Zon::String8 stringValue() const;
   constexpr auto operator<=>(PseudowireId const &) const noexcept = default;

 private:
   std::uint32_t value_ = 0;
};

// A VLAN id from 0 to 4094; RangeException "VlanIdOrNone::value > 4094 not allowed"
// above that.
class VlanIdOrNone {
 public:
   static constexpr std::uint16_t max = 4094;
   constexpr VlanIdOrNone() noexcept = default;
   explicit VlanIdOrNone(std::uint32_t v);
   constexpr std::uint16_t value() const noexcept { return value_; }
   Zon::String8 stringValue() const;
   constexpr auto operator<=>(VlanIdOrNone const &) const noexcept = default;

 private:
   std::uint16_t value_ = 0;
};

} // namespace Pseudowire

ZON_ENUM_TRAITS(Pseudowire::PseudowireType);

template <>
struct std::hash<Pseudowire::PseudowireId> {
   std::size_t operator()(Pseudowire::PseudowireId i) const noexcept { return i.value(); }
};
