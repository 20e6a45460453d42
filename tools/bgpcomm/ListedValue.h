// A value of a list, apart from it.
//
//   forEachValue(lists, [&](const ListedValue& value) { ++paths[value.key()]; });
//   ListedValue(key).text(tables);       // "65000:100"
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "Combinations.h"
#include "ListValues.h"

namespace bgpcomm {

class ListedValue {
 public:
  ListedValue(std::size_t type, Octets octets) : key_(1, char(type)) { key_ += asText(octets); }
  explicit ListedValue(std::string key) : key_(std::move(key)) {}

  /// Tells the value from all others, and sorts by attribute and number.
  const std::string& key() const { return key_; }
  const ListType& type() const { return listTypes[U8(key_[0])]; }
  Octets octets() const { return asOctets(key_).subspan(1); }
  Routing::Bgp::AnyCommunity community() const;
  /// As commands print it.
  std::string text(const CommunityTables& tables) const;
  /// `value`, `octets`, `kind` and `attribute`; `description` when there are any.
  nlohmann::ordered_json json(const CommunityTables& tables) const;

 private:
  std::string key_;  // the number of the list type, then the octets
};

/// The descriptions that `--describe` gives each value in the octets of a list, in their order;
/// empty where a value has none.
nlohmann::ordered_json descriptionsIn(std::size_t type, Octets list);

/// Calls `use` with each value of each list.
void forEachValue(const PathCommunities& lists, auto use) {
  lists.forEachList([&](const auto& list) {
    const std::size_t type = listTypeOf(U8(list->pathAttribute));
    list->forEachValue([&](const auto& value) { use(ListedValue(type, octetsOf(value))); });
  });
}

}  // namespace bgpcomm
