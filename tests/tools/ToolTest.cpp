// The tool as its user runs it.

#include "RunTool.h"

namespace {

class Tool : public ToolTest {
 protected:
  /// Three paths: {65000:100, no-export} in two orders and with a repeat, {65000:200}.
  const Bytes paths_ = path("c00808 fde80064ffffff01", "180a0102") +
                       path("c0080c ffffff01fde80064fde80064", "180a0102") +
                       path("40010100 c00804 fde800c8");
  const NamedFile file_{"FILE", paths_}, broken_{"BROKEN", paths_ + octets("6553f100 0010")};
  const NamedFile store_{"STORE"};
  /// A good path of 62 octets, a standard attribute of 5 octets, a large one of 1, no record.
  const NamedFile malformed_{"MALFORMED", path("c00804fde800c8") + path("c00805fde800c800") +
                                              path("c0200100") + mrtRecord(16, 4, "")};
  /// One prefix of one peer: announced with lists of all types, with another route target,
  /// withdrawn; and a list with two link bandwidths.
  const NamedFile kinds_{
      "KINDS", path("c00804fde80064 c01010 030b000000000007 0002fde800000064 c02018"
                    "0000fde80000000100000002 0000fde80000000100000001"
                    "c01914 0002 20010db8000000000000000000000001 0064",
                    "180a0102") +
                   path("c01008 02020000fde80064", "180a0102") + path("", "", "180a0102") +
                   path("c01010 4004fde84e000000 4004fde84d000000", "180a0103")};
  /// A route target whose AS number is written in two ways, a color with and without reserved bits.
  const NamedFile alike_{"ALIKE", path("c01010 0002006400000001 030b000000000007") +
                                      path("c01010 0202000000640001 030b000100000007") +
                                      path("c01010 0002006400000001 0002006500000001")};
  const std::string start_ = "2023-11-14T22:13:20Z\t192.0.2.1 AS64600\t";
};

TEST_F(Tool, RefusesWhatIsAskedWrong) {
  expectRefused(R"(
| A subcommand is required; see bgpcomm --help
bogus | bogus is unknown; see bgpcomm --help
help smumary | smumary is unknown; did you mean summary?
--json summary $FILE | --json stands behind the command: bgpcomm summary --json; see bgpcomm summary --help
--jsno summary $FILE | --jsno is unknown; did you mean --json? see bgpcomm summary --help
pahts $FILE | pahts is unknown; did you mean paths? see bgpcomm --help
summary | FILE is required; see bgpcomm summary --help
summary --color sometimes $FILE | --color sometimes: there are auto, always, never
summary --color nevre $FILE | --color nevre: there are auto, always, never; did you mean never?
lint | FILE is required; see bgpcomm lint --help
decode --core --format ui,none 40010100 | --format ui,none: no flag "none", there are default, qualifier, classification, ui, asdot, weighted, or none for no flag
decode --core --names --numeric 40010100 | --names excludes --numeric; see bgpcomm decode --help
decode --format= ui 40010100 | --format: its value is empty; see bgpcomm --help
decode --json= 40010100 | --json: its value is empty; see bgpcomm --help
describe NoSuchType | NoSuchType: no such type, bgpcomm describe lists them
describe ComList | ComList: no such type, bgpcomm describe lists them; did you mean CommList?
diff - - <$FILE | one of the dumps can be -, not both
encode --core 1:2 | encode: texts cannot be read with --core
lint --rules private $FILE | --rules private: no such rule, see --list-rules
lint --without routetarget $FILE | --without routetarget: no such rule, see --list-rules; did you mean route-target?
paths --community 65000:65536 $FILE | --community 65000:65536: at 6: "65536": expected a decimal number below 65536
paths --community=65000:= $FILE | --community 65000:=: at 6: "=": expected a decimal number below 65536
paths --community= no-export $FILE | --community: its value is empty; see bgpcomm --help
paths --count --group-by peer $FILE | --count and --group-by exclude each other
paths --limit -1 $FILE | --limit: "-1": expected a decimal number below 2^64; see bgpcomm paths --help
paths --limit 18446744073709551616 $FILE | --limit: "18446744073709551616": expected a decimal number below 2^64; see bgpcomm paths --help
paths --limt=3 $FILE | --limt is unknown; did you mean --limit? see bgpcomm paths --help
paths --more-specific $FILE | --more-specific and --less-specific belong to --prefix
paths --origin-as 4294967296 $FILE | --origin-as 4294967296: expected an AS number
paths --peer 192.0.2 $FILE | --peer 192.0.2: expected an address or an AS number
paths --prefix 10.0.0.0/33 $FILE | --prefix 10.0.0.0/33: expected a prefix length up to 32
paths --prefix 10.1.0.0/8 $FILE | --prefix 10.1.0.0/8: bits are set behind the prefix length
paths --prefix ten $FILE | --prefix ten: expected a prefix, as 192.0.2.0/24 or 2001:db8::/32
paths --rt 65536:65536 $KINDS | --rt 65536:65536: at 6: "65536": expected a decimal number below 65536 behind an AS number of four octets
paths --rt color:0:7 $KINDS | --rt color:0:7: it is no route target
paths --since 2023-02-29 $FILE | --since 2023-02-29: expected a time, as 2026-07-30T14:00:00Z, or seconds since 1970
paths --since 20231114 $FILE | --since 20231114: expected a time, as 2026-07-30T14:00:00Z, or seconds since 1970
paths --prefix | --prefix: its value is missing; see bgpcomm paths --help
paths --limit 2 --limit 3 $FILE | --limit: given more than once; see bgpcomm paths --help
paths --text canonical $KINDS --core | --core has no canonical texts
paths --text long $KINDS | --text long: there are canonical, policy, show
paths --where no-exprot $FILE | --where: at 0: "no-exprot": expected a community: the identifier of a kind, a well-known name, or two or three decimal numbers; did you mean "NO_EXPORT"?
save $FILE --to '' | --to: its value is empty; see bgpcomm save --help
spread 10.0.0.0/33 $FILE | PREFIX 10.0.0.0/33: expected a prefix length up to 32
top --by pear $FILE | --by pear: there are value, kind, list, route-target, peer, prefix, origin; did you mean peer?
values --kind 65000: $FILE | --kind: at 6: "": expected a decimal number below 65536
values --sort size $FILE | --sort size: there are paths, peers, prefixes, value
)");
}

TEST_F(Tool, AnswersAndFailsInOneLine) {
  const std::string first = start_ + "10.1.2.0/24\t65000:100 NO_EXPORT\n";
  const std::string third = start_ + "-\t65000:200\n", malformed = start_ + "-\tmalformed: ";
  const std::string one =
      "Community attribute, offset 4: 1 octet, expected a value of 4 (type 8, length 5, octet 0 of "
      "the path's attributes)";
  const std::string other =
      "Large Community attribute, offset 0: 1 octet, expected a value of 12 (type 32, length 1, "
      "octet 0 of the path's attributes)";
  expectRuns({
      // clang-format off
      {"bgpcomm paths $FILE", first + first + third},
      {"bgpcomm paths --community no-export $FILE", first + first},
      {"bgpcomm paths --community no-export --community 65000:200 $FILE", ""},
      {"bgpcomm paths --numeric $FILE | head -1 | cut -f4", "65000:100 65535:65281\n"},
      {"bgpcomm decode --numeric c0 08 04 ff ff ff 01", "Community (8), flags 0xc0: 65535:65281\n"},
      {"bgpcomm decode c0 63 01 01", "Unknown attribute (99), flags 0xc0: 01\n"},
      {"bgpcomm decode --json c00804ffffff01",
       R"({"type":8,"name":"Community","flags":192,"value":"ffffff01",)"
       R"("standard":["NO_EXPORT"],"standardOctets":["ffffff01"],"identifier":["NO_EXPORT"],)"
       R"("canonical":["NO_EXPORT"],"fields":[{"value":"ff:ff:ff:01"}]})" "\n"},
      {"bgpcomm describe BgpPathAttrFlag | head -2", "Routing::Bgp::BgpPathAttrFlag\n  128 opt\n"},
      {"cd $(mktemp -d) && cp $FILE '[a,b]' && bgpcomm verify '[a,b]' && rm -r \"$PWD\"",
       "./[a,b]: 3 lists compared, 0 differ, 0 malformed\n"},

      {"bgpcomm paths - <$BROKEN", first + first + third, 1,
       "standard input: ends inside a record, 6 of 12 octets (record 4, octet 210)"},
      {"bgpcomm verify - <README.md | cut -c1-23", "standard input: 0 lists\n", 0,
       "standard input: not an MRT file: its first record would be of type 16999; a text file? (record 1, octet 0)"},
      {"printf hello | bgpcomm paths -", "", 1,
       "standard input: not an MRT file, or cut short: 5 of 12 octets of a header (record 1, octet 0)"},
      {"head -c 4000 /proc/self/exe | bgpcomm paths -", "", 1,
       "standard input: not an MRT file: its first record would be of type 513; ends inside another (record 2, octet 12)"},
      {"(printf '\\241\\262\\303\\324\\0\\2\\0\\4'; head -c 32 /dev/zero) | bgpcomm paths -", "", 1,
       "standard input: not an MRT file: its first record would be of type 2; ends inside another (record 4, octet 36)"},
      {"head -c 24 /dev/zero | bgpcomm paths -", "", 0, "standard input: no paths in 2 records: deprecated types 2; not an MRT file?"},
      {"bgpcomm paths /dev/null", "", 0, "/dev/null: no records"},
      {"for start in 'Gr\\303\\266\\303\\237e ist was' 'Elf Zeichen\\303' '\\377\\376h\\0a\\0l\\0l\\0o\\0' 'a\\tb\\nc\\rd e f g' \\\n"
       "  'abcdefghijk\\0' 'abcdefgh\\377ijk' 'abcdefgh\\303ijk' 'abcdefg\\266ijkl' 'abcdefgh\\177ijk'\n"
       "do printf \"$start\" | bgpcomm paths - 2>&1 | grep -c 'a text file?'; done | tr -d '\\n'", "111100000"},
      {"bgpcomm paths - <$MALFORMED", third + malformed + one + '\n' + malformed + other + '\n', 0,
       "standard input: 3 malformed, the first attrLength (record 2, octet 62): " + one},
      {"bgpcomm paths --json $MALFORMED 2>&- | cut -d, -f5-8,13- | tail -1",
       R"("standard":[],"extended":[],"ipv6Extended":[],"large":[],"malformed":["attrLength"],"malformedReasons":[")" + other + R"("],"announced":[],"asPath":"","originAs":null,"nextHop":"-","record":3})" "\n"},
      {"bgpcomm paths \"$(printf 'a\\033b\\nc')\"", "", 1, "a\\x1bb\\x0ac: No such file or directory"},
      {"bgpcomm paths --help | grep -c 'VALUE [.]'", "0\n", 1},
      {"bgpcomm verify /", "", 1, "/: Is a directory"},
      {"[ \"$(bgpcomm -V)\" = \"$(bgpcomm --version)\" ]", ""},
      {"bgpcomm --color always summary $FILE | head -1 | tr '\\033' E", "E[1m" + file_.name() + "E[0m\n"},
      {"bgpcomm paths $FILE >/dev/full", "", 1, "standard output: No space left on device"},
      {"printf x >$STORE; bgpcomm restore $STORE", "", 1, store_.name() + ": is too short for a store"},
      {": >$STORE; bgpcomm save /nowhere --to $STORE; wc -c <$STORE", "0\n", 0,
       "/nowhere: No such file or directory"},
      // clang-format on
  });
}

TEST_F(Tool, SaysWhatItPassesOver) {
  const auto message = [](const char* type) {
    return messageRecord(Bytes(16, '\xff') + octets("0013") + octets(type));
  };
  const Bytes state = mrtRecord(16, 5, session() + octets("0005 0006"));
  const Bytes others = mrtRecord(11, 1, "x") + mrtRecord(32, 0, "") + mrtRecord(5, 1, "") +
                       mrtRecord(99, 0, "") + mrtRecord(13, 7, "") + mrtRecord(16, 2, session()) +
                       mrtRecord(13, 99, "") + message("01") + message("03") + message("05") +
                       message("06") + message("04") + message("04") + state + state + state;
  const NamedFile none("NONE", others + path("", "", "180a0102") + mrtRecord(16, 4, ""));
  const NamedFile states("STATES", mrtRecord(11, 1, "x") + state);
  const NamedFile some("SOME", others + path("800804 fde80064 c02001 00"));
  const NamedFile usual("USUAL", message("04") + path("c00804 fde80064"));
  const std::string bad =
      none.name() +
      ": 1 malformed, the first badRecord (record 18, octet 578): fields that do not "
      "fit (type 16, subtype 4, length 0)\nbgpcomm: " +
      none.name();
  const std::string words =
      "OSPF 1, IS-IS 1, deprecated types 1, other types 1, GEO_PEER_TABLE 1, deprecated subtypes "
      "1, "
      "other subtypes 1, state changes 3, OPEN 1, NOTIFICATION 1, KEEPALIVE 2, ROUTE-REFRESH 1, "
      "other messages 1, no attributes 1";
  const std::string hint = bad + ": no paths in 18 records: " + words;
  expectRuns({
      // clang-format off
      {"bgpcomm paths $NONE", "", 0, hint},
      {"bgpcomm watch-rt $STATES", "", 0, states.name() + ": no paths in 2 records: OSPF 1, state changes 1"},
      {"bgpcomm paths $USUAL | cut -f4; bgpcomm summary $USUAL | grep -A1 skipped", "65000:100\n"
       "  skipped                        1\n    KEEPALIVE                    1\n"},
      {"bgpcomm summary $SOME | sed -n '/malformed/,/seconds/p' | head -n -1",
       "  malformed                      1\n    attrLength                   1\n"
       "    first (record 17, octet 519): Large Community attribute, offset 0: 1 octet,\n"
       "    expected a value of 12 (type 32, length 1, octet 7 of the path's attributes)\n"
       "  wrong flags                    1\n  skipped                       16\n    OSPF                         1\n"
       "    IS-IS                        1\n    deprecated types             1\n    other types                  1\n"
       "    GEO_PEER_TABLE               1\n    deprecated subtypes          1\n    other subtypes               1\n"
       "    state changes                3\n    OPEN                         1\n    NOTIFICATION                 1\n"
       "    KEEPALIVE                    2\n    ROUTE-REFRESH                1\n    other messages               1\n"},
      {"bgpcomm summary --json --total $SOME $USUAL | grep -o '\"\\(wrong.*\\|skipped\\|keep.*\\)\": [0-9]*' | tr -d '\"'",
       "wrongFlags: 1\nskipped: 17\nkeepalive: 3\n"},
      {"bgpcomm summary --json $SOME | sed -n '/malformed\"/,/otherMessage/p;/otherMessage/q' | tr -d ' \n'",
       R"("malformed":1,"malformedBy":{"attrLength":1},"firstMalformed":"record17,octet519:LargeCommunityattribute,)"
       R"-(offset0:1octet,expectedavalueof12(type32,length1,octet7ofthepath'sattributes)","wrongFlags":1,"skipped":16,)-"
       R"("skippedBy":{"ospf":1,"isis":1,"deprecatedType":1,"otherType":1,"geoPeerTable":1,"deprecatedSubtype":1,"otherSubtype":1,)"
       R"("stateChange":3,"open":1,"notification":1,"keepalive":2,"routeRefresh":1,"otherMessage":1)"},
      // clang-format on
  });
}

