#include "zon/Value.h"

#include <charconv>
#include <cmath>
#include <cstdio>

namespace Zon {

void appendValueText(std::string & out, bool v) { out += v ? "True" : "False"; }

void appendValueText(std::string & out, std::uint64_t v) { out += std::to_string(v); }

void appendValueText(std::string & out, std::int64_t v) { out += std::to_string(v); }

void appendValueText(std::string & out, double v) {
   if (std::isnan(v)) {
      out += "nan";
      return;
   }
   if (std::isinf(v)) {
      out += v < 0 ? "-inf" : "inf";
      return;
   }
   char buf[64];
   auto r = std::to_chars(buf, buf + sizeof buf, v);
   std::string_view s(buf, static_cast<std::size_t>(r.ptr - buf));
   out += s;
   if (s.find_first_of(".e") == std::string_view::npos) {
      out += ".0";
   }
}

void appendValueText(std::string & out, std::string_view v) {
   out += '\'';
   for (unsigned char c : v) {
      switch (c) {
       case '\\': out += "\\\\"; break;
       case '\'': out += "\\'"; break;
       case '\n': out += "\\n"; break;
       case '\r': out += "\\r"; break;
       case '\t': out += "\\t"; break;
       default:
         if (c < 0x20 || c == 0x7f) {
            char hex[5];
            std::snprintf(hex, sizeof hex, "\\x%02x", c);
            out += hex;
         } else {
            out += static_cast<char>(c);
         }
      }
   }
   out += '\'';
}

} // namespace Zon
