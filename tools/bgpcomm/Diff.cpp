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

/// Of which dumps something is: one bit for each.
using Sides = U8;
constexpr Sides bothSides = 0b11;
constexpr Sides only(PathJoin::Side side) { return Sides(1 << side); }

/// Values, lists and sets of route targets that one dump alone has, by their octets, in order.
struct Items {
  std::set<std::string> of[std::size(partWords)][listTypeCount];
};

/// The lists of both dumps, each once and held, so that its address is its own.
class Lists {
 public:
  void add(const PathCommunities& communities, Sides sides) {
    communities.forEachList([&](const auto& list) {
      using List = std::remove_cvref_t<decltype(*list)>;
      Entry<List>& entry = std::get<Entries<List>>(entries_)[list.get()];
      if (!entry.list) entry.list = list;
      entry.sides |= sides;
    });
  }

  /// The items of a dump that the other has not. Lists of both dumps, most of all, are looked at
  /// only when some value or set may be among theirs.
  Items itemsOf(PathJoin::Side side) const {
    Items items;
    forEach([&](std::size_t type, const auto& list, Sides sides) {
      if (sides == only(side))
        forEachItem(list, [&](Part part, std::string octets) {
          items.of[std::size_t(part)][type].insert(std::move(octets));
        });
    });
    forEach([&](std::size_t type, const auto& list, Sides sides) {
      const auto mayHave = [&](Part part) { return !items.of[std::size_t(part)][type].empty(); };
      if (sides != only(side) && (mayHave(Part::value) || mayHave(Part::routeTargets)))
        forEachItem(list, [&](Part part, const std::string& octets) {
          items.of[std::size_t(part)][type].erase(octets);
        });
    });
    return items;
  }

 private:
  template <class List>
  struct Entry {
    Mox::Ptr<const List> list;
    Sides sides = 0;
  };
  template <class List>
  using Entries = std::unordered_map<const List*, Entry<List>>;
  template <class... Lists>
  static std::tuple<Entries<Lists>...> entriesOf(const PathCommunitiesOf<Lists...>&);

  /// Calls `use(type, list, sides)`.
  template <class Use>
  void forEach(const Use& use) const {
    const auto ofType = [&]<class List>(const Entries<List>& entries) {
      const std::size_t type = listTypeOf(U8(List::pathAttribute));
      for (const auto& [address, entry] : entries) use(type, *entry.list, entry.sides);
    };
    std::apply([&](const auto&... entries) { (ofType(entries), ...); }, entries_);
  }

  template <class List, class Use>
  static void forEachItem(const List& list, const Use& use) {
    std::string octets;
    list.forEachValue([&](const auto& value) {
      const auto its = octetsOf(value);
      use(Part::value, std::string(asText(its)));
      octets += asText(its);
    });
    use(Part::list, std::move(octets));
    if constexpr (InternsValues<List>)
      if (const auto targets = list.classificationList(extCommClassificationRouteTarget)) {
        std::string set;
        forEachCommunity(*targets, [&](const auto& one) { set += asText(octetsOf(one)); });
        use(Part::routeTargets, std::move(set));
      }
  }

  decltype(entriesOf(PathCommunities())) entries_;
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

 private:
  void take(const Path& path, const Prefix& prefix, const PathCommunities& communities) {
    join_.add(side_, path, prefix, communities);
  }

  const std::string& file_;
  FileReading reading_;
  const CommunityTables& tables_;
  PathFilter& filter_;
  PathJoin& join_;
  const PathJoin::Side side_;
  PathTable<PathCommunities> updates_;
};

/// Prints a line for everything that differs, and counts.
class Differences {
 public:
  Differences(const CommunityTables& tables, const Options& options)
      : tables_(tables), options_(options) {}

  void addPath(const PathJoin::Pair& pair) {
    if (pair.isSame()) {
      ++samePaths_;
      return;
    }
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

  void addItems(const Items& before, const Items& after) {
    for (const Part part : {Part::value, Part::list, Part::routeTargets})
      for (std::size_t type = 0; type < listTypeCount; ++type)
        for (const Change change : {gone, come}) {
          U64 count = 0;
          for (const std::string& octets :
               (change == gone ? before : after).of[std::size_t(part)][type])
            if (isShown(count++)) printItem(change, part, type, octets);
          addTotal(change, nameOf(part, type), count);
        }
  }

  void printTotals() {
    for (const Change change : {gone, come, changed}) addTotal(change, "path", paths_[change]);
    if (!options_.json) print(totals_ + grouped(samePaths_) + "\tsame\tpath\n");
  }

 private:
  enum Change : U8 { gone, come, changed };
  static constexpr char changeSigns[] = {'-', '+', '*'};
  static constexpr std::string_view changeWords[] = {"gone", "come", "changed"};

  static std::string nameOf(Part part, std::size_t type) {
    return std::string(listTypes[type].key) + ' ' + std::string(partWords[std::size_t(part)]);
  }
  void printItem(Change change, Part part, std::size_t type, const std::string& itsOctets) {
    const Octets octets(reinterpret_cast<const U8*>(itsOctets.data()), itsOctets.size());
    const std::string text = listTypes[type].text(tables_, octets).text;
    const nlohmann::ordered_json object = {{"change", changeWords[change]},
                                           {"what", partWords[std::size_t(part)]},
                                           {"list", listTypes[type].key},
                                           {"text", text},
                                           {"octets", hex(octets)}};
    print(options_.json ? object.dump() + '\n'
                        : std::string(1, changeSigns[change]) + '\t' + nameOf(part, type) + '\t' +
                              text + '\n');
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
  U64 paths_[3] = {}, samePaths_ = 0;
  std::string totals_;
};

int runDiff(const Options& options) {
  const CommunityTables tables(sharedParser());
  PathFilter filter(options.filter);
  Differences differences(tables, options);
  Lists lists;
  PathJoin join([&](const PathJoin::Pair& pair) {
    differences.addPath(pair);
    if (pair.isSame()) return lists.add(*pair.before, bothSides);
    if (pair.before) lists.add(*pair.before, only(PathJoin::before));
    if (pair.after) lists.add(*pair.after, only(PathJoin::after));
  });
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
  differences.addItems(lists.itemsOf(PathJoin::before), lists.itemsOf(PathJoin::after));
  differences.printTotals();
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
