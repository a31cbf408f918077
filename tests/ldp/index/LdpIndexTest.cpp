// The agent's index, the pseudowire FEC session info map and the label
// allocation requests: fresh records as tables, the never-failing adjacency
// lookup, create-or-get notifying once, and the reference collections.
#include <gtest/gtest.h>

#include <string>

#include "ldp/index/LdpIndex.h"
#include "ldp/index/LdpLabelAlloc.h"
#include "support/ModelTables.h"
#include "zon/Exception.h"

namespace {

using namespace Ldp;
using LdpTest::expectAttrs;
using LdpTest::Records;

LdpIdentifier ldpId(char const * lsr, std::uint16_t space = 0) {
   return LdpIdentifier(Vorin::IpAddr::fromString(lsr), space);
}

PwFecSessionId pwSession(char const * peer, std::uint32_t pwId) {
   return PwFecSessionId(ldpId(peer), Pseudowire::PseudowireType::ethernet, Pseudowire::PseudowireId(pwId));
}

Pseudowire::PseudowireLdpRequestKey pwKey(std::uint32_t pwId) {
   return Pseudowire::PseudowireLdpRequestKey(Vorin::IpGenAddr::fromString("10.0.0.2"), Pseudowire::PseudowireId(pwId));
}

TEST(LdpIndex, FreshRecords) {
   auto index = Zon::makePtr<LdpIndex>("index");
   expectAttrs(*index, {{"peerToSession", "{}"},
                        {"ldpAdjPerLinkColl", "{}"},
                        {"targetIpToLdpAdjId", "{}"},
                        {"transportIpToPeer", "{}"},
                        {"pwKeyToPwFecSessionInfo", "{}"},
                        {"peerToPwRequest", "{}"}});
   auto const addr = Vorin::IpGenAddr::fromString("10.0.0.2");
   expectAttrs(*index->peerToSessionIs(addr), {{"peerTransportIp", "10.0.0.2"}, {"sessionId", "{}"}});
   expectAttrs(*index->transportIpToPeerIs(addr), {{"transportIp", "10.0.0.2"}, {"ldpIdentifier", "{}"}});
   expectAttrs(*index->peerToPwRequestIs(addr), {{"peerTransportIp", "10.0.0.2"}, {"request", "{}"}});
   expectAttrs(*index->ldpAdjPerLinkCollIs("eth0"), {{"intfId", "eth0"}, {"ldpAdj", "{}"}});
   expectAttrs(*index->pwKeyToPwFecSessionInfoIs(pwKey(7)),
               {{"pwKey", "Value('Pseudowire::PseudowireLdpRequestKey', ** {'peer': 10.0.0.2, 'pwId': 7})"},
                {"ldpRequest", "{}"},
                {"localConfig", "{}"},
                {"remoteConfig", "{}"},
                {"localStatus", "{}"},
                {"remoteStatus", "{}"}});
   for (auto status : {Zon::Ptr<Zon::Entity>(Zon::makePtr<LocalPwFecSessionStatus>(pwSession("10.0.0.2", 7))),
                       Zon::Ptr<Zon::Entity>(Zon::makePtr<RemotePwFecSessionStatus>(pwSession("10.0.0.2", 7)))}) {
      expectAttrs(*status, {{"pwFecSessionId", "Value('Ldp::PwFecSessionId', ** {'peerLdpId': 10.0.0.2:0, "
                                               "'pwType': ethernet, 'pwId': 7})"},
                            {"label", "1048576"},
                            {"pwStatusFlags", "0x00000000"},
                            {"state", "pwFecStateIdle"}});
   }
}

TEST(LdpIndex, AdjacencyOfAnUnknownTargetIsAllZero) {
   auto index = Zon::makePtr<LdpIndex>("index");
   auto const target = Vorin::IpAddr(10, 0, 0, 9);
   EXPECT_EQ(index->targetIpToLdpAdjId(target), LdpAdjId());
   EXPECT_EQ(index->targetIpToLdpAdjId(target).peerLdpId(), ldpId("0.0.0.0"));
   EXPECT_TRUE(index->targetIpToLdpAdjId(target).intfId().isEmpty());
   LdpAdjId const adj(ldpId("10.0.0.9"), "", target, LdpAdjKind::LdpTargetAdj);
   index->targetIpToLdpAdjIdIs(target, adj);
   EXPECT_EQ(index->targetIpToLdpAdjId(target), adj);
   index->targetIpToLdpAdjIdDel(target);
   EXPECT_EQ(index->targetIpToLdpAdjId(target), LdpAdjId());
}

TEST(LdpIndex, CreateOrGetNotifiesOnceAndSetsHoldTheirMembers) {
   auto index = Zon::makePtr<LdpIndex>("index");
   Zon::AttrRecorder r(index.ptr());
   auto const addr = Vorin::IpGenAddr::fromString("10.0.0.2");
   auto peer = index->peerToSessionIs(addr);
   EXPECT_EQ(index->peerToSessionIs(addr), peer);
   EXPECT_EQ(index->newPeerToSession(addr), peer); // create-or-get as well
   EXPECT_EQ(peer->parent(), index.ptr());
   Zon::AttrRecorder onPeer(peer.ptr());
   LdpSessionId const s(ldpId("10.0.0.2"));
   peer->sessionIdIs(s, true);
   peer->sessionIdIs(s, true);
   peer->sessionIdDel(s);
   EXPECT_EQ(index->peerToSessions(), 1u); // an element without members stays until deleted
   index->peerToSessionDel(addr);
   EXPECT_EQ(peer->parent(), nullptr);
   auto link = index->ldpAdjPerLinkCollIs("eth0");
   link->newLdpAdj(LdpAdjId(ldpId("10.0.0.3"), "eth0", Vorin::IpAddr(), LdpAdjKind::LdpLinkAdj), true);
   EXPECT_EQ(r.take(), (Records{"peerToSession[10.0.0.2]", "peerToSession[10.0.0.2]", "ldpAdjPerLinkColl[eth0]"}));
   EXPECT_EQ(onPeer.take(), (Records{"sessionId[Value('Ldp::LdpSessionId', ** {'peerLdpId': 10.0.0.2:0})]",
                                     "sessionId[Value('Ldp::LdpSessionId', ** {'peerLdpId': 10.0.0.2:0})]"}));
}

TEST(PwFecSessionInfoMap, ReferencesAreKeyedByTheirOwnIdAndNeverChangeTheirEntities) {
   auto index = Zon::makePtr<LdpIndex>("index");
   auto map = index->pwKeyToPwFecSessionInfoIs(pwKey(7));
   auto configs = Zon::makePtr<PwFecSessionConfigColl>("local");
   auto config = configs->fecSessionConfigIs(pwSession("10.0.0.2", 7), PwFecSessionMember::pwFecMemberStatic);
   Zon::AttrRecorder r(map.ptr());
   map->localConfigIs(config);
   map->localConfigIs(config); // the same entity: nobody hears
   EXPECT_EQ(map->localConfig(pwSession("10.0.0.2", 7)), config);
   EXPECT_EQ(config->parent(), configs.ptr()); // still its collection's
   // Another entity with the same id replaces the reference.
   auto other = Zon::makePtr<PwFecSessionConfigColl>("other")->fecSessionConfigIs(
       pwSession("10.0.0.2", 7), PwFecSessionMember::pwFecMemberSessionSm);
   map->newLocalConfig(other);
   EXPECT_EQ(map->localConfig(pwSession("10.0.0.2", 7)), other);
   auto local = Zon::makePtr<LocalPwFecSessionStatus>(pwSession("10.0.0.2", 7));
   auto remote = Zon::makePtr<RemotePwFecSessionStatus>(pwSession("10.0.0.2", 8));
   map->localStatusIs(local);
   map->remoteStatusIs(remote);
   map->remoteConfigIs(config);
   // A reference keeps its entity alive after its collection dropped it.
   configs->fecSessionConfigDel(pwSession("10.0.0.2", 7));
   EXPECT_EQ(map->remoteConfig(pwSession("10.0.0.2", 7)), config);
   map->remoteConfigDel(pwSession("10.0.0.2", 7));
   map->localStatusDelAll();
   map->ldpRequestIs(pwKey(7), true);
   map->ldpRequestIs(pwKey(7), true);
   std::string const id7 = "Value('Ldp::PwFecSessionId', ** {'peerLdpId': 10.0.0.2:0, 'pwType': ethernet, 'pwId': 7})";
   std::string const id8 = "Value('Ldp::PwFecSessionId', ** {'peerLdpId': 10.0.0.2:0, 'pwType': ethernet, 'pwId': 8})";
   EXPECT_EQ(r.take(), (Records{"localConfig[" + id7 + "]", "localConfig[" + id7 + "]", "localStatus[" + id7 + "]",
                                "remoteStatus[" + id8 + "]", "remoteConfig[" + id7 + "]", "remoteConfig[" + id7 + "]",
                                "localStatus[" + id7 + "]",
                                "ldpRequest[Value('Pseudowire::PseudowireLdpRequestKey', ** {'peer': 10.0.0.2, 'pwId': 7})]"}));
}

TEST(PwFecSessionInfoMap, NullReferencesAreRefusedWithTheirText) {
   auto map = Zon::makePtr<LdpIndex>("index")->pwKeyToPwFecSessionInfoIs(pwKey(1));
   Zon::AttrRecorder r(map.ptr());
   struct Row {
      void (*store)(PwFecSessionInfoMap &);
      char const * text;
   };
   Row const rows[] = {
      {[](PwFecSessionInfoMap & m) { m.localConfigIs(nullptr); },
       "null _localConfig parameter to mutator for Ldp::PwFecSessionInfoMap::localConfig not allowed\""},
      {[](PwFecSessionInfoMap & m) { m.newRemoteConfig(nullptr); },
       "null _remoteConfig parameter to mutator for Ldp::PwFecSessionInfoMap::remoteConfig not allowed\""},
      {[](PwFecSessionInfoMap & m) { m.localStatusIs(nullptr); },
       "null _localStatus parameter to mutator for Ldp::PwFecSessionInfoMap::localStatus not allowed\""},
      {[](PwFecSessionInfoMap & m) { m.remoteStatusIs(nullptr); },
       "null _remoteStatus parameter to mutator for Ldp::PwFecSessionInfoMap::remoteStatus not allowed\""},
   };
   for (Row const & row : rows) {
      try {
         row.store(*map);
         ADD_FAILURE() << "stored a null reference: " << row.text;
      } catch (Zon::RangeException const & e) {
         EXPECT_STREQ(e.what(), row.text);
      }
   }
   EXPECT_TRUE(r.records().empty());
   expectAttrs(*map, {{"localConfig", "{}"}, {"remoteConfig", "{}"}, {"localStatus", "{}"}, {"remoteStatus", "{}"}},
               LdpTest::Coverage::some);
}

TEST(LabelAlloc, RequestsPerFecAndTheAllocatorsState) {
   Zon::Ptr<LabelAllocRequestTable> table = Zon::validPtr(labelAllocRequestTableFactory("requests"));
   EXPECT_EQ(table->name(), "requests");
   expectAttrs(*table, {{"labelBindingRequest", "{}"}});
   Zon::AttrRecorder r(table.ptr());
   auto const fec = Mpls::FwdEqvClass(Vorin::IpGenPrefix::fromString("10.1.0.0/16"));
   auto request = table->labelBindingRequestIs(fec);
   EXPECT_EQ(table->newLabelBindingRequest(fec), request); // the same FEC twice: one request
   EXPECT_EQ(table->labelBindingRequests(), 1u);
   expectAttrs(*request, {{"fwdEqvClass", "10.1.0.0/16"}, {"numLabelsRequested", "0"}, {"ldpFecDeliveryType", "Unknown"}});
   table->labelBindingRequestDel(fec);
   EXPECT_EQ(r.take(), (Records{"labelBindingRequest[10.1.0.0/16]", "labelBindingRequest[10.1.0.0/16]"}));
   expectAttrs(*Zon::makePtr<LabelAllocGlobalStatus>("allocator"), {{"state", "markAndSweep"}, {"rangeChanged", "0"}});
   EXPECT_EQ(static_cast<int>(LabelAllocStatusEnum::waitForLabelRange), 2);
   EXPECT_EQ(static_cast<int>(LdpFecDeliveryType::Egress), 3);
}

} // namespace
