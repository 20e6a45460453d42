// The intern table of 8-octet extended communities.
//
//   ExtCommDedupTable::Ptr table = extCommDedupTableFactory(container->extCommParser());
//   ExtComm::PtrConst a = ExtComm::dedupContent(table.get(), ExtCommContent(0x0002FDE800000064));
//   a->fwkType().name()   // "Routing::Bgp::ExtCommRouteTargetAs"
//   a == ExtComm::dedupContent(table.get(), ExtCommContent(0x0002FDE800000064))   // true
#pragma once

#include "community/ZoBgpCommunityValue.h"
#include "community/ZoBgpCommunityValueDedupTable.h"

namespace Routing::Bgp {

class ExtCommDedupTable;
extern template class ExtCommValueDedupTable<ExtCommDedupTable, ExtComm>;

class ExtCommDedupTable final : public ExtCommValueDedupTable<ExtCommDedupTable, ExtComm> {
 public:
  static const Mox::Type type;

  using ExtCommValueDedupTable::ExtCommValueDedupTable;

  /// Where the table places a content.
  static U64 place(const ExtCommContent& content, U64 seed) {
    return Orv::placeOf(content.value(), seed);
  }
  /// A private object of the content, made by the parser.
  static Mox::Ptr<ExtComm> parse(const Rule& rule, const ExtCommContent& content);
};

/// A new table whose objects `rule` makes. RangeException for null.
ExtCommDedupTable::Ptr extCommDedupTableFactory(
    const Mox::Ptr<const BgpParseExtendedCommunityRule>& rule);

}  // namespace Routing::Bgp
