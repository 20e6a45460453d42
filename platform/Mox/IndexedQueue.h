// A queue whose entries keep their index: entries go in at the end and out at the front, and any
// of them can be stored, found and removed by index.
//
//   Mox::IndexedQueue<String> queue;
//   queue.enqueue("a");     // 0
//   queue.insert(7, "b");
//   queue.enqueue("c");     // 8
//   queue.dequeue();        // "a"
//
// 1. `enqueue` hands out the larger of the next index and the last entry's index plus one, and
//    moves the next index behind it: no index is handed out twice.
// 2. Storing at an index leaves the next index as it is.
// 3. Entries are visited by ascending index.
#pragma once

#include <algorithm>
#include <map>

#include "Mox/Exception.h"

namespace Mox {

template <class T>
class IndexedQueue {
 public:
  /// The queue's own record.
  struct Metadata {
    U64 nextIndex = 0;
    friend bool operator==(const Metadata&, const Metadata&) = default;
  };

  /// The record that outlives the entries: the next index.
  const Metadata& metadata() const { return metadata_; }
  std::size_t size() const { return entries_.size(); }
  bool empty() const { return entries_.empty(); }
  /// Pairs of index and entry.
  auto begin() const { return entries_.begin(); }
  auto end() const { return entries_.end(); }

  /// The entry, or a `T()` when there is none.
  T find(U32 index) const {
    const auto place = entries_.find(index);
    return place == entries_.end() ? T() : place->second;
  }
  /// Adds at the end and returns the index. RangeException when the indices are used up.
  U32 enqueue(T entry) {
    const U64 behindLast = entries_.empty() ? 0 : U64{entries_.rbegin()->first} + 1;
    const U64 index = std::max(metadata_.nextIndex, behindLast);
    if (index > 0xFFFFFFFF) throw RangeException("linkqueue index space full");
    entries_.emplace_hint(entries_.end(), U32(index), std::move(entry));
    metadata_.nextIndex = index + 1;
    return U32(index);
  }
  /// Stores at the index, in place of what is there.
  void insert(U32 index, T entry) { entries_.insert_or_assign(index, std::move(entry)); }
  /// Removes the entry and returns it; a `T()` when there is none.
  T erase(U32 index) { return take(entries_.find(index)); }
  /// Removes the first entry and returns it; a `T()` when there is none.
  T dequeue() { return take(entries_.begin()); }

 private:
  T take(typename std::map<U32, T>::iterator place) {
    if (place == entries_.end()) return T();
    T entry = std::move(place->second);
    entries_.erase(place);
    return entry;
  }

  std::map<U32, T> entries_;
  Metadata metadata_;
};

}  // namespace Mox
