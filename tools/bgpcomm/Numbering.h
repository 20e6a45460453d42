// Numbers instead of texts and octets, and sets of these.
//
//   Numbering peers;
//   NumberSet seen;
//   seen.insert(peers.numberOf(peerKey(peer)));
//   seen.size();
#pragma once

#include <bit>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Mox/Types.h"

namespace bgpcomm {
using namespace Mox::Words;

/// Numbers keys from 0 on, in the order in which they come. A key that is known allocates nothing.
class Numbering {
 public:
  U32 numberOf(std::string_view key) {
    if (const auto known = numbers_.find(key); known != numbers_.end()) return known->second;
    const auto made = numbers_.emplace(key, U32(keys_.size())).first;
    keys_.push_back(&made->first);
    return made->second;
  }
  std::size_t size() const { return keys_.size(); }
  /// REQUIRES: number < size().
  const std::string& operator[](U32 number) const { return *keys_[number]; }

 private:
  struct Hash : std::hash<std::string_view> {
    using is_transparent = void;
  };
  std::unordered_map<std::string, U32, Hash, std::equal_to<>> numbers_;
  std::vector<const std::string*> keys_;
};

/// A bit for each number up to the largest.
class NumberSet {
 public:
  void insert(U32 number) {
    wordsFor(number / 64 + 1);
    words_[number / 64] |= U64{1} << number % 64;
  }
  void add(const NumberSet& other) {
    wordsFor(other.words_.size());
    for (std::size_t i = 0; i < other.words_.size(); ++i) words_[i] |= other.words_[i];
  }
  U64 size() const {
    U64 size = 0;
    for (const U64 word : words_) size += U64(std::popcount(word));
    return size;
  }

 private:
  void wordsFor(std::size_t count) {
    if (words_.size() < count) words_.resize(count);
  }
  std::vector<U64> words_;
};

}  // namespace bgpcomm
