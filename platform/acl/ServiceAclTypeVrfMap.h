// The access-control model's per-VRF map of service access-control lists: which
// access list guards which service ("ldp", ...). LDP only creates and names it;
// its contents belong to the access-control model.
#pragma once

#include "zon/Collection.h"
#include "zon/Entity.h"
#include "zon/String.h"

namespace Acl {

class ServiceAclTypeVrfMap : public Zon::Entity {
 public:
   struct Attr {
      static constexpr Zon::AttrId serviceAcl = Zon::Entity::Attr::attrCount;
      static constexpr Zon::AttrId attrCount = serviceAcl + 1;
   };
   using Map = Zon::ValueMap<Zon::Name, Zon::Name, Zon::Ordered>;

   explicit ServiceAclTypeVrfMap(Zon::Name name) noexcept : Zon::Entity(std::move(name)) {}

   // Service name to access-list name.
   Map const & serviceAcl() const noexcept { return serviceAcl_; }
   Zon::Name serviceAcl(Zon::Name const & service) const { return serviceAcl_.value(service); }
   std::size_t serviceAcls() const noexcept { return serviceAcl_.size(); }
   void serviceAclIs(Zon::Name const & service, Zon::Name const & acl) {
      if (serviceAcl_.set(service, acl)) {
         notify(Attr::serviceAcl, &service);
      }
   }
   void serviceAclDel(Zon::Name const & service) {
      if (serviceAcl_.erase(service)) {
         notify(Attr::serviceAcl, &service);
      }
   }
   void serviceAclDelAll() {
      Hold const hold(this);
      serviceAcl_.eraseEach([this](Zon::Name const & s) { notify(Attr::serviceAcl, &s); });
   }

 protected:
   ~ServiceAclTypeVrfMap() override = default;

 private:
   Map serviceAcl_;
};

} // namespace Acl
