#include "PathGroups.h"

#include <algorithm>
#include <set>

#include "Errors.h"
#include "ListValues.h"
#include "PathText.h"

namespace bgpcomm {

using namespace Routing::Bgp;

GroupBy readGroupBy(const std::string& name) {
  const auto at = std::ranges::find(groupByNames, name);
  if (at != groupByNames.end()) return GroupBy(at - groupByNames.begin());
  throw UsageError("--group-by " + name + ": there are peer, origin, kind, value, prefix-length");
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
std::unordered_map<std::string, U64> PathGroups::byCommunities() const {
  std::unordered_map<std::string, U64> groups;
  combinations_.forEach([&](const PathCommunities& lists, U64 paths) {
    std::set<std::string> keys;
    lists.forEachList([&](const auto& list) {
      forEachCommunity(*list, [&](const auto& one) {
        keys.insert(by_ == GroupBy::value
                        ? textOf(one)
                        : kindName(communityOf(list->pathAttribute, octetsOf(one))));
      });
    });
    for (const std::string& key : keys) groups[key] += paths;
  });
  return groups;
}

std::vector<PathGroups::Group> PathGroups::sorted() const {
  const bool ofCommunities = by_ == GroupBy::kind || by_ == GroupBy::value;
  std::vector<Group> sorted;
  for (const auto& [key, paths] : ofCommunities ? byCommunities() : groups_)
    sorted.push_back({key, paths});
  std::ranges::sort(sorted, [](const Group& a, const Group& b) {
    return a.paths != b.paths ? a.paths > b.paths : a.key < b.key;
  });
  return sorted;
}

}  // namespace bgpcomm
