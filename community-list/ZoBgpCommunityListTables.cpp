#include "community-list/ZoBgpCommunityListTables.h"

#include "attr/ZoBgpGlobals.h"
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

CommListDedupTable::Ptr commListDedupTableFactory() {
  auto table = Mox::makeNew<CommListDedupTable>();
  table->initDedupTable();
  return table;
}

}  // namespace Routing::Bgp
