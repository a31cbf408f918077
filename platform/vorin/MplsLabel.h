// A 20-bit MPLS label, plus the two values one past the range: `none` (1048576,
// no label) and `luWithdraw` (1048577, a withdrawn label).
#pragma once

#include <compare>
#include <cstdint>
#include <functional>

#include "zon/String.h"

namespace Vorin {

class MplsLabel {
 public:
   static constexpr std::uint32_t min = 0;
   static constexpr std::uint32_t max = 1048575;
   static constexpr std::uint32_t none = 1048576;
   static constexpr std::uint32_t luWithdraw = 1048577;

   constexpr MplsLabel() noexcept = default;
   // RangeException "MplsLabel::value < MplsLabel::min or > MplsLabel::luWithdraw
   // not allowed" for a value above luWithdraw.
   explicit MplsLabel(std::uint32_t v) : value_(checked(v)) {}

   constexpr std::uint32_t value() const noexcept { return value_; }
   constexpr bool isNone() const noexcept { return value_ == none; }
   Zon::String8 stringValue() const;

   constexpr auto operator<=>(MplsLabel const &) const noexcept = default;

 private:
   static std::uint32_t checked(std::uint32_t v);
   std::uint32_t value_ = none;
};

} // namespace Vorin

template <>
struct std::hash<Vorin::MplsLabel> {
   std::size_t operator()(Vorin::MplsLabel l) const noexcept { return l.value(); }
};
