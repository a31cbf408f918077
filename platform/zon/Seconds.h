// Time stamps and durations in seconds, as 64-bit floating point, and the
// runtime's current-time source, which tests can set.
#pragma once

#include <compare>
#include <functional>

namespace Zon {

class Seconds {
 public:
   constexpr Seconds() noexcept = default;
   constexpr Seconds(double v) noexcept : value_(v) {}
   constexpr double value() const noexcept { return value_; }
   constexpr operator double() const noexcept { return value_; }

   constexpr auto operator<=>(Seconds const &) const noexcept = default;

   // The current time: the monotonic clock, unless a test has set a source.
   static Seconds now();

 private:
   double value_ = 0.0;
};

// Replaces the current-time source; an empty function restores the real clock.
void nowSourceIs(std::function<Seconds()> source);

} // namespace Zon
