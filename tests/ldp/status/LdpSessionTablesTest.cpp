// The session model as data: every default of a fresh session status, its
// statistics, its log and a message pipe, and the notifications of the session
// collections (create-or-get tells once, new replaces and tells once).
#include <gtest/gtest.h>

#include "ldp/common/LdpCommon.h"
#include "ldp/common/LdpSessionStatistics.h"
#include "ldp/status/LdpSession.h"
#include "support/ModelTables.h"

namespace {

using namespace Ldp;
using LdpTest::expectAttrs;
using LdpTest::Records;

LdpSessionId const peer(LdpIdentifier(Vorin::IpAddr(10, 0, 0, 2), 0));
std::string const peerText = "Value('Ldp::LdpSessionId', ** {'peerLdpId': 10.0.0.2:0})";

TEST(LdpSessionModel, FreshRecords) {
   auto status = Zon::makePtr<LdpSessionStatusColl>("sessions")->sessionStatusIs(peer);
   // 30 s and 4096 bytes on both sides before any Initialization, and a third
   // of the hold time as the keepalive interval.
   expectAttrs(*status, {{"ldpSessionId", peerText},
                         {"localLdpIdentifier", "0.0.0.0:0"},
                         {"tcpClientConnEnabled", "False"},
                         {"tcpClientConnReqTime", "0.0"},
                         {"peerKeepAliveTime", "30"},
                         {"peerMaxPduLength", "4096"},
                         {"operKeepAliveTime", "30"},
                         {"operMaxPduLength", "4096"},
                         {"operKeepAliveTxInterval", "10"},
                         {"peerLabelAdvDspl", "unknownAdvDspl"},
                         {"operLabelAdvDspl", "unSolicited"},
                         {"peerCapability", "{}"},
                         {"sessionUptime", "0.0"},
                         {"sessionState", "stateUnknown"},
                         {"sessionOpState", "opStateUnknown"},
                         {"sessionStateLastChange", "0.0"},
                         {"code", "success"},
                         {"sessionStateReason", "''"},
                         {"sessionStateLogEntryColl", "None"},
                         {"sessionExpireTime", "0.0"},
                         {"addressMsgRcvd", "False"},
                         {"addressMsgTsmt", "False"},
                         {"localIpAddr", "0.0.0.0"},
                         {"localPort", "0"},
                         {"peerIpAddr", "0.0.0.0"},
                         {"peerPort", "0"},
                         {"peerIntfIp", "{}"},
                         {"peerLabelRescAvailableCount", "0"},
                         {"fatalRetryCount", "0"}});
   status->checkInit();
   expectAttrs(*status->sessionStateLogEntryColl(), {{"maxSize", "10"}, {"sessionStateLogEntry", "{}"}});
   expectAttrs(*Zon::makePtr<LdpSessionStatisticsColl>("stats")->sessionStatisticsIs(peer),
               {{"ldpSessionId", peerText},
                {"ldpMsgIdFecMappingInfo", "{}"},
                {"ldpPduRxCount", "0"},
                {"ldpPduTxCount", "0"},
                {"ldpPduRxErrorCount", "0"},
                {"pwLocalMsgIdInfo", "{}"},
                {"pwRemoteMsgIdInfo", "{}"},
                {"ldpMsgRxCount", "{}"},
                {"ldpMsgTxCount", "{}"},
                {"ldpMsgNotificationRxCount", "{}"},
                {"ldpMsgNotificationTxCount", "{}"}});
   expectAttrs(*Zon::makePtr<LdpMsgPipe>("pipe"), {{"readableCount", "0"}, {"msgHolder", "None"}});
   auto msg = Zon::makePtr<LdpMsg>(peer.peerLdpId(), Vorin::Pkt::ofSize(16), 10);
   EXPECT_EQ(msg->name(), ""); // a counted object without a name
   expectAttrs(*msg, {{"ldpIdentifier", "10.0.0.2:0"},
                      {"srcIpAddr", "0.0.0.0"},
                      {"pkt", "<object>"},
                      {"offset", "10"},
                      {"priority", "0"}});
}

TEST(LdpSessionModel, CreateOrGetTellsOnceAndNewReplaces) {
   auto sessions = Zon::makePtr<LdpSessionStatusColl>("sessions");
   auto stats = Zon::makePtr<LdpSessionStatisticsColl>("stats");
   Zon::AttrRecorder r(sessions.ptr());
   Zon::AttrRecorder onStats(stats.ptr());
   auto first = sessions->sessionStatusIs(peer);
   EXPECT_EQ(sessions->sessionStatusIs(peer), first);
   first->sessionStateIs(SessionState::stateOperational);
   auto fresh = sessions->newSessionStatus(peer); // without the lookup: a fresh status
   EXPECT_NE(fresh, first);
   EXPECT_EQ(fresh->sessionState(), SessionState::stateUnknown);
   EXPECT_EQ(first->parent(), nullptr);
   EXPECT_EQ(sessions->sessionStatus(peer), fresh);
   auto counters = stats->sessionStatisticsIs(peer);
   counters->ldpPduRxCountInc(5);
   EXPECT_EQ(stats->newSessionStatistics(peer)->ldpPduRxCount(), 0u);
   EXPECT_EQ(r.take(), (Records{"sessionStatus[" + peerText + "]", "sessionStatus[" + peerText + "]"}));
   EXPECT_EQ(onStats.take(), (Records{"sessionStatistics[" + peerText + "]", "sessionStatistics[" + peerText + "]"}));

   Zon::AttrRecorder onStatus(fresh.ptr());
   fresh->sessionStateIs(SessionState::stateUnknown); // unchanged
   EXPECT_EQ(fresh->fatalRetryCountInc(0), 0u);
   fresh->peerCapabilityIs(LdpTlvType::dynamicCapabilityTlv, true);
   fresh->peerIntfIpIs(Vorin::IpGenAddr::fromString("10.0.0.2"), true);
   EXPECT_EQ(onStatus.take(), (Records{"peerCapability[dynamicCapabilityTlv]", "peerIntfIp[10.0.0.2]"}));
}

} // namespace
