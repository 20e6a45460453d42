// The tool as its user runs it.
#include <filesystem>
#include <nlohmann/json.hpp>

#include "RunTool.h"

namespace bgpcomm {
namespace {

/// Three paths: {65000:100, no-export} in two orders and with a repeat, {65000:200}.
Bytes sampleFile() {
  const auto path = [](const char* attributes, const char* nlri) {
    return messageRecord(update(octets("40010100") + octets(attributes), octets(nlri)));
  };
  return path("c00808 fde80064ffffff01", "180a0102") +
         path("c0080c ffffff01fde80064fde80064", "180a0102") + path("c00804 fde800c8", "");
}

class Tool : public ToolTest {
 protected:
  Tool() {
    ::setenv("FILE", file_.name().c_str(), 1);
    ::setenv("BROKEN", broken_.name().c_str(), 1);
    ::setenv("MALFORMED", malformed_.name().c_str(), 1);
  }

  TemporaryFile file_{sampleFile()};
  TemporaryFile broken_{sampleFile() + octets("6553f100 0010")};
  /// A good path of 62 octets, a standard attribute of 5 octets, a large one of 1, no record.
  TemporaryFile malformed_{messageRecord(update(octets("c00804fde800c8"), "")) +
                           messageRecord(update(octets("c00805fde800c800"), "")) +
                           messageRecord(update(octets("c0200100"), "")) + mrtRecord(16, 4, "")};
};

TEST_F(Tool, AnswersAndFailsInOneLine) {
  const std::string start = "2023-11-14T22:13:20Z\t192.0.2.1 AS64600\t";
  const std::string first = start + "10.1.2.0/24\t65000:100 no-export\n";
  const std::string third = start + "-\t65000:200\n";
  expectRuns({
      {"bgpcomm paths $FILE", first + first + third},
      {"bgpcomm paths --community 65000:200 $FILE", third},
      {"bgpcomm paths --community no-export --community 65000:100 $FILE", first + first},
      {"bgpcomm paths --community no-export --community 65000:200 $FILE", ""},
      {"bgpcomm paths --numeric $FILE | head -1 | cut -f4", "65000:100 65535:65281\n"},
      {"bgpcomm paths --json $FILE | tail -1",
       R"({"time":"2023-11-14T22:13:20Z","peer":"192.0.2.1","peerAs":64600,"prefixes":[],)"
       R"("standard":["65000:200"],"extended":[],"ipv6Extended":[],"large":[]})"
       "\n"},
      {"bgpcomm decode --numeric c0 08 04 ff ff ff 01", "Community (8), flags 0xc0: 65535:65281\n"},
      {"bgpcomm decode c0630101", "Unknown attribute (99), flags 0xc0: 01\n"},
      {"bgpcomm decode --json c00804ffffff01",
       R"({"type":8,"name":"Community","flags":192,"value":"ffffff01","standard":["no-export"]})"
       "\n"},
      {"bgpcomm describe BgpPathAttrFlag | head -2", "Routing::Bgp::BgpPathAttrFlag\n  128 opt\n"},
      {"bgpcomm paths $FILE | head -0", ""},
      {"cd $(mktemp -d) && cp $FILE '[a,b]' && bgpcomm verify '[a,b]' && rm -r \"$PWD\"",
       "./[a,b]: 3 lists compared, 0 differ, 0 malformed\n"},

      {"bgpcomm paths - <$BROKEN", first + first + third, 1,
       "-: ends inside a record, 6 of 12 octets (record 4, octet 218)"},
      {"bgpcomm paths - <$MALFORMED", third + start + "-\tmalformed\n" + start + "-\tmalformed\n",
       0, "-: 3 malformed, the first attrLength (record 2, octet 62)"},
      {"bgpcomm paths --json $MALFORMED 2>&- | cut -d, -f5- | tail -1",
       "\"standard\":[],\"extended\":[],\"ipv6Extended\":[],\"large\":[],\"malformed\":["
       "\"attrLength\"]}\n"},
      {"bgpcomm summary - <&- | grep -A1 malformed | cut -c-9", "  malform\n  seconds\n", 0,
       "-: Bad file descriptor (record 1, octet 0)"},
      {"bgpcomm paths \"$(printf 'a\\033b\\nc')\"", "", 1,
       "a\\x1bb\\x0ac: No such file or directory"},
      {"bgpcomm paths --help | grep -c 'VALUE [.]'", "0\n", 1},
      {"bgpcomm verify /", "", 1, "/: Is a directory"},
      {"bgpcomm paths $FILE >/dev/full", "", 1, "standard output: No space left on device"},
      {"bgpcomm", "", 2, "A subcommand is required; see bgpcomm --help"},
      {"bgpcomm bogus", "", 2, "bogus is unknown; see bgpcomm --help"},
      {"bgpcomm summary", "", 2, "FILE is required; see bgpcomm --help"},
      {"bgpcomm paths --community 65000:65536 $FILE", "", 2,
       "--community 65000:65536: neither two numbers up to 65535 with a colon between nor a known "
       "name"},
      {"bgpcomm describe NoSuchType", "", 2,
       "NoSuchType: no such type, bgpcomm describe lists them"},
  });
}

// One prefix of one peer: announced with a route target, with another, withdrawn; and a list with
// two link bandwidths.
TEST_F(Tool, KnowsAllFourKinds) {
  const auto message = [](const char* attributes, const char* nlri, const char* withdrawn = "") {
    return messageRecord(update(octets(attributes), octets(nlri), octets(withdrawn)));
  };
  const TemporaryFile file(message("c00804fde80064 c01010 030b000000000007 0002fde800000064 c02018"
                                   "0000fde80000000100000002 0000fde80000000100000001"
                                   "c01914 0002 20010db8000000000000000000000001 0064",
                                   "180a0102") +
                           message("c01008 02020000fde80064", "180a0102") +
                           message("", "", "180a0102") +
                           message("c01010 4004fde84e000000 4004fde84d000000", "180a0103"));
  const TemporaryFile store;
  ::setenv("KINDS", file.name().c_str(), 1);
  ::setenv("STORE", store.name().c_str(), 1);
  const std::string time = "2023-11-14T22:13:20Z\t", start = time + "192.0.2.1 AS64600\t";
  const std::string all = start +
                          "10.1.2.0/24\t65000:100 RT:65000:100 Color:CO(00):7 "
                          "0002-IP6:2001:db8::1:100 65000:1:1 65000:1:2\n";
  const std::string second = start + "10.1.2.0/24\tRT:65000:100\n";
  const std::string refused = file.name() + ": 1 malformed, the first linkBandwidth (record 4, ";
  expectRuns({
      {"bgpcomm paths --rt 65000:100 $KINDS 2>&-", all + second},
      {"bgpcomm paths --ext 0x0002FDE800000064 $KINDS 2>&-", all},
      {"bgpcomm paths --ext 000220010db80000000000000000000000010064 $KINDS 2>&-", all},
      {"bgpcomm paths --large 65000:1:2 --community 65000:100 $KINDS 2>&-", all},
      {"bgpcomm paths --rt 192.0.2.1:100 --rt 4200000000:65535 $KINDS 2>&-", ""},
      {"bgpcomm paths --json $KINDS 2>&- | tail -1 | cut -d, -f5-",
       R"("standard":[],"extended":[],"ipv6Extended":[],"large":[],"malformed":["linkBandwidth"]})"
       "\n"},
      {"bgpcomm verify $KINDS 2>&-", file.name() + ": 5 lists compared, 0 differ, 1 malformed\n"},
      {"bgpcomm watch-rt $KINDS 2>&-", time + "+\tRT:65000:100\n" + time + "+\tRT:65000:100\n" +
                                           time + "-\tRT:65000:100\n" + time + "-\tRT:65000:100\n"},
      {"bgpcomm summary $KINDS $FILE >$STORE.a; bgpcomm save $KINDS $FILE --to $STORE\n"
       "bgpcomm restore $STORE | diff - $STORE.a | grep '^[<>]' | grep -v 'octets, "
       "sh\\|saved\\|seconds'\n"
       "rm $STORE.a",
       ""},
      {"bgpcomm summary --json $KINDS | tr -d ' \\n' | grep -o 'distinctR[^}]*' | head -1",
       R"(distinctRouteTargetSets":2,"types":{"00/02":1,"02/02":1,"03/0b":1)"
       "\n"},
      {"bgpcomm decode c01010 4004fde84e000000 4004fde84d000000 | wc -l", "0\n", 0,
       "argument 1 (c01010): neither a community, 16 or 40 digits in a piece, nor an attribute: "
       "its "
       "length is 16, but 0 octets follow"},
      {"printf x >$STORE; bgpcomm restore $STORE", "", 1,
       store.name() + ": is too short for a store"},
      {": >$STORE; bgpcomm save /nowhere --to $STORE; wc -c <$STORE", "0\n", 0,
       "/nowhere: No such file or directory"},
      {"bgpcomm paths --rt 65536:65536 $KINDS", "", 2,
       "--rt 65536:65536: neither AS:NUMBER nor ADDRESS:NUMBER within their bounds"},
  });
  EXPECT_EQ(runTool("bgpcomm paths $KINDS").err.substr(9, refused.size()), refused);
}

TEST_F(Tool, CountsFilesAndTheirTotal) {
  using namespace nlohmann::literals;
  const ToolRun run = runTool("bgpcomm summary --json $FILE $BROKEN");
  EXPECT_EQ(run.exitCode, 1);
  auto figures = nlohmann::json::parse(run.out);
  EXPECT_EQ(figures["files"][1]["file"], broken_.name());
  for (auto* one : {&figures["files"][0], &figures["files"][1], &figures["total"]}) {
    EXPECT_TRUE((*one)["seconds"].is_number());
    for (const char* const none : {"extended", "ipv6Extended", "large"})
      EXPECT_EQ((*one)[none]["attributes"], 0) << none;
    for (const char* const key : {"file", "seconds", "extended", "ipv6Extended", "large"})
      one->erase(key);
  }
  EXPECT_EQ(figures, R"({
    "files": [{"records": 3, "paths": 3, "malformed": 0, "malformedBy": {}, "standard":
               {"attributes": 3, "communities": 6, "distinctValues": 3, "distinctLists": 2}},
              {"records": 3, "paths": 3, "malformed": 1, "malformedBy": {"truncatedRecord": 1},
               "standard":
               {"attributes": 3, "communities": 6, "distinctValues": 3, "distinctLists": 2}}],
    "total": {"records": 6, "paths": 6, "malformed": 1, "malformedBy": {"truncatedRecord": 1},
              "standard":
              {"attributes": 6, "communities": 12, "distinctValues": 3, "distinctLists": 2}}
  })"_json);
}

TEST_F(Tool, ShowsFiguresAndHelpToPeopleIn80Columns) {
  expectRuns({{"bgpcomm summary $BROKEN 2>&- | grep '.\\{81\\}\\|paths  \\|trunc\\|first\\|per "
               "list\\|^  *[0-9]  [^ ]'",
               "  paths                          3\n"
               "    truncatedRecord              1\n"
               "    first (record 4, octet 218)\n"
               "  paths per list               1.5           0.0           0.0           0.0\n"
               "                   2  65000:100\n"
               "                   2  no-export\n"
               "                   1  65000:200\n"},
              {"for command in '' summary paths verify decode describe save restore watch-rt; do\n"
               "  bgpcomm $command --help | grep '.\\{81\\}\\|Example: bgpcomm ' | cut -d: -f1\n"
               "done | uniq -c | tr -d ' '",
               "9Example\n"}});
}

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
      {"printf '\\n 0x000220010DB80000000000000000000000010064\\r\\n' | bgpcomm decode -", target},
      // As many octets as a community each; only blanks make an attribute of them.
      {"bgpcomm decode --names d008000400000000 'D0 08:0004 00000000' | sed -n '2p;6p'",
       "  class           ExtComm\n" + attribute},
      {"bgpcomm decode d0 08 00 04 00 00 00 00", attribute},
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

TEST_F(Decode, RefusesInOneLine) {
  const std::string neither = "neither a community, 16 or 40 digits in a piece, nor an attribute: ";
  expectRuns({
      {"bgpcomm decode 0002fde80000006", "", 2,
       "argument 1 (0002fde80000006): half an octet at character 15"},
      {"bgpcomm decode 40010100 g002fde800000064", "Origin (1), flags 0x40: 00\n", 2,
       "argument 2 (g002fde800000064): no hexadecimal digit at character 1"},
      {"bgpcomm decode 000220010db8000000000000000000000001006400", "", 2,
       "argument 1 (000220010db8000000000000...): " + neither +
           "its length is 32, but 18 octets follow"},
      {"bgpcomm decode 0x", "", 2,
       "argument 1 (0x): " + neither + "too short for flags, type and length"},
      {"printf '40010100\\n\\nz\\033z\\n' | bgpcomm decode -", "Origin (1), flags 0x40: 00\n", 2,
       "standard input, line 3 (z\\x1bz): no hexadecimal digit at character 1"},
      {"head -c 1000000 /dev/zero | bgpcomm decode -", "", 2,
       "standard input, line 1: longer than 200000 characters"},
      {"bgpcomm decode - < /", "", 1, "standard input: Is a directory"},
      {"bgpcomm decode --format ui,none 40010100", "", 2,
       "--format ui,none: no flag \"none\", there are default, qualifier, classification, ui, "
       "asdot, "
       "weighted, or none for no flag"},
      {"bgpcomm decode --names --numeric 40010100", "", 2,
       "--names excludes --numeric; see bgpcomm --help"},
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

// Other people's dumps, against figures that another program computed.
using RealData = ToolTest;

TEST_F(RealData, FiguresAreAsExpectedAndListsGoBackToTheWireAsTheyCame) {
  const char* const named = std::getenv("BGPCOMM_DATA");
  const std::filesystem::path folder = named ? named : "../shared/data";
  if (!exists(folder / "expected.json"))
    GTEST_SKIP() << "no expected.json in $BGPCOMM_DATA, nor in ../shared/data";
  const auto all = nlohmann::json::parse(std::ifstream(folder / "expected.json"));
  ASSERT_FALSE(all.empty());
  const TemporaryFile store;
  for (const auto& [name, expected] : all.items()) {
    SCOPED_TRACE(name);
    const std::string file = (folder / name).string();
    const ToolRun run = runTool("bgpcomm summary --json " + file);
    auto summary = nlohmann::json::parse(run.out, nullptr, false);
    ASSERT_TRUE(summary.contains("files")) << run.err;
    const nlohmann::json& figures = summary["files"][0];
    for (const char* const key : {"records", "paths", "malformed", "malformedBy"})
      EXPECT_EQ(figures[key], expected[key]) << key;
    U64 lists = 0;
    for (const char* const kind : {"standard", "extended", "ipv6Extended", "large"}) {
      EXPECT_EQ(figures[kind], expected[kind]) << kind;
      lists += expected[kind]["attributes"].get<U64>();
    }
    const nlohmann::json& faults = expected["malformedBy"];
    EXPECT_EQ(run.exitCode, faults.contains("truncatedRecord") || faults.contains("compression"));

    EXPECT_EQ(runTool("bgpcomm verify " + file + " | sed 's/.*: //; s/,\\([0-9]\\)/\\1/g'").out,
              std::to_string(lists) + " lists compared, 0 differ, " + expected["malformed"].dump() +
                  " malformed\n");
    // Another process interns from the store what this one has interned from the file.
    runTool("bgpcomm save " + file + " --to " + store.name());
    auto restored = nlohmann::json::parse(runTool("bgpcomm restore --json " + store.name()).out,
                                          nullptr, false);
    ASSERT_TRUE(restored.contains("files"));
    for (auto* both : {&restored, &summary})
      (*both)["files"][0]["seconds"] = (*both)["total"]["seconds"] = 0;
    EXPECT_EQ(restored, summary);
  }
}

}  // namespace
}  // namespace bgpcomm
