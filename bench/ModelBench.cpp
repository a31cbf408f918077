// Costs of the generated model on its runtime, each beside a baseline measured in
// the same run: a setter without and with an observer against a plain store, and
// collection inserts and lookups at 10^5 and 10^6 keys against std containers.
// The memory of an empty Config and of an empty collection is reported as
// counters of BM_EmptyConfigMemory.
#include <benchmark/benchmark.h>

#include <malloc.h>

#include <algorithm>
#include <random>
#include <unordered_map>
#include <vector>

#include "ldp/config/LdpConfig.h"
#include "zon/LinkQueue.h"

namespace {

using namespace Ldp;

// Bytes in use on the heap (glibc), for the memory figures.
std::size_t heapInUse() { return mallinfo2().uordblks; }

// Baseline: what a setter must at least do, a compare and a store.
struct Plain {
   std::uint16_t helloInterval = 5;
   void helloIntervalIs(std::uint16_t v) {
      if (helloInterval != v) {
         helloInterval = v;
      }
   }
};

void BM_PlainStore(benchmark::State & state) {
   Plain p;
   benchmark::DoNotOptimize(&p);
   std::uint16_t v = 0;
   for (auto _ : state) {
      p.helloIntervalIs(++v);
      benchmark::ClobberMemory();
   }
}
BENCHMARK(BM_PlainStore);

Zon::Ptr<Config> freshConfig() { return Zon::makePtr<LdpConfigColl>("configColl")->configIs("default"); }

void BM_SetterNoObserver(benchmark::State & state) {
   auto c = freshConfig();
   Config * p = c.ptr();
   benchmark::DoNotOptimize(p);
   std::uint16_t v = 0;
   for (auto _ : state) {
      p->helloIntervalIs(++v); // a real change every time
      benchmark::ClobberMemory();
   }
}
BENCHMARK(BM_SetterNoObserver);

void BM_SetterUnchanged(benchmark::State & state) {
   auto c = freshConfig();
   Config * p = c.ptr();
   benchmark::DoNotOptimize(p);
   for (auto _ : state) {
      p->helloIntervalIs(5);
      benchmark::ClobberMemory();
   }
}
BENCHMARK(BM_SetterUnchanged);

struct CountingObserver : Config::Notifiee {
   std::uint64_t n = 0;
   void onHelloInterval() override { ++n; }
};

void BM_SetterOneObserver(benchmark::State & state) {
   auto c = freshConfig();
   CountingObserver o;
   o.notifierIs(c.ptr());
   Config * p = c.ptr();
   benchmark::DoNotOptimize(p);
   std::uint16_t v = 0;
   for (auto _ : state) {
      p->helloIntervalIs(++v);
      benchmark::ClobberMemory();
   }
   benchmark::DoNotOptimize(o.n);
}
BENCHMARK(BM_SetterOneObserver);

std::vector<Vorin::IpGenAddr> addresses(std::size_t n, unsigned seed) {
   std::vector<Vorin::IpGenAddr> out;
   out.reserve(n);
   for (std::size_t i = 0; i < n; ++i) {
      out.emplace_back(Vorin::IpAddr(static_cast<std::uint32_t>(0x0a000000u + i)));
   }
   std::shuffle(out.begin(), out.end(), std::mt19937(seed));
   return out;
}

// Value collection: PwTargetConfigColl::pwTarget, Vorin::IpGenAddr to bool.
void BM_ValueMapInsert(benchmark::State & state) {
   auto const keys = addresses(static_cast<std::size_t>(state.range(0)), 1);
   for (auto _ : state) {
      auto coll = Zon::makePtr<PwTargetConfigColl>("targets");
      for (auto const & k : keys) {
         coll->pwTargetIs(k, true);
      }
      benchmark::DoNotOptimize(coll->pwTargets());
   }
   state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_ValueMapInsert)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);

void BM_StdUnorderedMapInsert(benchmark::State & state) {
   auto const keys = addresses(static_cast<std::size_t>(state.range(0)), 1);
   for (auto _ : state) {
      std::unordered_map<Vorin::IpGenAddr, bool> m;
      for (auto const & k : keys) {
         m[k] = true;
      }
      benchmark::DoNotOptimize(m.size());
   }
   state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_StdUnorderedMapInsert)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);

