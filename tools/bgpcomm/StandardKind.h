// The standard communities (RFC 1997) as ListTable wants them.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ReaderNames.h"
#include "community-list/ZoBgpCommunityListStandard.h"

namespace bgpcomm {

class StandardKind {
 public:
  using List = Routing::Bgp::CommList;
  static constexpr std::size_t valueSize = 4;
  static constexpr auto attributeType = Routing::Bgp::BgpPathAttrType::community;

  static bool counts(const Mox::Type& type) { return type.isA(List::type); }
  auto intern(Octets value) const { return List::dedupWire(table_, value); }
  auto restore(MoxStash::StoreReference list, const MoxStash::StoreManager& store) const {
    return List::dedupStored(table_, list, store);
  }
  const Orv::DedupHashTableUnorderedSet& table() const { return *table_->dedupHashTable(); }
  U64 octets() const { return table().octets(); }

  static std::string attribute(const List& list) { return list.serialize(); }
  static U64 ownOctets(const List& list) { return sizeof(List) + list.values().size_bytes(); }
  static std::string text(const List& list, bool names) {
    return names ? list.commsWellKnownStringForm() : list.commsStringForm();
  }
  static std::string valueText(Octets value, bool names);
  /// `65000:100`, or a well-known name.
  static std::optional<std::vector<U8>> readValue(std::string_view text);

 private:
  Routing::Bgp::CommListDedupTable::Ptr table_ = Routing::Bgp::commListDedupTableFactory();
};

}  // namespace bgpcomm
