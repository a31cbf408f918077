#include "vorin/Pkt.h"

#include <cstring>
#include <cstdint>
#include <new>

#include "zon/Exception.h"

namespace Vorin {

void * Pkt::operator new(std::size_t self, Storage s) { return ::operator new(self + s.bytes); }

void Pkt::operator delete(void * block, Storage) noexcept { ::operator delete(block); }

void Pkt::operator delete(void * block) noexcept { ::operator delete(block); }

Pkt * Pkt::make(std::size_t n) {
   if (n > UINT32_MAX) {
      throw Zon::RangeException("packet of more than 2^32 - 1 bytes");
   }
   auto * p = new (Storage{n ? n : 1}) Pkt(static_cast<std::uint32_t>(n));
   if (!n) {
      *p->front() = 0;
   }
   return p;
}

Pkt::Ptr Pkt::fromBytes(std::span<std::uint8_t const> bytes) {
   Ptr p(make(bytes.size()));
   if (!bytes.empty()) {
      std::memcpy(p->front(), bytes.data(), bytes.size());
   }
   return p;
}

Pkt::Ptr Pkt::ofSize(std::size_t n) {
   Ptr p(make(n));
   std::memset(p->front(), 0, n ? n : 1);
   return p;
}

} // namespace Vorin
