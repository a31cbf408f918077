// Combining the hashes of a value's fields into one 32-bit hash, in the manner of
// MurmurHash3's 32-bit body and finaliser: each field's hash is mixed into the
// running state in order, and the result is avalanched once at the end. Fixed
// width, so a key hashes the same on 32-bit and 64-bit builds.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

namespace Zon {

constexpr std::uint32_t rotl32(std::uint32_t x, unsigned r) noexcept {
   return (x << r) | (x >> (32 - r));
}

// Mixes one 32-bit word into the running state h.
constexpr std::uint32_t hashMix32(std::uint32_t h, std::uint32_t k) noexcept {
   k *= 0xcc9e2d51u;
   k = rotl32(k, 15);
   k *= 0x1b873593u;
   h ^= k;
   h = rotl32(h, 13);
   return h * 5u + 0xe6546b64u;
}

// The final avalanche; `words` is the number of words mixed in.
constexpr std::uint32_t hashFinish32(std::uint32_t h, std::uint32_t words) noexcept {
   h ^= words * 4u;
   h ^= h >> 16;
   h *= 0x85ebca6bu;
   h ^= h >> 13;
   h *= 0xc2b2ae35u;
   h ^= h >> 16;
   return h;
}

// The 32-bit hash of a value's fields, each hashed by std::hash (folded to 32 bits).
template <typename... Fields>
std::uint32_t hashFields32(Fields const &... fields) noexcept {
   std::uint32_t h = 0;
   auto mix = [&h](std::size_t v) {
      h = hashMix32(h, static_cast<std::uint32_t>(v ^ (static_cast<std::uint64_t>(v) >> 32)));
   };
   (mix(std::hash<Fields>()(fields)), ...);
   return hashFinish32(h, sizeof...(Fields));
}

} // namespace Zon
