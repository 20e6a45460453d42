// Lists of the other types: large ones, and extended ones of both families with their groups and
// values, all interned from the octets of an attribute.
#include <random>
#include <set>

#include "InternRuns.h"
#include "ListContenders.h"

namespace bench {

namespace {

class OursLarge {
 public:
  static constexpr const char* name = Ours::name;
  using Held = LargeCommList::PtrConst;
  void intern(Octets octets, std::vector<Held>& paths) {
    paths.push_back(LargeCommList::dedupWire(table_, octets).list);
  }

 private:
  LargeCommListDedupTable::Ptr table_ = largeCommListDedupTableFactory();
};

using Value = std::vector<U8>;

// Values of one size, ranked by popularity: that of rank r is drawn in proportion to 1/r.
struct Values {
  std::vector<Value> all;
  std::discrete_distribution<U32> rank;
};

// `heads` are the octets that a value begins with, chosen evenly; the rest is random.
Values makeValues(U32 count, std::size_t size, const std::vector<Value>& heads) {
  std::mt19937_64 random(21);
  Values values;
  std::vector<double> shares;
  for (U32 i = 0; i < count; ++i) {
    Value value = heads[random() % heads.size()];
    while (value.size() < size) value.push_back(U8(random()));
    values.all.push_back(std::move(value));
    shares.push_back(1.0 / (i + 1));
  }
  values.rank = std::discrete_distribution<U32>(shares.begin(), shares.end());
  return values;
}

// `count` lists of 1 to `longest` values, shorter ones more often, and five times as many
// attributes of them; a fifth is out of order.
Workload lists(const char* name, U32 count, const char* of, Values values, U32 longest,
               double average) {
  const U32 drawn = 5 * count;
  std::mt19937_64 random(22);
  std::geometric_distribution<U32> more(1 / average);
  std::set<std::set<Value>> known;
  std::vector<std::vector<U8>> attributes;
  std::vector<double> shares;
  const auto attribute = [&](const std::set<Value>& list) {
    std::vector<Value> order(list.begin(), list.end());
    if (random() % 5 == 0) std::shuffle(order.begin(), order.end(), random);
    std::vector<U8> octets;
    for (const Value& value : order) octets.insert(octets.end(), value.begin(), value.end());
    return octets;
  };
  while (attributes.size() < count) {
    const U32 length = 1 + more(random);
    if (length > longest) continue;
    std::set<Value> list;
    while (list.size() < length) list.insert(values.all[values.rank(random)]);
    if (!known.insert(list).second) continue;
    attributes.push_back(attribute(list));
    shares.push_back(1.0 / double(attributes.size()));
  }
  Workload workload{name, std::to_string(count) + " lists of " + of, {}, {}};
  std::discrete_distribution<U32> rank(shares.begin(), shares.end());
  for (U32 i = 0; i < drawn; ++i) workload.drawn.add(attributes[rank(random)]);
  std::shuffle(attributes.begin(), attributes.end(), random);
  for (const auto& octets : attributes) workload.distinct.add(octets);
  return workload;
}

}  // namespace

Workload makeLargeLists(U32 count) {
  return lists("large lists", count, "1 to 12 of 4000 values, 4 on average, Zipf-like",
               makeValues(4'000, 12, {{0x00, 0x00, 0xFD, 0xE8}, {0x00, 0x03, 0x0D, 0x40}}), 12, 4);
}
Workload makeExtendedLists(U32 count) {
  return lists("extended lists", count, "1 to 8 of 30000 values, 3 on average, Zipf-like",
               makeValues(30'000, 8,
                          {{0x00, 0x02},
                           {0x00, 0x02},
                           {0x02, 0x02},
                           {0x00, 0x03},
                           {0x03, 0x0b},
                           {0x43, 0x00},
                           {0x80, 0x06}}),
               8, 3);
}
Workload makeIpv6ExtendedLists(U32 count) {
  return lists("IPv6 extended lists", count, "1 to 4 of 30000 values, 2 on average, Zipf-like",
               makeValues(30'000, 20, {{0x00, 0x02, 0x20, 0x01}, {0x00, 0x0b, 0x20, 0x01}}), 4, 2);
}

const Workload& largeLists() {
  static const Workload workload = makeLargeLists(20'000);
  return workload;
}
const Workload& extendedLists() {
  static const Workload workload = makeExtendedLists(20'000);
  return workload;
}
const Workload& ipv6ExtendedLists() {
  static const Workload workload = makeIpv6ExtendedLists(20'000);
  return workload;
}

void addLists() {
  addInterningOf<OursLarge>(largeLists());
  addInterningOf<Unlocked<std::vector<Large>>>(largeLists());
  addInterningOf<Locked<std::vector<Large>>>(largeLists());
  addInterningOf<OursLists8>(extendedLists());
  addInterningOf<Unlocked<std::vector<U64>>>(extendedLists());
  addInterningOf<Locked<std::vector<U64>>>(extendedLists());
  addInterningOf<OursLists20>(ipv6ExtendedLists());
  addInterningOf<Unlocked<std::vector<Twenty>>>(ipv6ExtendedLists());
  addInterningOf<Locked<std::vector<Twenty>>>(ipv6ExtendedLists());
}

}  // namespace bench
