#include <algorithm>
#include <random>

#include "Contenders.h"
#include "InternRuns.h"

namespace bench {
namespace {

template <class Contender>
void hitAmong(benchmark::State& state, U64 members) {
  Contender table;
  Paths<Contender> all, paths;
  all.reserve(members);
  Stream drawn;
  std::vector<U32> values;
  for (U64 i = 0; i < members; ++i) {
    Stream one;
    numberedAttribute(i, values);
    one.addValues(values);
    table.intern(one[0], all);
  }
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
    const auto with = [members](auto run) {
      return [members, run](benchmark::State& state) { run(state, members); };
    };
    const std::string workload = "members " + std::to_string(members);
    const int repetitions = members > 1'000'000 ? 1 : 3;
    const auto of = [&](const char* contender, auto run) {
      add(nameOf("hit", workload, contender), 3, with(run))->Repetitions(repetitions);
    };
    of(Ours::name, hitAmong<Ours>);
    of(FlyweightUnlocked::name, hitAmong<FlyweightUnlocked>);
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

}  // namespace bench
