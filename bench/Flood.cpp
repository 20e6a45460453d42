// A flood of 8-octet contents that all have one hash, as anybody can make and send it, beside
// contents of the same communities that are spread.
#include <random>
#include <set>
#include <stdexcept>

#include "InternRuns.h"
#include "ValueContenders.h"

namespace bench {
namespace {

constexpr std::size_t contents = 100'000;

// The step of the hash once an octet is added, and the way back: 1025 is odd, so it has
// an inverse modulo 2^32, and a shift to the right is taken back from the top.
constexpr U32 step(U32 state) {
  state *= 1025;
  return state ^ state >> 6;
}
constexpr U32 stepBack(U32 state) {
  constexpr U32 inverse = 0xC00FFC01;
  static_assert(U32(inverse * 1025) == 1);
  state ^= state >> 6;
  state ^= state >> 12;
  state ^= state >> 24;
  return state * inverse;
}
static_assert(stepBack(step(0x89ABCDEF)) == 0x89ABCDEF);

/// Makes contents of one hash. The hash takes the octets from the last on the wire to the first.
/// The upper half of a content is chosen, and walked back from the state that the hash ends in.
/// From there each value of the next octet gives one state further back; if one of the 65,536
/// beginnings of two octets ends at most 255 below it, the octet between closes the gap.
class OneHash {
 public:
  OneHash() {
    for (U32 octets = 0; octets < 0x10000; ++octets)
      beginnings_.push_back({step(step(U8(octets)) + (octets >> 8)), octets});
    std::sort(beginnings_.begin(), beginnings_.end());
  }

  /// Appends all contents of this upper half, of which there is one on average.
  void add(U32 upper, std::vector<U64>& contents) const {
    U32 state = end;
    for (int shift = 24; shift >= 0; shift -= 8) state = stepBack(state) - U8(upper >> shift);
    for (U32 fourth = 0; fourth <= 0xFF; ++fourth) {
      const U32 most = stepBack(stepBack(state) - fourth);
      const Beginning least = {most - std::min(most, 0xFFu), 0};
      for (auto at = std::lower_bound(beginnings_.begin(), beginnings_.end(), least);
           at != beginnings_.end() && at->state <= most; ++at)
        contents.push_back(U64(upper) << 32 | fourth << 24 | (most - at->state) << 16 | at->octets);
    }
  }

 private:
  static constexpr U32 end = 0x2A65D1F3;  // any will do
  struct Beginning {
    U32 state, octets;
    auto operator<=>(const Beginning&) const = default;
  };
  std::vector<Beginning> beginnings_;
};

// Route targets of two-octet and then of four-octet ASes.
const std::vector<U64>& flood() {
  static const auto made = [] {
    const OneHash oneHash;
    std::vector<U64> flood;
    for (U32 upper = 0x00020000; flood.size() < contents; ++upper) {
      if (upper == 0x00030000) upper = 0x02020000;
      oneHash.add(upper, flood);
    }
    flood.resize(contents);
    return flood;
  }();
  return made;
}

// Refuses values that repeat, or are not of one hash, or have the same hash by more than chance.
Workload workload(const char* name, std::vector<U64> values, bool oneHash) {
  std::mt19937_64 random(41);
  const std::set<U64> different(values.begin(), values.end());
  std::set<U32> hashes;
  for (const U64 value : values) hashes.insert(ExtCommContent(value).hash());
  const bool asMeant = oneHash ? hashes.size() == 1 : hashes.size() > contents * 99 / 100;
  if (different.size() != contents || !asMeant)
    throw std::logic_error(std::string(name) + ": " + std::to_string(different.size()) + " with " +
                           std::to_string(hashes.size()) + " hashes");
  Workload workload{
      name, std::to_string(contents) + " with " + std::to_string(hashes.size()), {}, {}};
  std::shuffle(values.begin(), values.end(), random);
  for (const U64 value : values) workload.distinct.add(ExtCommContent(value).octets());
  for (std::size_t i = 0; i < 2 * contents; ++i)
    workload.drawn.add(workload.distinct[random() % contents]);
  return workload;
}

}  // namespace

const Workload& floodOfOneHash() {
  static const Workload made = workload("8-octet values of one hash", flood(), true);
  return made;
}

const Workload& spreadContents() {
  static const Workload made = [] {
    std::mt19937_64 random(42);
    auto values = flood();
    for (U64& value : values) value = value >> 32 << 32 | U32(random());
    return workload("8-octet values, spread", std::move(values), false);
  }();
  return made;
}

void addFlood() {
  addInterningOf<OursEight>(floodOfOneHash());
  addInterningOf<OursEight>(spreadContents());
}

}  // namespace bench
