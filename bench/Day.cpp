// A routing agent's day: 20 peers announce 500,000 VPN paths, then one peer after another goes and
// comes again.
#include <random>
#include <stdexcept>
#include <tuple>

#include "InternRuns.h"
#include "ListContenders.h"
#include "attr/ZoBgpAttributeReader.h"
#include "attr/ZoBgpGlobals.h"
#include "attr/ZoBgpSerialize.h"
#include "path/ZoBgpCommunityTables.h"

namespace bench {
namespace {

constexpr U32 peers = 20, pathsOfPeer = 25'000, pathCount = peers * pathsOfPeer;

void addAttribute(std::vector<U8>& attributes, BgpPathAttrType type, Octets value) {
  const Mox::String octets =
      pathAttributeString(type, BgpPathAttrFlag::optionalTransitive, U32(value.size()),
                          [&](U8* at) { std::ranges::copy(value, at); });
  attributes.insert(attributes.end(), octets.begin(), octets.end());
}

// The community attributes of every path, those of one peer behind the other. Five paths come to a
// list, as in the workloads of single types; one path in ten has an IPv6 list too.
Stream makePaths() {
  constexpr U32 lists = pathCount / 5, withIpv6 = 10;
  const Stream standard = MadeUpLists(lists).draw(pathCount, 31);
  const Stream extended = makeExtendedLists(lists).drawn;
  const Stream large = makeLargeLists(lists).drawn;
  const Stream ipv6 = makeIpv6ExtendedLists(lists / withIpv6).drawn;
  Stream paths;
  std::vector<U8> attributes;
  for (U32 i = 0; i < pathCount; ++i) {
    attributes.clear();
    addAttribute(attributes, CommList::pathAttribute, standard[i]);
    addAttribute(attributes, ExtCommList::pathAttribute, extended[i]);
    if (i % withIpv6 == 0)
      addAttribute(attributes, ExtCommIp6List::pathAttribute, ipv6[i / withIpv6]);
    addAttribute(attributes, LargeCommList::pathAttribute, large[i]);
    paths.add(attributes);
  }
  return paths;
}

const Stream& pathAttributes() {
  static const Stream paths = makePaths();
  return paths;
}

class OursPaths {
 public:
  static constexpr const char* name = Ours::name;
  using Path = PathCommunities;
  void read(Octets attributes, Path& path) {
    if (tables_.readAll(attributes, path)) throw std::logic_error("a path of the day has a fault");
  }
  const CommunityTables& tables() const { return tables_; }

 private:
  CommunityTables tables_;
};

template <class Locking>
class FlyweightPaths {
  template <class Value>
  using ListOf = Flyweight<Locking, std::vector<Value>>;
  template <class... Values>
  struct Types {
    using Tables = std::tuple<ListOf<Values>...>;
    using Path = std::tuple<std::optional<typename ListOf<Values>::Held>...>;
  };
  using All = Types<U32, U64, Twenty, Large>;

 public:
  static constexpr const char* name = Flyweight<Locking>::name;
  using Path = typename All::Path;
  void read(Octets attributes, Path& path) {
    PathAttributeReader in(attributes);
    while (const auto attribute = in.next()) {
      if (attribute->type == CommList::pathAttribute) set<0, U32>(path, attribute->value);
      if (attribute->type == ExtCommList::pathAttribute) set<1, U64>(path, attribute->value);
      if (attribute->type == ExtCommIp6List::pathAttribute) set<2, Twenty>(path, attribute->value);
      if (attribute->type == LargeCommList::pathAttribute) set<3, Large>(path, attribute->value);
    }
  }

 private:
  template <std::size_t index, class Value>
  static void set(Path& path, Octets value) {
    std::get<index>(path).emplace(payloadOf<std::vector<Value>>(value));
  }

  typename All::Tables tables_;  // made anew here, used by the flyweights
};

/// The paths of all peers. Those of one peer belong to one thread.
template <class Contender>
class Peers {
 public:
  const Contender& contender() const { return contender_; }
  void announce(U32 peer) {
    const Stream& attributes = pathAttributes();
    for (U32 i = peer * pathsOfPeer; i < (peer + 1) * pathsOfPeer; ++i)
      contender_.read(attributes[i], paths_[i]);
  }
  void announceAll() {
    for (U32 peer = 0; peer < peers; ++peer) announce(peer);
  }
  /// In another order than they came. Calls `released` after each path.
  void withdraw(U32 peer, auto released) {
    for (const U32 i : order_) {
      paths_[peer * pathsOfPeer + i] = {};
      released(peer * pathsOfPeer + i);
    }
  }
  void withdraw(U32 peer) {
    withdraw(peer, [](U32) {});
  }
  /// The day of every `threads`-th peer, beginning with number `thread`.
  void live(U32 thread, U32 threads) {
    for (U32 peer = thread; peer < peers; peer += threads) announce(peer);
    for (U32 peer = thread; peer < peers; peer += threads) {
      withdraw(peer);
      announce(peer);
    }
  }

