// Paths counted by what they have in common.
//
//   PathGroups groups(readGroupBy("kind"));
//   groups.add(path, values, filter);
//   for (const PathGroups::Group& group : groups.sorted()) use(group.key, group.paths);
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "Combinations.h"
#include "Numbering.h"
#include "PathFilter.h"

namespace bgpcomm {

enum class GroupBy { peer, origin, kind, value, prefixLength };
/// The words of `--group-by`, in the order of the enumeration.
inline constexpr std::array<std::string_view, 5> groupByNames = {"peer", "origin", "kind", "value",
                                                                 "prefix-length"};
/// Throws UsageError.
GroupBy readGroupBy(const std::string& name);

class PathGroups {
 public:
  struct Group {
    std::string key;
    U64 paths = 0;                 ///< of prefix lengths: prefixes
    std::string description = {};  ///< of a value that has one
  };

  explicit PathGroups(GroupBy by) : by_(by) {}

  /// Counts a path, once in each of its groups; a list that is refused is one of its faults.
  void add(const Path& path, CommunityValues& values, const PathFilter& filter);
  /// The largest first, equals by their keys.
  std::vector<Group> sorted() const;

 private:
  std::vector<Group> byCommunities() const;

  const GroupBy by_;
  std::unordered_map<std::string, U64, SeededHash> groups_;
  // Paths to group by kind or value: taken apart once, however many have the same.
  Combinations<U64> combinations_;
};

}  // namespace bgpcomm
