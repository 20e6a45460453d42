// The distinct combinations of lists that paths carry, each with what a command counts of it.
//
//   Combinations<U64> combinations;
//   ++combinations.of(values).second;                  // once a path
//   for (const auto& [lists, paths] : combinations.all()) use(lists, paths);
#pragma once

#include <unordered_map>

#include "Attributes.h"

namespace bgpcomm {

using Routing::Bgp::PathCommunities;

/// Interns the lists of a path; a list that is refused is one of its faults.
PathCommunities readLists(const CommunityTables& tables, CommunityValues& values);

struct HashLists {
  std::size_t operator()(const PathCommunities& lists) const;
};

/// Takes memory for each combination, none for a path.
template <class Count>
class Combinations {
 public:
  using Counts = std::unordered_map<PathCommunities, Count, HashLists>;

  /// The combination of a path and its count, made if there is none. A list that is refused is one
  /// of the path's faults.
  typename Counts::value_type& of(CommunityValues& values) {
    return *counts_.try_emplace(readLists(tables_, values)).first;
  }
  const Counts& all() const { return counts_; }

 private:
  const CommunityTables tables_{sharedParser()};
  Counts counts_;
};

}  // namespace bgpcomm
