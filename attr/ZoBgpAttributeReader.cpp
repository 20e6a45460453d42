#include "attr/ZoBgpAttributeReader.h"

namespace Routing::Bgp {

std::optional<PathAttributeHeader> readPathAttributeHeader(std::span<const U8> octets) {
  if (octets.size() < 3) return std::nullopt;
  const PathAttributeHeader shorter{BgpPathAttrFlag(octets[0]), BgpPathAttrType(octets[1]),
                                    octets[2], 3};
  if (!(octets[0] & U32(BgpPathAttrFlag::extLen))) return shorter;
  if (octets.size() < 4) return std::nullopt;
  return PathAttributeHeader{shorter.flags, shorter.type, U32(octets[2]) << 8 | octets[3], 4};
}

std::optional<PathAttribute> PathAttributeReader::next() {
  const std::span<const U8> left = octets_.subspan(offset_);
  if (left.empty()) return std::nullopt;
  const auto header = readPathAttributeHeader(left);
  if (!header) return stop({BgpPathAttrType(left.size() > 1 ? left[1] : 0), offset_});
  const std::span<const U8> value = left.subspan(header->headerSize);
  if (value.size() < header->attrSize)
    return stop({header->type, offset_, value.size(), header->attrSize});
  const PathAttribute attribute{header->flags, header->type, offset_,
                                value.first(header->attrSize)};
  offset_ += header->headerSize + header->attrSize;
  return attribute;
}

std::optional<PathAttribute> PathAttributeReader::stop(const PathAttributeOverrun& overrun) {
  overrun_ = overrun;
  offset_ = octets_.size();
  return std::nullopt;
}

Mox::String PathAttributeOverrun::toStrep() const {
  if (!attrSize) return "an attribute's header is cut short";
  return pathAttributeName(type) + ": " + std::to_string(found) +
         (found == 1 ? " octet" : " octets") + " left of " + std::to_string(*attrSize);
}

Mox::String pathAttributeName(BgpPathAttrType type) {
  if (type != BgpPathAttrType::invalidPathAttr && bgpIsValidEnumMember(type))
    return Mox::String(bgpPathAttrTypeShowString(type)) + " attribute";
  return "Attribute " + std::to_string(U32(type));
}

}  // namespace Routing::Bgp
