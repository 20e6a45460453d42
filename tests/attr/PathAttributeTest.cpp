// Path attributes as they are written, and as they are read from any octets.
#include <gtest/gtest.h>

#include <functional>

#include "attr/ZoBgpAttributeReader.h"
#include "attr/ZoBgpSerialize.h"
#include "tests/HexOctets.h"

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

TEST(PathAttribute, HasTheHeaderThatItsLengthNeedsAndIsReadBack) {
  const struct {
    U32 octets;
    BgpPathAttrFlag flags;
    std::string header;
  } cases[] = {{0, optionalTransitive, {'\xC0', 25, 0}},
               {40, BgpPathAttrFlag(0xEF), {'\xEF', 25, 40}},
               {255, optionalTransitive, {'\xC0', 25, '\xFF'}},
               {256, optionalTransitive, {'\xD0', 25, 1, 0}},
               {4093, optionalTransitive | extLen | partial, {'\xF0', 25, '\x0F', '\xFD'}},
               {0xFFFF, opt, {'\x90', 25, '\xFF', '\xFF'}}};
  SerializePathAttribute reused(origin, transitive, 1);
  for (const auto& [octets, flags, header] : cases) {
    SCOPED_TRACE(octets);
    SerializePathAttributeAutoExtLen measured;
    const std::string value = addValue(measured, octets), written = header + value;
    EXPECT_TRUE(measured.serializeAttributeValue() == value);
    EXPECT_TRUE(measured.patchHdrAndStringify(extCommunityIp6, flags) == written);
    EXPECT_TRUE(measured.serializeAttributeValue() == value) << "the patch leaves the value alone";
    reused.clearAndReInit(extCommunityIp6, flags, octets);
    EXPECT_GE(reused.capacity(), octets + 4) << "grown once, before the value comes";
    addValue(reused, octets);
    EXPECT_TRUE(reused.serializedString() == written);
    PathAttributeReader in({reinterpret_cast<const U8*>(written.data()), written.size()});
    const auto read = in.next();
    ASSERT_TRUE(read);
    EXPECT_TRUE(read->type == extCommunityIp6 && U8(read->flags) == U8(header[0]));
    EXPECT_TRUE(std::string(read->value.begin(), read->value.end()) == value);
    EXPECT_FALSE(in.next() || in.overrun());
  }
}

TEST(PathAttribute, IsWrittenAsAskedForOctetByOctet) {
  SerializePathAttribute longHeader(largeCommunity, optionalTransitive | extLen, 2);
  longHeader.addU16hton(0x0102);
  EXPECT_EQ(longHeader.serializedString(), std::string("\xD0\x20\x00\x02\x01\x02", 6));
  SerializePathAttribute twoHeaders(origin, transitive, 7);
  twoHeaders.reInitHdr(BgpPathAttrType::community, optionalTransitive, 4);
  twoHeaders.addU32hton(0xFDE80164);
  EXPECT_EQ(twoHeaders.serializedString(), "\x40\x01\x07\xC0\x08\x04\xFD\xE8\x01\x64");
  const SerializedBgpPrefixSidAttribute tlv(PrefixSidTlvType::originatorSrgbTlv, 0x0102);
  EXPECT_EQ(tlv.serializedString(0), "\x03\x01\x02");
}

TEST(PathAttributeDeathTest, RefusesWhatNoHeaderCanSay) {
  const auto type = BgpPathAttrType(0x100);
  const auto flags = BgpPathAttrFlag(0x100);
  SerializePathAttributeAutoExtLen measured;
  addValue(measured, 0x10000);
  SerializePathAttribute shorter(origin, opt, 1), longer(shorter);
  longer.addU16hton(1);
  const char* const announced = "serialized.size\\(\\) == attrSize_ \\+ headerSize_";
  const std::pair<std::function<void()>, std::string> refused[] = {
      {[&] { SerializePathAttribute(type, flags, 0x10000); }, "attrType <= 0xFF"},
      {[&] { SerializePathAttribute(origin, flags, 0x10000); }, "attrFlags <= 0xFF"},
      {[&] { SerializePathAttribute(origin, opt, 0x10000); }, "attrSize <= 0xFFFF"},
      {[&] { SerializePathAttribute(origin, opt, 0xFFFFFFFF); }, "attrSize <= 0xFFFF"},
      {[&] { measured.patchHdrAndStringify(type, flags); }, "attrSize <= 0xFFFF"},
      {[&] { shorter.serializedString(); }, announced},
      {[&] { longer.serializedString(); }, announced}};
  for (const auto& [act, text] : refused) EXPECT_DEATH(act(), "ZoBgpSerialize.*: " + text + "\n");
}

/// The attributes found: `flags type@offset=octets of the value`, decimal, and the overrun:
/// `type@offset+octets of the value: text`.
std::string found(std::span<const U8> octets) {
  std::string text;
  PathAttributeReader in(octets);
  while (const auto attribute = in.next()) {
    text += std::to_string(U32(attribute->flags)) + ' ' + std::to_string(U32(attribute->type)) +
            '@' + std::to_string(attribute->offset) + '=';
    for (const U8 octet : attribute->value) text += std::to_string(octet) + '.';
    text += ' ';
  }
  EXPECT_FALSE(in.next()) << "the end is the end";
  if (const auto& overrun = in.overrun())
    text += std::to_string(U32(overrun->type)) + '@' + std::to_string(overrun->offset) + '+' +
            std::to_string(overrun->found) + ": " + overrun->toStrep();
  return text;
}

TEST(PathAttributeReader, FindsWhatIsThereAndWhereItIsCutShort) {
  const std::pair<const char*, const char*> cases[] = {
      {"", ""},
      {"ff630000 ef6300", "255 99@0= 239 99@4= "},
      {"400100 d0100001ff d0100000", "64 1@0= 208 16@3=255. 208 16@8= "},
      {"d010010000", "16@0+1: Extended Community attribute: 1 octet left of 256"},
      {"c00802 0102 c00803 0102", "192 8@0=1.2. 8@5+2: Community attribute: 2 octets left of 3"},
      {"c06301", "99@0+0: Attribute 99: 0 octets left of 1"},
      {"c00001", "0@0+0: Attribute 0: 0 octets left of 1"},
      {"400100 c0", "64 1@0= 0@3+0: an attribute's header is cut short"},
      {"c008", "8@0+0: an attribute's header is cut short"},
      {"d00800", "8@0+0: an attribute's header is cut short"}};
  for (const auto& [octets, expected] : cases)
    EXPECT_EQ(found(hexOctets(octets)), expected) << octets;
}

}  // namespace
}  // namespace Routing::Bgp
