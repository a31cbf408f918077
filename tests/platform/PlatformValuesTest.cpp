// The platform values the model's configuration and status hold: text forms that
// read back, refused texts and ranges, the PW status bits, the default namespace.
#include <gtest/gtest.h>

#include <string>

#include "intf/IntfOperStatus.h"
#include "pseudowire/PseudowireTypes.h"
#include "vorin/IpAddrWithMask.h"
#include "vorin/NamespaceName.h"
#include "vorin/Port.h"
#include "zon/Exception.h"
#include "zon/ValueParse.h"

namespace {

template <typename T>
void expectText(T const & v, char const * text) {
   EXPECT_EQ(std::string(v.stringValue()), text);
   EXPECT_EQ(Zon::valueFromText<T>(text), v) << text;
}

TEST(PlatformValues, TextFormsReadBack) {
   expectText(Vorin::Port(646), "646");
   expectText(Vorin::Port(65535), "65535");
   expectText(Vorin::IpTtl(1), "1");
   expectText(Vorin::IpTtl(255), "255");
   expectText(Vorin::IpAddrWithMask(Vorin::IpAddr(10, 1, 2, 3), 24), "10.1.2.3/24");
   expectText(Vorin::IpAddrWithMask(), "0.0.0.0/0");
   expectText(Vorin::IpAddrWithMask(Vorin::IpAddr(255, 255, 255, 255), 32), "255.255.255.255/32");
   expectText(Vorin::NamespaceName::defaultNamespace(), "default");
   expectText(Pseudowire::PseudowireLdpStatusFlags(), "0x00000000");
   expectText(Pseudowire::PseudowireLdpStatusFlags(0x1f), "0x0000001f");
   expectText(Pseudowire::PseudowireLdpRequestKey(Vorin::IpGenAddr::fromString("10.0.0.2"), Pseudowire::PseudowireId(100)),
              "Value('Pseudowire::PseudowireLdpRequestKey', ** {'peer': 10.0.0.2, 'pwId': 100})");
   EXPECT_EQ(Zon::valueFromText<Interface::IntfOperStatus>("unknown"), Interface::IntfOperStatus::unknown);
   EXPECT_EQ(Zon::valueFromText<Pseudowire::PseudowireConnectorStatus>("connectorUp"),
             Pseudowire::PseudowireConnectorStatus::connectorUp);
}

TEST(PlatformValues, RefusedTextsAndRanges) {
   char const * const badMasks[] = {"10.1.2.3", "10.1.2.3/", "10.1.2.3/x", "10.1.2.3/24x", "10.1.2/24", "/24",
                                    "10.1.2.3/-1", "10.1.2.3/0024"};
   for (char const * t : badMasks) {
      EXPECT_THROW(Vorin::IpAddrWithMask::fromString(t), Zon::ParseException) << t;
   }
   try {
      Vorin::IpAddrWithMask::fromString("10.1.2.3/33");
      ADD_FAILURE() << "a length of 33 was taken";
   } catch (Zon::RangeException const & e) {
      EXPECT_STREQ(e.what(), "IpAddrWithMask::length > 32 not allowed");
   }
   EXPECT_THROW(Vorin::IpAddrWithMask(Vorin::IpAddr(), 255), Zon::RangeException);
   EXPECT_THROW(Zon::valueFromText<Vorin::Port>("65536"), Zon::ParseException);
   EXPECT_THROW(Zon::valueFromText<Vorin::IpTtl>("256"), Zon::ParseException);
   for (char const * t : {"", "0x", "0xg", "0x100000000", "1 "}) {
      EXPECT_THROW(Pseudowire::PseudowireLdpStatusFlags::fromString(t), Zon::ParseException) << t;
   }
}

TEST(PlatformValues, AddressWithMaskKeepsHostBitsAndKnowsItsSubnet) {
   auto const a = Vorin::IpAddrWithMask::fromString("10.1.2.3/24");
   auto const b = Vorin::IpAddrWithMask::fromString("10.1.2.0/24");
   EXPECT_NE(a, b);
   EXPECT_LT(b, a);
   EXPECT_LT(a, Vorin::IpAddrWithMask::fromString("10.1.2.3/25"));
   EXPECT_EQ(a.subnet(), Vorin::IpAddr(10, 1, 2, 0));
   EXPECT_TRUE(a.contains(Vorin::IpAddr(10, 1, 2, 200)));
   EXPECT_FALSE(a.contains(Vorin::IpAddr(10, 1, 3, 1)));
   EXPECT_EQ(Vorin::IpAddrWithMask::fromString("10.1.2.3/0").subnet(), Vorin::IpAddr());
   EXPECT_EQ(Vorin::IpAddrWithMask::fromString("10.1.2.3/32").subnet(), Vorin::IpAddr(10, 1, 2, 3));
   EXPECT_NE(std::hash<Vorin::IpAddrWithMask>()(a), std::hash<Vorin::IpAddrWithMask>()(b));
}

TEST(PlatformValues, PwStatusBitsAreTheFiveFaultBits) {
   using Flags = Pseudowire::PseudowireLdpStatusFlags;
   struct Bit {
      void (Flags::*set)(bool);
      bool (Flags::*get)() const;
      std::uint32_t value;
   };
   Bit const bits[] = {{&Flags::pwNotForwardingIs, &Flags::pwNotForwarding, 0x01},
                       {&Flags::localAcRxFaultIs, &Flags::localAcRxFault, 0x02},
                       {&Flags::localAcTxFaultIs, &Flags::localAcTxFault, 0x04},
                       {&Flags::localPsnRxFaultIs, &Flags::localPsnRxFault, 0x08},
                       {&Flags::localPsnTxFaultIs, &Flags::localPsnTxFault, 0x10}};
   for (Bit const & b : bits) {
      Flags f(0x80000000u); // an unnamed bit that must survive
      EXPECT_FALSE((f.*b.get)());
      (f.*b.set)(true);
      EXPECT_EQ(f.value(), 0x80000000u | b.value);
      EXPECT_TRUE((f.*b.get)());
      (f.*b.set)(false);
      EXPECT_EQ(f.value(), 0x80000000u);
   }
   EXPECT_TRUE(Flags().isForwarding());
   EXPECT_FALSE(Flags(1).isForwarding());
}

TEST(PlatformValues, EnumerationNumbers) {
   EXPECT_EQ(static_cast<int>(Interface::IntfOperStatus::up), 1);
   EXPECT_EQ(static_cast<int>(Interface::IntfOperStatus::unknown), 4);
   EXPECT_EQ(static_cast<int>(Interface::IntfOperStatus::lowerLayerDown), 7);
   EXPECT_EQ(static_cast<int>(Pseudowire::PseudowireConnectorStatus{}), 0);
   EXPECT_EQ(std::string(stringValue(Pseudowire::PseudowireConnectorStatus{})), "connectorStatusUnknown");
}

} // namespace
