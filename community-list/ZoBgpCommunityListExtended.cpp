#include "community-list/ZoBgpCommunityListExtended.h"

#include "agent/CommunityValue.h"
#include "community-list/ZoBgpCommunityListExtendedTable.h"
#include "community-list/ZoBgpCommunityListRouteTargets.h"
#include "community-list/ZoBgpCommunityListSnapshotTypes.h"
#include "community-list/internal/ZoBgpCommunityListFamilyBodies.h"

namespace Routing::Bgp {

template class ExtCommGroupOf<ExtCommListFamily>;
template class ExtCommListOf<ExtCommListFamily>;

static_assert(sizeof(void*) != 8 || sizeof(ExtCommList) == 64);
static_assert(sizeof(void*) != 8 || sizeof(ExtCommClassificationList) == 48);
static_assert(sizeof(void*) != 8 || sizeof(RtExtCommClassificationList) == 56);

using Mox::attribute;
using Mox::operation;

const Mox::Type ExtCommClassificationList::type{
    "Routing::Bgp::ExtCommClassificationList", &Orv::DedupHandle::type,
    extCommGroupAttributes<ExtCommClassificationList>()};
const Mox::Type RtExtCommClassificationList::type{
    "Routing::Bgp::RtExtCommClassificationList",
    &ExtCommClassificationList::type,
    {attribute<&RtExtCommClassificationList::getLifeTimeNotifier>("lifeTimeNotifier")}};
const Mox::Type ExtCommList::type{
    "Routing::Bgp::ExtCommList", &MoxStash::DedupHandle::type,
    extCommListAttributes<ExtCommList>(
        {operation("snapshot"),
         attribute<&ExtCommList::commsWithoutClassificationStringForm>(
             "commsWithoutClassificationStringForm"),
         operation("getStringValue")})};

Mox::Ptr<ExtCommClassificationList> ExtCommListFamily::makeGroup(
    ExtCommClassification classification, U32 members) {
  if (classification == extCommClassificationRouteTarget)
    return ExtCommClassificationList::withRoom<RtExtCommClassificationList>(classification,
                                                                            members);
  return ExtCommClassificationList::withRoom<ExtCommClassificationList>(classification, members);
}

const Mox::Ptr<Orv::DedupHashTableUnorderedSet>& ExtCommListFamily::groupTable(
    const ExtCommListDedupTable& table, ExtCommClassification classification) {
  return classification == extCommClassificationRouteTarget
             ? table.rtExtCommClassificationListDedupTable()
             : table.extCommClassificationListDedupTable();
}

void ExtCommListFamily::assertClass(const ExtCommClassificationList& group) {
  if (group.classification() == extCommClassificationRouteTarget)
    MOX_ASSERT(group.fwkType().isA(RtExtCommClassificationList::type),
               "rtExtCommClassificationList");
}

Mox::Ptr<ExtCommListSnapshot> ExtCommList::snapshot() const { return commSnapshot(); }

Mox::String ExtCommList::commsWithoutClassificationStringForm() const {
  return policyTexts(comm_, strepFormatDefault);
}

Mox::String ExtCommList::getStringValue(const Acl::CommunityValue& value) {
  return std::to_string(value.localData1()) + ':' + std::to_string(value.localData2());
}

}  // namespace Routing::Bgp

template <>
const Mox::AllocationTracker& Mox::storageTracker<Mox::Ptr<const Routing::Bgp::ExtComm>>() {
  static constinit const AllocationTracker tracker("Routing::Bgp::ExtComm (vector storage)");
  return tracker;
}

template <>
const Mox::AllocationTracker&
Mox::storageTracker<Mox::Ptr<const Routing::Bgp::ExtCommClassificationList>>() {
  static constinit const AllocationTracker tracker(
      "Routing::Bgp::ExtCommClassificationList (vector storage)");
  return tracker;
}
