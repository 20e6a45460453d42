// The distinct combinations of lists that paths carry, each with what a command counts of it.
//
//   Combinations<U64> combinations;
//   ++combinations.of(values).count;                  // once a path
//   combinations.forEach([](const PathCommunities& lists, U64 paths) { ... });
#pragma once

#include "Attributes.h"
#include "Numbering.h"

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
  struct Combination {
    const PathCommunities& lists;
    Count& count;
  };
  /// The combination of a path, valid until the next call. A list that is refused is one of the
  /// path's faults.
  Combination of(CommunityValues& values) {
    const U32 number = lists_.numberOf(readLists(tables_, values));
    if (counts_.size() <= number) counts_.resize(number + 1);
    return {lists_[number], counts_[number]};
  }
  /// Calls `use(lists, count)` for each, in the order in which they came.
  void forEach(auto use) const {
    for (U32 number = 0; number < counts_.size(); ++number) use(lists_[number], counts_[number]);
  }

 private:
  const CommunityTables tables_{sharedParser()};
  Numbering<PathCommunities, HashLists> lists_;
  std::vector<Count> counts_;
};

}  // namespace bgpcomm
