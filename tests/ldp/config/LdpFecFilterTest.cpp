// The FEC filter's decision over prefix lists: no list permits, a list that
// matches nothing denies, the first matching entry by sequence number decides.
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "ldp/config/LdpFecFilter.h"
#include "support/ModelTables.h"
#include "trace/Trace.h"

namespace {

using Acl::AclAction;

struct Entry {
   std::uint32_t seq;
   char const * prefix;
   AclAction action;
   std::uint8_t min = 0, max = 0, exact = 0;
};

Mpls::FwdEqvClass fec(char const * prefix) { return Mpls::FwdEqvClass(Vorin::IpGenPrefix::fromString(prefix)); }

Zon::Ptr<Acl::PrefixList> listOf(std::vector<Entry> const & entries) {
   auto list = Zon::makePtr<Acl::PrefixList>("list");
   for (auto const & e : entries) {
      list->prefixEntryIs(e.seq, Acl::PrefixListEntry(Vorin::IpGenPrefix::fromString(e.prefix), e.action, e.min,
                                                      e.max, e.exact));
   }
   return list;
}

struct Case {
   char const * what;
   std::optional<std::vector<Entry>> list; // none: no prefix list set
   char const * fec;
   bool permitted;
};

constexpr auto permit = AclAction::permit;
constexpr auto deny = AclAction::deny;

std::vector<Case> const cases = {
    {"no list permits", std::nullopt, "10.1.0.0/16", true},
    {"no list permits even a default route", std::nullopt, "0.0.0.0/0", true},
    {"an empty list denies", std::vector<Entry>{}, "10.1.0.0/16", false},
    {"a longer FEC inside the entry", {{{10, "10.0.0.0/8", permit}}}, "10.1.0.0/16", true},
    {"the entry's own prefix", {{{10, "10.0.0.0/8", permit}}}, "10.0.0.0/8", true},
    {"outside the entry: implicit deny", {{{10, "10.0.0.0/8", permit}}}, "11.0.0.0/8", false},
    {"FEC shorter than the entry", {{{10, "10.0.0.0/8", permit}}}, "10.0.0.0/7", false},
    {"maximum length below the FEC's", {{{10, "10.0.0.0/8", permit, 0, 16}}}, "10.1.1.0/24", false},
    {"maximum length equal to the FEC's", {{{10, "10.0.0.0/8", permit, 0, 16}}}, "10.1.0.0/16", true},
    {"minimum length above the FEC's", {{{10, "10.0.0.0/8", permit, 24}}}, "10.1.0.0/16", false},
    {"minimum length equal to the FEC's", {{{10, "10.0.0.0/8", permit, 24}}}, "10.1.1.0/24", true},
    {"exact length met", {{{10, "10.0.0.0/8", permit, 0, 0, 24}}}, "10.1.1.0/24", true},
    {"exact length missed", {{{10, "10.0.0.0/8", permit, 0, 0, 24}}}, "10.1.1.128/25", false},
    {"odd length: 9th bit agrees", {{{10, "10.128.0.0/9", permit}}}, "10.200.0.0/16", true},
    {"odd length: 9th bit differs", {{{10, "10.128.0.0/9", permit}}}, "10.100.0.0/16", false},
    {"host entry matches its host", {{{10, "10.0.0.1/32", permit}}}, "10.0.0.1/32", true},
    {"host entry, another host", {{{10, "10.0.0.1/32", permit}}}, "10.0.0.2/32", false},
    {"a zero-length entry matches all", {{{10, "0.0.0.0/0", permit}}}, "192.168.1.0/24", true},
    {"first match wins: deny all at 5", {{{5, "0.0.0.0/0", deny}, {10, "10.0.0.0/8", permit}}}, "10.1.0.0/16",
     false},
    {"sequence order, not insertion order", {{{10, "10.0.0.0/8", permit}, {5, "0.0.0.0/0", deny}}},
     "10.1.0.0/16", false},
    {"the permit comes first", {{{20, "0.0.0.0/0", deny}, {10, "10.0.0.0/8", permit}}}, "10.1.0.0/16", true},
    {"skipped entry passes to the next", {{{5, "10.0.0.0/8", deny, 0, 16}, {10, "0.0.0.0/0", permit}}},
     "10.1.1.0/24", true},
    {"a matching deny ends the walk", {{{5, "10.0.0.0/8", deny}, {10, "0.0.0.0/0", permit}}}, "10.1.0.0/16",
     false},
};

TEST(LdpFecFilter, FirstMatchDecides) {
   for (auto const & c : cases) {
      auto filter = Ldp::ldpFecFilterFactory("filter");
      if (c.list) {
         filter->prefixListIs(listOf(*c.list));
      }
      EXPECT_EQ(filter->isPermittedFec(fec(c.fec)), c.permitted) << c.what << ": " << c.fec;
   }
}

TEST(LdpFecFilter, FactoryAndPrefixList) {
   Zon::Ptr<Ldp::LdpFecFilter> filter = Zon::validPtr(Ldp::ldpFecFilterFactory("f"));
   EXPECT_EQ(filter->name(), "f");
   LdpTest::expectAttrs(*filter, {{"prefixList", "None"}});
   Zon::AttrRecorder r(filter.ptr());
   Zon::Ptr<Acl::PrefixList const> list = listOf({});
   filter->prefixListIs(list);
   filter->prefixListIs(list);
   EXPECT_EQ(r.records(), LdpTest::Records{"prefixList"});
   filter->prefixListIs(nullptr);
   EXPECT_EQ(r.take(), (LdpTest::Records{"prefixList", "prefixList"}));
}

TEST(LdpFecFilter, NonPrefixFecReadsAnEmptyPrefix) {
   // A pseudowire FEC has no prefix: it is compared as 0.0.0.0/0.
   auto filter = Ldp::ldpFecFilterFactory("f");
   Mpls::FwdEqvClass pw(Pseudowire::PseudowireType::ethernet, Pseudowire::PseudowireId(7));
   filter->prefixListIs(listOf({{10, "10.0.0.0/8", permit}}));
   EXPECT_FALSE(filter->isPermittedFec(pw));
   filter->prefixListIs(listOf({{10, "0.0.0.0/0", permit}}));
   EXPECT_TRUE(filter->isPermittedFec(pw));
}

TEST(LdpFecFilter, TracesEntryAndExit) {
   std::vector<std::string> records;
   Trace::sinkIs([&](Trace::Source const & s, int level, std::string_view text) {
      if (s.name() == "LdpFecFilter") {
         records.push_back(std::to_string(level) + " " + std::string(text));
      }
   });
   Trace::source("LdpFecFilter").levelIs(8);
   auto filter = Ldp::ldpFecFilterFactory("f");
   filter->isPermittedFec(fec("10.1.0.0/16"));
   Trace::source("LdpFecFilter").levelIs(0);
   Trace::sinkIs({});
   EXPECT_EQ(records, (std::vector<std::string>{"8 isPermittedFec(10.1.0.0/16)",
                                                "8 isPermittedFec(10.1.0.0/16) = permit"}));
}

} // namespace