 private:
  static std::vector<U32> makeOrder() {
    std::vector<U32> order(pathsOfPeer);
    for (U32 i = 0; i < pathsOfPeer; ++i) order[i] = i;
    std::shuffle(order.begin(), order.end(), std::mt19937_64(32));
    return order;
  }

  Contender contender_;
  std::vector<typename Contender::Path> paths_{pathCount};
  const std::vector<U32> order_ = makeOrder();
};

double wallSecondsOnTwoThreads(auto work) {
  const double begin = wallSeconds();
  std::thread other(work, 1);
  work(0);
  other.join();
  return wallSeconds() - begin;
}

// Per path announced, of which there are twice as many as paths; withdrawing them is in it.
template <class Contender>
void day(benchmark::State& state, U32 threads) {
  pathAttributes();
  Passes passes(state, 2 * pathCount);
  for (auto _ : state) {
    Peers<Contender> all;
    if (threads == 1)
      passes.time([&] { all.live(0, 1); });
    else
      passes.add(wallSecondsOnTwoThreads([&](U32 thread) { all.live(thread, 2); }));
  }
}

template <class Contender>
void octetsOfPaths(benchmark::State& state) {
  pathAttributes();
  for (auto _ : state) {
    { Peers<Contender> renewed; }
    const NoFreePieces none;
    Peers<Contender> all;
    const std::size_t before = heapOctets();
    all.announceAll();
    state.counters["octets"] = double(heapOctets() - before) / pathCount;
    state.SetIterationTime(1e-9);
  }
}

// Every release is timed by itself on the wall's clock, one reading of which is in it. Each path is
// released three times, at the same point of the day, and the shortest time counts: an interrupt
// does not meet the same path thrice.
template <class Contender>
void longestRelease(benchmark::State& state) {
  Peers<Contender> all;
  all.announceAll();
  for (auto _ : state) {
    std::vector<double> shortest(pathCount, 1);
    for (int round = 0; round < 3; ++round)
      for (U32 peer = 0; peer < peers; ++peer) {
        double begin = wallSeconds();
        all.withdraw(peer, [&](U32 path) {
          const double end = wallSeconds();
          shortest[path] = std::min(shortest[path], end - begin);
          begin = wallSeconds();
        });
        all.announce(peer);
      }
    state.counters["us"] = 1e6 * *std::max_element(shortest.begin(), shortest.end());
    state.SetIterationTime(1e-9);
  }
}

template <class Contender>
void addDayOf(U32 threads, int repetitions) {
  add(nameOf("day", threads == 1 ? "one thread" : "two threads", Contender::name), 1,
      [threads](benchmark::State& state) { day<Contender>(state, threads); })
      ->Repetitions(repetitions);
}

template <class Contender>
void addPathsOf() {
  add(nameOf("octets per path", "day", Contender::name), 1, octetsOfPaths<Contender>)
      ->Repetitions(1);
  add(nameOf("longest release", "day", Contender::name), 1, longestRelease<Contender>)
      ->Repetitions(1);
}

}  // namespace

void addDay(int repetitions) {
  using Unlocked = FlyweightPaths<boost::flyweights::no_locking>;
  using Locked = FlyweightPaths<boost::flyweights::simple_locking>;
  addDayOf<OursPaths>(1, repetitions);
  addDayOf<Unlocked>(1, repetitions);
  if (ZoBgpGlobals::multiThreaded()) {
    addDayOf<OursPaths>(2, repetitions);
    addDayOf<Locked>(2, repetitions);
  }
  addPathsOf<OursPaths>();
  addPathsOf<Unlocked>();
}

std::string dayDistribution() {
  Peers<OursPaths> all;
  const auto lists = [&] {
    std::size_t members = 0;
    all.contender().tables().forEachKind(
        [&](const auto& tables) { members += tables.lists()->dedupHashTable()->members(); });
    return members;
  };
  all.announceAll();
  const std::size_t whole = lists();
  all.withdraw(0);
  return std::to_string(pathCount) + " VPN paths of " + std::to_string(peers) + " peers, " +
         std::to_string(whole) + " lists, of which " + std::to_string(whole - lists()) +
         " go with the first peer";
}

}  // namespace bench
