// The figures of every contender: octets to interned object, found and made; last release;
// memory.
#pragma once

#include <algorithm>
#include <memory>
#include <random>

#include "Benchmarks.h"
#include "Measure.h"

namespace bench {

template <class Contender>
using Paths = std::vector<typename Contender::Held>;

template <class Contender>
void internAll(Contender& table, const Stream& attributes, Paths<Contender>& paths) {
  for (std::size_t i = 0; i < attributes.size(); ++i) table.intern(attributes[i], paths);
}

template <class Contender>
void hit(benchmark::State& state, const Workload& workload) {
  Contender table;
  Paths<Contender> all, paths;
  internAll(table, workload.distinct, all);
  paths.reserve(workload.drawn.size());
  internAll(table, workload.drawn, paths);  // everybody has seen everything once
  Passes passes(state, workload.drawn.size());
  for (auto _ : state) {
    paths.clear();
    passes.time([&] { internAll(table, workload.drawn, paths); });
  }
}

template <class Contender>
void miss(benchmark::State& state, const Workload& workload) {
  Paths<Contender> paths;
  paths.reserve(workload.distinct.size());
  Passes passes(state, workload.distinct.size());
  for (auto _ : state) {
    Contender table;
    passes.time([&] { internAll(table, workload.distinct, paths); });
    paths.clear();
  }
}

// Paths go in another order than they came.
template <class Contender>
void lastRelease(benchmark::State& state, const Workload& workload) {
  Stream attributes;
  std::vector<std::size_t> order(workload.distinct.size());
  for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
  std::shuffle(order.begin(), order.end(), std::mt19937_64(5));
  Paths<Contender> made, paths;
  made.reserve(order.size());
  paths.reserve(order.size());
  Passes passes(state, order.size());
  for (auto _ : state) {
    Contender table;
    internAll(table, workload.distinct, made);
    for (const std::size_t i : order) paths.push_back(std::move(made[i]));
    made.clear();
    passes.time([&] { paths.clear(); });
  }
}

template <class Contender>
void octets(benchmark::State& state, const Workload& workload) {
  Paths<Contender> paths;
  paths.reserve(workload.distinct.size());
  for (auto _ : state) {
    { Contender renewed; }
    const NoFreePieces none;
    const std::size_t before = heapOctets();
    const auto table = std::make_unique<Contender>();
    internAll(*table, workload.distinct, paths);
    state.counters["octets"] = double(heapOctets() - before) / double(paths.size());
    paths.clear();
    state.SetIterationTime(1e-9);
  }
}

template <class Contender>
void addInterningOf(const Workload& workload) {
  const auto name = [&](const char* operation) {
    return nameOf(operation, workload.name, Contender::name);
  };
  // Small workloads make more passes, so that all are timed over about the same number of lists.
  const int filling = int(1 + 40'000 / workload.distinct.size());
  const auto with = [&](auto run) {
    return [&workload, run](benchmark::State& state) { run(state, workload); };
  };
  add(name("hit"), 1, with(hit<Contender>));
  add(name("miss"), filling, with(miss<Contender>));
  add(name("last release"), filling, with(lastRelease<Contender>));
  add(name("octets per list"), 1, with(octets<Contender>))->Repetitions(1);
}

}  // namespace bench
