// A forwarding equivalence class: an IP prefix, or a pseudowire identified by its
// type and PW id. Hashable, ordered (prefixes before pseudowires) and printable.
#pragma once

#include <compare>
#include <functional>

#include "pseudowire/PseudowireTypes.h"
#include "vorin/IpAddr.h"
#include "zon/String.h"

namespace Mpls {

class FwdEqvClass {
 public:
   enum Kind : std::uint8_t { none_ = 0, ipPrefix_ = 1, pseudowire_ = 2 };

   FwdEqvClass() noexcept = default;
   FwdEqvClass(Vorin::IpGenPrefix const & prefix) noexcept : kind_(ipPrefix_), prefix_(prefix) {}
   FwdEqvClass(Pseudowire::PseudowireType type, Pseudowire::PseudowireId id) noexcept
       : kind_(pseudowire_), pwType_(type), pwId_(id) {}

   Kind kind() const noexcept { return kind_; }
   bool isIpPrefix() const noexcept { return kind_ == ipPrefix_; }
   bool isPseudowire() const noexcept { return kind_ == pseudowire_; }
   Vorin::IpGenPrefix const & prefix() const noexcept { return prefix_; }
   Pseudowire::PseudowireType pwType() const noexcept { return pwType_; }
   Pseudowire::PseudowireId pwId() const noexcept { return pwId_; }

   // "10.0.0.0/8"; "pw(ethernet, 100)"; "none".
   Zon::String8 stringValue() const;

   bool operator==(FwdEqvClass const & o) const noexcept = default;
   std::strong_ordering operator<=>(FwdEqvClass const & o) const noexcept = default;

 private:
   Kind kind_ = none_;
   Vorin::IpGenPrefix prefix_;
   Pseudowire::PseudowireType pwType_{};
   Pseudowire::PseudowireId pwId_;
};

} // namespace Mpls

template <>
struct std::hash<Mpls::FwdEqvClass> {
   std::size_t operator()(Mpls::FwdEqvClass const & f) const noexcept {
      if (f.isPseudowire()) {
         return (std::size_t(f.pwId().value()) << 16) ^ std::size_t(f.pwType()) ^ 0x9e3779b9u;
      }
      return std::hash<Vorin::IpGenPrefix>()(f.prefix()) + f.kind();
   }
};
