// The LDP identifier that names an LSR's label space: LSR id and label space,
// six bytes on the wire in network order. Hashable, ordered; text form "a.b.c.d:N".
#pragma once

#include <compare>
#include <cstdint>
#include <functional>

#include "vorin/IpAddr.h"
#include "vorin/NetInt.h"
#include "zon/String.h"

namespace Ldp {

class LdpIdentifier {
 public:
   static constexpr std::size_t wireBytes = 6;

   constexpr LdpIdentifier() noexcept = default;
   constexpr LdpIdentifier(Vorin::IpAddr lsrId, std::uint16_t labelSpace) noexcept
       : lsrId_(lsrId), labelSpaceNbo_(Vorin::NetU16::fromHost(labelSpace)) {}
   // "10.0.0.1:0"; ParseException otherwise.
   static LdpIdentifier fromString(std::string_view text);

   constexpr Vorin::IpAddr lsrId() const noexcept { return lsrId_; }
   constexpr void lsrIdIs(Vorin::IpAddr a) noexcept { lsrId_ = a; }
   constexpr std::uint16_t labelSpace() const noexcept { return labelSpaceNbo_.value(); }
   constexpr void labelSpaceIs(std::uint16_t s) noexcept { labelSpaceNbo_.valueIs(s); }

   Zon::String8 stringValue() const;

   constexpr bool operator==(LdpIdentifier const & o) const noexcept {
      return lsrId_ == o.lsrId_ && labelSpace() == o.labelSpace();
   }
   constexpr std::strong_ordering operator<=>(LdpIdentifier const & o) const noexcept {
      if (auto c = lsrId_ <=> o.lsrId_; c != 0) {
         return c;
      }
      return labelSpace() <=> o.labelSpace();
   }

 private:
   Vorin::IpAddr lsrId_;
   Vorin::NetU16 labelSpaceNbo_;
};

static_assert(sizeof(LdpIdentifier) == LdpIdentifier::wireBytes && alignof(LdpIdentifier) == 1);

} // namespace Ldp

template <>
struct std::hash<Ldp::LdpIdentifier> {
   std::size_t operator()(Ldp::LdpIdentifier const & id) const noexcept {
      return (std::size_t(id.lsrId().value()) * 65599u) ^ id.labelSpace();
   }
};
