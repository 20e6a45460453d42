// Communities and attributes given in hex, as the tool's user sees them.
#include "RunTool.h"

namespace bgpcomm {
namespace {

using Decode = ToolTest;

TEST_F(Decode, TellsClassClassificationAndPolicyText) {
  const std::string communities = R"(
0002fde800000064 ExtCommRouteTargetAs RouteTarget Route-Target-AS:65000:100
0202000100640001 ExtCommRouteTargetAs RouteTarget Route-Target-AS4:65636:1
4202000100640001 ExtCommAsNumber UnSpecified 0202-AS4(NT):65636:1
0102c0a800010064 ExtCommRouteTargetIpv4Address RouteTarget Route-Target-IP:192.168.0.1:100
0003fde8ffffffff ExtCommRouteOriginAs RouteOrigin Route-Origin-AS:65000:4294967295
4004fde84e9502f9 ExtCommLinkBandwidth LinkBandwidth Link-Bandwidth-AS:65000:10 Gbps
030c000000000005 ExtCommTunnelEncap TunnelEncap TunnelEncap:tunnelTypeUnknown-5
030b80000000000a ExtCommColor Color Color:CO(10):10
030d000000000000 ExtCommDefaultGateway DefaultGateway DefaultGateway
4300000000000007 ExtCommOriginValidationState OriginValidationState Origin-Validation-State:Unknown
4304000000000005 ExtCommSubtyped UnSpecified 0304(NT):0x00 0x00 0x00 0x00 0x00 0x05
0400000000000001 ExtComm UnSpecified 0400:0x00 0x00 0x00 0x00 0x00 0x01
400220010db80000000000000000000000010064 ExtCommIp6Subtyped UnSpecified 0002-IP6(NT):2001:db8::1:100
010220010db80000000000000000000000010064 ExtCommIp6 UnSpecified 0102-IP6:2001:db8::1:100
)";
  const TemporaryFile file(communities);
  expectRuns({{"cut -d' ' -f1 " + file.name() + " | bgpcomm decode --json - | " +
                   "cut -d'\"' -f4,8,12,20 | tr '\"' ' ' | sed s/extCommClassification//",
               communities.substr(1)}});
}

TEST_F(Decode, AnswersInTextOrJson) {
  const std::string target =
      "000220010db80000000000000000000000010064\n"
      "  class           ExtCommIp6Subtyped\n"
      "  classification  extCommClassificationUnSpecified\n"
      "  show            <extCommIp6PktTypeTransIpv6Address extCommIp6PktSubtypeRouteTarget "
      "addr=2001:db8::1 localAdmin=100>\n"
      "  policy          0002-IP6:2001:db8::1:100\n";
  const std::string attribute = "Community (8), flags 0xd0: internet\n";
  expectRuns({
      // clang-format off
      {"printf '\\n 0x000220010DB80000000000000000000000010064\\r\\n' | bgpcomm decode -", target},
      // As many octets as a community each; only blanks make an attribute of them.
      {"bgpcomm decode --names d008000400000000 'D0 08:0004 00000000' | sed -n '2p;6p'",
       "  class           ExtComm\n" + attribute},
      {"bgpcomm decode d0 08 00 04 00 00 00 00", attribute},
      {"bgpcomm decode --json c0101002020000006400010002006400000001 | cut -d, -f6-",
       R"("RT:100:1"],"extendedOctets":["0002006400000001","0202000000640001"]})" "\n"},
      // clang-format on
  });
}

TEST_F(Decode, FormatChoosesThePolicyText) {
  const std::pair<std::string, std::string> cases[] = {
      {"none 0002fde800000064", "65000:100"},
      {"classification 0103c0a800010064", "SoO:192.168.0.1:100"},
      {"ui,qualifier,classification 0202000100640001", "Route-Target-AS4:65636L:1"},
      {"qualifier,asdot 0202000100640001", "1.100:1"},
      {"classification,ui,weighted 4004fde84e9502f9", "Link-Bandwidth-AS:65000:1250000000"},
      {"ui 030c000000000008", "tunnelTypeVxlan"},
      {"classification 4300000000000002", "-"}};
  for (const auto& [arguments, policy] : cases)
    expectRuns({{"bgpcomm decode --format " + arguments + " | tail -1",
                 "  policy          " + policy + '\n'}});
}

TEST_F(Decode, SaysWhatIsWrongInOneLineAndGoesOn) {
  const std::string neither = "neither a community, 16 or 40 digits in a piece, nor an attribute: ";
  const std::string origin = "Origin (1), flags 0x40: 00\n";
  const std::string prefix = "bgpcomm: standard input, line ";
  expectRuns({
      // clang-format off
      {"bgpcomm decode 0002fde80000006 40010100", origin, 1,
       "argument 1 (0002fde80000006): half an octet at character 15"},
      {"bgpcomm decode 40010100 g002fde800000064 0x 40010100", origin + origin, 1,
       "argument 2 (g002fde800000064): no hexadecimal digit at character 1\nbgpcomm: argument 3 (0x): " +
           neither + "too short for flags, type and length"},
      {"bgpcomm decode 40010100 400101aabb 2>&1", origin + "bgpcomm: argument 2 (400101aabb): " + neither +
           "its length is 1, but 2 octets follow\n", 1},
      {"bgpcomm decode 000220010db8000000000000000000000001006400", "", 1,
       "argument 1 (000220010db8000000000000...): " + neither + "its length is 32, but 18 octets follow"},
      {"bgpcomm decode c010104004fde84e0000004004fde84d000000", "", 1,
       "argument 1 (c010104004fde84e00000040...): Extended Community attribute, offset 8: a second link "
       "bandwidth, expected at most one"},
      {"printf '40010100\\n\\nz\\033z\\n4\\0001\\n40010100' | bgpcomm decode - 40010100",
       origin + origin + origin, 1,
       "standard input, line 3 (z\\x1bz): no hexadecimal digit at character 1\n" + prefix +
           "4 (4\\x001): half an octet at character 1"},
      // Lines of 200,000 characters, of one more, and of more than is read at once.
      {"(printf 4001 && head -c 199992 /dev/zero | tr '\\0' ' ' && echo 0100; printf %0200001d\\\\n;"
       " printf %01000000d\\\\n; echo 40010100) | bgpcomm decode -", origin + origin, 1,
       "standard input, line 2: longer than 200000 characters\n" + prefix +
           "3: longer than 200000 characters"},
      {"printf %0200001d | bgpcomm decode -", "", 1, "standard input, line 1: longer than 200000 characters"},
      {"bgpcomm decode - 40010100 < /", origin, 1, "standard input: Is a directory"},
      {"bgpcomm decode --format ui,none 40010100", "", 2,
       "--format ui,none: no flag \"none\", there are default, qualifier, classification, ui, "
       "asdot, weighted, or none for no flag"},
      {"bgpcomm decode --names --numeric 40010100", "", 2, "--names excludes --numeric; see bgpcomm --help"},
      // clang-format on
  });
}

TEST_F(Decode, AnswersEachLineAsItComesAndLosesNone) {
  // The second line is sent only after the answer to the first has been read.
  expectRuns({{"dir=$(mktemp -d) && mkfifo $dir/in $dir/out\n"
               "timeout 20 \"$BGPCOMM\" decode --json - < $dir/in > $dir/out &\n"
               "exec 3> $dir/in 4< $dir/out\n"
               "for type in 04 05; do\n"
               "  echo ${type}00000000000001 >&3; read -r line <&4; echo \"$line\" | cut -c1-29\n"
               "done; exec 3>&-; wait; rm -r $dir",
               "{\"content\":\"0400000000000001\"\n{\"content\":\"0500000000000001\"\n"},
              // More than the pieces in which input is read, so that lines lie across them.
              {"file=$(mktemp) && seq -f %016.0f 60000 > $file\n"
               "bgpcomm decode - < $file | grep -v '^ ' | cmp - $file; rm $file",
               ""}});
}

}  // namespace
}  // namespace bgpcomm
