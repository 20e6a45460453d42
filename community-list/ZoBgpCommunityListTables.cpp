#include "community-list/ZoBgpCommunityListTables.h"

#include "Mox/ValueText.h"
#include "attr/ZoBgpGlobals.h"
#include "community-list/ZoBgpCommunityListLarge.h"
#include "community-list/ZoBgpCommunityListStandard.h"

namespace Routing::Bgp {

using Mox::attribute;
using Mox::operation;

const Mox::Type CommListDedupTableBase::type{
    "Routing::Bgp::CommListDedupTableBase",
    &Mox::PtrInterface::type,
    {operation("initDedupTable"), operation("dedupHashTable"), operation("dedup"),
     operation("dumpState")}};
const Mox::Type CommListDedupTable::type{
    "Routing::Bgp::CommListDedupTable", &CommListDedupTableBase::type, {}};
const Mox::Type LargeCommListDedupTable::type{
    "Routing::Bgp::LargeCommListDedupTable", &CommListDedupTableBase::type, {}};
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

Mox::Ptr<Orv::DedupHashTableUnorderedSet> CommListDedupTableBase::makeTable(
    const Orv::DedupPlacement& placement) {
  return Orv::DedupHashTableUnorderedSet::DedupHashTableUnorderedSetIs(
      ZoBgpGlobals::multiThreaded(), placement);
}

void CommListDedupTableBase::initDedupTable() { dedupHashTable_ = makeTable(placement_); }

void CommListDedupTableBase::dumpState(const Mox::Ptr<const Orv::DumpContext>& context,
                                       U32 indent) const {
  context->line(indent, "DedupTable");  // its line goes on with the table's own
  context->child(dedupHashTable_.get(), indent + 2);
}

CommListDedupTable::CommListDedupTable()
    : Entity(Orv::DedupPlacement{CommList::placeOfMember, nullptr}) {}

LargeCommListDedupTable::LargeCommListDedupTable()
    : Entity(Orv::DedupPlacement{LargeCommList::placeOfMember, nullptr}) {}

void CommListDedupTableBase::dumpPart(const Orv::DumpContext& context, U32 indent, const char* name,
                                      const Mox::Ptr<Orv::DedupHashTableUnorderedSet>& table) {
  context.line(indent + 2, "%s\n", name);
  context.child(table.get(), indent + 4);
}

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

namespace {

template <class Table>
Mox::Ptr<Table> madeTable() {
  auto table = Mox::makeNew<Table>();
  table->initDedupTable();
  return table;
}

}  // namespace

CommListDedupTable::Ptr commListDedupTableFactory() { return madeTable<CommListDedupTable>(); }

LargeCommListDedupTable::Ptr largeCommListDedupTableFactory() {
  return madeTable<LargeCommListDedupTable>();
}

ExtCommListDedupTable::Ptr extCommListDedupTableFactory() {
  auto table = madeTable<ExtCommListDedupTable>();
  table->handleInitialized();
  return table;
}

}  // namespace Routing::Bgp
