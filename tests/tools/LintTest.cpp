// Each rule of lint, with paths that break it and paths that just do not.
#include <nlohmann/json.hpp>

#include "RunTool.h"

namespace bgpcomm {
namespace {

class LintTool : public ToolTest {
 protected:
  // AS_PATHs 64600 64700 and 64700 64600, of which the first begins with the peer's own AS.
  static constexpr const char* outside = "40020a0202 0000fc58 0000fcbc ";
  static constexpr const char* inside = "40020a0202 0000fcbc 0000fc58 ";

  static Bytes path(const std::string& attributes, const char* nlri = "180a0102") {
    return messageRecord(update(octets(attributes), octets(nlri)));
  }
  /// The rules that a file breaks, in the order of the output.
  static std::string rulesOf(const Bytes& records, const std::string& options) {
    const TemporaryFile file(records);
    std::string rules;
    std::istringstream lines(runTool("bgpcomm lint --json " + options + ' ' + file.name()).out);
    for (std::string line; std::getline(lines, line);)
      if (const auto object = nlohmann::json::parse(line); object["what"] == "rule")
        rules += (rules.empty() ? "" : " ") + object["rule"].get<std::string>();
    return rules;
  }
};

TEST_F(LintTool, KnowsWhatBreaksARule) {
  struct Row {
    std::string attributes, rules, options = "";
    const char* nlri = "180a0102";
  };
  const std::string standard = std::string(outside) + "c00804 ",
                    extended = std::string(outside) + "c01008 ",
                    large = std::string(outside) + "c0200c ";
  for (const Row& row : std::initializer_list<Row>{
           // AS numbers of standard communities, at both ends of each range.
           {standard + "fbef0001", ""},
           {standard + "fbf00001", "documentation-as"},
           {standard + "fbff0001", "documentation-as"},
           {standard + "fc000001", "private-as"},
           {standard + "fffe0001", "private-as"},
           {standard + "00000001", "as-zero"},
           {standard + "00010001", ""},
           {standard + "5ba00001", "as-trans"},
           {std::string(inside) + "c00804 fc000001", ""},
           {std::string(inside) + "c00804 fc000001", "private-as", "--external"},
           {"c00804 fc000001", ""},
           {"40020602010000fc58 c00804 fc000001", "private-as"},
           {"40020601010000fc58 c00804 fc000001", ""},
           {"40020603010000fc58 c00804 fc000001", ""},
           // And of four octets.
           {large + "0000fbff 00000001 00000002", "documentation-as"},
           {large + "0000ffff 00000001 00000002", "last-as"},
           {large + "00010000 00000001 00000002", "documentation-as"},
           {large + "0001000f 00000001 00000002", "documentation-as"},
           {large + "00010010 00000001 00000002", ""},
           {large + "fa56e9ff 00000001 00000002", ""},
           {large + "fa56ea00 00000001 00000002", "private-as"},
           {large + "fffffffe 00000001 00000002", "private-as"},
           {large + "ffffffff 00000001 00000002", "last-as"},
           {extended + "0003fc0000000001", "private-as"},
           {extended + "0203fa56ea000001", "private-as"},
           {extended + "0103fc0000000001", ""},
           {extended + "030b000000000001", ""},
           // The AS of a rate only informs; link bandwidth is not transitive.
           {extended + "80060000447a0000", ""},
           {extended + "4004fc00447a0000", "non-transitive"},
           {std::string(inside) + "c01008 4004fc00447a0000", ""},
           {std::string(outside) + "c01914 400c 20010db8000000000000000000000001 0001",
            "non-transitive unknown-kind"},
           {extended + "0002006400000001", "route-target"},
           {std::string(inside) + "c01008 0102c00002010001", "route-target"},
           {std::string(inside) + "c01008 0202006400000001", "route-target"},
           {std::string(inside) + "c01914 0002 20010db8000000000000000000000001 0001",
            "route-target"},
           {std::string(inside) + "c01008 0002006400000001 " + "800e20 0001 80 0c " +
                "0000000000000000c0000201 00 70 000010 0000fde800000064 0a0102",
            "", "", ""},
           {standard + "ffffff01", "no-export"},
           {standard + "ffffff02", "no-export"},
           {standard + "ffffff03", "no-export"},
           {standard + "ffffff04", ""},
           {std::string(inside) + "c00804 ffffff01", ""},
           {standard + "ffff029a", "blackhole-prefix"},
           {standard + "ffff029a", "", "", "200a010203"},
           {standard + "ffff029a", "blackhole-prefix", "", "200a010203 1f0a010202"},
           {standard + "ffff029a", "", "--prefix 10.1.2.3", "200a010203 1f0a010202"},
           {std::string(inside) + "c00804 ffff1234", "unassigned-well-known"},
           {std::string(inside) + "c00804 ffff0006", ""},
           {std::string(inside) + "c01008 3f00000000000001", "unknown-kind"},
           // Lists and attributes.
           {std::string(inside) + "c0080c 00640001 00640002 00640003", "long-list",
            "--longer-than 2"},
           {std::string(inside) + "c0080c 00640001 00640002 00640003", "", "--longer-than 3"},
           {std::string(inside) + "c0080c 00640001 00640001 00640001", "", "--longer-than 1"},
           {"c00803 000000", "treat-as-withdraw"},
           {"c01010 4004fde84e000000 4004fde84d000000", "treat-as-withdraw"},
           {"c00808 00640001", "treat-as-withdraw"},
           {"c00804 00640001 c00804 00640001", "attribute-discard"},
           {"800804 00640001", "wrong-flags"},
           {"400804 00640001 c02001 00", "treat-as-withdraw wrong-flags"},
           // Rules are switched.
           {standard + "ffff1234 800500", "unassigned-well-known", "--rules unassigned-well-known"},
           {standard + "fc000001 c02001 00", "treat-as-withdraw", "--without private-as,as-zero"},
           {standard + "fc000001 c02001 00", "private-as",
            "--rules private-as --rules as-zero --without as-zero"},
       })
    EXPECT_EQ(rulesOf(path(row.attributes, row.nlri), row.options), row.rules)
        << row.attributes << ' ' << row.options;
}

TEST_F(LintTool, ShowsPathsPeersAndExamples) {
  const auto from = [](U8 peer, const char* attributes, const char* nlri) {
    return mrtRecord(16, 4,
                     session(octets("c00002") + number(peer, 1), 4, 64600 + peer) +
                         update(octets(attributes), octets(nlri)));
  };
  const Bytes second = from(2, "40020602010000fc5a c00808 fc000001 fc000002", "180a0203");
  const TemporaryFile file(from(1, "40020602010000fc59 c00804 fc000001", "180a0102") + second +
                           second + from(1, "c02001 00", "180a0304") +
                           from(1, "40020602010000fc59 c00804 00640001", "180a0405"));
  ::setenv("FILE", file.name().c_str(), 1);
  const std::string malformed =
      file.name() + ": 1 malformed, the first attrLength (record 4, octet 233)";
  const std::string privateAs =
      "  AS numbers for private use mean something in one network only; values with\n"
      "  them should not leave it (RFC 6996).\n";
  const std::string first = "  64512:1 on 10.1.2.0/24 from 192.0.2.1 AS64601\n";
  expectRuns({
      {"bgpcomm lint $FILE",
       "5 paths, 4 with findings\n\n"
       "private-as: 3 paths of 2 peers, found 5 times\n" +
           privateAs +
           "             2  192.0.2.2 AS64602\n"
           "             1  192.0.2.1 AS64601\n" +
           first +
           "  64512:2 on 10.2.3.0/24 from 192.0.2.2 AS64602\n\n"
           "treat-as-withdraw: 1 path of 1 peer, found 1 time\n"
           "  Malformed attributes: speakers treat the route as withdrawn (RFC 7606,\n"
           "  sections 4 and 7; RFC 8092, section 6).\n"
           "             1  192.0.2.1 AS64601\n"
           "  Large Community attribute, offset 0: 1 octet, expected a value of 12 on\n"
           "    10.3.4.0/24 from 192.0.2.1 AS64601\n",
       0, malformed},
      {"bgpcomm lint --rules private-as --peers 1 --examples 1 --strict $FILE",
       "5 paths, 3 with findings\n\nprivate-as: 3 paths of 2 peers, found 5 times\n" + privateAs +
           "             2  192.0.2.2 AS64602\n             1  of 1 more peer\n" + first,
       3, malformed},
      {"bgpcomm lint --strict --rules as-zero $FILE", "5 paths, 0 with findings\n", 0, malformed},
      {"bgpcomm lint --strict $FILE / 2>&- >/dev/null", "", 1},
      {"bgpcomm lint --json $FILE 2>&- | sed -n '2,4p;$p'",
       R"({"what":"peer","rule":"private-as","peer":"192.0.2.2","peerAs":64602,"paths":2})"
       "\n"
       R"({"what":"peer","rule":"private-as","peer":"192.0.2.1","peerAs":64601,"paths":1})"
       "\n"
       R"({"what":"example","rule":"private-as","time":"2023-11-14T22:13:20Z",)"
       R"("peer":"192.0.2.1","peerAs":64601,"prefix":"10.1.2.0/24","found":"64512:1",)"
       R"("octets":"fc000001"})"
       "\n"
       R"({"what":"example","rule":"treat-as-withdraw","time":"2023-11-14T22:13:20Z",)"
       R"("peer":"192.0.2.1","peerAs":64601,"prefix":"10.3.4.0/24",)"
       R"("found":"Large Community attribute, offset 0: 1 octet, expected a value of 12",)"
       R"("octets":null})"
       "\n"},
      {"bgpcomm lint --list-rules | grep -c '^[a-z]'", "15\n"},
      {"bgpcomm lint --list-rules | grep '.\\{81\\}'", "", 1},
      {"bgpcomm lint --rules private $FILE", "", 2,
       "--rules private: no such rule, see --list-rules"},
      {"bgpcomm lint", "", 2, "FILE is required; see bgpcomm lint --help"},
  });
}

}  // namespace
}  // namespace bgpcomm
