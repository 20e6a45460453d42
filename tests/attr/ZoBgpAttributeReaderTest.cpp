#include "attr/ZoBgpAttributeReader.h"

#include <gtest/gtest.h>

#include "attr/ZoBgpSerialize.h"
#include "tests/HexOctets.h"

namespace Routing::Bgp {
namespace {

/// The attributes found: `flags type@offset=octets of the value`, decimal, and the overrun.
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
    text += std::to_string(U32(overrun->type)) + '@' + std::to_string(overrun->offset) + ": " +
            overrun->toStrep();
  return text;
}

TEST(PathAttributeReader, FindsWhatIsThereAndWhereItIsCutShort) {
  const struct {
    const char *octets, *found;
  } cases[] = {
      {"", ""},
      {"c00802 0102", "192 8@0=1.2. "},
      {"ff630000 ef6300", "255 99@0= 239 99@4= "},
      {"400100 d0100001ff", "64 1@0= 208 16@3=255. "},
      {"d010010000", "16@0: Extended Community attribute: 1 octet left of 256"},
      {"400100 c00803 0102", "64 1@0= 8@3: Community attribute: 2 octets left of 3"},
      {"c00801", "8@0: Community attribute: 0 octets left of 1"},
      {"c06301", "99@0: Attribute 99: 0 octets left of 1"},
      {"c00001", "0@0: Attribute 0: 0 octets left of 1"},
      {"400100 c0", "64 1@0= 0@3: an attribute's header is cut short"},
      {"c008", "8@0: an attribute's header is cut short"},
      {"d00800", "8@0: an attribute's header is cut short"},
  };
  for (const auto& [octets, expected] : cases)
    EXPECT_EQ(found(hexOctets(octets)), expected) << octets;
}

TEST(PathAttributeReader, ReadsEveryHeaderThatIsWritten) {
  for (const U32 flags : {0xC0u, 0x40u, 0x8Fu, 0xFFu})
    for (const U32 size : {0u, 1u, 255u, 256u, 0xFFFFu}) {
      SerializePathAttribute out(BgpPathAttrType::prefixSid, BgpPathAttrFlag(flags), size);
      for (U32 i = 0; i < size; ++i) out.addU8(U8(i));
      const std::string written = out.serializedString();
      PathAttributeReader in({reinterpret_cast<const U8*>(written.data()), written.size()});
      const auto read = in.next();
      ASSERT_TRUE(read);
      EXPECT_EQ(read->type, BgpPathAttrType::prefixSid);
      EXPECT_EQ(U32(read->flags), size > 255 ? flags | 0x10 : flags);
      EXPECT_EQ(read->value.size(), size);
      EXPECT_TRUE(size == 0 || (read->value.front() == 0 && read->value.back() == U8(size - 1)));
      EXPECT_FALSE(in.next() || in.overrun());
    }
}

}  // namespace
}  // namespace Routing::Bgp
