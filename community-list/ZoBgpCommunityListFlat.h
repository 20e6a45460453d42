// What lists of plain values have in common: an ascending vector without repeats, built by
// appending, frozen and shared by `dedup`.
//
// A kind of list derives from this and says only what is its own: its value, its attribute, what
// it caches when it is frozen, its text.
#pragma once

#include <memory>
#include <new>

#include "Mox/Entity.h"
#include "MoxStash/DedupHandle.h"
#include "Orv/DedupHashTableUnorderedSet.h"
#include "Orv/HashMix.h"
#include "attr/ZoBgpSerialize.h"
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
class FlatCommList : public Mox::Entity<List, MoxStash::DedupHandle> {
 public:
  using Value = typename Kind::Value;
  using Table = Mox::Ptr<typename Kind::Table>;
  using ConstList = Mox::Ptr<const List>;

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
  /// Whether the list is frozen.
  bool commVectorSorted() const { return commVectorSorted_; }

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

  /// A private list of these values as they are; `sorted` promises that they ascend strictly.
  static Mox::Ptr<List> restored(bool sorted, std::span<const Value> values);

  /// How the kind's table places its members.
  static U64 placeOfMember(const Orv::DedupHandle& member, U64 seed) {
    // Where it was placed when it was frozen, by the one seed of the process.
    const auto& list = static_cast<const List&>(member);
    const auto values = list.values();
    return seed == Orv::placementSeed() ? list.place_ : placeOfValues(values, seed);
  }

  // A list that is made frozen, as those from the wire are, holds its values behind the object in
  // one piece of memory: one allocation to make it, one to end it. Lists that were built value by
  // value keep them in a piece of its own.
  struct Inside {
    std::size_t values;
  };
  static void* operator new(std::size_t octets) { return List::type.allocation().allocate(octets); }
  static void* operator new(std::size_t octets, Inside inside) {
    return List::type.allocation().allocate(octets + inside.values * sizeof(Value));
  }
  static void operator delete(FlatCommList* base, std::destroying_delete_t) {
    auto* const list = static_cast<List*>(base);
    const std::size_t octets = sizeof(List) + (base->own_ ? 0 : base->size_ * sizeof(Value));
    list->~List();
    List::type.allocation().deallocate(list, octets);
  }
  // For constructors that throw.
  static void operator delete(void* memory, std::size_t octets) noexcept {
    List::type.allocation().deallocate(memory, octets);
  }
  static void operator delete(void* memory, Inside inside) noexcept {
    List::type.allocation().deallocate(memory, sizeof(List) + inside.values * sizeof(Value));
  }

 protected:
  ~FlatCommList() override {
    if (own_) Allocator().deallocate(own_, capacity());
  }
  std::span<const Value> unchecked() const { return {data(), size_}; }
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

  using Allocator = Mox::TrackedAllocator<Value>;

  static U32 placeOfValues(std::span<const Value> values, U64 seed) {
    return U32(Orv::placeOf(values.data(), values.size_bytes(), seed));
  }
  const Value* data() const { return own_ ? own_ : inside(); }
  Value* inside() const {
    return reinterpret_cast<Value*>(const_cast<List*>(static_cast<const List*>(this)) + 1);
  }
  // While it is being built, a list has room for the next power of two.
  std::size_t capacity() const { return commVectorSorted_ ? size_ : std::bit_ceil(size_); }
  static Mox::Ptr<List> frozen(std::span<const Value> ascending, U32 place);
  void freeze();
  template <bool insert>
  static FromWire<const List> findWire(const Table& table, std::span<const U8> octets);

  // Ascending and without repeats exactly when `commVectorSorted_`; then also of exact capacity.
  bool commVectorSorted_ = false;
  [[no_unique_address]] typename Kind::Cached cached_;  // valid once interned
  Value* own_ = nullptr;  // the values, or null: then they stand behind this object
  U32 size_ = 0;
  U32 place_ = 0;  // valid once sorted
};

template <class List, class Kind>
void FlatCommList<List, Kind>::commIs(const Value& value) {
  MOX_ASSERT(!commVectorSorted(), "!commVectorSorted()");
  if (size_ == 0 || std::has_single_bit(size_)) {
    Value* const grown = Allocator().allocate(size_ ? 2 * std::size_t(size_) : 1);
    std::copy_n(own_, size_, grown);
    if (own_) Allocator().deallocate(own_, size_);
    own_ = grown;
  }
  own_[size_++] = value;
}

