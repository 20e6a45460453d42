// Writers of path attributes: the header, then the value, in one buffer.
//
//   SerializePathAttribute attribute(BgpPathAttrType::community,
//                                    BgpPathAttrFlag::optionalTransitive, 4);
//   attribute.addU32hton(0xFDE80064);
//   attribute.serializedString()   // C0 08 04 FD E8 00 64
//
//   pathAttributeString(BgpPathAttrType::community, BgpPathAttrFlag::optionalTransitive, 4,
//                       [](U8* value) { Zonet::storeNetworkOrder(value, U32{0xFDE80064}); })
//                                  // the same, without a buffer
//
// The header (RFC 4271, section 4.3):
//
//   +-------+------+--------+           +-------+------+--------+--------+
//   | flags | type | length |    or     | flags | type |     length      |
//   +-------+------+--------+           +-------+------+--------+--------+
//
// The longer one is used, and `extLen` set in the flags, for a value of more than 255 octets; it
// is also used for a shorter value when the caller's flags have `extLen`.
#pragma once

#include <algorithm>
#include <array>

#include "Mox/Assert.h"
#include "agent/Serialize.h"
#include "attr/BgpPathAttributeEnums.h"

namespace Routing::Bgp {

/// The most octets that a value can have.
constexpr U32 longestPathAttributeValue = 0xFFFF;

/// A header as it is written: the first `size` octets, 3 or 4.
struct PathAttributeHeaderOctets {
  std::array<U8, 4> octets;
  U32 size;
};
/// The header of a value of `attrSize` octets. Asserts "attrType <= 0xFF", "attrFlags <= 0xFF" and
/// "attrSize <= 0xFFFF", in this order.
inline PathAttributeHeaderOctets pathAttributeHeaderOctets(BgpPathAttrType type,
                                                           BgpPathAttrFlag flags, U32 attrSize) {
  const U32 attrType = U32(type);
  MOX_ASSERT(attrType <= 0xFF, "attrType <= 0xFF");
  U32 attrFlags = U32(flags);
  MOX_ASSERT(attrFlags <= 0xFF, "attrFlags <= 0xFF");
  const U32 extLen = U32(BgpPathAttrFlag::extLen);
  if (attrSize > 0xFF) attrFlags |= extLen;
  if (!(attrFlags & extLen)) return {{U8(attrFlags), U8(attrType), U8(attrSize)}, 3};
  MOX_ASSERT(attrSize <= longestPathAttributeValue, "attrSize <= 0xFFFF");
  return {{U8(attrFlags), U8(attrType), U8(attrSize >> 8), U8(attrSize)}, 4};
}

/// One attribute, made in the string that is returned: the quick way when the length of the value
/// is known. `write(U8* value)` fills in the `attrSize` octets of the value. Asserts as
/// `pathAttributeHeaderOctets` does, before anything is allocated.
template <class Write>
Mox::String pathAttributeString(BgpPathAttrType type, BgpPathAttrFlag flags, U32 attrSize,
                                Write write) {
  const auto [header, size] = pathAttributeHeaderOctets(type, flags, attrSize);
  Mox::String attribute(size + attrSize, '\0');
  auto* const octets = reinterpret_cast<U8*>(attribute.data());
  write(std::copy_n(header.begin(), size, octets));
  return attribute;
}

/// One attribute whose length is known before its value is written.
class SerializePathAttribute : public Serialize {
 public:
  /// Writes the header for a value of `attrSize` octets, which the caller then adds.
  SerializePathAttribute(BgpPathAttrType type, BgpPathAttrFlag flags, U32 attrSize);

  /// Begins another attribute in the same buffer, which is grown at most once.
  void clearAndReInit(BgpPathAttrType type, BgpPathAttrFlag flags, U32 attrSize);
  /// Writes a header at the write position. Asserts as `pathAttributeHeaderOctets` does.
  void reInitHdr(BgpPathAttrType type, BgpPathAttrFlag flags, U32 attrSize);

  using Serialize::serializedString;
  /// The attribute, header and value. Asserts "serialized.size() == attrSize_ + headerSize_" for a
  /// value that is shorter or longer than announced.
  Mox::String serializedString() const;

 protected:
  SerializePathAttribute() = default;

  U32 headerSize_ = 0;  // 3 or 4 once a header is written
  U32 attrSize_ = 0;    // octets of the value, as announced
};

/// One attribute whose length shows only when its value is written: the value comes first, behind
/// room for the longer header.
///
///   SerializePathAttributeAutoExtLen attribute;
///   attribute.addU32hton(0xFDE80064);
///   attribute.patchHdrAndStringify(BgpPathAttrType::community,
///                                  BgpPathAttrFlag::optionalTransitive)
class SerializePathAttributeAutoExtLen : public SerializePathAttribute {
 public:
  SerializePathAttributeAutoExtLen() { addU32hton(0); }

  /// The value alone.
  Mox::String serializeAttributeValue() const { return serializedString(largestHeader); }
  /// The attribute, its header chosen by the length of the value. Asserts "attrSize <= 0xFFFF"
  /// before anything is written. REQUIRES: `flags` without `extLen`; with it, the header of a value
  /// shorter than 256 octets would run over the value's first octet.
  Mox::String patchHdrAndStringify(BgpPathAttrType type, BgpPathAttrFlag flags);

 private:
  static constexpr U32 largestHeader = 4;
};

/// A TLV of the Prefix-SID attribute (RFC 8669, section 3): the type octet and the length in two
/// octets are written, the caller adds the value.
class SerializedBgpPrefixSidAttribute : public Serialize {
 public:
  /// `length` is that of the value, in octets.
  SerializedBgpPrefixSidAttribute(PrefixSidTlvType tlvType, U16 length) {
    addU8(U8(tlvType));
    addU16hton(length);
  }
};

}  // namespace Routing::Bgp
