#include "agent/Serialize.h"

#include <gtest/gtest.h>

namespace Routing::Bgp {
namespace {

TEST(Serialize, AppendsInNetworkOrder) {
  Serialize buffer;
  buffer.addU8(0x01);
  buffer.addU16hton(0x0203);
  buffer.addU32hton(0x04050607);
  buffer.addU64hton(0x08090A0B0C0D0E0F);
  buffer.addIpv6Addr(Zonet::Ip6Addr({0x20, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}));
  EXPECT_EQ(buffer.serializedString(0),
            "\x01\x02\x03\x04\x05\x06\x07\x08\x09\x0A\x0B\x0C\x0D\x0E\x0F"
            "\x20\x01\x02\x03\x04\x05\x06\x07\x08\x09\x0A\x0B\x0C\x0D\x0E\x0F");
  EXPECT_EQ(buffer.serializedString(29), "\x0E\x0F");
  EXPECT_EQ(buffer.serializedString(31), "");
  EXPECT_DEATH(buffer.serializedString(32), "offset <= length_");
}

TEST(Serialize, KeepsItsOctetsAcrossGrowthAndCopying) {
  Serialize buffer, small;
  small.addU8(1);
  Mox::String expected;
  for (U32 i = 0; i < 20000; ++i) {  // the steps of 1 and 3 octets meet every place of the limits
    buffer.addU8(U8(i * 7));
    buffer.addU16hton(U16(i));
    expected += {char(U8(i * 7)), char(U8(i >> 8)), char(U8(i))};
    if (i % 1000 != 0) continue;
    Serialize copy(buffer), assigned(small);
    assigned = buffer;
    assigned = static_cast<const Serialize&>(assigned);
    copy.addU8(0);
    EXPECT_TRUE(buffer.serializedString(0) == expected) << i;
    EXPECT_TRUE(assigned.serializedString(0) == expected) << i;
    EXPECT_TRUE(copy.serializedString(0) == expected + '\0') << i;
    copy = small;
    EXPECT_EQ(copy.serializedString(0), "\1");
  }
}

TEST(Serialize, GrowsToWhatIsAskedAndNeverShrinks) {
  Serialize buffer;
  const std::pair<U32, U32> steps[] = {{0, 4096}, {4096, 4096}, {4097, 4097}, {9, 4097}};
  for (const auto& [asked, capacity] : steps) {
    buffer.growBuffer(asked);
    EXPECT_EQ(buffer.capacity(), capacity) << asked;
  }
}

}  // namespace
}  // namespace Routing::Bgp
