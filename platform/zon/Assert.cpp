#include "zon/Assert.h"

#include <cstdio>
#include <cstdlib>

namespace Zon {

void assertionFailed(char const * text, char const * file, int line) noexcept {
   std::fprintf(stderr, "assertion failed at %s:%d\n%s\n", file, line, text);
   std::fflush(stderr);
   std::abort();
}

} // namespace Zon
