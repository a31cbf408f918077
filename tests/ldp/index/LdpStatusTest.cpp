// The per-VRF status root: every child absent at first, create-or-get by name
// (and by LDP identifier for the label binding tables), replacing new, the VRF
// collection, the agent's counter, the factories, and a root that releases
// everything under it.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "ldp/index/LdpStatus.h"
#include "support/FailingNothrowNew.h"
#include "support/ModelTables.h"
#include "zon/Exception.h"

namespace {

using namespace Ldp;
using LdpTest::expectAttrs;
using LdpTest::Records;

LdpIdentifier const us(Vorin::IpAddr(10, 0, 0, 1), 0);

// One named child of the status root, reached through its accessors.
struct ChildCase {
   std::string_view attr;
   std::function<Zon::Ptr<Zon::Entity>(Status &, Zon::Name const &)> is;   // create-or-get
   std::function<Zon::Ptr<Zon::Entity>(Status &, Zon::Name const &)> make; // new…: no comparison
   std::function<void(Status &)> del;
};

template <typename T>
ChildCase childCase(std::string_view attr, Zon::Ptr<T> (Status::*is)(Zon::Name const &),
                    Zon::Ptr<T> (Status::*make)(Zon::Name const &), void (Status::*del)()) {
   return {attr, [is](Status & s, Zon::Name const & n) -> Zon::Ptr<Zon::Entity> { return (s.*is)(n); },
           [make](Status & s, Zon::Name const & n) -> Zon::Ptr<Zon::Entity> { return (s.*make)(n); },
           [del](Status & s) { (s.*del)(); }};
}

// The label binding tables take the router's LDP identifier too; here always ours.
template <typename T>
ChildCase childCase(std::string_view attr, Zon::Ptr<T> (Status::*is)(Zon::Name const &, LdpIdentifier const &),
                    Zon::Ptr<T> (Status::*make)(Zon::Name const &, LdpIdentifier const &), void (Status::*del)()) {
   return {attr, [is](Status & s, Zon::Name const & n) -> Zon::Ptr<Zon::Entity> { return (s.*is)(n, us); },
           [make](Status & s, Zon::Name const & n) -> Zon::Ptr<Zon::Entity> { return (s.*make)(n, us); },
           [del](Status & s) { (s.*del)(); }};
}

#define STATUS_CHILD(x, X) childCase(#x, &Status::x##Is, &Status::new##X, &Status::x##Del)

// Every named child of the root, in the order the root declares them.
std::vector<ChildCase> const & statusChildren() {
   static std::vector<ChildCase> const children = {
      STATUS_CHILD(ldpLinkConfigColl, LdpLinkConfigColl),
      STATUS_CHILD(ldpLinkStatusColl, LdpLinkStatusColl),
      STATUS_CHILD(ldpLinkUdpPamStatus, LdpLinkUdpPamStatus),
      STATUS_CHILD(ldpTargetConfigColl, LdpTargetConfigColl),
      STATUS_CHILD(ldpTargetStatusColl, LdpTargetStatusColl),
      STATUS_CHILD(ldpAdjConfigColl, LdpAdjConfigColl),
      STATUS_CHILD(ldpAdjStatusColl, LdpAdjStatusColl),
      STATUS_CHILD(ldpPeerConfigColl, LdpPeerConfigColl),
      STATUS_CHILD(ldpPeerStatusColl, LdpPeerStatusColl),
      STATUS_CHILD(ldpSessionConfigColl, LdpSessionConfigColl),
      STATUS_CHILD(ldpSessionStatusColl, LdpSessionStatusColl),
      STATUS_CHILD(ldpFecConfigColl, LdpFecConfigColl),
      STATUS_CHILD(ldpFecStatusColl, LdpFecStatusColl),
      STATUS_CHILD(ldpFecSessionConfigColl, LdpFecSessionConfigColl),
      STATUS_CHILD(ldpFecSessionStatusColl, LdpFecSessionStatusColl),
      STATUS_CHILD(ldpTcpConnConfigColl, LdpTcpConnConfigColl),
      STATUS_CHILD(ldpTcpConnStatusColl, LdpTcpConnStatusColl),
      STATUS_CHILD(ldpTcpServerConfig, LdpTcpServerConfig),
      STATUS_CHILD(ldpTcpServerStatus, LdpTcpServerStatus),
      STATUS_CHILD(ldpTargetServerConfig, LdpTargetServerConfig),
      STATUS_CHILD(ldpTargetServerStatus, LdpTargetServerStatus),
      STATUS_CHILD(localLabelBindingTable, LocalLabelBindingTable),
      STATUS_CHILD(peerLabelBindingTableColl, PeerLabelBindingTableColl),
      STATUS_CHILD(localIntfIpColl, LocalIntfIpColl),
      STATUS_CHILD(ldpIdIntfIpMappingTable, LdpIdIntfIpMappingTable),
      STATUS_CHILD(labelAllocRequestTable, LabelAllocRequestTable),
      STATUS_CHILD(localLabelAllocTable, LocalLabelAllocTable),
      STATUS_CHILD(staticBindingTable, StaticBindingTable),
      STATUS_CHILD(index, Index),
      STATUS_CHILD(pwTargetConfigColl, PwTargetConfigColl),
      STATUS_CHILD(pwConfigColl, PwConfigColl),
      STATUS_CHILD(pwStatusColl, PwStatusColl),
      STATUS_CHILD(localPwFecSessionConfigColl, LocalPwFecSessionConfigColl),
      STATUS_CHILD(remotePwFecSessionConfigColl, RemotePwFecSessionConfigColl),
      STATUS_CHILD(localPwFecSessionStatusColl, LocalPwFecSessionStatusColl),
      STATUS_CHILD(remotePwFecSessionStatusColl, RemotePwFecSessionStatusColl),
      STATUS_CHILD(aclStatusService, AclStatusService),
      STATUS_CHILD(statistics, Statistics),
   };
   return children;
}

#undef STATUS_CHILD

// What an entity holds, as "attribute = text" lines; its name left out (some
// children list it as a parameter).
std::vector<std::string> contents(Zon::Entity const & e) {
   std::vector<std::string> out;
   for (Zon::AttrText const & a : Zon::attrTexts(e)) {
      if (a.info.name != "name") {
         out.push_back(std::string(a.info.name) + " = " + a.text);
      }
   }
   return out;
}

std::string textOf(Zon::Entity const & e, std::string_view attr) {
   for (Zon::AttrText const & a : Zon::attrTexts(e)) {
      if (a.info.name == attr) {
         return a.text;
      }
   }
   return "no attribute " + std::string(attr);
}

// The key, the namespace, then every child absent, in this order.
TEST(Status, FreshRootHoldsNoChild) {
   auto status = statusFactory("red");
   LdpTest::AttrTable table = {{"vrfName", "red"}, {"defaultNsName", "default"}, {"netNs", "default"}};
   for (ChildCase const & c : statusChildren()) {
      table.emplace_back(c.attr, "None");
   }
   EXPECT_EQ(statusChildren().size(), 38u);
   LdpTest::expectAttrsInOrder(*status, table);
   EXPECT_EQ(status->netNs(), Status::defaultNsName());
   Zon::AttrRecorder r(status.ptr());
   status->netNsIs(Vorin::NamespaceName("default"));
   status->netNsIs(Vorin::NamespaceName("blue"));
   EXPECT_EQ(r.take(), Records{"netNs"});
}

// For every child: the same name keeps the child, another name gives a fresh one
// and leaves the old one without a parent, new… always makes a fresh one, Del
// drops it; observers hear each change and nothing else.
TEST(Status, EveryChildIsCreatedOrKeptByName) {
   for (ChildCase const & c : statusChildren()) {
      SCOPED_TRACE(std::string(c.attr));
      auto status = statusFactory("red");
      Zon::AttrRecorder r(status.ptr());
      Zon::Ptr<Zon::Entity> const first = c.is(*status, "first");
      ASSERT_TRUE(first);
      std::vector<std::string> const fresh = contents(*first);
      EXPECT_EQ(first->name(), "first");
      EXPECT_EQ(first->parent(), status.ptr());
      EXPECT_EQ(textOf(*status, c.attr), "'first'");
      EXPECT_EQ(c.is(*status, "first"), first); // kept, and nobody hears of it
      Zon::Ptr<Zon::Entity> const second = c.is(*status, "second");
      EXPECT_NE(second, first);
      EXPECT_EQ(first->parent(), nullptr);
      EXPECT_EQ(second->parent(), status.ptr());
      EXPECT_EQ(contents(*second), fresh); // a fresh, empty child
      EXPECT_EQ(textOf(*status, c.attr), "'second'");
      Zon::Ptr<Zon::Entity> const made = c.make(*status, "second"); // no comparison: a fresh one
      EXPECT_NE(made, second);
      EXPECT_EQ(second->parent(), nullptr);
      c.del(*status);
      EXPECT_EQ(made->parent(), nullptr);
      EXPECT_EQ(textOf(*status, c.attr), "None");
      std::string const a(c.attr);
      EXPECT_EQ(r.take(), (Records{a, a, a, a}));
   }
}

// A child's contents stay with it while the same name is asked for.
TEST(Status, ChildKeptByNameKeepsItsContents) {
   auto status = statusFactory("red");
   auto sessions = status->ldpSessionStatusCollIs("sessions");
   sessions->sessionStatusIs(LdpSessionId(LdpIdentifier(Vorin::IpAddr(10, 0, 0, 2), 0)));
   EXPECT_EQ(status->ldpSessionStatusCollIs("sessions"), sessions);
   EXPECT_EQ(sessions->sessionStatuss(), 1u);
   EXPECT_EQ(status->ldpSessionStatusCollIs("other")->sessionStatuss(), 0u);
}

TEST(Status, LabelBindingTablesAreKeptOnlyForTheSameIdentifier) {
   auto status = statusFactory("red");
   LdpIdentifier const renumbered(Vorin::IpAddr(10, 0, 0, 9), 0);
   using TableIs = Zon::Ptr<LabelBindingTable> (Status::*)(Zon::Name const &, LdpIdentifier const &);
   for (TableIs is : {&Status::localLabelBindingTableIs, &Status::localLabelAllocTableIs, &Status::staticBindingTableIs}) {
      auto table = (status.ptr()->*is)("bindings", us);
      table->bindingIs(Mpls::FwdEqvClass(Vorin::IpGenPrefix::fromString("10.1.0.0/16")), Vorin::MplsLabel(16));
      EXPECT_EQ((status.ptr()->*is)("bindings", us), table);
      auto replaced = (status.ptr()->*is)("bindings", renumbered);
      EXPECT_NE(replaced, table);
      EXPECT_EQ(replaced->bindings(), 0u);
      EXPECT_EQ(replaced->ldpIdentifier(), renumbered);
      EXPECT_EQ(table->parent(), nullptr);
   }
   // The peers' tables, by their identifiers.
   auto peers = status->peerLabelBindingTableCollIs("peers");
   auto table = peers->tableIs("peer", us);
   EXPECT_EQ(table->name(), "peer");
   EXPECT_EQ(peers->table(us), table);
}

TEST(LdpStatusColl, OneRootPerVrf) {
   auto coll = ldpStatusCollFactory("statusColl");
   Zon::AttrRecorder r(coll.ptr());
   auto red = coll->statusIs("red");
   EXPECT_EQ(coll->statusIs("red"), red);
   EXPECT_EQ(red->parent(), coll.ptr());
   EXPECT_EQ(red->vrfName(), L3::VrfName("red"));
   coll->statusDelAll();
   EXPECT_EQ(r.take(), (Records{"status[red]", "status[red]"}));
   auto agent = ldpAgentStatusFactory("agent");
   Zon::AttrRecorder onAgent(agent.ptr());
   EXPECT_EQ(agent->numStartupsInc(0), 0u);
   EXPECT_EQ(agent->numStartupsInc(1), 1u);
   EXPECT_EQ(onAgent.take(), Records{"numStartups"});
}

TEST(LdpStatusColl, FactoriesRefuseAFailedAllocation) {
   std::vector<std::string> texts;
   {
      LdpTest::NothrowAllocationFailure failing;
      for (auto make : {+[] { statusFactory("red"); }, +[] { ldpStatusCollFactory("c"); },
                        +[] { ldpAgentStatusFactory("a"); }, +[] { labelAllocRequestTableFactory("t"); }}) {
         try {
            make();
            texts.emplace_back("made");
         } catch (Zon::RangeException const & e) {
            texts.emplace_back(e.what());
         }
      }
   }
   EXPECT_EQ(texts, std::vector<std::string>(4, "null ValidPtr"));
   EXPECT_TRUE(statusFactory("red"));
}

TEST(Status, DroppingTheRootReleasesEverything) {
   std::size_t const before = Zon::Entity::liveEntities();
   {
      auto status = statusFactory("red");
      auto fecs = status->ldpFecConfigCollIs("fecs");
      auto fecStatus = status->ldpFecStatusCollIs("fecStatus");
      for (int i = 0; i < 100; ++i) {
         auto const fec = Mpls::FwdEqvClass(Vorin::IpGenPrefix(Vorin::IpGenAddr(Vorin::IpAddr(10, 0, 0, i)), 32));
         fecs->fecConfigIs(fec)->newIntfIpViaMapping(Vorin::IpGenAddr::fromString("10.9.0.1"));
         fecStatus->fecStatusIs(fec);
      }
      status->indexIs("index")->peerToSessionIs(Vorin::IpGenAddr::fromString("10.0.0.2"));
      status->ldpSessionStatusCollIs("s")->sessionStatusIs(LdpSessionId())->checkInit();
      status->statisticsIs("stats")->sessionStatisticsCollIs("ss");
      // Each FEC: its config, two sets, one next-hop mapping, its status and its notice.
      EXPECT_GE(Zon::Entity::liveEntities() - before, 600u);
   }
   EXPECT_EQ(Zon::Entity::liveEntities(), before);
}

} // namespace
