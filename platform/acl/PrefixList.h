// The access-control model's prefix list, as far as LDP uses it: entries ordered
// by sequence number, each a prefix with an action and optional length limits.
#pragma once

#include <cstdint>

#include "vorin/IpAddr.h"
#include "zon/Collection.h"
#include "zon/Entity.h"
#include "zon/Enum.h"
#include "zon/String.h"

namespace Acl {

#define ACL_ACTIONS(X)                                                                  \
   X(deny, 0)                                                                           \
   X(permit, 1)

enum class AclAction : std::uint8_t { ACL_ACTIONS(ZON_ENUMERATOR) };
ZON_ENUM_DECLARE(AclAction);

// One entry. A length limit of 0 means no limit.
class PrefixListEntry {
 public:
   PrefixListEntry() = default;
   PrefixListEntry(Vorin::IpGenPrefix const & prefix, AclAction action, std::uint8_t minLength = 0,
                   std::uint8_t maxLength = 0, std::uint8_t exactLength = 0) noexcept
       : prefix_(prefix), action_(action), minLength_(minLength), maxLength_(maxLength),
         exactLength_(exactLength) {}

   Vorin::IpGenPrefix const & prefix() const noexcept { return prefix_; }
   void prefixIs(Vorin::IpGenPrefix const & p) noexcept { prefix_ = p; }
   AclAction action() const noexcept { return action_; }
   void actionIs(AclAction a) noexcept { action_ = a; }
   std::uint8_t minLength() const noexcept { return minLength_; }
   void minLengthIs(std::uint8_t l) noexcept { minLength_ = l; }
   std::uint8_t maxLength() const noexcept { return maxLength_; }
   void maxLengthIs(std::uint8_t l) noexcept { maxLength_ = l; }
   std::uint8_t exactLength() const noexcept { return exactLength_; }
   void exactLengthIs(std::uint8_t l) noexcept { exactLength_ = l; }

   Zon::String8 stringValue() const;

   bool operator==(PrefixListEntry const &) const noexcept = default;

 private:
   Vorin::IpGenPrefix prefix_;
   AclAction action_ = AclAction::deny;
   std::uint8_t minLength_ = 0;
   std::uint8_t maxLength_ = 0;
   std::uint8_t exactLength_ = 0;
};

class PrefixList : public Zon::Entity {
 public:
   struct Attr {
      static constexpr Zon::AttrId prefixEntry = Zon::Entity::Attr::attrCount;
      static constexpr Zon::AttrId attrCount = prefixEntry + 1;
   };
   using Entries = Zon::ValueMap<std::uint32_t, PrefixListEntry, Zon::Ordered>;

   explicit PrefixList(Zon::Name name) noexcept : Zon::Entity(std::move(name)) {}

   // Entries by ascending sequence number.
   Entries const & prefixEntry() const noexcept { return prefixEntry_; }
   PrefixListEntry prefixEntry(std::uint32_t seq) const { return prefixEntry_.value(seq); }
   std::size_t prefixEntrys() const noexcept { return prefixEntry_.size(); }
   void prefixEntryIs(std::uint32_t seq, PrefixListEntry const & e) {
      if (prefixEntry_.set(seq, e)) {
         notify(Attr::prefixEntry, &seq);
      }
   }
   void prefixEntryDel(std::uint32_t seq) {
      if (prefixEntry_.erase(seq)) {
         notify(Attr::prefixEntry, &seq);
      }
   }
   void prefixEntryDelAll() {
      Hold const hold(this);
      prefixEntry_.eraseEach([this](std::uint32_t const & seq) { notify(Attr::prefixEntry, &seq); });
   }

 protected:
   ~PrefixList() override = default;

 private:
   Entries prefixEntry_;
};

} // namespace Acl

ZON_ENUM_TRAITS(Acl::AclAction);
