#include "attr/ZoBgpSerialize.h"

#include <gtest/gtest.h>

#include <functional>

namespace Routing::Bgp {
namespace {

using enum BgpPathAttrType;
using enum BgpPathAttrFlag;

/// Adds a value whose every octet differs from its neighbours.
std::string addValue(Serialize& buffer, U32 octets) {
  std::string value;
  for (U32 i = 0; i < octets; ++i) value += char(1 + i % 251);
  for (const char octet : value) buffer.addU8(U8(octet));
  return value;
}

TEST(SerializePathAttribute, HasTheHeaderThatItsLengthNeeds) {
  const struct {
    U32 octets;
    BgpPathAttrFlag flags;
    std::string header;
  } cases[] = {{0, optionalTransitive, {'\xC0', 25, 0}},
               {40, optionalTransitive, {'\xC0', 25, 40}},
               {255, optionalTransitive, {'\xC0', 25, '\xFF'}},
               {256, optionalTransitive, {'\xD0', 25, 1, 0}},
               {256, optionalTransitive | extLen, {'\xD0', 25, 1, 0}},
               {4093, optionalTransitivePartial, {'\xF0', 25, '\x0F', '\xFD'}},
               {0xFFFF, opt, {'\x90', 25, '\xFF', '\xFF'}}};
  SerializePathAttribute reused(origin, transitive, 1);
  for (const auto& [octets, flags, header] : cases) {
    SCOPED_TRACE(octets);
    SerializePathAttributeAutoExtLen measured;
    const std::string value = addValue(measured, octets);
    EXPECT_TRUE(measured.serializeAttributeValue() == value);
    EXPECT_TRUE(measured.patchHdrAndStringify(extCommunityIp6, flags) == header + value);
    EXPECT_TRUE(measured.serializeAttributeValue() == value) << "the patch leaves the value alone";
    reused.clearAndReInit(extCommunityIp6, flags, octets);
    EXPECT_GE(reused.capacity(), octets + 4) << "grown once, before the value comes";
    addValue(reused, octets);
    EXPECT_TRUE(reused.serializedString() == header + value);
  }
}

TEST(SerializePathAttribute, WritesWhatIsAskedForOctetByOctet) {
  SerializePathAttribute longHeader(largeCommunity, optionalTransitive | extLen, 2);
  longHeader.addU16hton(0x0102);
  EXPECT_EQ(longHeader.serializedString(), std::string("\xD0\x20\x00\x02\x01\x02", 6));
  SerializePathAttribute twoHeaders(origin, transitive, 7);
  twoHeaders.reInitHdr(BgpPathAttrType::community, optionalTransitive, 4);
  twoHeaders.addU32hton(0xFDE80064);
  EXPECT_EQ(twoHeaders.serializedString(),
            "\x40\x01\x07\xC0\x08\x04\xFD\xE8" + std::string("\0d", 2));
  const SerializedBgpPrefixSidAttribute tlv(PrefixSidTlvType::originatorSrgbTlv, 0x0102);
  EXPECT_EQ(tlv.serializedString(0), "\x03\x01\x02");
}

TEST(SerializePathAttributeDeathTest, RefusesWhatNoHeaderCanSay) {
  const auto type = BgpPathAttrType(0x100);
  const auto flags = BgpPathAttrFlag(0x100);
  SerializePathAttributeAutoExtLen measured;
  addValue(measured, 0x10000);
  SerializePathAttribute longer(origin, opt, 1);
  longer.addU16hton(1);
  const std::pair<std::function<void()>, const char*> refused[] = {
      {[&] { SerializePathAttribute(type, flags, 0x10000); }, "attrType <= 0xFF"},
      {[&] { SerializePathAttribute(origin, flags, 0x10000); }, "attrFlags <= 0xFF"},
      {[&] { SerializePathAttribute(origin, opt, 0x10000); }, "attrSize <= 0xFFFF"},
      {[&] { SerializePathAttribute(origin, opt, 0xFFFFFFFF); }, "attrSize <= 0xFFFF"},
      {[&] { SerializePathAttribute(origin, opt, 1).serializedString(); },
       "serialized.size\\(\\) == attrSize_ \\+ headerSize_"},
      {[&] { longer.serializedString(); }, "serialized.size\\(\\) == attrSize_ \\+ headerSize_"},
      {[&] { measured.patchHdrAndStringify(type, flags); }, "attrSize <= 0xFFFF"}};
  for (const auto& [act, text] : refused)
    EXPECT_DEATH(act(), std::string("ZoBgpSerialize.*: ") + text + "\n");
}

}  // namespace
}  // namespace Routing::Bgp
