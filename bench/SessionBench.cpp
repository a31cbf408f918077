// Costs of the session model against plain standard-library baselines, each
// baseline measured in the same run (its own benchmark, and again inside the
// subject's to print the ratio as xBaseline):
//  - a keyed counter step on an existing key against ++ on an unordered_map;
//  - a message pipe's write plus take-out against moving a shared_ptr into and
//    out of an optional;
//  - addSessionStateLogEntry on a full log (an eviction every time) against
//    push_back plus pop_front on a deque;
// with heap allocations per operation, and the size of an empty session status
// and statistics entity.
// The allocations are counted by replacing the global operator new; GCC then
// takes library code that frees with the sized delete for a mismatch.
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"

#include <benchmark/benchmark.h>

#include <malloc.h>

#include <chrono>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "ldp/common/LdpCommon.h"
#include "ldp/common/LdpSessionStatistics.h"
#include "ldp/status/LdpSession.h"
#include "support/AllocCount.h"

namespace {

using namespace Ldp;

// Nanoseconds per call of `op` over `rounds` calls.
template <typename Op>
double nsPerOp(std::uint64_t rounds, Op && op) {
   auto const t0 = std::chrono::steady_clock::now();
   for (std::uint64_t i = 0; i < rounds; ++i) {
      op(i);
   }
   return std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - t0).count() / double(rounds);
}

// Reports allocations per iteration and the ratio of the subject's time per
// iteration to the baseline's.
class Figures {
 public:
   explicit Figures(benchmark::State & state)
       : state_(state), allocs_(TestSupport::heapAllocations.load()), t0_(std::chrono::steady_clock::now()) {}

   template <typename Op>
   void finish(Op && baseline) {
      double const ns = std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - t0_).count() /
                        double(state_.iterations());
      double const allocs = double(TestSupport::heapAllocations.load() - allocs_) / double(state_.iterations());
      std::uint64_t const rounds = 1000000;
      state_.counters["allocs/op"] = allocs;
      state_.counters["xBaseline"] = ns / nsPerOp(rounds, baseline);
   }

 private:
   benchmark::State & state_;
   std::uint64_t allocs_;
   std::chrono::steady_clock::time_point t0_;
};

// Keyed counters ---------------------------------------------------------------

LdpMsgType const msgTypes[] = {LdpMsgType::LdpHello, LdpMsgType::LdpInit, LdpMsgType::LdpKeepAlive,
                               LdpMsgType::LdpAddress, LdpMsgType::LdpLabelMapping, LdpMsgType::LdpLabelRequest,
                               LdpMsgType::LdpLabelWithdraw, LdpMsgType::LdpLabelRelease};
constexpr std::size_t typeCount = sizeof(msgTypes) / sizeof(msgTypes[0]);

struct MapCounter {
   std::unordered_map<int, std::uint64_t> m;
   MapCounter() {
      for (LdpMsgType t : msgTypes) {
         m[int(t)] = 0;
      }
   }
   void step(std::uint64_t i) {
      ++m[int(msgTypes[i % typeCount])];
      benchmark::ClobberMemory();
   }
};

void BM_UnorderedMapIncrement(benchmark::State & state) {
   MapCounter c;
   std::uint64_t i = 0;
   for (auto _ : state) {
      c.step(i++);
   }
}
BENCHMARK(BM_UnorderedMapIncrement);

void BM_KeyedCounterInc(benchmark::State & state) {
   auto stats = Zon::makePtr<LdpSessionStatistics>(LdpSessionId(LdpIdentifier(Vorin::IpAddr(10, 0, 0, 1), 0)));
   for (LdpMsgType t : msgTypes) {
      stats->ldpMsgRxCountInc(t, 0); // every key exists
   }
   LdpSessionStatistics * s = stats.ptr();
   benchmark::DoNotOptimize(stats.ptr());
   std::uint64_t i = 0;
   Figures f(state);
   for (auto _ : state) {
      s->ldpMsgRxCountInc(msgTypes[i++ % typeCount], 1);
      benchmark::ClobberMemory();
   }
   MapCounter c;
   f.finish([&c](std::uint64_t k) { c.step(k); });
}
BENCHMARK(BM_KeyedCounterInc);

// Message pipes ---------------------------------------------------------------

struct OptionalSlot {
   std::optional<std::shared_ptr<int>> slot;
   std::shared_ptr<int> msg = std::make_shared<int>(1);
   void step(std::uint64_t) {
      slot.emplace(std::move(msg));
      msg = std::move(*slot);
      slot.reset();
      benchmark::ClobberMemory();
   }
};

void BM_OptionalSharedPtrMove(benchmark::State & state) {
   OptionalSlot o;
   for (auto _ : state) {
      o.step(0);
   }
}
BENCHMARK(BM_OptionalSharedPtrMove);

