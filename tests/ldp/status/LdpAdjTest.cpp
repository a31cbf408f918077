// The discovery side's status: fresh records as tables (the link defaults against
// the target's zeros), the TCP connection status on the platform's client status,
// counters and setters that notify only on change.
#include <gtest/gtest.h>

#include "ldp/status/LdpAdj.h"
#include "support/ModelTables.h"
#include "zon/Exception.h"

namespace {

using namespace Ldp;
using LdpTest::expectAttrs;
using LdpTest::Records;

TEST(LdpAdjStatus, FreshRecords) {
   LdpAdjId const adj(LdpIdentifier(Vorin::IpAddr(10, 0, 0, 2), 0), "eth0", Vorin::IpAddr(), LdpAdjKind::LdpLinkAdj);
   auto adjs = Zon::makePtr<LdpAdjStatusColl>("adjs");
   expectAttrs(*adjs->adjStatusIs(adj),
               {{"ldpAdjId", std::string(adj.stringValue())},
                {"adjStatusCode", "success"},
                {"msgId", "0"},
                {"peerHoldTime", "0"},
                {"operHoldTime", "0"},
                {"adjExpireTime", "0.0"},
                {"peerIpAddr", "0.0.0.0"},
                {"peerSrcIpAddr", "0.0.0.0"},
                {"peerConfigSeqNum", "0"},
                {"rxPktCount", "0"},
                {"errPktCount", "0"}});
   auto links = Zon::makePtr<LdpLinkStatusColl>("links");
   expectAttrs(*links, {{"adjLinkStatus", "{}"}, {"ldpLinkCommonStatus", "None"}});
   EXPECT_TRUE(Zon::attrTexts(*links->ldpLinkCommonStatusIs("common")).empty());
   // A link reports the link hello defaults before anything is written; a target zeros.
   expectAttrs(*links->adjLinkStatusIs("eth0"), {{"intfId", "eth0"},
                                                  {"pktVersion", "0"},
                                                  {"running", "False"},
                                                  {"adjIdSet", "{}"},
                                                  {"interval", "5"},
                                                  {"holdTime", "15"},
                                                  {"rxPktCount", "0"},
                                                  {"txPktCount", "0"},
                                                  {"errPktCount", "0"}});
   expectAttrs(*Zon::makePtr<LdpTargetStatusColl>("targets")->adjTargetStatusIs(Vorin::IpAddr(10, 0, 0, 9)),
               {{"targetIpAddr", "10.0.0.9"},
                {"pktVersion", "0"},
                {"running", "False"},
                {"interval", "0"},
                {"holdTime", "0"},
                {"rxPktCount", "0"},
                {"txPktCount", "0"},
                {"errPktCount", "0"}});
   expectAttrs(*Zon::makePtr<IpIntfMember>(Vorin::IpAddrWithMask(Vorin::IpAddr(10, 1, 2, 3), 24)),
               {{"ipAddrWithMask", "10.1.2.3/24"}, {"intfId", ""}});
   expectAttrs(*Zon::makePtr<LdpPeerStatusColl>("peers")->peerStatusIs(LdpIdentifier(Vorin::IpAddr(10, 0, 0, 2), 0)),
               {{"ldpIdentifier", "10.0.0.2:0"}});
   expectAttrs(*Zon::makePtr<LdpTcpServerStatus>("server"),
               {{"listening", "False"}, {"reason", "''"}, {"serverStartTimes", "0"}, {"clientCount", "{}"}});
   expectAttrs(*Zon::makePtr<LdpTargetServerStatus>("targetServer"),
               {{"listening", "False"}, {"reason", "''"}, {"rxPktCount", "0"}, {"errPktCount", "0"}});
   expectAttrs(*Zon::makePtr<LdpLinkUdpPamStatus>("udp"),
               {{"enabled", "False"}, {"reason", "''"}, {"rxPktCount", "0"}, {"txPktCount", "0"}, {"errPktCount", "0"}});
}

TEST(LdpTcpConnStatus, InheritsThePlatformsClientStatusFirst) {
   auto conns = Zon::makePtr<LdpTcpConnStatusColl>("conns");
   LdpIdentifier const peer(Vorin::IpAddr(10, 0, 0, 2), 0);
   auto conn = conns->connStatusIs(peer, 7);
   EXPECT_EQ(conn->name(), "10.0.0.2:0");
   expectAttrs(*conn, {{"reason", "''"},
                       {"connectionAttemptCount", "0"},
                       {"connectionErrorCount", "0"},
                       {"connectionSuccessCount", "0"},
                       {"connectionStatus", "tcpConnIdle"},
                       {"retryTimerNext", "0.0"},
                       {"retryTimerInterval", "0.0"},
                       {"connSocket", "-1"},
                       {"getConnSocket", "0.0"},
                       {"resetConnSocket", "0.0"},
                       {"ldpIdentifier", "10.0.0.2:0"},
                       {"clientId", "7"},
                       {"requestTime", "0.0"}});
   EXPECT_EQ(Zon::attrTexts(*conn).front().info.name, "reason");
   EXPECT_EQ(conns->connStatusIs(peer, 7), conn);
   try {
      conns->connStatusIs(peer, 8);
      ADD_FAILURE() << "another client id was taken";
   } catch (Zon::NameInUseException const & e) {
      EXPECT_STREQ(e.what(), "Reinstantiating the entity with name 10.0.0.2:0 where constructor parameter attribute "
                             "_clientId has a different value of 8 than the current value of 7 not allowed");
   }
   EXPECT_EQ(conn->clientId(), 7u);
}

TEST(LdpLinkStatus, OnlyChangesNotify) {
   auto link = Zon::makePtr<LdpLinkStatusColl>("links")->adjLinkStatusIs("eth0");
   Zon::AttrRecorder r(link.ptr());
   link->runningIs(false);
   EXPECT_EQ(link->rxPktCountInc(0), 0u);
   link->intervalIs(5);
   EXPECT_TRUE(r.records().empty());
   link->runningIs(true);
   link->rxPktCountIs(4294967295u);
   EXPECT_EQ(link->rxPktCountInc(1), 0u);
   LdpAdjId const adj(LdpIdentifier(Vorin::IpAddr(10, 0, 0, 2), 0), "eth0", Vorin::IpAddr(), LdpAdjKind::LdpLinkAdj);
   link->adjIdSetIs(adj, true);
   link->adjIdSetDel(adj);
   EXPECT_EQ(r.take(), (Records{"running", "rxPktCount", "rxPktCount", "adjIdSet[" + std::string(adj.stringValue()) + "]",
                                "adjIdSet[" + std::string(adj.stringValue()) + "]"}));
}

} // namespace
