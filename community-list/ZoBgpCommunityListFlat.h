// What lists of plain values have in common: an ascending vector without repeats, built by
// appending, frozen and shared by `dedup`.
//
// A kind of list derives from this and says only what is its own: its value, its attribute, what
// it caches when it is frozen, its text.
#pragma once

#include "MoxStash/DedupHandle.h"
#include "Orv/DedupHashTableUnorderedSet.h"
#include "Orv/HashMix.h"
#include "attr/ZoBgpSerialize.h"
#include "community-list/ZoBgpCommunityListStored.h"
#include "community-list/ZoBgpCommunityListTables.h"
#include "community-list/ZoBgpCommunityListWire.h"

namespace Routing::Bgp {

/// `Kind` has
///   Value      made of 32-bit words without padding, ordered by `<`; the words in network order
///              are its octets on the wire
///   Table      the intern table of the kind
///   Cached     what is computed once when a list is frozen: `Cached(list)`; empty when unused
///   attribute  its path attribute
template <class List, class Kind>
class FlatCommList : public TailEntity<List, MoxStash::DedupHandle> {
 public:
  using Value = typename Kind::Value;
  using Content = Value;
  using Table = Mox::Ptr<typename Kind::Table>;
  using ConstList = Mox::Ptr<const List>;
  using Stored = StoredCommList;
  /// Its path attribute, and the octets of one value there.
  static constexpr BgpPathAttrType pathAttribute = Kind::attribute;
  static constexpr U32 valueSize = sizeof(Value);

  // --- Building: a list that was never deduped belongs to its maker. ---

  /// Appends a value, in any order and repeats welcome.
  void commIs(const Value& value);
  /// Freezes and interns: sorts, drops repeats, and returns the one list of this content, which
  /// may be another object than this. A list that is interned already returns itself.
  ConstList dedup(const Table& table);

  // --- Reading: once frozen, from any thread. Ends the process with "commVectorSorted()" on a list
  // --- that is still being built. ---

  /// Whether the value is in the list; O(log n).
  bool comm(const Value& value) const;
  /// How many values there are.
  U32 comms() const { return U32(values().size()); }
  bool empty() const { return values().empty(); }
  /// The values, ascending. Valid as long as the list.
  std::span<const Value> values() const;
  /// Calls `use(value)` for each value, ascending. Lists of every type have it.
  template <class Use>
  void forEachValue(Use use) const {
    for (const Value& value : values()) use(value);
  }
  /// Whether the list is frozen.
  bool commVectorSorted() const { return comm_.sorted(); }

  U32 hash() const override;
  bool compare(const Orv::DedupHandle* other) const override;

  // --- The wire. `octets` is the value of the attribute, without its header. ---

  /// The whole attribute: header, then the values in ascending order. Asserts "attrSize <= 0xFFFF":
  /// an attribute has no room for more octets (16,383 values of 4).
  Mox::String serialize() const;
  /// A new list, frozen and not yet interned. The attribute of an empty list (`serialize` makes
  /// one) is not accepted back: from a peer it is malformed.
  static FromWire<List> fromWire(std::span<const U8> octets);
  // The next two sort on the stack: up to 64 KiB of it for the longest attributes, 1 KiB for usual
  // ones.

  /// The interned list of these octets, if there is one. Allocates nothing.
  static FromWire<const List> lookupWire(const Table& table, std::span<const U8> octets);
  /// The interned list of these octets, made if there is none. Allocates only then.
  static FromWire<const List> dedupWire(const Table& table, std::span<const U8> octets);

  // --- The store. `List::destash` is the way back.

  static constexpr MoxStash::StoredKind storedKind = storedListKind(Kind::attribute);
  /// Appends the list's record, interned or not; see StoreWriter.
  MoxStash::StoreReference store(MoxStash::StoreWriter& writer) const;
  /// The interned list of a record. StoreException when the record is damaged.
  static ConstList dedupStored(const Table& table, MoxStash::StoreReference stored,
                               const MoxStash::StoreManager& manager) {
    return List::destash(stored, manager)->dedup(table);
  }

  /// A private list of these values as they are; `sorted` promises that they ascend strictly.
  static Mox::Ptr<List> restored(bool sorted, std::span<const Value> values);

  /// How the kind's table places its members.
  static U64 placeOfMember(const Orv::DedupHandle& member, U64 seed) {
    const auto& list = static_cast<const List&>(member);
    const auto frozen = list.values();
    // Where it was placed when it was frozen, by the one seed of the process.
    return seed == Orv::placementSeed() ? list.comm_.place() : placeOf(frozen, seed);
  }
  /// Octets of the values that stand behind the object.
  std::size_t tailOctets() const { return comm_.inside() ? comm_.sizeInOctets() : 0; }

 protected:
  std::span<const Value> unchecked() const { return {comm_.begin(), comm_.size()}; }
  /// What was computed when the list was frozen for its table.
  const typename Kind::Cached& cached() const {
    MOX_ASSERT(
        this->dedupState() != Orv::dedupHandleStateNeverDeduped(),
        "__null == ( this ) || ( this )->dedupState() != Orv::dedupHandleStateNeverDeduped()");
    return cached_;
  }

 private:
  static_assert(sizeof(Value) % sizeof(U32) == 0 &&
                std::has_unique_object_representations_v<Value>);

