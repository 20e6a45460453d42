#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <unordered_set>

#include "Commands.h"
#include "Descriptions.h"
#include "Hex.h"
#include "ListedValue.h"
#include "Meant.h"
#include "PathFilter.h"
#include "PathText.h"
#include "Reading.h"
#include "Terminal.h"
#include "Wrapped.h"

namespace bgpcomm {
namespace {

struct Options {
  std::vector<std::string> files;
  PathFilterOptions filter;
  std::string by = "value";
  U64 limit = 20;
  bool json = false;
};

enum class By { value, kind, list, routeTarget, peer, prefix, origin };
constexpr std::array<std::string_view, 7> byNames = {"value", "kind",   "list",  "route-target",
                                                     "peer",  "prefix", "origin"};

By readBy(const std::string& name) { return By(placeAmong(byNames, name, "--by")); }

struct Figures {
  U64 paths = 0;
  U64 lists = 0;         ///< distinct ones
  U64 octetsBefore = 0;  ///< of all paths' lists
  U64 octetsAfter = 0;   ///< of the distinct lists
};

/// Adds up paths and their lists by groups; a group stands under its key.
class Groups {
 public:
  struct Group {
    std::string key;
    Figures figures;
  };

  void addPaths(const std::string& key, U64 paths) { at(key).paths += paths; }
  /// So many octets of a list are of the group, on so many paths.
  /// REQUIRES: the list lives as long as this.
  void addOctets(const std::string& key, const void* list, U64 octets, U64 paths) {
    Figures& figures = at(key);
    figures.octetsBefore += octets * paths;
    if (!pairs_.insert(U64{keys_.numberOf(key)} << 32 | lists_.numberOf(list)).second) return;
    ++figures.lists;
    figures.octetsAfter += octets;
  }
  /// Paths that carry the same.
  void add(const std::string& key, const PathCommunities& lists, U64 paths) {
    addPaths(key, paths);
    lists.forEachList([&]<class List>(const Mox::Ptr<const List>& list) {
      addOctets(key, list.get(), list->comms() * valueSizeOf<List>, paths);
    });
  }

  /// The most paths first, equals by their keys.
  std::vector<Group> sorted() const {
    std::vector<Group> sorted;
    for (U32 number = 0; number < figures_.size(); ++number)
      sorted.push_back({keys_[number], figures_[number]});
    std::ranges::sort(sorted, [](const Group& a, const Group& b) {
      return a.figures.paths != b.figures.paths ? a.figures.paths > b.figures.paths : a.key < b.key;
    });
    return sorted;
  }

 private:
  Figures& at(const std::string& key) {
    const U32 number = keys_.numberOf(key);
    if (figures_.size() <= number) figures_.resize(number + 1);
    return figures_[number];
  }

  Numbering<std::string> keys_;
  std::vector<Figures> figures_;
  Numbering<const void*> lists_;
  std::unordered_set<U64> pairs_;  // numbers of a group, and of one of its lists
};

/// The octets of each key in a list.
using KeyOctets = std::map<std::string, U64>;

template <class List>
KeyOctets keysOf(By by, const List& list) {
  const std::size_t type = listTypeOf(U8(List::pathAttribute));
  KeyOctets keys;
  ListedValue whole(type, {});
  forEachCommunity(list, [&](const auto& one) {
    const auto octets = octetsOf(one);
    bool isRouteTarget = false;
    if constexpr (requires { one.classification(); })
      isRouteTarget = one.classification() == Routing::Bgp::extCommClassificationRouteTarget;
    const ListedValue value(type, octets);
    if (by == By::kind)
      keys[kindName(value.community())] += octets.size();
    else if (by == By::list)
      whole = ListedValue(whole.key() + std::string(asText(octets)));
    else if (by == By::value || isRouteTarget)
      keys[value.key()] += octets.size();
  });
  if (by == By::list) keys[whole.key()] = whole.octets().size();
  return keys;
}

class Top {
 public:
  explicit Top(By by) : by_(by) {}

  void add(const Path& path, CommunityValues& values, const PathFilter& filter) {
    const auto combination = combinations_.of(values);
    ++combination.count;
    const PathCommunities& lists = combination.lists;
    if (by_ == By::peer) groups_.add(peerText(path.peer), lists, 1);
    if (by_ == By::origin) groups_.add(originText(path), lists, 1);
    if (by_ != By::prefix) return;
    visitPrefixes(path, [&](const Prefix& prefix) {
      if (filter.wants(prefix)) groups_.add(nlriText(prefix.addressFamily, prefix.nlri), lists, 1);
    });
  }

  Figures whole() const {
    Groups groups;
    combinations_.forEach(
        [&](const PathCommunities& lists, U64 paths) { groups.add("", lists, paths); });
    const auto sorted = groups.sorted();
    return sorted.empty() ? Figures() : sorted[0].figures;
  }
  std::vector<Groups::Group> groups() {
    if (by_ != By::peer && by_ != By::prefix && by_ != By::origin)
      combinations_.forEach(
          [&](const PathCommunities& lists, U64 paths) { addKeys(lists, paths); });
    return groups_.sorted();
  }

 private:
  void addKeys(const PathCommunities& lists, U64 paths) {
    std::set<std::string> keys;
    lists.forEachList([&](const auto& list) {
      for (const auto& [key, octets] : keysOf(by_, *list)) {
        groups_.addOctets(key, list.get(), octets, paths);
        keys.insert(key);
      }
    });
    for (const std::string& key : keys) groups_.addPaths(key, paths);
  }

