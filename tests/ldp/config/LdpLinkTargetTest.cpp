// Link, target and adjacency configuration: the sequence-number counters of the
// two common records, the base classes shared by the per-link (per-target) and
// common records, and the collections that hold them.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "ldp/config/LdpLink.h"
#include "ldp/config/LdpTarget.h"
#include "support/ModelTables.h"
#include "zon/Exception.h"

namespace {

using namespace Ldp;
using LdpTest::Records;
using Strings = std::vector<std::string>;

// The configuration sequence number of either common record, seen through the
// operations the two records share.
struct SeqNumRecord {
   char const * what;
   Zon::Ptr<Zon::Entity> entity;
   std::function<std::uint32_t(std::uint32_t)> inc;
   std::function<void(std::uint32_t)> set;
};

TEST(LdpCommonConfig, ConfigSeqNumIncWrapsAndNotifiesOnlyOnChange) {
   auto link = Zon::makePtr<LdpLinkCommonConfig>("linkCommon");
   auto target = Zon::makePtr<LdpTargetCommonConfig>("targetCommon");
   SeqNumRecord const records[] = {
      {"link", link, [&](std::uint32_t n) { return link->configSeqNumInc(n); },
       [&](std::uint32_t v) { link->configSeqNumIs(v); }},
      {"target", target, [&](std::uint32_t n) { return target->configSeqNumInc(n); },
       [&](std::uint32_t v) { target->configSeqNumIs(v); }},
   };
   struct Step {
      std::uint32_t start, add, result;
      Records heard;
   };
   Step const steps[] = {
      {0, 0, 0, {}},
      {0, 1, 1, {"configSeqNum"}},
      {4294967295u, 0, 4294967295u, {}},
      {4294967295u, 1, 0, {"configSeqNum"}},
      {4294967290u, 10, 4, {"configSeqNum"}},
      {7, 4294967295u, 6, {"configSeqNum"}},
   };
   for (auto const & r : records) {
      for (auto const & s : steps) {
         SCOPED_TRACE(std::string(r.what) + " " + std::to_string(s.start) + " + " + std::to_string(s.add));
         r.set(s.start);
         Zon::AttrRecorder heard(r.entity.ptr());
         EXPECT_EQ(r.inc(s.add), s.result);
         LdpTest::expectAttrs(*r.entity, {{"configSeqNum", std::to_string(s.result)}}, LdpTest::Coverage::some);
         EXPECT_EQ(heard.take(), s.heard);
      }
   }
}

TEST(LdpLinkBaseConfig, DerivedRecordsShareTheBaseAttributes) {
   static_assert(LdpLinkConfig::Attr::interval == LdpLinkBaseConfig::Attr::interval);
   static_assert(LdpLinkConfig::Attr::ipAddr == LdpLinkBaseConfig::Attr::attrCount);
   static_assert(LdpTargetCommonConfig::Attr::ttl == LdpTargetBaseConfig::Attr::attrCount);
   auto coll = Zon::makePtr<LdpLinkConfigColl>("links");
   auto link = coll->adjLinkConfigIs("link1", "eth1");
   // A watcher of the base hears a per-link record's timers.
   struct BaseRecorder : LdpLinkBaseConfig::Notifiee {
      Strings seen;
      void onInterval() override { seen.push_back("interval"); }
      void onHoldTime() override { seen.push_back("holdTime"); }
      void onRetryInterval() override { seen.push_back("retryInterval"); }
   } r;
   r.notifierIs(link.ptr());
   link->intervalIs(5); // the default: nobody hears
   link->intervalIs(7);
   link->holdTimeIs(21);
   link->retryIntervalIs(1);
   link->configStateIs(ConfigState::configDisabling); // not a base attribute: not dispatched to a base handler
   EXPECT_EQ(r.seen, (Strings{"interval", "holdTime"}));
   // The common record keeps its own timers.
   auto common = coll->ldpLinkCommonConfigIs("common");
   EXPECT_EQ(common->interval(), 5);
   Zon::Ptr<LdpLinkBaseConfig> base = link;
   EXPECT_EQ(base->interval(), 7);
}

TEST(LdpLinkConfigColl, RecordsPerInterfaceAndOneCommonRecord) {
   auto coll = Zon::makePtr<LdpLinkConfigColl>("links");
   Zon::AttrRecorder r(coll.ptr());
   auto eth1 = coll->newAdjLinkConfig("uplink", "eth1");
   EXPECT_EQ(eth1->name(), "uplink"); // named by its name, keyed by its interface
   EXPECT_EQ(eth1->intfId(), Vorin::IntfId("eth1"));
   EXPECT_EQ(eth1->parent(), coll.ptr());
   eth1->ipAddrIs(Vorin::IpAddr(10, 0, 0, 1));
   EXPECT_EQ(coll->adjLinkConfigIs("uplink", "eth1"), eth1); // create-or-get keeps the record
   EXPECT_EQ(eth1->ipAddr(), Vorin::IpAddr(10, 0, 0, 1));
   coll->adjLinkConfigIs("downlink", "eth2");
   auto common = coll->ldpLinkCommonConfigIs("common");
   EXPECT_EQ(coll->ldpLinkCommonConfigIs("common"), common);
   coll->adjLinkConfigDel("eth1");
   EXPECT_EQ(eth1->parent(), nullptr);
   coll->ldpLinkCommonConfigDel();
   EXPECT_EQ(coll->adjLinkConfigs(), 1u);
   EXPECT_EQ(r.take(), (Records{"adjLinkConfig[eth1]", "adjLinkConfig[eth2]", "ldpLinkCommonConfig",
                              "adjLinkConfig[eth1]", "ldpLinkCommonConfig"}));
}

// Links and targets are named by their names and keyed by interface and address:
// another name for a stored key is refused, and the stored record stays as it was.
TEST(LdpLinkTargetConfigColls, AnotherNameForAStoredRecordIsRefused) {
   auto links = Zon::makePtr<LdpLinkConfigColl>("links");
   auto targets = Zon::makePtr<LdpTargetConfigColl>("targets");
   Vorin::IpAddr const peer(192, 0, 2, 7);
   auto const link = links->adjLinkConfigIs("uplink", "eth1");
   auto const target = targets->adjTargetConfigIs("pe7", peer);
   Zon::AttrRecorder onLinks(links.ptr());
   Zon::AttrRecorder onTargets(targets.ptr());
   std::string const linkError = "Reinstantiating the entity with name uplink where constructor parameter attribute "
                                 "_name has a different value of downlink than the current value of uplink not allowed";
   std::string const targetError = "Reinstantiating the entity with name pe7 where constructor parameter attribute "
                                   "_name has a different value of pe8 than the current value of pe7 not allowed";
   std::vector<std::pair<std::function<void()>, std::string>> const cases = {
      {[&] { links->adjLinkConfigIs("downlink", "eth1"); }, linkError},
      {[&] { links->newAdjLinkConfig("downlink", "eth1"); }, linkError},
      {[&] { targets->adjTargetConfigIs("pe8", peer); }, targetError},
      {[&] { targets->newAdjTargetConfig("pe8", peer); }, targetError},
   };
   for (auto const & [ask, error] : cases) {
      try {
         ask();
         ADD_FAILURE() << "no exception for " << error;
      } catch (Zon::NameInUseException const & e) {
         EXPECT_EQ(e.what(), error);
      }
   }
   EXPECT_EQ(links->adjLinkConfig("eth1"), link);
   EXPECT_EQ(link->name(), "uplink");
   EXPECT_EQ(targets->adjTargetConfig(peer), target);
   EXPECT_EQ(target->name(), "pe7");
   EXPECT_TRUE(onLinks.records().empty());
   EXPECT_TRUE(onTargets.records().empty());
}

TEST(LdpTargetConfigColl, TargetsByAddressWithTheirMemberships) {
   auto coll = Zon::makePtr<LdpTargetConfigColl>("targets");
   Vorin::IpAddr const peer(192, 0, 2, 7);
   auto t = coll->adjTargetConfigIs("pe7", peer);
   EXPECT_EQ(t->name(), "pe7"); // named by its name, keyed by the peer's address
   EXPECT_EQ(t->ipAddr(), peer);
   EXPECT_EQ(coll->newAdjTargetConfig("pe7", peer), t);
   EXPECT_EQ(coll->adjTargetConfig(peer), t);
   Zon::AttrRecorder r(t.ptr());
   t->newTargetMembership(LdpTargetMembership::targetMemberStatic, true);
   t->targetMembershipIs(LdpTargetMembership::targetMemberPw, true);
   t->targetMembershipIs(LdpTargetMembership::targetMemberPw, true);
   t->configStateIs(ConfigState::configEnabled);
   EXPECT_EQ(t->targetMemberships(), 2u);
   t->targetMembershipDel(LdpTargetMembership::targetMemberStatic);
   EXPECT_FALSE(t->targetMembership(LdpTargetMembership::targetMemberStatic));
   EXPECT_TRUE(t->targetMembership(LdpTargetMembership::targetMemberPw));
   EXPECT_EQ(r.take(), (Records{"targetMembership[targetMemberStatic]", "targetMembership[targetMemberPw]",
                              "configState", "targetMembership[targetMemberStatic]"}));
   EXPECT_EQ(static_cast<std::uint32_t>(LdpTargetMembership::targetMemberPw), 1u);
   EXPECT_EQ(static_cast<std::uint32_t>(ConfigState::configDisabled), 3u);
}

TEST(LdpAdjConfig, AdjacenciesByIdentifierAndPerLink) {
   LdpIdentifier const peer(Vorin::IpAddr(3, 3, 3, 3), 0);
   LdpAdjId const viaLink(peer, "eth1", Vorin::IpAddr(), LdpAdjKind::LdpLinkAdj);
   LdpAdjId const targeted(peer, "", Vorin::IpAddr(192, 0, 2, 3), LdpAdjKind::LdpTargetAdj);
   auto coll = Zon::makePtr<LdpAdjConfigColl>("adjs");
   auto a = coll->adjConfigIs(viaLink);
   EXPECT_EQ(a->adjId(), viaLink);
   EXPECT_EQ(a->holdTime(), 15);
   EXPECT_EQ(coll->adjConfigIs(viaLink), a);
   coll->newAdjConfig(targeted)->holdTimeIs(45);
   EXPECT_EQ(coll->adjConfig(targeted)->holdTime(), 45);
   EXPECT_EQ(coll->adjConfigs(), 2u);

   auto perLink = Zon::makePtr<LdpAdjPerLink>("eth1");
   EXPECT_EQ(perLink->intfId(), Vorin::IntfId("eth1"));
   Zon::AttrRecorder r(perLink.ptr());
   perLink->newLdpAdj(viaLink, true);
   perLink->ldpAdjIs(viaLink, true); // unchanged: nobody hears
   perLink->ldpAdjDel(targeted); // not held: nobody hears
   perLink->ldpAdjDelAll();
   std::string const heard = "ldpAdj[" + std::string(viaLink.stringValue()) + "]";
   EXPECT_EQ(r.take(), (Records{heard, heard}));
   EXPECT_EQ(perLink->ldpAdjs(), 0u);
}

TEST(LocalIntfIpColl, AddressesWithTheirPrefixLengths) {
   auto coll = Zon::makePtr<LocalIntfIpColl>("local");
   auto const a = Vorin::IpAddrWithMask::fromString("10.1.2.3/24");
   auto const b = Vorin::IpAddrWithMask::fromString("10.1.2.3/16");
   coll->intfIpWithMaskIs(a);
   coll->newIntfIpWithMask(b);
   EXPECT_TRUE(coll->intfIpWithMask(a));
   EXPECT_EQ(coll->intfIpWithMasks(), 2u); // the same address with another length is another entry
   coll->intfIpWithMaskDel(a);
   EXPECT_FALSE(coll->intfIpWithMask(a));
   EXPECT_TRUE(coll->intfIpWithMask(b));
}

} // namespace
