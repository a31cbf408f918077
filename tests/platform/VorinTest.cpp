#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

#include "mpls/FwdEqvClass.h"
#include "pseudowire/PseudowireTypes.h"
#include "support/Hex.h"
#include "vorin/IpAddr.h"
#include "vorin/MplsLabel.h"
#include "vorin/NetInt.h"
#include "vorin/Pkt.h"

using namespace Vorin;

namespace {

TEST(VorinNetInt, NetworkOrderBytes) {
   NetU16 a = NetU16::fromHost(0x1234);
   NetU32 b = NetU32::fromHost(0x89abcdef);
   EXPECT_EQ(TestSupport::toHex(a), "1234");
   EXPECT_EQ(TestSupport::toHex(b), "89abcdef");
   EXPECT_EQ(a.value(), 0x1234);
   EXPECT_EQ(b.value(), 0x89abcdefu);
}

TEST(VorinPkt, HoldsACopyOfItsBytes) {
   std::vector<std::uint8_t> bytes = {1, 2, 3};
   auto p = Pkt::fromBytes(bytes);
   bytes[0] = 9;
   EXPECT_EQ(p->frontBytes(), 3u);
   EXPECT_EQ(p->front()[0], 1);
   auto empty = Pkt::fromBytes({});
   EXPECT_EQ(empty->frontBytes(), 0u);
   EXPECT_NE(empty->front(), nullptr);
   EXPECT_EQ(Pkt::ofSize(4)->bytes()[3], 0);
   // An empty packet still has a readable (zero) front byte.
   EXPECT_EQ(empty->front()[0], 0);
   EXPECT_EQ(Pkt::ofSize(0)->front()[0], 0);
}

TEST(VorinIpGenPrefix, ClearsExactlyTheHostBitsAtEveryLength) {
   // Every length of both families over an all-ones address: the first
   // `length` bits stay set, every other bit is cleared.
   std::uint8_t ones[16];
   std::fill(std::begin(ones), std::end(ones), 0xFF);
   for (AddressFamily af : {ipv4_, ipv6_}) {
      IpGenAddr const addr(af, ones);
      for (unsigned length = 0; length <= addr.bitLength(); ++length) {
         IpGenPrefix const p(addr, length);
         ASSERT_EQ(p.length(), length);
         for (unsigned bit = 0; bit < 128; ++bit) {
            bool const set = (p.address().bytes()[bit / 8] >> (7 - bit % 8)) & 1;
            ASSERT_EQ(set, bit < length) << "family " << int(af) << ", length " << length << ", bit " << bit;
         }
      }
   }
}

TEST(VorinIpAddr, TextFormsRoundTrip) {
   struct Case {
      char const * in;
      char const * out;
   };
   Case const cases[] = {
       {"10.0.0.1", "10.0.0.1"},
       {"255.255.255.255", "255.255.255.255"},
       {"2001:0db8:0:0:0:0:0:1", "2001:db8::1"},
       {"::", "::"},
       {"fe80::1:0:0:2", "fe80::1:0:0:2"},
   };
   for (auto const & c : cases) {
      EXPECT_EQ(IpGenAddr::fromString(c.in).stringValue(), c.out) << c.in;
   }
   for (char const * bad : {"10.0.0", "10.0.0.256", "1::2::3", "", "x"}) {
      EXPECT_THROW(IpGenAddr::fromString(bad), Zon::ParseException) << bad;
   }
   EXPECT_EQ(IpAddr(0x0a000001).stringValue(), "10.0.0.1");
   EXPECT_EQ(TestSupport::toHex(IpAddr(10, 1, 2, 3)), "0a010203");
   EXPECT_LT(IpAddr(9, 255, 255, 255), IpAddr(10, 0, 0, 0));
   EXPECT_TRUE(IpGenAddr().isV4());
   EXPECT_TRUE(IpGenAddr().isUnspecified());
}

TEST(VorinIpGenPrefix, MasksHostBitsAndOrders) {
   auto p = IpGenPrefix(IpGenAddr(IpAddr(10, 1, 255, 255)), 17);
   EXPECT_EQ(p.stringValue(), "10.1.128.0/17");
   EXPECT_EQ(p, IpGenPrefix::fromString("10.1.128.0/17"));
   EXPECT_EQ(IpGenPrefix(IpGenAddr(IpAddr(1, 2, 3, 4)), 0).stringValue(), "0.0.0.0/0");
   EXPECT_EQ(IpGenPrefix::fromString("2001:db8:ffff::/33").stringValue(), "2001:db8:8000::/33");
   EXPECT_EQ(IpGenPrefix(IpGenAddr(IpAddr(1, 2, 3, 4)), 40).length(), 32u); // capped
   EXPECT_THROW(IpGenPrefix::fromString("10.0.0.0/33"), Zon::ParseException);
   EXPECT_THROW(IpGenPrefix::fromString("10.0.0.0"), Zon::ParseException);
   EXPECT_LT(IpGenPrefix::fromString("10.0.0.0/8"), IpGenPrefix::fromString("10.0.0.0/9"));
   EXPECT_EQ(std::hash<IpGenPrefix>()(IpGenPrefix::fromString("10.0.0.7/8")),
             std::hash<IpGenPrefix>()(IpGenPrefix::fromString("10.0.0.0/8")));
}

TEST(VorinMplsLabel, RangeUpToLuWithdraw) {
   EXPECT_EQ(MplsLabel().value(), MplsLabel::none);
   EXPECT_EQ(MplsLabel(1048577).value(), 1048577u);
   try {
      MplsLabel(1048578);
      FAIL();
   } catch (Zon::RangeException const & e) {
      EXPECT_STREQ(e.what(), "MplsLabel::value < MplsLabel::min or > MplsLabel::luWithdraw not allowed");
   }
}

TEST(PseudowireTypes, VlanRangeAndTypeNames) {
   EXPECT_EQ(Pseudowire::VlanIdOrNone(4094).value(), 4094);
   try {
      Pseudowire::VlanIdOrNone v(4095);
      FAIL();
   } catch (Zon::RangeException const & e) {
      EXPECT_STREQ(e.what(), "VlanIdOrNone::value > 4094 not allowed");
   }
   EXPECT_EQ(Pseudowire::stringValue(Pseudowire::PseudowireType::ethernet), "ethernet");
   EXPECT_EQ(Pseudowire::stringValue(static_cast<Pseudowire::PseudowireType>(0x19)), "25");
}

TEST(MplsFwdEqvClass, KindsOrderAndText) {
   Mpls::FwdEqvClass prefix(IpGenPrefix::fromString("10.0.0.0/8"));
   Mpls::FwdEqvClass pw(Pseudowire::PseudowireType::ethernet, Pseudowire::PseudowireId(100));
   EXPECT_EQ(prefix.stringValue(), "10.0.0.0/8");
   EXPECT_EQ(pw.stringValue(), "pw(ethernet, 100)");
   EXPECT_EQ(Mpls::FwdEqvClass().stringValue(), "none");
   EXPECT_LT(prefix, pw);
   EXPECT_NE(std::hash<Mpls::FwdEqvClass>()(prefix), std::hash<Mpls::FwdEqvClass>()(pw));
}

} // namespace
