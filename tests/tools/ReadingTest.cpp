#include "tools/bgpcomm/Reading.h"

#include "RunTool.h"
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

using Files = ToolTest;

TEST_F(Files, FaultsAndPrefixesAreShown) {
  const Bytes origin = octets("40010100"), bad = mrtRecord(16, 4, "");
  const TemporaryFile file(
      bad + mrtRecord(16, 9, session() + update(origin, octets("00000007 180a0102"))) + bad +
      messageRecord(update(octets("c01008 4004fde84e000000"), octets("080a 180a"))));
  const std::string name = ' ' + file.name(), sample = "samples/rib.bird.mrt.gz";
  const std::string two = file.name() + ": 2 malformed, the first badRecord (record 1, octet 0)";
  const std::string early = "-: gzip data end too early (record 94, octet 11125)";
  expectRuns({
      // clang-format off
      {"bgpcomm paths" + name + " | cut -f3", "10.1.2.0/24#7\n10.0.0.0/8 ?\n", 0, two},
      {"bgpcomm paths --json" + name + " | grep -o '.prefixes.*,.standard.:'",
       R"("prefixes":[{"prefix":"10.1.2.0/24","pathId":7}],"standard":)" "\n"
       R"("prefixes":[{"prefix":"10.0.0.0/8"}],"prefixesCutShort":true,"standard":)" "\n", 0, two},
      {"bgpcomm verify" + name, file.name() + ": 1 lists compared, 0 differ, 2 malformed\n"},
      {"head -c 3000 " + sample + " | bgpcomm paths - | wc -l", "113\n", 0, early},
      {"head -c 3000 " + sample + " | bgpcomm summary - | grep compression", "    compression                  1\n", 0, early},
      {"bgpcomm summary - <&- | grep malformed", "  malformed                      0\n", 0,
       "-: Bad file descriptor (record 1, octet 0)"},
      {"bgpcomm summary " + sample + " | grep -c '^ *standard *extended IPv6 extended *large$'", "1\n"},
      // clang-format on
  });
}

TEST(HeldLists, CountPathsAndTheMemoryThatTheyShare) {
  const CommunityTables tables(sharedParser());
  const auto others = listTypes[0].makeHeld(tables);
  others->hold(view(octets("fde803e7")));
  const auto held = listTypes[0].makeHeld(tables);
  for (U32 value = 12; value > 0; --value)
    for (U32 path = 0; path < (value + 1) / 2; ++path)
      held->hold(view(number(0xFDE80000 + value, 4)));
  ListFigures figures, one;
  held->figures(figures, 10);
  others->figures(one, 10);
  std::string mostUsed;
  for (const ValueUse& use : figures.mostUsed)
    mostUsed += use.text + '=' + std::to_string(use.uses) + ' ';
  EXPECT_EQ(mostUsed,
            "65000:11=6 65000:12=6 65000:9=5 65000:10=5 65000:7=4 65000:8=4 65000:5=3 65000:6=3 "
            "65000:3=2 65000:4=2 ");
  EXPECT_EQ(figures.unsharedOctets, 42 * one.unsharedOctets);
  const U64 empty = tables.of<Routing::Bgp::CommList>().lists()->dedupHashTable()->octets();
  EXPECT_GT(figures.internedOctets, empty);
  EXPECT_GT(one.internedOctets, figures.internedOctets) << "the other's lists are not its own";
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
      {"40010100 40020a 02020000fc580000fc59", ""}, {"d0080004fde80064", "standard:fde80064 "},
      {"c00805fde8006400 c0100400020000 c01900 c02001ff",
       "standard malformed extended malformed ipv6Extended malformed large malformed attrLength=4 "},
      {"c00804fde80064 c00804fde80065 c00803fde800", "standard:fde80064 "},  // the first counts
      {"c00800 c00804fde80065", "standard malformed attrLength=1 "},         // even so
      {"c00804fde80064 c02018 00", "standard:fde80064 large malformed attrOverrun=1 "},
      {"c00804fde80064 c00808 00", "standard:fde80064 attrOverrun=1 "},
      {"c00804fde80064 c020", "standard:fde80064 large malformed attrOverrun=1 "},
      {"d00800", "standard malformed attrOverrun=1 "}, {"d008ffff fde80064", "standard malformed attrOverrun=1 "},
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
