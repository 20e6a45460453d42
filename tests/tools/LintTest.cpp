// Each rule of lint, with paths that break it and paths that just do not.

#include "RunTool.h"

namespace {

class LintTool : public ToolTest {
 protected:
  /// The rules that a file breaks, in the order of the output.
  static std::string rulesOf(const Bytes& records, const std::string& options) {
    const NamedFile file("RECORDS", records);
    return runTool("bgpcomm lint --json " + options + R"( $RECORDS |
        sed -n 's/^{"what":"rule","rule":"\([^"]*\).*/\1/p' | xargs)")
        .out;
  }
};

TEST_F(LintTool, KnowsWhatBreaksARule) {
  // AS_PATHs, of which the first begins with the peer's own AS.
  const std::pair<std::string, std::string> words[] = {{"out ", "40020a0202 0000fc58 0000fcbc "},
                                                       {"in ", "40020a0202 0000fcbc 0000fc58 "}};
  // Rules, options, and attributes that break these rules and no other; behind @ other prefixes.
  for (const Cells& row : rowsOf(R"(
                      | | out c00804 fbef0001 | out c00804 00010001 | in c00804 fc000001 | c00804 fc000001
                      | | 40020601010000fc58 c00804 fc000001 | 40020603010000fc58 c00804 fc000001
as-zero               | | out c00804 00000001
as-trans              | | out c00804 5ba00001
documentation-as      | | out c00804 fbf00001 | out c00804 fbff0001
private-as            | | out c00804 fc000001 | out c00804 fffe0001 | 40020602010000fc58 c00804 fc000001
private-as            | --external | in c00804 fc000001
documentation-as      | | out c0200c 0000fbff0000000100000002 | out c0200c 000100000000000100000002
documentation-as      | | out c0200c 0001000f0000000100000002
                      | | out c0200c 000200000000000100000002 | out c0200c fa56e9ff0000000100000002
private-as            | | out c0200c fa56ea000000000100000002 | out c0200c fffffffe0000000100000002
reserved-as           | | out c0200c 0000ffff0000000100000002 | out c0200c ffffffff0000000100000002
reserved-as           | | out c0200c 000100100000000100000002 | out c0200c 0001ffff0000000100000002
private-as            | | out c01008 0003fc0000000001 | out c01008 0203fa56ea000001
                      | | out c01008 0103fc0000000001 | out c01008 030b000000000001
                      | | out c01008 80060000447a0000 | in c01008 4004fc00447a0000
non-transitive        | | out c01008 4004fc00447a0000
non-transitive unknown-kind | | out c01914 400c 20010db8000000000000000000000001 0001
route-target          | | out c01008 0002006400000001 | in c01008 0102c00002010001 | in c01008 0202006400000001
route-target          | | in c01914 0002 20010db8000000000000000000000001 0001
                      | | in c01008 0002006400000001 800e20000180 0c 0000000000000000c0000201 00 70 000010 0000fde800000064 0a0102 @
no-export             | | out c00804 ffffff01 | out c00804 ffffff02 | out c00804 ffffff03
                      | | out c00804 ffffff04 | in c00804 ffffff01 | in c00804 ffff0006
blackhole-prefix      | | out c00804 ffff029a | out c00804 ffff029a @ 200a010203 1f0a010202
                      | | out c00804 ffff029a @ 200a010203
                      | --prefix 10.1.2.3 | out c00804 ffff029a @ 200a010203 1f0a010202
unassigned-well-known | | in c00804 ffff1234
unknown-kind          | | in c01008 3f00000000000001
long-list             | --longer-than 2 | in c0080c 00640001 00640002 00640003
                      | --longer-than 3 | in c0080c 00640001 00640002 00640003
                      | --longer-than 1 | in c0080c 00640001 00640001 00640001
treat-as-withdraw     | | c00803 000000 | c01010 4004fde84e000000 4004fde84d000000 | c00808 00640001
attribute-discard     | | c00804 00640001 c00804 00640001
wrong-flags           | | 800804 00640001
treat-as-withdraw wrong-flags | | 400804 00640001 c02001 00
unassigned-well-known | --rules unassigned-well-known | out c00804 ffff1234 800500
treat-as-withdraw     | --without private-as,as-zero | out c00804 fc000001 c02001 00
private-as            | --rules private-as --rules as-zero --without as-zero | out c00804 fc000001 c02001 00
)"))
    for (std::size_t i = 2; i < row.size(); ++i) {
      const auto at = row[i].find('@');
      std::string attributes = row[i].substr(0, at);
      for (const auto& [word, asPath] : words)
        if (attributes.starts_with(word)) attributes.replace(0, word.size(), asPath);
      const std::string prefixes = at == row[i].npos ? "180a0102" : row[i].substr(at + 1);
      EXPECT_EQ(rulesOf(path(attributes, prefixes), row[1]), row[0] + '\n')
          << row[1] << ' ' << row[i];
    }
}

TEST_F(LintTool, ShowsPathsPeersAndExamples) {
  const Bytes second =
      updateOf(sender(2), "40020602010000fc5a c00808 fc000001 fc000002", "180a0203");
  const NamedFile file(
      "FILE", updateOf(sender(1), "40020602010000fc59 c00804 fc000001", "180a0102") + second +
                  second + updateOf(sender(1), "c02001 00", "180a0304") +
                  updateOf(sender(1), "40020602010000fc59 c00804 00640001", "180a0405"));
  const std::string malformed =
      file.name() +
      ": 1 malformed, the first attrLength (record 4, octet 233): Large Community attribute, "
      "offset 0: "
      "1 octet, expected a value of 12 (type 32, length 1, octet 0 of the path's attributes)";
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
           "  Large Community attribute, offset 0: 1 octet, expected a value of 12 (type\n"
           "    32, length 1, octet 0 of the path's attributes) on 10.3.4.0/24 from\n"
           "    192.0.2.1 AS64601\n",
       0, malformed},
      {"bgpcomm lint --rules private-as --peers 1 --examples 1 --strict $FILE",
       "5 paths, 3 with findings\n\nprivate-as: 3 paths of 2 peers, found 5 times\n" + privateAs +
           "             2  192.0.2.2 AS64602\n             1  of 1 more peer\n" + first,
       3, malformed},
      {"bgpcomm lint --strict --rules as-zero $FILE", "5 paths, 0 with findings\n", 0, malformed},
      {"bgpcomm lint --strict $FILE / 2>&- >/dev/null", "", 1},
      {"bgpcomm lint --json $FILE 2>&- | sed -n '1p;3,5p;$p' | tr \\' ^",
       json("{'what':'total','paths':5,'pathsWithFindings':4}\n"
            "{'what':'peer','rule':'private-as','peer':'192.0.2.2','peerAs':64602,'paths':2}\n"
            "{'what':'peer','rule':'private-as','peer':'192.0.2.1','peerAs':64601,'paths':1}\n"
            "{'what':'example','rule':'private-as','time':'2023-11-14T22:13:20Z',"
            "'peer':'192.0.2.1','peerAs':64601,'prefix':'10.1.2.0/24','found':'64512:1',"
            "'octets':'fc000001'}\n"
            "{'what':'example','rule':'treat-as-withdraw','time':'2023-11-14T22:13:20Z',"
            "'peer':'192.0.2.1','peerAs':64601,'prefix':'10.3.4.0/24','found':'Large Community "
            "attribute, offset 0: 1 octet, expected a value of 12 (type 32, length 1, octet 0 of "
            "the "
            "path^s attributes)','octets':null}\n")},
      {"bgpcomm lint --color always $FILE 2>&- | grep -c '^.\\[1m[a-z-]*.\\[0m: '", "2\n"},
      {"bgpcomm lint --list-rules | grep -c '^[a-z]'", "15\n"},
      {"bgpcomm lint --list-rules | grep '.\\{81\\}'", "", 1},
  });
}

}  // namespace
