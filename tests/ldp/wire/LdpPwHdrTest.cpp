#include "ldp/wire/LdpPwHdr.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>

#include "support/DeathText.h"
#include "support/Hex.h"
#include "support/Overlay.h"

using namespace Ldp;
using TestSupport::hexBytes;
using TestSupport::toHex;
using TestSupport::literal;
using TestSupport::ExactBuf;

namespace {

using Pseudowire::PseudowireType;

// ---------------------------------------------------------------------------
// PWid element

// Type 0x80, C=1 and PW type 5, pwInfoLen 8 (PW ID and one MTU sub-TLV), group 7,
// PW ID 100, MTU 1500.
constexpr char pwIdElement[] = "80 8005 08 00000007 | 00000064 | 0104 05dc";

TEST(LdpFecTlvPwIdElementHdr, FieldsFromGoldenBytes) {
   ExactBuf buf(pwIdElement);
   auto const & h = buf.as<LdpFecTlvPwIdElementHdr>();
   EXPECT_EQ(h.type(), LdpFecElementType::pwIdElement);
   EXPECT_TRUE(h.controlWord());
   EXPECT_EQ(h.pwType(), PseudowireType::ethernet);
   EXPECT_EQ(h.pwTypeField().value(), 0x8005);
   EXPECT_EQ(h.pwInfoLen(), 8);
   EXPECT_EQ(h.groupId(), Pseudowire::GroupId(7));
   EXPECT_EQ(h.groupIdNbo(), Vorin::NetU32::fromHost(7));
   EXPECT_EQ(h.pwId(), Pseudowire::PseudowireId(100));
   EXPECT_EQ(h.totalLength(), 16u);
   EXPECT_EQ(h.stringValue(), "Value('Ldp::LdpFecTlvPwIdElementHdr', ** {'type': pwIdElement, 'controlWord': True, "
                              "'pwType': ethernet, 'pwInfoLen': 8, 'groupId': 7})");
   EXPECT_EQ(h.pwTypeField().stringValue(),
             "Value('Ldp::LdpFecTlvPwIdElementHdrTypeField', ** {'controlWord': True, 'pwType': ethernet})");
}

TEST(LdpFecTlvPwIdElementHdr, CbitAndTypeShareOneWord) {
   LdpFecTlvPwIdElementHdr h;
   EXPECT_EQ(toHex(h), "0000000000000000");
   h.typeIs(LdpFecElementType::pwIdElement);
   h.pwTypeIs(PseudowireType::ethernet);
   h.controlWordIs(true);
   EXPECT_EQ(toHex(h), "8080050000000000");
   h.pwTypeIs(PseudowireType::ethernetTagged); // keeps C
   EXPECT_EQ(toHex(h), "8080040000000000");
   h.controlWordIs(false); // keeps the type
   EXPECT_EQ(toHex(h), "8000040000000000");
   h.pwTypeFieldIs(LdpFecTlvPwIdElementHdrTypeField(0xFFFF));
   EXPECT_TRUE(h.controlWord());
   EXPECT_EQ(static_cast<unsigned>(h.pwType()), 0x7FFFu);
   h.pwInfoLenIs(4);
   h.groupIdIs(Pseudowire::GroupId(0x01020304));
   EXPECT_EQ(toHex(h), "80ffff0401020304");
   h.groupIdNboIs(Vorin::NetU32::fromHost(0xA0B0C0D0));
   EXPECT_EQ(toHex(h), "80ffff04a0b0c0d0");
}

TEST(LdpFecTlvPwIdElementHdr, PwIdIsWritesTheFourOctetsAfterTheHeader) {
   ExactBuf buf("80 0005 04 00000001 | 00000000");
   auto & h = buf.as<LdpFecTlvPwIdElementHdr>();
   h.pwIdIs(Pseudowire::PseudowireId(0xDEADBEEF));
   EXPECT_EQ(buf.hex(), "800005040000000" "1deadbeef");
   EXPECT_EQ(h.pwId(), Pseudowire::PseudowireId(0xDEADBEEF));
   // The header alone compares equal whatever follows it.
   EXPECT_EQ(h, ExactBuf("80 0005 04 00000001 | 00000000").as<LdpFecTlvPwIdElementHdr>());
}

TEST(LdpFecTlvPwIdElementHdrDeathTest, NoPwIdBelowFourOctetsOfPwInfo) {
   // An 8-byte buffer: with pwInfoLen below 4 there is no PW ID to read.
   for (char const * hex : {"80 0005 00 00000001", "80 0005 03 00000001"}) {
      ExactBuf buf(hex);
      auto & h = buf.as<LdpFecTlvPwIdElementHdr>();
      EXPECT_DEATH(h.pwId(), literal("pwInfoLen() >= 4")) << hex;
      EXPECT_DEATH(h.pwIdIs(Pseudowire::PseudowireId(1)), literal("pwInfoLen() >= 4")) << hex;
   }
}

// ---------------------------------------------------------------------------
// Interface parameter sub-TLVs

TEST(LdpPwIntfParamSubTlv, AccessorsFromGoldenBytes) {
   ExactBuf mtu("01 04 05dc");
   EXPECT_EQ(mtu.as<LdpPwIntfMtuSubTlv>().type(), LdpPwIntfParamSubTlvType::intfMtu);
   EXPECT_EQ(mtu.as<LdpPwIntfMtuSubTlv>().length(), 4);
   EXPECT_EQ(mtu.as<LdpPwIntfMtuSubTlv>().mtu(), 1500);
   EXPECT_EQ(mtu.as<LdpPwIntfMtuSubTlv>().stringValue(),
             "Value('Ldp::LdpPwIntfMtuSubTlv', ** {'type': intfMtu, 'length': 4, 'mtu': 1500})");

   ExactBuf vlan("06 04 0ffe");
   EXPECT_EQ(vlan.as<LdpPwRequestedVlanIdSubTlv>().vlanId(), 4094);
   EXPECT_EQ(vlan.as<LdpPwRequestedVlanIdSubTlv>().stringValue(),
             "Value('Ldp::LdpPwRequestedVlanIdSubTlv', ** {'type': requestedVlanId, 'length': 4, 'vlanId': 4094})");

   ExactBuf frag("09 04 0100");
   EXPECT_EQ(frag.as<LdpPwFragIndicatorSubTlv>().fragIndicator(), 0x0100);
   EXPECT_TRUE(frag.as<LdpPwFragIndicatorSubTlv>().fragCapable());
   EXPECT_FALSE(ExactBuf("09 04 0000").as<LdpPwFragIndicatorSubTlv>().fragCapable());

   ExactBuf vccv("0c 04 02 05");
   EXPECT_EQ(vccv.as<LdpPwVccvParamSubTlv>().ccTypes(), 2);
   EXPECT_EQ(vccv.as<LdpPwVccvParamSubTlv>().cvTypes(), 5);
   EXPECT_EQ(vccv.as<LdpPwVccvParamSubTlv>().vccvParam(), LdpPwVccvParamField(2, 5));
   EXPECT_EQ(vccv.as<LdpPwVccvParamSubTlv>().stringValue(),
             "Value('Ldp::LdpPwVccvParamSubTlv', ** {'type': vccvParam, 'length': 4, "
             "'vccvParam': Value('Ldp::LdpPwVccvParamField', ** {'ccTypes': 2, 'cvTypes': 5})})");
   EXPECT_EQ(vccv.as<LdpPwIntfParamSubTlv>().stringValue(),
             "Value('Ldp::LdpPwIntfParamSubTlv', ** {'type': vccvParam, 'length': 4})");
}

TEST(LdpPwIntfParamSubTlv, BuiltFieldByField) {
   LdpPwIntfMtuSubTlv mtu;
   mtu.typeIs(LdpPwIntfParamSubTlvType::intfMtu);
   mtu.lengthIs(LdpPwIntfMtuSubTlv::requiredLength);
   mtu.mtuIs(9000);
   EXPECT_EQ(toHex(mtu), "01042328");
   LdpPwVccvParamSubTlv vccv;
   vccv.vccvParamIs(LdpPwVccvParamField(0x01, 0x02));
   EXPECT_EQ(toHex(vccv), "00000102");
   LdpPwFragIndicatorSubTlv frag;
   frag.fragIndicatorIs(1);
   EXPECT_EQ(toHex(frag), "00000001");
   LdpPwRequestedVlanIdSubTlv vlan;
   vlan.vlanIdIs(0x0123);
   EXPECT_EQ(toHex(vlan), "00000123");
}

TEST(LdpPwIntfDescSubTlv, DescriptionReadsLengthMinusTwoAndStopsAtNul) {
   struct Case {
      char const * hex;
      char const * description;
   };
   Case const cases[] = {
       {"03 06 67652d30", "ge-0"},
       {"03 06 67 00 2d 30", "g"}, // ends at the NUL
       {"03 02", ""},
       {"03 01", ""}, // a length below the head reads nothing
       {"03 00", ""},
       {"03 04 6162", "ab"},
   };
   for (auto const & c : cases) {
      ExactBuf buf(c.hex);
      EXPECT_EQ(buf.as<LdpPwIntfDescSubTlv>().description(), c.description) << c.hex;
   }
   ExactBuf buf("03 06 67652d30");
   EXPECT_EQ(buf.as<LdpPwIntfDescSubTlv>().stringValue(),
             "Value('Ldp::LdpPwIntfDescSubTlv', ** {'type': intfDesc, 'length': 6, 'description': 'ge-0'})");
}

TEST(LdpPwIntfDescSubTlv, DescriptionIsWritesTextAndLength) {
   ExactBuf buf("00 00 00000000");
   auto & d = buf.as<LdpPwIntfDescSubTlv>();
   d.typeIs(LdpPwIntfParamSubTlvType::intfDesc);
   d.descriptionIs("eth1");
   EXPECT_EQ(buf.hex(), "030665746831");
   EXPECT_EQ(d.validate(), LdpStatusCode::success);
   d.descriptionIs("");
   EXPECT_EQ(d.length(), 2);
   EXPECT_EQ(d.description(), "");
}

template <typename T>
LdpStatusCode validateSubTlv(ExactBuf & b) {
   return b.as<T>().validate();
}

TEST(LdpPwIntfParamSubTlv, Validate) {
   std::string const desc80 = "03 52" + std::string(160, '6');  // 80 x 'f'
   std::string const desc81 = "03 53" + std::string(162, '6');  // length 83
   struct Case {
      std::string hex;
      LdpStatusCode (*validate)(ExactBuf &);
      LdpStatusCode expected;
   };
   auto const ok = LdpStatusCode::success;
   auto const bad = LdpStatusCode::badTlvLength;
   Case const cases[] = {
       {"01 04 05dc", validateSubTlv<LdpPwIntfMtuSubTlv>, ok},
       {"01 06 05dc", validateSubTlv<LdpPwIntfMtuSubTlv>, bad},
       {"01 03 05dc", validateSubTlv<LdpPwIntfMtuSubTlv>, bad},
       {"01 05 05dc", validateSubTlv<LdpPwIntfMtuSubTlv>, bad},
       {"06 04 0064", validateSubTlv<LdpPwRequestedVlanIdSubTlv>, ok},
       {"06 04 ffff", validateSubTlv<LdpPwRequestedVlanIdSubTlv>, ok}, // range is not checked here
       {"06 02 0064", validateSubTlv<LdpPwRequestedVlanIdSubTlv>, bad},
       {"09 04 0001", validateSubTlv<LdpPwFragIndicatorSubTlv>, ok},
       {"09 02 0001", validateSubTlv<LdpPwFragIndicatorSubTlv>, bad}, // 4, not 2
       {"0c 04 0102", validateSubTlv<LdpPwVccvParamSubTlv>, ok},
       {"0c 03 0102", validateSubTlv<LdpPwVccvParamSubTlv>, bad},
       {"0c 05 0102", validateSubTlv<LdpPwVccvParamSubTlv>, bad},
       // Description: 0 to 80 characters. The length is checked before the text
       // is read, so a bad length with no text behind it reads nothing.
       {"03 02", validateSubTlv<LdpPwIntfDescSubTlv>, ok},
       {"03 03 61", validateSubTlv<LdpPwIntfDescSubTlv>, ok},
       {desc80, validateSubTlv<LdpPwIntfDescSubTlv>, ok},
       {desc81, validateSubTlv<LdpPwIntfDescSubTlv>, bad},
       {"03 53", validateSubTlv<LdpPwIntfDescSubTlv>, bad},
       {"03 ff", validateSubTlv<LdpPwIntfDescSubTlv>, bad},
       {"03 01", validateSubTlv<LdpPwIntfDescSubTlv>, bad},
       {"03 00", validateSubTlv<LdpPwIntfDescSubTlv>, bad},
       {"03 05 61 00 62", validateSubTlv<LdpPwIntfDescSubTlv>, bad}, // embedded NUL
       {"03 04 61 00", validateSubTlv<LdpPwIntfDescSubTlv>, bad},    // trailing NUL
       {"03 03 00", validateSubTlv<LdpPwIntfDescSubTlv>, bad},
   };
   for (auto const & c : cases) {
      ExactBuf buf(c.hex);
      EXPECT_EQ(c.validate(buf), c.expected) << c.hex;
   }
}

TEST(LdpPwIntfParamSubTlvDeathTest, ValidateAssertsItsOwnTypeFirst) {
   // Each carries another sub-TLV's type and a bad length: the type is checked first.
   struct Case {
      char const * hex;
      LdpStatusCode (*validate)(ExactBuf &);
      char const * text;
   };
   Case const cases[] = {
       {"03 06 05dc", validateSubTlv<LdpPwIntfMtuSubTlv>, "type() == Ldp::intfMtu_"},
       {"01 02", validateSubTlv<LdpPwIntfDescSubTlv>, "type() == Ldp::intfDesc_"},
       {"09 06 0064", validateSubTlv<LdpPwRequestedVlanIdSubTlv>, "type() == Ldp::requestedVlanId_"},
       {"06 06 0001", validateSubTlv<LdpPwFragIndicatorSubTlv>, "type() == Ldp::fragIndicator_"},
       {"01 06 0102", validateSubTlv<LdpPwVccvParamSubTlv>, "type() == Ldp::vccvParam_"},
   };
   for (auto const & c : cases) {
      ExactBuf buf(c.hex);
      EXPECT_DEATH(c.validate(buf), literal(c.text)) << c.hex;
   }
}

// ---------------------------------------------------------------------------
// Parameters and FEC info

TEST(LdpPwIntfParamFlags, TextForm) {
   LdpPwIntfParamFlags f;
   EXPECT_EQ(f.stringValue(), "Value('Ldp::LdpPwIntfParamFlags', ** {'intfMtu': False, 'intfDesc': False, "
                              "'requestedVlanId': False, 'fragIndicator': False, 'vccvParam': False})");
   f.intfMtuIs(true);
   f.vccvParamIs(true);
   EXPECT_EQ(f.stringValue(), "Value('Ldp::LdpPwIntfParamFlags', ** {'intfMtu': True, 'intfDesc': False, "
                              "'requestedVlanId': False, 'fragIndicator': False, 'vccvParam': True})");
   EXPECT_NE(f, LdpPwIntfParamFlags());
}

PwFwdEqvClassParams sampleParams() {
   PwFwdEqvClassParams p;
   p.groupIdIs(Pseudowire::GroupId(7));
   p.mtuIs(1500);
   p.intfDescriptionIs(Zon::String8("ge-0/0/1"));
   p.requestedVlanIdIs(Pseudowire::VlanIdOrNone(100));
   p.fragCapableIs(true);
   p.vccvCcTypesIs(2);
   p.vccvCvTypesIs(5);
   return p;
}

TEST(PwFwdEqvClassParams, DefaultsAndTextForm) {
   PwFwdEqvClassParams p;
   EXPECT_EQ(p.mtu(), PwFwdEqvClassParams::unspecifiedMtu);
   EXPECT_EQ(PwFwdEqvClassParams::unspecifiedMtu, 0);
   EXPECT_EQ(p.stringValue(), "Value('Ldp::PwFwdEqvClassParams', ** {'groupId': 0, 'mtu': 0, 'intfDescription': '', "
                              "'requestedVlanId': 0, 'fragCapable': False, 'vccvCcTypes': 0, 'vccvCvTypes': 0})");
   EXPECT_EQ(sampleParams().stringValue(),
             "Value('Ldp::PwFwdEqvClassParams', ** {'groupId': 7, 'mtu': 1500, 'intfDescription': 'ge-0/0/1', "
             "'requestedVlanId': 100, 'fragCapable': True, 'vccvCcTypes': 2, 'vccvCvTypes': 5})");
}

TEST(PwFwdEqvClassParams, EqualityCoversEveryField) {
   using Mutate = void (*)(PwFwdEqvClassParams &);
   Mutate const mutations[] = {
       [](PwFwdEqvClassParams & p) { p.groupIdIs(Pseudowire::GroupId(8)); },
       [](PwFwdEqvClassParams & p) { p.mtuIs(1499); },
       [](PwFwdEqvClassParams & p) { p.intfDescriptionIs(Zon::String8("ge-0/0/2")); },
       [](PwFwdEqvClassParams & p) { p.requestedVlanIdIs(Pseudowire::VlanIdOrNone(101)); },
       [](PwFwdEqvClassParams & p) { p.fragCapableIs(false); },
       [](PwFwdEqvClassParams & p) { p.vccvCcTypesIs(3); },
       [](PwFwdEqvClassParams & p) { p.vccvCvTypesIs(6); },
   };
   for (auto m : mutations) {
      PwFwdEqvClassParams p = sampleParams();
      m(p);
      EXPECT_NE(p, sampleParams()) << p.stringValue();
   }
   EXPECT_EQ(sampleParams(), sampleParams());
}

PwFwdEqvClassInfo sampleInfo() {
   PwFwdEqvClassInfo i;
   i.pwTypeIs(PseudowireType::ethernet);
   i.controlWordIs(true);
   i.groupIdIs(Pseudowire::GroupId(7));
   i.pwIdIs(Pseudowire::PseudowireId(100));
   i.paramsIs(sampleParams());
   return i;
}

TEST(PwFwdEqvClassInfo, TextFormAndEquality) {
   std::string const text =
       "Value('Ldp::PwFwdEqvClassInfo', ** {'pwType': ethernet, 'controlWord': True, 'groupId': 7, 'pwId': 100, "
       "'params': Value('Ldp::PwFwdEqvClassParams', ** {'groupId': 7, 'mtu': 1500, 'intfDescription': 'ge-0/0/1', "
       "'requestedVlanId': 100, 'fragCapable': True, 'vccvCcTypes': 2, 'vccvCvTypes': 5})})";
   EXPECT_EQ(sampleInfo().stringValue(), text);
   EXPECT_EQ(sampleInfo(), sampleInfo());
   PwFwdEqvClassInfo other = sampleInfo();
   other.controlWordIs(false);
   EXPECT_NE(other, sampleInfo());
   other = sampleInfo();
   other.pwIdIs(Pseudowire::PseudowireId(101));
   EXPECT_NE(other, sampleInfo());
   other = sampleInfo();
   other.paramsIs(PwFwdEqvClassParams());
   EXPECT_NE(other, sampleInfo());
}

TEST(LdpFecTlvPwIdElement, HoldsItsPseudowireFec) {
   auto e = ldpFecTlvPwIdElementFactory();
   EXPECT_EQ(e->pwFwdEqvCls(), PwFwdEqvClassInfo());
   e->pwFwdEqvClsIs(sampleInfo());
   Zon::Ptr<LdpFecTlvElement const> stored = e;
   EXPECT_EQ(stored->type(), LdpFecElementType::pwIdElement);
   EXPECT_EQ(stored->pwFwdEqvCls(), sampleInfo());
   EXPECT_EQ(stored->stringValue(), sampleInfo().stringValue());
   EXPECT_EQ(ldpFecTlvPwIdElementFactory(sampleInfo())->pwFwdEqvCls(), sampleInfo());
}

// ---------------------------------------------------------------------------
// PW Status TLV

TEST(LdpPwStatusTlv, FieldsAndTextFromGoldenBytes) {
   ExactBuf buf("896a 0004 00000003");
   auto const & t = buf.as<LdpPwStatusTlv>();
   EXPECT_EQ(t.type(), LdpTlvType::pwStatusTlv);
   EXPECT_TRUE(t.unknown());
   EXPECT_EQ(t.status(), 3u);
   EXPECT_TRUE(t.statusField().flag(LdpPwStatusField::pwNotForwarding));
   EXPECT_TRUE(t.statusField().flag(LdpPwStatusField::localACIngrRecvFault));
   EXPECT_FALSE(t.statusField().flag(LdpPwStatusField::localACEgrTransFault));
   EXPECT_FALSE(t.statusField().forwarding());
   EXPECT_EQ(t.validate(), LdpStatusCode::success);
   EXPECT_EQ(t.stringValue(), "LdpPwStatusTlv: 0x00000003");
   EXPECT_EQ(t.statusField().stringValue(), "Value('Ldp::LdpPwStatusField', ** {'status': 3})");
   EXPECT_EQ(ExactBuf("096a 0004 80000010").as<LdpPwStatusTlv>().stringValue(), "LdpPwStatusTlv: 0x80000010");
}

TEST(LdpPwStatusTlv, FlagBits) {
   struct Case {
      std::uint32_t flag;
      char const * hex;
   };
   Case const cases[] = {
       {LdpPwStatusField::pwNotForwarding, "00000001"},
       {LdpPwStatusField::localACIngrRecvFault, "00000002"},
       {LdpPwStatusField::localACEgrTransFault, "00000004"},
       {LdpPwStatusField::localPsnPwIngrRecvFault, "00000008"},
       {LdpPwStatusField::localPsnPwEgrTransFault, "00000010"},
   };
   for (auto const & c : cases) {
      LdpPwStatusField f(0xF0000000);
      f.flagIs(c.flag, true);
      EXPECT_EQ(toHex(f), std::string("f") + (c.hex + 1)) << c.hex;
      EXPECT_TRUE(f.flag(c.flag));
      f.flagIs(c.flag, false);
      EXPECT_EQ(toHex(f), "f0000000") << c.hex;
   }
   EXPECT_EQ(LdpPwStatusField::pwForwarding, 0u);
   EXPECT_TRUE(LdpPwStatusField().forwarding());
   LdpPwStatusTlv t;
   t.typeIs(LdpTlvType::pwStatusTlv);
   t.lengthIs(LdpPwStatusTlv::requiredLength);
   t.statusIs(LdpPwStatusField::localPsnPwEgrTransFault);
   EXPECT_EQ(toHex(t), "096a000400000010");
}

TEST(LdpPwStatusTlv, Validate) {
   struct Case {
      char const * hex;
      LdpStatusCode expected;
      char const * text;
   };
   Case const cases[] = {
       {"096a 0004 00000000", LdpStatusCode::success, "LdpPwStatusTlv: 0x00000000"},
       {"096a 0008 00000000", LdpStatusCode::badTlvLength, "Error LdpPwStatusTlv: badTlvLength"},
       {"096a 0003 00000000", LdpStatusCode::badTlvLength, "Error LdpPwStatusTlv: badTlvLength"},
       {"096a 0000 00000000", LdpStatusCode::badTlvLength, "Error LdpPwStatusTlv: badTlvLength"},
       // The header check comes first and its result wins over a bad length.
       {"8102 0008 00000000", LdpStatusCode::unknownMessageTypeIgnore,
        "Error LdpPwStatusTlv: unknownMessageTypeIgnore"},
       {"0102 0008 00000000", LdpStatusCode::unknownTlv, "Error LdpPwStatusTlv: unknownTlv"},
   };
   for (auto const & c : cases) {
      ExactBuf buf(c.hex);
      EXPECT_EQ(buf.as<LdpPwStatusTlv>().validate(), c.expected) << c.hex;
      EXPECT_EQ(buf.as<LdpPwStatusTlv>().stringValue(), c.text) << c.hex;
   }
}

} // namespace