  const By by_;
  Combinations<U64> combinations_;
  Groups groups_;
};

/// A column of the output, and where it stands.
struct Column {
  std::string_view title, key;
  U64 Figures::*figure;
};
constexpr Column columns[] = {{"paths", "paths", &Figures::paths},
                              {"lists", "lists", &Figures::lists},
                              {"octets", "octetsBefore", &Figures::octetsBefore},
                              {"shared", "octetsAfter", &Figures::octetsAfter}};

double percent(U64 part, U64 whole) { return whole ? 100.0 * double(part) / double(whole) : 0; }

class Printer {
 public:
  Printer(By by, const Figures& whole) : by_(by), whole_(whole) {}

  void printHead() {
    std::vector<std::string> cells;
    for (const Column& column : columns)
      cells.insert(cells.end(), {std::string(column.title), "%"});
    printCells(std::move(cells), std::string(byNames[std::size_t(by_)]));
  }
  void printRow(const Figures& figures, const std::string& text) {
    std::vector<std::string> cells;
    for (const Column& column : columns) {
      char share[16];
      std::snprintf(share, sizeof share, "%.1f",
                    percent(figures.*column.figure, whole_.*column.figure));
      cells.insert(cells.end(), {grouped(figures.*column.figure), share});
    }
    printCells(std::move(cells), text);
  }
  /// Prints the rows that a terminal gets all at once.
  void end() const { table_.print(); }
  /// Prints the figures of all paths, and how many groups there are.
  void printTotalJson(std::size_t groups) const {
    nlohmann::ordered_json object = {{"what", "total"}, {"groups", groups}};
    for (const Column& column : columns) object[std::string(column.key)] = whole_.*column.figure;
    print(object.dump() + '\n');
  }
  void printJson(const Groups::Group& group) const {
    auto object = head(group.key);
    for (const Column& column : columns) {
      const U64 figure = group.figures.*column.figure;
      object[std::string(column.key)] = figure;
      object[std::string(column.key) + "Percent"] =
          std::round(100 * percent(figure, whole_.*column.figure)) / 100;
    }
    print(object.dump() + '\n');
  }
  /// A group as people read it.
  std::string text(const std::string& key) const {
    return isOfList() ? ListedValue(key).text(tables_) : key;
  }

 private:
  bool isOfList() const { return by_ == By::value || by_ == By::list || by_ == By::routeTarget; }
  nlohmann::ordered_json head(const std::string& key) const {
    const ListedValue value(key);
    if (by_ == By::list) {
      nlohmann::ordered_json object = {{"list", value.text(tables_)},
                                       {"octets", hex(value.octets())},
                                       {"attribute", value.type().key}};
      if (descriptions()) object["descriptions"] = descriptionsIn(U8(key[0]), value.octets());
      return object;
    }
    if (isOfList()) return value.json(tables_);
    return {{byNames[std::size_t(by_)], key}};
  }
  /// Figures and shares in turn.
  void printCells(std::vector<std::string> cells, const std::string& text) {
    if (isTerminal_) return table_.add(std::move(cells), text);
    std::string line;
    for (std::size_t i = 0; i < cells.size(); ++i) {
      const std::size_t width = i % 2 ? 6 : 12;
      line.append(width - std::min(width, cells[i].size()), ' ').append(cells[i]);
    }
    print(line + "  " + text + '\n');
  }

  const By by_;
  const Figures whole_;
  const CommunityTables tables_{sharedParser()};
  const bool isTerminal_ = terminalColumns().has_value();
  TerminalTable table_;
};

int runTop(const Options& options) {
  PathFilter filter(options.filter);
  const By by = readBy(options.by);
  Top top(by);
  bool good = true;
  for (const std::string& file : options.files)
    good &= readReporting(file, [&](const Path& path, CommunityValues& values, Position) {
      if (filter.passes(path, values)) top.add(path, values, filter);
    });
  const auto groups = top.groups();
  const Figures whole = top.whole();
  Printer printer(by, whole);
  if (options.json) {
    printer.printTotalJson(groups.size());
  } else {
    printer.printHead();
    printer.printRow(whole, "(all)");
  }
  const auto shown = options.limit ? std::min<U64>(options.limit, groups.size()) : groups.size();
  for (const Groups::Group& group : std::span(groups).first(shown)) {
    if (options.json)
      printer.printJson(group);
    else
      printer.printRow(group.figures, printer.text(group.key));
  }
  printer.end();
  return good ? 0 : exitBadData;
}

}  // namespace

void addTop(CLI::App& app, int& exitCode) {
  const auto [command, options] =
      addCommand(app,
                 {"top", "Print what has most paths, lists and octets",
                  "Columns, each with its share of (all): paths; their distinct lists; octets of\n"
                  "the lists' values as all paths carry them; the same, each distinct list once.\n"
                  "  value, kind     paths and lists with it; octets of its values alone\n"
                  "  route-target    the same, of route targets\n"
                  "  list            the communities of one attribute; all of its octets\n"
                  "  peer, origin    paths from it, with or without communities; all octets\n"
                  "  prefix          the same; an UPDATE counts with each prefix that it\n"
                  "                  announces; takes memory for every prefix\n"
                  "Repeats inside of an attribute do not count. What peers, origins and prefixes\n"
                  "have in common counts for each of them. Exit code 1 when a file cannot be read\n"
                  "to its end; what is malformed is counted on stderr, and passed over.\n\n"
                  "Example: bgpcomm top --by kind rib.bz2"},
                 exitCode, runTop);
  addFiles(command, options.files);
  addFilterOptions(command, options.filter);
  takesOneOf(command
                 .add_option("--by", options.by,
                             "value (default), kind, list, route-target, peer,\nprefix or origin")
                 ->option_text("WHAT"),
             {byNames.begin(), byNames.end()});
  command.add_option("--limit", options.limit, "At most so many lines (default 20; 0: all)")
      ->option_text("N");
  addTextOptions(command);
  addJsonLines(command, options.json);
}

}  // namespace bgpcomm
