#include "Attributes.h"

#include <utility>

#include "attr/ZoBgpAttributeReader.h"

namespace bgpcomm {

CommunityValues findCommunities(Octets attributes) {
  CommunityValues values{};
  std::array<bool, listTypeCount> seen{};
  const auto isFirst = [&seen](Routing::Bgp::BgpPathAttrType attribute, std::size_t& type) {
    type = listTypeOf(U8(attribute));
    return type < listTypeCount && !std::exchange(seen[type], true);
  };
  std::size_t type;
  Routing::Bgp::PathAttributeReader in(attributes);
  while (const auto attribute = in.next()) {
    if (!isFirst(attribute->type, type)) continue;
    const Octets value = attribute->value;
    values.malformed[type] = value.empty() || value.size() % listTypes[type].valueSize != 0;
    if (values.malformed[type])
      values.faults.add(Fault::attrLength);
    else
      values[type] = value;
  }
  if (const auto& overrun = in.overrun()) {
    values.faults.add(Fault::attrOverrun);
    if (isFirst(overrun->type, type)) values.malformed[type] = true;
  }
  return values;
}

}  // namespace bgpcomm
