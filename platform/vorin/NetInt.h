// Integers held in network byte order. They are byte arrays with alignment 1, so
// a wire structure made of them can be laid over any offset of a received buffer;
// the value converts on every read and write.
#pragma once

#include <cstdint>
#include <type_traits>

namespace Vorin {

class NetU16 {
 public:
   constexpr NetU16() noexcept = default;
   // From a host-order value.
   static constexpr NetU16 fromHost(std::uint16_t v) noexcept {
      NetU16 n;
      n.valueIs(v);
      return n;
   }
   constexpr std::uint16_t value() const noexcept {
      return static_cast<std::uint16_t>((b_[0] << 8) | b_[1]);
   }
   constexpr void valueIs(std::uint16_t v) noexcept {
      b_[0] = static_cast<std::uint8_t>(v >> 8);
      b_[1] = static_cast<std::uint8_t>(v);
   }
   constexpr std::uint8_t byte(unsigned i) const noexcept { return b_[i]; }
   constexpr bool operator==(NetU16 const & o) const noexcept = default;

 private:
   std::uint8_t b_[2] = {0, 0};
};

class NetU32 {
 public:
   constexpr NetU32() noexcept = default;
   static constexpr NetU32 fromHost(std::uint32_t v) noexcept {
      NetU32 n;
      n.valueIs(v);
      return n;
   }
   constexpr std::uint32_t value() const noexcept {
      return (std::uint32_t(b_[0]) << 24) | (std::uint32_t(b_[1]) << 16) |
             (std::uint32_t(b_[2]) << 8) | std::uint32_t(b_[3]);
   }
   constexpr void valueIs(std::uint32_t v) noexcept {
      b_[0] = static_cast<std::uint8_t>(v >> 24);
      b_[1] = static_cast<std::uint8_t>(v >> 16);
      b_[2] = static_cast<std::uint8_t>(v >> 8);
      b_[3] = static_cast<std::uint8_t>(v);
   }
   constexpr std::uint8_t byte(unsigned i) const noexcept { return b_[i]; }
   constexpr bool operator==(NetU32 const & o) const noexcept = default;

 private:
   std::uint8_t b_[4] = {0, 0, 0, 0};
};

static_assert(sizeof(NetU16) == 2 && alignof(NetU16) == 1);
static_assert(sizeof(NetU32) == 4 && alignof(NetU32) == 1);
static_assert(std::is_trivially_copyable_v<NetU16> && std::is_trivially_copyable_v<NetU32>);

} // namespace Vorin
