// Sessions, peers and the two listeners: their collections, the shared session
// record and the targeted-hello receiver's UDP endpoint.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ldp/config/LdpPeer.h"
#include "ldp/config/LdpTargetServer.h"
#include "support/ModelTables.h"

namespace {

using namespace Ldp;
using LdpTest::Records;

LdpIdentifier const peer(Vorin::IpAddr(4, 4, 4, 4), 0);

TEST(LdpSessionConfigColl, SessionsBySessionIdAndOneCommonRecord) {
   auto coll = Zon::makePtr<LdpSessionConfigColl>("sessions");
   Zon::AttrRecorder r(coll.ptr());
   LdpSessionId const id(peer);
   auto s = coll->sessionConfigIs(id);
   EXPECT_EQ(s->sessionId(), id);
   s->ldpSessionRoleIs(LdpSessionRole::roleActive);
   EXPECT_EQ(coll->newSessionConfig(id), s);
   EXPECT_EQ(s->ldpSessionRole(), LdpSessionRole::roleActive);
   auto common = coll->ldpSessionCommonConfigIs("common");
   common->localIntfIpIs(Vorin::IpAddr(10, 0, 0, 1), true);
   // Another name replaces the common record by a new, empty one.
   auto other = coll->ldpSessionCommonConfigIs("other");
   EXPECT_NE(other, common);
   EXPECT_EQ(other->localIntfIps(), 0u);
   EXPECT_EQ(common->parent(), nullptr);
   coll->sessionConfigDelAll();
   std::string const session = "sessionConfig[Value('Ldp::LdpSessionId', ** {'peerLdpId': 4.4.4.4:0})]";
   EXPECT_EQ(r.take(), (Records{session, "ldpSessionCommonConfig", "ldpSessionCommonConfig", session}));
}

TEST(LdpPeerConfig, AdjacenciesThatLeadToThePeer) {
   auto coll = Zon::makePtr<LdpPeerConfigColl>("peers");
   auto p = coll->peerConfigIs(peer);
   EXPECT_EQ(p->name(), "4.4.4.4:0");
   EXPECT_EQ(p->peerLdpId(), peer);
   EXPECT_EQ(coll->newPeerConfig(peer), p);
   LdpAdjId const viaLink(peer, "eth1", Vorin::IpAddr(), LdpAdjKind::LdpLinkAdj);
   Zon::AttrRecorder r(p.ptr());
   p->newLdpAdj(viaLink, true);
   p->activeAdjIs(LdpAdjId()); // still none
   p->activeAdjIs(viaLink);
   p->statusCodeIs(LdpStatusCode::success);
   p->statusCodeIs(LdpStatusCode::badLdpId);
   p->ldpAdjDel(viaLink);
   EXPECT_EQ(p->activeAdj(), viaLink);
   std::string const adj = "ldpAdj[" + std::string(viaLink.stringValue()) + "]";
   EXPECT_EQ(r.take(), (Records{adj, "activeAdj", "statusCode", adj}));
}

TEST(LdpLsrIntfIpAddrColl, AddressesOnePeerAdvertised) {
   auto addrs = Zon::makePtr<LdpLsrIntfIpAddrColl>("peerAddrs", peer);
   EXPECT_EQ(addrs->name(), "peerAddrs");
   EXPECT_EQ(addrs->peerLdpId(), peer);
   Zon::AttrRecorder r(addrs.ptr());
   auto const a = Vorin::IpGenAddr::fromString("10.9.0.1");
   auto const b = Vorin::IpGenAddr::fromString("2001:db8::9");
   addrs->newIpAddressSet(a, true);
   addrs->ipAddressSetIs(b, true);
   addrs->ipAddressSetIs(a, true);
   addrs->ipAddressSetDel(a);
   EXPECT_EQ(addrs->ipAddressSets(), 1u);
   EXPECT_TRUE(addrs->ipAddressSet(b));
   EXPECT_EQ(r.take(), (Records{"ipAddressSet[10.9.0.1]", "ipAddressSet[2001:db8::9]", "ipAddressSet[10.9.0.1]"}));
}

TEST(LdpTargetServerConfig, ReceivesThroughANamedUdpEndpoint) {
   auto server = Zon::makePtr<LdpTargetServerConfig>("targetServer");
   Zon::AttrRecorder r(server.ptr());
   auto pam = server->rxUdpPamIs("ldp-targeted");
   EXPECT_EQ(pam->name(), "ldp-targeted");
   EXPECT_EQ(pam->parent(), server.ptr());
   EXPECT_EQ(server->rxUdpPamIs("ldp-targeted"), pam);
   pam->portIs(Vorin::Port(server->listenPort()));
   pam->enabledIs(true);
   server->enabledIs(true);
   server->rxUdpPamDel();
   EXPECT_EQ(pam->parent(), nullptr);
   EXPECT_FALSE(server->rxUdpPam());
   EXPECT_EQ(r.take(), (Records{"rxUdpPam", "enabled", "rxUdpPam"}));
}

} // namespace
