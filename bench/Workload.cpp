#include "Workload.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <random>
#include <set>
#include <stdexcept>

#include "Zonet/NetworkOrder.h"
#include "tools/bgpcomm/ListTypes.h"
#include "tools/bgpcomm/Reading.h"

namespace bench {
namespace {

constexpr U32 drawnAttributes = 100'000;
constexpr U32 differentValues = 4'000;
constexpr U32 asNumbers = 400;
constexpr U32 longestList = 40;

// Ranks 0 to n - 1, rank r with a share in proportion to 1 / (r + 1).
class Zipf {
 public:
  explicit Zipf(U32 n) : sums_(n) {
    double sum = 0;
    for (U32 r = 0; r < n; ++r) sums_[r] = sum += 1.0 / (r + 1);
  }
  U32 operator()(std::mt19937_64& random) {
    std::uniform_real_distribution<double> upTo(0, sums_.back());
    const auto at = std::upper_bound(sums_.begin(), sums_.end() - 1, upTo(random));
    return U32(at - sums_.begin());
  }

 private:
  std::vector<double> sums_;
};

std::vector<U32> communityValues(std::mt19937_64& random) {
  std::vector<U32> as(asNumbers), values = {0xFFFFFF01, 0xFFFF0000};
  for (U32& number : as) number = 1 + U32(random() % 64'495);
  while (values.size() < differentValues)
    values.push_back(as[random() % asNumbers] << 16 | U32(random() % 65'536));
  std::shuffle(values.begin(), values.end(), random);
  return values;
}

// One value in five out of order.
void addAttribute(Stream& stream, std::vector<U32> values, std::mt19937_64& random) {
  if (random() % 5 == 0) std::shuffle(values.begin(), values.end(), random);
  stream.addValues(values);
}

U64 mixed(U64 x) {
  x = (x ^ x >> 30) * 0xbf58476d1ce4e5b9;
  x = (x ^ x >> 27) * 0x94d049bb133111eb;
  return x ^ x >> 31;
}

std::vector<U32> canonical(Octets attribute) {
  std::vector<U32> values;
  for (std::size_t i = 0; i < attribute.size(); i += sizeof(U32))
    values.push_back(Zonet::loadNetworkOrder<U32>(attribute.data() + i));
  std::sort(values.begin(), values.end());
  values.erase(std::unique(values.begin(), values.end()), values.end());
  return values;
}

std::string averages(const Workload& workload) {
  char text[200];
  std::snprintf(text, sizeof text,
                "%zu distinct lists of %.1f values on average; %zu attributes of %.1f values",
                workload.distinct.size(), workload.distinct.averageValues(), workload.drawn.size(),
                workload.drawn.averageValues());
  return text;
}

}  // namespace

void Stream::add(Octets attribute) {
  octets_.insert(octets_.end(), attribute.begin(), attribute.end());
  ends_.push_back(octets_.size());
}

void Stream::addValues(std::span<const U32> values) {
  std::vector<U8> octets(values.size_bytes());
  for (std::size_t i = 0; i < values.size(); ++i)
    Zonet::storeNetworkOrder(octets.data() + i * sizeof(U32), values[i]);
  add(octets);
}

MadeUpLists::MadeUpLists(U32 lists) {
  std::mt19937_64 random(1);
  const std::vector<U32> values = communityValues(random);
  Zipf rank(differentValues);
  std::geometric_distribution<U32> more(1 / 10.6);  // cut at 40, this makes 11 on average
  std::set<std::vector<U32>> known;
  while (lists_.size() < lists) {
    U32 length = 1 + more(random);
    if (length > longestList) continue;
    std::set<U32> list;
    while (list.size() < length) list.insert(values[rank(random)]);
    std::vector<U32> ascending(list.begin(), list.end());
    if (known.insert(ascending).second) lists_.push_back(std::move(ascending));
  }
}

Stream MadeUpLists::distinct() const {
  std::mt19937_64 random(2);
  std::vector<std::vector<U32>> lists = lists_;
  std::shuffle(lists.begin(), lists.end(), random);
  Stream stream;
  for (const auto& list : lists) addAttribute(stream, list, random);
  return stream;
}

Stream MadeUpLists::draw(U32 attributes, U32 seed, U32 part, U32 parts) const {
  std::mt19937_64 random(seed);
  Zipf rank(U32(lists_.size()) / parts);
  Stream stream;
  for (U32 i = 0; i < attributes; ++i)
    addAttribute(stream, lists_[rank(random) * parts + part], random);
  return stream;
}

Workload MadeUpLists::workload() const {
  Workload workload{"made-up", {}, distinct(), draw(drawnAttributes, 3)};
  workload.distribution = averages(workload) +
                          "; lists and values Zipf-like (share of rank r in proportion to 1/r), "
                          "lists of 1 to 40 values, one attribute in five out of order";
  return workload;
}

Workload fileWorkload(const std::string& file) {
  Workload workload{std::filesystem::path(file).filename(), {}, {}, {}};
  const auto type = bgpcomm::listTypeOf(8);
  bgpcomm::readFile(file, [&](const bgpcomm::Path&, const bgpcomm::CommunityValues& values, auto) {
    if (!values[type].empty() && workload.drawn.size() < drawnAttributes)
      workload.drawn.add(values[type]);
  });
  if (workload.drawn.size() == 0) throw std::runtime_error(file + ": no standard communities");

  std::set<std::vector<U32>> known;
  std::vector<Octets> distinct;
  U32 unordered = 0;
  for (std::size_t i = 0; i < workload.drawn.size(); ++i) {
    const Octets attribute = workload.drawn[i];
    std::vector<U32> list = canonical(attribute);
    Stream ascending;
    ascending.addValues(list);
    unordered += !std::ranges::equal(ascending[0], attribute);
    if (known.insert(std::move(list)).second) distinct.push_back(attribute);
  }
  std::shuffle(distinct.begin(), distinct.end(), std::mt19937_64(4));
  for (const Octets attribute : distinct) workload.distinct.add(attribute);
  workload.distribution = averages(workload) + " in the order of the file, " +
                          std::to_string(100 * unordered / workload.drawn.size()) +
                          "% out of order or with repeats";
  return workload;
}

void numberedAttribute(U64 i, std::vector<U32>& values) {
  constexpr U32 count = 11;
  values.clear();
  const U64 number = mixed(i);
  // Steps of at most 2^28 never wrap; the first two values hold the whole number.
  values.push_back(U32(number) >> 4);
  values.push_back(values[0] + 1 + U32(number >> 36));
  for (U32 k = 2; k < count; ++k)
    values.push_back(values.back() + 1 + U32(mixed(number + k) >> 37));
}

}  // namespace bench
