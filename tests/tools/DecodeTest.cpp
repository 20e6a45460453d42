// Single communities, as the tool prints them.
#include <nlohmann/json.hpp>

#include "RunTool.h"

namespace bgpcomm {
namespace {

class Decode : public testing::Test {
 protected:
  void SetUp() override {
    if (!toolIsThere()) GTEST_SKIP() << "$BGPCOMM does not name the tool";
  }
};

TEST_F(Decode, TellsClassAndTexts) {
  const struct {
    const char *content, *className, *classification;  ///< without extCommClassification
    const char *show, *policy;
  } cases[] = {
      {"0002fde800000064", "ExtCommRouteTargetAs", "RouteTarget",
       "<RouteTarget2ByteASN 65000:100 0x0002fde800000064>", "Route-Target-AS:65000:100"},
      {"0202000100640001", "ExtCommRouteTargetAs", "RouteTarget",
       "<RouteTarget4ByteASN 65636:1 0x0202000100640001>", "Route-Target-AS4:65636:1"},
      {"4202000100640001", "ExtCommAsNumber", "UnSpecified",
       "<extCommPktTypeNonTransFourOctetAs subtype=2 ASN=65636 0x4202000100640001>",
       "0202-AS4(NT):65636:1"},
      {"0102c0a800010064", "ExtCommRouteTargetIpv4Address", "RouteTarget",
       "<RouteTarget 192.168.0.1:100 0x0102c0a800010064>", "Route-Target-IP:192.168.0.1:100"},
      {"0003fde8ffffffff", "ExtCommRouteOriginAs", "RouteOrigin",
       "<RouteOrigin2ByteASN 65000:4294967295 0x0003fde8ffffffff>",
       "Route-Origin-AS:65000:4294967295"},
      {"4004fde84e9502f9", "ExtCommLinkBandwidth", "LinkBandwidth",
       "<LinkBandwidth 65000:1.25e+09 0x4004fde84e9502f9>", "Link-Bandwidth-AS:65000:10 Gbps"},
      {"030c000000000005", "ExtCommTunnelEncap", "TunnelEncap",
       "<TunnelEncap 5:tunnelTypeUnknown 0x030c000000000005>", "TunnelEncap:tunnelTypeUnknown-5"},
      {"030b80000000000a", "ExtCommColor", "Color", "<Color: 10(10) 0x030b80000000000a>",
       "Color:CO(10):10"},
      {"030d000000000000", "ExtCommDefaultGateway", "DefaultGateway",
       "<DefaultGateway 0x030d000000000000>", "DefaultGateway"},
      {"4300000000000007", "ExtCommOriginValidationState", "OriginValidationState",
       "<OriginValidationState Unknown(7) 0x4300000000000007>", "Origin-Validation-State:Unknown"},
      {"4304000000000005", "ExtCommSubtyped", "UnSpecified",
       "<extCommPktTypeNonTransOpaque subtype=4 0x4304000000000005>",
       "0304(NT):0x00 0x00 0x00 0x00 0x00 0x05"},
      {"0400000000000001", "ExtComm", "UnSpecified",
       "<extCommPktTypeTransQosMarking 0x0400000000000001>", "0400:0x00 0x00 0x00 0x00 0x00 0x01"},
      {"0000000000000000", "ExtCommAsNumber", "UnSpecified",
       "<extCommPktTypeTransTwoOctetAs subtype=0 ASN=0 000000000000000000>", "0000-AS:0:0"},
      {"000220010db80000000000000000000000010064", "ExtCommIp6Subtyped", "UnSpecified",
       "<extCommIp6PktTypeTransIpv6Address extCommIp6PktSubtypeRouteTarget addr=2001:db8::1 "
       "localAdmin=100>",
       "0002-IP6:2001:db8::1:100"},
      {"400220010db80000000000000000000000010064", "ExtCommIp6Subtyped", "UnSpecified",
       "<extCommIp6PktTypeNonTransIpv6Address subtype=2 addr=2001:db8::1 localAdmin=100>",
       "0002-IP6(NT):2001:db8::1:100"},
      {"010220010db80000000000000000000000010064", "ExtCommIp6", "UnSpecified",
       "<extCommIp6PktTypeUnknown addr=2001:db8::1 localAdmin=100>", "0102-IP6:2001:db8::1:100"},
  };
  std::string text, json, lines;
  for (const auto& c : cases) {
    const std::string classification = std::string("extCommClassification") + c.classification;
    lines += std::string(c.content) + '\n';
    text += std::string(c.content) + "\n  class           " + c.className + "\n  classification  " +
            classification + "\n  show            " + c.show + "\n  policy          " + c.policy +
            '\n';
    json += nlohmann::ordered_json{{"content", c.content},
                                   {"class", c.className},
                                   {"classification", classification},
                                   {"show", c.show},
                                   {"policy", c.policy}}
                .dump() +
            '\n';
  }
  const TemporaryFile file(lines);
  EXPECT_EQ(runTool("bgpcomm decode - < " + file.name()).out, text);
  EXPECT_EQ(runTool("bgpcomm decode --json - < " + file.name()).out, json);
  EXPECT_EQ(runTool("bgpcomm decode --json $(tr a-f A-F < " + file.name() + ")").out, json);
  EXPECT_EQ(runTool("sed 's/^/\\n 0x/; s/$/\\r/' " + file.name() + " | bgpcomm decode -").out,
            text);
}

TEST_F(Decode, FormatChoosesThePolicyText) {
  const struct {
    const char *format, *content, *policy;
  } cases[] = {
      {"none", "0002fde800000064", "65000:100"},
      {"classification", "0002fde800000064", "RT:65000:100"},
      {"classification", "0103c0a800010064", "SoO:192.168.0.1:100"},
      {"ui,qualifier,classification", "0202000100640001", "Route-Target-AS4:65636L:1"},
      {"qualifier", "02020000fde80001", "65000L:1"},
      {"asdot", "0202000100640001", "1.100:1"},
      {"qualifier,asdot", "0202000100640001", "1.100:1"},
      {"classification,ui,weighted", "4004fde84e9502f9", "Link-Bandwidth-AS:65000:1250000000"},
      {"classification", "4004fde87f800000", "lbw 65000:inf"},
      {"ui", "030c000000000008", "tunnelTypeVxlan"},
      {"none", "030b40000000000a", "Color:CO(01):10"},
      {"classification", "4300000000000002", "-"},
      {"classification", "000220010db80000000000000000000000010064", "2001:db8::1:100"},
  };
  for (const auto& c : cases) {
    const ToolRun run = runTool("bgpcomm decode --format " + std::string(c.format) + ' ' +
                                c.content + " | sed -n 's/^  policy *//p'");
    EXPECT_EQ(run.out, std::string(c.policy) + '\n') << c.format << ' ' << c.content;
  }
}

TEST_F(Decode, RefusesInOneLine) {
  const std::string neither = "neither a community, 16 or 40 digits in a piece, nor an attribute: ";
  const std::string flags =
      ", there are default, qualifier, classification, ui, asdot, weighted, or none for no flag";
  const struct {
    const char* command;
    std::string err;
  } cases[] = {
      {"bgpcomm decode 0002fde80000006",
       "argument 1 (0002fde80000006): half an octet at character 15"},
      {"bgpcomm decode 0400000000000001 g002fde800000064",
       "argument 2 (g002fde800000064): no hexadecimal digit at character 1"},
      {"bgpcomm decode 000220010db8000000000000000000000001006400",
       "argument 1 (000220010db8000000000000...): " + neither +
           "its length is 32, but 18 octets follow"},
      {"bgpcomm decode 0x", "argument 1 (0x): " + neither + "too short for flags, type and length"},
      {"printf '0002fde800000064\\n\\nz\\033z\\n' | bgpcomm decode -",
       "standard input, line 3 (z?z): no hexadecimal digit at character 1"},
      {"head -c 1000000 /dev/zero | bgpcomm decode -",
       "standard input, line 1: longer than 200000 characters"},
      {"bgpcomm decode --format ui,UI 0400000000000001", "--format ui,UI: no flag \"UI\"" + flags},
      {"bgpcomm decode --format none,ui 0400000000000001",
       "--format none,ui: no flag \"none\"" + flags},
      {"bgpcomm decode --names --numeric 0400000000000001",
       "--names excludes --numeric; see bgpcomm --help"},
  };
  for (const auto& c : cases) {
    const ToolRun run = runTool(c.command);
    EXPECT_EQ(run.exitCode, 2) << c.command;
    EXPECT_EQ(run.err, "bgpcomm: " + c.err + '\n') << c.command;
  }
  const ToolRun folder = runTool("bgpcomm decode - < /");
  EXPECT_EQ(folder.exitCode, 1);
  EXPECT_EQ(folder.err, "bgpcomm: standard input: Is a directory\n");
}

TEST_F(Decode, TellsAttributesByTheirForm) {
  // As many octets as a community each; only blanks make an attribute of them.
  const ToolRun run = runTool(
      "bgpcomm decode --names d008000400000000 'd0 08 0004 00000000'\n"
      "bgpcomm decode d0 08 00 04 00 00 00 00\n"
      "printf '0xc00804ffffff01\\n0400000000000001\\n' | bgpcomm decode --numeric - | head -2");
  EXPECT_EQ(run.out,
            "d008000400000000\n"
            "  class           ExtComm\n"
            "  classification  extCommClassificationUnSpecified\n"
            "  show            <extCommPktTypeUnknown 0xd008000400000000>\n"
            "  policy          9008(NT):0x00 0x04 0x00 0x00 0x00 0x00\n"
            "Community (8), flags 0xd0: internet\n"
            "Community (8), flags 0xd0: internet\n"
            "Community (8), flags 0xc0: 65535:65281\n"
            "0400000000000001\n");
}

TEST_F(Decode, AnswersEachLineAsItComes) {
  // The second line is sent only after the answer to the first has been read.
  const ToolRun run = runTool(
      "dir=$(mktemp -d) && mkfifo $dir/in $dir/out\n"
      "timeout 20 \"$BGPCOMM\" decode --json - < $dir/in > $dir/out &\n"
      "exec 3> $dir/in 4< $dir/out\n"
      "for type in 04 05; do echo ${type}00000000000001 >&3; read -r line <&4; echo \"$line\" | "
      "cut "
      "-c1-29; done\n"
      "exec 3>&-; wait; rm -r $dir");
  EXPECT_EQ(run.out, "{\"content\":\"0400000000000001\"\n{\"content\":\"0500000000000001\"\n");
}

// More than the pieces in which input is read, so that lines lie across them.
TEST_F(Decode, LosesNoLine) {
  std::string lines;
  for (U32 i = 0; i < 60'000; ++i) lines += hex(view(number(i, 8))) + '\n';
  const TemporaryFile file(lines);
  const ToolRun run = runTool("bgpcomm decode - < " + file.name() + " | grep -v '^ ' | cmp - " +
                              file.name() + " && echo same");
  EXPECT_EQ(run.out, "same\n") << run.err;
}

}  // namespace
}  // namespace bgpcomm
