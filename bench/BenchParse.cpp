// Parse cost of the receive path: PDU parser plus ldpMsgParserGet for every
// message, on five kinds of PDU, with heap allocations counted per message. The
// baseline only walks the framing (PDU header, message headers, TLV headers) with
// bounds checks; every figure is also reported as a ratio to it.
// The allocations are counted by replacing the global operator new; GCC then
// takes library code that frees with the sized delete for a mismatch.
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"

#include <benchmark/benchmark.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <string>
#include <vector>

#include "ldp/parser/LdpMsgParserGet.h"
#include "ldp/parser/LdpPduParser.h"
#include "support/AllocCount.h"
#include "vorin/Pkt.h"

namespace {

// A tiny byte writer for building PDUs; field layouts are written out here on
// purpose, independent of the wire types under measurement.
struct Bytes {
   std::vector<std::uint8_t> b;
   Bytes & u8(unsigned v) {
      b.push_back(static_cast<std::uint8_t>(v));
      return *this;
   }
   Bytes & u16(unsigned v) { return u8(v >> 8).u8(v); }
   Bytes & u32(std::uint32_t v) { return u16(v >> 16).u16(v & 0xFFFF); }
   Bytes & add(Bytes const & o) {
      b.insert(b.end(), o.b.begin(), o.b.end());
      return *this;
   }
   std::size_t size() const { return b.size(); }
};

Bytes tlv(unsigned type, Bytes const & value) { return Bytes().u16(type).u16(unsigned(value.size())).add(value); }
Bytes msg(unsigned type, std::uint32_t id, Bytes const & tlvs) {
   return Bytes().u16(type).u16(unsigned(tlvs.size() + 4)).u32(id).add(tlvs);
}
Bytes pdu(std::vector<Bytes> const & msgs) {
   Bytes body;
   for (auto const & m : msgs) {
      body.add(m);
   }
   return Bytes().u16(1).u16(unsigned(body.size() + 6)).u32(0x0a000001).u16(0).add(body);
}

Bytes prefixMapping(std::uint32_t id) {
   Bytes fec = Bytes().u8(2).u16(1).u8(24).u8(10).u8(id >> 8).u8(id);
   return msg(0x0400, id, tlv(0x0100, fec).add(tlv(0x0200, Bytes().u32(16 + id))));
}

std::vector<std::uint8_t> mappingPdu() { // (a) packed to 4096 bytes at most
   std::vector<Bytes> msgs;
   std::size_t size = 10;
   for (std::uint32_t id = 1;; ++id) {
      Bytes m = prefixMapping(id);
      if (size + m.size() > 4096) {
         break;
      }
      size += m.size();
      msgs.push_back(m);
   }
   return pdu(msgs).b;
}

std::vector<std::uint8_t> helloPdu() { // (b)
   return pdu({msg(0x0100, 1,
                   tlv(0x0400, Bytes().u16(15).u16(0))
                       .add(tlv(0x0401, Bytes().u32(0x0a000001)))
                       .add(tlv(0x0402, Bytes().u32(7))))})
       .b;
}

std::vector<std::uint8_t> initPdu() { // (c)
   Bytes tlvs = tlv(0x0500, Bytes().u16(1).u16(180).u8(0).u8(0).u16(4096).u32(0x0a000002).u16(0));
   for (unsigned cap : {0x0506u, 0x050Bu, 0x050Du}) {
      tlvs.add(tlv(0x8000 | cap, Bytes().u8(0x80)));
   }
   return pdu({msg(0x0200, 1, tlvs)}).b;
}

std::vector<std::uint8_t> addressPdu() { // (d)
   Bytes list = Bytes().u16(1);
   for (std::uint32_t i = 0; i < 100; ++i) {
      list.u32(0x0a000000 + i);
   }
   return pdu({msg(0x0300, 1, tlv(0x0101, list))}).b;
}

std::vector<std::uint8_t> pwMappingPdu() { // (e)
   Bytes sub;
   sub.u8(0x01).u8(4).u16(1500);                        // MTU
   sub.u8(0x03).u8(2 + 6).add(Bytes().u32(0x65746831).u16(0x2f30)); // "eth1/0"
   sub.u8(0x06).u8(4).u16(100);                         // requested VLAN
   sub.u8(0x09).u8(4).u16(1);                           // fragmentation
   sub.u8(0x0C).u8(4).u8(0x02).u8(0x02);                // VCCV
   Bytes fec = Bytes().u8(0x80).u16(0x8005).u8(unsigned(4 + sub.size())).u32(0).u32(100).add(sub);
   return pdu({msg(0x0400, 1, tlv(0x0100, fec).add(tlv(0x0200, Bytes().u32(1000))).add(tlv(0x096A, Bytes().u32(0))))})
       .b;
}

// Walks PDU header, message headers and TLV headers with bounds checks only.
std::uint32_t walkFraming(std::uint8_t const * p, std::uint32_t n) {
   auto rd16 = [p](std::uint32_t at) { return std::uint32_t(p[at] << 8 | p[at + 1]); };
   if (n < 18) {
      return 0;
   }
   std::uint32_t const end = std::min<std::uint32_t>(n, rd16(2) + 4);
   std::uint32_t tlvs = 0;
   for (std::uint32_t m = 10; m + 8 <= end;) {
      std::uint32_t const mend = std::min<std::uint32_t>(end, m + 4 + rd16(m + 2));
      for (std::uint32_t t = m + 8; t + 4 <= mend; t += 4 + rd16(t + 2)) {
         tlvs += rd16(t) != 0;
      }
      m = mend;
   }
   return tlvs;
}

void parseAll(benchmark::State & state, std::vector<std::uint8_t> const & bytes) {
   auto pkt = Vorin::Pkt::fromBytes(bytes);
   std::uint64_t messages = 0;
   std::uint64_t const before = TestSupport::heapAllocations.load();
   auto const start = std::chrono::steady_clock::now();
   for (auto _ : state) {
      auto p = Ldp::ldpPduParserFactory(pkt, 0);
      for (std::uint32_t i = 0; i < p->messageNum(); ++i) {
         auto m = Ldp::ldpMsgParserGet(pkt, p->messageOffset(i));
         benchmark::DoNotOptimize(m->statusCode());
         if (!m->validMsg()) {
            state.SkipWithError("message did not parse");
            return;
         }
      }
      messages += p->messageNum();
   }
   double const parseNs = std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start).count() /
                          double(state.iterations());
   std::uint64_t const allocs = TestSupport::heapAllocations.load() - before;
   // The framing walk over the same bytes, timed here too, so that the parse
   // cost is also a ratio to it.
   std::uint64_t const rounds = 20000;
   std::uint64_t tlvs = 0;
   auto const t0 = std::chrono::steady_clock::now();
   for (std::uint64_t r = 0; r < rounds; ++r) {
      benchmark::DoNotOptimize(bytes.data());
      tlvs += walkFraming(bytes.data(), std::uint32_t(bytes.size()));
      benchmark::ClobberMemory();
   }
   double const walkNs = std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - t0).count() /
                         double(rounds);
   benchmark::DoNotOptimize(tlvs);
   state.SetItemsProcessed(static_cast<std::int64_t>(messages));
   state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes.size()));
   state.counters["allocs/msg"] = messages ? double(allocs) / double(messages) : 0;
   state.counters["msgs/pdu"] = double(messages) / double(state.iterations());
   // Parse time per PDU over framing-walk time per PDU, both by the wall clock: a
   // plain ratio.
   state.counters["xBaseline"] = walkNs > 0 ? parseNs / walkNs : 0;
}

void baseline(benchmark::State & state, std::vector<std::uint8_t> const & bytes) {
   std::uint64_t tlvs = 0;
   for (auto _ : state) {
      benchmark::DoNotOptimize(bytes.data());
      tlvs += walkFraming(bytes.data(), std::uint32_t(bytes.size()));
      benchmark::ClobberMemory();
   }
   state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes.size()));
   benchmark::DoNotOptimize(tlvs);
}

#define LDP_BENCH_PDU(name, maker)                                                      \
   void BM_Parse_##name(benchmark::State & s) { parseAll(s, maker()); }                 \
   void BM_Baseline_##name(benchmark::State & s) { baseline(s, maker()); }              \
   BENCHMARK(BM_Baseline_##name);                                                       \
   BENCHMARK(BM_Parse_##name)

LDP_BENCH_PDU(LabelMapping4096, mappingPdu);
LDP_BENCH_PDU(Hello, helloPdu);
LDP_BENCH_PDU(InitCapabilities, initPdu);
LDP_BENCH_PDU(Address100, addressPdu);
LDP_BENCH_PDU(PwLabelMapping, pwMappingPdu);

} // namespace

BENCHMARK_MAIN();
