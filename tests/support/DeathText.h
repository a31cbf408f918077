// Death-test patterns: an assertion prints its text on a line of its own, and the
// pattern must match that text literally, whatever regex characters it holds.
#pragma once

#include <cstring>
#include <string>
#include <string_view>

namespace TestSupport {

inline std::string literal(std::string_view text) {
   std::string re = "\n";
   for (char c : text) {
      if (std::strchr("()[]{}.*+?|^$\\", c)) {
         re += '\\';
      }
      re += c;
   }
   return re + "\n";
}

} // namespace TestSupport
