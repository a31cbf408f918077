#include "zon/String.h"

#include <cstdarg>

namespace Zon {

String8 format(char const * fmt, ...) {
   char small[256];
   va_list ap;
   va_start(ap, fmt);
   int n = std::vsnprintf(small, sizeof small, fmt, ap);
   va_end(ap);
   if (n < 0) {
      return String8();
   }
   if (static_cast<std::size_t>(n) < sizeof small) {
      return String8(small, static_cast<std::size_t>(n));
   }
   String8 out(static_cast<std::size_t>(n), '\0');
   va_start(ap, fmt);
   std::vsnprintf(out.data(), out.size() + 1, fmt, ap);
   va_end(ap);
   return out;
}

} // namespace Zon
