// The extended communities of a path, in both families: a list of interned values, kept once as a
// whole and once grouped by what they mean, the groups shared by paths that differ elsewhere.
//
// A family is what differs, and nothing else:
//   Value, ValueTable     its communities, and the table that interns them
//   List, Group, Table    the classes that derive from what stands here, and their table
//   ListSnapshot, GroupSnapshot
//   attribute             its path attribute
//   makeGroup             a new group of a classification with room for so many members
//   groupTable            where groups of a classification are interned
//   assertClass           that a group is of the class for its classification
//   oneLinkBandwidth      whether a path may carry no more than one link bandwidth
//   listRestoreIsHeard    whether the store manager hears of restored lists, not of values alone
//
// 1. A list is private and grows until `dedup`; then it is sorted by content, without repeats,
//    immutable.
// 2. Lists of one table are equal exactly when they are the same object. REQUIRES: all lists of one
//    table hold values of one value table; with two, equal contents are two lists.
// 3. A list has at most one group per classification, in the order of classifications.
// 4. An interned list holds its groups, and these hold the values: every value is alive as long as
//    the list is held, but `references()` of a value does not count the list.
//
// Threads: a list being built belongs to one thread; an interned one may be read from any.
#pragma once

#include "MoxStash/DedupHandle.h"
#include "MoxStash/StoreManager.h"
#include "community-list/ZoBgpCommunityListFamilyGroup.h"
#include "community-list/ZoBgpCommunityListGroupVector.h"
#include "community-list/ZoBgpCommunityListStored.h"
#include "community-list/ZoBgpCommunityListWire.h"

namespace Routing::Bgp {

/// All extended communities of a path.
template <class F>
class ExtCommListOf : public TailEntity<typename F::List, MoxStash::DedupHandle> {
 public:
  using Family = F;
  using List = typename F::List;
  using Group = typename F::Group;
  using Value = typename F::Value;
  using Content = typename Value::Content;
  using ConstValue = Mox::Ptr<const Value>;
  using ConstGroup = Mox::Ptr<const Group>;
  using ConstList = Mox::Ptr<const List>;
  using Table = Mox::Ptr<typename F::Table>;
  using ValueTable = Mox::Ptr<typename F::ValueTable>;
  using Stored = StoredCommList;
  /// Its path attribute, and the octets of one value there.
  static constexpr BgpPathAttrType pathAttribute = F::attribute;
  static constexpr U32 valueSize = sizeof(Content);

  // --- Building. REQUIRES: the list is not interned; each of these asserts
  // --- "... dedupState() == Orv::dedupHandleStateNeverDeduped()".

  /// Appends an interned community, in any order and repeats welcome. Asserts "__null != comm", and
  /// that the community is interned.
  void commIs(const ConstValue& comm);
  /// Appends all of another list's, also of this one; null does nothing.
  void append(const ConstList& other);
  /// Appends all of a group's; null does nothing.
  void appendClassificationList(const ConstGroup& group);
  /// Reserves room for so many in total.
  void expectedCommunityCountIs(U32 count);
  /// Sorts and drops repeats for look-ups before the list is interned. Communities appended later
  /// are found only after sorting again.
  void sortComms();
  /// Freezes and interns groups and list. Returns the one list of this content, perhaps another
  /// object than this; this one is of no more use then. REQUIRES: not called before; at most
  /// one link bandwidth, in a family that has at most one per path. Asserts "comms() <= 1". Check
  /// untrusted input first, as `fromWire` does. When memory runs out, the list is as before but
  /// sorted.
  ConstList dedup(const Table& table);

  // --- Reading.

  /// The community of this content, or null; O(log n). Asserts "commVectorSorted".
  ConstValue comm(const Content& content) const;
  /// The same, under the name that policy uses.
  ConstValue lookupExtComm(const Content& content) const { return comm(content); }
  /// The group, or null when the list has none of it; O(1). REQUIRES: the list is interned. Asserts
  /// "... dedupState() != Orv::dedupHandleStateNeverDeduped()".
  ConstGroup classificationList(ExtCommClassification classification) const;
  /// The groups, for visits; empty until the list is interned. Valid as long as the list.
  const ExtCommGroupVector<Group>& classificationLists() const { return groups_; }
  /// How many there are. Asserts "commVectorSorted()".
  U32 totalCommunities() const;
  /// How many of them cross borders of autonomous systems; 0 until the list is interned.
  U32 totalTransitiveCommunities() const { return totalTransitive_; }
  /// How many communities were appended; once sorted, how many different ones.
  U32 comms() const { return comm_.size(); }
  bool empty() const { return comm_.empty(); }
  /// Whether they ascend, none twice: after `sortComms` or `dedup`.
  bool commVectorSorted() const { return comm_.sorted(); }
  /// The communities, for visits. Valid as long as the list.
  const ExtCommVector<Value>& commVector() const { return comm_; }
  /// Calls `use(content)` for the content of each community, ascending once the list is sorted.
  /// Lists of every type have it. `commVector` has the interned values themselves.
  template <class Use>
  void forEachValue(Use use) const {
    for (const ConstValue& comm : comm_) use(comm->getContent());
  }
  /// A mutable copy.
  Mox::Ptr<typename F::ListSnapshot> commSnapshot() const;

