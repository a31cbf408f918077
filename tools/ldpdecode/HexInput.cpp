#include "HexInput.h"

#include <string>

namespace LdpDecode {

namespace {

int hexValue(char c) noexcept {
   if (c >= '0' && c <= '9') {
      return c - '0';
   }
   if (c >= 'a' && c <= 'f') {
      return c - 'a' + 10;
   }
   if (c >= 'A' && c <= 'F') {
      return c - 'A' + 10;
   }
   return -1;
}

bool isSeparator(char c) noexcept {
   return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == ':' || c == ',' || c == '-' || c == '|';
}

} // namespace

std::vector<std::uint8_t> parseHexText(std::string_view text) {
   std::vector<std::uint8_t> out;
   out.reserve(text.size() / 2);
   int hi = -1;
   unsigned line = 1;
   std::size_t lineStart = 0;
   auto where = [&](std::size_t i) {
      return "line " + std::to_string(line) + ", column " + std::to_string(i - lineStart + 1);
   };
   for (std::size_t i = 0; i < text.size(); ++i) {
      char const c = text[i];
      if (c == '\n') {
         ++line;
         lineStart = i + 1;
         continue;
      }
      if (c == '#') {
         while (i + 1 < text.size() && text[i + 1] != '\n') {
            ++i;
         }
         continue;
      }
      if (isSeparator(c)) {
         continue;
      }
      if (hi < 0 && c == '0' && i + 1 < text.size() && (text[i + 1] == 'x' || text[i + 1] == 'X')) {
         ++i;
         continue;
      }
      int const v = hexValue(c);
      if (v < 0) {
         std::string shown = (c >= 0x21 && c < 0x7F) ? std::string("'") + c + "'" : std::string("a control byte");
         throw InputError("hex input, " + where(i) + ": " + shown + " is not a hex digit");
      }
      if (hi < 0) {
         hi = v;
      } else {
         out.push_back(static_cast<std::uint8_t>(hi << 4 | v));
         hi = -1;
      }
   }
   if (hi >= 0) {
      throw InputError("hex input: odd number of hex digits (the last byte has one digit)");
   }
   return out;
}

} // namespace LdpDecode
