// Every record of the link, target, adjacency, session, peer, TCP connection,
// listener and pseudowire configuration as it is when first made: one table,
// every attribute listed. The defaults that differ on purpose between two
// records (link against target, listener against targeted-hello receiver) stand
// side by side.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "ldp/config/LdpLink.h"
#include "ldp/config/LdpPeer.h"
#include "ldp/config/LdpTarget.h"
#include "ldp/config/LdpTargetServer.h"
#include "ldp/config/LdpTcpConn.h"
#include "ldp/config/LdpTcpServer.h"
#include "ldp/config/PwConfig.h"
#include "support/ModelTables.h"

namespace {

using namespace Ldp;
using LdpTest::AttrTable;

LdpIdentifier const peer(Vorin::IpAddr(6, 6, 6, 6), 0);

struct FreshRecord {
   char const * what;
   std::function<Zon::Ptr<Zon::Entity const>()> make;
   AttrTable attrs;
};

TEST(ConfigRecords, FreshRecordsHoldTheirDefaults) {
   // A TCP connection request is stamped with the runtime's clock.
   Zon::nowSourceIs([] { return Zon::Seconds(100.25); });
   auto const pwKey = Pseudowire::PseudowireLdpRequestKey(Vorin::IpGenAddr::fromString("10.0.0.2"),
                                                          Pseudowire::PseudowireId(100));
   PwFecSessionId const pwSession(peer, Pseudowire::PseudowireType::ethernet, Pseudowire::PseudowireId(100));
   std::vector<FreshRecord> const records = {
      // Link hellos: 5/15 with a retry interval, enabled from the start.
      {"LdpLinkConfig", [] { return Zon::makePtr<LdpLinkConfigColl>("links")->adjLinkConfigIs("link1", "eth1"); },
       {{"interval", "5"}, {"holdTime", "15"}, {"retryInterval", "1"}, {"name", "'link1'"}, {"intfId", "eth1"},
        {"ipAddr", "0.0.0.0"}, {"configState", "configEnabled"}, {"operStatus", "unknown"}}},
      {"LdpLinkCommonConfig", [] { return Zon::makePtr<LdpLinkConfigColl>("links")->ldpLinkCommonConfigIs("c"); },
       {{"interval", "5"}, {"holdTime", "15"}, {"retryInterval", "1"}, {"ttl", "1"}, {"ipTransportAddr", "0.0.0.0"},
        {"ldpId", "0.0.0.0:0"}, {"configSeqNum", "0"}}},
      {"LdpLinkConfigColl", [] { return Zon::makePtr<LdpLinkConfigColl>("links"); },
       {{"ldpLinkCommonConfig", "None"}, {"adjLinkConfig", "{}"}}},
      // Targeted hellos: 15/45 without a retry interval, disabled from the start.
      {"LdpTargetConfig",
       [] {
          return Zon::makePtr<LdpTargetConfigColl>("targets")->adjTargetConfigIs("target6", Vorin::IpAddr(192, 0, 2, 6));
       },
       {{"interval", "15"}, {"holdTime", "45"}, {"name", "'target6'"}, {"ipAddr", "192.0.2.6"},
        {"configState", "configDisabled"}, {"targetMembership", "{}"}}},
      {"LdpTargetCommonConfig",
       [] { return Zon::makePtr<LdpTargetConfigColl>("targets")->ldpTargetCommonConfigIs("c"); },
       {{"interval", "15"}, {"holdTime", "45"}, {"ttl", "1"}, {"ipTransportAddr", "0.0.0.0"}, {"ldpId", "0.0.0.0:0"},
        {"configSeqNum", "0"}}},
      {"LdpTargetConfigColl", [] { return Zon::makePtr<LdpTargetConfigColl>("targets"); },
       {{"ldpTargetCommonConfig", "None"}, {"adjTargetConfig", "{}"}}},
      {"LdpAdjConfig", [] { return Zon::makePtr<LdpAdjConfigColl>("adjs")->adjConfigIs(LdpAdjId()); },
       {{"adjId", "Value('Ldp::LdpAdjId', ** {'peerLdpId': 0.0.0.0:0, 'intfId': , 'targetIpAddr': 0.0.0.0, "
                  "'kind': none})"},
        {"holdTime", "15"}}},
      {"LdpAdjConfigColl", [] { return Zon::makePtr<LdpAdjConfigColl>("adjs"); }, {{"adjConfig", "{}"}}},
      {"LdpAdjPerLink", [] { return Zon::makePtr<LdpAdjPerLink>("eth1"); }, {{"intfId", "eth1"}, {"ldpAdj", "{}"}}},
      {"LocalIntfIpColl", [] { return Zon::makePtr<LocalIntfIpColl>("local"); }, {{"intfIpWithMask", "{}"}}},
      // Sessions propose keepalive 30 and PDUs of 4096 bytes.
      {"LdpSessionConfig",
       [] { return Zon::makePtr<LdpSessionConfigColl>("sessions")->sessionConfigIs(LdpSessionId(peer)); },
       {{"sessionId", "Value('Ldp::LdpSessionId', ** {'peerLdpId': 6.6.6.6:0})"},
        {"localLdpIdentifier", "0.0.0.0:0"}, {"peerIpAddr", "0.0.0.0"}, {"ldpSessionRole", "roleUnknown"},
        {"ldpPeerStatusCode", "success"}, {"reason", "''"}, {"keepAliveTime", "30"}, {"maxPduLength", "4096"},
        {"peerConfigSeqNum", "0"}}},
      {"LdpSessionCommonConfig",
       [] { return Zon::makePtr<LdpSessionConfigColl>("sessions")->ldpSessionCommonConfigIs("c"); },
       {{"ipTransportAddr", "0.0.0.0"}, {"ldpLabelAdvDspl", "unSolicited"}, {"localIntfIp", "{}"}}},
      {"LdpSessionConfigColl", [] { return Zon::makePtr<LdpSessionConfigColl>("sessions"); },
       {{"ldpSessionCommonConfig", "None"}, {"sessionConfig", "{}"}}},
      {"LdpPeerConfig", [] { return Zon::makePtr<LdpPeerConfigColl>("peers")->peerConfigIs(peer); },
       {{"peerLdpId", "6.6.6.6:0"}, {"ldpAdj", "{}"},
        {"activeAdj", "Value('Ldp::LdpAdjId', ** {'peerLdpId': 0.0.0.0:0, 'intfId': , 'targetIpAddr': 0.0.0.0, "
                      "'kind': none})"},
        {"peerIpAddr", "0.0.0.0"}, {"peerConfigSeqNum", "0"}, {"statusCode", "success"},
        {"latestAdjStatusCode", "success"}}},
      {"LdpPeerConfigColl", [] { return Zon::makePtr<LdpPeerConfigColl>("peers"); }, {{"peerConfig", "{}"}}},
      {"LdpLsrIntfIpAddrColl", [] { return Zon::makePtr<LdpLsrIntfIpAddrColl>("addrs", peer); },
       {{"name", "'addrs'"}, {"peerLdpId", "6.6.6.6:0"}, {"ipAddressSet", "{}"}}},
      // The platform's request first, then what LDP adds.
      {"LdpTcpConnConfig",
       [] {
          return ldpTcpConnConfigFactory(Vorin::IpGenAddr::fromString("10.0.0.6"), Vorin::Port(646),
                                         Vorin::IpGenAddr::fromString("10.0.0.1"), peer);
       },
       {{"serverIpAddr", "10.0.0.6"}, {"serverPort", "646"}, {"clientIpAddr", "10.0.0.1"}, {"ttl", "64"},
        {"md5Password", "''"}, {"retryLimit", "0"}, {"clientId", "6.6.6.6:0"}, {"enabled", "False"},
        {"requestTime", "100.25"}}},
      {"LdpTcpConnConfigColl", [] { return Zon::makePtr<LdpTcpConnConfigColl>("conns"); }, {{"connConfig", "{}"}}},
      // The session listener has a retry interval and no enabled flag; the
      // targeted-hello receiver the other way round.
      {"LdpTcpServerConfig", [] { return Zon::makePtr<LdpTcpServerConfig>("server"); },
       {{"listenIpAddr", "0.0.0.0"}, {"listenPort", "646"}, {"retryInterval", "1"}}},
      {"LdpTargetServerConfig", [] { return Zon::makePtr<LdpTargetServerConfig>("targetServer"); },
       {{"enabled", "False"}, {"listenIpAddr", "0.0.0.0"}, {"listenPort", "646"}, {"rxUdpPam", "None"}}},
      {"PwConfig",
       [&] { return Zon::makePtr<PwConfigColl>("pws")->configIs(pwKey, Pseudowire::PseudowireType::ethernet); },
       {{"requestKey", "Value('Pseudowire::PseudowireLdpRequestKey', ** {'peer': 10.0.0.2, 'pwId': 100})"},
        {"pwType", "ethernet"}, {"groupId", "0"}, {"localLabel", "1048576"}, {"preferControlWord", "False"},
        {"mtu", "0"}, {"status", "connectorStatusUnknown"}}},
      {"PwConfigColl", [] { return Zon::makePtr<PwConfigColl>("pws"); }, {{"config", "{}"}}},
      {"PwFecSessionConfig",
       [&] {
          return Zon::makePtr<PwFecSessionConfigColl>("local")->fecSessionConfigIs(
              pwSession, PwFecSessionMember::pwFecMemberStatic);
       },
       {{"pwFecSessionId", "Value('Ldp::PwFecSessionId', ** {'peerLdpId': 6.6.6.6:0, 'pwType': ethernet, "
                           "'pwId': 100})"},
        {"initMember", "pwFecMemberStatic"},
        {"fecParams", "Value('Ldp::PwFwdEqvClassParams', ** {'groupId': 0, 'mtu': 0, 'intfDescription': '', "
                      "'requestedVlanId': 0, 'fragCapable': False, 'vccvCcTypes': 0, 'vccvCvTypes': 0})"},
        {"label", "1048576"}, {"pwStatusMethod", "pwStatusMethodTlv"}, {"pwStatusFlags", "0x00000000"},
        {"member", "{pwFecMemberStatic: True}"}}},
      {"PwFecSessionConfigColl", [] { return Zon::makePtr<PwFecSessionConfigColl>("local"); },
       {{"fecSessionConfig", "{}"}}},
   };
   for (auto const & r : records) {
      SCOPED_TRACE(r.what);
      LdpTest::expectAttrs(*r.make(), r.attrs);
   }
   Zon::nowSourceIs({});
}

} // namespace
