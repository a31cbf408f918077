// The one place where the receive path turns a byte offset into a pointer. A reader
// covers a window [begin, end) of a packet's front data; every view it hands out
// lies wholly inside that window, and a child reader covers one item of it, so a
// nested item can never run into the next one. Offsets are absolute: counted from
// the start of the packet's front data, as the parsers' offsets are.
#pragma once

#include <cstdint>
#include <optional>

#include "vorin/Pkt.h"

namespace Ldp {

class LdpPktReader {
 public:
   LdpPktReader() noexcept = default;
   explicit LdpPktReader(Vorin::Pkt const & pkt) noexcept
       : base_(pkt.front()), begin_(0), end_(pkt.frontBytes()) {}

   std::uint32_t begin() const noexcept { return begin_; }
   std::uint32_t end() const noexcept { return end_; }

   // False once any read or view of this reader (or of the reader it was cut
   // from, before the cut) asked for bytes outside its window: a sequence of reads
   // can be made and checked once. A failed read still returns nothing.
   bool ok() const noexcept { return !failed_; }

   // True when the n bytes at offset lie inside the window.
   bool contains(std::uint32_t offset, std::uint32_t n) const noexcept {
      return offset >= begin_ && offset <= end_ && n <= end_ - offset;
   }
   // Bytes of the window from offset to its end; 0 outside it.
   std::uint32_t remaining(std::uint32_t offset) const noexcept {
      return offset >= begin_ && offset < end_ ? end_ - offset : 0;
   }

   // A view of T at offset, or null when its sizeof(T) bytes are not all present.
   template <typename T>
   T * view(std::uint32_t offset) const noexcept {
      return checked(offset, sizeof(T)) ? reinterpret_cast<T *>(base_ + offset) : nullptr;
   }
   // A view of T at offset whose whole item (header and value) is n bytes long, or
   // null unless all n bytes are present and n covers T itself.
   template <typename T>
   T * view(std::uint32_t offset, std::uint32_t n) const noexcept {
      return n >= sizeof(T) && checked(offset, n) ? reinterpret_cast<T *>(base_ + offset) : nullptr;
   }

   std::optional<std::uint8_t> u8(std::uint32_t offset) const noexcept {
      if (!checked(offset, 1)) {
         return std::nullopt;
      }
      return base_[offset];
   }
   std::optional<std::uint16_t> u16(std::uint32_t offset) const noexcept {
      if (!checked(offset, 2)) {
         return std::nullopt;
      }
      return static_cast<std::uint16_t>(base_[offset] << 8 | base_[offset + 1]);
   }
   std::optional<std::uint32_t> u32(std::uint32_t offset) const noexcept {
      if (!checked(offset, 4)) {
         return std::nullopt;
      }
      return std::uint32_t(base_[offset]) << 24 | std::uint32_t(base_[offset + 1]) << 16 |
             std::uint32_t(base_[offset + 2]) << 8 | std::uint32_t(base_[offset + 3]);
   }

   // The reader of the n bytes at offset, clipped to this window.
   LdpPktReader child(std::uint32_t offset, std::uint32_t n) const noexcept {
      LdpPktReader r;
      r.base_ = base_;
      r.begin_ = offset < begin_ ? begin_ : (offset > end_ ? end_ : offset);
      std::uint32_t const room = end_ - r.begin_;
      r.end_ = r.begin_ + (n < room ? n : room);
      r.failed_ = failed_;
      return r;
   }

 private:
   bool checked(std::uint32_t offset, std::uint32_t n) const noexcept {
      if (contains(offset, n)) [[likely]] {
         return true;
      }
      failed_ = true;
      return false;
   }

   std::uint8_t * base_ = nullptr;
   std::uint32_t begin_ = 0;
   std::uint32_t end_ = 0;
   mutable bool failed_ = false;
};

} // namespace Ldp
