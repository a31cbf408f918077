// Write cost of the send side: Label Mapping messages written by the PDU writer
// into a PDU buffer of the default maximum size (4096 bytes), as the agent
// packs them when it advertises its bindings. Reported per message; a PDU is
// closed and a new one begun whenever the next message might not fit.
#include <benchmark/benchmark.h>

#include <array>
#include <cstdint>

#include "ldp/wire/LdpPduWriter.h"
#include "ldp/wire/LdpPwHdr.h"

namespace {

using namespace Ldp;

constexpr std::size_t pduBytes = 4096;
// The largest message written below, with room to spare.
constexpr std::size_t largestMessage = 128;

LdpIdentifier const self(Vorin::IpAddr(10, 0, 0, 1), 0);

// Label Mapping of an IPv4 prefix to a label: FEC TLV with one Prefix element
// and a Generic Label TLV (26 bytes), the agent's most common message.
void BM_WriteLabelMappingIpv4(benchmark::State & state) {
   std::array<std::uint8_t, pduBytes> buf;
   std::uint32_t id = 0;
   std::size_t written = 0;
   for (auto _ : state) {
      LdpPduWriter w(buf);
      w.pduBegin(self);
      while (w.size() + largestMessage <= pduBytes) {
         ++id;
         w.msgBegin(LdpMsgType::LdpLabelMapping, id);
         w.tlvBegin(LdpTlvType::fecTlv);
         w.prefixElement(Vorin::IpGenPrefix(Vorin::IpGenAddr(Vorin::IpAddr(0x0a000000u | (id << 8 & 0xFFFF00))), 24));
         w.end();
         w.genLabelTlv(16 + (id & 0xFFFF));
         w.end();
      }
      w.end();
      written += w.size();
      benchmark::DoNotOptimize(buf.data());
      benchmark::ClobberMemory();
   }
   state.counters["messages"] = benchmark::Counter(double(id), benchmark::Counter::kIsRate);
   state.counters["bytes"] = benchmark::Counter(double(written), benchmark::Counter::kIsRate);
}
BENCHMARK(BM_WriteLabelMappingIpv4);

// Label Mapping of a pseudowire: PWid element with MTU, description and VCCV
// sub-TLVs, Generic Label and PW Status TLVs.
void BM_WriteLabelMappingPw(benchmark::State & state) {
   std::array<std::uint8_t, pduBytes> buf;
   std::uint32_t id = 0;
   for (auto _ : state) {
      LdpPduWriter w(buf);
      w.pduBegin(self);
      while (w.size() + largestMessage <= pduBytes) {
         ++id;
         w.msgBegin(LdpMsgType::LdpLabelMapping, id);
         w.tlvBegin(LdpTlvType::fecTlv);
         w.pwIdElementBegin(Pseudowire::PseudowireType::ethernet, true, 1, id);
         w.pwMtuSubTlv(1500);
         w.pwDescriptionSubTlv("pw to R2");
         w.pwVccvSubTlv(0x02, 0x02);
         w.end();
         w.end();
         w.genLabelTlv(16 + (id & 0xFFFF));
         w.pwStatusTlv(LdpPwStatusField::pwForwarding);
         w.end();
      }
      w.end();
      benchmark::DoNotOptimize(buf.data());
      benchmark::ClobberMemory();
   }
   state.counters["messages"] = benchmark::Counter(double(id), benchmark::Counter::kIsRate);
}
BENCHMARK(BM_WriteLabelMappingPw);

} // namespace

BENCHMARK_MAIN();
