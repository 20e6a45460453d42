#include <unistd.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "Commands.h"
#include "Reading.h"
#include "Terminal.h"
#include "Wanted.h"
#include "mrt/Nlri.h"

namespace bgpcomm {
namespace {

struct Options {
  std::vector<std::string> files;
  std::vector<std::string> communities, routeTargets, large, extended;
  bool json = false;
};

bool carries(const CommunityValues& values, const Wanted& wanted) {
  const auto isWanted = [&](Octets value) {
    return std::any_of(wanted.values.begin(), wanted.values.end(), [&](const auto& one) {
      return std::equal(value.begin(), value.end(), one.begin(), one.end());
    });
  };
  const std::size_t size = listTypes[wanted.type].valueSize;
  for (Octets left = values[wanted.type]; !left.empty(); left = left.subspan(size))
    if (isWanted(left.first(size))) return true;
  return false;
}

/// The values that the filters of the command line ask for.
std::vector<Wanted> readWanted(const Options& options) {
  std::vector<Wanted> wanted;
  const auto add = [&](const char* option, const std::vector<std::string>& texts, auto read) {
    for (const std::string& text : texts) try {
        wanted.push_back(read(text));
      } catch (const UsageError& error) {
        throw UsageError(std::string(option) + ' ' + text + ": " + error.what());
      }
  };
  add("--community", options.communities, wantedCommunity);
  add("--rt", options.routeTargets, wantedRouteTarget);
  add("--large", options.large, wantedLarge);
  add("--ext", options.extended, wantedExtended);
  return wanted;
}

class PathPrinter {
 public:
  explicit PathPrinter(bool json) : json_(json) {}

  /// A list that is refused is one of the path's faults.
  void print(const Path& path, CommunityValues& values) {
    bgpcomm::print(json_ ? jsonLine(path, values) : textLine(path, values));
  }

 private:
  std::string textLine(const Path& path, CommunityValues& values) {
    std::string line = timeText(path) + '\t' + addressText(path.peer.address) + " AS" +
                       std::to_string(path.peer.asNumber) + '\t';
    const std::size_t start = line.size();
    const auto separate = [&line, start] {
      if (line.size() > start) line += ' ';
    };
    const bool whole = visitPrefixes(path, [&](const Prefix& prefix) {
      separate();
      line += nlriText(prefix.addressFamily, prefix.nlri);
      if (prefix.pathId) line += '#' + std::to_string(*prefix.pathId);
    });
    if (!whole) separate(), line += '?';
    if (line.size() == start) line += '-';
    return line + '\t' + communities(values) + '\n';
  }

  std::string communities(CommunityValues& values) {
    std::string text;
    for (std::size_t type = 0; type < listTypeCount; ++type) {
      const bool isThere = !values[type].empty();
      if (!isThere && !values.malformed[type]) continue;
      ListText list;
      if (isThere) list = listTypes[type].text(tables_, values[type]);
      if (list.fault) values.faults.add(*list.fault);
      text += (text.empty() ? "" : " ") + (isThere && !list.fault ? list.text : "malformed");
    }
    return text.empty() ? "-" : text;
  }

  std::string jsonLine(const Path& path, CommunityValues& values) {
    auto object = nlohmann::ordered_json::object();
    object["time"] = timeText(path);
    object["peer"] = addressText(path.peer.address);
    object["peerAs"] = path.peer.asNumber;
    nlohmann::ordered_json prefixes = nlohmann::ordered_json::array();
    const bool whole = visitPrefixes(path, [&](const Prefix& prefix) {
      nlohmann::ordered_json entry = {{"prefix", nlriText(prefix.addressFamily, prefix.nlri)}};
      if (prefix.pathId) entry["pathId"] = *prefix.pathId;
      prefixes.push_back(std::move(entry));
    });
    object["prefixes"] = std::move(prefixes);
    if (!whole) object["prefixesCutShort"] = true;
    addLists(object, values);
    auto malformed = nlohmann::ordered_json::array();
    for (std::size_t i = 0; i < faultNames.size(); ++i)
      if (values.faults[Fault(i)]) malformed.push_back(faultNames[i]);
    if (!malformed.empty()) object["malformed"] = std::move(malformed);
    return object.dump() + '\n';
  }

  /// For each list type an array of texts and one of octets in hex, in the same order: different
  /// values may have the same text.
  void addLists(nlohmann::ordered_json& object, CommunityValues& values) const {
    auto octets = nlohmann::ordered_json::object();
    for (std::size_t type = 0; type < listTypeCount; ++type) {
      ListText list;
      if (!values[type].empty()) list = listTypes[type].values(tables_, values[type]);
      if (list.fault) values.faults.add(*list.fault);
      const std::string key(listTypes[type].key);
      auto& ofTexts = object[key] = nlohmann::ordered_json::array();
      auto& ofOctets = octets[key + "Octets"] = nlohmann::ordered_json::array();
      for (const ValueText& value : list.values) {
        ofTexts.push_back(value.text);
        ofOctets.push_back(value.octets);
      }
    }
    object.update(octets);
  }

  bool json_;
  const CommunityTables tables_{sharedParser()};
};

int runPaths(const Options& options) {
  const std::vector<Wanted> wanted = readWanted(options);
  PathPrinter printer(options.json);
  const auto printWanted = [&](const Path& path, CommunityValues& values, Position) {
    const bool all = std::all_of(wanted.begin(), wanted.end(),
                                 [&](const Wanted& one) { return carries(values, one); });
    if (all) printer.print(path, values);
  };
  // A bar between lines on the same screen would only disturb.
  const bool showProgress = !::isatty(STDOUT_FILENO);
  bool good = true;
  for (const std::string& file : options.files) {
    const ReadResult result = readFile(file, printWanted, {.showProgress = showProgress});
    reportMalformed(file, result);
    good = good && !result.failed;
  }
  return good ? 0 : exitBadData;
}

}  // namespace

void addPaths(CLI::App& app, int& exitCode) {
  const auto [command, options] =
      addCommand(app,
                 {"paths", "Print one line per path",
                  "Fields are separated by tabs: time, peer, prefixes (PREFIX#ID with ADD-PATH),\n"
                  "communities; - where there are none. Exit code 1 when a file cannot be read\n"
                  "to its end; what is malformed is shown as such, and counted on stderr.\n\n"
                  "Example: bgpcomm paths --community 65000:100 --community no-export rib.bz2"},
                 exitCode, runPaths);
  addFiles(command, options.files);
  const auto addFilter = [&command = command](const char* name, std::vector<std::string>& values,
                                              const char* help) {
    command.add_option(name, values, help)->allow_extra_args(false)->option_text("VALUE");
  };
  addFilter("--community", options.communities,
            "Only paths with this one, in any text that is\n"
            "printed (65000:100, no-export, RT:65000:100);\n"
            "filters given again, or together, must all hold");
  addFilter("--rt", options.routeTargets,
            "Only with this route target (65000:100,\n192.0.2.1:100, route-target-as4:65000:100)");
  addFilter("--large", options.large, "Only with this large community (65000:1:2)");
  addFilter("--ext", options.extended,
            "Only with this extended community, also in hex\n"
            "(16 digits, or 40 of an IPv6-address-specific one)");
  addTextOptions(command);
  addJsonLines(command, options.json);
}

}  // namespace bgpcomm
