#include "attr/ZoBgpSerialize.h"

#include <algorithm>

#include "Mox/Assert.h"

namespace Routing::Bgp {
namespace {
constexpr U32 longestValue = 0xFFFF;
}  // namespace

SerializePathAttribute::SerializePathAttribute(BgpPathAttrType type, BgpPathAttrFlag flags,
                                               U32 attrSize) {
  clearAndReInit(type, flags, attrSize);
}

void SerializePathAttribute::clearAndReInit(BgpPathAttrType type, BgpPathAttrFlag flags,
                                            U32 attrSize) {
  lengthIs(0);
  growBuffer(std::min(attrSize, longestValue) + 4);  // a longer value is refused with its header
  attrSize_ = attrSize;
  reInitHdr(type, flags, attrSize);
}

void SerializePathAttribute::reInitHdr(BgpPathAttrType type, BgpPathAttrFlag flags, U32 attrSize) {
  const U32 attrType = U32(type);
  MOX_ASSERT(attrType <= 0xFF, "attrType <= 0xFF");
  U32 attrFlags = U32(flags);
  MOX_ASSERT(attrFlags <= 0xFF, "attrFlags <= 0xFF");
  const U32 extLen = U32(BgpPathAttrFlag::extLen);
  if (attrSize > 0xFF) attrFlags |= extLen;
  addU8(U8(attrFlags));
  addU8(U8(attrType));
  if (attrFlags & extLen) {
    MOX_ASSERT(attrSize <= longestValue, "attrSize <= 0xFFFF");
    addU16hton(U16(attrSize));
    headerSize_ = 4;
  } else {
    addU8(U8(attrSize));
    headerSize_ = 3;
  }
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
  MOX_ASSERT(attrSize <= longestValue, "attrSize <= 0xFFFF");
  const U32 start = attrSize > 0xFF ? 0 : 1;  // the header ends where the value begins
  lengthIs(start);
  reInitHdr(type, flags, attrSize);
  lengthIs(end);
  return serializedString(start);
}

}  // namespace Routing::Bgp
