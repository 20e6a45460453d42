#include "PathGroups.h"

#include <algorithm>
#include <set>

#include "Errors.h"
#include "HeldListsOf.h"
#include "ListValues.h"
#include "TextStyle.h"
#include "mrt/AsPath.h"

namespace bgpcomm {

using namespace Routing::Bgp;

namespace {

/// The identifier of a community's kind; `standard` and `large` of those that have no name.
std::string kindName(const AnyCommunity& community) {
  const auto& kinds = textStyle().kinds;
  const Kind* const kind = (kinds ? *kinds : KindTable::builtIn()).find(community);
  if (!kind) return "unknown";
  if (!kind->identifier.empty()) return std::string(kind->identifier);
  return std::string(listTypes[listTypeOf(U8(kind->attribute))].key);
}

}  // namespace

GroupBy readGroupBy(const std::string& name) {
  const auto at = std::ranges::find(groupByNames, name);
  if (at != groupByNames.end()) return GroupBy(at - groupByNames.begin());
  throw UsageError("--group-by " + name + ": there are peer, origin, kind, value, prefix-length");
}

std::size_t PathGroups::HashCommunities::operator()(const Communities& communities) const {
  U64 hash = 0;
  communities.forEachType([&](const auto& list) {
    hash = (hash ^ reinterpret_cast<std::uintptr_t>(list.get())) * 0x9E3779B97F4A7C15;
    hash ^= hash >> 32;
  });
  return std::size_t(hash);
}

void PathGroups::add(const Path& path, CommunityValues& values, const PathFilter& filter) {
  switch (by_) {
    case GroupBy::peer:
      ++groups_[addressText(path.peer.address) + " AS" + std::to_string(path.peer.asNumber)];
      return;
    case GroupBy::origin: {
      const auto origin = AsPath(path).origin();
      ++groups_[origin ? "AS" + std::to_string(*origin) : "-"];
      return;
    }
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
  Communities communities;
  for (std::size_t type = 0; type < listTypeCount; ++type)
    if (!values[type].empty() &&
        tables_.read(BgpPathAttrType(listTypes[type].attribute), values[type], communities))
      values.faults.add(Fault::linkBandwidth);
  ++communities_[communities];
}

/// The groups of kinds or values.
std::unordered_map<std::string, U64> PathGroups::byCommunities() const {
  std::unordered_map<std::string, U64> groups;
  for (const auto& [communities, paths] : communities_) {
    std::set<std::string> keys;
    communities.forEachList([&](const auto& list) {
      forEachCommunity(*list, [&](const auto& one) {
        keys.insert(by_ == GroupBy::value
                        ? textOf(one)
                        : kindName(communityOf(list->pathAttribute, octetsOf(one))));
      });
    });
    for (const std::string& key : keys) groups[key] += paths;
  }
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
