#include "JsonWriter.h"

namespace LdpDecode {

namespace {

constexpr char hexDigits[] = "0123456789abcdef";
constexpr std::string_view replacement = "\xEF\xBF\xBD";  // U+FFFD

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

void appendJsonString(std::string & out, std::string_view s) {
   out += '"';
   std::size_t run = 0;  // start of the bytes not yet copied
   std::size_t i = 0;
   while (i < s.size()) {
      unsigned char const c = static_cast<unsigned char>(s[i]);
      if (c >= 0x20 && c != '"' && c != '\\' && c < 0x80) {
         ++i;
         continue;
      }
      if (c >= 0x80) {
         if (std::size_t const n = utf8Sequence(s, i)) {
            i += n;
            continue;
         }
      }
      out.append(s.data() + run, i - run);
      switch (c) {
       case '"':
         out += "\\\"";
         break;
       case '\\':
         out += "\\\\";
         break;
       case '\n':
         out += "\\n";
         break;
       case '\r':
         out += "\\r";
         break;
       case '\t':
         out += "\\t";
         break;
       case '\b':
         out += "\\b";
         break;
       case '\f':
         out += "\\f";
         break;
       default:
         if (c >= 0x80) {
            out += replacement;
         } else {
            char const esc[] = {'\\', 'u', '0', '0', hexDigits[c >> 4], hexDigits[c & 0xF]};
            out.append(esc, sizeof esc);
         }
      }
      run = ++i;
   }
   out.append(s.data() + run, s.size() - run);
   out += '"';
}

} // namespace LdpDecode
