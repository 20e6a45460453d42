#include "PathGroups.h"

#include <algorithm>
#include <set>

#include "Descriptions.h"
#include "ListValues.h"
#include "Meant.h"
#include "PathText.h"

namespace bgpcomm {

using namespace Routing::Bgp;

GroupBy readGroupBy(const std::string& name) {
  return GroupBy(placeAmong(groupByNames, name, "--group-by"));
}

void PathGroups::add(const Path& path, CommunityValues& values, const PathFilter& filter) {
  switch (by_) {
    case GroupBy::peer:
      ++groups_[peerText(path.peer)];
      return;
    case GroupBy::origin:
      ++groups_[originText(path)];
      return;
    case GroupBy::prefixLength:
      visitPrefixes(path, [&](const Prefix& prefix) {
        if (!filter.wants(prefix)) return;
        const auto ip = ipPrefix(prefix);
        const bool ipv4 = prefix.addressFamily.afi == afiIpv4;
        ++groups_[ip ? (ipv4 ? "IPv4 /" : "IPv6 /") + std::to_string(ip->length) : "-"];
      });
      return;
    case GroupBy::kind:
    case GroupBy::value:
      break;
  }
  ++combinations_.of(values).count;
}

/// The groups of kinds or values.
std::vector<PathGroups::Group> PathGroups::byCommunities() const {
  std::unordered_map<std::string, Group, SeededHash> groups;
  combinations_.forEach([&](const PathCommunities& lists, U64 paths) {
    std::set<std::string> keys;
    lists.forEachList([&](const auto& list) {
      forEachCommunity(*list, [&](const auto& one) {
        const AnyCommunity community = communityOf(list->pathAttribute, octetsOf(one));
        const bool ofValue = by_ == GroupBy::value;
        const std::string key = ofValue ? textOf(one) : kindName(community);
        if (keys.insert(key).second && !groups.contains(key))
          groups[key] = {key, 0, ofValue ? descriptionOf(community) : ""};
      });
    });
    for (const std::string& key : keys) groups[key].paths += paths;
  });
  std::vector<Group> all;
  all.reserve(groups.size());
  for (auto& [key, group] : groups) all.push_back(std::move(group));
  return all;
}

std::vector<PathGroups::Group> PathGroups::sorted() const {
  const bool ofCommunities = by_ == GroupBy::kind || by_ == GroupBy::value;
  std::vector<Group> sorted;
  if (ofCommunities) sorted = byCommunities();
  for (const auto& [key, paths] : groups_) sorted.push_back({key, paths});
  std::ranges::sort(sorted, [](const Group& a, const Group& b) {
    return a.paths != b.paths ? a.paths > b.paths : a.key < b.key;
  });
  return sorted;
}

}  // namespace bgpcomm
