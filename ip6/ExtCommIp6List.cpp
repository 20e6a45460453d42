#include "ip6/ExtCommIp6List.h"

#include "community-list/internal/ZoBgpCommunityListFamilyBodies.h"
#include "ip6/ExtCommIp6ListDedupTable.h"

namespace Routing::Bgp {

template class ExtCommGroupOf<ExtCommIp6ListFamily>;
template class ExtCommListOf<ExtCommIp6ListFamily>;

static_assert(sizeof(ExtCommIp6List) == sizeof(ExtCommListOf<ExtCommIp6ListFamily>));
static_assert(sizeof(void*) != 8 || sizeof(ExtCommIp6List) == 64);
static_assert(sizeof(void*) != 8 || sizeof(ExtCommIp6ClassificationList) == 48);

const Mox::Type ExtCommIp6ClassificationList::type{
    "Routing::Bgp::ExtCommIp6ClassificationList", &Orv::DedupHandle::type,
    extCommGroupAttributes<ExtCommIp6ClassificationList>()};
const Mox::Type ExtCommIp6List::type{"Routing::Bgp::ExtCommIp6List", &MoxStash::DedupHandle::type,
                                     extCommListAttributes<ExtCommIp6List>({})};
const Mox::Type ExtCommIp6ClassificationListSnapshot::type{
    "Routing::Bgp::ExtCommIp6ClassificationListSnapshot", &Mox::PtrInterface::type,
    extCommGroupSnapshotAttributes<ExtCommIp6ClassificationListSnapshot>()};
const Mox::Type ExtCommIp6ListSnapshot::type{
    "Routing::Bgp::ExtCommIp6ListSnapshot", &Mox::PtrInterface::type,
    extCommListSnapshotAttributes<ExtCommIp6ListSnapshot>()};

ExtCommIp6ClassificationList::Ptr ExtCommIp6ListFamily::makeGroup(
    ExtCommClassification classification, U32 members) {
  return ExtCommIp6ClassificationList::withRoom<ExtCommIp6ClassificationList>(classification,
                                                                              members);
}

const Mox::Ptr<Orv::DedupHashTableUnorderedSet>& ExtCommIp6ListFamily::groupTable(
    const ExtCommIp6ListDedupTable& table, ExtCommClassification) {
  return table.extCommClassificationListDedupTable();
}

ExtCommVector<ExtCommIp6>* ExtCommIp6List::commVectorRawPtrNonConst() {
  assertNeverDeduped();
  return &comm_;
}

ExtCommIp6ClassificationList::Ptr extCommIp6ClassificationListFactory(
    ExtCommClassification classification) {
  return Mox::makeNew<ExtCommIp6ClassificationList>(classification);
}

ExtCommIp6ClassificationListSnapshot::Ptr extCommIp6ClassificationListSnapshotFactory(
    ExtCommClassification classification) {
  return Mox::makeNew<ExtCommIp6ClassificationListSnapshot>(classification);
}

ExtCommIp6List::Ptr extCommIp6ListFactory() { return Mox::makeNew<ExtCommIp6List>(); }

}  // namespace Routing::Bgp

template <>
const Mox::AllocationTracker& Mox::storageTracker<Mox::Ptr<const Routing::Bgp::ExtCommIp6>>() {
  static constinit const AllocationTracker tracker("Routing::Bgp::ExtCommIp6 (vector storage)");
  return tracker;
}

template <>
const Mox::AllocationTracker&
Mox::storageTracker<Mox::Ptr<const Routing::Bgp::ExtCommIp6ClassificationList>>() {
  static constinit const AllocationTracker tracker(
      "Routing::Bgp::ExtCommIp6ClassificationList (vector storage)");
  return tracker;
}
