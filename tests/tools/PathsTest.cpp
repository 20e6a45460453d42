// Paths that are asked for: every filter, questions, groups.
#include "RunTool.h"

namespace bgpcomm {
namespace {

// An UPDATE of this peer, so many seconds after 2023-11-14T22:13:20Z.
Bytes updateOf(U8 seconds, const char* peer, U32 as, const char* attributes, const char* nlri,
               const char* withdrawn = "") {
  Bytes record = mrtRecord(
      16, 4,
      session(octets(peer), 4, as) + update(octets(attributes), octets(nlri), octets(withdrawn)));
  record[3] = char(seconds);
  return record;
}

class PathsTool : public ToolTest {
 protected:
  PathsTool() { ::setenv("FILE", file_.name().c_str(), 1); }

  // AS_PATHs 64600 64700, 64601 {64701}, 64601 65536; IPv4 prefixes, and one of IPv6.
  const TemporaryFile file_{
      updateOf(0, "c0000201", 64600,
               "40010100 40020a02020000fc580000fcbc c00808 fde80064ffffff01 "
               "40030409090909",
               "080a 100a01") +
      updateOf(5, "c0000202", 64601,
               "40021402010000fc5901030000fcbd0000000000000001 "
               "c00804 fde800c8 c0100800 02fde800000064",
               "180a0102") +
      updateOf(10, "c0000202", 64601,
               "40020a02020000fc5900010000 800e1a00020110"
               "20010db8000000000000000000000001 00 2020010db8 c0200c 0000fde80000000100000002",
               "", "100a02 180a0301")};
};

TEST_F(PathsTool, LookOnlyAtWhatIsAskedFor) {
  const std::string first = "2023-11-14T22:13:20Z\t192.0.2.1 AS64600\t", tab = "\t";
  const std::string second = "2023-11-14T22:13:25Z\t192.0.2.2 AS64601\t";
  const std::string third = "2023-11-14T22:13:30Z\t192.0.2.2 AS64601\t2001:db8::/32\t65000:1:2\n";
  const std::string one = first + "10.0.0.0/8 10.1.0.0/16\t65000:100 NO_EXPORT\n";
  const std::string two = second + "10.1.2.0/24\t65000:200 route-target-as2:65000:100\n";
  const std::string all = one + two + third, usage = "; see bgpcomm --help";
  // Options, and the lines that are left.
  for (const auto& [options, lines] : std::initializer_list<std::pair<std::string, std::string>>{
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
            two + "2023-11-14T22:13:30Z\t192.0.2.2 AS64601\t10.2.0.0/16 10.3.1.0/24\twithdrawn\n" +
                third},
           {"--withdrawals --prefix 10.2.0.0/16",
            "2023-11-14T22:13:30Z\t192.0.2.2 AS64601\t10.2.0.0/16\twithdrawn\n"},
           {"--withdrawals --json --limit 3 | tail -1",
            R"({"time":"2023-11-14T22:13:30Z","peer":"192.0.2.2","peerAs":64601,)"
            R"("withdrawn":["10.2.0.0/16","10.3.1.0/24"],"record":3})"
            "\n"},
           {"--group-by peer", "2\t192.0.2.2 AS64601\n1\t192.0.2.1 AS64600\n"},
           {"--group-by origin", "1\t-\n1\tAS64700\n1\tAS65536\n"},
           {"--group-by kind --limit 2", "2\tstandard\n1\tNO_EXPORT\n"},
           {"--group-by value --json --where 'has large'", R"({"count":1,"value":"65000:1:2"})"
                                                           "\n"},
           {"--group-by prefix-length --peer 192.0.2.1", "1\tIPv4 /16\n1\tIPv4 /8\n"},
           {"--json --collector rrc00 --limit 1 | grep -o '\"announced.*'",
            R"("announced":["10.0.0.0/8","10.1.0.0/16"],"asPath":"64600 64700","originAs":64700,)"
            R"("nextHop":"9.9.9.9","record":1,"collector":"rrc00"})"
            "\n"},
           {"--json --peer 192.0.2.2 | grep -o '\"asPath.*'",
            R"("asPath":"64601 {64701,0,1}","originAs":null,"nextHop":"-","record":2})"
            "\n"
            R"("asPath":"64601 65536","originAs":65536,"nextHop":"2001:db8::1","record":3})"
            "\n"},
       })
    expectRuns({{"bgpcomm paths $FILE " + options, lines}});
  expectRuns({
      {"bgpcomm paths --where 'no-exprot' $FILE", "", 2,
       "--where: at 0: \"no-exprot\": expected a community: the identifier of a kind, a well-known "
       "name, or two or three decimal numbers; did you mean \"NO_EXPORT\"?"},
      {"bgpcomm paths --prefix 10.1.0.0/8 $FILE", "", 2,
       "--prefix 10.1.0.0/8: bits are set behind the prefix length"},
      {"bgpcomm paths --prefix 10.0.0.0/33 $FILE", "", 2,
       "--prefix 10.0.0.0/33: expected a prefix length up to 32"},
      {"bgpcomm paths --prefix ten $FILE", "", 2,
       "--prefix ten: expected a prefix, as 192.0.2.0/24 or 2001:db8::/32"},
      {"bgpcomm paths --more-specific $FILE", "", 2,
       "--more-specific and --less-specific belong to --prefix"},
      {"bgpcomm paths --peer 192.0.2 $FILE", "", 2,
       "--peer 192.0.2: expected an address or an AS number"},
      {"bgpcomm paths --origin-as 4294967296 $FILE", "", 2,
       "--origin-as 4294967296: expected an AS number"},
      {"bgpcomm paths --since 2023-02-29 $FILE", "", 2,
       "--since 2023-02-29: expected a time, as 2026-07-30T14:00:00Z, or seconds since 1970"},
      {"bgpcomm paths --since 20231114 $FILE", "", 2,
       "--since 20231114: expected a time, as 2026-07-30T14:00:00Z, or seconds since 1970"},
      {"bgpcomm paths --limit -1 $FILE", "", 2,
       "--limit: expected a decimal number; see bgpcomm paths --help"},
      {"bgpcomm paths --limit 1 --json --collector \"$(printf 'a\\377')\" $FILE | grep -o 'coll.*'",
       "collector\":\"a\\\\xff\"}\n"},
      {"bgpcomm paths --count --group-by peer $FILE", "", 2,
       "--count and --group-by exclude each other"},
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
}

}  // namespace
}  // namespace bgpcomm
