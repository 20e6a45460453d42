// Numbers instead of things that are long, and sets of these.
//
//   Numbering<std::string> peers;
//   NumberSet seen;
//   seen.insert(peers.numberOf(asText(address)));
//   seen.size();
#pragma once

#include <bit>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "Mox/Types.h"
#include "Orv/Placement.h"

namespace bgpcomm {
using namespace Mox::Words;

/// For texts of files: nobody can choose them so that they collide, as the process has a seed of
/// its own. The order of a container differs from run to run.
struct SeededHash {
  std::size_t operator()(std::string_view text) const {
    return std::size_t(Orv::placeOf(text.data(), text.size(), Orv::placementSeed()));
  }
};

template <class Thing>
struct HashOf : std::hash<Thing> {};
template <>
struct HashOf<std::string> : SeededHash {};

/// Numbers things from 0 on, in the order in which they come.
template <class Thing, class Hash = HashOf<Thing>>
class Numbering {
 public:
  /// The number of the thing that equals the key; one that is new is made from the key.
  U32 numberOf(const auto& key) {
    if (2 * things_.size() >= slots_.size()) grow();
    const U64 hash = mixed(Hash()(key));
    Slot& slot = slotOf(hash, [&](U32 number) { return things_[number] == key; });
    if (!slot.taken) {
      things_.emplace_back(key);
      slot = {U32(hash >> 32), U32(things_.size() - 1), true};
    }
    return slot.number;
  }
  std::size_t size() const { return things_.size(); }
  /// REQUIRES: number < size().
  const Thing& operator[](U32 number) const { return things_[number]; }

 private:
  /// Finds a thing by half of its hash. The first free slot behind its place ends a search.
  struct Slot {
    U32 hash = 0;
    U32 number = 0;
    bool taken = false;
  };
  static U64 mixed(U64 hash) { return (hash ^ hash >> 32) * 0x9E3779B97F4A7C15; }

  /// The slot of a thing, or the free one where it belongs.
  Slot& slotOf(U64 hash, auto isIt) {
    const U32 half = U32(hash >> 32);
    for (std::size_t at = half;; ++at) {
      Slot& slot = slots_[at & (slots_.size() - 1)];
      if (!slot.taken || (slot.hash == half && isIt(slot.number))) return slot;
    }
  }
  void grow() {
    std::vector<Slot> old(slots_.empty() ? 64 : 2 * slots_.size());  // a power of two
    old.swap(slots_);
    for (const Slot& slot : old)
      if (slot.taken) slotOf(U64{slot.hash} << 32, [](U32) { return false; }) = slot;
  }

  std::vector<Thing> things_;
  std::vector<Slot> slots_;  // at most half of them taken
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
