#include <algorithm>
#include <nlohmann/json.hpp>

#include "Commands.h"
#include "Descriptions.h"
#include "Hex.h"
#include "PathFilter.h"
#include "PathGroups.h"
#include "PathText.h"
#include "Reading.h"
#include "Terminal.h"
#include "Wrapped.h"
#include "mrt/AsPath.h"
#include "mrt/NextHop.h"

namespace bgpcomm {
namespace {

struct Options {
  std::vector<std::string> files;
  PathFilterOptions filter;
  bool json = false, withdrawals = false, count = false;
  std::string groupBy, collector;
  U64 limit = 0;
};

class PathPrinter {
 public:
  PathPrinter(const Options& options, const PathFilter& filter)
      : json_(options.json), collector_(options.collector), filter_(filter) {}

  /// A list that is refused is one of the path's faults.
  void print(const Path& path, CommunityValues& values, Position position) {
    if (json_) return bgpcomm::print(jsonLine(path, values, position));
    printFields(textLine(path, PrefixReader::announced(path), communities(path, values)));
  }
  /// The prefixes that a message takes back.
  void printWithdrawn(const Path& path, Position position) {
    if (!json_) return printFields(textLine(path, PrefixReader::withdrawn(path), "withdrawn"));
    nlohmann::ordered_json object = head(path);
    addPrefixes(object, "withdrawn", PrefixReader::withdrawn(path));
    addSource(object, position);
    bgpcomm::print(object.dump() + '\n');
  }

 private:
  std::string textLine(const Path& path, PrefixReader prefixes, const std::string& rest) const {
    return timeText(path) + '\t' + peerText(path.peer) + '\t' + prefixesText(prefixes, filter_) +
           '\t' + rest;
  }

  std::string communities(const Path& path, CommunityValues& values) {
    std::string text;
    const auto add = [&text](const std::string& word) { text += (text.empty() ? "" : " ") + word; };
    for (std::size_t type = 0; type < listTypeCount; ++type) {
      if (values[type].empty()) continue;
      const ListText list = listTypes[type].text(tables_, values[type]);
      if (list.fault)
        values.faults.add(*list.fault);
      else
        add(list.text);
    }
    for (const std::string& reason : reasons(path, values)) add("malformed: " + reason);
    return text.empty() ? "-" : text;
  }
  /// Why attributes are malformed; none where nothing has been counted.
  std::vector<std::string> reasons(const Path& path, const CommunityValues& values) const {
    std::vector<std::string> texts;
    if (values.faults.total() > 0)
      for (ToldFault& told : faultsOf(path.attributes, tables_))
        texts.push_back(std::move(told.text));
    return texts;
  }

  static nlohmann::ordered_json head(const Path& path) {
    return {{"time", timeText(path)},
            {"peer", addressText(path.peer.address)},
            {"peerAs", path.peer.asNumber}};
  }

  /// Where the path was read: orders what a peer says within one second.
  void addSource(nlohmann::ordered_json& object, Position position) const {
    object["record"] = position.record;
    if (!collector_.empty()) object["collector"] = visible(collector_);
  }

  /// The prefixes as an array of texts; with ADD-PATH the identifiers as another.
  void addPrefixes(nlohmann::ordered_json& object, const char* key, PrefixReader prefixes) const {
    auto texts = nlohmann::ordered_json::array(), ids = nlohmann::ordered_json::array();
    while (const Prefix* const prefix = prefixes.next()) {
      if (!filter_.wants(*prefix)) continue;
      texts.push_back(nlriText(prefix->addressFamily, prefix->nlri));
      if (prefix->pathId) ids.push_back(*prefix->pathId);
    }
    object[key] = std::move(texts);
    if (!ids.empty()) object["pathIds"] = std::move(ids);
  }

