#include <algorithm>
#include <cstdio>
#include <map>
#include <nlohmann/json.hpp>
#include <numeric>
#include <set>

#include "AsWay.h"
#include "Commands.h"
#include "Descriptions.h"
#include "Hex.h"
#include "ListedValue.h"
#include "PathFilter.h"
#include "PathTable.h"
#include "PathText.h"
#include "Reading.h"
#include "SpreadTree.h"
#include "Terminal.h"
#include "Wrapped.h"

namespace bgpcomm {
namespace {

struct Options {
  std::string prefix;
  std::vector<std::string> files;
  PathFilterOptions filter;
  bool some = false, json = false;
};

/// Texts that have numbers, numbered anew in their order.
class Ranks {
 public:
  explicit Ranks(const Numbering<std::string>& texts)
      : texts_(texts), order_(texts.size()), ranks_(texts.size()) {
    std::iota(order_.begin(), order_.end(), U32{0});
    std::sort(order_.begin(), order_.end(), [&](U32 a, U32 b) { return texts[a] < texts[b]; });
    for (U32 rank = 0; rank < order_.size(); ++rank) ranks_[order_[rank]] = rank;
  }
  U32 of(U32 number) const { return ranks_[number]; }
  const std::string& text(U32 rank) const { return texts_[order_[rank]]; }

 private:
  const Numbering<std::string>& texts_;
  std::vector<U32> order_, ranks_;
};

/// A path of the prefix.
struct SpreadPath {
  Peer peer;
  Prefix prefix;
  std::string prefixText;
  std::vector<U32> times;  ///< that its hops stand in it
};

/// The paths of a prefix, or of several, as their peers have last announced them.
class Spread {
 public:
  explicit Spread(PathFilter& filter) : filter_(filter) {}

  /// A list that is refused is one of the path's faults.
  void add(const Path& path, CommunityValues& values) {
    if (!filter_.isInTime(path)) return;
    const bool announces = filter_.wantsOneOf(PrefixReader::announced(path));
    if (!announces && !path.stateChange && !filter_.wantsOneOf(PrefixReader::withdrawn(path)))
      return;
    std::optional<Announced> announced;
    if (announces && filter_.passes(path, values)) announced = announcedBy(path, values);
    table_.take(path, [&](const Prefix& prefix) {
      return filter_.wants(prefix) ? announced : std::nullopt;
    });
  }
  /// Makes the tree, when all is added.
  void end() {
    std::vector<std::vector<U32>> valuesOf;
    std::vector<SpreadTree::Path> paths;
    table_.forEach([&](const Path& path, const Prefix& prefix, const Announced& announced) {
      paths_.push_back(
          {path.peer, prefix, nlriText(prefix.addressFamily, prefix.nlri), announced.times});
      paths.push_back({announced.hops, {}});
      forEachValue(announced.lists, [&](const ListedValue& value) {
        paths.back().values.push_back(values_.numberOf(value.key()));
      });
    });
    hopRanks_.emplace(hops_);
    valueRanks_.emplace(values_);
    for (SpreadTree::Path& path : paths) {
      for (U32& hop : path.hops) hop = hopRanks_->of(hop);
      for (U32& value : path.values) value = valueRanks_->of(value);
    }
    tree_.emplace(std::move(paths));
  }

  // Valid from here on.

  const SpreadTree& tree() const { return *tree_; }
  const SpreadPath& path(U32 number) const { return paths_[number]; }
  std::string hop(const SpreadTree::Node& node, std::size_t hop) const {
    return hopText(hopRanks_->text(tree_->path(node.paths[0]).hops[hop]));
  }
  /// The least and the most times that a hop stands in the paths of a node.
  std::pair<U32, U32> times(const SpreadTree::Node& node, std::size_t hop) const {
    std::pair<U32, U32> times{~U32{0}, 0};
    for (const U32 path : node.paths) {
      times.first = std::min(times.first, paths_[path].times[hop]);
      times.second = std::max(times.second, paths_[path].times[hop]);
    }
    return times;
  }
  ListedValue value(U32 number) const { return ListedValue(valueRanks_->text(number)); }
  std::string valueText(U32 number) const { return value(number).text(tables_); }
  U64 peers() const {
    std::set<std::string> peers;
    for (const SpreadPath& path : paths_) peers.insert(peerKey(path.peer));
    return peers.size();
  }
  U64 prefixes() const {
    std::set<std::string_view> prefixes;
    for (const SpreadPath& path : paths_) prefixes.insert(path.prefixText);
    return prefixes.size();
  }
  /// The prefix of all paths of a node; nothing when there are several.
  std::optional<std::string> prefix(const SpreadTree::Node& node) const {
    const std::string& first = paths_[node.paths[0]].prefixText;
    for (const U32 path : node.paths)
      if (paths_[path].prefixText != first) return {};
    return first;
  }

