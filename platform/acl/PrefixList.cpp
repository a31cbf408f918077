#include "acl/PrefixList.h"

#include "zon/Value.h"

ZON_ENUM_DEFINE(Acl, AclAction, ACL_ACTIONS)

namespace Acl {

Zon::String8 PrefixListEntry::stringValue() const {
   return Zon::ValueText("Acl::PrefixListEntry")
       .field("prefix", prefix_)
       .field("action", action_)
       .field("minLength", minLength_)
       .field("maxLength", maxLength_)
       .field("exactLength", exactLength_)
       .str();
}

} // namespace Acl
