#include "attr/ZoBgpSerialize.h"

#include <gtest/gtest.h>

#include <functional>

namespace Routing::Bgp {
namespace {

using enum BgpPathAttrType;
using enum BgpPathAttrFlag;

constexpr BgpPathAttrFlag optionalTransitiveExtLen = optionalTransitive | extLen;

struct Case {
  U32 valueOctets;
  BgpPathAttrFlag flags;
  std::string header;
};

/// A value whose every octet differs from its neighbours.
std::string value(U32 octets) {
  std::string value;
  for (U32 i = 0; i < octets; ++i) value += char(1 + i % 251);
  return value;
}

template <class Buffer>
void addValue(Buffer& buffer, U32 octets) {
  for (char octet : value(octets)) buffer.addU8(U8(octet));
}

const Case cases[] = {
    {0, optionalTransitive, {'\xC0', 25, 0}},
    {40, optionalTransitive, {'\xC0', 25, 40}},
    {255, optionalTransitive, {'\xC0', 25, '\xFF'}},
    {256, optionalTransitive, {'\xD0', 25, 1, 0}},
    {400, optionalTransitive, {'\xD0', 25, 1, '\x90'}},
    {4092, transitive, {'\x50', 25, '\x0F', '\xFC'}},
    {4093, optionalTransitivePartial, {'\xF0', 25, '\x0F', '\xFD'}},
    {0xFFFF, opt, {'\x90', 25, '\xFF', '\xFF'}},
};

TEST(SerializePathAttribute, WritesHeaderAndValue) {
  SerializePathAttribute reused(origin, transitive, 1);
  for (const Case& c : cases) {
    SCOPED_TRACE(c.valueOctets);
    SerializePathAttribute attribute(extCommunityIp6, c.flags, c.valueOctets);
    addValue(attribute, c.valueOctets);
    EXPECT_TRUE(attribute.serializedString() == c.header + value(c.valueOctets));

    reused.clearAndReInit(extCommunityIp6, c.flags, c.valueOctets);
    EXPECT_GE(reused.capacity(), c.valueOctets + 4);
    addValue(reused, c.valueOctets);
    EXPECT_TRUE(reused.serializedString() == attribute.serializedString());
  }
}

TEST(SerializePathAttribute, KeepsAnAskedForLongHeader) {
  SerializePathAttribute attribute(largeCommunity, optionalTransitiveExtLen, 2);
  attribute.addU16hton(0x0102);
  EXPECT_EQ(attribute.serializedString(), std::string("\xD0\x20\x00\x02\x01\x02", 6));
}

TEST(SerializePathAttribute, WritesFurtherHeadersWhereItStands) {
  SerializePathAttribute attribute(origin, transitive, 7);
  attribute.reInitHdr(BgpPathAttrType::community, optionalTransitive, 4);
  attribute.addU32hton(0xFDE80064);
  EXPECT_EQ(attribute.serializedString(),
            std::string("\x40\x01\x07\xC0\x08\x04\xFD\xE8\x00\x64", 10));
}

TEST(SerializePathAttributeAutoExtLen, ChoosesTheHeaderByTheValue) {
  for (const Case& c : cases) {
    SCOPED_TRACE(c.valueOctets);
    SerializePathAttributeAutoExtLen attribute;
    addValue(attribute, c.valueOctets);
    EXPECT_TRUE(attribute.serializeAttributeValue() == value(c.valueOctets));
    EXPECT_TRUE(attribute.patchHdrAndStringify(extCommunityIp6, c.flags) ==
                c.header + value(c.valueOctets));
    EXPECT_TRUE(attribute.serializeAttributeValue() == value(c.valueOctets));
  }
}

TEST(SerializedBgpPrefixSidAttribute, BeginsWithTypeAndLength) {
  const SerializedBgpPrefixSidAttribute tlv(PrefixSidTlvType::originatorSrgbTlv, 0x0102);
  EXPECT_EQ(tlv.serializedString(0), "\x03\x01\x02");
}

TEST(SerializePathAttributeDeathTest, RefusesWhatNoHeaderCanSay) {
  const auto type = BgpPathAttrType(0x100);
  const auto flags = BgpPathAttrFlag(0x100);
  const std::pair<std::function<void()>, const char*> refused[] = {
      {[&] { SerializePathAttribute(type, flags, 0x10000); }, "attrType <= 0xFF"},
      {[&] { SerializePathAttribute(origin, flags, 0x10000); }, "attrFlags <= 0xFF"},
      {[&] { SerializePathAttribute(origin, opt, 0x10000); }, "attrSize <= 0xFFFF"},
      {[&] { SerializePathAttribute(origin, opt, 0xFFFFFFFF); }, "attrSize <= 0xFFFF"},
      {[&] { SerializePathAttribute(origin, opt, 1).serializedString(); },
       "serialized.size\\(\\) == attrSize_ \\+ headerSize_"},
      {[&] {
         SerializePathAttributeAutoExtLen attribute;
         addValue(attribute, 0x10000);
         attribute.patchHdrAndStringify(type, flags);
       },
       "attrSize <= 0xFFFF"},
  };
  for (const auto& [act, text] : refused)
    EXPECT_DEATH(act(), std::string("ZoBgpSerialize.*: ") + text + "\n");
}

}  // namespace
}  // namespace Routing::Bgp
