#include "vorin/Pkt.h"

#include <cstring>

namespace Vorin {

Pkt::Pkt(std::size_t n)
    : data_(new std::uint8_t[n ? n : 1]()), frontBytes_(static_cast<std::uint32_t>(n)) {}

Pkt::Ptr Pkt::fromBytes(std::span<std::uint8_t const> bytes) {
   Ptr p(new Pkt(bytes.size()));
   if (!bytes.empty()) {
      std::memcpy(p->data_.get(), bytes.data(), bytes.size());
   }
   return p;
}

Pkt::Ptr Pkt::ofSize(std::size_t n) { return Ptr(new Pkt(n)); }

} // namespace Vorin
