// How many paths carry each value of a list type.
//
//   ValueUses<4> uses;
//   uses.add(octets of a value, paths that carry it);   // again for every list
//   uses.addUp();
//   uses.distinct();
#pragma once

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "ReaderNames.h"
#include "Zonet/NetworkOrder.h"

namespace bgpcomm {

/// Sorted, not hashed: tables with many values, which are most in need of speed, are served best.
template <std::size_t valueSize>
class ValueUses {
 public:
  using Value = std::array<U8, valueSize>;

  void add(const Value& value, U64 paths) { uses_.emplace_back(wordsOf(value), paths); }

  /// Sums what was added of equal values. The functions below need it.
  void addUp() {
    if (uses_.empty()) return;
    std::sort(uses_.begin(), uses_.end());
    auto last = uses_.begin();
    for (auto use = last + 1; use != uses_.end(); ++use) {
      if (use->first == last->first)
        last->second += use->second;
      else
        *++last = *use;
    }
    uses_.erase(last + 1, uses_.end());
  }

  U64 distinct() const { return uses_.size(); }

  /// Calls `use` with the octets of each value.
  void forEach(auto use) const {
    for (const Use& one : uses_) use(Octets(octetsOf(one.first)));
  }

  /// Values and the paths that carry them: at most `count`, the most used first; of equally used
  /// ones the smaller.
  std::vector<std::pair<Value, U64>> mostUsed(std::size_t count) const {
    std::vector<Use> most(std::min(count, uses_.size()));
    std::partial_sort_copy(uses_.begin(), uses_.end(), most.begin(), most.end(),
                           [](const Use& a, const Use& b) {
                             return a.second != b.second ? a.second > b.second : a.first < b.first;
                           });
    std::vector<std::pair<Value, U64>> found;
    found.reserve(most.size());
    for (const auto& [words, paths] : most) found.emplace_back(octetsOf(words), paths);
    return found;
  }

 private:
  /// Numbers compare faster than octets, and in the same order.
  using Words = std::array<U32, valueSize / sizeof(U32)>;
  using Use = std::pair<Words, U64>;

  static Words wordsOf(const Value& value) {
    Words words;
    for (std::size_t i = 0; i < words.size(); ++i)
      words[i] = Zonet::loadNetworkOrder<U32>(value.data() + i * sizeof(U32));
    return words;
  }
  static Value octetsOf(const Words& words) {
    Value value;
    for (std::size_t i = 0; i < words.size(); ++i)
      Zonet::storeNetworkOrder(value.data() + i * sizeof(U32), words[i]);
    return value;
  }

  std::vector<Use> uses_;
};

}  // namespace bgpcomm
