#include "tools/bgpcomm/Reading.h"

#include "tests/mrt/TestOctets.h"
#include "tools/bgpcomm/Hex.h"

namespace bgpcomm {
namespace {

TEST(Reading, OutOfMemoryEndsAFile) {
  const Bytes good = messageRecord(update(octets("40010100"), ""));
  const TemporaryFile file(good + good + good);
  testing::internal::CaptureStderr();
  const auto visit = [](const Path&, const CommunityValues&, Position position) {
    if (position.record == 2) throw std::bad_alloc();
  };
  const ReadResult result = readFile(file.name(), visit);
  // A record of 12 + 20 + 23 + 4 octets stands before.
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "bgpcomm: " + file.name() + ": out of memory (record 2, octet 59)\n");
  EXPECT_TRUE(result.failed && result.records == 2);
}

/// The values found, by list type, and the faults: `standard:fde80064 attrLength=1 `
std::string communities(const char* attributes) {
  const Bytes block = octets(attributes);
  const CommunityValues values = findCommunities(view(block));
  std::string text;
  for (std::size_t type = 0; type < listTypeCount; ++type) {
    const std::string key(listTypes[type].key);
    if (!values[type].empty()) text += key + ':' + hex(values[type]) + ' ';
    if (values.malformed[type]) text += key + " malformed ";
  }
  for (std::size_t i = 0; i < faultNames.size(); ++i)
    if (const U64 count = values.faults[Fault(i)])
      text += std::string(faultNames[i]) + '=' + std::to_string(count) + ' ';
  return text;
}

TEST(Reading, FindsChecksAndCountsAttributes) {
  const std::pair<const char*, const char*> cases[] = {
      // clang-format off
      {"40010100 40020a 02020000fc580000fc59", ""},
      {"d0080004fde80064", "standard:fde80064 "},
      {"c00805fde8006400 c0100400020000 c01900 c02001ff",
       "standard malformed extended malformed ipv6Extended malformed large malformed attrLength=4 "},
      {"c00804fde80064 c00804fde80065 c00803fde800", "standard:fde80064 "},  // the first counts
      {"c00800 c00804fde80065", "standard malformed attrLength=1 "},         // even so
      {"c00804fde80064 c02018 00", "standard:fde80064 large malformed attrOverrun=1 "},
      {"c00804fde80064 c00808 00", "standard:fde80064 attrOverrun=1 "},
      {"c00804fde80064 c020", "standard:fde80064 large malformed attrOverrun=1 "},
      {"d00800", "standard malformed attrOverrun=1 "},
      {"d008ffff fde80064", "standard malformed attrOverrun=1 "},
      {"c0100800020000fc580001 c01914000220010db80000000000000000000000010007c0200c0000fc580000000100000002",
       "extended:00020000fc580001 ipv6Extended:000220010db80000000000000000000000010007 "
       "large:0000fc580000000100000002 "},
      // clang-format on
  };
  for (const auto& [attributes, found] : cases)
    EXPECT_EQ(communities(attributes), found) << attributes;
}

}  // namespace
}  // namespace bgpcomm