 private:
  struct Announced {
    std::vector<U32> hops, times;
    PathCommunities lists;
  };
  Announced announcedBy(const Path& path, CommunityValues& values) {
    AsWay way{AsPath(path)};
    Announced announced{{}, std::move(way.times), readLists(tables_, values)};
    for (const AsHop& hop : way.hops) announced.hops.push_back(hops_.numberOf(hop));
    return announced;
  }

  PathFilter& filter_;
  const CommunityTables tables_{sharedParser()};
  PathTable<Announced> table_;  // where the addresses of peers and the prefixes lie
  Numbering<std::string> hops_, values_;
  std::vector<SpreadPath> paths_;
  std::optional<Ranks> hopRanks_, valueRanks_;
  std::optional<SpreadTree> tree_;
};

/// Prints for people.
class TreePrinter {
 public:
  TreePrinter(const Spread& spread, bool some) : spread_(spread), some_(some) {}

  void print(const std::string& prefix) {
    const auto& nodes = spread_.tree().nodes();
    U64 left = 0;
    const U64 prefixes = spread_.prefixes();
    several_ = prefixes > 1;
    bgpcomm::print(prefix + ": " + counted(nodes[0].paths.size(), "path") + " of " +
                   (several_ ? grouped(prefixes) + " prefixes and " : "") +
                   counted(spread_.peers(), "peer") + '\n');
    for (const SpreadTree::Node& node : nodes) {
      print(node);
      left += node.some.size();
    }
    if (left > 0 && !some_)
      bgpcomm::print(hanging("",
                             "--some shows " + counted(left, "value") +
                                 " that no AS has on all of its paths, and on no other",
                             2));
  }

 private:
  using Node = SpreadTree::Node;
  static constexpr U32 mostLevels = 12;  // that are indented

  void print(const Node& node) {
    // The guides of a node's children begin with its own.
    const U32 level = std::min(node.level, mostLevels);
    guides_.resize(level + 1);
    const std::string before = level ? guides_[level - 1] : "";
    guides_[level] = level ? before + (node.isLastChild ? "   " : "|  ") : "";
    const std::string inside = guides_[level] + (node.isLeaf ? "   " : "|  ");
    const char* const branch = level == 0 ? "" : node.isLastChild ? "`- " : "|- ";

    char count[16];
    std::snprintf(count, sizeof count, "%6s  ",
                  node.isLeaf ? "" : std::to_string(node.paths.size()).c_str());
    printLines(label(node), count + before + branch, inside);
    std::string values;
    for (const U32 value : node.values) values += spread_.valueText(value) + ' ';
    printLines(values, margin + inside, inside);
    if (!some_) return;
    std::map<U32, std::string, std::greater<>> byPaths;
    for (const auto& [value, paths] : node.some) byPaths[paths] += ' ' + spread_.valueText(value);
    for (const auto& [paths, texts] : byPaths)
      printLines(
          '(' + std::to_string(paths) + " of " + std::to_string(node.paths.size()) + ')' + texts,
          margin + inside, inside);
  }

  /// `AS64500 AS64501 x2`, and from whom a path is.
  std::string label(const Node& node) const {
    std::string label;
    if (node.level > mostLevels) label += '[' + std::to_string(node.level) + "] ";
    if (node.end == 0) label += "(several origins)";
    for (std::size_t hop = node.begin; hop < node.end; ++hop) {
      const auto [least, most] = spread_.times(node, hop);
      label += spread_.hop(node, hop);
      if (most > 1) label += " x" + std::to_string(least);
      if (most > least) label += ".." + std::to_string(most);
      label += ' ';
    }
    if (!node.isLeaf) return label;
    const SpreadPath& path = spread_.path(node.paths[0]);
    label += "at " + peerText(path.peer);
    if (path.prefix.pathId) label += " #" + std::to_string(*path.prefix.pathId);
    if (several_ || path.prefix.addressFamily.safi != safiUnicast) label += ' ' + path.prefixText;
    return label;
  }

  static void printLines(const std::string& text, const std::string& first,
                         const std::string& others) {
    std::string before = first;
    const std::string behind = margin + others;  // at least as long
    for (const std::string& line : wrapped(text, columnsBehind(behind.size()))) {
      bgpcomm::print(before + line + '\n');
      before = behind;
    }
  }

