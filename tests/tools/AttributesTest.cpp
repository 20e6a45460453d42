#include "tools/bgpcomm/Attributes.h"

#include "TestOctets.h"

namespace bgpcomm {
namespace {

/// `standard:fde80064 large:... attrLength=1`
std::string found(const Bytes& attributes) {
  const CommunityValues values = findCommunities(view(attributes));
  std::string text;
  for (std::size_t kind = 0; kind < kindCount; ++kind)
    if (!values[kind].empty())
      text += std::string(kindRows[kind].key) + ':' + hex(values[kind]) + ' ';
  for (std::size_t i = 0; i < faultNames.size(); ++i)
    if (const U64 count = values.faults[Fault(i)])
      text += std::string(faultNames[i]) + '=' + std::to_string(count) + ' ';
  if (!text.empty()) text.pop_back();
  return text;
}

TEST(Attributes, AreFoundCheckedAndCounted) {
  struct Case {
    const char* what;
    const char* attributes;
    std::string found;
  };
  const std::string twelve = "0000fc580000000100000002";
  const Case cases[] = {
      {"none", "", ""},
      {"other attributes", "40010100 40020a 02020000fc580000fc59", ""},
      {"one", "c00804fde80064", "standard:fde80064"},
      {"length of two octets", "d0080004fde80064", "standard:fde80064"},
      {"all lengths wrong", "c00805fde8006400 c01009000000000000000000 c01900 c02001ff",
       "attrLength=4"},
      {"the first of two counts", "c00804fde80064 c00804fde80065", "standard:fde80064"},
      {"also when it is malformed", "c00800 c00804fde80065", "attrLength=1"},
      {"also when the second is", "c00804fde80064 c00803fde800", "standard:fde80064"},
      {"value beyond the block", "c00804fde80064 c02018 00", "standard:fde80064 attrOverrun=1"},
      {"header beyond the block", "c00804fde80064 c020", "standard:fde80064 attrOverrun=1"},
      {"second octet of the length missing", "d00800", "attrOverrun=1"},
      {"length of 65535", "d008ffff fde80064", "attrOverrun=1"},
  };
  for (const Case& c : cases) EXPECT_EQ(found(octets(c.attributes)), c.found) << c.what;
  const std::string twenty =
      "0002"
      "20010db8000000000000000000000001"
      "0007";
  EXPECT_EQ(found(octets("c0100800020000fc580001 c01914" + twenty + "c0200c" + twelve)),
            "extended:00020000fc580001 ipv6Extended:" + twenty + " large:" + twelve);
}

}  // namespace
}  // namespace bgpcomm
