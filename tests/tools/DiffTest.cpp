// Two dumps compared: paths that meet their likes wherever they stand, and the tool's lines.

#include "RunTool.h"
#include "path/ZoBgpCommunityTables.h"
#include "tools/bgpcomm/PathJoin.h"

namespace {

using namespace Routing::Bgp;

// Peers, prefixes and communities by number.
struct Row {
  PathJoin::Side side;
  U8 peer, prefix, value;
};

TEST(PathJoin, PairsWhatAMapPairs) {
  const CommunityTables tables;
  std::mt19937 random(5);
  for (int round = 0; round < 400; ++round) {
    std::vector<Row> rows;
    std::map<std::pair<U8, U8>, std::pair<int, int>> expected;
    for (U8 prefix = 0; prefix < 12; ++prefix)
      for (U8 peer = 0; peer < 10; ++peer)
        for (const auto side : {PathJoin::before, PathJoin::after}) {
          if (random() % 4 == 0) continue;
          const U8 value = U8(1 + random() % 3);
          rows.push_back({side, peer, prefix, value});
          auto& both = expected[{peer, prefix}];
          (side == PathJoin::before ? both.first : both.second) = value;
        }
    // In any order: of peers, of prefixes, of both.
    if (round % 3) std::shuffle(rows.begin(), rows.end(), random);

    std::map<std::pair<U8, U8>, std::pair<int, int>> found;
    const auto valueOf = [](const PathCommunities* communities) {
      return communities ? int(communities->list<CommList>()->values()[0]) : 0;
    };
    PathJoin join([&](const PathJoin::Pair& pair) {
      const auto key = std::pair(pair.peer.address[2], pair.prefix.nlri[1]);
      const bool isNew = found.try_emplace(key, valueOf(pair.before), valueOf(pair.after)).second;
      EXPECT_TRUE(isNew);
    });
    for (const Row& row : rows) {
      const U8 peer[] = {192, 0, row.peer, U8(row.peer % 2)}, nlri[] = {8, row.prefix};
      const U8 value[] = {0, 0, 0, row.value};
      Path path;
      path.peer = {64600, peer};
      PathCommunities communities;
      tables.read(BgpPathAttrType::community, value, communities);
      join.add(row.side, path, {{afiIpv4, safiUnicast}, nlri, {}}, communities);
    }
    join.end();
    ASSERT_EQ(found, expected) << round;
  }
}

class DiffTool : public ToolTest {
 protected:
  const NamedFile before_{"BEFORE",
                          path("c00804 fde80064", "080a") +
                              path("c00808 fde80064fde80065 c01008 0002fde800000001", "080b 080c") +
                              path("c00804 fde80066", "080d 080e")};
  const NamedFile after_{"AFTER", path("c00804 fde80064", "080a") +
                                      path("c00804 fde80064 c01008 0002fde800000002", "080b") +
                                      path("c00804 fde80067", "080c 080f") +
                                      path("c00804 fde80066", "080d", "080f")};
  const NamedFile later_{"LATER", after(9, path("c00804 fde80069", "080a", "080b"))};
};

TEST_F(DiffTool, ShowsWhatCameWentAndChanged) {
  const std::string path = "\tpath\t192.0.2.1 AS64600\t", target = " route-target-as2:65000:";
  const std::string before = "65000:100 65000:101" + target + '1';
  const std::string changed = '*' + path + "11.0.0.0/8\t" + before + "\t65000:100" + target + "2\n";
  const std::string replaced = '*' + path + "12.0.0.0/8\t" + before + "\t65000:103\n";
  const std::string gone = '-' + path + "14.0.0.0/8\t65000:102\n";
  std::string items, totals;
  for (const auto& [what, its, other] : std::initializer_list<std::array<std::string, 3>>{
           {"standard value", "65000:101", "65000:103"},
           {"extended value", target.substr(1) + '1', target.substr(1) + '2'},
           {"standard list", "65000:100 65000:101", "65000:103"},
           {"extended list", target.substr(1) + '1', target.substr(1) + '2'},
           {"extended route-target-set", target.substr(1) + '1', target.substr(1) + '2'}}) {
    items += "-\t" + what + '\t' + its + "\n+\t" + what + '\t' + other + '\n';
    totals += "1\tgone\t" + what + "\n1\tcome\t" + what + '\n';
  }
  expectRuns({
      {"bgpcomm diff $BEFORE $AFTER", changed + replaced + gone + items + totals +
                                          "1\tgone\tpath\n2\tchanged\tpath\n2\tsame\tpath\n"},
      {"bgpcomm diff $BEFORE $BEFORE", "5\tsame\tpath\n"},
      {"bgpcomm diff $BEFORE nowhere.mrt", "", 1, "nowhere.mrt: No such file or directory"},
      {"bgpcomm diff $BEFORE README.md 2>&- || bgpcomm diff README.md $BEFORE 2>&-", "", 1},
      {"cat $BEFORE $LATER | bgpcomm diff --until 2023-11-14T22:13:29 $BEFORE -",
       "5\tsame\tpath\n"},
      {"bgpcomm diff --limit 1 --prefix 11.0.0.0/8 --prefix 14.0.0.0/8 $BEFORE $AFTER | grep path",
       changed + gone + "1\tgone\tpath\n1\tchanged\tpath\n0\tsame\tpath\n"},
      {"bgpcomm diff --json $BEFORE $AFTER | tail -1",
       json("{'what':'total','pathsSame':2,'pathsGone':1,'pathsCome':0,'pathsChanged':2,'"
            "valuesGone':2,'valuesCome':2,"
            "'listsGone':2,'listsCome':2,'routeTargetSetsGone':1,'routeTargetSetsCome':1}\n")},
      {"bgpcomm diff --json $BEFORE $AFTER | sed -n '2p;3p;5p'",
       json("{'change':'changed','what':'path','peer':'192.0.2.1','peerAs':64600,'prefix':"
            "'12.0.0.0/8','before':'65000:100 65000:101 "
            "route-target-as2:65000:1','after':'65000:103'}\n"
            "{'change':'gone','what':'path','peer':'192.0.2.1','peerAs':64600,'prefix':"
            "'14.0.0.0/8','before':'65000:102','after':''}\n"
            "{'change':'come','what':'value','list':'standard','text':'65000:103','octets':'"
            "fde80067'}\n")},
  });
}

TEST_F(DiffTool, DescriptionsStandBesideValues) {
  const NamedFile names("NAMES",
                        "65000:100,Paid \x1b[1m\n65000:10x,Region $0\nnonsense\n1:2:3:4,x\n");
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
      {"for c in 'values $BEFORE' 'top $BEFORE' 'top --by list $BEFORE' 'decode fde80065' 'diff "
       "$BEFORE $AFTER' 'spread "
       "12.0.0.0/8 $BEFORE' 'lint --external $BEFORE' 'paths --group-by value $BEFORE'; do\n"
       "eval bgpcomm $c --json --explain --describe $NAMES 2>&- | grep -v '(Region' |\n"
       "grep -c '\"descriptions\\?\":[[]*[^]]*\"Region 1\"'; done",
       "1\n1\n1\n1\n2\n1\n1\n1\n"},
      {"bgpcomm diff --json --describe $NAMES $BEFORE $AFTER 2>&- | head -1 | grep -o "
       "'\"[ab][a-z]*Desc.*'",
       json("'beforeDescriptions':['Paid \\\\x1b[1m','Region 1',''],'afterDescriptions':['Paid "
            "\\\\x1b[1m','']}\n")},
      {"bgpcomm decode --json --describe $NAMES c00804fde80065 2>&- | grep -o '\"standardD[^]]*'",
       "\"standardDescriptions\":[\"Region 1\"\n"},
      {"for c in 'paths --group-by value' summary; do bgpcomm $c --explain --describe $NAMES "
       "$BEFORE "
       "2>&- | grep -c '65000:101 (Region 1)$'; done; bgpcomm decode --explain 'c0 08 04 ff ff 02 "
       "9a'",
       "1\n1\nCommunity (8), flags 0xc0: BLACKHOLE\n"},
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
