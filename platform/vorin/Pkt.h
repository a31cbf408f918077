// A received (or built) packet buffer, reference counted so that every view into
// it keeps it alive. The front data is the part that holds the packet; parsers
// address it by byte offset from front().
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "zon/Ptr.h"

namespace Vorin {

class Pkt : public Zon::PtrInterface {
 public:
   using Ptr = Zon::Ptr<Pkt>;

   // A packet holding a copy of `bytes` as its front data.
   static Ptr fromBytes(std::span<std::uint8_t const> bytes);
   // A packet with `n` zeroed front bytes, for building.
   static Ptr ofSize(std::size_t n);

   // The first byte of the front data; never null, even for an empty packet.
   std::uint8_t * front() const noexcept {
      return reinterpret_cast<std::uint8_t *>(const_cast<Pkt *>(this) + 1);
   }
   std::uint32_t frontBytes() const noexcept { return frontBytes_; }
   std::span<std::uint8_t const> bytes() const noexcept { return {front(), frontBytes_}; }

 private:
   // The bytes live in the same block, right behind the object: one allocation
   // per packet. An empty packet still has one (zero) byte there.
   struct Storage {
      std::size_t bytes;
   };
   static void * operator new(std::size_t self, Storage s);
   static void operator delete(void * block, Storage) noexcept;
   static void operator delete(void * block) noexcept;
   // A packet of n front bytes, uninitialised.
   static Pkt * make(std::size_t n);

   explicit Pkt(std::uint32_t n) noexcept : frontBytes_(n) {}
   std::uint32_t frontBytes_;
};

} // namespace Vorin
