// The FEC state: fresh records as tables, the children made at birth, Via's
// texts and hash, the counters, and the per-session FEC records.
#include <gtest/gtest.h>

#include <string>
#include <unordered_set>

#include "ldp/status/LdpFec.h"
#include "ldp/status/LdpFecSession.h"
#include "support/ModelTables.h"

namespace {

using namespace Ldp;
using LdpTest::expectAttrs;
using LdpTest::Records;

Mpls::FwdEqvClass prefix(char const * text) { return Mpls::FwdEqvClass(Vorin::IpGenPrefix::fromString(text)); }

TEST(LdpFecConfig, FreshRecordOwnsItsTwoSets) {
   auto coll = Zon::makePtr<LdpFecConfigColl>("fecs");
   auto fec = coll->fecConfigIs(prefix("10.1.0.0/16"));
   expectAttrs(*fec, {{"fwdEqvClass", "10.1.0.0/16"},
                      {"ldpFecDeliveryType", "Unknown"},
                      {"mplsLabelSet", "'labelSet'"},
                      {"advertisedTo", "'advertisedTo'"},
                      {"membership", "{}"},
                      {"sessionMember", "{}"},
                      {"sessionRxReqTime", "{}"},
                      {"downstreamLsr", "{}"},
                      {"via", "{}"},
                      {"intfIpViaMapping", "{}"},
                      {"viaLdpIdMapping", "{}"},
                      {"ldpIdViaMapping", "{}"},
                      {"mappedLsr", "{}"},
                      {"downstreamLsrMappingAvail", "False"},
                      {"fecFilteredState", "fecFilterUndecided"},
                      {"ldpFecLspRole", "lspTransit"},
                      {"ldpLabelDistCtrl", "orderedCtrl"},
                      {"ldpLabelRetention", "liberalRetention"},
                      {"routerId", "0.0.0.0"},
                      {"ldpLoopDetection", "False"}});
   EXPECT_EQ(static_cast<int>(Mpls::FecFilteredState::fecFilterUndecided), 0);
   // Both sets are made with the FEC and belong to it.
   expectAttrs(*fec->mplsLabelSet(), {{"fwdEqvClass", "10.1.0.0/16"}, {"label", "{}"}});
   expectAttrs(*fec->advertisedTo(), {{"fwdEqvClass", "10.1.0.0/16"}, {"ldpIdentifier", "{}"}});
   EXPECT_EQ(fec->mplsLabelSet()->parent(), fec.ptr());
   auto labels = fec->mplsLabelSet();
   auto peers = fec->advertisedTo();
   labels->labelIs(Vorin::MplsLabel(16), true);
   // Kept by the name alone, whatever FEC is asked for; another name replaces.
   for (char const * asked : {"10.1.0.0/16", "10.2.0.0/16"}) {
      EXPECT_EQ(fec->mplsLabelSetIs("labelSet", prefix(asked)), labels);
      EXPECT_EQ(fec->advertisedToIs("advertisedTo", prefix(asked)), peers);
   }
   EXPECT_EQ(labels->fwdEqvClass(), prefix("10.1.0.0/16"));
   EXPECT_EQ(labels->labels(), 1u);
   EXPECT_NE(fec->advertisedToIs("peers", prefix("10.1.0.0/16")), peers);
   EXPECT_EQ(peers->parent(), nullptr);
   coll->fecConfigDel(prefix("10.1.0.0/16"));
   fec = nullptr;
   EXPECT_EQ(labels->parent(), nullptr); // released with the FEC
}

TEST(LdpFecConfig, NextHopsAndTheirReverseViews) {
   auto fec = Zon::makePtr<LdpFecConfigColl>("fecs")->fecConfigIs(prefix("10.1.0.0/16"));
   Zon::AttrRecorder r(fec.ptr());
   Via const via(Vorin::IpGenAddr::fromString("10.0.0.1"), "eth0");
   LdpIdentifier const peer(Vorin::IpAddr(10, 0, 0, 1), 0);
   fec->newVia(via, true);
   fec->newViaLdpIdMapping(via, peer);
   fec->ldpIdViaMappingIs(peer)->viaIs(via, true);
   fec->newIntfIpViaMapping(Vorin::IpGenAddr::fromString("10.0.0.2"))->newVia(via, true);
   fec->membershipIs(LdpFecConfigMembership::fecMemberSessionSm, true);
   fec->sessionRxReqTimeIs(LdpSessionId(peer), 12.5);
   fec->viaDel(via);
   std::string const v = "Value('Ldp::Via', ** {'hop': 10.0.0.1, 'intfId': eth0})";
   EXPECT_EQ(r.take(), (Records{"via[" + v + "]", "viaLdpIdMapping[" + v + "]", "ldpIdViaMapping[10.0.0.1:0]",
                                "intfIpViaMapping[10.0.0.2]", "membership[fecMemberSessionSm]",
                                "sessionRxReqTime[Value('Ldp::LdpSessionId', ** {'peerLdpId': 10.0.0.1:0})]",
                                "via[" + v + "]"}));
}

TEST(Via, TextsHashAndOrder) {
   Via const a(Vorin::IpGenAddr::fromString("10.0.0.1"), "eth0");
   EXPECT_EQ(a.stringValue(), "Value('Ldp::Via', ** {'hop': 10.0.0.1, 'intfId': eth0})");
   EXPECT_EQ(a.shortStringValue(), "10.0.0.1-eth0");
   EXPECT_EQ(Via().shortStringValue(), "0.0.0.0-");
   EXPECT_EQ(Via::fromString(std::string(a.stringValue())), a);
   Via const b(Vorin::IpGenAddr::fromString("10.0.0.1"), "eth1");
   Via const c(Vorin::IpGenAddr::fromString("2001:db8::1"), "eth0");
   std::unordered_set<std::size_t> const hashes{a.hash(), b.hash(), c.hash(), Via().hash()};
   EXPECT_EQ(hashes.size(), 4u);
   EXPECT_EQ(a.hash(), Via(a).hash());
   EXPECT_LE(a.hash(), 0xffffffffu); // 32 bits on every platform
   EXPECT_LT(a, b);
}

TEST(LdpFecStatus, FreshRecordOwnsAnEmptyNotification) {
   auto coll = Zon::makePtr<LdpFecStatusColl>("fecs");
   auto status = coll->fecStatusIs(prefix("10.1.0.0/16"));
   expectAttrs(*status, {{"fwdEqvClass", "10.1.0.0/16"},
                         {"upstreamLabelRequest", "0"},
                         {"hopCountInclude", "False"},
                         {"pathVectorInclude", "False"},
                         {"hopCountMappingMsg", "0"},
                         {"hopCountMappingLearnt", "0"},
                         {"hopCountRequestMsg", "0"},
                         {"hopCountRequestLearnt", "0"},
                         {"attributeVersion", "0"},
                         {"pathVectorTlvPkt", "None"},
                         {"labelXsessionRequestSmNotiTime", "0.0"},
                         {"labelXsessionMappingSmNotiTime", "0.0"},
                         {"ldpXsessionNotification", "''"}});
   expectAttrs(*status->ldpXsessionNotification(), {{"ldpXsessionNotificationType", "ldpXsessionUnknown"},
                                                    {"sourceSessionId", "Value('Ldp::LdpSessionId', ** {'peerLdpId': 0.0.0.0:0})"},
                                                    {"ldpXsessionMapMsgParser", "None"},
                                                    {"ldpXsessionReqMsgParser", "None"},
                                                    {"hopCount", "0"},
                                                    {"pathVectorTlvPkt", "None"}});
   using Type = LdpXsessionNotification::LdpXsessionNotificationType;
   EXPECT_EQ(static_cast<int>(Type::ldpXsessionRequestLoopDetection), 4);
   EXPECT_EQ(stringValue(Type::ldpXsessionMapping), "ldpXsessionMapping");
   Zon::AttrRecorder r(status.ptr());
   EXPECT_EQ(status->attributeVersionInc(0), 0u);
   EXPECT_EQ(status->attributeVersionInc(2), 2u);
   status->attributeVersionIs(4294967295u);
   EXPECT_EQ(status->attributeVersionInc(1), 0u);
   EXPECT_EQ(r.take(), (Records{"attributeVersion", "attributeVersion", "attributeVersion"}));
}

TEST(LdpFecCounters, KeyedAndPlainCounters) {
   auto counters = Zon::makePtr<LdpFecCounters>("counters");
   expectAttrs(*counters, {{"labelMappingRxTlv", "{}"},
                           {"labelMappingUnknownTlvDrop", "0"},
                           {"labelMappingUnknownTlvNotify", "0"},
                           {"ldpMsgRx", "{}"},
                           {"ldpMsgTx", "{}"}});
   Zon::AttrRecorder r(counters.ptr());
   EXPECT_EQ(counters->ldpMsgRxInc(LdpMsgType::LdpLabelMapping, 0), 0u); // created at 0, nobody hears
   EXPECT_EQ(counters->ldpMsgRxInc(LdpMsgType::LdpLabelMapping, 2), 2u);
   counters->labelMappingUnknownTlvDropIs(18446744073709551615u);
   EXPECT_EQ(counters->labelMappingUnknownTlvDropInc(1), 0u); // 64-bit wrap
   expectAttrs(*counters, {{"ldpMsgRx", "{LdpLabelMapping: 2}"}}, LdpTest::Coverage::some);
   EXPECT_EQ(r.take(), (Records{"ldpMsgRx[LdpLabelMapping]", "labelMappingUnknownTlvDrop", "labelMappingUnknownTlvDrop"}));
}

TEST(LdpFecSession, FreshRecordsAndKeys) {
   LdpSessionId const session(LdpIdentifier(Vorin::IpAddr(10, 0, 0, 1), 0));
   LdpFecSessionId const id(prefix("10.1.0.0/16"), session);
   EXPECT_EQ(id.stringValue(), "Value('Ldp::LdpFecSessionId', ** {'fwdEqvClass': 10.1.0.0/16, "
                               "'ldpSessionId': Value('Ldp::LdpSessionId', ** {'peerLdpId': 10.0.0.1:0})})");
   EXPECT_NE(id.hash(), LdpFecSessionId(prefix("10.2.0.0/16"), session).hash());
   auto status = Zon::makePtr<LdpFecSessionStatusColl>("s")->fecSessionStatusIs(id);
   expectAttrs(*status, {{"ldpFecSessionId", std::string(id.stringValue())},
                         {"peerLabel", "1048576"},
                         {"peerLabelSessionState", "peerLabelIdle"},
                         {"localLabel", "1048576"},
                         {"localLabelSessionState", "localLabelIdle"},
                         {"labelRequestMsgId", "0"}});
   auto config = Zon::makePtr<LdpFecSessionConfigColl>("c")->fecSessionConfigIs(id);
   expectAttrs(*config, {{"ldpFecSessionId", std::string(id.stringValue())}, {"labelRequest", "False"}, {"advertise", "True"}});
}

} // namespace
