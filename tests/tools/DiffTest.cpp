// Two dumps compared: paths that meet their likes wherever they stand, and the tool's lines.
#include <map>
#include <random>

#include "RunTool.h"
#include "path/ZoBgpCommunityTables.h"
#include "tools/bgpcomm/PathJoin.h"

namespace bgpcomm {
namespace {

using namespace Routing::Bgp;

// Peers, prefixes and communities by number.
struct Row {
  U8 peer, prefix, value;
};

TEST(PathJoin, PairsWhatAMapPairs) {
  const CommunityTables tables;
  std::mt19937 random(5);
  for (int round = 0; round < 400; ++round) {
    std::vector<Row> rows[2];
    std::map<std::pair<U8, U8>, std::pair<int, int>> expected;
    for (U8 prefix = 0; prefix < 12; ++prefix)
      for (U8 peer = 0; peer < 10; ++peer)
        for (const int side : {0, 1}) {
          if (random() % 4 == 0) continue;
          const U8 value = U8(1 + random() % 3);
          rows[side].push_back({peer, prefix, value});
          auto& both = expected[{peer, prefix}];
          (side ? both.second : both.first) = value;
        }
    // In any order: of peers, of prefixes, of both.
    for (auto& some : rows)
      if (round % 3) std::shuffle(some.begin(), some.end(), random);

    std::map<std::pair<U8, U8>, std::pair<int, int>> found;
    const auto valueOf = [](const PathCommunities* communities) {
      return communities ? int(communities->list<CommList>()->values()[0]) : 0;
    };
    PathJoin join([&](const PathJoin::Pair& pair) {
      const auto key = std::pair(pair.peer.address[2], pair.prefix.nlri[1]);
      const bool isNew = found.try_emplace(key, valueOf(pair.before), valueOf(pair.after)).second;
      EXPECT_TRUE(isNew);
    });
    const auto add = [&](PathJoin::Side side, const Row& row) {
      const U8 peer[] = {192, 0, row.peer, U8(row.peer % 2)}, nlri[] = {8, row.prefix};
      const U8 value[] = {0, 0, 0, row.value};
      Path path;
      path.peer = {64600, peer};
      PathCommunities communities;
      tables.read(BgpPathAttrType::community, value, communities);
      join.add(side, path, {{afiIpv4, safiUnicast}, nlri, {}}, communities);
    };
    for (std::size_t i = 0; i < std::max(rows[0].size(), rows[1].size()); ++i)
      for (const auto side : {PathJoin::before, PathJoin::after})
        if (i < rows[side].size()) add(side, rows[side][i]);
    join.end();
    ASSERT_EQ(found, expected) << round;
  }
}

class DiffTool : public ToolTest {
 protected:
  DiffTool() {
    ::setenv("BEFORE", before_.name().c_str(), 1);
    ::setenv("AFTER", after_.name().c_str(), 1);
    ::setenv("LATER", later_.name().c_str(), 1);
  }
  static Bytes path(const char* attributes, const char* nlri, const char* withdrawn = "",
                    U8 seconds = 0) {
    Bytes record = messageRecord(update(octets(attributes), octets(nlri), octets(withdrawn)));
    record[3] = char(seconds);
    return record;
  }
  const TemporaryFile before_{path("c00804 fde80064", "080a") +
                              path("c00808 fde80064fde80065 c01008 0002fde800000001", "080b 080c") +
                              path("c00804 fde80066", "080d 080e")};
  const TemporaryFile after_{
      path("c00804 fde80064", "080a") + path("c00804 fde80064 c01008 0002fde800000002", "080b") +
      path("c00804 fde80067", "080c 080f") + path("c00804 fde80066", "080d", "080f")};
  const TemporaryFile later_{path("c00804 fde80069", "080a", "080b", 9)};
};

TEST_F(DiffTool, ShowsWhatCameWentAndChanged) {
  const std::string peer = "192.0.2.1 AS64600\t", target = " route-target-as2:65000:";
  const std::string changed = "*\tpath\t" + peer + "11.0.0.0/8\t65000:100 65000:101" + target +
                              "1\t65000:100" + target + "2\n*\tpath\t" + peer +
                              "12.0.0.0/8\t65000:100 65000:101" + target + "1\t65000:103\n";
  const std::string items =
      "-\tstandard value\t65000:101\n+\tstandard value\t65000:103\n"
      "-\textended value\troute-target-as2:65000:1\n+\textended value\troute-target-as2:65000:2\n"
      "-\tstandard list\t65000:100 65000:101\n+\tstandard list\t65000:103\n"
      "-\textended list\troute-target-as2:65000:1\n+\textended list\troute-target-as2:65000:2\n"
      "-\textended route-target-set\troute-target-as2:65000:1\n"
      "+\textended route-target-set\troute-target-as2:65000:2\n";
  std::string totals;
  for (const char* what : {"standard value", "extended value", "standard list", "extended list",
                           "extended route-target-set"})
    totals += std::string("1\tgone\t") + what + "\n1\tcome\t" + what + '\n';
  expectRuns({
      {"bgpcomm diff $BEFORE $AFTER", changed + "-\tpath\t" + peer + "14.0.0.0/8\t65000:102\n" +
                                          items + totals +
                                          "1\tgone\tpath\n2\tchanged\tpath\n2\tsame\tpath\n"},
      {"bgpcomm diff $BEFORE $BEFORE", "5\tsame\tpath\n"},
      {"bgpcomm diff - - <$BEFORE", "", 2, "one of the dumps can be -, not both"},
      {"cat $BEFORE $LATER | bgpcomm diff --until 2023-11-14T22:13:29 $BEFORE -",
       "5\tsame\tpath\n"},
      {"bgpcomm diff --limit 1 --prefix 11.0.0.0/8 --prefix 14.0.0.0/8 $BEFORE $AFTER | grep path",
       changed.substr(0, changed.find('\n') + 1) + "-\tpath\t" + peer +
           "14.0.0.0/8\t65000:102\n1\tgone\tpath\n1\tchanged\tpath\n0\tsame\tpath\n"},
      {"bgpcomm diff --json $BEFORE $AFTER | sed -n '2p;3p;5p'",
       R"({"change":"changed","what":"path","peer":"192.0.2.1","peerAs":64600,)"
       R"("prefix":"12.0.0.0/8","before":"65000:100 65000:101 route-target-as2:65000:1",)"
       R"("after":"65000:103"})"
       "\n"
       R"({"change":"gone","what":"path","peer":"192.0.2.1","peerAs":64600,)"
       R"("prefix":"14.0.0.0/8","before":"65000:102","after":""})"
       "\n"
       R"({"change":"come","what":"value","list":"standard","text":"65000:103",)"
       R"("octets":"fde80067"})"
       "\n"},
  });
}

TEST_F(DiffTool, DescriptionsStandBesideValues) {
  const TemporaryFile names("65000:100,Paid \x1b[1m\n65000:10x,Region $0\nnonsense\n1:2:3:4,x\n");
  ::setenv("NAMES", names.name().c_str(), 1);
  const std::string fault = names.name() + ":3: expected a comma behind the community, and 1 more";
  expectRuns({
      {"bgpcomm paths --describe $NAMES --explain --where 'described and has extended' $BEFORE "
       "| cut -f4",
       "65000:100 (Paid \\x1b[1m) 65000:101 (Region 1) route-target-as2:65000:1\n", 0, fault},
      {"bgpcomm paths --describe $NAMES --count --where 'description ~ region' $BEFORE", "2\n", 0,
       fault},
      {"bgpcomm paths --describe $NAMES --json --limit 1 $BEFORE 2>&- | grep -o '\"st[^]]*]'",
       "\"standard\":[\"65000:100\"]\n\"standardOctets\":[\"fde80064\"]\n"
       "\"standardDescriptions\":[\"Paid \\\\x1b[1m\"]\n"},
      {"for c in 'values $BEFORE' 'top $BEFORE' 'decode fde80065' 'diff $BEFORE $AFTER'; do\n"
       "eval bgpcomm $c --json --describe $NAMES 2>&- | grep -c '\"description\":\"Region 1\"'; "
       "done",
       "1\n1\n1\n1\n"},
      {"bgpcomm decode --explain --describe $NAMES fde80065 2>&- | tail -1",
       "  description     Region 1\n"},
      {"bgpcomm paths --count --where described $BEFORE", "0\n"},
      {"D=$(mktemp -d); mkdir -p $D/bgpcomm/communities; cp $NAMES $D/bgpcomm/communities/as1.txt; "
       "XDG_CONFIG_HOME=$D \"$BGPCOMM\" paths --count --where described $BEFORE 2>&-; rm -r $D",
       "3\n"},
      {"bgpcomm paths --describe /nonexistent --explain $BEFORE", "", 1,
       "/nonexistent: No such file or directory"},
  });
}

}  // namespace
}  // namespace bgpcomm
