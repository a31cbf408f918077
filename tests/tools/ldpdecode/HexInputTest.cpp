#include "HexInput.h"

#include <gtest/gtest.h>

#include "support/Hex.h"

using namespace LdpDecode;
using TestSupport::toHex;

namespace {

TEST(ParseHexText, AcceptsTheUsualWaysOfWritingBytes) {
   struct Row {
      char const * text;
      char const * bytes;
   };
   Row const rows[] = {
       {"0001001e", "0001001e"},
       {"00 01 00 1E", "0001001e"},
       {"0x00, 0x01, 0X00,0x1e", "0001001e"},
       {"00:01-00|1e", "0001001e"},
       {"0001\r\n001e\n", "0001001e"},
       {"# a Keepalive\n0001 000e # header\n0a000001 0000\n", "0001000e0a0000010000"},
       {"", ""},
   };
   for (Row const & row : rows) {
      auto const b = parseHexText(row.text);
      EXPECT_EQ(toHex(std::span<std::uint8_t const>(b)), row.bytes) << row.text;
   }
}

TEST(ParseHexText, RefusesOtherCharactersWithTheirPlace) {
   struct Row {
      char const * text;
      char const * message;
   };
   Row const rows[] = {
       {"0001 00g1", "hex input, line 1, column 8: 'g' is not a hex digit"},
       {"0001\n 001e\n 0a0z", "hex input, line 3, column 5: 'z' is not a hex digit"},
       {"00\x01", "hex input, line 1, column 3: a control byte is not a hex digit"},
       {"0001 001", "hex input: odd number of hex digits (the last byte has one digit)"},
   };
   for (Row const & row : rows) {
      try {
         parseHexText(row.text);
         ADD_FAILURE() << "accepted: " << row.text;
      } catch (InputError const & e) {
         EXPECT_STREQ(e.what(), row.message);
      }
   }
}

} // namespace