TEST_F(Tool, KnowsAllFourListTypes) {
  const std::string all = start_ +
                          "10.1.2.0/24\t65000:100 route-target-as2:65000:100 color:0:7 "
                          "route-target-ipv6:[2001:db8::1]:100 65000:1:1 65000:1:2\n";
  const std::string two = "\troute-target-as2:65000:100\n", four = "\troute-target-as4:65000:100\n";
  expectRuns({
      // clang-format off
      {"bgpcomm paths --rt 65000:100 $KINDS 2>&-", all + start_ + "10.1.2.0/24\troute-target-as4:65000:100\n"},
      {"bgpcomm paths --ext 0x0002FDE800000064 $KINDS 2>&-", all},
      {"bgpcomm paths --ext 000220010db80000000000000000000000010064 $KINDS 2>&-", all},
      {"bgpcomm paths --large 65000:1:2 --community 65000:100 $KINDS 2>&-", all},
      {"bgpcomm paths --rt RT:65000:100 $KINDS 2>&- | wc -l; "
       "bgpcomm paths --rt Route-Target-AS2:65000:100 --community Color:CO'(00)':7 $KINDS 2>&- | wc -l;"
       "for rt in route-target-ipv6:[2001:db8::1]:100 2001:db8::1:100 fe80::1:100 ::1:100 1.10:5; do"
       " bgpcomm paths --rt $rt $KINDS 2>&- | wc -l; done", "2\n1\n1\n1\n0\n0\n0\n"},
      {"bgpcomm paths --rt 192.0.2.1:100 --rt 4200000000:65535 $KINDS 2>&-", ""},
      {"bgpcomm paths --json $KINDS 2>&- | head -1",
       R"({"time":"2023-11-14T22:13:20Z","peer":"192.0.2.1","peerAs":64600,)"
       R"("prefixes":[{"prefix":"10.1.2.0/24"}],)"
       R"("standard":["65000:100"],"extended":["route-target-as2:65000:100","color:0:7"],)"
       R"("ipv6Extended":["route-target-ipv6:[2001:db8::1]:100"],"large":["65000:1:1","65000:1:2"],)"
       R"("standardOctets":["fde80064"],"extendedOctets":["0002fde800000064","030b000000000007"],)"
       R"("ipv6ExtendedOctets":["000220010db80000000000000000000000010064"],)"
       R"("largeOctets":["0000fde80000000100000001","0000fde80000000100000002"],)"
       R"("announced":["10.1.2.0/24"],"asPath":"","originAs":null,"nextHop":"-","record":1})" "\n"},
      {"bgpcomm paths --json $KINDS 2>&- | tail -1 | cut -d, -f13", "\"malformed\":[\"linkBandwidth\"]\n"},
      {"bgpcomm paths $KINDS 2>&1 >/dev/null | cut -d' ' -f3-7", "1 malformed, the first linkBandwidth\n"},
      {"bgpcomm verify $KINDS 2>&-", kinds_.name() + ": 5 lists compared, 0 differ, 1 malformed\n"},
      {"bgpcomm watch-rt $KINDS 2>&- | sed 's/^2023-11-14T22:13:20Z\t//'", '+' + two + '+' + four + '-' + two + '-' + four},
      {"bgpcomm summary $KINDS $FILE >$STORE.a; bgpcomm save $KINDS $FILE --to $STORE\n"
       "bgpcomm restore $STORE | diff - $STORE.a | grep '^[<>]' | grep -v 'octets, sh\\|saved\\|seconds'\n"
       "rm $STORE.a", "", 0, kinds_.name() + ": 1 malformed, the first linkBandwidth (record 4, octet 264): "
       "Extended Community attribute, offset 8: a second link bandwidth, expected at most one (type 16, length 16, "
       "octet 0 of the path's attributes)"},
      {"bgpcomm summary --json $KINDS | tr -d ' \\n' | grep -o 'distinctR[^}]*' | head -1",
       R"(distinctRouteTargetSets":2,"types":{"00/02":1,"02/02":1,"03/0b":1)" "\n"},
      {"bgpcomm paths --text policy $KINDS 2>&- | head -1 | cut -f4",
       "65000:100 RT:65000:100 Color:CO(00):7 0002-IP6:2001:db8::1:100 65000:1:1 65000:1:2\n"},
      {"bgpcomm --core paths $KINDS 2>&- | cut -f4 | sed -n 2p", "RT:65000:100\n"},
      {"bgpcomm paths --text show $KINDS 2>&- | cut -f4 | sed -n 2p",
       "<RouteTarget4ByteASN 65000:100 0x02020000fde80064>\n"},
      {"bgpcomm watch-rt --text policy $KINDS 2>&- | cut -f3 | sort -u", "RT:65000:100\n"},
      {"bgpcomm summary $KINDS 2>&- | grep 03/0b", "                   1  03/0b  color\n"},
      {"bgpcomm summary --text policy $ALIKE | grep ' RT:\\| Color:' | tr -s ' '",
       " 2 RT:100:1 0x0002006400000001\n 1 RT:101:1\n 1 RT:100:1 0x0202000000640001\n"
       " 1 Color:CO(00):7 0x030b000000000007\n 1 Color:CO(00):7 0x030b000100000007\n"},
      // clang-format on
  });
}

TEST_F(Tool, CountsFilesAndTheirTotal) {
  // Counts behind # are those of one file.
  const auto figures = [](const std::string& file, int files, const std::string& malformed) {
    const std::string none = "{'attributes':0,'communities':0,'distinctValues':0,'distinctLists':0";
    std::string text =
        "{'file':'" + file + "','records':#3,'paths':#3,'malformed':" + malformed +
        ",'standard':{'attributes':#3,'communities':#6,'distinctValues':3,'distinctLists':2},"
        "'extended':" +
        none + ",'distinctRouteTargetSets':0,'types':{}},'ipv6Extended':" + none +
        "},'large':" + none +
        "},'octets':{'standard':{'unshared':1},'extended':{'unshared':0},"
        "'ipv6Extended':{'unshared':0},'large':{'unshared':0}},'mostUsed':{'standard':["
        "{'value':'65000:100','octets':'fde80064','kind':'standard','paths':#2},"
        "{'value':'NO_EXPORT','octets':'ffffff01','kind':'NO_EXPORT','paths':#2},"
        "{'value':'65000:200','octets':'fde800c8','kind':'standard','paths':#1}],"
        "'extended':[],'ipv6Extended':[],'large':[]},'seconds':0}";
    for (std::size_t at = 0; (at = text.find('#')) != text.npos;)
      text.replace(at, 2, std::to_string((text[at + 1] - '0') * files));
    return text;
  };
  const std::string passed = ",'wrongFlags':0,'skipped':0,'skippedBy':{}";
  const std::string cut = "1,'malformedBy':{'truncatedRecord':1}";
  const std::string whole = "0,'malformedBy':{}" + passed;
  const std::string second = cut + ",'firstMalformed':'record4,octet210'" + passed;
  const std::string both = "{'files':[" + figures(file_.name(), 1, whole) + ',' +
                           figures(broken_.name(), 1, second) +
                           "],'total':" + figures("total", 2, cut + passed) + '}';
  expectRuns({
      // clang-format off
      {"bgpcomm summary --json $FILE $BROKEN 2>&- | tr -d ' \\n' | sed 's/\"seconds\":[0-9.e-]*/\"seconds\":0/g; s/\"shared\":[0-9]*,//g; s/\\(unshared\":\\)[1-9][0-9]*/\\11/g'", json(both)},
      {"bgpcomm summary $FILE $BROKEN >/dev/null 2>&1", "", 1},
      {"bgpcomm summary --color always $BROKEN 2>&- | grep -c '^.\\[31m    truncatedRecord .*.\\[0m$'", "1\n"},
      {"bgpcomm summary $FILE | grep -c 'seconds  .* paths/s'", "1\n"},
      {"bgpcomm summary $BROKEN 2>&- | grep '.\\{81\\}\\|paths  \\|trunc\\|first\\|per l\\|^  *[0-9]  [^ ]'",
       "  paths                          3\n"
       "    truncatedRecord              1\n"
       "    first (record 4, octet 210)\n"
       "  paths per list               1.5           0.0           0.0           0.0\n"
       "                   2  65000:100\n                   2  NO_EXPORT\n                   1  65000:200\n"},
      {"bgpcomm summary $FILE --top 1 | sed -n '/most used/,/^$/p'", "  most used standard communities, by paths\n                   2  65000:100\n\n"},
      {"for top in 0 1 10 11; do bgpcomm summary --json --total --top $top samples/*.gz | grep -c paths; done",
       "1962\n5\n41\n45\n"},
      {"printf '65000:100,A hundred\\n' >$STORE; bgpcomm --describe $STORE summary --json $FILE --top 1 | grep -c 'description\": \"A hundred'",
       "2\n"},
      {"for command in '' summary report paths values diff top faults spread lint verify decode describe encode kinds save restore merge watch-rt; do\n"
       "  bgpcomm $command --help | grep '.\\{81\\}\\|Example: bgpcomm ' | cut -d: -f1\n"
       "done | uniq -c | tr -d ' '", "19Example\n"},
      // clang-format on
  });
}

// Other people's dumps, against figures that another program computed.
TEST_F(Tool, FiguresOfRealDataAreAsExpectedAndListsGoBackToTheWireAsTheyCame) {
  const char* const named = std::getenv("BGPCOMM_DATA");
  const std::filesystem::path folder = named ? named : "../shared/data";
  if (!exists(folder / "expected.json"))
    GTEST_SKIP() << "no expected.json in $BGPCOMM_DATA, nor in ../shared/data";
  const auto all = nlohmann::json::parse(std::ifstream(folder / "expected.json"));
  ASSERT_FALSE(all.empty());
  for (const auto& [name, expected] : all.items()) {
    SCOPED_TRACE(name);
    const std::string file = (folder / name).string();
    const ToolRun run = runTool("bgpcomm summary --json " + file);
    auto summary = nlohmann::json::parse(run.out, nullptr, false);
    ASSERT_TRUE(summary.contains("files")) << run.err;
    U64 lists = 0;
    for (const auto& [key, value] : expected.items()) {
      EXPECT_EQ(summary["files"][0][key], value) << key;
      lists += value.is_object() ? value.value("attributes", U64{0}) : 0;
    }
    const nlohmann::json& faults = expected["malformedBy"];
    EXPECT_EQ(run.exitCode, faults.contains("truncatedRecord") || faults.contains("compression"));
    EXPECT_EQ(runTool("bgpcomm verify " + file + " | sed 's/.*: //; s/,\\([0-9]\\)/\\1/g'").out,
              std::to_string(lists) + " lists compared, 0 differ, " + expected["malformed"].dump() +
                  " malformed\n");
    // No kind that has a row is shown as unknown; octets behind the word would name the kind.
    EXPECT_EQ(runTool("bgpcomm paths " + file +
                      " 2>&- | grep -o 'unknown-[^ ]*\\| 0x[0-9a-f]*' | "
                      "bgpcomm encode - | bgpcomm decode - | grep ' text ' | grep -v unknown-")
                  .out,
              "");
    // Another process interns from the store what this one has interned from the file.
    const auto figures = [](const std::string& command, const std::string& differing) {
      return runTool("bgpcomm " + command + " | sed '/\"seconds\"\\|shared\"" + differing + "/d'")
          .out;
    };
    runTool("bgpcomm save " + file + " --to $STORE");
    EXPECT_EQ(figures("restore --json $STORE", ""), figures("summary --json " + file, ""));
    const std::string texts = "\\|\"value\"";
    EXPECT_EQ(figures("--core summary --json " + file, texts),
              figures("summary --json " + file, texts));
  }
}

// The page of questions says what the tool answers.
TEST_F(Tool, ThePageIsTrue) {
  std::ifstream page("docs/questions.md");
  std::string command, answer;
  int asked = 0;
  const auto ask = [&] {
    if (command.empty()) return;
    const ToolRun run = runTool(command);
    EXPECT_EQ(run.exitCode, 0) << command << '\n' << run.err;
    EXPECT_TRUE(!answer.empty() && run.out.starts_with(answer)) << command << '\n' << run.out;
    ++asked;
    command = answer = "";
  };
  const std::string indent = "    ", prompt = indent + "$ ";
  for (std::string line; std::getline(page, line);) {
    if (line.starts_with(prompt)) {
      ask();
      command = line.substr(prompt.size());
    } else if (line.starts_with(indent) && !command.empty()) {
      answer += line.substr(indent.size()) + '\n';
    } else {
      ask();
    }
  }
  EXPECT_GE(asked, 10);
}

}  // namespace
