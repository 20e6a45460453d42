#include "ListedValue.h"

#include <nlohmann/json.hpp>

#include "Descriptions.h"
#include "Hex.h"

namespace bgpcomm {

using namespace Routing::Bgp;

AnyCommunity ListedValue::community() const {
  return communityOf(BgpPathAttrType(type().attribute), octets());
}

std::string ListedValue::text(const CommunityTables& tables) const {
  return type().text(tables, octets()).text;
}

nlohmann::ordered_json ListedValue::json(const CommunityTables& tables) const {
  const AnyCommunity its = community();
  nlohmann::ordered_json object = {{"value", text(tables)},
                                   {"octets", hex(octets())},
                                   {"kind", kindName(its)},
                                   {"attribute", type().key}};
  if (descriptions()) object["description"] = descriptionOf(its);
  return object;
}

nlohmann::ordered_json descriptionsIn(std::size_t type, Octets list) {
  auto all = nlohmann::ordered_json::array();
  for (; !list.empty(); list = list.subspan(listTypes[type].valueSize))
    all.push_back(
        descriptionOf(ListedValue(type, list.first(listTypes[type].valueSize)).community()));
  return all;
}

}  // namespace bgpcomm
