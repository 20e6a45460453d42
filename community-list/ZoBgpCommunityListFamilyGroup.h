// The communities of a path that have one classification, in both families of extended communities:
// all route targets, all colors, and so on. Paths that differ elsewhere share these groups.
//
//   const auto group = list->classificationList(extCommClassificationColor);
//   group->comms()            // 2
//   group->comm(content)      // the community of this content, or null
//
// 1. A group is private and grows until `dedup`; then it is sorted by content, without repeats,
//    immutable.
// 2. Groups of one table are equal exactly when they are the same object.
//
// Threads: a group being built belongs to one thread; an interned one may be read from any.
#pragma once

#include "Orv/DedupHandle.h"
#include "Orv/Placement.h"
#include "community-list/ZoBgpCommunityListTail.h"
#include "community-list/ZoBgpCommunityListVector.h"
#include "community/ZoBgpCommunityEnums.h"

namespace Routing::Bgp {

/// Interned communities of a family; once sorted, ascending by content.
template <class Value>
using ExtCommVector = CommVector<Mox::Ptr<const Value>>;

template <class F>
class ExtCommListOf;

/// The communities of one classification. `F` is the family; see ZoBgpCommunityListFamilyList.h.
template <class F>
class ExtCommGroupOf : public Orv::DedupHandle {
 public:
  using Family = F;
  using Value = typename F::Value;
  using Content = typename Value::Content;
  using ConstValue = Mox::Ptr<const Value>;
  using Table = Mox::Ptr<typename F::Table>;

  /// Private and empty.
  explicit ExtCommGroupOf(ExtCommClassification classification) : classification_(classification) {}

  /// The one that all members have.
  ExtCommClassification classification() const { return classification_; }
  /// Appends an interned community, in any order and repeats welcome. Asserts "__null != comm", and
  /// that neither the group is interned nor the community is not.
  void commIs(const ConstValue& comm);
  /// The community of this content, or null; O(log n). Asserts "commVectorSorted".
  ConstValue comm(const Content& content) const;
  /// How many communities there are; once frozen, how many different ones.
  U32 comms() const { return comm_.size(); }
  /// Whether the group is frozen.
  bool commVectorSorted() const { return comm_.sorted(); }
  /// The communities, for visits. Valid as long as the group.
  const ExtCommVector<Value>& commVector() const { return comm_; }

  /// Freezes and interns, and returns the one group of this content. REQUIRES: at most one link
  /// bandwidth, in a family that has at most one per path. Asserts "comms() <= 1". Check untrusted
  /// input first, as `fromWire` does.
  Mox::Ptr<const typename F::Group> dedup(const Table& table);
  /// A mutable copy.
  Mox::Ptr<typename F::GroupSnapshot> commSnapshot() const;

  U32 hash() const override;
  bool compare(const Orv::DedupHandle* other) const override;

  /// `extCommClassificationColor : <...> <...>`: the classification, then the show texts.
  Mox::String toStrep() const;
  /// The same, in the stream's letter case; nothing for a null group.
  friend std::ostream& operator<<(std::ostream& stream, const ExtCommGroupOf* group) {
    return group ? group->writeTo(stream) : stream;
  }

  /// How its table places groups: by the addresses of their members.
  static U64 placeOfMember(const Orv::DedupHandle& member, U64 seed);
  /// The place of a group of which `place` is that of all members before the last; 0 of none.
  static U64 placeWith(U64 place, const Value& last, U64 seed) {
    return Orv::placeOf(place ^ reinterpret_cast<std::uintptr_t>(&last), seed);
  }
  /// Octets behind the object; see TailEntity.
  std::size_t tailOctets() const { return tailPointers_ * sizeof(void*); }

 protected:
  friend F;
  friend class ExtCommListOf<F>;

  /// A new group with room for so many members behind it.
  template <class Group>
  static Mox::Ptr<Group> withRoom(ExtCommClassification classification, U32 members);
  /// Asserts "comms() <= 1" on a group of link bandwidths, in a family that has at most one per
  /// path.
  static void assertLinkBandwidths(U32 classification, U32 comms);
  /// Writes `toStrep`.
  std::ostream& writeTo(std::ostream& stream) const;

  const ExtCommClassification classification_;
  U16 tailPointers_ = 0;  // room behind the object
  ExtCommVector<Value> comm_;
};

}  // namespace Routing::Bgp
