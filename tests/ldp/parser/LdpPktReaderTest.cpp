// The bounded reader every parser reads through: reads at, across and past the
// bounds of its window, child readers clipped to their parent, and the sticky
// failure that lets a sequence of reads be checked once.
#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "ldp/parser/LdpPktReader.h"

namespace {

using Ldp::LdpPktReader;

struct Bytes4 {
   std::uint8_t b[4];
};

Zon::Ptr<Vorin::Pkt> packet() {
   std::vector<std::uint8_t> bytes(16);
   for (std::size_t i = 0; i < bytes.size(); ++i) {
      bytes[i] = std::uint8_t(0x10 + i);
   }
   return Vorin::Pkt::fromBytes(bytes);
}

TEST(LdpPktReader, ReadsAtAcrossAndPastTheBounds) {
   auto const pkt = packet();
   LdpPktReader const whole(*pkt);
   LdpPktReader const item = whole.child(4, 8); // bytes 4 to 11
   struct Row {
      char const * what;
      std::uint32_t offset;
      bool u8, u16, u32, view4;
   };
   Row const rows[] = {
      {"before the window", 3, false, false, false, false},
      {"at its first byte", 4, true, true, true, true},
      {"four bytes before its end", 8, true, true, true, true},
      {"across its end", 9, true, true, false, false},
      {"its last byte", 11, true, false, false, false},
      {"at its end", 12, false, false, false, false},
      {"far past it", 0xFFFFFFF0u, false, false, false, false},
   };
   for (Row const & r : rows) {
      EXPECT_EQ(item.u8(r.offset).has_value(), r.u8) << r.what;
      EXPECT_EQ(item.u16(r.offset).has_value(), r.u16) << r.what;
      EXPECT_EQ(item.u32(r.offset).has_value(), r.u32) << r.what;
      EXPECT_EQ(item.view<Bytes4>(r.offset) != nullptr, r.view4) << r.what;
   }
   EXPECT_EQ(item.u16(4), 0x1415);
   EXPECT_EQ(item.u32(8), 0x18191a1bu);
   // A view of an item whose length says more than is there, or less than the type.
   EXPECT_EQ(item.view<Bytes4>(4, 8), reinterpret_cast<Bytes4 *>(pkt->front() + 4));
   EXPECT_EQ(item.view<Bytes4>(4, 9), nullptr);
   EXPECT_EQ(item.view<Bytes4>(4, 3), nullptr);
   EXPECT_EQ(item.remaining(10), 2u);
   EXPECT_EQ(item.remaining(12), 0u);
   EXPECT_EQ(item.remaining(2), 0u);
}

TEST(LdpPktReader, ChildrenAreClippedToTheirParent) {
   auto const pkt = packet();
   LdpPktReader const item = LdpPktReader(*pkt).child(4, 8);
   struct Row {
      std::uint32_t offset, length, begin, end;
   };
   Row const rows[] = {
      {6, 2, 6, 8},       // inside
      {6, 100, 6, 12},    // a length that runs past the parent stops at its end
      {2, 4, 4, 8},       // an offset before the parent starts at its start
      {20, 4, 12, 12},    // past the parent: empty, at its end
      {12, 0, 12, 12},
      {4, 0xFFFFFFFFu, 4, 12},
   };
   for (Row const & r : rows) {
      LdpPktReader const c = item.child(r.offset, r.length);
      EXPECT_EQ(c.begin(), r.begin) << r.offset << "+" << r.length;
      EXPECT_EQ(c.end(), r.end) << r.offset << "+" << r.length;
   }
   // A grandchild cannot reach past its parent's window either.
   LdpPktReader const grandchild = item.child(10, 10).child(10, 10);
   EXPECT_EQ(grandchild.end(), 12u);
   EXPECT_FALSE(grandchild.u16(11).has_value());
}

TEST(LdpPktReader, FailureSticksAndGoesToChildren) {
   auto const pkt = packet();
   LdpPktReader const item = LdpPktReader(*pkt).child(4, 8);
   EXPECT_TRUE(item.ok());
   EXPECT_TRUE(item.u32(4).has_value());
   EXPECT_TRUE(item.ok());
   LdpPktReader const before = item.child(4, 4);
   EXPECT_FALSE(item.u32(10).has_value()); // across the end
   EXPECT_FALSE(item.ok());
   EXPECT_TRUE(item.u8(4).has_value()); // later reads still work...
   EXPECT_FALSE(item.ok());              // ...and the failure stays
   EXPECT_TRUE(before.ok());             // a child cut before the failure keeps its own record
   EXPECT_FALSE(item.child(4, 4).ok());  // one cut after it starts failed
   LdpPktReader const fresh = LdpPktReader(*pkt).child(4, 8);
   EXPECT_EQ(fresh.view<Bytes4>(11), nullptr);
   EXPECT_FALSE(fresh.ok());
   // Asking whether bytes are there is not a failed read.
   LdpPktReader const asked = LdpPktReader(*pkt).child(4, 8);
   EXPECT_FALSE(asked.contains(11, 2));
   EXPECT_TRUE(asked.ok());
}

} // namespace
