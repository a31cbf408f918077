#include "CaptureTypes.h"

#include <cstdio>
#include <ctime>

namespace LdpDecode {

char const * transportName(Transport t) noexcept {
   return t == Transport::udp ? "UDP" : "TCP";
}

std::string Endpoint::text() const {
   std::string a = addr.stringValue();
   std::string out;
   out.reserve(a.size() + 8);
   if (addr.isV6()) {
      out += '[';
      out += a;
      out += ']';
   } else {
      out += a;
   }
   out += ':';
   out += std::to_string(port);
   return out;
}

std::size_t FlowKeyHash::operator()(FlowKey const & k) const noexcept {
   std::size_t h = static_cast<std::size_t>(k.transport);
   auto mix = [&h](Endpoint const & e) {
      for (unsigned i = 0; i < e.addr.byteLength(); ++i) {
         h = h * 131u + e.addr.bytes()[i];
      }
      h = h * 65599u + e.port;
   };
   mix(k.src);
   mix(k.dst);
   return h;
}

namespace {

std::string formatTime(FrameMeta const & f, char const * format) {
   std::time_t const t = static_cast<std::time_t>(f.seconds);
   std::tm tm{};
   gmtime_r(&t, &tm);
   char buf[48];
   std::snprintf(buf, sizeof buf, format, tm.tm_year + 1900, tm.tm_mon + 1, tm.tm_mday, tm.tm_hour, tm.tm_min,
                 tm.tm_sec, static_cast<unsigned>(f.micros));
   return buf;
}

} // namespace

std::string timeText(FrameMeta const & f) {
   return formatTime(f, "%04d-%02d-%02d %02d:%02d:%02d.%06u");
}

std::string isoTimeText(FrameMeta const & f) {
   return formatTime(f, "%04d-%02d-%02dT%02d:%02d:%02d.%06uZ");
}

} // namespace LdpDecode
