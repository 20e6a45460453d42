#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>
#include <unordered_map>

#include "Commands.h"
#include "HeldListsOf.h"
#include "ListValues.h"
#include "PathFilter.h"
#include "PathJoin.h"
#include "PathTable.h"
#include "Reading.h"
#include "Terminal.h"

namespace bgpcomm {
namespace {

using namespace Routing::Bgp;

struct Options {
  std::string before, after;
  PathFilterOptions filter;
  bool json = false;
  U64 limit = 10;
};

/// Things that are compared beside paths, in the order of the output.
enum class Part : U8 { value, list, routeTargets };
constexpr std::string_view partWords[] = {"value", "list", "route-target-set"};

/// A value, a list or a set of route targets, by its octets.
struct Item {
  Part part;
  std::size_t type;
  std::string octets;
  friend auto operator<=>(const Item&, const Item&) = default;
};

/// The values, lists and sets of a dump.
class Items {
 public:
  void add(const PathCommunities& communities) {
    communities.forEachList([&](const auto& list) {
      using List = std::remove_cvref_t<decltype(*list)>;
      auto& held = std::get<Held<List>>(held_);
      if (held.try_emplace(list.get(), list).second) addList(*list);
    });
  }
  const std::set<Item>& items() const { return items_; }

 private:
  template <class List>
  using Held = std::unordered_map<const List*, Mox::Ptr<const List>>;
  template <class... Lists>
  static std::tuple<Held<Lists>...> heldOf(const PathCommunitiesOf<Lists...>&);

  template <class List>
  void addList(const List& list) {
    const std::size_t type = listTypeOf(U8(List::pathAttribute));
    std::string octets;
    list.forEachValue([&](const auto& value) {
      const auto its = octetsOf(value);
      items_.insert({Part::value, type, std::string(asText(its))});
      octets += asText(its);
    });
    items_.insert({Part::list, type, std::move(octets)});
    if constexpr (InternsValues<List>)
      if (const auto targets = list.classificationList(extCommClassificationRouteTarget)) {
        std::string set;
        forEachCommunity(*targets, [&](const auto& one) { set += asText(octetsOf(one)); });
        items_.insert({Part::routeTargets, type, std::move(set)});
      }
  }

  // Each list once, held so that its address is its own.
  decltype(heldOf(PathCommunities())) held_;
  std::set<Item> items_;
};

/// One file that is read. Both share their tables, so lists are equal when they are the same
/// object.
class Dump {
 public:
  Dump(const std::string& file, const CommunityTables& tables, PathFilter& filter, PathJoin& join,
       PathJoin::Side side)
      : file_(file),
        reading_(file, {.updates = PathCutter::Updates::all}),
        tables_(tables),
        filter_(filter),
        join_(join),
        side_(side) {}

  /// Reads on for one path; false at the end of the file. What updates leave comes then.
  bool next() {
    const Path* const path = reading_.next();
    if (!path) {
      updates_.forEach(
          [this](const Path& left, const Prefix& prefix, const PathCommunities& communities) {
            take(left, prefix, communities);
          });
      return false;
    }
    CommunityValues& values = reading_.values();
    PathCommunities communities;
    for (std::size_t type = 0; type < listTypeCount; ++type)
      if (!values[type].empty() &&
          tables_.read(BgpPathAttrType(listTypes[type].attribute), values[type], communities))
        values.faults.add(Fault::linkBandwidth);
    const bool isWanted =
        (path->fromTable || !path->attributes.empty()) && filter_.passes(*path, values);
    const auto entry = [&](const Prefix& prefix) {
      return isWanted && filter_.wants(prefix) ? std::optional(communities) : std::nullopt;
    };
    if (!path->fromTable)
      updates_.take(*path, entry);
    else if (isWanted)
      visitPrefixes(*path, [&](const Prefix& prefix) { take(*path, prefix, communities); });
    return true;
  }
  void outOfMemory() { reading_.outOfMemory(); }
  /// Says what was passed over; whether the file was read to its end.
  bool report() const {
    reportMalformed(file_, reading_.result());
    return !reading_.result().failed;
  }
  const std::set<Item>& items() const { return items_.items(); }

 private:
  void take(const Path& path, const Prefix& prefix, const PathCommunities& communities) {
    items_.add(communities);
    join_.add(side_, path, prefix, communities);
  }

  const std::string& file_;
  FileReading reading_;
  const CommunityTables& tables_;
  PathFilter& filter_;
  PathJoin& join_;
  const PathJoin::Side side_;
  PathTable<PathCommunities> updates_;
  Items items_;
};

/// Prints a line for everything that differs, and counts.
class Differences {
 public:
  Differences(const CommunityTables& tables, const Options& options)
      : tables_(tables), options_(options) {}

