// A received (or built) packet buffer, reference counted so that every view into
// it keeps it alive. The front data is the part that holds the packet; parsers
// address it by byte offset from front().
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
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
   std::uint8_t * front() const noexcept { return data_.get(); }
   std::uint32_t frontBytes() const noexcept { return frontBytes_; }
   std::span<std::uint8_t const> bytes() const noexcept { return {data_.get(), frontBytes_}; }

 private:
   explicit Pkt(std::size_t n);
   std::unique_ptr<std::uint8_t[]> data_;
   std::uint32_t frontBytes_;
};

} // namespace Vorin
