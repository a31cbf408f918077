// The session status: its state log's creation and replacement, the log going
// with its status, and the counters at the edge of their width.
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "ldp/config/LdpConfig.h"
#include "ldp/status/LdpSession.h"

namespace {

using namespace Ldp;

LdpSessionId peer(std::uint8_t last) { return LdpSessionId(LdpIdentifier(Vorin::IpAddr(10, 0, 0, last), 0)); }

LdpSessionStateLogEntry entry(SessionState s, char const * reason) {
   return LdpSessionStateLogEntry(1.0, s, LdpStatusCode::success, reason);
}

TEST(LdpSessionStatus, CheckInitCreatesTheEmptyLogOnce) {
   auto coll = Zon::makePtr<LdpSessionStatusColl>("statusColl");
   Zon::Ptr<LdpSessionStatus> s = coll->sessionStatusIs(peer(1));
   EXPECT_FALSE(s->sessionStateLogEntryColl()) << "no log until checkInit";
   s->checkInit();
   Zon::Ptr<LdpSessionStateLogEntryColl> log = s->sessionStateLogEntryColl();
   ASSERT_TRUE(log);
   EXPECT_EQ(log->name(), "");
   EXPECT_EQ(log->parent(), s.ptr());
   EXPECT_EQ(log->sessionStateLogEntrys(), 0u);
   log->addSessionStateLogEntry(entry(SessionState::stateInitialized, "init"));
   s->checkInit();
   EXPECT_EQ(s->sessionStateLogEntryColl(), log) << "a second checkInit keeps the first log";
   EXPECT_EQ(log->sessionStateLogEntrys(), 1u);
}

TEST(LdpSessionStatus, LogCollIsKeepsTheSameNameAndReplacesAnother) {
   auto s = Zon::makePtr<LdpSessionStatus>(peer(2));
   s->checkInit();
   Zon::Ptr<LdpSessionStateLogEntryColl> first = s->sessionStateLogEntryColl();
   first->addSessionStateLogEntry(entry(SessionState::stateOpenSent, "open"));
   EXPECT_EQ(s->sessionStateLogEntryCollIs(""), first);
   EXPECT_EQ(first->sessionStateLogEntrys(), 1u);

   Zon::Ptr<LdpSessionStateLogEntryColl> second = s->sessionStateLogEntryCollIs("history");
   EXPECT_NE(second, first);
   EXPECT_EQ(second->name(), "history");
   EXPECT_EQ(second->sessionStateLogEntrys(), 0u) << "the new log starts empty";
   EXPECT_EQ(second->parent(), s.ptr());
   EXPECT_EQ(first->parent(), nullptr) << "the old log is unlinked";

   s->sessionStateLogEntryCollDel();
   EXPECT_FALSE(s->sessionStateLogEntryColl());
   EXPECT_EQ(second->parent(), nullptr);
}

TEST(LdpSessionStatus, DeletingTheStatusReleasesItsLog) {
   auto coll = Zon::makePtr<LdpSessionStatusColl>("statusColl");
   coll->sessionStatusIs(peer(3))->checkInit();
   Zon::Ptr<LdpSessionStateLogEntryColl> log = coll->sessionStatus(peer(3))->sessionStateLogEntryColl();
   EXPECT_EQ(log->references(), 2u);
   coll->sessionStatusDel(peer(3));
   EXPECT_FALSE(coll->sessionStatus(peer(3)));
   EXPECT_EQ(log->references(), 1u) << "only this test holds the log now";
   EXPECT_EQ(log->parent(), nullptr);
}

TEST(LdpSessionStatus, SessionStatusIsCreatesOrGets) {
   auto coll = Zon::makePtr<LdpSessionStatusColl>("statusColl");
   Zon::Ptr<LdpSessionStatus> s = coll->sessionStatusIs(peer(4));
   s->sessionStateIs(SessionState::stateOperational);
   EXPECT_EQ(coll->sessionStatusIs(peer(4)), s);
   EXPECT_EQ(s->sessionState(), SessionState::stateOperational);
   EXPECT_EQ(s->ldpSessionId(), peer(4));
   EXPECT_EQ(s->parent(), coll.ptr());
   EXPECT_EQ(coll->sessionStatuss(), 1u);
   coll->sessionStatusIs(peer(5));
   coll->sessionStatusDelAll();
   EXPECT_EQ(coll->sessionStatuss(), 0u);
   EXPECT_EQ(s->parent(), nullptr);
}

TEST(LdpSessionStatus, CountersWrapAtTheirOwnWidth) {
   auto s = Zon::makePtr<LdpSessionStatus>(peer(6));
   // 32 bits: wraps at 2^32.
   s->peerLabelRescAvailableCountIs(std::numeric_limits<std::uint32_t>::max());
   EXPECT_EQ(s->peerLabelRescAvailableCountInc(1), 0u);
   EXPECT_EQ(s->peerLabelRescAvailableCountInc(3), 3u);
   // 64 bits: goes past 2^32 and wraps only at 2^64.
   s->fatalRetryCountIs(std::numeric_limits<std::uint32_t>::max());
   EXPECT_EQ(s->fatalRetryCountInc(1), std::uint64_t(1) << 32);
   s->fatalRetryCountIs(std::numeric_limits<std::uint64_t>::max() - 1);
   EXPECT_EQ(s->fatalRetryCountInc(1), std::numeric_limits<std::uint64_t>::max());
   EXPECT_EQ(s->fatalRetryCountInc(2), 1u);
}

TEST(LdpSessionStatus, EnumerationsKeepTheirNumbersAndNames) {
   EXPECT_EQ(static_cast<int>(SessionState::stateUnknown), 0);
   EXPECT_EQ(static_cast<int>(SessionState::stateOpenRecv), 4);
   EXPECT_EQ(static_cast<int>(SessionState::stateExpired), 6);
   EXPECT_EQ(static_cast<int>(SessionOpState::opStateRestart), 3);
   EXPECT_EQ(static_cast<int>(LdpSessionRole::rolePassive), 2);
   EXPECT_EQ(stringValue(SessionState::stateOperational), "stateOperational");
   EXPECT_EQ(stringValue(SessionOpState::opStateLabelExchange), "opStateLabelExchange");
   EXPECT_EQ(stringValue(LdpSessionRole::roleActive), "roleActive");
   EXPECT_EQ(SessionStateInstance("stateNonExist"), SessionState::stateNonExist);
}

} // namespace

namespace {

// The per-VRF Statistics of the configuration holds the statistics collection,
// created by name.
TEST(LdpSessionStatistics, HangUnderTheVrfStatistics) {
   auto stats = Zon::makePtr<Ldp::Statistics>("statistics");
   EXPECT_FALSE(stats->sessionStatisticsColl()) << "absent until created";
   Zon::Ptr<Ldp::LdpSessionStatisticsColl> coll = stats->sessionStatisticsCollIs("sessions");
   EXPECT_EQ(coll->name(), "sessions");
   EXPECT_EQ(coll->parent(), stats.ptr());
   EXPECT_EQ(stats->sessionStatisticsCollIs("sessions"), coll);
   coll->sessionStatisticsIs(peer(7))->ldpPduTxCountInc(1);
   EXPECT_EQ(stats->sessionStatisticsColl()->sessionStatistics(peer(7))->ldpPduTxCount(), 1u);
}

} // namespace
