#include <array>
#include <functional>
#include <numeric>

#include "Benchmarks.h"
#include "ListContenders.h"
#include "Measure.h"

namespace bench {
namespace {

// The octets that each of two threads reads, and a table that both use.
struct Reading {
  Stream members;  // held all the time
  std::array<Stream, 2> drawn;
};

/// Every list is let go at once: a hit is one look-up and one count up and down.
template <class Contender>
void read(Contender& table, const Stream& attributes) {
  std::vector<typename Contender::Held> path;
  path.reserve(1);
  for (std::size_t i = 0; i < attributes.size(); ++i) {
    table.intern(attributes[i], path);
    path.clear();
  }
}

template <class Contender, bool ownTables>
void threads(benchmark::State& state, const Reading& reading, int count) {
  std::array<Contender, ownTables ? 2 : 1> tables;
  std::array<std::vector<typename Contender::Held>, 2> held;
  for (std::size_t t = 0; t < tables.size(); ++t)
    for (std::size_t i = 0; i < reading.members.size(); ++i)
      tables[t].intern(reading.members[i], held[t]);
  const auto work = [&](int t) { read(tables[ownTables ? t : 0], reading.drawn[t]); };
  work(0);
  work(1);
  Passes passes(state, count * reading.drawn[0].size());
  for (auto _ : state) {
    if (count == 1) {
      passes.time([&] { work(0); });
    } else if (const auto seconds = secondsOnTwoThreads(work)) {
      passes.add(*seconds);
    } else {
      state.SkipWithError("others kept a processor busy");
      break;
    }
  }
}

/// One of two halves; the same for all attributes of a list, in whatever order their values are.
std::size_t halfOf(Octets attribute) {
  return std::accumulate(attribute.begin(), attribute.end(), U8{}, std::bit_xor<>()) & 1;
}

template <class Contender, bool ownTables = false>
void addBoth(const Reading& reading, const char* lists, const char* contender) {
  for (const int count : {1, 2})
    add(nameOf(count == 1 ? "one thread" : "two threads", lists, contender), 1,
        [&reading, count](benchmark::State& state) {
          threads<Contender, ownTables>(state, reading, count);
        });
}

}  // namespace

void addThreads(const MadeUpLists& lists) {
  constexpr U32 attributes = 20'000;  // about a millisecond, within a slice of the scheduler
  static Reading popular, disjoint, none;
  popular = {lists.distinct(), {lists.draw(attributes, 8), lists.draw(attributes, 9)}};
  disjoint = {lists.distinct(), {lists.draw(attributes, 8, 0, 2), lists.draw(attributes, 9, 1, 2)}};
  none = {{}, disjoint.drawn};
  addBoth<Ours>(popular, "popular lists", Ours::name);
  addBoth<FlyweightLocked>(popular, "popular lists", FlyweightLocked::name);
  addBoth<FloorSorted, true>(popular, "popular lists", "floor, own tables");
  addBoth<Ours>(disjoint, "disjoint lists", Ours::name);
  addBoth<FlyweightLocked>(disjoint, "disjoint lists", FlyweightLocked::name);
  addBoth<Ours>(none, "disjoint lists made and dropped", Ours::name);
  addBoth<FlyweightLocked>(none, "disjoint lists made and dropped", FlyweightLocked::name);

  static Reading extended;
  for (U32 i = 0; i < 2 * attributes; ++i) extended.drawn[i % 2].add(extendedLists().drawn[i]);
  addBoth<OursLists8>(extended, "extended lists made and dropped", Ours::name);
  static Reading disjointExtended;
  for (std::size_t i = 0; i < extendedLists().drawn.size(); ++i) {
    const Octets attribute = extendedLists().drawn[i];
    Stream& half = disjointExtended.drawn[halfOf(attribute)];
    if (half.size() < attributes) half.add(attribute);
  }
  addBoth<OursLists8>(disjointExtended, "disjoint extended lists made and dropped", Ours::name);

  static Reading values;
  const Stream& drawn = eightOctetValues().drawn;
  values.members = eightOctetValues().distinct;
  for (U32 i = 0; i < 2 * attributes; ++i) values.drawn[i % 2].add(drawn[i]);
  addBoth<OursEight>(values, "popular 8-octet values", Ours::name);
  addBoth<Locked<U64>>(values, "popular 8-octet values", FlyweightLocked::name);
}

}  // namespace bench
