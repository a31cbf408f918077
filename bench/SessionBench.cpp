// Costs of the session model against plain standard-library baselines:
//  - a keyed counter step on an existing key against ++ on an unordered_map;
//  - a message pipe's write plus take-out against moving a shared_ptr into and
//    out of an optional;
//  - addSessionStateLogEntry on a full log (an eviction every time) against
//    push_back plus pop_front on a deque;
// and the size of an empty session status and statistics entity.
//
// Each subject runs against its baseline in one benchmark, in alternating
// batches timed in this thread's CPU time, so that both see the same state of a
// shared, noisy machine; the figures are medians over the batch pairs:
// ns/op (subject), baselineNs/op, xBaseline (the median of the per-pair ratios),
// goal (the ratio not to exceed) and allocs/op (the subject's heap allocations).
// The Time and CPU columns are those of one pair of batches.
// Subject and baseline each keep their state where the compiler must assume the
// optimiser barriers read and write it, so that neither is folded away.
//
// The allocations are counted by replacing the global operator new; GCC then
// takes library code that frees with the sized delete for a mismatch.
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"

#include <benchmark/benchmark.h>

#include <malloc.h>
#include <time.h>

#include <algorithm>
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

std::uint64_t threadCpuNs() {
   timespec ts{};
   clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
   return std::uint64_t(ts.tv_sec) * 1000000000u + std::uint64_t(ts.tv_nsec);
}

// From here on the compiler must assume that any optimiser barrier reads and
// writes what `p` points at.
template <typename T>
void escape(T * p) {
   asm volatile("" : : "g"(p) : "memory");
}

double median(std::vector<double> v) {
   if (v.empty()) {
      return 0.0;
   }
   auto mid = v.begin() + std::ptrdiff_t(v.size() / 2);
   std::nth_element(v.begin(), mid, v.end());
   return *mid;
}

// Runs `subject(i)` and `baseline(i)` in alternating batches (which goes first
// alternates too) and reports the figures described at the top.
template <typename Subject, typename Baseline>
void againstBaseline(benchmark::State & state, double goal, Subject && subject, Baseline && baseline) {
   // Large enough that the two clock reads (a system call each, about a
   // microsecond) stay within a few per cent of a batch of the cheapest operation.
   constexpr std::uint64_t batch = 1u << 15;
   std::vector<double> subjectNs, baselineNs, ratios;
   std::uint64_t allocs = 0;
   std::uint64_t i = 0;
   auto timed = [&i](auto & op) {
      std::uint64_t const t0 = threadCpuNs();
      for (std::uint64_t k = i; k < i + batch; ++k) {
         op(k);
      }
      return double(threadCpuNs() - t0) / double(batch);
   };
   for (auto _ : state) {
      bool const subjectFirst = (subjectNs.size() % 2) == 0;
      double b = 0.0;
      if (!subjectFirst) {
         b = timed(baseline);
      }
      std::uint64_t const a0 = TestSupport::heapAllocations.load();
      double const s = timed(subject);
      allocs += TestSupport::heapAllocations.load() - a0;
      if (subjectFirst) {
         b = timed(baseline);
      }
      i += batch;
      subjectNs.push_back(s);
      baselineNs.push_back(b);
      ratios.push_back(s / b);
   }
   state.counters["ns/op"] = median(subjectNs);
   state.counters["baselineNs/op"] = median(baselineNs);
   state.counters["xBaseline"] = median(ratios);
   state.counters["goal"] = goal;
   state.counters["allocs/op"] = double(allocs) / double(i);
   state.SetItemsProcessed(std::int64_t(i));
}

// Keyed counters ---------------------------------------------------------------

LdpMsgType const msgTypes[] = {LdpMsgType::LdpHello, LdpMsgType::LdpInit, LdpMsgType::LdpKeepAlive,
                               LdpMsgType::LdpAddress, LdpMsgType::LdpLabelMapping, LdpMsgType::LdpLabelRequest,
                               LdpMsgType::LdpLabelWithdraw, LdpMsgType::LdpLabelRelease};
constexpr std::size_t typeCount = sizeof(msgTypes) / sizeof(msgTypes[0]);

