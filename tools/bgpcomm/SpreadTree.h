// Paths as a tree: one trunk as long as all have the same hops, a branch for each way on.
//
//   const SpreadTree tree({{{1, 2}, {7}}, {{1, 3}, {7, 8}}});     // hops, then values
//   for (const SpreadTree::Node& node : tree.nodes()) ...         // 1; of it 2 and 3
//
// 1. A node is a run of hops and all paths that go through it. Each path ends in a leaf of its own,
//    which has no hops when others go on from where it ends, or end there too.
// 2. A value stands at the smallest node outside of which no path has it.
//
// Cost: n log n of all hops and values. Nothing recurses, however long paths are.
#pragma once

#include <span>
#include <vector>

#include "Mox/Types.h"

namespace bgpcomm {
using namespace Mox::Words;

class SpreadTree {
 public:
  struct Path {
    std::vector<U32> hops;    ///< from the origin on
    std::vector<U32> values;  ///< none twice
  };
  /// A value, and how many paths have it.
  struct Carried {
    U32 value;
    U32 paths;
    friend bool operator==(const Carried&, const Carried&) = default;
  };
  struct Node {
    static constexpr U32 none = ~U32{0};

    U32 parent = none;                ///< its number; of the root none
    U32 level = 0;                    ///< ancestors
    std::size_t begin = 0;            ///< its first hop, as the paths count theirs
    std::size_t end = 0;              ///< the hop behind its last
    std::span<const U32> paths = {};  ///< their numbers
    bool isLeaf = false;
    bool isLastChild = true;
    std::vector<U32> values = {};    ///< that all its paths have
    std::vector<Carried> some = {};  ///< that some of its paths have
  };

  explicit SpreadTree(std::vector<Path> paths);
  SpreadTree(const SpreadTree&) = delete;
  SpreadTree& operator=(const SpreadTree&) = delete;

  /// The root first, if there are paths; behind each node its children with all of theirs: those of
  /// most paths first, equals by their hops.
  const std::vector<Node>& nodes() const { return nodes_; }
  const Path& path(U32 number) const { return paths_[number]; }

 private:
  class Builder;

  std::vector<Path> paths_;
  std::vector<U32> order_;  // of the paths by their hops: each node's stand together
  std::vector<Node> nodes_;
};

}  // namespace bgpcomm
