#include "Attributes.h"

#include <utility>

namespace bgpcomm {

AttributeHeader takeAttributeHeader(Cursor& in) {
  constexpr U8 extendedLength = 0x10;
  AttributeHeader header{in.u8(), in.u8(), 0};
  header.length = header.flags & extendedLength ? in.u16() : in.u8();
  return header;
}

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

std::optional<Octets> findAttribute(Octets attributes, U8 type) {
  Cursor in(attributes);
  while (!in.atEnd()) {
    const AttributeHeader header = takeAttributeHeader(in);
    const Octets value = in.take(header.length);
    if (!in) break;
    if (header.type == type) return value;
  }
  return std::nullopt;
}

}  // namespace bgpcomm