void BM_KeyedCounterIncVsUnorderedMap(benchmark::State & state) {
   auto stats = Zon::makePtr<LdpSessionStatistics>(LdpSessionId(LdpIdentifier(Vorin::IpAddr(10, 0, 0, 1), 0)));
   std::unordered_map<int, std::uint64_t> map;
   for (LdpMsgType t : msgTypes) {
      stats->ldpMsgRxCountInc(t, 0); // every key exists
      map[int(t)] = 0;
   }
   LdpSessionStatistics * s = stats.ptr();
   escape(s);
   escape(&map);
   againstBaseline(
       state, 1.5,
       [s](std::uint64_t k) {
          std::uint64_t const v = s->ldpMsgRxCountInc(msgTypes[k % typeCount], 1);
          benchmark::DoNotOptimize(v);
       },
       [&map](std::uint64_t k) {
          std::uint64_t const v = ++map[int(msgTypes[k % typeCount])];
          benchmark::DoNotOptimize(v);
       });
   std::uint64_t total = 0;
   for (LdpMsgType t : msgTypes) {
      total += stats->ldpMsgRxCount(t);
   }
   if (total != std::uint64_t(state.items_processed())) {
      state.SkipWithError("the counters did not count every step");
   }
}
BENCHMARK(BM_KeyedCounterIncVsUnorderedMap);

// Message pipes ---------------------------------------------------------------

// The writer hands its reference over and the reader takes it back: no count
// changes, no allocation. The baseline does the same with a shared_ptr: moved
// into the optional, moved out, the optional emptied; the writer's pointer and
// the slot live in memory that the barrier may read and write, as the pipe's do.
void BM_PipeWriteTakeOutVsOptionalSharedPtr(benchmark::State & state) {
   auto pipe = Zon::makePtr<LdpMsgPipe>("pipe");
   auto msg = Zon::makePtr<LdpMsg>(LdpIdentifier(Vorin::IpAddr(10, 0, 0, 1), 0), Vorin::Pkt::ofSize(64), 10);
   LdpMsgPipe * p = pipe.ptr();
   struct Slot {
      std::optional<std::shared_ptr<LdpIdentifier>> slot;
      std::shared_ptr<LdpIdentifier> msg = std::make_shared<LdpIdentifier>();
   } o;
   escape(p);
   escape(&msg);
   escape(&o);
   againstBaseline(
       state, 2.0,
       [p, &msg](std::uint64_t) {
          p->txMsgIs(std::move(msg));
          benchmark::ClobberMemory();
          msg = p->rxMsg();
          benchmark::ClobberMemory();
       },
       [&o](std::uint64_t) {
          o.slot.emplace(std::move(o.msg));
          benchmark::ClobberMemory();
          o.msg = std::move(*o.slot);
          o.slot.reset();
          benchmark::ClobberMemory();
       });
   if (!msg || msg->references() != 1 || p->readableCount() != std::uint32_t(state.items_processed()) || !o.msg ||
       o.msg.use_count() != 1) {
      state.SkipWithError("a message did not go through");
   }
}
BENCHMARK(BM_PipeWriteTakeOutVsOptionalSharedPtr);

// State log ----------------------------------------------------------------------

// Two entries that differ, so that each add is logged (short reasons: no string
// allocation either way).
LdpSessionStateLogEntry const logEntries[2] = {
   LdpSessionStateLogEntry(1.0, SessionState::stateOpenSent, LdpStatusCode::success, "open sent"),
   LdpSessionStateLogEntry(2.0, SessionState::stateOperational, LdpStatusCode::success, "operational"),
};

void BM_StateLogAddFullVsDeque(benchmark::State & state) {
   auto log = Zon::makePtr<LdpSessionStateLogEntryColl>("");
   std::deque<LdpSessionStateLogEntry> deque;
   for (int i = 0; i < 10; ++i) {
      log->addSessionStateLogEntry(logEntries[i % 2]);
      deque.push_back(logEntries[i % 2]);
   }
   LdpSessionStateLogEntryColl * l = log.ptr();
   escape(l);
   escape(&deque);
   againstBaseline(
       state, 3.0,
       [l](std::uint64_t k) {
          l->addSessionStateLogEntry(logEntries[k % 2]);
          benchmark::ClobberMemory();
       },
       [&deque](std::uint64_t k) {
          deque.push_back(logEntries[k % 2]);
          deque.pop_front();
          benchmark::ClobberMemory();
       });
   // Both hold the ten newest entries, and the log evicted at every add.
   if (l->sessionStateLogEntrys() != 10 || l->sessionStateLogEntry().dequeues() != std::uint64_t(state.items_processed()) ||
       deque.size() != 10 || !(l->sessionStateLogEntry().value(*l->sessionStateLogEntry().tailKey()) == deque.back())) {
      state.SkipWithError("the log did not evict at every add");
   }
}
BENCHMARK(BM_StateLogAddFullVsDeque);

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
