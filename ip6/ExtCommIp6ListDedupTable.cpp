#include "ip6/ExtCommIp6ListDedupTable.h"

#include "Mox/ValueText.h"

namespace Routing::Bgp {

const Mox::Type ExtCommIp6ListDedupTable::type{
    "Routing::Bgp::ExtCommIp6ListDedupTable",
    &CommListDedupTableBase::type,
    {Mox::attribute<&ExtCommIp6ListDedupTable::dedupHashTable>("extComm"),
     Mox::attribute<&ExtCommIp6ListDedupTable::extCommClassificationListDedupTable>(
         "extCommClassification"),
     Mox::operation("handleInitialized")}};

ExtCommIp6ListDedupTable::ExtCommIp6ListDedupTable()
    : Entity(Orv::DedupPlacement{ExtCommIp6List::placeOfMember, nullptr}) {
  handleInitialized();
}

void ExtCommIp6ListDedupTable::handleInitialized() {
  initDedupTable();
  groups_ = makeTable({ExtCommIp6ClassificationList::placeOfMember, nullptr});
}

// Under the same name as the tables of the 8-octet family: operators look for one.
void ExtCommIp6ListDedupTable::dumpState(const Mox::Ptr<const Orv::DumpContext>& context,
                                         U32 indent) const {
  context->line(indent, "ExtCommListDedupTable\n");
  dumpPart(*context, indent, "extComm", dedupHashTable());
  dumpPart(*context, indent, "extCommClassification", groups_);
}

ExtCommIp6ListDedupTable::Ptr extCommIp6ListDedupTableFactory() {
  return Mox::makeNew<ExtCommIp6ListDedupTable>();
}

}  // namespace Routing::Bgp
