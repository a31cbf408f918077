#include "ldp/wire/LdpFecElement.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "ldp/wire/LdpPwHdr.h"
#include "support/DeathText.h"
#include "support/Hex.h"
#include "support/Overlay.h"

using namespace Ldp;
using TestSupport::hexBytes;
using TestSupport::toHex;
using TestSupport::literal;
using TestSupport::overlay;

namespace {

TEST(LdpFecTlvElementHdr, DefaultTypeIsZeroAndTypeIsWritesOctet0) {
   LdpFecTlvElementHdr h;
   EXPECT_EQ(toHex(h), "00");
   EXPECT_EQ(static_cast<unsigned>(h.type()), 0u);
   h.typeIs(LdpFecElementType::pwIdElement);
   EXPECT_EQ(toHex(h), "80");
   h.typeFieldIs(LdpFecTlvElementHdrTypeField(LdpFecElementType::hostAddrElement));
   EXPECT_EQ(toHex(h), "03");
   EXPECT_EQ(overlay<LdpFecTlvElementHdr>("81").type(), LdpFecElementType::pwGenIdelement);
   EXPECT_EQ(h.stringValue(), "Value('Ldp::LdpFecTlvElementHdr', ** {'type': hostAddrElement})");
   EXPECT_EQ(h.typeField().stringValue(), "Value('Ldp::LdpFecTlvElementHdrTypeField', ** {'type': hostAddrElement})");
   // A type octet without an enumerator prints as its number.
   EXPECT_EQ(overlay<LdpFecTlvElementHdr>("7f").stringValue(), "Value('Ldp::LdpFecTlvElementHdr', ** {'type': 127})");
}

TEST(LdpFecTlvWildcardElementHdr, OneOctet) {
   auto h = overlay<LdpFecTlvWildcardElementHdr>("01");
   EXPECT_EQ(h.type(), LdpFecElementType::wildcardElement);
   EXPECT_EQ(h.stringValue(), "Value('Ldp::LdpFecTlvWildcardElementHdr', ** {'type': wildcardElement})");
   EXPECT_EQ(h, overlay<LdpFecTlvWildcardElementHdr>("01"));
   EXPECT_NE(h, LdpFecTlvWildcardElementHdr());
}

TEST(LdpFecTlvPrefixElementHdr, FieldsFromGoldenBytes) {
   auto h = overlay<LdpFecTlvPrefixElementHdr>("02 0102 19");
   EXPECT_EQ(h.type(), LdpFecElementType::prefixElement);
   EXPECT_EQ(h.family(), 0x0102); // octets 1..2, network order
   EXPECT_EQ(h.familyNbo(), Vorin::NetU16::fromHost(0x0102));
   EXPECT_EQ(h.prefixBits(), 25);
   EXPECT_EQ(h.stringValue(), "Value('Ldp::LdpFecTlvPrefixElementHdr', ** {'type': prefixElement, 'family': 258, "
                              "'prefixBits': 25})");
}

TEST(LdpFecTlvPrefixElementHdr, BuiltFieldByField) {
   LdpFecTlvPrefixElementHdr h;
   EXPECT_EQ(toHex(h), "00000000");
   h.typeIs(LdpFecElementType::prefixElement);
   h.familyIs(2);
   h.prefixBitsIs(64);
   EXPECT_EQ(toHex(h), "02000240");
   h.familyNboIs(Vorin::NetU16::fromHost(1));
   EXPECT_EQ(toHex(h), "02000140");
   EXPECT_EQ(h, overlay<LdpFecTlvPrefixElementHdr>("02000140"));
   EXPECT_NE(h, overlay<LdpFecTlvPrefixElementHdr>("02000141"));
   EXPECT_NE(h, overlay<LdpFecTlvPrefixElementHdr>("02000240"));
}

TEST(LdpFecTlvPrefixElementHdr, TotalLengthRoundsPrefixBitsUpToOctets) {
   struct Case {
      unsigned prefixBits;
      std::size_t octets;
   };
   Case const cases[] = {{0, 4}, {1, 5}, {8, 5}, {9, 6}, {24, 7}, {25, 8}, {32, 8}, {33, 9}, {128, 20}, {255, 36}};
   for (auto const & c : cases) {
      LdpFecTlvPrefixElementHdr h;
      h.prefixBitsIs(static_cast<std::uint8_t>(c.prefixBits));
      EXPECT_EQ(h.totalLength(), c.octets) << c.prefixBits;
      EXPECT_EQ(h.prefixOctets(), c.octets - 4) << c.prefixBits;
   }
}

TEST(LdpFecTlvHostAddressElementHdr, FieldsAndLength) {
   auto h = overlay<LdpFecTlvHostAddressElementHdr>("03 0002 10");
   EXPECT_EQ(h.type(), LdpFecElementType::hostAddrElement);
   EXPECT_EQ(h.family(), 2);
   EXPECT_EQ(h.hostAddrLen(), 16);
   EXPECT_EQ(h.totalLength(), 20u);
   EXPECT_EQ(h.stringValue(),
             "Value('Ldp::LdpFecTlvHostAddressElementHdr', ** {'type': hostAddrElement, 'family': 2, 'hostAddrLen': 16})");
   h.hostAddrLenIs(4);
   h.familyIs(1);
   EXPECT_EQ(toHex(h), "03000104");
   EXPECT_EQ(h.totalLength(), 8u);
   EXPECT_NE(h, overlay<LdpFecTlvHostAddressElementHdr>("03000105"));
}

TEST(LdpFecTlvElement, IpElementsCarryTheirPrefix) {
   auto const v4 = Vorin::IpGenAddr::fromString("10.0.0.1");
   auto const v6 = Vorin::IpGenAddr::fromString("2001:db8::1");
   struct Case {
      Zon::Ptr<LdpFecTlvElement const> element;
      LdpFecElementType type;
      char const * text;
      char const * prefix;
   };
   Case const cases[] = {
       {ldpFecTlvPrefixElementFactory(Vorin::IpGenPrefix::fromString("10.1.0.0/16")), LdpFecElementType::prefixElement,
        "10.1.0.0/16", "10.1.0.0/16"},
       {ldpFecTlvPrefixElementFactory(Vorin::IpGenPrefix::fromString("0.0.0.0/0")), LdpFecElementType::prefixElement,
        "0.0.0.0/0", "0.0.0.0/0"},
       {ldpFecTlvHostAddrElementFactory(v4), LdpFecElementType::hostAddrElement, "10.0.0.1/32", "10.0.0.1/32"},
       {ldpFecTlvHostAddrElementFactory(v6), LdpFecElementType::hostAddrElement, "2001:db8::1/128",
        "2001:db8::1/128"},
   };
   for (auto const & c : cases) {
      ASSERT_TRUE(c.element);
      EXPECT_EQ(c.element->type(), c.type) << c.text;
      EXPECT_EQ(c.element->stringValue(), c.text);
      ASSERT_TRUE(c.element->fwdEqvCls().isIpPrefix()) << c.text;
      EXPECT_EQ(c.element->fwdEqvCls().prefix(), Vorin::IpGenPrefix::fromString(c.prefix));
   }
}

TEST(LdpFecTlvElement, WildcardElement) {
   Zon::Ptr<LdpFecTlvElement const> w = ldpFecTlvWildcardElementFactory();
   EXPECT_EQ(w->type(), LdpFecElementType::wildcardElement);
   EXPECT_EQ(w->stringValue(), "Wildcard");
   // The wildcard has no particular FEC, but asking for it is allowed.
   EXPECT_EQ(w->fwdEqvCls().kind(), Mpls::FwdEqvClass::none_);
   EXPECT_EQ(w->references(), 1u);
}

class LdpFecTlvElementDeathTest : public ::testing::Test {};

// An element class that forgets its text form.
class TextlessElement : public LdpFecTlvElement {
 public:
   LdpFecElementType type() const noexcept override { return LdpFecElementType::prefixElement; }
};

TEST_F(LdpFecTlvElementDeathTest, WrongFecAccessorForTheElementType) {
   Zon::Ptr<LdpFecTlvElement> pw = ldpFecTlvPwIdElementFactory();
   Zon::Ptr<LdpFecTlvElement> prefix = ldpFecTlvPrefixElementFactory(Vorin::IpGenPrefix::fromString("10.0.0.0/8"));
   Zon::Ptr<LdpFecTlvElement> wildcard = ldpFecTlvWildcardElementFactory();
   std::string const ipOnly = literal("fwdEqvCls valid for Ip Fec Tlvs only");
   std::string const pwOnly = literal("pwFwdEqvCls valid for Pw Fec Tlvs only");
   EXPECT_DEATH(pw->fwdEqvCls(), ipOnly);
   EXPECT_DEATH(pw->fwdEqvClsIs(Mpls::FwdEqvClass(Vorin::IpGenPrefix::fromString("10.0.0.0/8"))), ipOnly);
   EXPECT_DEATH(prefix->pwFwdEqvCls(), pwOnly);
   EXPECT_DEATH(prefix->pwFwdEqvClsIs(PwFwdEqvClassInfo()), pwOnly);
   EXPECT_DEATH(wildcard->pwFwdEqvCls(), pwOnly);
   EXPECT_DEATH(ldpFecTlvHostAddrElementFactory(Vorin::IpGenAddr())->pwFwdEqvCls(), pwOnly);
}

TEST_F(LdpFecTlvElementDeathTest, BaseTextFormIsNotToBeCalled) {
   Zon::Ptr<LdpFecTlvElement const> e(new TextlessElement);
   EXPECT_DEATH(e->stringValue(), literal("Internal Error. To be implemented in derived classes"));
}

} // namespace
