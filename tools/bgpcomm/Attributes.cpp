#include "Attributes.h"

#include <utility>

namespace bgpcomm {

Octets valueOf(Octets attribute) {
  Cursor in(attribute);
  takeAttributeHeader(in);
  return in.left();
}

CommunityValues findCommunities(Octets attributes) {
  CommunityValues values{};
  std::array<bool, kindCount> seen{};
  Cursor in(attributes);
  while (!in.atEnd()) {
    const AttributeHeader header = takeAttributeHeader(in);
    const Octets value = in.take(header.length);
    if (!in) values.faults.add(Fault::attrOverrun);
    const std::size_t kind = kindOfAttribute(header.type);
    if (kind == kindCount || std::exchange(seen[kind], true)) continue;
    values.malformed[kind] = !in || value.empty() || value.size() % kindRows[kind].valueSize != 0;
    if (!values.malformed[kind])
      values[kind] = value;
    else if (in)
      values.faults.add(Fault::attrLength);
  }
  return values;
}

}  // namespace bgpcomm
