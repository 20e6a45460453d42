#include "community-list/ZoBgpCommunityListExtendedTable.h"

#include "Mox/ValueText.h"

namespace Routing::Bgp {

using Mox::attribute;
using Mox::operation;

const Mox::Type ExtCommListDedupTable::type{
    "Routing::Bgp::ExtCommListDedupTable",
    &CommListDedupTableBase::type,
    {attribute<&ExtCommListDedupTable::extCommClassificationListDedupTable>(
         "extCommClassificationListDedupTable"),
     attribute<&ExtCommListDedupTable::notifyingRtExtCommListCollection>(
         "notifyingRtExtCommListCollection"),
     attribute<&ExtCommListDedupTable::rtExtCommListLifeTimeNotifiee>(
         "rtExtCommListLifeTimeNotifiee"),
     attribute<&ExtCommListDedupTable::rtExtCommClassificationListDedupTable>(
         "rtExtCommClassificationListDedupTable"),
     operation("handleInitialized")}};

ExtCommListDedupTable::ExtCommListDedupTable()
    : Entity(Orv::DedupPlacement{ExtCommList::placeOfMember, nullptr}) {}

// Lists first, which hold groups; then the table that tells of its end, while there is somebody to
// be told.
ExtCommListDedupTable::~ExtCommListDedupTable() {
  dropDedupTable();
  routeTargets_ = nullptr;
  notifiee_ = nullptr;
  collection_ = nullptr;
}

void ExtCommListDedupTable::handleInitialized() {
  constexpr Orv::DedupPlacement placement{ExtCommClassificationList::placeOfMember, nullptr};
  groups_ = makeTable(placement);
  routeTargets_ = makeTable(placement);
  notifyingRtExtCommListCollectionIs();
  routeTargets_->lifeTimeNotifieeIs(rtExtCommListLifeTimeNotifieeIs(collection_));
}

const NotifyingRtExtCommListCollection::Ptr&
ExtCommListDedupTable::notifyingRtExtCommListCollectionIs() {
  if (!collection_) collection_ = NotifyingRtExtCommListCollectionIs();
  return collection_;
}

const RtExtCommListLifeTimeNotifiee::Ptr& ExtCommListDedupTable::rtExtCommListLifeTimeNotifieeIs(
    const NotifyingRtExtCommListCollection::Ptr& collection) {
  if (!notifiee_) notifiee_ = RtExtCommListLifeTimeNotifieeIs(collection);
  return notifiee_;
}

void ExtCommListDedupTable::dumpState(const Mox::Ptr<const Orv::DumpContext>& context,
                                      U32 indent) const {
  context->line(indent, "ExtCommListDedupTable\n");
  dumpPart(*context, indent, "extComm", dedupHashTable());
  dumpPart(*context, indent, "extCommClassification", groups_);
  dumpPart(*context, indent, "rtExtCommClassification", routeTargets_);
}

ExtCommListDedupTable::Ptr extCommListDedupTableFactory() {
  auto table = Mox::makeNew<ExtCommListDedupTable>();
  table->initDedupTable();
  table->handleInitialized();
  return table;
}

}  // namespace Routing::Bgp
