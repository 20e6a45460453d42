// Two dumps compared: paths that are alike or not, and the lists, values and sets of route targets
// that one of the dumps alone has.
//
//   const auto diff = diffDumps("monday.bz2", "tuesday.bz2", tables, filter, usePair);
//
// Both are read into one set of tables, so that equal lists are one object, and in turn, so that
// few paths wait for their likes: memory goes with what differs.
#pragma once

#include <optional>
#include <set>

#include "PathFilter.h"
#include "PathJoin.h"

namespace bgpcomm {

/// Things that are compared beside paths, in the order of the output.
enum class DiffPart : U8 { value, list, routeTargets };
inline constexpr std::string_view diffPartWords[] = {"value", "list", "route-target-set"};

/// Values, lists and sets of route targets that one dump alone has, by their octets, in order.
struct DiffItems {
  std::set<std::string> of[std::size(diffPartWords)][listTypeCount];
};

struct DumpDiff {
  DiffItems before, after;
  bool whole;  ///< Both files were read to their ends.
};
/// Calls `use` for each path that passes the filter, with its like if it has one. Of updates, the
/// paths that they leave are compared. Error lines are printed as other commands print them.
/// None when a file cannot be opened, or cannot be read and has no path: all of the other would
/// seem to differ.
std::optional<DumpDiff> diffDumps(const std::string& before, const std::string& after,
                                  const CommunityTables& tables, PathFilter& filter,
                                  const std::function<void(const PathJoin::Pair&)>& use);

}  // namespace bgpcomm