void BM_ValueMapLookup(benchmark::State & state) {
   auto const keys = addresses(static_cast<std::size_t>(state.range(0)), 1);
   auto const probes = addresses(static_cast<std::size_t>(state.range(0)), 2);
   auto coll = Zon::makePtr<PwTargetConfigColl>("targets");
   for (auto const & k : keys) {
      coll->pwTargetIs(k, true);
   }
   std::size_t i = 0;
   for (auto _ : state) {
      benchmark::DoNotOptimize(coll->pwTarget(probes[i]));
      i = i + 1 == probes.size() ? 0 : i + 1;
   }
   state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_ValueMapLookup)->Arg(100000)->Arg(1000000);

void BM_StdUnorderedMapLookup(benchmark::State & state) {
   auto const keys = addresses(static_cast<std::size_t>(state.range(0)), 1);
   auto const probes = addresses(static_cast<std::size_t>(state.range(0)), 2);
   std::unordered_map<Vorin::IpGenAddr, bool> m;
   for (auto const & k : keys) {
      m[k] = true;
   }
   std::size_t i = 0;
   for (auto _ : state) {
      auto it = m.find(probes[i]);
      benchmark::DoNotOptimize(it != m.end() && it->second);
      i = i + 1 == probes.size() ? 0 : i + 1;
   }
   state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_StdUnorderedMapLookup)->Arg(100000)->Arg(1000000);

std::vector<Mpls::FwdEqvClass> fecs(std::size_t n, unsigned seed) {
   std::vector<Mpls::FwdEqvClass> out;
   out.reserve(n);
   for (std::size_t i = 0; i < n; ++i) {
      Vorin::IpAddr a(static_cast<std::uint32_t>(0x0a000000u + (i << 8)));
      out.emplace_back(Vorin::IpGenPrefix(Vorin::IpGenAddr(a), 24));
   }
   std::shuffle(out.begin(), out.end(), std::mt19937(seed));
   return out;
}

// Instantiating collection: Config::staticFecBindingColl, one entity per key.
void BM_EntityCollInsert(benchmark::State & state) {
   auto const keys = fecs(static_cast<std::size_t>(state.range(0)), 1);
   for (auto _ : state) {
      auto c = freshConfig();
      for (auto const & k : keys) {
         c->staticFecBindingCollIs(k);
      }
      benchmark::DoNotOptimize(c->staticFecBindingColls());
   }
   state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_EntityCollInsert)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);

void BM_EntityCollLookup(benchmark::State & state) {
   auto const keys = fecs(static_cast<std::size_t>(state.range(0)), 1);
   auto const probes = fecs(static_cast<std::size_t>(state.range(0)), 2);
   auto c = freshConfig();
   for (auto const & k : keys) {
      c->staticFecBindingCollIs(k);
   }
   Config const & cc = *c;
   std::size_t i = 0;
   for (auto _ : state) {
      benchmark::DoNotOptimize(cc.staticFecBindingColl(probes[i]).ptr());
      i = i + 1 == probes.size() ? 0 : i + 1;
   }
   state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_EntityCollLookup)->Arg(100000)->Arg(1000000);

// Memory: the size of the objects, and the heap that making one empty Config
// takes (its own block only, when no member allocates).
void BM_EmptyConfigMemory(benchmark::State & state) {
   // Many at once, so that malloc's caches of freed blocks do not hide them.
   constexpr std::size_t count = 1000;
   L3::VrfName const vrf("default");
   std::vector<Zon::Ptr<Config>> configs;
   configs.reserve(count);
   double bytes = 0;
   for (auto _ : state) {
      std::size_t const before = heapInUse();
      for (std::size_t i = 0; i < count; ++i) {
         configs.push_back(Zon::makePtr<Config>(vrf));
      }
      bytes = static_cast<double>(heapInUse() - before) / count;
      state.PauseTiming();
      configs.clear();
      state.ResumeTiming();
   }
   state.counters["sizeofConfig"] = sizeof(Config);
   state.counters["sizeofProtoConfig"] = sizeof(ProtoConfig);
   state.counters["sizeofEntityMap"] = sizeof(Zon::EntityMap<L3::VrfName, Config>);
   state.counters["sizeofValueMap"] = sizeof(Zon::ValueMap<Vorin::IpGenAddr, bool>);
   state.counters["sizeofLinkQueue"] = sizeof(Zon::LinkQueue<int>);
   state.counters["sizeofEmptyEntity"] = sizeof(LdpEnabledVrfColl) - sizeof(Zon::ValueMap<L3::VrfName, bool>);
   // The Config's own block with malloc's chunk header: no member allocates.
   state.counters["heapBytesPerConfig"] = bytes;
}
BENCHMARK(BM_EmptyConfigMemory)->Iterations(100);

} // namespace

BENCHMARK_MAIN();
