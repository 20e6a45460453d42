// The large communities (RFC 8092) as ListTable wants them.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ReaderNames.h"
#include "community-list/ZoBgpCommunityListLarge.h"

namespace bgpcomm {

class LargeKind {
 public:
  using List = Routing::Bgp::LargeCommList;
  static constexpr std::size_t valueSize = 12;
  static constexpr auto attributeType = Routing::Bgp::BgpPathAttrType::largeCommunity;

  static bool counts(const Mox::Type& type) { return type.isA(List::type); }
  auto intern(Octets value) const { return List::dedupWire(table_, value); }
  auto restore(MoxStash::StoreReference list, const MoxStash::StoreManager& store) const {
    return List::dedupStored(table_, list, store);
  }
  const Orv::DedupHashTableUnorderedSet& table() const { return *table_->dedupHashTable(); }
  U64 octets() const { return table().octets(); }

  static std::string attribute(const List& list) { return list.serialize(); }
  static U64 ownOctets(const List& list) { return sizeof(List) + list.values().size_bytes(); }
  static std::string text(const List& list, bool) { return list.commsStringForm(); }
  static std::string valueText(Octets value, bool);
  /// `65000:1:2`.
  static std::optional<std::vector<U8>> readValue(std::string_view text);

 private:
  Routing::Bgp::LargeCommListDedupTable::Ptr table_ =
      Routing::Bgp::largeCommListDedupTableFactory();
};

}  // namespace bgpcomm
