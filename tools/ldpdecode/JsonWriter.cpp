#include "JsonWriter.h"

#include <array>
#include <cstring>

namespace LdpDecode {

namespace {

constexpr char hexDigits[] = "0123456789abcdef";
constexpr std::string_view replacement = "\xEF\xBF\xBD";  // U+FFFD

// The bytes copied as they are: printable ASCII but the quote and the backslash.
constexpr auto plain = [] {
   std::array<bool, 256> t{};
   for (unsigned c = 0x20; c < 0x80; ++c) {
      t[c] = c != '"' && c != '\\';
   }
   return t;
}();

// False when none of the eight bytes at p is a control character, a quote, a
// backslash or above 0x7F; true when one may be.
bool mayNeedEscape(char const * p) noexcept {
   constexpr std::uint64_t ones = 0x0101010101010101u;
   constexpr std::uint64_t highs = 0x8080808080808080u;
   std::uint64_t v;
   std::memcpy(&v, p, 8);
   auto const hasZero = [](std::uint64_t x) { return (x - ones) & ~x & highs; };
   std::uint64_t const below20 = (v - 0x20 * ones) & ~v & highs;
   return ((v & highs) | below20 | hasZero(v ^ ('"' * ones)) | hasZero(v ^ ('\\' * ones))) != 0;
}

// The length of the valid UTF-8 sequence that starts at s[i] (2 to 4), or 0
// when the bytes there are not one (overlong forms and surrogates included).
std::size_t utf8Sequence(std::string_view s, std::size_t i) noexcept {
   auto const at = [&](std::size_t k) -> unsigned {
      return i + k < s.size() ? static_cast<unsigned char>(s[i + k]) : 0u;
   };
   auto const cont = [](unsigned b) { return (b & 0xC0u) == 0x80u; };
   unsigned const b0 = at(0);
   unsigned const b1 = at(1);
   if (b0 >= 0xC2 && b0 <= 0xDF) {
      return cont(b1) ? 2 : 0;
   }
   if (b0 >= 0xE0 && b0 <= 0xEF) {
      unsigned const lo = b0 == 0xE0 ? 0xA0 : 0x80;
      unsigned const hi = b0 == 0xED ? 0x9F : 0xBF;
      return b1 >= lo && b1 <= hi && cont(at(2)) ? 3 : 0;
   }
   if (b0 >= 0xF0 && b0 <= 0xF4) {
      unsigned const lo = b0 == 0xF0 ? 0x90 : 0x80;
      unsigned const hi = b0 == 0xF4 ? 0x8F : 0xBF;
      return b1 >= lo && b1 <= hi && cont(at(2)) && cont(at(3)) ? 4 : 0;
   }
   return 0;
}

} // namespace

char * writeJsonString(char * p, std::string_view s) noexcept {
   *p++ = '"';
   std::size_t run = 0;  // start of the bytes not yet copied
   std::size_t i = 0;
   auto flush = [&] {
      std::memcpy(p, s.data() + run, i - run);
      p += i - run;
   };
   while (i < s.size()) {
      // Eight bytes at a time while none of them needs a look of its own.
      while (i + 8 <= s.size() && !mayNeedEscape(s.data() + i)) {
         i += 8;
      }
      if (i >= s.size()) {
         break;
      }
      unsigned char const c = static_cast<unsigned char>(s[i]);
      if (plain[c]) {
         ++i;
         continue;
      }
      if (c >= 0x80) {
         if (std::size_t const n = utf8Sequence(s, i)) {
            i += n;
            continue;
         }
      }
      flush();
      *p++ = '\\';
      switch (c) {
       case '"':
       case '\\':
         *p++ = static_cast<char>(c);
         break;
       case '\n':
         *p++ = 'n';
         break;
       case '\r':
         *p++ = 'r';
         break;
       case '\t':
         *p++ = 't';
         break;
       case '\b':
         *p++ = 'b';
         break;
       case '\f':
         *p++ = 'f';
         break;
       default:
         if (c >= 0x80) {
            --p;  // no backslash: the replacement character itself
            std::memcpy(p, replacement.data(), replacement.size());
            p += replacement.size();
         } else {
            char const esc[] = {'u', '0', '0', hexDigits[c >> 4], hexDigits[c & 0xF]};
            std::memcpy(p, esc, sizeof esc);
            p += sizeof esc;
         }
      }
      run = ++i;
   }
   flush();
   *p++ = '"';
   return p;
}

void appendJsonString(std::string & out, std::string_view s) {
   std::size_t const at = out.size();
   out.resize(at + jsonStringRoom(s.size()));
   char * const end = writeJsonString(out.data() + at, s);
   out.resize(static_cast<std::size_t>(end - out.data()));
}

} // namespace LdpDecode
