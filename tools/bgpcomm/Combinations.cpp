#include "Combinations.h"

namespace bgpcomm {

PathCommunities readLists(const CommunityTables& tables, CommunityValues& values) {
  using Routing::Bgp::BgpPathAttrType;
  PathCommunities lists;
  for (std::size_t type = 0; type < listTypeCount; ++type)
    if (!values[type].empty() &&
        tables.read(BgpPathAttrType(listTypes[type].attribute), values[type], lists))
      values.faults.add(Fault::linkBandwidth);
  return lists;
}

std::size_t HashLists::operator()(const PathCommunities& lists) const {
  U64 hash = 0;
  lists.forEachType([&](const auto& list) {
    hash = (hash ^ reinterpret_cast<std::uintptr_t>(list.get())) * 0x9E3779B97F4A7C15;
    hash ^= hash >> 32;
  });
  return std::size_t(hash);
}

}  // namespace bgpcomm