  std::string jsonLine(const Path& path, CommunityValues& values, Position position) {
    nlohmann::ordered_json object = head(path);
    nlohmann::ordered_json prefixes = nlohmann::ordered_json::array();
    const bool whole = visitPrefixes(path, [&](const Prefix& prefix) {
      if (!filter_.wants(prefix)) return;
      nlohmann::ordered_json entry = {{"prefix", nlriText(prefix.addressFamily, prefix.nlri)}};
      if (prefix.pathId) entry["pathId"] = *prefix.pathId;
      if (!isPlain(prefix.addressFamily)) entry["nlri"] = hex(prefix.nlri);
      prefixes.push_back(std::move(entry));
    });
    object["prefixes"] = std::move(prefixes);
    if (!whole) object["prefixesCutShort"] = true;
    addLists(object, values);
    auto malformed = nlohmann::ordered_json::array();
    for (std::size_t i = 0; i < faultNames.size(); ++i)
      if (values.faults[Fault(i)]) malformed.push_back(faultNames[i]);
    if (!malformed.empty()) {
      object["malformed"] = std::move(malformed);
      object["malformedReasons"] = reasons(path, values);
    }
    // Plain columns, without objects inside, to join other data on.
    addPrefixes(object, "announced", PrefixReader::announced(path));
    object["asPath"] = AsPath(path).text();
    const auto origin = AsPath(path).origin();
    object["originAs"] = origin ? nlohmann::ordered_json(*origin) : nlohmann::ordered_json();
    object["nextHop"] = addressText(nextHop(path));
    addSource(object, position);
    return object.dump() + '\n';
  }

  /// For each list type arrays of texts, of octets in hex (different values may have the same text)
  /// and, when any are given, of descriptions, in the same order.
  void addLists(nlohmann::ordered_json& object, CommunityValues& values) const {
    using Array = nlohmann::ordered_json::array_t;
    nlohmann::ordered_json beside;
    for (std::size_t type = 0; type < listTypeCount; ++type) {
      ListText list;
      if (!values[type].empty()) list = listTypes[type].values(tables_, values[type]);
      if (list.fault) values.faults.add(*list.fault);
      Array texts, octets, meanings;
      for (const ValueText& value : list.values) {
        texts.emplace_back(value.text);
        octets.emplace_back(value.octets);
        meanings.emplace_back(value.description);
      }
      const std::string key(listTypes[type].key);
      object[key] = std::move(texts);
      beside[key + "Octets"] = std::move(octets);
      if (descriptions()) beside[key + "Descriptions"] = std::move(meanings);
    }
    object.update(beside);
  }

  const bool json_;
  const std::string& collector_;
  const PathFilter& filter_;
  const CommunityTables tables_{sharedParser()};
};

/// Makes lines of the paths that pass, or groups, or counts them.
class PathTaker {
 public:
  explicit PathTaker(const Options& options)
      : options_(options), filter_(options.filter), printer_(options, filter_) {
    if (!options.groupBy.empty()) groups_.emplace(readGroupBy(options.groupBy));
    if (options.count && groups_) throw UsageError("--count and --group-by exclude each other");
    if (options.withdrawals && (options.count || groups_))
      throw UsageError("--withdrawals is for lines of paths");
    if (!options.collector.empty() && !options.json)
      throw UsageError("--collector is for lines of --json");
  }

