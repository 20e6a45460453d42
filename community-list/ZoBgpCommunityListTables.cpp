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

}  // namespace Routing::Bgp
