#include "community-list/ZoBgpCommunityListTables.h"

#include "attr/ZoBgpGlobals.h"
#include "community-list/ZoBgpCommunityListLarge.h"
#include "community-list/ZoBgpCommunityListStandard.h"

namespace Routing::Bgp {

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

void CommListDedupTableBase::initDedupTable() {
  dedupHashTable_ = Orv::DedupHashTableUnorderedSet::DedupHashTableUnorderedSetIs(
      ZoBgpGlobals::multiThreaded(), placement_);
}

void CommListDedupTableBase::dumpState(const Mox::Ptr<const Orv::DumpContext>& context,
                                       U32 indent) const {
  context->line(indent, "DedupTable");  // its line goes on with the table's own
  context->child(dedupHashTable_.get(), indent + 2);
}

CommListDedupTable::CommListDedupTable()
    : Entity(Orv::DedupPlacement{CommList::placeOfMember, nullptr}) {}

LargeCommListDedupTable::LargeCommListDedupTable()
    : Entity(Orv::DedupPlacement{LargeCommList::placeOfMember, nullptr}) {}

namespace {

template <class Table>
Mox::Ptr<Table> makeTable() {
  auto table = Mox::makeNew<Table>();
  table->initDedupTable();
  return table;
}

}  // namespace

CommListDedupTable::Ptr commListDedupTableFactory() { return makeTable<CommListDedupTable>(); }

LargeCommListDedupTable::Ptr largeCommListDedupTableFactory() {
  return makeTable<LargeCommListDedupTable>();
}

}  // namespace Routing::Bgp
