#include "SpreadTree.h"

#include <algorithm>
#include <numeric>

namespace bgpcomm {
namespace {

/// How many hops two paths have in common from the origin on.
std::size_t commonHops(const SpreadTree::Path& a, const SpreadTree::Path& b) {
  const auto ends = std::mismatch(a.hops.begin(), a.hops.end(), b.hops.begin(), b.hops.end());
  return std::size_t(ends.first - a.hops.begin());
}

}  // namespace

/// Adds the paths one after the other, in the order of their hops. Open are the nodes that the last
/// one goes through: paths to come may belong to them.
class SpreadTree::Builder {
 public:
  explicit Builder(SpreadTree& tree) : tree_(tree) {
    const std::size_t count = tree.order_.size();
    lastWith_.resize(count);
    findCarriers();
    for (U32 at = 0; at < count; ++at) add(at);
    for (const U32 node : open_) made_[node].end = U32(count);
    putInOrder();
  }

 private:
  /// A node in the making: paths by their places in the order.
  struct Made {
    U32 first;
    U32 end;
    std::size_t depth;  // hops from the origin to its end
    bool isLeaf = false;
    U32 parent = Node::none;
    std::vector<Carried> carried = {};
  };
  struct Carriers {
    U32 first = Node::none;
    U32 last = 0;
    U32 count = 0;
  };

  const Path& pathAt(std::size_t at) const { return tree_.paths_[tree_.order_[at]]; }

  void findCarriers() {
    for (U32 at = 0; at < tree_.order_.size(); ++at)
      for (const U32 value : pathAt(at).values) {
        if (carriers_.size() <= value) carriers_.resize(value + 1);
        Carriers& its = carriers_[value];
        its.first = std::min(its.first, at);
        its.last = at;
        ++its.count;
      }
    for (U32 value = 0; value < carriers_.size(); ++value)
      if (carriers_[value].count > 0) lastWith_[carriers_[value].last].push_back(value);
  }

  void add(U32 at) {
    if (at > 0) part(at);
    const auto leaf = U32(made_.size());
    made_.push_back({at, at + 1, pathAt(at).hops.size(), true});
    open_.push_back(leaf);
    // All nodes with both the first and the last path that have a value are open.
    for (const U32 value : lastWith_[at]) {
      const Carriers& its = carriers_[value];
      const auto behind =
          std::upper_bound(open_.begin(), open_.end(), its.first,
                           [this](U32 first, U32 node) { return first < made_[node].first; });
      made_[*(behind - 1)].carried.push_back({value, its.count});
    }
  }

  /// Closes the nodes that a path does not go through; where it parts is a node, made if need be.
  void part(U32 at) {
    const std::size_t common = commonHops(pathAt(at - 1), pathAt(at));
    U32 child = Node::none;
    while (!open_.empty() && (made_[open_.back()].isLeaf || made_[open_.back()].depth > common)) {
      adopt(open_.back(), child);
      child = open_.back();
      made_[child].end = at;
      open_.pop_back();
    }
    if (open_.empty() || made_[open_.back()].depth < common) {
      const U32 first = made_[child].first;
      open_.push_back(U32(made_.size()));
      made_.push_back({first, 0, common});
    }
    adopt(open_.back(), child);
  }
  void adopt(U32 parent, U32 child) {
    if (child != Node::none) made_[child].parent = parent;
  }

  void putInOrder() {
    for (std::size_t i = 0; i + 1 < open_.size(); ++i) adopt(open_[i], open_[i + 1]);
    std::vector<std::vector<U32>> children(made_.size());
    for (U32 node = 0; node < made_.size(); ++node)
      if (made_[node].parent != Node::none) children[made_[node].parent].push_back(node);
    if (open_.empty()) return;
    struct Next {
      U32 made, parent;
      bool isLastChild;
    };
    std::vector<Next> left{{open_.front(), Node::none, true}};
    while (!left.empty()) {
      const auto [made, parent, isLastChild] = left.back();
      left.pop_back();
      const auto number = U32(tree_.nodes_.size());
      tree_.nodes_.push_back(nodeOf(made_[made], parent, isLastChild));
      std::vector<U32>& its = children[made];
      std::ranges::sort(its, [this](U32 a, U32 b) {
        const U32 pathsOfA = made_[a].end - made_[a].first,
                  pathsOfB = made_[b].end - made_[b].first;
        return pathsOfA != pathsOfB ? pathsOfA > pathsOfB : made_[a].first < made_[b].first;
      });
      for (auto child = its.rbegin(); child != its.rend(); ++child)
        left.push_back({*child, number, child == its.rbegin()});
    }
  }

  Node nodeOf(const Made& made, U32 parent, bool isLastChild) const {
    Node node;
    node.parent = parent;
    if (parent != Node::none) {
      node.level = tree_.nodes_[parent].level + 1;
      node.begin = tree_.nodes_[parent].end;
    }
    node.end = made.depth;
    node.paths = std::span(tree_.order_).subspan(made.first, made.end - made.first);
    node.isLeaf = made.isLeaf;
    node.isLastChild = isLastChild;
    for (const Carried& carried : made.carried)
      if (carried.paths == node.paths.size())
        node.values.push_back(carried.value);
      else
        node.some.push_back(carried);
    std::ranges::sort(node.values);
    std::ranges::sort(node.some, {}, &Carried::value);
    return node;
  }

  SpreadTree& tree_;
  std::vector<Carriers> carriers_;          // by value
  std::vector<std::vector<U32>> lastWith_;  // values, by the last path that has them
  std::vector<Made> made_;
  std::vector<U32> open_;  // from the root on
};

SpreadTree::SpreadTree(std::vector<Path> paths) : paths_(std::move(paths)), order_(paths_.size()) {
  std::iota(order_.begin(), order_.end(), U32{0});
  std::stable_sort(order_.begin(), order_.end(),
                   [this](U32 a, U32 b) { return paths_[a].hops < paths_[b].hops; });
  Builder(*this);
}

}  // namespace bgpcomm
