// The session model as data: every default of a fresh session status, its
// statistics, its log and a message pipe, and what each entity tells its
// observers (create-or-get tells once, new replaces and tells once; a pipe tells
// its readers of every write; collections tell the key; nothing unchanged is
// told).
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

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

// One action on an entity and what its recorder hears.
struct Step {
   char const * what;
   std::function<void()> act;
   Records heard;
};

void expectHeard(Zon::AttrRecorder & r, std::vector<Step> const & steps) {
   r.take();
   for (Step const & s : steps) {
      s.act();
      EXPECT_EQ(r.take(), s.heard) << s.what;
   }
}

// The reader watches readableCount only and hears every write, a null one
// included; the holder's changes are told to whoever watches them.
TEST(LdpSessionModel, PipeNotifications) {
   auto pipe = Zon::makePtr<LdpMsgPipe>("pipe");
   auto msg = Zon::makePtr<LdpMsg>(peer.peerLdpId(), Vorin::Pkt::ofSize(16), 10);
   Zon::AttrRecorder reader(pipe.ptr(), LdpMsgPipe::Attr::readableCount);
   Zon::AttrRecorder all(pipe.ptr());
   struct Row {
      char const * what;
      std::function<void()> act;
      Records heard;       // by the observer of every attribute
      Records readerHeard; // by the observer of readableCount
   };
   Row const rows[] = {
      {"write", [&] { pipe->txMsgIs(msg); }, {"msgHolder", "readableCount"}, {"readableCount"}},
      {"the held message set again", [&] { pipe->msgHolderIs(msg); }, {}, {}},
      {"take-out", [&] { EXPECT_EQ(pipe->rxMsg(), msg); }, {"msgHolder"}, {}},
      {"take-out from an empty pipe", [&] { EXPECT_FALSE(pipe->rxMsg()); }, {}, {}},
      {"write of null", [&] { pipe->txMsgIs(nullptr); }, {"readableCount"}, {"readableCount"}},
      {"Inc(0)", [&] { EXPECT_EQ(pipe->readableCountInc(0), 2u); }, {}, {}},
      {"the count set to its value", [&] { pipe->readableCountIs(2); }, {}, {}},
      {"the count set", [&] { pipe->readableCountIs(0); }, {"readableCount"}, {"readableCount"}},
      {"the holder set", [&] { pipe->msgHolderIs(msg); }, {"msgHolder"}, {}},
   };
   for (Row const & row : rows) {
      row.act();
      EXPECT_EQ(all.take(), row.heard) << row.what;
      EXPECT_EQ(reader.take(), row.readerHeard) << row.what;
   }
}

// Every insertion and removal is told with the key; an unchanged insertion and
// the removal of an absent key are not.
TEST(LdpSessionModel, PipeCollectionNotifications) {
   auto a = Zon::makePtr<LdpMsgPipe>("a");
   auto b = Zon::makePtr<LdpMsgPipe>("b");
   LdpSessionId const other(LdpIdentifier(Vorin::IpAddr(10, 0, 0, 3), 1));
   std::string const otherText = "Value('Ldp::LdpSessionId', ** {'peerLdpId': 10.0.0.3:1})";

   auto sessions = Zon::makePtr<LdpSessionMsgPipeColl>("sessions");
   Zon::AttrRecorder onSessions(sessions.ptr());
   expectHeard(onSessions, {
      {"insert", [&] { sessions->msgPipeIs(peer, a); }, {"msgPipe[" + peerText + "]"}},
      {"the same pipe again", [&] { sessions->msgPipeIs(peer, a); }, {}},
      {"replace", [&] { sessions->msgPipeIs(peer, b); }, {"msgPipe[" + peerText + "]"}},
      {"create", [&] { sessions->newMsgPipe(other, a); }, {"msgPipe[" + otherText + "]"}},
      {"delete", [&] { sessions->msgPipeDel(other); }, {"msgPipe[" + otherText + "]"}},
      {"delete an absent key", [&] { sessions->msgPipeDel(other); }, {}},
      {"delete all", [&] { sessions->msgPipeDelAll(); }, {"msgPipe[" + peerText + "]"}},
      {"delete all of none", [&] { sessions->msgPipeDelAll(); }, {}},
   });

   auto links = Zon::makePtr<LdpLinkMsgPipeCollection>("links");
   Zon::AttrRecorder onLinks(links.ptr());
   expectHeard(onLinks, {
      {"insert", [&] { links->msgPipeIs(Vorin::IntfId("eth1"), a); }, {"msgPipe[eth1]"}},
      {"delete", [&] { links->msgPipeDel(Vorin::IntfId("eth1")); }, {"msgPipe[eth1]"}},
   });

   // The two attributes of the pseudowire collection are told apart.
   auto pw = Zon::makePtr<PwFecSessionMsgPipeColl>("pw");
   PwFecSessionId const id(peer.peerLdpId(), Pseudowire::PseudowireType::ethernet, Pseudowire::PseudowireId(100));
   std::string const idText = "[" + std::string(id.stringValue()) + "]";
   Zon::AttrRecorder onPw(pw.ptr());
   expectHeard(onPw, {
      {"local", [&] { pw->localFecSessionMsgPipeIs(id, a); }, {"localFecSessionMsgPipe" + idText}},
      {"remote", [&] { pw->newRemoteFecSessionMsgPipe(id, a); }, {"remoteFecSessionMsgPipe" + idText}},
      {"local deleted", [&] { pw->localFecSessionMsgPipeDelAll(); }, {"localFecSessionMsgPipe" + idText}},
      {"remote deleted", [&] { pw->remoteFecSessionMsgPipeDel(id); }, {"remoteFecSessionMsgPipe" + idText}},
   });
}

