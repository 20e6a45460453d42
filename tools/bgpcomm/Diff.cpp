#include <nlohmann/json.hpp>

#include "Commands.h"
#include "Descriptions.h"
#include "DumpDiff.h"
#include "HeldListsOf.h"
#include "ListValues.h"
#include "ListedValue.h"
#include "PathText.h"
#include "Terminal.h"
#include "Wrapped.h"

namespace bgpcomm {
namespace {

using namespace Routing::Bgp;

struct Options {
  std::string before, after;
  PathFilterOptions filter;
  bool json = false;
  U64 limit = 10;
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
      if (descriptions()) {
        object["beforeDescriptions"] = descriptionsOf(pair.before);
        object["afterDescriptions"] = descriptionsOf(pair.after);
      }
      return print(object.dump() + '\n');
    }
    std::string line = std::string(1, changeSigns[change]) + "\tpath\t" +
                       addressText(pair.peer.address) + " AS" + std::to_string(pair.peer.asNumber) +
                       '\t' + prefix + (pathId ? '#' + std::to_string(*pathId) : "");
    for (const PathCommunities* one : {pair.before, pair.after})
      if (one) line += '\t' + textsOf(*one);
    printFields(line);
  }

  void addItems(const DiffItems& before, const DiffItems& after) {
    for (const DiffPart part : {DiffPart::value, DiffPart::list, DiffPart::routeTargets})
      for (std::size_t type = 0; type < listTypeCount; ++type)
        for (const Change change : {gone, come}) {
          U64 count = 0;
          for (const std::string& octets :
               (change == gone ? before : after).of[std::size_t(part)][type])
            if (isShown(count++)) printItem(change, part, type, octets);
          items_[std::size_t(part)][change] += count;
          addTotal(change, nameOf(part, type), count);
        }
  }

  void printTotals() {
    if (options_.json) return print(totalsJson());
    for (const Change change : {gone, come, changed}) addTotal(change, "path", paths_[change]);
    totals_.push_back(grouped(samePaths_) + "\tsame\tpath");
    std::ranges::for_each(totals_, printFields);
  }

 private:
  enum Change : U8 { gone, come, changed };
  static constexpr char changeSigns[] = {'-', '+', '*'};
  static constexpr std::string_view changeWords[] = {"gone", "come", "changed"};

  static std::string nameOf(DiffPart part, std::size_t type) {
    return std::string(listTypes[type].key) + ' ' + std::string(diffPartWords[std::size_t(part)]);
  }
  void printItem(Change change, DiffPart part, std::size_t type, const std::string& itsOctets) {
    const Octets octets(reinterpret_cast<const U8*>(itsOctets.data()), itsOctets.size());
    const std::string text = listTypes[type].text(tables_, octets).text;
    nlohmann::ordered_json object = {{"change", changeWords[change]},
                                     {"what", diffPartWords[std::size_t(part)]},
                                     {"list", listTypes[type].key},
                                     {"text", text},
                                     {"octets", hex(octets)}};
    if (descriptions()) {
      const nlohmann::ordered_json its = descriptionsIn(type, octets);
      if (part == DiffPart::value)
        object["description"] = its[0];
      else
        object["descriptions"] = its;
    }
    if (options_.json) return print(object.dump() + '\n');
    printFields(std::string(1, changeSigns[change]) + '\t' + nameOf(part, type) + '\t' + text);
  }
  std::string textsOf(const PathCommunities& communities) const {
    std::string text;
    communities.forEachList([&](const auto& list) {
      forEachCommunity(*list,
                       [&](const auto& one) { (text += text.empty() ? "" : " ") += textOf(one); });
    });
    return text.empty() ? "-" : text;
  }
  /// In the order of the texts.
  static nlohmann::ordered_json descriptionsOf(const PathCommunities* communities) {
    auto all = nlohmann::ordered_json::array();
    if (communities)
      forEachValue(*communities, [&all](const ListedValue& value) {
        all.push_back(descriptionOf(value.community()));
      });
    return all;
  }
  bool isShown(U64 shown) const {
    return options_.json || !options_.limit || shown < options_.limit;
  }
  std::string totalsJson() const {
    nlohmann::ordered_json object = {{"what", "total"},
                                     {"pathsSame", samePaths_},
                                     {"pathsGone", paths_[gone]},
                                     {"pathsCome", paths_[come]},
                                     {"pathsChanged", paths_[changed]}};
    constexpr std::string_view keys[] = {"values", "lists", "routeTargetSets"};
    for (std::size_t part = 0; part < std::size(keys); ++part) {
      object[std::string(keys[part]) + "Gone"] = items_[part][gone];
      object[std::string(keys[part]) + "Come"] = items_[part][come];
    }
    return object.dump() + '\n';
  }
  void addTotal(Change change, const std::string& what, U64 count) {
    if (count)
      totals_.push_back(grouped(count) + '\t' + std::string(changeWords[change]) + '\t' + what);
  }

  const CommunityTables& tables_;
  const Options& options_;
  U64 paths_[3] = {}, samePaths_ = 0;
  U64 items_[std::size(diffPartWords)][2] = {};  // gone and come, of all list types
  std::vector<std::string> totals_;
};

int runDiff(const Options& options) {
  if (options.before == "-" && options.after == "-")
    throw UsageError("one of the dumps can be -, not both");
  const CommunityTables tables(sharedParser());
  PathFilter filter(options.filter);
  Differences differences(tables, options);
  const auto diff = diffDumps(options.before, options.after, tables, filter,
                              [&](const PathJoin::Pair& pair) { differences.addPath(pair); });
  if (!diff) return exitBadData;
  differences.addItems(diff->before, diff->after);
  differences.printTotals();
  return diff->whole ? 0 : exitBadData;
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
       "counts. Fields are separated by tabs, on a terminal by blanks. Exit code 1 when\n"
       "a file cannot be read to its end; if it has no path, nothing is compared.\n\n"
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
                  "At most so many lines of each sort (default 10;\n0: all); JSON has all")
      ->option_text("N");
  addTextOptions(command);
  addJsonLines(command, options.json);
}

}  // namespace bgpcomm
