// The FEC filter's decision: the first prefix-list entry that matches the FEC's
// prefix decides; a list that matches nothing denies; no list permits.
#include "ldp/config/LdpFecFilter.h"

#include <cstdint>

#include "trace/Trace.h"

namespace Ldp {

namespace {

Trace::Source & traceSource() {
   static Trace::Source & source = Trace::source("LdpFecFilter");
   return source;
}

// Whether the first `length` bits of two IPv4 addresses (host order) agree.
bool samePrefix(std::uint32_t a, std::uint32_t b, unsigned length) noexcept {
   if (length == 0) {
      return true;
   }
   if (length > 32) {
      length = 32;
   }
   std::uint32_t const mask = ~std::uint32_t(0) << (32 - length);
   return ((a ^ b) & mask) == 0;
}

bool matches(Acl::PrefixListEntry const & entry, std::uint32_t address, unsigned length) noexcept {
   if (entry.exactLength() != 0 && entry.exactLength() != length) {
      return false;
   }
   if (entry.maxLength() != 0 && entry.maxLength() < length) {
      return false;
   }
   if (entry.minLength() != 0 && entry.minLength() > length) {
      return false;
   }
   unsigned const entryLength = entry.prefix().length();
   if (entryLength > length) {
      return false;
   }
   return samePrefix(entry.prefix().address().v4().value(), address, entryLength);
}

} // namespace

bool LdpFecFilter::isPermittedFec(Mpls::FwdEqvClass const & fec) const {
   TRACE(traceSource(), 8, "isPermittedFec(" << fec.stringValue() << ")");
   bool permitted = false;
   if (!prefixList_) {
      permitted = true;
   } else {
      // Only the IPv4 address of the FEC's prefix is compared.
      std::uint32_t const address = fec.prefix().address().v4().value();
      unsigned const length = fec.prefix().length();
      for (auto const & [seq, entry] : prefixList_->prefixEntry()) {
         if (matches(entry, address, length)) {
            permitted = entry.action() == Acl::AclAction::permit;
            break;
         }
      }
   }
   TRACE(traceSource(), 8, "isPermittedFec(" << fec.stringValue() << ") = " << (permitted ? "permit" : "deny"));
   return permitted;
}

} // namespace Ldp
