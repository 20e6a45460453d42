#include <algorithm>
#include <random>

#include "Contenders.h"
#include "InternRuns.h"
#include "Orv/Placement.h"

namespace bench {
namespace {

/// Interns so many different lists, and says how many seconds that took; making up their octets, a
/// thousand at a time, is not in it.
template <class Contender>
double fill(Contender& table, U64 members, Paths<Contender>& all) {
  constexpr U64 atOnce = 1'000;
  double seconds = 0;
  std::vector<U32> values;
  all.reserve(members);
  for (U64 i = 0; i < members;) {
    Stream some;
    for (const U64 end = std::min(members, i + atOnce); i < end; ++i) {
      numberedAttribute(i, values);
      some.addValues(values);
    }
    const double begin = threadSeconds();
    internAll(table, some, all);
    seconds += threadSeconds() - begin;
  }
  return seconds;
}

template <class Contender>
void hitAmong(benchmark::State& state, U64 members) {
  Contender table;
  Paths<Contender> all, paths;
  fill(table, members, all);
  Stream drawn;
  std::vector<U32> values;
  std::mt19937_64 random(6);
  for (int i = 0; i < 100'000; ++i) {
    numberedAttribute(random() % members, values);
    drawn.addValues(values);
  }
  paths.reserve(drawn.size());
  internAll(table, drawn, paths);
  Passes passes(state, drawn.size());
  for (auto _ : state) {
    paths.clear();
    passes.time([&] { internAll(table, drawn, paths); });
  }
}

template <class Contender>
void missAmong(benchmark::State& state, U64 members) {
  Passes passes(state, members);
  for (auto _ : state) {
    Contender table;
    Paths<Contender> all;
    passes.add(fill(table, members, all));
  }
}

// Lists go in another order than they came.
template <class Contender>
void lastReleaseAmong(benchmark::State& state, U64 members) {
  std::mt19937_64 random(9);
  Passes passes(state, members);
  for (auto _ : state) {
    Contender table;
    Paths<Contender> all;
    fill(table, members, all);
    std::shuffle(all.begin(), all.end(), random);
    passes.time([&] { all.clear(); });
  }
}

/// Each attribute comes in an order of its own, or the processor learns the branches by heart.
using Arrange = void (*)(std::vector<U32>& values, std::mt19937_64& random);

void longAttribute(benchmark::State& state, U32 count, Arrange arrange) {
  Ours table;
  Stream stream;
  std::mt19937_64 random(7);
  std::vector<U32> values(count);
  for (U32 i = 0; i < count; ++i) values[i] = 0xFDE80000u + 3 * i;
  for (U32 i = 0; i < 400'000 / count; ++i) {
    arrange(values, random);
    stream.addValues(values);
  }
  Paths<Ours> paths, again;
  again.reserve(stream.size());
  internAll(table, stream, paths);
  Passes passes(state, stream.size() * count);
  for (auto _ : state) {
    again.clear();
    passes.time([&] { internAll(table, stream, again); });
  }
}

// As shards do it: 64 sets of tags of 19 bits, linear probing, at most two thirds taken.
double probesPerInsertion(U64 seed, U64 first, U64 step) {
  constexpr U64 values = 20'000;
  static constexpr U32 none = ~0u;
  struct Tags {
    std::vector<U32> places = std::vector<U32>(8, none);
    U32 size = 0;
    U64 add(U32 tag) {
      U64 probes = 1;
      std::size_t i = U64{tag} * places.size() >> 19;
      for (; places[i] != none; i = i + 1 == places.size() ? 0 : i + 1) ++probes;
      places[i] = tag;
      return probes;
    }
  };
  std::vector<Tags> shards(64);
  U64 probes = 0;
  for (U64 i = 0; i < values; ++i) {
    const U32 place = U32(Orv::placeOf(first + i * step, seed)), tag = place << 6 >> 13;
    Tags& shard = shards[place >> 26];
    if (++shard.size * 3 > shard.places.size() * 2) {
      const std::vector<U32> old(
          std::exchange(shard.places, std::vector<U32>(shard.places.size() * 3 / 2, none)));
      for (const U32 other : old)
        if (other != none) shard.add(other);
    }
    probes += shard.add(tag);
  }
  return double(probes) / double(values);
}

// The median or the worst of 200 seeds.
void placing(benchmark::State& state, U64 first, U64 step, bool worst) {
  std::mt19937_64 random(8);
  std::vector<double> probes(200);
  for (double& one : probes) one = probesPerInsertion(random(), first, step);
  std::sort(probes.begin(), probes.end());
  for (auto _ : state) state.SetIterationTime(0);
  state.counters["probes"] = worst ? probes.back() : probes[probes.size() / 2];
}

void ascending(std::vector<U32>&, std::mt19937_64&) {}
void descending(std::vector<U32>& values, std::mt19937_64&) {
  std::sort(values.begin(), values.end(), std::greater<U32>());
}
void anyOrder(std::vector<U32>& values, std::mt19937_64& random) {
  std::shuffle(values.begin(), values.end(), random);
}
// Rises and falls, each value twice, beginning anywhere.
void upAndDown(std::vector<U32>& values, std::mt19937_64& random) {
  const U32 count = U32(values.size());
  for (U32 i = 0; i < count; ++i) values[i] = i < count / 2 ? i : count - 1 - i;
  std::rotate(values.begin(), values.begin() + std::ptrdiff_t(random() % count), values.end());
}

template <class Contender>
void addAmong(U64 members) {
  const int filling = int(1 + 40'000 / members);
  const auto of = [&](const char* operation, int passes, auto run) {
    add(nameOf(operation, "members " + std::to_string(members), Contender::name), passes,
        [members, run](benchmark::State& state) { run(state, members); })
        ->Repetitions(members > 1'000'000 ? 1 : 3);
  };
  of("hit", 3, hitAmong<Contender>);
  of("miss", filling, missAmong<Contender>);
  of("last release", filling, lastReleaseAmong<Contender>);
}

}  // namespace

void addInterning(const Workload& workload) {
  addInterningOf<Ours>(workload);
  addInterningOf<FlyweightUnlocked>(workload);
  addInterningOf<FlyweightLocked>(workload);
  addInterningOf<SharedPointers>(workload);
  addInterningOf<FloorSorted>(workload);
  addInterningOf<FloorRaw>(workload);
}

void addMembers(U64 mostMembers) {
  for (U64 members = 1'000; members <= mostMembers; members *= 10) {
    addAmong<Ours>(members);
    addAmong<FlyweightUnlocked>(members);
  }
}

void addLongAttributes() {
  struct Order {
    const char* name;
    Arrange arrange;
  };
  for (const U32 count : {16u, 1'024u, 16'383u})
    for (const Order& order : {Order{"ascending", ascending}, Order{"descending", descending},
                               Order{"random", anyOrder}, Order{"up and down", upAndDown}})
      add(nameOf("per value, " + std::to_string(count) + " values", order.name, Ours::name), 1,
          [count, order](benchmark::State& state) { longAttribute(state, count, order.arrange); });
}

void addPlacing() {
  struct Values {
    const char* name;
    U64 first, step;
  };
  for (const Values& values :
       {Values{"route targets of one AS", 0x0002FDE800000000, 1},
        Values{"route targets of many ASes", 0x0002000000000064, 1ULL << 32},
        Values{"route targets of many addresses", 0x01020A0000000064, 1 << 16}})
    for (const bool worst : {false, true})
      add(nameOf("probes per insertion", values.name,
                 worst ? "worst of 200 seeds" : "median of 200 seeds"),
          1,
          [values, worst](benchmark::State& state) {
            placing(state, values.first, values.step, worst);
          })
          ->Repetitions(1);
}

}  // namespace bench
