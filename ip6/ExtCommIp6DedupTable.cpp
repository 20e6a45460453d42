#include "ip6/ExtCommIp6DedupTable.h"

#include "community/internal/ZoBgpCommunityValueDedupTableBodies.h"
#include "parse/BgpParseExtCommTopRule.h"

namespace Routing::Bgp {

template class ExtCommValueDedupTable<ExtCommIp6DedupTable, ExtCommIp6>;

const Mox::Type ExtCommIp6DedupTable::type{"Routing::Bgp::ExtCommIp6DedupTable",
                                           &Mox::PtrInterface::type,
                                           extCommDedupTableAttributes<ExtCommIp6DedupTable>()};

ExtCommIp6DedupTable::Ptr extCommIp6DedupTableFactory(
    const Mox::Ptr<const BgpParseExtendedCommunityRule>& rule) {
  return Mox::makeNew<ExtCommIp6DedupTable>(rule);
}

ExtCommIp6::PtrConst ExtCommIp6::dedupContent(const ExtCommIp6DedupTable* table,
                                              const ExtCommIp6Content& content) {
  MOX_ASSERT(table, "__null != table");
  return table->dedupContent(content);
}

Mox::Ptr<ExtCommIp6> ExtCommIp6DedupTable::parse(const Rule& rule,
                                                 const ExtCommIp6Content& content) {
  return rule.parseExtendedCommunityIp6(content);
}

}  // namespace Routing::Bgp
