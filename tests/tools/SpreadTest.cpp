// A prefix across its peers: the tree of its paths, and the tool's picture of it.

#include "RunTool.h"
#include "tools/bgpcomm/SpreadTree.h"

namespace {

using Group = std::set<U32>;  // of paths

// Groups of paths with the same first hops, by looking at all of them.
std::map<Group, std::size_t> groupsOf(const std::vector<SpreadTree::Path>& paths) {
  std::map<Group, std::size_t> groups;  // and how many hops they have in common
  for (const SpreadTree::Path& one : paths)
    for (std::size_t hops = 0; hops <= one.hops.size(); ++hops) {
      Group group;
      for (U32 i = 0; i < paths.size(); ++i)
        if (paths[i].hops.size() >= hops &&
            std::equal(one.hops.begin(), one.hops.begin() + long(hops), paths[i].hops.begin()))
          group.insert(i);
      if (group.size() > 1) groups[group] = hops;
    }
  for (U32 i = 0; i < paths.size(); ++i) groups[{i}] = paths[i].hops.size();
  return groups;
}

TEST(SpreadTree, HasTheGroupsOfPathsAndTheirValues) {
  std::mt19937 random(3);
  const auto below = [&random](U32 end) { return U32(random() % end); };
  for (int round = 0; round < 2000; ++round) {
    std::vector<SpreadTree::Path> paths(1 + below(9));
    std::map<U32, Group> carriers;
    for (U32 i = 0; i < paths.size(); ++i) {
      for (U32 left = below(6); left > 0; --left) paths[i].hops.push_back(below(2));
      for (U32 value = 0; value < 8; ++value)
        if (below(3)) paths[i].values.push_back(value), carriers[value].insert(i);
    }
    auto groups = groupsOf(paths);
    std::map<Group, std::map<U32, std::size_t>> values;
    for (const auto& [value, its] : carriers) {
      const Group* smallest = nullptr;
      for (const auto& one : groups)
        if (std::ranges::includes(one.first, its) &&
            (!smallest || one.first.size() < smallest->size()))
          smallest = &one.first;
      values[*smallest][value] = its.size();
    }
    const SpreadTree tree(paths);
    std::vector<std::size_t> sizes;
    for (const SpreadTree::Node& node : tree.nodes()) {
      const Group group(node.paths.begin(), node.paths.end());
      ASSERT_EQ(groups.count(group), 1u);
      EXPECT_EQ(node.end, groups[group]);
      groups.erase(group);
      std::map<U32, std::size_t> found;
      for (const U32 value : node.values) found[value] = group.size();
      for (const auto& [value, count] : node.some) {
        EXPECT_LT(count, group.size());
        found[value] = count;
      }
      EXPECT_EQ(found, values[group]);
      sizes.push_back(group.size());
      if (sizes.size() == 1) continue;
      const SpreadTree::Node& parent = tree.nodes()[node.parent];
      EXPECT_EQ(node.begin, parent.end);
      EXPECT_EQ(node.level, parent.level + 1);
      for (const U32 path : group) EXPECT_EQ(std::ranges::count(parent.paths, path), 1);
      // Behind a sibling with fewer paths none has more.
      for (std::size_t i = node.parent + 1; i + 1 < sizes.size(); ++i) {
        const bool isSibling = tree.nodes()[i].parent == node.parent;
        EXPECT_TRUE(!isSibling || sizes[i] >= sizes.back());
      }
    }
    EXPECT_TRUE(groups.empty());
  }
}

TEST(SpreadTree, IsAsDeepAsItsPathsAreLong) {
  constexpr U32 count = 3000;
  std::vector<SpreadTree::Path> paths(count);
  for (U32 i = 0; i < count; ++i) paths[i] = {std::vector<U32>(i, 7), {i, count}};
  const SpreadTree tree(std::move(paths));
  EXPECT_EQ(tree.nodes().size(), 2 * count - 1);
  EXPECT_EQ(tree.nodes().back().values.size(), 1u);
  U32 deepest = 0;
  for (const SpreadTree::Node& node : tree.nodes()) deepest = std::max(deepest, node.level);
  EXPECT_EQ(deepest, count - 1);
  EXPECT_EQ(tree.nodes()[0].values, std::vector<U32>{count});
}

class SpreadTool : public ToolTest {
 protected:
  // An UPDATE of 192.0.2.N, AS 64600 + N: segments of the AS path, communities, prefixes.
  static Bytes from(U8 peer, const std::string& segments, const std::string& communities,
                    const char* nlri, U16 subtype = 4) {
    const Bytes path = octets("4002") + counted(octets(segments), 1);
    const Bytes values = octets("c008") + counted(octets(communities), 1);
    return updateOf(sender(peer, subtype), hex(view(communities.empty() ? path : path + values)),
                    nlri);
  }

