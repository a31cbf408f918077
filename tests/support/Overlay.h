// Wire values made from golden hex: a copy the size of the value, or the bytes
// in a heap block of exactly their size so that AddressSanitizer catches a view
// that reads one byte past the item.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "support/Hex.h"

namespace TestSupport {

// A fixed-size wire value copied out of golden bytes; the bytes must be exactly its size.
template <typename T>
T overlay(std::string_view hex) {
   auto b = hexBytes(hex);
   EXPECT_EQ(b.size(), sizeof(T)) << hex;
   T t;
   std::memcpy(&t, b.data(), std::min(b.size(), sizeof(T)));
   return t;
}

// Golden bytes in a heap block of exactly their size, laid over by a wire type.
class ExactBuf {
 public:
   explicit ExactBuf(std::string_view hex) {
      auto b = hexBytes(hex);
      size_ = b.size();
      bytes_ = std::make_unique<std::uint8_t[]>(size_);
      std::memcpy(bytes_.get(), b.data(), size_);
   }
   template <typename T>
   T & as() {
      return *reinterpret_cast<T *>(bytes_.get());
   }
   std::string hex() const { return toHex(std::span<std::uint8_t const>(bytes_.get(), size_)); }

 private:
   std::unique_ptr<std::uint8_t[]> bytes_;
   std::size_t size_ = 0;
};

} // namespace TestSupport
