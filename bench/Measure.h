// Clock, heap and bookkeeping of the benchmarks.
//
// Every benchmark times its own passes and leaves one figure, under the name of its unit: the time
// per attribute or list. The setting up between passes is never timed.
#pragma once

#include <benchmark/benchmark.h>
#include <malloc.h>
#include <time.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>

#include "Mox/Types.h"

namespace bench {

/// The seconds that this thread has run: what others do on the same machine is not in them.
inline double threadSeconds() {
  timespec now;
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return double(now.tv_sec) + 1e-9 * double(now.tv_nsec);
}

/// The seconds of a clock on the wall, for work of several threads.
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
  void time(Work work, double (*clock)() = threadSeconds) {
    const double begin = clock();
    work();
    const double taken = clock() - begin;
    seconds_ += taken;
    state_.SetIterationTime(taken);
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

/// Runs `work(0)` and `work(1)` on two threads that begin together; returns when both are done.
/// `time` times what it is given.
template <class Time, class Work>
void onTwoThreads(Time time, Work work) {
  std::atomic<int> ready{0};
  const auto meet = [&] {
    ++ready;
    while (ready.load() < 2) std::this_thread::yield();
  };
  std::thread other([&] {
    meet();
    work(1);
  });
  meet();
  time([&] {
    work(0);
    other.join();
  });
}

/// A benchmark of fixed size: `passes` passes per repetition.
template <class Run>
benchmark::internal::Benchmark* add(const std::string& name, int passes, Run run) {
  return benchmark::RegisterBenchmark(name.c_str(), run)->UseManualTime()->Iterations(passes);
}

}  // namespace bench
