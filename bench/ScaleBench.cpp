// The model at scale: a million FECs, each an LdpFecConfig and an LdpFecStatus
// (with the children they make at birth and their collection entries) under one
// Status, created and then deleted. Reported: heap bytes per FEC, and creation
// and deletion time as ratios to inserting and erasing a million plain structs
// with the same scalar attributes in a std::unordered_map, in the same run.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <chrono>
#include <cstdint>
#include <unordered_map>

#include "ldp/index/LdpStatus.h"

namespace {

using namespace Ldp;
using Clock = std::chrono::steady_clock;

constexpr std::uint32_t fecCount = 1000000;

std::size_t heapInUse() { return mallinfo2().uordblks; }

double seconds(Clock::time_point a, Clock::time_point b) { return std::chrono::duration<double>(b - a).count(); }

Mpls::FwdEqvClass fecOf(std::uint32_t i) {
   return Mpls::FwdEqvClass(Vorin::IpGenPrefix(Vorin::IpGenAddr(Vorin::IpAddr(0x0a000000u + i)), 32));
}

// The scalar attributes of both FEC entities, as hand-written C would keep them.
struct PlainFec {
   std::uint8_t deliveryType = 0, lspRole = 2, distCtrl = 2, retention = 2, filteredState = 0;
   bool downstreamLsrMappingAvail = false, loopDetection = false, hopCountInclude = false, pathVectorInclude = false;
   std::uint8_t hopCountMappingMsg = 0, hopCountMappingLearnt = 0, hopCountRequestMsg = 0, hopCountRequestLearnt = 0;
   std::uint32_t routerId = 0, upstreamLabelRequest = 0, attributeVersion = 0;
   double requestSmNotiTime = 0, mappingSmNotiTime = 0;
};

void BM_MillionFecs(benchmark::State & state) {
   for (auto _ : state) {
      // The baseline first, in the same run.
      std::unordered_map<Mpls::FwdEqvClass, PlainFec> plain;
      auto const p0 = Clock::now();
      for (std::uint32_t i = 0; i < fecCount; ++i) {
         plain.try_emplace(fecOf(i));
      }
      auto const p1 = Clock::now();
      for (std::uint32_t i = 0; i < fecCount; ++i) {
         plain.erase(fecOf(i));
      }
      auto const p2 = Clock::now();

      std::size_t const live = Zon::Entity::liveEntities();
      std::size_t const before = heapInUse();
      auto const t0 = Clock::now();
      Zon::Ptr<Status> status = statusFactory("default");
      auto configs = status->ldpFecConfigCollIs("fecConfig");
      auto statuses = status->ldpFecStatusCollIs("fecStatus");
      for (std::uint32_t i = 0; i < fecCount; ++i) {
         auto const fec = fecOf(i);
         configs->fecConfigIs(fec);
         statuses->fecStatusIs(fec);
      }
      auto const t1 = Clock::now();
      std::size_t const after = heapInUse();
      configs = nullptr;
      statuses = nullptr;
      status = nullptr; // releases everything under it
      auto const t2 = Clock::now();
      if (Zon::Entity::liveEntities() != live) {
         state.SkipWithError("entities left alive after the status root was dropped");
      }
      state.counters["bytesPerFec"] = double(after - before) / fecCount;
      state.counters["createSeconds"] = seconds(t0, t1);
      state.counters["deleteSeconds"] = seconds(t1, t2);
      state.counters["createRatio"] = seconds(t0, t1) / seconds(p0, p1);
      state.counters["deleteRatio"] = seconds(t1, t2) / seconds(p1, p2);
      state.counters["plainBytesPerFec"] = double(sizeof(std::pair<Mpls::FwdEqvClass const, PlainFec>) + 16);
   }
}
BENCHMARK(BM_MillionFecs)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
