// The shared keys: the session hash against values worked out by hand, text forms
// that read back, ordering and hashing that agree with equality, and the validity
// rule of a pseudowire FEC session id.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <unordered_set>
#include <vector>

#include "ldp/common/LdpTypes.h"
#include "zon/Exception.h"

namespace {

using namespace Ldp;

LdpIdentifier id(char const * lsr, std::uint16_t space) {
   return LdpIdentifier(Vorin::IpAddr::fromString(lsr), space);
}

TEST(LdpSessionId, HashIsTheSpreadLsrIdPlusTheLabelSpace) {
   struct Row {
      char const * lsr;
      std::uint16_t space;
      std::uint32_t hash;
   };
   // Worked out step by step in unsigned 32-bit arithmetic; LSR ids at and above
   // 2^31 included, and one whose final addition wraps past 2^32.
   Row const rows[] = {
      {"0.0.0.0", 0, 3399731875u},
      {"10.0.0.1", 0, 1364788857u},
      {"10.0.0.1", 1, 1364788858u},
      {"128.0.0.0", 0, 1699865937u},
      {"255.255.255.255", 65535, 3176594455u},
      {"192.168.1.1", 7, 182943862u},
      {"128.1.38.173", 65535, 35605u},
   };
   for (Row const & r : rows) {
      LdpSessionId const s(id(r.lsr, r.space));
      EXPECT_EQ(s.hash(), r.hash) << r.lsr << ":" << r.space;
      EXPECT_EQ(std::hash<LdpSessionId>()(s), r.hash);
   }
}

TEST(LdpTypes, DefaultsAreAllZero) {
   EXPECT_EQ(LdpSessionId().stringValue(), "Value('Ldp::LdpSessionId', ** {'peerLdpId': 0.0.0.0:0})");
   LdpAdjId const adj;
   EXPECT_EQ(adj.peerLdpId(), LdpIdentifier());
   EXPECT_TRUE(adj.intfId().isEmpty());
   EXPECT_TRUE(adj.targetIpAddr().isZero());
   EXPECT_EQ(adj.kind(), LdpAdjKind::none);
   EXPECT_EQ(static_cast<int>(LdpAdjKind::none), 0);
   EXPECT_FALSE(PwFecSessionId().isValid());
}

// Every key prints in the generic text form and reads back to an equal value.
template <typename T>
void expectRoundTrip(T const & v, std::string const & text) {
   EXPECT_EQ(std::string(v.stringValue()), text);
   EXPECT_EQ(T::fromString(text), v) << text;
}

TEST(LdpTypes, TextFormsReadBack) {
   expectRoundTrip(LdpSessionId(id("10.1.2.3", 5)), "Value('Ldp::LdpSessionId', ** {'peerLdpId': 10.1.2.3:5})");
   expectRoundTrip(LdpAdjId(id("10.0.0.2", 0), "eth1", Vorin::IpAddr(), LdpAdjKind::LdpLinkAdj),
                   "Value('Ldp::LdpAdjId', ** {'peerLdpId': 10.0.0.2:0, 'intfId': eth1, "
                   "'targetIpAddr': 0.0.0.0, 'kind': LdpLinkAdj})");
   expectRoundTrip(LdpAdjId(id("10.0.0.3", 0), "", Vorin::IpAddr(10, 0, 0, 3), LdpAdjKind::LdpTargetAdj),
                   "Value('Ldp::LdpAdjId', ** {'peerLdpId': 10.0.0.3:0, 'intfId': , "
                   "'targetIpAddr': 10.0.0.3, 'kind': LdpTargetAdj})");
   expectRoundTrip(LdpAdjId(), "Value('Ldp::LdpAdjId', ** {'peerLdpId': 0.0.0.0:0, 'intfId': , "
                               "'targetIpAddr': 0.0.0.0, 'kind': none})");
   expectRoundTrip(PwFecSessionId(id("10.0.0.4", 0), Pseudowire::PseudowireType::ethernet, Pseudowire::PseudowireId(100)),
                   "Value('Ldp::PwFecSessionId', ** {'peerLdpId': 10.0.0.4:0, 'pwType': ethernet, 'pwId': 100})");
   EXPECT_THROW(LdpSessionId::fromString("Value('Ldp::LdpAdjId', ** {'peerLdpId': 10.1.2.3:5})"),
                Zon::ParseException);
}

// Keys that differ in any one field are unequal, ordered one way, and (for these
// samples) hash apart; equal keys hash alike.
TEST(LdpTypes, OrderHashAndEqualityAgree) {
   std::vector<LdpAdjId> const adjs = {
      LdpAdjId(),
      LdpAdjId(id("10.0.0.1", 0), "", Vorin::IpAddr(), LdpAdjKind::none),
      LdpAdjId(id("10.0.0.1", 0), "", Vorin::IpAddr(10, 0, 0, 1), LdpAdjKind::LdpTargetAdj),
      LdpAdjId(id("10.0.0.1", 0), "eth0", Vorin::IpAddr(), LdpAdjKind::LdpLinkAdj),
      LdpAdjId(id("10.0.0.1", 0), "eth1", Vorin::IpAddr(), LdpAdjKind::LdpLinkAdj),
      LdpAdjId(id("10.0.0.1", 1), "", Vorin::IpAddr(10, 0, 0, 1), LdpAdjKind::LdpTargetAdj),
   };
   std::unordered_set<std::size_t> hashes;
   for (std::size_t i = 0; i < adjs.size(); ++i) {
      hashes.insert(adjs[i].hash());
      EXPECT_EQ(adjs[i].hash(), LdpAdjId::fromString(std::string(adjs[i].stringValue())).hash());
      for (std::size_t j = 0; j < adjs.size(); ++j) {
         EXPECT_EQ(adjs[i] == adjs[j], i == j);
         EXPECT_EQ(adjs[i] < adjs[j], i < j) << i << " " << j; // listed in ascending order
      }
   }
   EXPECT_EQ(hashes.size(), adjs.size());

   std::vector<PwFecSessionId> const pws = {
      PwFecSessionId(id("10.0.0.1", 0), Pseudowire::PseudowireType::ethernetTagged, Pseudowire::PseudowireId(1)),
      PwFecSessionId(id("10.0.0.1", 0), Pseudowire::PseudowireType::ethernetTagged, Pseudowire::PseudowireId(2)),
      PwFecSessionId(id("10.0.0.1", 0), Pseudowire::PseudowireType::ethernet, Pseudowire::PseudowireId(1)),
      PwFecSessionId(id("10.0.0.2", 0), Pseudowire::PseudowireType::ethernetTagged, Pseudowire::PseudowireId(1)),
   };
   std::unordered_set<std::size_t> pwHashes;
   for (auto const & p : pws) {
      pwHashes.insert(p.hash());
   }
   EXPECT_EQ(pwHashes.size(), pws.size());
   EXPECT_LT(pws[0], pws[1]);
   EXPECT_LT(pws[1], pws[2]);
   EXPECT_LT(pws[2], pws[3]);
}

TEST(PwFecSessionId, ValidNeedsAPeerAndANonZeroPwId) {
   struct Row {
      char const * lsr;
      std::uint16_t space;
      std::uint32_t pwId;
      bool valid;
   };
   Row const rows[] = {
      {"0.0.0.0", 0, 0, false},   {"0.0.0.0", 0, 5, false}, {"10.0.0.1", 0, 0, false},
      {"10.0.0.1", 0, 5, true},   {"0.0.0.0", 1, 5, true},  {"255.255.255.255", 0, 0xffffffffu, true},
   };
   for (Row const & r : rows) {
      PwFecSessionId const p(id(r.lsr, r.space), Pseudowire::PseudowireType::ethernet, Pseudowire::PseudowireId(r.pwId));
      EXPECT_EQ(p.isValid(), r.valid) << r.lsr << ":" << r.space << " pw " << r.pwId;
   }
}

} // namespace
