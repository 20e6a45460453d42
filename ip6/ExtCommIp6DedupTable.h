// The intern table of IPv6-address-specific extended communities (RFC 5701).
//
//   ExtCommIp6DedupTable::Ptr table = extCommIp6DedupTableFactory(container->extCommParser());
//   ExtCommIp6::PtrConst a = ExtCommIp6::dedupContent(table.get(), content);
#pragma once

#include "community/ZoBgpCommunityValueDedupTable.h"
#include "ip6/ExtCommIp6.h"

namespace Routing::Bgp {

class ExtCommIp6DedupTable;
extern template class ExtCommValueDedupTable<ExtCommIp6DedupTable, ExtCommIp6>;

class ExtCommIp6DedupTable final : public ExtCommValueDedupTable<ExtCommIp6DedupTable, ExtCommIp6> {
 public:
  static const Mox::Type type;

  using ExtCommValueDedupTable::ExtCommValueDedupTable;

  /// Where the table places a content.
  static U64 place(const ExtCommIp6Content& content, U64 seed) {
    return Orv::placeOf(&content, sizeof content, seed);
  }
  /// A private object of the content, made by the parser.
  static Mox::Ptr<ExtCommIp6> parse(const Rule& rule, const ExtCommIp6Content& content);
};

/// A new table whose objects `rule` makes. RangeException for null.
ExtCommIp6DedupTable::Ptr extCommIp6DedupTableFactory(
    const Mox::Ptr<const BgpParseExtendedCommunityRule>& rule);

}  // namespace Routing::Bgp
