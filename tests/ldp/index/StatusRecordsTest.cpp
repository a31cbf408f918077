// The smaller records under the status root: the peers' interface addresses,
// the pseudowires' status, the pseudowire FEC sessions' status, the ACL status,
// the link status common to all links, the listener's client counts and the
// agent's start-up count. One table of fresh records, one of changes and what
// observers hear of them.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "acl/StatusService.h"
#include "ldp/index/LdpStatus.h"
#include "ldp/status/LabelBinding.h"
#include "ldp/status/LdpAdj.h"
#include "ldp/status/PwFecSession.h"
#include "support/ModelTables.h"

namespace {

using namespace Ldp;
using LdpTest::AttrTable;
using LdpTest::Records;

LdpIdentifier const peer(Vorin::IpAddr(10, 0, 0, 2), 0);
Pseudowire::PseudowireLdpRequestKey const pwKey(Vorin::IpGenAddr::fromString("10.0.0.2"),
                                                Pseudowire::PseudowireId(100));
PwFecSessionId const pwSession(peer, Pseudowire::PseudowireType::ethernet, Pseudowire::PseudowireId(100));
std::string const pwKeyText = "Value('Pseudowire::PseudowireLdpRequestKey', ** {'peer': 10.0.0.2, 'pwId': 100})";
std::string const pwSessionText =
    "Value('Ldp::PwFecSessionId', ** {'peerLdpId': 10.0.0.2:0, 'pwType': ethernet, 'pwId': 100})";
// Collections print their keys; the tables hold views, so the texts live here.
std::string const pwKeys = "{" + pwKeyText + "}";
std::string const pwSessions = "{" + pwSessionText + "}";

struct FreshRecord {
   char const * what;
   std::function<Zon::Ptr<Zon::Entity const>()> make;
   AttrTable attrs;
};

TEST(StatusRecords, FreshRecordsHoldTheirDefaults) {
   // Both directions of a pseudowire FEC session start alike: no label, no
   // status bits, nothing exchanged.
   AttrTable const sessionStatus = {{"pwFecSessionId", pwSessionText},
                                    {"label", "1048576"},
                                    {"pwStatusFlags", "0x00000000"},
                                    {"state", "pwFecStateIdle"}};
   std::vector<FreshRecord> const records = {
      {"LdpIdIntfIpMappingTable", [] { return Zon::makePtr<LdpIdIntfIpMappingTable>("mappings"); },
       {{"mapping", "{}"}}},
      {"LdpIdIntfIpMapping", [] { return Zon::makePtr<LdpIdIntfIpMappingTable>("mappings")->mappingIs(peer); },
       {{"ldpIdentifier", "10.0.0.2:0"}, {"intfIp", "{}"}}},
      {"PwStatusColl", [] { return Zon::makePtr<PwStatusColl>("pws"); }, {{"pwStatus", "{}"}}},
      {"PwStatus", [] { return Zon::makePtr<PwStatusColl>("pws")->pwStatusIs(pwKey); },
       {{"requestKey", pwKeyText},
        {"localLabel", "1048576"},
        {"remoteLabel", "1048576"},
        {"localStatusFlags", "0x00000000"},
        {"remoteStatusFlags", "0x00000000"}}},
      {"LocalPwFecSessionStatusColl", [] { return Zon::makePtr<LocalPwFecSessionStatusColl>("local"); },
       {{"fecSessionStatus", "{}"}}},
      {"LocalPwFecSessionStatus",
       [] { return Zon::makePtr<LocalPwFecSessionStatusColl>("local")->fecSessionStatusIs(pwSession); },
       sessionStatus},
      {"RemotePwFecSessionStatusColl", [] { return Zon::makePtr<RemotePwFecSessionStatusColl>("remote"); },
       {{"fecSessionStatus", "{}"}}},
      {"RemotePwFecSessionStatus",
       [] { return Zon::makePtr<RemotePwFecSessionStatusColl>("remote")->fecSessionStatusIs(pwSession); },
       sessionStatus},
      {"Acl::StatusService", [] { return Zon::makePtr<Acl::StatusService>("acl"); },
       {{"serviceName", "''"}, {"applied", "False"}, {"deniedPktCount", "0"}}},
      // Nothing of its own: its presence is what it says.
      {"LdpLinkCommonStatus", [] { return Zon::makePtr<LdpLinkStatusColl>("links")->ldpLinkCommonStatusIs("c"); },
       {}},
      {"LdpAgentStatus", [] { return ldpAgentStatusFactory("agent"); }, {{"numStartups", "0"}}},
   };
   for (FreshRecord const & r : records) {
      SCOPED_TRACE(r.what);
      LdpTest::expectAttrs(*r.make(), r.attrs);
   }
}

// One change made twice: observers hear it once (with the key where there is
// one), and the record holds it afterwards.
struct Change {
   char const * what;
   Zon::Ptr<Zon::Entity> entity;
   std::function<void()> change;
   Records heard;
   AttrTable after;
};

TEST(StatusRecords, ChangesAreHeardOnceWithTheirKeys) {
   auto mappings = Zon::makePtr<LdpIdIntfIpMappingTable>("mappings");
   auto mapping = Zon::makePtr<LdpIdIntfIpMappingTable>("other")->mappingIs(peer);
   auto pws = Zon::makePtr<PwStatusColl>("pws");
   auto pw = Zon::makePtr<PwStatusColl>("other")->pwStatusIs(pwKey);
   auto local = Zon::makePtr<LocalPwFecSessionStatusColl>("local");
   auto remote = Zon::makePtr<RemotePwFecSessionStatusColl>("remote")->fecSessionStatusIs(pwSession);
   auto acl = Zon::makePtr<Acl::StatusService>("acl");
   auto server = Zon::makePtr<LdpTcpServerStatus>("server");
   auto agent = ldpAgentStatusFactory("agent");
   Vorin::IpAddr const client(10, 0, 0, 5);
   Pseudowire::PseudowireLdpStatusFlags const notForwarding(1);
   std::vector<Change> const changes = {
      {"mappingIs", mappings, [&] { mappings->mappingIs(peer); }, {"mapping[10.0.0.2:0]"},
       {{"mapping", "{10.0.0.2:0}"}}},
      {"intfIpIs", mapping, [&] { mapping->intfIpIs(Vorin::IpGenAddr::fromString("10.1.0.1"), true); },
       {"intfIp[10.1.0.1]"}, {{"intfIp", "{10.1.0.1: True}"}}},
      {"pwStatusIs", pws, [&] { pws->pwStatusIs(pwKey); }, {"pwStatus[" + pwKeyText + "]"},
       {{"pwStatus", pwKeys}}},
      {"PwStatus labels and flags", pw,
       [&] {
          pw->localLabelIs(Vorin::MplsLabel(16));
          pw->remoteStatusFlagsIs(notForwarding);
       },
       {"localLabel", "remoteStatusFlags"}, {{"localLabel", "16"}, {"remoteStatusFlags", "0x00000001"}}},
      {"fecSessionStatusIs", local, [&] { local->fecSessionStatusIs(pwSession); },
       {"fecSessionStatus[" + pwSessionText + "]"}, {{"fecSessionStatus", pwSessions}}},
      {"RemotePwFecSessionStatus", remote,
       [&] {
          remote->labelIs(Vorin::MplsLabel(17));
          remote->stateIs(PwFecSessionState::pwFecStateMapped);
       },
       {"label", "state"}, {{"label", "17"}, {"state", "pwFecStateMapped"}}},
      {"Acl::StatusService", acl,
       [&] {
          acl->appliedIs(true);
          acl->deniedPktCountInc(0);
       },
       {"applied"}, {{"applied", "True"}, {"deniedPktCount", "0"}}},
      {"clientCountIs", server, [&] { server->clientCountIs(client, 2); }, {"clientCount[10.0.0.5]"},
       {{"clientCount", "{10.0.0.5: 2}"}}},
      {"numStartupsIs", agent, [&] { agent->numStartupsIs(4); }, {"numStartups"}, {{"numStartups", "4"}}},
   };
   for (Change const & c : changes) {
      SCOPED_TRACE(c.what);
      Zon::AttrRecorder r(c.entity.ptr());
      c.change();
      c.change();
      EXPECT_EQ(r.take(), c.heard);
      LdpTest::expectAttrs(*c.entity, c.after, LdpTest::Coverage::some);
   }
   // Another count for a known client is a change; the agent counts on from there.
   Zon::AttrRecorder onServer(server.ptr());
   server->clientCountIs(client, 3);
   EXPECT_EQ(server->clientCount(client), 3u);
   EXPECT_EQ(onServer.take(), Records{"clientCount[10.0.0.5]"});
   EXPECT_EQ(agent->numStartupsInc(1), 5u);
}

} // namespace
