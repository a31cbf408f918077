// The JSON of ldpdecode: the streaming writer's escaping and punctuation, and
// the fields of each message kind as the reporter writes them.
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>

#include "JsonMessage.h"
#include "JsonWriter.h"
#include "Reporter.h"
#include "support/Hex.h"

using namespace LdpDecode;
using TestSupport::hexPkt;
using Json = nlohmann::json;

namespace {

TEST(JsonWriter, StringsAreEscapedAndInvalidUtf8IsReplaced) {
   struct Row {
      std::string in;
      std::string out;
   };
   Row const rows[] = {
       {"", R"("")"},
       {"plain text", R"("plain text")"},
       {"sixteen bytes ok and then a quote \" here", R"("sixteen bytes ok and then a quote \" here")"},
       {"LDP Label Mapping Msg:\n   Msg Id: 2,", R"("LDP Label Mapping Msg:\n   Msg Id: 2,")"},
       {"eight ch\x01", R"("eight ch\u0001")"},
       {"12345678\\", R"("12345678\\")"},
       {"1234567\xc3\xa9", "\"1234567\xc3\xa9\""},
       {"quote \" backslash \\", R"("quote \" backslash \\")"},
       {"\n\r\t\b\f", R"("\n\r\t\b\f")"},
       {std::string("nul \0 and \x1f", 11), R"("nul \u0000 and \u001f")"},
       {"\x7f", "\"\x7f\""},
       {"caf\xc3\xa9 \xe2\x82\xac \xf0\x9f\x98\x80", "\"caf\xc3\xa9 \xe2\x82\xac \xf0\x9f\x98\x80\""},
       // A lone continuation byte, a cut sequence at the end, an overlong form,
       // a surrogate, a code point above U+10FFFF: each bad byte one U+FFFD.
       {"a\x80z", "\"a\xef\xbf\xbdz\""},
       {"end \xe2\x82", "\"end \xef\xbf\xbd\xef\xbf\xbd\""},
       {"\xc0\xaf", "\"\xef\xbf\xbd\xef\xbf\xbd\""},
       {"\xed\xa0\x80", "\"\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd\""},
       {"\xf4\x90\x80\x80", "\"\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd\""},
   };
   for (auto const & r : rows) {
      std::string out;
      appendJsonString(out, r.in);
      EXPECT_EQ(out, r.out) << r.in;
      // What comes out is JSON that reads back as the valid part of the input.
      EXPECT_TRUE(Json::accept(out)) << out;
   }
}

TEST(JsonWriter, CommasSeparateMembersAndElementsAtEveryDepth) {
   Output buffer(nullptr);
   JsonWriter w(buffer);
   w.beginObject();
   w.field("a", 1).field("b", true).field("c", "x");
   w.array("empty").endArray();
   w.object("none").endObject();
   w.array("list").value(std::uint64_t(18446744073709551615u)).value(-3).null();
   w.beginObject().field("d", false).endObject();
   w.beginArray().endArray();
   w.endArray();
   w.field("z", std::uint8_t(255));
   w.endObject();
   std::string const out = buffer.take();
   EXPECT_EQ(out, R"({"a":1,"b":true,"c":"x","empty":[],"none":{},"list":[18446744073709551615,-3,null,)"
                  R"({"d":false},[]],"z":255})");
   EXPECT_EQ(w.depth(), 0u);
   EXPECT_TRUE(Json::accept(out));
}

// Addresses, prefixes and LDP identifiers are written in place, not through the
// library's text forms; they must spell them the same, for every width of an
// octet and both ends of the prefix length and label space.
TEST(JsonWriter, AddressesAreSpelledAsTheLibrarySpellsThem) {
   Output buffer(nullptr);
   JsonWriter w(buffer);
   std::string expected = "[";
   auto const quoted = [](std::string_view s) { return "\"" + std::string(s) + "\","; };
   w.beginArray();
   for (Vorin::IpAddr const a : {Vorin::IpAddr(0, 0, 0, 0), Vorin::IpAddr(9, 10, 99, 100), Vorin::IpAddr(255, 1, 200, 7),
                                 Vorin::IpAddr(192, 168, 0, 255)}) {
      writeAddress(w, a);
      writeAddress(w, Vorin::IpGenAddr(a));
      expected += quoted(a.stringValue()) + quoted(a.stringValue());
      for (unsigned len : {0u, 9u, 32u}) {
         Vorin::IpGenPrefix const p(a, len);
         writePrefix(w, p);
         expected += quoted(p.stringValue());
      }
      for (std::uint16_t space : {0, 7, 65535}) {
         Ldp::LdpIdentifier const id(a, space);
         writeLdpId(w, id);
         expected += quoted(id.stringValue());
      }
   }
   Vorin::IpGenAddr const v6 = Vorin::IpGenAddr::fromString("2001:db8::1");
   writeAddress(w, v6);
   writePrefix(w, Vorin::IpGenPrefix(v6, 64));
   expected += quoted(v6.stringValue()) + quoted(Vorin::IpGenPrefix(v6, 64).stringValue());
   w.endArray();
   expected.back() = ']';
   EXPECT_EQ(buffer.take(), expected);
}

// One PDU of one message through the reporter in JSON mode: the message object.
Json message(std::string const & pduHex) {
   FrameMeta const frame{3, 1709283600, 1000};
   Origin o;
   o.frame = &frame;
   o.firstFrame = 3;
   Output out(nullptr);
   Reporter reporter(OutputMode::json, out);
   reporter.pdu(o, hexPkt(pduHex), 0);
   Json const pdu = Json::parse(out.take());
   EXPECT_EQ(pdu["time"], "2024-03-01T09:00:00.001000Z");
   return pdu["messages"].at(0);
}

TEST(Reporter, JsonCarriesTheFieldsOfEveryMessageKind) {
   struct Row {
      char const * what;
      std::string pdu;
      std::vector<std::pair<char const *, Json>> fields;  // JSON pointer into the message, value
   };
   Row const rows[] = {
       {"Label Mapping of a prefix, hop count and path vector",
        "0001 0032 0a000001 0000 | 0400 0028 00000002 | 0100 0007 02 0001 18 0a0000 | 0200 0004 00000010 | "
        "0103 0001 03 | 0104 0008 0a000001 0a000002",
        {{"/type", "LdpLabelMapping"},
         {"/typeCode", 0x400},
         {"/msgId", 2},
         {"/uBit", false},
         {"/tlvs/0/type", "fecTlv"},
         {"/tlvs/0/typeCode", 0x100},
         {"/tlvs/0/length", 7},
         {"/tlvs/0/elements/0/type", "prefixElement"},
         {"/tlvs/0/elements/0/family", 1},
         {"/tlvs/0/elements/0/prefix", "10.0.0.0/24"},
         {"/tlvs/0/elements/0/prefixLength", 24},
         {"/tlvs/1/type", "genLabelTlv"},
         {"/tlvs/1/label", 16},
         {"/tlvs/2/hopCount", 3},
         {"/tlvs/3/lsrIds", Json::array({"10.0.0.1", "10.0.0.2"})}}},
       {"Label Mapping of a pseudowire with its MTU",
        "0001 002a 0a000001 0000 | 0400 0020 00000003 | 0100 0010 80 8005 08 00000007 00000064 01 04 05dc | "
        "0200 0004 00000011",
        {{"/valid", true},
         {"/tlvs/0/elements/0/type", "pwIdElement"},
         {"/tlvs/0/elements/0/pwType", "ethernet"},
         {"/tlvs/0/elements/0/pwTypeCode", 5},
         {"/tlvs/0/elements/0/controlWord", true},
         {"/tlvs/0/elements/0/groupId", 7},
         {"/tlvs/0/elements/0/pwId", 100},
         {"/tlvs/0/elements/0/params/mtu", 1500},
         {"/tlvs/1/label", 17}}},
       {"Notification: status with E bit, the message it answers; an unknown TLV with U and F",
        "0001 0022 0a000001 0000 | 0001 0018 00000001 | 0300 000a 8000000a 00000007 0200 | fe05 0002 0000",
        {{"/type", "LdpNotification"},
         {"/tlvs/0/status", "shutdown"},
         {"/tlvs/0/statusCode", 10},
         {"/tlvs/0/statusError", true},
         {"/tlvs/0/statusForwardUnknown", false},
         {"/tlvs/0/msgId", 7},
         {"/tlvs/0/msgType", "LdpInit"},
         {"/tlvs/0/msgTypeCode", 0x200},
         {"/tlvs/1/type", nullptr},
         {"/tlvs/1/typeCode", 0x3e05},
         {"/tlvs/1/uBit", true},
         {"/tlvs/1/fBit", true},
         {"/tlvs/1/length", 2}}},
       {"Hello: hold time, T and R bits, transport address",
        "0001 001e 0a000001 0000 | 0100 0014 00000001 | 0400 0004 000f 8000 | 0401 0004 0a000001",
        {{"/tlvs/0/type", "commonHelloTlv"},
         {"/tlvs/0/holdTime", 15},
         {"/tlvs/0/targetedHello", true},
         {"/tlvs/0/requestSendTargetedHello", false},
         {"/tlvs/1/ipAddr", "10.0.0.1"}}},
       {"Initialization: session parameters and a capability with its S bit",
        "0001 0025 0a000001 0000 | 0200 001b 00000001 | 0500 000e 0001 001e 40 00 1000 0a000002 0000 | 8506 0001 80",
        {{"/tlvs/0/protocolVersion", 1},
         {"/tlvs/0/keepAliveTime", 30},
         {"/tlvs/0/advDiscipline", false},
         {"/tlvs/0/loopDetect", true},
         {"/tlvs/0/maxPduLength", 4096},
         {"/tlvs/0/recvLdpIdentifier", "10.0.0.2:0"},
         {"/tlvs/1/type", "dynamicCapabilityTlv"},
         {"/tlvs/1/uBit", true},
         {"/tlvs/1/state", true}}},
       {"Address: the family and the list",
        "0001 001c 0a000001 0000 | 0300 0012 00000004 | 0101 000a 0001 0a000001 0a000002",
        {{"/type", "LdpAddress"},
         {"/tlvs/0/family", 1},
         {"/tlvs/0/addresses", Json::array({"10.0.0.1", "10.0.0.2"})}}},
       {"a TLV of the wrong size has its header only",
        "0001 0022 0a000001 0000 | 0400 0018 00000002 | 0100 0007 02 0001 18 0a0000 | 0200 0005 0000001000",
        {{"/valid", false},
         {"/status", "malformedTlv"},
         {"/tlvs/1/type", "genLabelTlv"},
         {"/tlvs/1/length", 5}}},
   };
   for (auto const & r : rows) {
      SCOPED_TRACE(r.what);
      Json const m = message(r.pdu);
      for (auto const & [pointer, value] : r.fields) {
         Json::json_pointer const p(pointer);
         ASSERT_TRUE(m.contains(p)) << pointer << " in " << m.dump();
         EXPECT_EQ(m.at(p), value) << pointer;
      }
   }
   // Fields come only from a TLV of the right size.
   Json const wrong = message(rows[6].pdu);
   EXPECT_FALSE(wrong["tlvs"][1].contains("label"));
}

} // namespace
