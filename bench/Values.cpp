// Single extended communities: octets to interned object, parsing alone, text.
#include <random>

#include "InternRuns.h"
#include "ValueContenders.h"

namespace bench {
namespace {

// 30,000 route targets, or their like of 20 octets; those of rank r drawn in proportion to 1/r.
Workload values(const char* name, std::size_t octets) {
  constexpr U32 count = 30'000, drawn = 200'000;
  Workload workload{name, "30000 route targets, Zipf-like", {}, {}};
  std::mt19937_64 random(11);
  std::vector<std::vector<U8>> all;
  std::vector<double> shares;
  for (U32 i = 0; i < count; ++i) {
    std::vector<U8> one(octets);
    for (U8& octet : one) octet = U8(random());
    one[0] = 0x00;
    one[1] = 0x02;
    workload.distinct.add(one);
    all.push_back(std::move(one));
    shares.push_back(1.0 / (i + 1));
  }
  std::shuffle(all.begin(), all.end(), random);
  std::discrete_distribution<U32> rank(shares.begin(), shares.end());
  for (U32 i = 0; i < drawn; ++i) workload.drawn.add(all[rank(random)]);
  return workload;
}

template <class Work>
void addEach(const Workload& workload, const char* operation, const char* contender, Work work) {
  add(nameOf(operation, workload.name, contender), 2, [&workload, work](benchmark::State& state) {
    OursEight table;
    Paths<OursEight> objects;
    internAll(table, workload.distinct, objects);
    Passes passes(state, objects.size());
    for (auto _ : state)
      passes.time([&] {
        for (const auto& object : objects) work(*object);
      });
  });
}

}  // namespace

const Workload& eightOctetValues() {
  static const Workload workload = values("8-octet values", 8);
  return workload;
}
const Workload& twentyOctetValues() {
  static const Workload workload = values("20-octet values", 20);
  return workload;
}

void addValues() {
  const Workload &eight = eightOctetValues(), &twenty = twentyOctetValues();
  addInterningOf<OursEight>(eight);
  addInterningOf<Unlocked<U64>>(eight);
  addInterningOf<Locked<U64>>(eight);
  addInterningOf<FloorRaw>(eight);
  addInterningOf<OursTwenty>(twenty);
  addInterningOf<Unlocked<Twenty>>(twenty);
  addInterningOf<Locked<Twenty>>(twenty);
  addInterningOf<FloorRaw>(twenty);
  const auto kept = [](auto made) { benchmark::DoNotOptimize(made); };
  addEach(eight, "parse", Ours::name, [kept](const ExtComm& object) {
    kept(parser()->parseExtendedCommunity(object.getContent()).get());
  });
  addEach(eight, "make", "factory alone", [kept](const ExtComm& object) {
    kept(extCommRouteTargetAsFactory(object.getContent(), false).get());
  });
  addEach(eight, "policy text", Ours::name, [kept](const ExtComm& object) {
    kept(object.toStrepForPolicy(ExtComm::StrepFormat(strepFormatClassification | strepFormatUI))
             .size());
  });
  addEach(eight, "show text", Ours::name,
          [kept](const ExtComm& object) { kept(object.toStrep().size()); });
}

}  // namespace bench
