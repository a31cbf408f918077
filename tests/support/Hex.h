// Golden bytes in tests are written as hex: "0001 001e 0a00 0001 0000" (blanks,
// newlines and '|' separators are ignored).
#pragma once

#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "vorin/Pkt.h"

namespace TestSupport {

inline std::vector<std::uint8_t> hexBytes(std::string_view hex) {
   std::vector<std::uint8_t> out;
   int hi = -1;
   for (char c : hex) {
      int v;
      if (c >= '0' && c <= '9') {
         v = c - '0';
      } else if (c >= 'a' && c <= 'f') {
         v = c - 'a' + 10;
      } else if (c >= 'A' && c <= 'F') {
         v = c - 'A' + 10;
      } else if (c == ' ' || c == '\n' || c == '\t' || c == '|') {
         continue;
      } else {
         throw std::invalid_argument("bad hex digit in test data: " + std::string(hex));
      }
      if (hi < 0) {
         hi = v;
      } else {
         out.push_back(static_cast<std::uint8_t>(hi << 4 | v));
         hi = -1;
      }
   }
   if (hi >= 0) {
      throw std::invalid_argument("odd number of hex digits in test data: " + std::string(hex));
   }
   return out;
}

inline Vorin::Pkt::Ptr hexPkt(std::string_view hex) {
   auto b = hexBytes(hex);
   return Vorin::Pkt::fromBytes(b);
}

inline std::string toHex(std::span<std::uint8_t const> bytes) {
   static char const digits[] = "0123456789abcdef";
   std::string s;
   for (auto b : bytes) {
      s += digits[b >> 4];
      s += digits[b & 15];
   }
   return s;
}

// The bytes of a wire value, for comparison with golden hex.
template <typename T>
std::string toHex(T const & wire) {
   return toHex(std::span<std::uint8_t const>(reinterpret_cast<std::uint8_t const *>(&wire), sizeof(T)));
}

} // namespace TestSupport
