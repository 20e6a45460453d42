// How many paths carry each value of a kind.
//
//   ValueUses<4> uses;
//   for (each list) uses.add(values of the list, paths that hold it);
//   uses.addUp();
//   uses.distinct();
#pragma once

#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <vector>

#include "ReaderNames.h"

namespace bgpcomm {

/// Sorted, not hashed: tables with many values, which are most in need of speed, are served best.
template <std::size_t valueSize>
class ValueUses {
 public:
  /// Values one behind the other.
  void add(Octets values, U64 paths) {
    Cursor in(values);
    while (!in.atEnd()) {
      Value value;
      for (U32& word : value) word = in.u32();
      uses_.emplace_back(value, paths);
    }
  }

  /// To be called once, when all is there.
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

  /// Calls `use` with the octets of each value, once it is added up.
  void forEach(auto use) const {
    for (const Use& one : uses_) use(Octets(octetsOf(one.first)));
  }

  /// Values, by their octets, and the paths that carry them: at most `count`, the most used first;
  /// of equally used ones those that are smaller.
  std::vector<std::pair<std::vector<U8>, U64>> mostUsed(std::size_t count) const {
    std::vector<Use> most(std::min(count, uses_.size()));
    std::partial_sort_copy(uses_.begin(), uses_.end(), most.begin(), most.end(),
                           [](const Use& a, const Use& b) {
                             return a.second != b.second ? a.second > b.second : a.first < b.first;
                           });
    std::vector<std::pair<std::vector<U8>, U64>> found;
    found.reserve(most.size());
    for (const auto& [value, paths] : most) found.emplace_back(octetsOf(value), paths);
    return found;
  }

 private:
  /// In network order, so that values sort as their octets do.
  using Value = std::array<U32, valueSize / sizeof(U32)>;
  using Use = std::pair<Value, U64>;

  static std::vector<U8> octetsOf(const Value& value) {
    std::vector<U8> octets;
    for (const U32 word : value)
      for (int shift = 24; shift >= 0; shift -= 8) octets.push_back(U8(word >> shift));
    return octets;
  }

  std::vector<Use> uses_;
};

}  // namespace bgpcomm