// The writer hands its reference over and the reader takes it back: no count
// changes, no allocation.
void BM_PipeWriteTakeOut(benchmark::State & state) {
   auto pipe = Zon::makePtr<LdpMsgPipe>("pipe");
   auto msg = Zon::makePtr<LdpMsg>(LdpIdentifier(Vorin::IpAddr(10, 0, 0, 1), 0), Vorin::Pkt::ofSize(64), 10);
   LdpMsgPipe * p = pipe.ptr();
   benchmark::DoNotOptimize(pipe.ptr());
   Figures f(state);
   for (auto _ : state) {
      p->txMsgIs(std::move(msg));
      msg = p->rxMsg();
      benchmark::ClobberMemory();
   }
   if (!msg || p->readableCount() != std::uint32_t(state.iterations())) {
      state.SkipWithError("the message did not go through");
   }
   OptionalSlot o;
   f.finish([&o](std::uint64_t k) { o.step(k); });
}
BENCHMARK(BM_PipeWriteTakeOut);

// State log ----------------------------------------------------------------------

// Two entries that differ, so that each add is logged (short reasons: no string
// allocation either way).
LdpSessionStateLogEntry const logEntries[2] = {
   LdpSessionStateLogEntry(1.0, SessionState::stateOpenSent, LdpStatusCode::success, "open sent"),
   LdpSessionStateLogEntry(2.0, SessionState::stateOperational, LdpStatusCode::success, "operational"),
};

struct DequeLog {
   std::deque<LdpSessionStateLogEntry> d;
   DequeLog() {
      for (int i = 0; i < 10; ++i) {
         d.push_back(logEntries[i % 2]);
      }
   }
   void step(std::uint64_t i) {
      d.push_back(logEntries[i % 2]);
      d.pop_front();
      benchmark::ClobberMemory();
   }
};

void BM_DequePushPop(benchmark::State & state) {
   DequeLog log;
   std::uint64_t i = 0;
   for (auto _ : state) {
      log.step(i++);
   }
}
BENCHMARK(BM_DequePushPop);

void BM_StateLogAddFull(benchmark::State & state) {
   auto log = Zon::makePtr<LdpSessionStateLogEntryColl>("");
   for (int i = 0; i < 10; ++i) {
      log->addSessionStateLogEntry(logEntries[i % 2]);
   }
   LdpSessionStateLogEntryColl * l = log.ptr();
   benchmark::DoNotOptimize(log.ptr());
   std::uint64_t i = 0;
   Figures f(state);
   for (auto _ : state) {
      l->addSessionStateLogEntry(logEntries[i++ % 2]);
      benchmark::ClobberMemory();
   }
   if (l->sessionStateLogEntrys() != 10) {
      state.SkipWithError("the log is not full");
   }
   DequeLog d;
   f.finish([&d](std::uint64_t k) { d.step(k); });
}
BENCHMARK(BM_StateLogAddFull);

// Memory ---------------------------------------------------------------------

std::size_t heapInUse() { return mallinfo2().uordblks; }

// The size of the objects, and the heap that making one empty entity takes.
void BM_EmptySessionMemory(benchmark::State & state) {
   constexpr std::size_t count = 1000;
   std::vector<Zon::Ptr<LdpSessionStatus>> statuses;
   std::vector<Zon::Ptr<LdpSessionStatistics>> statistics;
   statuses.reserve(count);
   statistics.reserve(count);
   LdpSessionId const id(LdpIdentifier(Vorin::IpAddr(10, 0, 0, 1), 0));
   double statusBytes = 0;
   double statisticsBytes = 0;
   for (auto _ : state) {
      std::size_t const before = heapInUse();
      for (std::size_t i = 0; i < count; ++i) {
         statuses.push_back(Zon::makePtr<LdpSessionStatus>(id));
      }
      std::size_t const middle = heapInUse();
      for (std::size_t i = 0; i < count; ++i) {
         statistics.push_back(Zon::makePtr<LdpSessionStatistics>(id));
      }
      statusBytes = double(middle - before) / count;
      statisticsBytes = double(heapInUse() - middle) / count;
      state.PauseTiming();
      statuses.clear();
      statistics.clear();
      state.ResumeTiming();
   }
   state.counters["sizeofLdpSessionStatus"] = sizeof(LdpSessionStatus);
   state.counters["sizeofLdpSessionStatistics"] = sizeof(LdpSessionStatistics);
   // Each object's own block with malloc's chunk header, and its name.
   state.counters["heapBytesPerStatus"] = statusBytes;
   state.counters["heapBytesPerStatistics"] = statisticsBytes;
}
BENCHMARK(BM_EmptySessionMemory)->Iterations(20);

} // namespace

BENCHMARK_MAIN();