  static bool same(std::span<const Value> a, std::span<const Value> b) {
    return a.size() == b.size() &&
           (a.empty() || std::memcmp(a.data(), b.data(), a.size_bytes()) == 0);
  }
  static U32 placeOf(std::span<const Value> values, U64 seed) {
    return U32(Orv::placeOf(values.data(), values.size_bytes(), seed));
  }
  static Mox::Ptr<List> frozen(std::span<const Value> ascending, U32 place);
  void freezeAt(U32 place) {
    comm_.placeIs(place);
    comm_.sortedIs(true);
  }
  template <bool insert>
  static FromWire<const List> findWire(const Table& table, std::span<const U8> octets);

  [[no_unique_address]] typename Kind::Cached cached_;  // valid once interned
  CommVector<Value> comm_;                              // sorted exactly when it is frozen
};

template <class List, class Kind>
void FlatCommList<List, Kind>::commIs(const Value& value) {
  MOX_ASSERT(!commVectorSorted(), "!commVectorSorted()");
  comm_.add(value);
}

template <class List, class Kind>
auto FlatCommList<List, Kind>::dedup(const Table& table) -> ConstList {
  auto* const self = static_cast<List*>(this);
  Mox::Ptr<Orv::DedupHandle> reference(self);
  if (this->dedupState() == Orv::dedupHandleStateNeverDeduped()) {
    if (!commVectorSorted()) {
      comm_.sortAndTrim();
      freezeAt(placeOf(unchecked(), Orv::placementSeed()));
    }
    cached_ = typename Kind::Cached(*self);
  }
  return Mox::staticCast<const List>(table->dedup(std::move(reference)));
}

template <class List, class Kind>
bool FlatCommList<List, Kind>::comm(const Value& value) const {
  const auto sorted = values();
  return std::binary_search(sorted.begin(), sorted.end(), value);
}

template <class List, class Kind>
auto FlatCommList<List, Kind>::values() const -> std::span<const Value> {
  MOX_ASSERT(commVectorSorted(), "commVectorSorted()");
  return unchecked();
}

template <class List, class Kind>
U32 FlatCommList<List, Kind>::hash() const {
  if (values().empty()) return 0;
  Orv::HashMix mix;
  forEachWord(values(), [&](U32 word) { mix.feed(word); });
  return mix.finish();
}

template <class List, class Kind>
bool FlatCommList<List, Kind>::compare(const Orv::DedupHandle* other) const {
  return same(values(), static_cast<const List*>(other)->values());
}

template <class List, class Kind>
Mox::String FlatCommList<List, Kind>::serialize() const {
  SerializePathAttribute out(Kind::attribute, BgpPathAttrFlag::optionalTransitive,
                             U32(values().size_bytes()));
  forEachWord(values(), [&](U32 word) { out.addU32hton(word); });
  return out.serializedString();
}

template <class List, class Kind>
MoxStash::StoreReference FlatCommList<List, Kind>::store(MoxStash::StoreWriter& writer) const {
  return writer.once(*this, [&] { return storeCommList(writer, comm_.sorted(), unchecked()); });
}

template <class List, class Kind>
Mox::Ptr<List> FlatCommList<List, Kind>::restored(bool sorted, std::span<const Value> values) {
  if (sorted) return frozen(values, placeOf(values, Orv::placementSeed()));
  auto list = Mox::makeNew<List>();
  list->comm_.reserve(U32(values.size()));
  for (const Value& value : values) list->commIs(value);
  return list;
}

template <class List, class Kind>
Mox::Ptr<List> FlatCommList<List, Kind>::frozen(std::span<const Value> ascending, U32 place) {
  auto list = List::withTail(Tail{ascending.size_bytes()});
  list->comm_.roomIs(list->tail(), U32(ascending.size()));
  for (const Value& value : ascending) list->comm_.add(value);
  list->freezeAt(place);
  return list;
}

template <class List, class Kind>
FromWire<List> FlatCommList<List, Kind>::fromWire(std::span<const U8> octets) {
  if (auto fault = checkWireLength(Kind::attribute, octets.size(), sizeof(Value)))
    return {nullptr, fault, 0};
  const std::size_t count = octets.size() / sizeof(Value);
  return withScratch<Value>(count, [&](Value* scratch) -> FromWire<List> {
    const auto sorted = decodeAscending(octets, scratch);
    return {restored(true, sorted), std::nullopt, U32(count - sorted.size())};
  });
}

template <class List, class Kind>
template <bool insert>
FromWire<const List> FlatCommList<List, Kind>::findWire(const Table& table,
                                                        std::span<const U8> octets) {
  if (auto fault = checkWireLength(Kind::attribute, octets.size(), sizeof(Value))) [[unlikely]]
    return {nullptr, fault, 0};
  const std::size_t count = octets.size() / sizeof(Value);
  return withScratch<Value>(count, [&](Value* scratch) -> FromWire<const List> {
    const auto sorted = decodeAscending(octets, scratch);
    const auto& set = *table->dedupHashTable();
    const U32 place = placeOf(sorted, set.seed());
    auto found = set.lookup(place, [&](const Orv::DedupHandle& member) {
      return same(static_cast<const List&>(member).unchecked(), sorted);
    });
    if (insert && !found) {
      auto list = frozen(sorted, place);
      list->cached_ = typename Kind::Cached(*list);
      found = table->dedupHashTable()->dedup(std::move(list), place);
    }
    return {Mox::staticCast<const List>(std::move(found)), std::nullopt,
            U32(count - sorted.size())};
  });
}

template <class List, class Kind>
FromWire<const List> FlatCommList<List, Kind>::lookupWire(const Table& table,
                                                          std::span<const U8> octets) {
  return findWire<false>(table, octets);
}

template <class List, class Kind>
FromWire<const List> FlatCommList<List, Kind>::dedupWire(const Table& table,
                                                         std::span<const U8> octets) {
  return findWire<true>(table, octets);
}

}  // namespace Routing::Bgp
