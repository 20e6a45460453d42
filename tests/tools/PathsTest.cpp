// Paths that are asked for: every filter, questions, groups; route-target sets that come and go.
#include "RunTool.h"

namespace {

class PathsTool : public ToolTest {
 protected:
  const Sender second_{"c0000202", 64601};
  // AS_PATHs 64600 64700, 64601 {64701}, 64601 65536; IPv4 prefixes, and one of IPv6.
  const Bytes content_ =
      path("40010100 40020a02020000fc580000fcbc c00808 fde80064ffffff01 40030409090909",
           "080a 100a01") +
      after(5, updateOf(second_,
                        "40021402010000fc5901030000fcbd0000000000000001 "
                        "c00804 fde800c8 c0100800 02fde800000064",
                        "180a0102")) +
      after(10, updateOf(second_,
                         "40020a02020000fc5900010000 800e1a0002011020010db80000000000000000"
                         "00000001 00 2020010db8 c0200c 0000fde80000000100000002",
                         "", "100a02 180a0301"));
  const NamedFile file_{"FILE", content_};
};

TEST_F(PathsTool, LookOnlyAtWhatIsAskedFor) {
  const std::string first = "2023-11-14T22:13:20Z\t192.0.2.1 AS64600\t";
  const std::string second = "2023-11-14T22:13:25Z\t192.0.2.2 AS64601\t";
  const std::string last = "2023-11-14T22:13:30Z\t192.0.2.2 AS64601\t";
  const std::string third = last + "2001:db8::/32\t65000:1:2\n";
  const std::string one = first + "10.0.0.0/8 10.1.0.0/16\t65000:100 NO_EXPORT\n";
  const std::string two = second + "10.1.2.0/24\t65000:200 route-target-as2:65000:100\n";
  const std::string all = one + two + third;
  expectRuns(
      "bgpcomm paths $FILE ",
      {
          {"", all},
          {"--where 'no-export or RT:*:100'", one + two},
          {"--where '65000:100..150 and not has large'", one},
          {"--where 'count(standard) = 0'", third},
          {"--where '65000:*' --rt 65000:100", two},
          {"--prefix 10.0.0.0/8", first + "10.0.0.0/8\t65000:100 NO_EXPORT\n"},
          {"--prefix 10.0.0.0/8 --more-specific", one + two},
          {"--prefix 10.1.0.0/16 --more-specific",
           first + "10.1.0.0/16\t65000:100 NO_EXPORT\n" + two},
          {"--prefix 10.1.2.3 --less-specific", one + two},
          {"--prefix 10.1.0.0/17 --less-specific", one},
          {"--prefix 10.1.0.0/17 --prefix 2001:db8::/32", third},
          {"--prefix ::/0 --more-specific", third},
          {"--peer 192.0.2.2", two + third},
          {"--peer AS64600", one},
          {"--peer 64600 --peer 0.64601", all},
          {"--origin-as 64700", one},
          {"--origin-as 64701", ""},
          {"--origin-as 1.0 --origin-as as64700", one + third},
          {"--since 2023-11-14T22:13:25", two + third},
          {"--until 2023-11-14T22:13:30Z", one + two},
          {"--since 1700000005 --until '2023-11-14 22:13:26'", two},
          {"--since 2023-11-15", ""},
          {"--since 0 --until 1700000000", ""},
          {"--limit 2", one + two},
          {"--count", "3\n"},
          {"--count --json --where has\\ extended", "{\"paths\":1}\n"},
          {"--withdrawals --peer 192.0.2.2",
           two + last + "10.2.0.0/16 10.3.1.0/24\twithdrawn\n" + third},
          {"--withdrawals --prefix 10.2.0.0/16", last + "10.2.0.0/16\twithdrawn\n"},
          {"--withdrawals --json --limit 3 | tail -1",
           json("{'time':'2023-11-14T22:13:30Z','peer':'192.0.2.2','peerAs':64601,"
                "'withdrawn':['10.2.0.0/16','10.3.1.0/24'],'record':3}\n")},
          {"--group-by peer", "2\t192.0.2.2 AS64601\n1\t192.0.2.1 AS64600\n"},
          {"--group-by origin", "1\t-\n1\tAS64700\n1\tAS65536\n"},
          {"--group-by kind --limit 2", "2\tstandard\n1\tNO_EXPORT\n"},
          {"--group-by value --json --where 'has large'",
           json("{'count':1,'value':'65000:1:2'}\n")},
          {"--group-by prefix-length --peer 192.0.2.1", "1\tIPv4 /16\n1\tIPv4 /8\n"},
          {"--json --collector rrc00 --limit 1 | grep -o '\"announced.*'",
           json("'announced':['10.0.0.0/8','10.1.0.0/16'],'asPath':'64600 64700','originAs':64700,"
                "'nextHop':'9.9.9.9','record':1,'collector':'rrc00'}\n")},
          {"--limit 1 --json --collector \"$(printf 'a\\377')\" | grep -o 'coll.*'",
           "collector\":\"a\\\\xff\"}\n"},
          {"--json --peer 192.0.2.2 | grep -o '\"asPath.*'",
           json("'asPath':'64601 {64701,0,1}','originAs':null,'nextHop':'-','record':2}\n"
                "'asPath':'64601 65536','originAs':65536,'nextHop':'2001:db8::1','record':3}\n")},
      });
}

TEST_F(PathsTool, AnswersAStreamWhileItRuns) {
  // The stream goes on, and ends, only once the first line has come.
  const std::string stream = "D=$(mktemp -d); mkfifo $D/go; { cat $FILE; cat $D/go; } | ";
  const std::string tool = "timeout 60 \"$BGPCOMM\" paths ", end = ": >$D/go; }; rm -r $D";
  const std::string peer = "192.0.2.1 AS64600\n";
  expectRuns({
      {stream + tool + "--where no-export - | { read -r line; echo \"$line\" | cut -f2; " + end,
       peer},
      {stream + "{ " + tool + "--limit 1 - | cut -f2; " + end, peer},
  });
  // Compressed, too: all of it, with the first octets of more behind, and without the last.
  Bytes many;
  for (int i = 0; i < 1000; ++i) many += content_;
  const NamedFile stored("MANY", many);
  for (const std::string format : {"gzip", "bzip2 -1", "xz", "zstd"})
    for (const std::string rest : {"", " && head -c 5 $D/data", " | head -c -5"})
      expectRuns({{"D=$(mktemp -d); mkfifo $D/go; " + format + " <$MANY >$D/data; { cat $D/data" +
                       rest + "; cat $D/go; } | " + tool +
                       "- 2>/dev/null | { read -r line; echo \"$line\" | cut -f2; " + end,
                   peer}});
}

// --- Route-target sets as messages announce, replace and withdraw paths.

using WatchRt = ToolTest;

/// The targets that come and go, by number: `+1 -1 `. An error line follows from behind the file's
/// name on.
std::string eventsOf(const Bytes& file) {
  const TemporaryFile stored(file);
  const ToolRun run = runTool("bgpcomm watch-rt " + stored.name() +
                              " | cut -f2- | sed 's/\troute-target-as2:65000://' | tr '\\n' ' '");
  return run.out + (run.err.empty() ? "" : run.err.substr(9 + stored.name().size()));
}

/// An UPDATE with a route target, for IPv4 prefixes or for those of a family (AFI and SAFI) in
/// MP_REACH_NLRI.
Bytes announced(const char* prefixes, U32 target, const char* family = "") {
  const Bytes targets = octets("c01008 0002 fde8") + number(target, 4);
  if (!*family) return update(targets, octets(prefixes));
  const Bytes reach = octets(family) + octets("0000") + octets(prefixes);
  return update(octets("800e") + counted(reach, 1) + targets, "");
}
Bytes withdrawn(const char* prefixes, const char* family) {
  return update(octets("800f") + counted(octets(family) + octets(prefixes), 1), "");
}

/// Records of a peer, of 192.0.2.1 unless told otherwise.
Bytes sent(std::initializer_list<Bytes> messages, U16 subtype = 4, const Bytes& by = session()) {
  Bytes records;
  for (const Bytes& message : messages) records += mrtRecord(16, subtype, by + message);
  return records;
}

TEST_F(WatchRt, SetsComeWithTheirFirstPathAndGoWithTheLast) {
  const Bytes route = announced("180a0102", 1), gone = update("", "", octets("180a0102"));
  const Bytes ids = announced("00000001 180a0102 00000002 180a0102", 1, "0001 01");
  const Bytes labels = announced("50 000100 000201 20010db8", 1, "0002 04");
  const Bytes refused = octets("c01010 4004fde84e000000 4004fde84d000000");
  const Bytes index = mrtRecord(13, 1, octets("0a000001 0000 0001 02 0a0000fe c0000201 0000fc58"));
  const Bytes entry = octets("00000001 18 0a0102 0001 0000 6553f100 000b c01008 0002fde800000001");
  // Two sets of one peer, one of another; then the first one's session changes its state.
  const Bytes routes = sent({announced("180a0102 180a0103", 1), announced("180a0104", 2)});
  const Bytes others = routes + sent({announced("180a0102", 3)}, 4, session(octets("c0000203")));
  const std::string come = "+1 +2 +3 ", down = "-1 -2 ";
  const std::array<Bytes, 3> cases[] = {
      // clang-format off
      {"withdrawn", sent({route, gone}), "+1 -1 "},
      {"by another AS", sent({route}) + sent({gone}, 4, session(octets("c0000201"), 4, 1)), "+1 "},
      {"sent by the collector", sent({route}) + sent({gone}, 7), "+1 "},
      {"in MP_UNREACH_NLRI", sent({route, withdrawn("180a0102", "0001 01")}), "+1 -1 "},
      {"of another family", sent({route, withdrawn("180a0102", "0001 02")}), "+1 "},
      {"two labels, one to withdraw", sent({labels, withdrawn("38 800000 20010db8", "0002 04")}), "+1 -1 "},
      {"replaced", sent({route, announced("180a0102", 2)}), "+1 +2 -1 "},
      {"without targets", sent({route, update(octets("40010100"), octets("180a0102"))}), "+1 -1 "},
      {"with a list that is refused", sent({route, update(refused, octets("180a0102"))}),
       "+1 -1 : 1 malformed, the first linkBandwidth (record 2, octet 70): Extended Community attribute, offset 8: a "
       "second link bandwidth, expected at most one (type 16, length 16, octet 0 of the path's attributes)\n"},
      {"one of two identifiers", sent({ids, withdrawn("00000001 180a0102", "0001 01")}, 9), "+1 "},
      {"both", sent({ids, withdrawn("00000002 180a0102 00000001 180a0102", "0001 01")}, 9), "+1 -1 "},
      {"withdrawn and announced in one message",
       sent({route, update(octets("c01008 0002fde800000002"), octets("170a0103"),
                           octets("180a0102 170a0102"))}), "+1 +2 -1 "},
      {"a table's entry", index + mrtRecord(13, 2, entry) + sent({gone}), "+1 -1 "},
      {"session ends", others + sent({octets("0006 0001")}, 5), come + down},
      {"another begins, no end was recorded", others + sent({octets("0005 0006")}, 5), come + down},
      {"ends and begins", routes + sent({octets("0006 0003"), octets("0005 0006")}, 5) + routes,
       "+1 +2 -1 -2 +1 +2 "},
      // clang-format on
  };
  for (const auto& [what, file, events] : cases) EXPECT_EQ(eventsOf(file), events) << what;

  const TemporaryFile file(sent({route, gone}));
  const auto line = [](const std::string& event) {
    return json("{'time':'2023-11-14T22:13:20Z','event':'" + event +
                "','routeTargets':['route-target"
                "-as2:65000:1'],'routeTargetsOctets':['0002fde800000001']}\n");
  };
  expectRuns({{"bgpcomm watch-rt --json " + file.name(), line("come") + line("gone")}});
}

}  // namespace