template <class List, class Kind>
void FlatCommList<List, Kind>::freeze() {
  if (commVectorSorted_) return;
  if (own_) {
    const std::size_t room = capacity();
    const auto left = U32(sortAndDropRepeats(std::span(own_, size_)));
    Value* const exact = Allocator().allocate(left);
    std::copy_n(own_, left, exact);
    Allocator().deallocate(own_, room);
    own_ = exact;
    size_ = left;
  }
  place_ = placeOfValues(unchecked(), Orv::placementSeed());
  commVectorSorted_ = true;
}

template <class List, class Kind>
auto FlatCommList<List, Kind>::dedup(const Table& table) -> ConstList {
  auto* const self = static_cast<List*>(this);
  Mox::Ptr<Orv::DedupHandle> reference(self);
  if (this->dedupState() == Orv::dedupHandleStateNeverDeduped()) {
    freeze();
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
  const auto mine = values(), theirs = static_cast<const List*>(other)->values();
  return mine.size() == theirs.size() &&
         (mine.empty() || std::memcmp(mine.data(), theirs.data(), mine.size_bytes()) == 0);
}

template <class List, class Kind>
Mox::String FlatCommList<List, Kind>::serialize() const {
  SerializePathAttribute out(Kind::attribute, BgpPathAttrFlag::optionalTransitive,
                             U32(values().size_bytes()));
  forEachWord(values(), [&](U32 word) { out.addU32hton(word); });
  return out.serializedString();
}

template <class List, class Kind>
Mox::Ptr<List> FlatCommList<List, Kind>::restored(bool sorted, std::span<const Value> values) {
  if (sorted) return frozen(values, placeOfValues(values, Orv::placementSeed()));
  auto list = Mox::makeNew<List>();
  for (const Value& value : values) list->commIs(value);
  return list;
}

template <class List, class Kind>
Mox::Ptr<List> FlatCommList<List, Kind>::frozen(std::span<const Value> ascending, U32 place) {
  Mox::Ptr<List> list(new (Inside{ascending.size()}) List);
  list->hasNotificationActiveIs(true);
  std::uninitialized_copy(ascending.begin(), ascending.end(), list->inside());
  list->commVectorSorted_ = true;
  list->size_ = U32(ascending.size());
  list->place_ = place;
  return list;
}

template <class List, class Kind>
FromWire<List> FlatCommList<List, Kind>::fromWire(std::span<const U8> octets) {
  if (auto fault = checkWireLength(Kind::attribute, octets.size(), sizeof(Value)))
    return {nullptr, fault, 0};
  const std::size_t count = octets.size() / sizeof(Value);
  return withScratch<Value>(count, [&](Value* scratch) -> FromWire<List> {
    const bool ascending = decodeWords(octets, scratch);
    const std::size_t left = ascending ? count : sortAndDropRepeats(std::span(scratch, count));
    return {restored(true, {scratch, left}), std::nullopt, U32(count - left)};
  });
}

template <class List, class Kind>
template <bool insert>
FromWire<const List> FlatCommList<List, Kind>::findWire(const Table& table,
                                                        std::span<const U8> octets) {
  if (octets.empty() || octets.size() > maxAttributeOctets || octets.size() % sizeof(Value) != 0)
      [[unlikely]]
    return {nullptr, checkWireLength(Kind::attribute, octets.size(), sizeof(Value)), 0};
  const std::size_t count = octets.size() / sizeof(Value);
  return withScratch<Value>(count, [&](Value* scratch) -> FromWire<const List> {
    const bool ascending = decodeWords(octets, scratch);
    const std::span<const Value> sorted(
        scratch, ascending ? count : sortAndDropRepeats(std::span(scratch, count)));
    const auto& set = *table->dedupHashTable();
    const U32 place = placeOfValues(sorted, set.seed());
    auto found = set.lookup(place, [&](const Orv::DedupHandle& member) {
      const auto& list = static_cast<const List&>(member);
      return list.size_ == sorted.size() &&
             std::memcmp(list.data(), sorted.data(), sorted.size_bytes()) == 0;
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
