// The IPv6-address-specific extended communities of a path that have one classification (RFC 5701).
//
//   const auto group = list->classificationList(extCommClassificationUnSpecified);
//   group->comms()          // 2
//   group->commSnapshot()   // a mutable copy
//
// ZoBgpCommunityListFamilyGroup.h says what groups do; here stands what differs from the 8-octet
// family.
#pragma once

#include "community-list/ZoBgpCommunityListFamilyList.h"
#include "community-list/ZoBgpCommunityListSnapshotTemplates.h"
#include "ip6/ExtCommIp6DedupTable.h"

namespace Routing::Bgp {

class ExtCommIp6ClassificationList;
class ExtCommIp6ClassificationListSnapshot;
class ExtCommIp6List;
class ExtCommIp6ListDedupTable;
class ExtCommIp6ListSnapshot;

/// The words of this family for what both families share; ZoBgpCommunityListFamilyList.h says what
/// each of them is. A path may carry several link bandwidths: the rule of one is of the other
/// family.
struct ExtCommIp6ListFamily {
  using Value = ExtCommIp6;
  using ValueTable = ExtCommIp6DedupTable;
  using List = ExtCommIp6List;
  using Group = ExtCommIp6ClassificationList;
  using Table = ExtCommIp6ListDedupTable;
  using ListSnapshot = ExtCommIp6ListSnapshot;
  using GroupSnapshot = ExtCommIp6ClassificationListSnapshot;
  static constexpr BgpPathAttrType attribute = ExtCommIp6Family::attribute;
  static constexpr bool oneLinkBandwidth = false;
  static constexpr bool listRestoreIsHeard = true;

  /// A new group with room for so many.
  static Mox::Ptr<ExtCommIp6ClassificationList> makeGroup(ExtCommClassification classification,
                                                          U32 members);
  /// One table for all classifications.
  static const Mox::Ptr<Orv::DedupHashTableUnorderedSet>& groupTable(
      const ExtCommIp6ListDedupTable& table, ExtCommClassification classification);
  /// Nothing: all groups are of one class.
  static void assertClass(const ExtCommIp6ClassificationList&) {}
};

extern template class ExtCommGroupOf<ExtCommIp6ListFamily>;
extern template class ExtCommListOf<ExtCommIp6ListFamily>;

/// A group: interned communities of one classification, ascending by content.
class ExtCommIp6ClassificationList final
    : public TailEntity<ExtCommIp6ClassificationList, ExtCommGroupOf<ExtCommIp6ListFamily>> {
 public:
  static const Mox::Type type;
  using TailEntity::TailEntity;

  /// The communities themselves. Valid as long as the group.
  const ExtCommVector<ExtCommIp6>* commVectorRawPtr() const { return &comm_; }
};

/// A mutable copy of a group.
class ExtCommIp6ClassificationListSnapshot final
    : public ExtCommGroupSnapshotOf<ExtCommIp6ClassificationListSnapshot, ExtCommIp6> {
 public:
  static const Mox::Type type;
  using ExtCommGroupSnapshotOf::ExtCommGroupSnapshotOf;
};

/// A new, empty group, to be filled by `commIs` and interned by `dedup`.
ExtCommIp6ClassificationList::Ptr extCommIp6ClassificationListFactory(
    ExtCommClassification classification);
/// A new, empty snapshot.
ExtCommIp6ClassificationListSnapshot::Ptr extCommIp6ClassificationListSnapshotFactory(
    ExtCommClassification classification);

}  // namespace Routing::Bgp

// Storage of vectors of groups and of communities, counted under names of their own.
template <>
const Mox::AllocationTracker&
Mox::storageTracker<Mox::Ptr<const Routing::Bgp::ExtCommIp6ClassificationList>>();
template <>
const Mox::AllocationTracker& Mox::storageTracker<Mox::Ptr<const Routing::Bgp::ExtCommIp6>>();