  const NamedFile file_{
      "FILE",
      from(1, "0204 0000fc59 0000fc59 0000fc62 0000fcbc", "fcbc0001 fc620005 fc590009", "080a") +
          from(2, "0204 0000fc5a 0000fc62 0000fc62 0000fcbc", "fcbc0001 fc620005", "080a 100a01") +
          from(3, "0202 0000fc5b 0000fcbc", "fcbc0001 fcbc0002", "080a") +
          from(4, "0202 0000fc5c 0000fcbc", "fcbc0001", "080a") +
          from(5, "0202 0000fc5d 0000fcbc", "", "080a") +
          from(5, "0202 0000fc5d 0000fcbc", "fcbc0001 fcbc0002", "080a") +
          // Other forms of AS paths; the last is malformed.
          from(1, "0302 0000fc00 0000fc01 0201 0000fcbc", "fcbc0001", "080b") +
          from(2, "", "fcbc0001", "080b") +
          from(3, "0201 0000fc5b 0103 0000fcbe 0000fcbd 0000fcbe", "fcbc0001", "080b") +
          from(4, "0202 0000", "fcbc0001", "080b") +
          from(5, "0201 0000fcbc", "fcbc0001 fcbc0002", "00000007 080b", 9)};
  // A withdrawal, and the end of a session, five seconds later.
  const NamedFile later_{
      "LATER",
      after(5, updateOf(sender(4), "", "", "080a")) +
          after(5,
                mrtRecord(16, 5, session(octets(sender(5).peer), 4, 64605) + octets("0006 0001")))};
};

TEST_F(SpreadTool, DrawsATreeFromTheOrigin) {
  const std::string branch =
      "        |  64700:1\n"
      "     2  |- AS64610 x1..2\n"
      "        |  |  64610:5\n"
      "        |  |- AS64601 x2 at 192.0.2.1 AS64601\n"
      "        |  |     64601:9\n"
      "        |  `- AS64602 at 192.0.2.2 AS64602\n";
  const std::string third = "- AS64603 at 192.0.2.3 AS64603\n";
  const std::string fifth = "        `- AS64605 at 192.0.2.5 AS64605\n";
  const std::string all = "10.0.0.0/8: 5 paths of 5 peers\n     5  AS64700\n" + branch +
                          "        |" + third + "        |- AS64604 at 192.0.2.4 AS64604\n" +
                          fifth +
                          "--some shows 1 value that no AS has on all of its paths, and on no "
                          "other\n";
  expectRuns({
      {"bgpcomm spread 10.0.0.0/8 $FILE", all},
      {"bgpcomm spread --until 1700000005 10.0.0.0/8 $FILE $LATER", all},
      {"bgpcomm spread --some 10.0.0.0/8 $FILE | sed '4!d'", "        |  (2 of 5) 64700:2\n"},
      {"bgpcomm spread 10.0.0.0/8 $FILE $LATER",
       "10.0.0.0/8: 3 paths of 3 peers\n     3  AS64700\n" + branch + "        `" + third +
           "              64700:2\n"},
      {"bgpcomm spread --peer 64602 --peer 64603 --more-specific 10.0.0.0/8 $FILE; bgpcomm spread "
       "--json --peer 64602 --less-specific 10.1.0.0/16 $FILE | grep -o '\"prefix\":[^,]*'",
       "10.0.0.0/8: 3 paths of 2 prefixes and 2 peers\n"
       "     3  AS64700\n"
       "        |  64700:1\n"
       "     2  |- AS64610 x2 AS64602\n"
       "        |  |  64610:5\n"
       "        |  |- at 192.0.2.2 AS64602 10.0.0.0/8\n"
       "        |  `- at 192.0.2.2 AS64602 10.1.0.0/16\n"
       "        `- AS64603 at 192.0.2.3 AS64603 10.0.0.0/8\n"
       "              64700:2\n"
       "\"prefix\":null\n\"prefix\":\"10.0.0.0/8\"\n\"prefix\":\"10.1.0.0/16\"\n"},
      {"bgpcomm spread --peer 64602 10.0.0.0/8 $FILE",
       "10.0.0.0/8: 1 path of 1 peer\n        AS64700 AS64610 x2 AS64602 at 192.0.2.2 AS64602\n"
       "           64610:5 64700:1\n"},
      {"bgpcomm spread 11.0.0.0/8 $FILE",
       "11.0.0.0/8: 5 paths of 5 peers\n"
       "     5  (several origins)\n"
       "        |  64700:1\n"
       "     2  |- AS64700\n"
       "        |  |- at 192.0.2.5 AS64605 #7\n"
       "        |  |     64700:2\n"
       "        |  `- (64513) (64512) at 192.0.2.1 AS64601\n"
       "        |- (empty AS path) at 192.0.2.2 AS64602\n"
       "        |- {64701,64702} AS64603 at 192.0.2.3 AS64603\n"
       "        `- (malformed AS path) at 192.0.2.4 AS64604\n"},
      {"bgpcomm spread --json 10.0.0.0/8 $FILE $LATER | sed -n '2p;5p'",
       json("{'node':1,'parent':0,'level':1,'as':['AS64610'],'timesLeast':[1],'timesMost':[2],"
            "'paths':2,'peer':null,'peerAs':null,'prefix':'10.0.0.0/8','values':['64610:5'],"
            "'octets':['fc620005'],'some':[],'someOctets':[],'somePaths':[]}\n"
            "{'node':4,'parent':0,'level':1,'as':['AS64603'],'timesLeast':[1],'timesMost':[1],"
            "'paths':1,'peer':'192.0.2.3','peerAs':64603,'prefix':'10.0.0.0/8',"
            "'values':['64700:2'],'octets':['fcbc0002'],'some':[],'someOctets':[],'somePaths':[]}"
            "\n")},
      {"bgpcomm spread 10.2.0.0/16 $FILE", "", 1,
       "10.2.0.0/16: no path that is asked for has this prefix"},
  });
}

TEST_F(SpreadTool, KeepsToEightyColumns) {
  // Each peer is behind the one before, with long lists.
  Bytes records;
  for (U8 peer = 1; peer < 60; ++peer) {
    Bytes segments = '\x02' + number(peer, 1), communities;
    for (U8 as = peer; as > 0; --as) segments += number(0xfd00 + as, 4);
    for (U8 value = 0; value < 50; ++value) communities += number(0xfde80000 + value, 4);
    records += from(peer, hex(view(segments)), hex(view(communities)), "080a");
  }
  Bytes set = "\x01\x28";  // a word that is longer than a line
  for (U8 as = 0; as < 40; ++as) set += number(0xfd00 + as, 4);
  records += from(61, hex(view(set)) + "02010000fd01", "", "080a");
  const NamedFile deep("DEEP", records);
  expectRuns(
      {{"bgpcomm spread 10.0.0.0/8 $DEEP | grep '.\\{81\\}'", "", 1},
       {"bgpcomm spread 10.0.0.0/8 $DEEP | grep -o '.[[]58[]] AS64827 at'", " [58] AS64827 at\n"}});
}

}  // namespace
