#include "attr/ZoBgpSerialize.h"

#include <algorithm>

namespace Routing::Bgp {

SerializePathAttribute::SerializePathAttribute(BgpPathAttrType type, BgpPathAttrFlag flags,
                                               U32 attrSize) {
  clearAndReInit(type, flags, attrSize);
}

void SerializePathAttribute::clearAndReInit(BgpPathAttrType type, BgpPathAttrFlag flags,
                                            U32 attrSize) {
  lengthIs(0);
  // A longer value is refused with its header.
  growBuffer(std::min(attrSize, longestPathAttributeValue) + 4);
  attrSize_ = attrSize;
  reInitHdr(type, flags, attrSize);
}

void SerializePathAttribute::reInitHdr(BgpPathAttrType type, BgpPathAttrFlag flags, U32 attrSize) {
  const auto header = pathAttributeHeaderOctets(type, flags, attrSize);
  headerSize_ = header.size;
  std::copy_n(header.octets.begin(), header.size, append(header.size));
}

Mox::String SerializePathAttribute::serializedString() const {
  Mox::String serialized = serializedString(0);
  MOX_ASSERT(serialized.size() == attrSize_ + headerSize_,
             "serialized.size() == attrSize_ + headerSize_");
  return serialized;
}

Mox::String SerializePathAttributeAutoExtLen::patchHdrAndStringify(BgpPathAttrType type,
                                                                   BgpPathAttrFlag flags) {
  const U32 end = length();
  const U32 attrSize = end - largestHeader;
  MOX_ASSERT(attrSize <= longestPathAttributeValue, "attrSize <= 0xFFFF");
  const U32 start = attrSize > 0xFF ? 0 : 1;  // the header ends where the value begins
  lengthIs(start);
  reInitHdr(type, flags, attrSize);
  lengthIs(end);
  return serializedString(start);
}

}  // namespace Routing::Bgp
