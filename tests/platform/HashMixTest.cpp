#include "Orv/HashMix.h"

#include <gtest/gtest.h>

namespace Orv {
namespace {

// The vectors were computed by an independent program.
TEST(HashMix, GivesTheHashThatIsFixedForAllTime) {
  const auto hash = [](auto... numbers) {
    HashMix mix;
    (mix.feed(numbers), ...);
    return mix.finish();
  };
  EXPECT_EQ(hash(U64{1}), 0x98adb391u);
  EXPECT_EQ(hash(U64{0x0002fde800000064}), 0xbfac65dcu);
  EXPECT_EQ(hash(U64{0x0202000100640001}), 0x065a557bu);
  EXPECT_EQ(hash(U32{1}, U32{3}, U32{5}), 0x2c28ec16u);
  EXPECT_EQ(hash(U32{0}, U32{0xffffff01}), 0xd533f173u);
  EXPECT_EQ(hash(U32{65000}, U32{1}, U32{2}), 0x32cc934cu);
  EXPECT_EQ(hash(U64{0}), 0u);
  EXPECT_EQ(hash(U32{5}), 0x667043eau);
  EXPECT_EQ(hash(U32{0}, U32{5}), 0x667043eau);
  // Type, subtype, 2001:db8::1 in two halves as they lie in memory, local administrator.
  const U64 high = 0x00000000b80d0120, low = 0x0100000000000000;
  EXPECT_EQ(hash(U8{0}, U8{2}, high, low, U16{100}), 0x96c28a85u);
  EXPECT_EQ(hash(U8{0}, U8{2}, high, low, U16{0x0102}), 0x041a4f0au);
}

}  // namespace
}  // namespace Orv