// Counters tell only a change, keyed ones with the key; Inc(0) on an absent key
// creates it at 0 and tells nobody.
TEST(LdpSessionModel, StatisticsNotifications) {
   auto s = Zon::makePtr<LdpSessionStatistics>(peer);
   Zon::AttrRecorder r(s.ptr());
   Mpls::FwdEqvClass const fec(Vorin::IpGenPrefix::fromString("10.1.0.0/16"));
   LdpMsgIdFecMappingInfo const info(fec, LdpMsgType::LdpLabelMapping, true);
   expectHeard(r, {
      {"Inc(0) on an absent key", [&] { EXPECT_EQ(s->ldpMsgRxCountInc(LdpMsgType::LdpHello, 0), 0u); }, {}},
      {"Inc(1)", [&] { s->ldpMsgRxCountInc(LdpMsgType::LdpHello, 1); }, {"ldpMsgRxCount[LdpHello]"}},
      {"Inc(0) on a present key", [&] { s->ldpMsgRxCountInc(LdpMsgType::LdpHello, 0); }, {}},
      {"set on an absent key inserts it", [&] { s->ldpMsgTxCountIs(LdpMsgType::LdpInit, 0); }, {"ldpMsgTxCount[LdpInit]"}},
      {"set to its value again", [&] { s->ldpMsgTxCountIs(LdpMsgType::LdpInit, 0); }, {}},
      {"by status code", [&] { s->ldpMsgNotificationRxCountInc(LdpStatusCode::shutdown, 2); },
       {"ldpMsgNotificationRxCount[shutdown]"}},
      {"keyed delete", [&] { s->ldpMsgRxCountDel(LdpMsgType::LdpHello); }, {"ldpMsgRxCount[LdpHello]"}},
      {"scalar Inc(0)", [&] { s->ldpPduRxCountInc(0); }, {}},
      {"scalar Inc", [&] { s->ldpPduRxCountInc(3); }, {"ldpPduRxCount"}},
      {"message id", [&] { s->newLdpMsgIdFecMappingInfo(7, info); }, {"ldpMsgIdFecMappingInfo[7]"}},
      {"the same info again", [&] { s->ldpMsgIdFecMappingInfoIs(7, info); }, {}},
      {"pseudowire message id", [&] { s->pwRemoteMsgIdInfoIs(9, PwMsgIdFecMappingInfo()); }, {"pwRemoteMsgIdInfo[9]"}},
   });
}

// The status tells of its log when checkInit makes it, not again.
TEST(LdpSessionModel, StatusLogNotifications) {
   auto status = Zon::makePtr<LdpSessionStatus>(peer);
   Zon::AttrRecorder r(status.ptr());
   expectHeard(r, {
      {"checkInit", [&] { status->checkInit(); }, {"sessionStateLogEntryColl"}},
      {"checkInit again", [&] { status->checkInit(); }, {}},
      {"the same name", [&] { status->sessionStateLogEntryCollIs(""); }, {}},
      {"another name", [&] { status->sessionStateLogEntryCollIs("x"); }, {"sessionStateLogEntryColl"}},
      {"Inc(0) of a 32-bit counter", [&] { status->peerLabelRescAvailableCountInc(0); }, {}},
      {"Inc of a 32-bit counter", [&] { status->peerLabelRescAvailableCountInc(1); }, {"peerLabelRescAvailableCount"}},
   });
}

} // namespace
