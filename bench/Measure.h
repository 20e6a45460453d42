// Clock, heap and bookkeeping of the benchmarks.
//
// Every benchmark times its own passes and leaves one figure, under the name of its unit: the time
// per attribute or list. The setting up between passes is never timed.
#pragma once

#include <benchmark/benchmark.h>
#include <malloc.h>
#include <time.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "Mox/Allocation.h"

namespace bench {

/// The seconds that this thread has run. Time given to other threads and processes is not in them.
inline double threadSeconds() {
  timespec now;
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return double(now.tv_sec) + 1e-9 * double(now.tv_nsec);
}

/// The seconds of a clock on the wall.
inline double wallSeconds() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

/// Times the passes of one run.
class Passes {
 public:
  /// `items` attributes or lists are handled in each pass.
  Passes(benchmark::State& state, std::size_t items) : state_(state), items_(items) {}
  ~Passes() {
    state_.counters["ns"] = 1e9 * seconds_ / double(items_) / double(state_.iterations());
  }

  template <class Work>
  void time(Work work) {
    const double begin = threadSeconds();
    work();
    add(threadSeconds() - begin);
  }
  void add(double seconds) {
    seconds_ += seconds;
    state_.SetIterationTime(seconds);
  }

 private:
  benchmark::State& state_;
  const std::size_t items_;
  double seconds_ = 0;
};

/// Octets of the heap in use, the allocator's own headers included.
inline std::size_t heapOctets() {
  const struct mallinfo2 heap = mallinfo2();
  return heap.uordblks + heap.hblkhd;
}

/// Holds all free pieces of slabs that earlier benchmarks have left, so that what is measured in
/// its scope shows in `heapOctets`.
class NoFreePieces {
 public:
  NoFreePieces() {
    for (std::size_t octets = 8; octets <= 256; octets += 8)
      for (const std::size_t slabs = Mox::slabOctets(); slabs && Mox::slabOctets() == slabs;)
        pieces_.emplace_back(tracker.allocate(octets), octets);
  }
  ~NoFreePieces() {
    for (const auto& [memory, octets] : pieces_) tracker.deallocate(memory, octets);
  }
  NoFreePieces(const NoFreePieces&) = delete;
  NoFreePieces& operator=(const NoFreePieces&) = delete;

 private:
  static constexpr Mox::AllocationTracker tracker{"free pieces"};
  std::vector<std::pair<void*, std::size_t>> pieces_;
};

/// The seconds that `work(0)` and `work(1)` take on two threads at once. Passes in which one of
/// them began late or lost its processor to somebody else say nothing about the two: they are
/// repeated, and when all were like that there is no answer.
template <class Work>
std::optional<double> secondsOnTwoThreads(Work work) {
  struct Span {
    double begin, end, ran;
    bool whole() const { return ran > 0.97 * (end - begin); }
  };
  for (int attempt = 0; attempt < 100; ++attempt) {
    std::atomic<int> ready{0};
    Span spans[2];
    const auto run = [&](int thread) {
      ++ready;
      while (ready.load() < 2) std::this_thread::yield();
      const double begin = wallSeconds(), ran = threadSeconds();
      work(thread);
      spans[thread] = {begin, wallSeconds(), threadSeconds() - ran};
    };
    std::thread other(run, 1);
    run(0);
    other.join();
    const double taken = std::max(spans[0].end, spans[1].end) - spans[0].begin;
    const bool together = std::abs(spans[0].begin - spans[1].begin) < 0.03 * taken;
    if (together && spans[0].whole() && spans[1].whole()) return taken;
  }
  return std::nullopt;
}

/// A benchmark of fixed size: `passes` passes per repetition.
template <class Run>
benchmark::internal::Benchmark* add(const std::string& name, int passes, Run run) {
  return benchmark::RegisterBenchmark(name.c_str(), run)->UseManualTime()->Iterations(passes);
}

}  // namespace bench
