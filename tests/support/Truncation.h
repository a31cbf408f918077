// Truncation tables: a valid item written as hex fragments, each paired with the
// fault expected when the received bytes end inside that fragment. checkEveryPrefix
// parses every proper prefix of the item and compares, then the whole item with
// garbage appended, which must not be consumed.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "ldp/wire/LdpWireEnums.h"
#include "support/Hex.h"

namespace TestSupport {

struct Outcome {
   Ldp::LdpStatusCode code;
   std::string reason;
};

struct Fragment {
   std::string hex;
   Ldp::LdpStatusCode code; // expected when the bytes end inside this fragment
   std::string reason;      // "{n}" stands for the number of bytes received
};

inline std::string withCount(std::string reason, std::size_t n) {
   auto pos = reason.find("{n}");
   if (pos != std::string::npos) {
      reason.replace(pos, 3, std::to_string(n));
   }
   return reason;
}

// `parse` takes the received bytes and answers the outcome.
inline void checkEveryPrefix(std::vector<Fragment> const & fragments, Outcome const & whole,
                             std::function<Outcome(std::vector<std::uint8_t> const &)> const & parse) {
   std::vector<std::uint8_t> all;
   std::vector<std::size_t> fragmentOf;
   for (std::size_t f = 0; f < fragments.size(); ++f) {
      for (auto b : hexBytes(fragments[f].hex)) {
         all.push_back(b);
         fragmentOf.push_back(f);
      }
   }
   for (std::size_t n = 1; n < all.size(); ++n) {
      // Bytes end inside the fragment of byte n (the first byte missing).
      Fragment const & f = fragments[fragmentOf[n]];
      Outcome got = parse(std::vector<std::uint8_t>(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(n)));
      EXPECT_EQ(got.code, f.code) << "cut after " << n << " bytes, inside fragment " << fragmentOf[n];
      EXPECT_EQ(got.reason, withCount(f.reason, n)) << "cut after " << n << " bytes";
   }
   Outcome got = parse(all);
   EXPECT_EQ(got.code, whole.code) << "whole item";
   EXPECT_EQ(got.reason, whole.reason) << "whole item";
   auto padded = all;
   padded.insert(padded.end(), {0xde, 0xad, 0xbe, 0xef});
   got = parse(padded);
   EXPECT_EQ(got.code, whole.code) << "with garbage appended";
   EXPECT_EQ(got.reason, whole.reason) << "with garbage appended";
}

} // namespace TestSupport
