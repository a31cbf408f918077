// Building messages as hex for the message parser tests, and running tables of
// faulty messages through a parser.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "ldp/parser/LdpMsgParserGet.h"
#include "support/Hex.h"
#include "support/Truncation.h"
#include "vorin/Pkt.h"
#include "zon/Ptr.h"

namespace TestSupport {

// The length field of `hex`'s bytes, as 4 hex digits.
inline std::string lengthHex(std::string const & hex, std::size_t extra = 0) {
   char length[8];
   std::snprintf(length, sizeof length, "%04zx", hexBytes(hex).size() + extra);
   return length;
}

// A message of `type` (4 hex digits) with message id `id` (8 hex digits) around
// `tlvs`; the length field is counted from the hex.
inline std::string messageHex(char const * type, char const * id, std::string const & tlvs) {
   return std::string(type) + " " + lengthHex(tlvs, 4) + " " + id + " | " + tlvs;
}

// A TLV of `type` around `value`, its length counted from the hex.
inline std::string tlvHex(char const * type, std::string const & value) {
   return std::string(type) + " " + lengthHex(value) + " " + value + " | ";
}

template <typename P>
Outcome outcomeOf(Zon::Ptr<P> const & p) {
   return {p->statusCode(), p->reason()};
}

// The outcome of the message at the start of `bytes`, through ldpMsgParserGet.
inline Outcome viaGet(std::vector<std::uint8_t> const & bytes) {
   return outcomeOf(Ldp::ldpMsgParserGet(Vorin::Pkt::fromBytes(bytes), 0));
}

struct FaultCase {
   char const * name;
   std::string hex;
   Ldp::LdpStatusCode code;
   char const * reason;
};

using Factory = std::function<Outcome(Vorin::Pkt::Ptr const &)>;

// Each case's message through `parse`: its status code and reason.
inline void checkFaults(std::vector<FaultCase> const & cases, Factory const & parse) {
   for (auto const & c : cases) {
      Outcome const o = parse(hexPkt(c.hex));
      EXPECT_EQ(o.code, c.code) << c.name;
      EXPECT_EQ(o.reason, c.reason) << c.name;
   }
}

} // namespace TestSupport