  /// False once there are enough.
  bool take(const Path& path, CommunityValues& values, Position position) {
    if (path.stateChange || !filter_.passes(path, values, options_.withdrawals)) return true;
    const bool withdraws =
        options_.withdrawals && filter_.wantsOneOf(PrefixReader::withdrawn(path));
    if (withdraws) {
      ++taken_;
      printer_.printWithdrawn(path, position);
      if (isEnough()) return false;
    }
    // Without attributes, or with none but those of the withdrawal, a message announces nothing.
    const bool announces = withdraws ? filter_.wantsOneOf(PrefixReader::announced(path))
                                     : path.fromTable || !path.attributes.empty();
    if (!announces) return true;
    ++taken_;
    if (groups_)
      groups_->add(path, values, filter_);
    else if (!options_.count)
      printer_.print(path, values, position);
    return !isEnough();
  }
  /// Prints what is known only at the end.
  void end() const {
    if (options_.count)
      print(options_.json ? nlohmann::json{{"paths", taken_}}.dump() + '\n'
                          : std::to_string(taken_) + '\n');
    if (!groups_) return;
    const auto groups = groups_->sorted();
    const auto shown =
        std::min<U64>(options_.limit ? options_.limit : groups.size(), groups.size());
    const bool asTable = !options_.json && terminalColumns();
    TerminalTable table;
    for (const PathGroups::Group& group : std::span(groups).first(shown))
      if (asTable)
        table.add({std::to_string(group.paths)}, textOf(group));
      else
        print(options_.json ? jsonOf(group) + '\n'
                            : std::to_string(group.paths) + '\t' + textOf(group) + '\n');
    table.print();
  }

 private:
  static std::string textOf(const PathGroups::Group& group) {
    return explains() ? explained(group.key, group.key, group.description) : group.key;
  }
  std::string jsonOf(const PathGroups::Group& group) const {
    nlohmann::ordered_json object = {{"count", group.paths}, {options_.groupBy, group.key}};
    if (descriptions() && options_.groupBy == "value") object["description"] = group.description;
    return object.dump();
  }
  bool isEnough() const { return options_.limit && !groups_ && taken_ >= options_.limit; }
  const Options& options_;
  PathFilter filter_;
  PathPrinter printer_;
  std::optional<PathGroups> groups_;
  U64 taken_ = 0;
};

int runPaths(const Options& options) {
  PathTaker taker(options);
  const ReadOptions reading{.printsLines = !options.count && options.groupBy.empty(),
                            .updates = options.withdrawals ? PathCutter::Updates::all
                                                           : PathCutter::Updates::withAttributes};
  bool good = true, more = true;
  for (const std::string& file : options.files) {
    if (!more) break;
    const ReadResult result = readFileWhile(
        file,
        [&](const Path& path, CommunityValues& values, Position position) {
          return more = taker.take(path, values, position);
        },
        reading);
    reportPassedOver(file, result);
    good = good && !result.failed;
  }
  taker.end();
  return good ? 0 : exitBadData;
}

}  // namespace

void addPaths(CLI::App& app, int& exitCode) {
  const auto [command, options] =
      addCommand(app,
                 {"paths", "Print one line per path",
                  "Fields are separated by tabs, on a terminal by blanks: time, peer, prefixes\n"
                  "(PREFIX#ID with ADD-PATH), communities; - where there are none. Exit code 1\n"
                  "when a file cannot be read to its end; what is malformed is shown with the\n"
                  "reason, and counted on stderr.\n"
                  "A table's entry has the time at which its route was learned, perhaps weeks\n"
                  "before the dump; --since and --until ask for that.\n\n"
                  "Example: bgpcomm paths --where 'RT:65000:* and not no-export' rib.bz2"},
                 exitCode, runPaths);
  addFiles(command, options.files);
  addFilterOptions(command, options.filter);
  command.add_option("--limit", options.limit, "At most so many lines (default 0: all)")
      ->option_text("N");
  command.add_flag("--withdrawals", options.withdrawals,
                   "Also a line for the prefixes that a message\nwithdraws");
  command.add_flag("--count", options.count, "Only how many paths there are");
  takesOneOf(command
                 .add_option("--group-by", options.groupBy,
                             "Only how many paths there are by peer, origin,\n"
                             "kind or value, or prefixes by prefix-length;\n"
                             "most first")
                 ->option_text("WHAT"),
             {"peer", "origin", "kind", "value", "prefix-length"});
  addTextOptions(command);
  addJsonLines(command, options.json);
  command
      .add_option("--collector", options.collector,
                  "Its name in each JSON object, for tables of many")
      ->option_text("NAME");
}

}  // namespace bgpcomm
