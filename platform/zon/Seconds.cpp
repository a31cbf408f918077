#include "zon/Seconds.h"

#include <chrono>

namespace Zon {

namespace {
std::function<Seconds()> & nowSource() {
   static std::function<Seconds()> source;
   return source;
}
} // namespace

Seconds Seconds::now() {
   if (auto const & s = nowSource()) {
      return s();
   }
   auto d = std::chrono::steady_clock::now().time_since_epoch();
   return Seconds(std::chrono::duration<double>(d).count());
}

void nowSourceIs(std::function<Seconds()> source) { nowSource() = std::move(source); }

} // namespace Zon
