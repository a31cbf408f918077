// An interface identifier: the interface's name ("Ethernet1", "Vlan100"). The
// default is the empty id, meaning no interface. Hashable, ordered, printable.
#pragma once

#include <compare>
#include <functional>
#include <string>
#include <string_view>

#include "zon/String.h"

namespace Vorin {

class IntfId {
 public:
   IntfId() = default;
   IntfId(std::string_view name) : name_(name) {}
   IntfId(char const * name) : name_(name) {}
   static IntfId fromString(std::string_view text) { return IntfId(text); }

   std::string const & name() const noexcept { return name_; }
   bool isEmpty() const noexcept { return name_.empty(); }
   Zon::String8 stringValue() const { return Zon::String8(name_); }

   bool operator==(IntfId const &) const noexcept = default;
   std::strong_ordering operator<=>(IntfId const &) const noexcept = default;

 private:
   std::string name_;
};

} // namespace Vorin

template <>
struct std::hash<Vorin::IntfId> {
   std::size_t operator()(Vorin::IntfId const & i) const noexcept {
      return std::hash<std::string>()(i.name());
   }
};
