// The extended communities of a path (RFC 4360), in a list that all paths of the same ones share,
// with its groups: all route targets, all colors, and so on.
//
//   ExtCommListDedupTable::Ptr table = extCommListDedupTableFactory();
//   ExtCommList::Ptr list = ExtCommList::ExtCommListIs();
//   list->commIs(ExtComm::dedupContent(values.get(), ExtCommContent(0x0002FDE800000064)));
//   ExtCommList::PtrConst shared = list->dedup(table);
//   shared->classificationList(extCommClassificationRouteTarget)->comms();   // 1
//   shared->serialize(false);   // C0 10 08 00 02 FD E8 00 00 00 64
//
// Most of what lists and groups do is said in ZoBgpCommunityListFamilyList.h.
#pragma once

#include "community-list/ZoBgpCommunityListFamilyList.h"
#include "community/ZoBgpCommunityDedupTable.h"

namespace Acl {
class CommunityValue;
}

namespace Routing::Bgp {

class ExtCommClassificationList;
class ExtCommClassificationListSnapshot;
class ExtCommList;
class ExtCommListDedupTable;
class ExtCommListSnapshot;
class RtExtCommClassificationList;

/// The words of this family for what both families share; see ZoBgpCommunityListFamilyList.h.
struct ExtCommListFamily {
  using Value = ExtComm;
  using ValueTable = ExtCommDedupTable;
  using List = ExtCommList;
  using Group = ExtCommClassificationList;
  using Table = ExtCommListDedupTable;
  using ListSnapshot = ExtCommListSnapshot;
  using GroupSnapshot = ExtCommClassificationListSnapshot;
  static constexpr BgpPathAttrType attribute = ExtCommFamily::attribute;
  static constexpr bool oneLinkBandwidth = true;
  static constexpr bool listRestoreIsHeard = false;

  /// A new group with room for so many; one of route targets is of their class.
  static Mox::Ptr<ExtCommClassificationList> makeGroup(ExtCommClassification classification,
                                                       U32 members);
  /// Route targets have a table of their own.
  static const Mox::Ptr<Orv::DedupHashTableUnorderedSet>& groupTable(
      const ExtCommListDedupTable& table, ExtCommClassification classification);
  /// Asserts "rtExtCommClassificationList" on a group of route targets that is not of the class
  /// for them, on which their observers rely.
  static void assertClass(const ExtCommClassificationList& group);
};

extern template class ExtCommGroupOf<ExtCommListFamily>;
extern template class ExtCommListOf<ExtCommListFamily>;

/// The communities of one classification.
class ExtCommClassificationList
    : public TailEntity<ExtCommClassificationList, ExtCommGroupOf<ExtCommListFamily>> {
 public:
  static const Mox::Type type;
  using TailEntity::TailEntity;
};

/// The extended communities of a path.
class ExtCommList final : public ExtCommListOf<ExtCommListFamily> {
 public:
  static const Mox::Type type;

  /// A new, empty list.
  static Ptr ExtCommListIs() { return Mox::makeNew<ExtCommList>(); }
  /// As `commSnapshot`.
  Mox::Ptr<ExtCommListSnapshot> snapshot() const;
  /// As `commsStringForm`, under `strepFormatDefault`.
  Mox::String commsWithoutClassificationStringForm() const;
  /// The second and third word of a community of policy, `65000:100`.
  static Mox::String getStringValue(const Acl::CommunityValue& value);
};

}  // namespace Routing::Bgp

template <>
const Mox::AllocationTracker& Mox::storageTracker<Mox::Ptr<const Routing::Bgp::ExtComm>>();
template <>
const Mox::AllocationTracker&
Mox::storageTracker<Mox::Ptr<const Routing::Bgp::ExtCommClassificationList>>();
