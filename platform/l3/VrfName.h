// The name of a VRF: at most 100 bytes. A longer name is refused when it is made,
// with the range error "VrfName::bytes > 100 not allowed", so every VrfName that
// exists is valid. Hashable, ordered; its text is the name itself.
#pragma once

#include <compare>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "zon/String.h"

namespace L3 {

class VrfName {
 public:
   static constexpr std::size_t maxBytes = 100;

   VrfName() = default;
   VrfName(std::string_view name) : name_(checked(name)) {}
   VrfName(char const * name) : VrfName(std::string_view(name)) {}
   VrfName(std::string const & name) : VrfName(std::string_view(name)) {}
   static VrfName fromString(std::string_view text) { return VrfName(text); }

   std::string const & stdString() const noexcept { return name_; }
   char const * charPtr() const noexcept { return name_.c_str(); }
   std::size_t bytes() const noexcept { return name_.size(); }
   Zon::String8 stringValue() const { return Zon::String8(name_); }

   bool operator==(VrfName const &) const noexcept = default;
   std::strong_ordering operator<=>(VrfName const &) const noexcept = default;

 private:
   static std::string checked(std::string_view name);
   std::string name_;
};

} // namespace L3

template <>
struct std::hash<L3::VrfName> {
   std::size_t operator()(L3::VrfName const & v) const noexcept {
      return std::hash<std::string>()(v.stdString());
   }
};
