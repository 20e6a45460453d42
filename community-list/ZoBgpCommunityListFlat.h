// Standard and large community lists: an ascending vector of plain values without repeats, built by
// appending, frozen and shared by `dedup`. ZoBgpCommunityListStandard.h has an example.
//
// A list type derives from this and says only what is its own: its traits, and its texts.
//
// 1. A list is private and grows until `dedup`; then it is sorted, without repeats, immutable.
// 2. Lists of one table are equal exactly when they are the same object.
//
// Threads: a list being built belongs to one thread; an interned one may be read from any.
#pragma once

#include "MoxStash/DedupHandle.h"
#include "MoxStash/StoreManager.h"
#include "community-list/ZoBgpCommunityListStored.h"
#include "community-list/ZoBgpCommunityListTables.h"
#include "community-list/ZoBgpCommunityListTail.h"
#include "community-list/ZoBgpCommunityListVector.h"
#include "community-list/ZoBgpCommunityListWire.h"

namespace Routing::Bgp {

/// `Traits` has
///   Value      made of 32-bit words without padding, ordered by `<`; the words in network order
///              are its octets on the wire
///   Table      the intern table of the list type
///   Cached     what is computed once when a list is frozen: `Cached(list)`; empty when unused
///   attribute  its path attribute
template <class List, class Traits>
class FlatCommList : public TailEntity<List, MoxStash::DedupHandle> {
 public:
  using Value = typename Traits::Value;
  using Content = Value;
  using Table = Mox::Ptr<typename Traits::Table>;
  using ConstList = Mox::Ptr<const List>;
  using Stored = StoredCommList;
  /// Its path attribute, and the octets of one value there.
  static constexpr BgpPathAttrType pathAttribute = Traits::attribute;
  static constexpr U32 valueSize = sizeof(Value);

  // --- Building. ---

  /// Appends a value, in any order and repeats welcome; amortized O(1). Asserts
  /// "!commVectorSorted()" on a frozen list.
  void commIs(const Value& value);
  /// Freezes and interns: sorts, drops repeats. Returns the one list of this content, perhaps
  /// another object than this. A list that is interned already returns itself. O(n log n).
  ConstList dedup(const Table& table);

  // --- Reading. REQUIRES: the list is frozen. Each of these asserts "commVectorSorted()" on a list
  // --- that is still being built, except where another thing is said. ---

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
  /// Whether the list is frozen; never asserts.
  bool commVectorSorted() const { return comm_.sorted(); }

  U32 hash() const override;
  bool compare(const Orv::DedupHandle* other) const override;

  // --- The wire. `octets` is the value of the attribute, without its header. ---

  /// The whole attribute: header, then the values in ascending order. Asserts "attrSize <= 0xFFFF":
  /// an attribute has no room for more octets (16,383 values of 4).
  Mox::String serialize() const;
  /// A new list, frozen and not yet interned; or the fault. An attribute without values is
  /// malformed (RFC 7606), though `serialize` writes one for an empty list.
  static FromWire<List> fromWire(std::span<const U8> octets);
  // The next two sort on the stack, of which the longest attributes take 64 KiB and usual ones
  // 1 KiB.

  /// The interned list of these octets, if there is one. Allocates nothing.
  static FromWire<const List> lookupWire(const Table& table, std::span<const U8> octets);
  /// The interned list of these octets, made if there is none. Allocates only then.
  static FromWire<const List> dedupWire(const Table& table, std::span<const U8> octets);

  // --- The store. `List::destash` is the way back.

  static constexpr MoxStash::RecordType recordType = storedListType(Traits::attribute);
  /// Appends the list's record; the list need not be interned. See StoreWriter.
  MoxStash::StoreReference store(MoxStash::StoreWriter& writer) const;
  /// The interned list of a record. StoreException when the record is damaged.
  static ConstList dedupStored(const Table& table, MoxStash::StoreReference stored,
                               const MoxStash::StoreManager& manager) {
    return List::destash(stored, manager)->dedup(table);
  }

  /// A private list of these values as they are; frozen if they are `sorted`. REQUIRES: `sorted`
  /// values ascend, none is there twice.
  static Mox::Ptr<List> restored(bool sorted, std::span<const Value> values);

  /// How its table places lists: by their values, so that they are found from the wire. A frozen
  /// list keeps its place; REQUIRES: the seed is the process's then.
  static U64 placeOfMember(const Orv::DedupHandle& member, U64 seed);
  /// Octets behind the object; see TailEntity.
  std::size_t tailOctets() const { return comm_.roomOctets(); }

 protected:
  /// The values, also of a list that is still being built.
  std::span<const Value> unchecked() const { return {comm_.begin(), comm_.size()}; }
  /// The values computed when the list was interned. REQUIRES: it is interned. Asserts
  /// "... dedupState() != Orv::dedupHandleStateNeverDeduped()".
  const typename Traits::Cached& cached() const {
    MOX_ASSERT(
        this->dedupState() != Orv::dedupHandleStateNeverDeduped(),
        "__null == ( this ) || ( this )->dedupState() != Orv::dedupHandleStateNeverDeduped()");
    return cached_;
  }

 private:
  static_assert(sizeof(Value) % sizeof(U32) == 0 &&
                std::has_unique_object_representations_v<Value>);

  static bool same(std::span<const Value> a, std::span<const Value> b);
  static U32 placeOf(std::span<const Value> values, U64 seed);
  static Mox::Ptr<List> frozen(std::span<const Value> ascending);
  void frozenAt(U32 place);
  template <bool insert>
  static FromWire<const List> findWire(const Table& table, std::span<const U8> octets);

  [[no_unique_address]] typename Traits::Cached cached_;  // valid once interned
  // Sorted exactly when it is frozen; the word of an interned list is the place in the table.
  CommVector<Value> comm_;
};

template <class List, class Traits>
bool FlatCommList<List, Traits>::comm(const Value& value) const {
  const auto sorted = values();
  return std::binary_search(sorted.begin(), sorted.end(), value);
}

template <class List, class Traits>
auto FlatCommList<List, Traits>::values() const -> std::span<const Value> {
  MOX_ASSERT(commVectorSorted(), "commVectorSorted()");
  return unchecked();
}

}  // namespace Routing::Bgp