  void addPath(const PathJoin::Pair& pair) {
    const Change change = !pair.before ? come : !pair.after ? gone : changed;
    if (!isShown(paths_[change]++)) return;
    const auto [afi, nlri, pathId] = pair.prefix;
    const std::string prefix = nlriText(afi, nlri);
    if (options_.json) {
      nlohmann::ordered_json object = {{"change", changeWords[change]},
                                       {"what", "path"},
                                       {"peer", addressText(pair.peer.address)},
                                       {"peerAs", pair.peer.asNumber},
                                       {"prefix", prefix}};
      if (pathId) object["pathId"] = *pathId;
      object["before"] = pair.before ? textsOf(*pair.before) : "";
      object["after"] = pair.after ? textsOf(*pair.after) : "";
      return print(object.dump() + '\n');
    }
    std::string line = std::string(1, changeSigns[change]) + "\tpath\t" +
                       addressText(pair.peer.address) + " AS" + std::to_string(pair.peer.asNumber) +
                       '\t' + prefix + (pathId ? '#' + std::to_string(*pathId) : "");
    for (const PathCommunities* one : {pair.before, pair.after})
      if (one) line += '\t' + textsOf(*one);
    print(line + '\n');
  }

  void addItems(const std::set<Item>& before, const std::set<Item>& after) {
    std::vector<Item> items[2];
    std::ranges::set_difference(before, after, std::back_inserter(items[gone]));
    std::ranges::set_difference(after, before, std::back_inserter(items[come]));
    for (const Part part : {Part::value, Part::list, Part::routeTargets})
      for (std::size_t type = 0; type < listTypeCount; ++type)
        for (const Change change : {gone, come}) {
          U64 count = 0;
          for (const Item& item : items[change])
            if (item.part == part && item.type == type && isShown(count++)) printItem(change, item);
          addTotal(change, nameOf(part, type), count);
        }
  }

  void printTotals(U64 samePaths) {
    for (const Change change : {gone, come, changed}) addTotal(change, "path", paths_[change]);
    if (!options_.json) print(totals_ + grouped(samePaths) + "\tsame\tpath\n");
  }

 private:
  enum Change : U8 { gone, come, changed };
  static constexpr char changeSigns[] = {'-', '+', '*'};
  static constexpr std::string_view changeWords[] = {"gone", "come", "changed"};

  static std::string nameOf(Part part, std::size_t type) {
    return std::string(listTypes[type].key) + ' ' + std::string(partWords[std::size_t(part)]);
  }
  void printItem(Change change, const Item& item) {
    const Octets octets(reinterpret_cast<const U8*>(item.octets.data()), item.octets.size());
    const std::string text = listTypes[item.type].text(tables_, octets).text;
    const nlohmann::ordered_json object = {{"change", changeWords[change]},
                                           {"what", partWords[std::size_t(item.part)]},
                                           {"list", listTypes[item.type].key},
                                           {"text", text},
                                           {"octets", hex(octets)}};
    print(options_.json ? object.dump() + '\n'
                        : std::string(1, changeSigns[change]) + '\t' +
                              nameOf(item.part, item.type) + '\t' + text + '\n');
  }
  std::string textsOf(const PathCommunities& communities) const {
    std::string text;
    communities.forEachList([&](const auto& list) {
      forEachCommunity(*list,
                       [&](const auto& one) { (text += text.empty() ? "" : " ") += textOf(one); });
    });
    return text.empty() ? "-" : text;
  }
  bool isShown(U64 shown) const {
    return options_.json || !options_.limit || shown < options_.limit;
  }
  void addTotal(Change change, const std::string& what, U64 count) {
    if (count)
      totals_ += grouped(count) + '\t' + std::string(changeWords[change]) + '\t' + what + '\n';
  }

  const CommunityTables& tables_;
  const Options& options_;
  U64 paths_[3] = {};
  std::string totals_;
};

int runDiff(const Options& options) {
  const CommunityTables tables(sharedParser());
  PathFilter filter(options.filter);
  Differences differences(tables, options);
  PathJoin join([&](const PathJoin::Pair& pair) { differences.addPath(pair); });
  Dump before(options.before, tables, filter, join, PathJoin::before);
  Dump after(options.after, tables, filter, join, PathJoin::after);
  // In turn, so that few paths wait for their likes.
  bool more[] = {true, true};
  try {
    while (more[0] || more[1]) {
      if (more[0]) more[0] = before.next();
      if (more[1]) more[1] = after.next();
    }
  } catch (const std::bad_alloc&) {
    (more[0] ? before : after).outOfMemory();
  }
  join.end();
  differences.addItems(before.items(), after.items());
  differences.printTotals(join.same());
  const bool good = before.report();
  return after.report() && good ? 0 : exitBadData;
}

}  // namespace

void addDiff(CLI::App& app, int& exitCode) {
  const auto [command, options] = addCommand(
      app,
      {"diff", "Print what differs between two dumps",
       "A line for each value, list and set of route targets that only one of the files\n"
       "has, and for each path that only one has or whose communities changed: - or +\n"
       "or *, what it is, its text; of a path the peer, the prefix, and its communities\n"
       "before and after. Then how many there are of each. Of updates, what they leave\n"
       "counts. Fields are separated by tabs.\n\n"
       "Example: bgpcomm diff rib.monday.bz2 rib.tuesday.bz2"},
      exitCode, runDiff);
  command.add_option("BEFORE", options.before, "MRT dump: plain, gz, bz2, xz or zst")
      ->required()
      ->type_name("");
  command.add_option("AFTER", options.after, "The dump to compare with it; - is stdin")
      ->required()
      ->type_name("");
  addFilterOptions(command, options.filter);
  command
      .add_option("--limit", options.limit,
                  "At most so many lines of each sort (10);\n0 for all, as with --json")
      ->option_text("N");
  addTextOptions(command);
  addJsonLines(command, options.json);
}

}  // namespace bgpcomm
