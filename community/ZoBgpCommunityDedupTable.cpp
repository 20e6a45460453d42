#include "community/ZoBgpCommunityDedupTable.h"

#include "community/internal/ZoBgpCommunityValueDedupTableBodies.h"
#include "parse/BgpParseExtCommTopRule.h"

namespace Routing::Bgp {

template class ExtCommValueDedupTable<ExtCommDedupTable, ExtComm>;

const Mox::Type ExtCommDedupTable::type{"Routing::Bgp::ExtCommDedupTable", &Mox::PtrInterface::type,
                                        extCommDedupTableAttributes<ExtCommDedupTable>()};

ExtCommDedupTable::Ptr extCommDedupTableFactory(
    const Mox::Ptr<const BgpParseExtendedCommunityRule>& rule) {
  return Mox::makeNew<ExtCommDedupTable>(rule);
}

ExtComm::PtrConst ExtComm::dedupContent(const ExtCommDedupTable* table,
                                        const ExtCommContent& content) {
  MOX_ASSERT(table, "__null != table");
  return table->dedupContent(content);
}

Mox::Ptr<ExtComm> ExtCommDedupTable::parse(const Rule& rule, const ExtCommContent& content) {
  return rule.parseExtendedCommunity(content);
}

}  // namespace Routing::Bgp