  static inline const std::string margin = std::string(8, ' ');  // of the counts
  const Spread& spread_;
  const bool some_;
  bool several_ = false;  // prefixes
  std::vector<std::string> guides_;
};

using Json = nlohmann::ordered_json;

/// An object for each node, for programs.
void printJson(const Spread& spread) {
  U32 number = 0;
  for (const SpreadTree::Node& node : spread.tree().nodes()) {
    Json::array_t as, least, most, values, octets, some, someOctets, somePaths, meanings;
    for (std::size_t hop = node.begin; hop < node.end; ++hop) {
      const auto times = spread.times(node, hop);
      as.emplace_back(spread.hop(node, hop));
      least.emplace_back(times.first);
      most.emplace_back(times.second);
    }
    for (const U32 value : node.values) {
      values.emplace_back(spread.valueText(value));
      octets.emplace_back(hex(spread.value(value).octets()));
      meanings.emplace_back(descriptionOf(spread.value(value).community()));
    }
    for (const auto& [value, paths] : node.some) {
      some.emplace_back(spread.valueText(value));
      someOctets.emplace_back(hex(spread.value(value).octets()));
      somePaths.emplace_back(paths);
    }
    const SpreadPath& path = spread.path(node.paths[0]);
    const auto prefix = spread.prefix(node);
    Json object = {{"node", number++},
                   {"parent", node.level ? Json(node.parent) : Json()},
                   {"level", node.level},
                   {"as", std::move(as)},
                   {"timesLeast", std::move(least)},
                   {"timesMost", std::move(most)},
                   {"paths", node.paths.size()},
                   {"peer", node.isLeaf ? Json(addressText(path.peer.address)) : Json()},
                   {"peerAs", node.isLeaf ? Json(path.peer.asNumber) : Json()},
                   {"prefix", prefix ? Json(*prefix) : Json()}};
    if (node.isLeaf && path.prefix.pathId) object["pathId"] = *path.prefix.pathId;
    object["values"] = std::move(values);
    object["octets"] = std::move(octets);
    if (descriptions()) object["descriptions"] = std::move(meanings);
    object.update({{"some", std::move(some)},
                   {"someOctets", std::move(someOctets)},
                   {"somePaths", std::move(somePaths)}});
    print(object.dump() + '\n');
  }
}

int runSpread(const Options& options) {
  PathFilterOptions asked = options.filter;
  asked.prefixes = {options.prefix};
  asked.prefixOption = "PREFIX";
  PathFilter filter(asked);
  Spread spread(filter);
  bool good = true;
  for (const std::string& file : options.files)
    good &= readReporting(
        file,
        [&](const Path& path, CommunityValues& values, Position) { spread.add(path, values); },
        {.updates = PathCutter::Updates::all});
  spread.end();
  if (spread.tree().nodes().empty()) {
    // A file that was not read to its end may have one.
    if (good) printError(options.prefix, ": no path that is asked for has this prefix");
    return exitBadData;
  }
  if (options.json)
    printJson(spread);
  else
    TreePrinter(spread, options.some).print(options.prefix);
  return good ? 0 : exitBadData;
}

}  // namespace

void addSpread(CLI::App& app, int& exitCode) {
  const auto [command, options] =
      addCommand(app,
                 {"spread", "Print a prefix's paths as a tree from its origin",
                  "A line has the paths through one or more ASes, from the origin on; x2 where an\n"
                  "AS stands in them twice in a row, x1..3 where that differs. Under it are the\n"
                  "values that all of its paths have, and no other path. A path ends at its peer.\n"
                  "A peer's last announcement in the files counts, until it is withdrawn or the\n"
                  "session ends. Exit code 1 when no path has the prefix, or a file cannot be\n"
                  "read to its end.\n\n"
                  "Example: bgpcomm spread 192.0.2.0/24 rib.bz2 updates.gz\n"
                  "         bgpcomm spread 192.0.2.0/24 --more-specific rib.bz2"},
                 exitCode, runSpread);
  command
      .add_option("PREFIX", options.prefix,
                  "10.0.0.0/8, 2001:db8::/32; an address alone is a\nhost's")
      ->required()
      ->type_name("");
  addFiles(command, options.files);
  addFilterOptions(command, options.filter, false);
  command.add_flag("--some", options.some,
                   "Also values that only some paths of an AS have,\nand no other, with how many");
  addTextOptions(command);
  addJsonLines(command, options.json);
}

}  // namespace bgpcomm
