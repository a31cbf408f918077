// Per-session statistics: 64-bit counters at the edge of their width, keyed
// counters that create a missing key, the message-id maps and their values'
// text forms.
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "ldp/common/LdpSessionStatistics.h"

namespace {

using namespace Ldp;

constexpr std::uint64_t max64 = std::numeric_limits<std::uint64_t>::max();

LdpSessionId peer() { return LdpSessionId(LdpIdentifier(Vorin::IpAddr(10, 0, 0, 9), 0)); }

TEST(LdpSessionStatistics, ScalarCountersWrapAt64Bits) {
   auto s = Zon::makePtr<LdpSessionStatistics>(peer());
   using Inc = std::uint64_t (LdpSessionStatistics::*)(std::uint64_t);
   using Is = void (LdpSessionStatistics::*)(std::uint64_t);
   struct Row {
      char const * name;
      Is set;
      Inc inc;
   };
   Row const rows[] = {
      {"ldpPduRxCount", &LdpSessionStatistics::ldpPduRxCountIs, &LdpSessionStatistics::ldpPduRxCountInc},
      {"ldpPduTxCount", &LdpSessionStatistics::ldpPduTxCountIs, &LdpSessionStatistics::ldpPduTxCountInc},
      {"ldpPduRxErrorCount", &LdpSessionStatistics::ldpPduRxErrorCountIs,
       &LdpSessionStatistics::ldpPduRxErrorCountInc},
   };
   for (Row const & r : rows) {
      LdpSessionStatistics & st = *s;
      EXPECT_EQ((st.*r.inc)(1), 1u) << r.name;
      (st.*r.set)(0xffffffffu);
      EXPECT_EQ((st.*r.inc)(1), std::uint64_t(1) << 32) << r.name << " does not wrap at 2^32";
      (st.*r.set)(max64);
      EXPECT_EQ((st.*r.inc)(1), 0u) << r.name << " wraps at 2^64";
   }
}

TEST(LdpSessionStatistics, KeyedCountersCreateAMissingKeyAtZero) {
   auto s = Zon::makePtr<LdpSessionStatistics>(peer());
   EXPECT_EQ(s->ldpMsgRxCountInc(LdpMsgType::LdpHello, 0), 0u);
   EXPECT_EQ(s->ldpMsgRxCounts(), 1u) << "Inc(0) on an absent key creates it";
   EXPECT_EQ(s->ldpMsgRxCountInc(LdpMsgType::LdpHello, 2), 2u);
   EXPECT_EQ(s->ldpMsgRxCountInc(LdpMsgType::LdpInit, 1), 1u);
   EXPECT_EQ(s->ldpMsgRxCount(LdpMsgType::LdpHello), 2u);
   EXPECT_EQ(s->ldpMsgRxCount(LdpMsgType::LdpAddress), 0u) << "an absent key reads 0";
   EXPECT_EQ(s->ldpMsgTxCounts(), 0u) << "the transmit counters are separate";

   s->ldpMsgNotificationRxCountIs(LdpStatusCode::shutdown, max64);
   EXPECT_EQ(s->ldpMsgNotificationRxCountInc(LdpStatusCode::shutdown, 1), 0u) << "wraps at 2^64";
   s->ldpMsgNotificationTxCountIs(LdpStatusCode::holdTimerExpired, 0xffffffffu);
   EXPECT_EQ(s->ldpMsgNotificationTxCountInc(LdpStatusCode::holdTimerExpired, 1), std::uint64_t(1) << 32);

   s->ldpMsgRxCountDel(LdpMsgType::LdpHello);
   EXPECT_EQ(s->ldpMsgRxCounts(), 1u);
   s->ldpMsgRxCountDelAll();
   EXPECT_EQ(s->ldpMsgRxCounts(), 0u);
}

TEST(LdpSessionStatistics, MessageIdMaps) {
   auto s = Zon::makePtr<LdpSessionStatistics>(peer());
   Mpls::FwdEqvClass const fec(Vorin::IpGenPrefix::fromString("10.1.0.0/16"));
   LdpMsgIdFecMappingInfo const info(fec, LdpMsgType::LdpLabelMapping, true);
   s->newLdpMsgIdFecMappingInfo(7, info);
   EXPECT_EQ(s->ldpMsgIdFecMappingInfo(7), info);
   EXPECT_EQ(s->ldpMsgIdFecMappingInfo(8), LdpMsgIdFecMappingInfo()) << "absent: the default";
   LdpMsgIdFecMappingInfo withdrawn = info;
   withdrawn.msgTypeIs(LdpMsgType::LdpLabelWithdraw);
   s->ldpMsgIdFecMappingInfoIs(7, withdrawn);
   EXPECT_EQ(s->ldpMsgIdFecMappingInfo(7).msgType(), LdpMsgType::LdpLabelWithdraw);

   PwFwdEqvClassInfo pw;
   pw.pwIdIs(Pseudowire::PseudowireId(100));
   s->pwLocalMsgIdInfoIs(1, PwMsgIdFecMappingInfo(pw, LdpMsgType::LdpLabelMapping, true));
   s->pwRemoteMsgIdInfoIs(2, PwMsgIdFecMappingInfo(pw, LdpMsgType::LdpLabelRequest, false));
   EXPECT_EQ(s->pwLocalMsgIdInfos(), 1u);
   EXPECT_EQ(s->pwRemoteMsgIdInfo(2).msgType(), LdpMsgType::LdpLabelRequest);
   EXPECT_EQ(s->pwLocalMsgIdInfo(2), PwMsgIdFecMappingInfo()) << "the two maps are separate";
   s->pwLocalMsgIdInfoDelAll();
   s->pwRemoteMsgIdInfoDel(2);
   EXPECT_EQ(s->pwLocalMsgIdInfos() + s->pwRemoteMsgIdInfos(), 0u);
}

TEST(LdpSessionStatistics, MappingInfoTextForms) {
   Mpls::FwdEqvClass const fec(Vorin::IpGenPrefix::fromString("10.1.0.0/16"));
   EXPECT_EQ(LdpMsgIdFecMappingInfo(fec, LdpMsgType::LdpLabelMapping, true).stringValue(),
             "Value('Ldp::LdpMsgIdFecMappingInfo', ** {'fwdEqvClass': 10.1.0.0/16, 'msgType': LdpLabelMapping, "
             "'valid': True})");
   PwFwdEqvClassInfo pw;
   pw.pwTypeIs(Pseudowire::PseudowireType::ethernet);
   pw.pwIdIs(Pseudowire::PseudowireId(100));
   EXPECT_EQ(PwMsgIdFecMappingInfo(pw, LdpMsgType::LdpLabelRequest, false).stringValue(),
             "Value('Ldp::PwMsgIdFecMappingInfo', ** {'fwdEqvClass': " + std::string(pw.stringValue()) +
                 ", 'msgType': LdpLabelRequest, 'valid': False})");
}

TEST(LdpSessionStatisticsColl, CreateOrGetAndDelete) {
   auto coll = Zon::makePtr<LdpSessionStatisticsColl>("statisticsColl");
   Zon::Ptr<LdpSessionStatistics> s = coll->sessionStatisticsIs(peer());
   s->ldpPduRxCountInc(5);
   EXPECT_EQ(coll->sessionStatisticsIs(peer()), s);
   EXPECT_EQ(s->parent(), coll.ptr());
   EXPECT_EQ(s->ldpSessionId(), peer());
   coll->sessionStatisticsDel(peer());
   EXPECT_FALSE(coll->sessionStatistics(peer()));
   EXPECT_EQ(s->parent(), nullptr);
}

} // namespace
