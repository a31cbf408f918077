// The name of a network namespace. The platform's default namespace is called
// "default"; every VRF's sockets live in one namespace. Text: the name itself.
#pragma once

#include <compare>
#include <functional>
#include <string>
#include <string_view>

#include "zon/String.h"

namespace Vorin {

class NamespaceName {
 public:
   NamespaceName() = default;
   NamespaceName(std::string_view name) : name_(name) {}
   NamespaceName(char const * name) : name_(name) {}
   static NamespaceName fromString(std::string_view text) { return NamespaceName(text); }
   static NamespaceName defaultNamespace() { return NamespaceName("default"); }

   std::string const & stdString() const noexcept { return name_; }
   Zon::String8 stringValue() const { return Zon::String8(name_); }

   bool operator==(NamespaceName const &) const noexcept = default;
   std::strong_ordering operator<=>(NamespaceName const &) const noexcept = default;

 private:
   std::string name_;
};

} // namespace Vorin

template <>
struct std::hash<Vorin::NamespaceName> {
   std::size_t operator()(Vorin::NamespaceName const & n) const noexcept {
      return std::hash<std::string>()(n.stdString());
   }
};
