// Capability TLVs: the length rule per type, what is recorded, and the keyed
// collection that holds the records.
#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "ldp/parser/LdpMsgParserGet.h"
#include "ldp/parser/LdpSessionMsgParser.h"
#include "support/Hex.h"

using namespace Ldp;
using TestSupport::hexBytes;
using TestSupport::hexPkt;
using Code = LdpStatusCode;

namespace {

// A Capability message (id 1) around `tlvs`, its length counted from the hex.
std::string capabilityMessage(std::string const & tlvs) {
   char length[8];
   std::snprintf(length, sizeof length, "%04zx", hexBytes(tlvs).size() + 4);
   return std::string("0202 ") + length + " 00000001 | " + tlvs;
}

// A capability TLV with the U bit, state octet 0x80 and length - 1 data bytes.
std::string capabilityTlv(unsigned type, unsigned length) {
   char head[16];
   std::snprintf(head, sizeof head, "%04x %04x ", 0x8000 | type, length);
   std::string s = head;
   for (unsigned i = 0; i < length; ++i) {
      s += i == 0 ? "80" : "0a";
   }
   return s + " |";
}

TEST(LdpCapabilityParser, LengthRulePerType) {
   struct Rule {
      LdpTlvType type;
      bool stateOctetOnly;
   };
   Rule const rules[] = {
       {LdpTlvType::dynamicCapabilityTlv, true},
       {LdpTlvType::upstreamLabelAssignmentCapabilityTlv, true},
       {LdpTlvType::p2mpCapabilityTlv, true},
       {LdpTlvType::mp2mpCapabilityTlv, true},
       {LdpTlvType::mbbCapabilityTlv, true},
       {LdpTlvType::typedWildcardFecCapabilityTlv, true},
       {LdpTlvType::multiTopologyCapabilityTlv, false},
       {LdpTlvType::stateAdvertisementControlCapabilityTlv, false},
       {LdpTlvType::mrtCapabilityTlv, true},
       {LdpTlvType::targetedApplicationCapabilityTlv, false},
   };
   for (auto const & r : rules) {
      for (unsigned length : {0u, 1u, 2u, 5u}) {
         bool const good = r.stateOctetOnly ? length == 1 : length >= 1;
         auto const type = static_cast<unsigned>(r.type);
         auto pkt = hexPkt(capabilityMessage(capabilityTlv(type, length)));
         auto p = ldpCapabilityMsgParserFactory(pkt, 0);
         std::string const name = stringValue(r.type) + " of length " + std::to_string(length);
         if (good) {
            EXPECT_EQ(p->statusCode(), Code::success) << name;
            EXPECT_EQ(p->reason(), "") << name;
            EXPECT_EQ(reinterpret_cast<std::uint8_t *>(p->capabilities(r.type)), pkt->front() + 8) << name;
            EXPECT_EQ(p->capabilitiesNum(), 1u) << name;
         } else {
            EXPECT_EQ(p->statusCode(), Code::malformedTlv) << name;
            EXPECT_EQ(p->reason(), stringValue(r.type) + " TLV is not the right size") << name;
            EXPECT_EQ(p->capabilitiesNum(), 0u) << name;
         }
      }
   }
}

TEST(LdpCapabilityParser, LaterTlvOfATypeReplacesTheEarlier) {
   auto pkt = hexPkt(capabilityMessage("850a 0001 80 | 0401 0004 0a000001 | 850a 0001 00"));
   auto p = ldpCapabilityMsgParserFactory(pkt, 0);
   ASSERT_TRUE(p->validMsg()) << p->reason();
   ASSERT_EQ(p->capabilitiesNum(), 1u);
   LdpCapabilityParameterTlv const * mbb = p->capabilities(LdpTlvType::mbbCapabilityTlv);
   EXPECT_EQ(reinterpret_cast<std::uint8_t const *>(mbb), pkt->front() + 21);
   EXPECT_FALSE(mbb->state());
}

TEST(LdpCapabilityParser, WalkStopsAtTheFirstFaultAndKeepsEarlierRecords) {
   auto p = ldpCapabilityMsgParserFactory(
       hexPkt(capabilityMessage("850f 0005 80 0a0a0a0a | 8506 0002 8000 | 8507 0001 80")), 0);
   EXPECT_EQ(p->reason(), "dynamicCapabilityTlv TLV is not the right size");
   ASSERT_EQ(p->capabilitiesNum(), 1u);
   EXPECT_NE(p->capabilities(LdpTlvType::targetedApplicationCapabilityTlv), nullptr);
   EXPECT_EQ(p->capabilities(LdpTlvType::upstreamLabelAssignmentCapabilityTlv), nullptr);
}

TEST(LdpCapabilityParser, TypesOutsideTheRangeArePassedOver) {
   // 0x0505 and 0x0510 (with U, so the header step skips them) would have the
   // wrong length for a capability.
   auto p = ldpCapabilityMsgParserFactory(hexPkt(capabilityMessage("8505 0002 8000 | 8510 0000 | 0500 0000")), 0);
   EXPECT_TRUE(p->validMsg()) << p->reason();
   EXPECT_EQ(p->capabilitiesNum(), 0u);
}

TEST(LdpCapabilityParser, LengthBeyondTheReceivedBytes) {
   // 0xFFFD + 4 wraps the group parser's item size to 1: the TLV is recorded by
   // the group parser but its value was never received.
   auto p = ldpCapabilityMsgParserFactory(hexPkt("0202 0005 00000001 | 850c fffd"), 0);
   EXPECT_EQ(p->statusCode(), Code::malformedTlv);
   EXPECT_EQ(p->reason(), "multiTopologyCapabilityTlv TLV is not the right size");
}

TEST(LdpCapabilityParser, AnEarlierFaultStands) {
   // An unknown TLV without the U bit fails the header step; a later call of
   // parseCapabilityTlvs() neither clears that nor records anything.
   auto p = ldpCapabilityMsgParserFactory(hexPkt(capabilityMessage("3e01 0000 | 8506 0001 80")), 0);
   EXPECT_EQ(p->statusCode(), Code::unknownTlv);
   p->parseCapabilityTlvs();
   EXPECT_EQ(p->statusCode(), Code::unknownTlv);
   EXPECT_EQ(p->reason(), "Unknown TLV Type: 15873");
   EXPECT_EQ(p->capabilitiesNum(), 0u);
}

TEST(LdpCapabilityParser, CollectionOperations) {
   auto pkt = hexPkt(capabilityMessage("8506 0001 80 | 850b 0001 00"));
   auto p = ldpCapabilityMsgParserFactory(pkt, 0);
   auto * dynamic = p->capabilities(LdpTlvType::dynamicCapabilityTlv);
   auto * wildcard = p->capabilities(LdpTlvType::typedWildcardFecCapabilityTlv);
   ASSERT_NE(dynamic, nullptr);
   ASSERT_NE(wildcard, nullptr);
   // new... keeps an existing entry; ...Is replaces it.
   EXPECT_EQ(p->newCapabilities(LdpTlvType::dynamicCapabilityTlv, wildcard), dynamic);
   EXPECT_EQ(p->capabilities(LdpTlvType::dynamicCapabilityTlv), dynamic);
   p->capabilitiesIs(LdpTlvType::dynamicCapabilityTlv, wildcard);
   EXPECT_EQ(p->capabilities(LdpTlvType::dynamicCapabilityTlv), wildcard);
   EXPECT_EQ(p->newCapabilities(LdpTlvType::mrtCapabilityTlv, dynamic), dynamic);
   ASSERT_EQ(p->capabilitiesNum(), 3u);
   auto const all = p->capabilities();
   EXPECT_EQ(all[0].type, LdpTlvType::dynamicCapabilityTlv);
   EXPECT_EQ(all[1].type, LdpTlvType::typedWildcardFecCapabilityTlv);
   EXPECT_EQ(all[2].type, LdpTlvType::mrtCapabilityTlv);
   p->capabilitiesDel(LdpTlvType::typedWildcardFecCapabilityTlv);
   p->capabilitiesDel(LdpTlvType::p2mpCapabilityTlv);
   EXPECT_EQ(p->capabilitiesNum(), 2u);
   EXPECT_EQ(p->capabilities(LdpTlvType::typedWildcardFecCapabilityTlv), nullptr);
   p->capabilitiesDelAll();
   EXPECT_EQ(p->capabilitiesNum(), 0u);
   EXPECT_EQ(p->capabilities(LdpTlvType::mrtCapabilityTlv), nullptr);
}

TEST(LdpCapabilityMap, MatchesAnOrderedMapUnderRandomOperations) {
   std::mt19937 rng(5561);
   std::uint8_t bytes[64] = {};
   auto view = [&](unsigned i) { return reinterpret_cast<LdpCapabilityParameterTlv *>(bytes + i); };
   LdpCapabilityMap map;
   std::map<LdpTlvType, LdpCapabilityParameterTlv *> reference;
   for (int step = 0; step < 4000; ++step) {
      // Keys from a range wider than the inline storage, so it spills and shrinks.
      auto const key = static_cast<LdpTlvType>(0x0500 + rng() % 12);
      auto * const tlv = view(rng() % 64);
      switch (rng() % 10) {
       case 0:
       case 1:
       case 2:
       case 3:
         map.set(key, tlv);
         reference[key] = tlv;
         break;
       case 4:
       case 5:
         EXPECT_EQ(map.insert(key, tlv), reference.try_emplace(key, tlv).first->second);
         break;
       case 6:
       case 7:
       case 8:
         map.erase(key);
         reference.erase(key);
         break;
       default:
         if (rng() % 8 == 0) {
            map.clear();
            reference.clear();
         }
         break;
      }
      ASSERT_EQ(map.size(), reference.size()) << "step " << step;
      auto const entries = map.entries();
      std::size_t i = 0;
      for (auto const & [k, v] : reference) {
         ASSERT_EQ(entries[i].type, k) << "step " << step;
         ASSERT_EQ(entries[i].tlv, v) << "step " << step;
         ++i;
      }
      EXPECT_EQ(map.find(key), reference.count(key) ? reference[key] : nullptr);
   }
}

} // namespace
