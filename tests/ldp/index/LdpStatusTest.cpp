// The per-VRF status root: every child absent at first, create-or-get by name
// (and by LDP identifier for the label binding tables), replacing new, the VRF
// collection, the agent's counter, the factories, and a root that releases
// everything under it.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ldp/index/LdpStatus.h"
#include "support/FailingNothrowNew.h"
#include "support/ModelTables.h"
#include "zon/Exception.h"

namespace {

using namespace Ldp;
using LdpTest::expectAttrs;
using LdpTest::Records;

TEST(Status, FreshRootHoldsNoChild) {
   auto status = statusFactory("red");
   LdpTest::AttrTable table = {{"vrfName", "red"}, {"defaultNsName", "default"}, {"netNs", "default"}};
   std::vector<std::string> children;
   for (Zon::AttrText const & a : Zon::attrTexts(*status)) {
      if (a.info.kind == "child") {
         children.emplace_back(a.info.name);
      }
   }
   EXPECT_EQ(children.size(), 38u);
   for (std::string const & c : children) {
      table.emplace_back(c, "None");
   }
   expectAttrs(*status, table);
   EXPECT_EQ(children.front(), "ldpLinkConfigColl");
   EXPECT_EQ(children.back(), "statistics");
   EXPECT_EQ(status->netNs(), Status::defaultNsName());
}

TEST(Status, ChildrenAreCreatedOrKeptByName) {
   auto status = statusFactory("red");
   Zon::AttrRecorder r(status.ptr());
   auto sessions = status->ldpSessionStatusCollIs("sessions");
   auto session = sessions->sessionStatusIs(LdpSessionId(LdpIdentifier(Vorin::IpAddr(10, 0, 0, 2), 0)));
   EXPECT_EQ(sessions->parent(), status.ptr());
   EXPECT_EQ(status->ldpSessionStatusCollIs("sessions"), sessions); // the same name: kept with its contents
   EXPECT_EQ(sessions->sessionStatuss(), 1u);
   auto other = status->ldpSessionStatusCollIs("other"); // another name: a new, empty child
   EXPECT_NE(other, sessions);
   EXPECT_EQ(other->sessionStatuss(), 0u);
   EXPECT_EQ(sessions->parent(), nullptr);
   auto fresh = status->newLdpSessionStatusColl("other"); // new makes one without comparing
   EXPECT_NE(fresh, other);
   status->ldpSessionStatusCollDel();
   EXPECT_FALSE(status->ldpSessionStatusColl());
   status->netNsIs(Vorin::NamespaceName("default"));
   status->netNsIs(Vorin::NamespaceName("blue"));
   EXPECT_EQ(r.take(), (Records{"ldpSessionStatusColl", "ldpSessionStatusColl", "ldpSessionStatusColl",
                                "ldpSessionStatusColl", "netNs"}));
}

TEST(Status, LabelBindingTablesAreKeptOnlyForTheSameIdentifier) {
   auto status = statusFactory("red");
   LdpIdentifier const us(Vorin::IpAddr(10, 0, 0, 1), 0);
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