  U32 hash() const override;
  bool compare(const Orv::DedupHandle* other) const override;

  // --- Text.

  /// Policy texts under `strepFormatClassification`, each with a space behind it, the last too.
  Mox::String commsStringForm() const;
  /// `[ <...> <...> ]`: the show texts; with nothing but two spaces inside for an empty list.
  Mox::String toStrep() const;
  /// The same, in the stream's letter case; `NULL` for a null list.
  friend std::ostream& operator<<(std::ostream& stream, const ExtCommListOf* list) {
    return list ? list->writeTo(stream) : Mox::writeText(stream, "NULL");
  }

  /// The groups' texts, for reflection.
  Mox::String groupsText() const;

  // --- The wire. `octets` is the value of the attribute, without its header.

  /// The whole attribute, of all communities or of the transitive ones; empty when that leaves
  /// none. Asserts "commVectorSorted()", and "attrSize <= 0xFFFF" as an attribute has no room for
  /// more.
  Mox::String serialize(bool sendNonTransExtComms) const;
  /// A new list of interned values, sorted and not yet interned itself. Octets from a peer never
  /// assert: two different link bandwidths are a fault like any other.
  static FromWire<List> fromWire(const ValueTable& values, std::span<const U8> octets);
  // The next two sort on the stack, of which the longest attributes take 128 KiB and usual ones
  // 2 KiB.

  /// The interned list of these octets, if there is one. Allocates nothing.
  static FromWire<const List> lookupWire(const Table& table, std::span<const U8> octets);
  /// The interned list of these octets, made if there is none. Allocates only then.
  static FromWire<const List> dedupWire(const Table& table, const ValueTable& values,
                                        std::span<const U8> octets);

  // --- The store.

  /// A private list as it lies in the store, with its order and flag. Its communities are private
  /// too, so it cannot be interned; `dedupContents` makes the interned list of its contents.
  /// StoreException when the record is damaged.
  static Mox::Ptr<List> destash(MoxStash::StoreReference stored,
                                const MoxStash::StoreManager& manager);
  /// The interned list of the contents of this one, for example of a list from the store.
  /// StoreException on two different link bandwidths in a family that has at most one.
  ConstList dedupContents(const Table& table, const ValueTable& values) const;
  /// The interned list of a record, by both of these. StoreException as they say.
  static ConstList dedupStored(const Table& table, const ValueTable& values,
                               MoxStash::StoreReference stored,
                               const MoxStash::StoreManager& manager);
  static constexpr MoxStash::RecordType recordType = storedListType(F::attribute);
  /// Appends the list's record and those of its communities; the list need not be interned. See
  /// StoreWriter.
  MoxStash::StoreReference store(MoxStash::StoreWriter& writer) const;

  /// How its table places lists: by their contents, so that they are found from the wire.
  static U64 placeOfMember(const Orv::DedupHandle& member, U64 seed);
  /// Octets behind the object; see TailEntity.
  std::size_t tailOctets() const { return tailPointers_ * sizeof(void*); }

 protected:
  /// Asserts as said under building.
  void assertNeverDeduped() const;

  U32 totalTransitive_ = 0;
  // Lent once there are groups, which hold the communities. The word is the place in the table.
  ExtCommVector<Value> comm_;

 private:
  static U32 placeOf(const auto& comms, U64 seed);
  static bool hasTwoLinkBandwidths(const ExtCommVector<Value>& comms);
  static WireFault linkBandwidthFault(std::span<const U8> octets,
                                      const ExtCommVector<Value>& values);
  template <class Use>
  static auto withValues(const ValueTable& table, std::span<const Content> contents, Use use);
  static Mox::Ptr<List> made(ExtCommVector<Value>& sorted, U32 groups);
  static ConstList dedupValues(const Table& table, ExtCommVector<Value>& sorted, U32 place);
  ConstList dedupContentsIfAllowed(const Table& table, const ValueTable& values) const;
  template <bool insert>
  static FromWire<const List> findWire(const Table& table, const ValueTable* values,
                                       std::span<const U8> octets);
  /// The members of a list that are of one classification: how many, and the place of their group.
  struct Share {
    U32 members = 0;
    U64 place = 0;
  };
  ConstGroup findGroup(const Table& table, ExtCommClassification classification,
                       const Share& share) const;
  void makeGroups(const Table& table, void* room, U32 place);
  std::ostream& writeTo(std::ostream& stream) const;

  [[no_unique_address]] ExtCommGroupVector<Group> groups_;  // empty until interned
  U16 tailPointers_ = 0;                                    // room behind the object
};

}  // namespace Routing::Bgp
