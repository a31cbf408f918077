#include "ldp/wire/LdpHdr.h"

#include <gtest/gtest.h>

#include <cstring>

#include "support/Hex.h"
#include "support/Overlay.h"

using namespace Ldp;
using TestSupport::hexBytes;
using TestSupport::toHex;
using TestSupport::overlay;

namespace {

TEST(LdpPduHdr, FieldsFromGoldenBytes) {
   auto h = overlay<LdpPduHdr>("0001 001e 0a000001 0002");
   EXPECT_EQ(h.version(), 1);
   EXPECT_EQ(h.length(), 30);
   EXPECT_EQ(h.totalLength(), 34);
   EXPECT_EQ(h.ldpIdentifier(), LdpIdentifier(Vorin::IpAddr(10, 0, 0, 1), 2));
   EXPECT_EQ(h.stringValue(), "LdpPduHdr: Ver(1),Len(30),LdpId: 10.0.0.1:2");
}

TEST(LdpPduHdr, DefaultIsZeroAndLengthWrapsIn16Bits) {
   LdpPduHdr h;
   EXPECT_EQ(toHex(h), "00000000000000000000");
   h.lengthIs(0xFFFC);
   EXPECT_EQ(h.totalLength(), 0);
   h.versionIs(1);
   h.ldpIdentifierIs(LdpIdentifier(Vorin::IpAddr(192, 168, 1, 2), 0x0102));
   EXPECT_EQ(toHex(h), "0001fffcc0a801020102");
}

TEST(LdpMsgHdr, TypeAndUbit) {
   auto h = overlay<LdpMsgHdr>("8001 0004 00000007");
   EXPECT_EQ(h.type(), LdpMsgType::LdpNotification);
   EXPECT_TRUE(h.unknown());
   EXPECT_EQ(h.length(), 4);
   EXPECT_EQ(h.totalLength(), 8);
   EXPECT_EQ(h.msgId(), 7u);
   h.typeIs(LdpMsgType::LdpLabelMapping);
   EXPECT_EQ(toHex(h), "840000040000000" "7");
   h.unknownIs(2); // low bit 0 clears
   EXPECT_EQ(toHex(h), "0400000400000007");
   h.unknownIs(3);
   EXPECT_EQ(toHex(h), "8400000400000007");
   EXPECT_EQ(h.msgUbitAndTypeField().stringValue(),
             "Value('Ldp::LdpHdrMsgUbitAndTypeField', ** {'v0': 132, 'v1': 0})");
}

TEST(LdpTlvHdr, TypeIsKeepsFlagBits) {
   auto h = overlay<LdpTlvHdr>("c000 0004");
   h.typeIs(LdpTlvType::statusTlv);
   EXPECT_EQ(toHex(h), "c3000004");
   EXPECT_TRUE(h.unknown());
   EXPECT_TRUE(h.forwardUnknown());
   h.forwardUnknownIs(0);
   EXPECT_EQ(toHex(h), "83000004");
   h.unknownIs(0);
   h.forwardUnknownIs(1);
   EXPECT_EQ(toHex(h), "43000004");
   EXPECT_EQ(h.tlvTypeField().stringValue(), "Value('Ldp::LdpTlvTypeField', ** {'v0': 67, 'v1': 0})");
}

// The type words order by the whole 16-bit word, so a flag bit outweighs any type.
TEST(LdpTypeWords, CompareTheWholeWordFlagBitsIncluded) {
   using Tlv = LdpTlvTypeField;
   EXPECT_NE(Tlv(0x8100), Tlv(0x0100)); // same type, U differs
   EXPECT_NE(Tlv(0x4100), Tlv(0x0100)); // same type, F differs
   EXPECT_LT(Tlv(0x4101), Tlv(0x8100)); // larger type, smaller word
   EXPECT_GT(Tlv(0x8100), Tlv(0x4101));
   EXPECT_LE(Tlv(0x0100), Tlv(0x0100));
   EXPECT_GE(Tlv(0xC000), Tlv(0x3FFF));
   EXPECT_EQ(Tlv(0xC103), Tlv(0xC103));

   using Msg = LdpHdrMsgUbitAndTypeField;
   EXPECT_NE(Msg(0x8001), Msg(0x0001));
   EXPECT_GT(Msg(0x8001), Msg(0x0404)); // U set outweighs the larger type
   EXPECT_LT(Msg(0x0404), Msg(0x8001));
   EXPECT_LE(Msg(0x0400), Msg(0x0401));
   EXPECT_GE(Msg(0x0401), Msg(0x0401));
}

TEST(LdpTlvHdr, ValidateTlvHdr) {
   struct Case {
      char const * word;
      LdpStatusCode expected;
   };
   Case const cases[] = {
       {"8102", LdpStatusCode::unknownMessageTypeIgnore}, // U set, type without enumerator
       {"0102", LdpStatusCode::unknownTlv},
       {"4102", LdpStatusCode::unknownTlv},                // F alone plays no part
       {"fe00", LdpStatusCode::success},                   // U and F set, vendor range start
       {"3e01", LdpStatusCode::unknownTlv},                // inside the vendor range
       {"3eff", LdpStatusCode::success},
       {"3f00", LdpStatusCode::success},
       {"3fff", LdpStatusCode::success},
       {"0503", LdpStatusCode::unknownTlv},
       {"0505", LdpStatusCode::unknownTlv},
       {"0506", LdpStatusCode::success},
       {"096a", LdpStatusCode::success},
       {"0100", LdpStatusCode::success},
       {"0000", LdpStatusCode::unknownTlv},
   };
   for (auto const & c : cases) {
      auto h = overlay<LdpTlvHdr>(std::string(c.word) + "0000");
      EXPECT_EQ(h.validateTlvHdr(), c.expected) << c.word;
   }
}

TEST(LdpTlvHdr, EveryEnumeratorIsKnownAndNothingElse) {
   unsigned known = 0;
   for (unsigned t = 0; t < 0x4000; ++t) {
      bool const registered = Zon::EnumTraits<LdpTlvType>::info().byValue(t) != nullptr;
      EXPECT_EQ(isKnownTlvType(static_cast<std::uint16_t>(t)), registered) << t;
      known += registered;
   }
   EXPECT_EQ(known, 34u);
}

TEST(LdpWireEnums, RegistryTextForms) {
   EXPECT_EQ(stringValue(LdpMsgType::LdpLabelAbortReq), "LdpLabelAbortReq");
   EXPECT_EQ(stringValue(LdpStatusCode::unknownMessageTypeIgnore), "unknownMessageTypeIgnore");
   EXPECT_EQ(stringValue(LdpFecElementType::pwGenIdelement), "pwGenIdelement");
   EXPECT_EQ(LdpMsgTypeInstance("LdpHello"), LdpMsgType::LdpHello);
   EXPECT_EQ(LdpTlvTypeInstance(0x096A), LdpTlvType::pwStatusTlv);
   EXPECT_EQ(Zon::sequenceToValue<LdpStatusCode>(29), LdpStatusCode::unknownMessageTypeIgnore);
   EXPECT_THROW(LdpTlvTypeInstance("noSuchTlv"), Zon::ParseException);
   ASSERT_NE(Zon::enumInfo("Ldp::LdpPwIntfParamSubTlvType"), nullptr);
   EXPECT_EQ(Zon::enumInfo("Ldp::LdpPwIntfParamSubTlvType")->size(), 5u);
}

} // namespace
