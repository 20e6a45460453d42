#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <nlohmann/json.hpp>

#include "Commands.h"
#include "Nlri.h"
#include "Reading.h"
#include "Terminal.h"

namespace bgpcomm {
namespace {

/// A value that a path must carry.
struct Wanted {
  std::size_t kind;
  std::vector<U8> value;
};

struct Options {
  std::vector<std::string> files;
  std::vector<std::string> communities;
  TextOptions text;
};

Wanted readWanted(const std::string& text) {
  for (std::size_t kind = 0; kind < kindCount; ++kind)
    if (kindRows[kind].readValue)
      if (const auto value = kindRows[kind].readValue(text)) return {kind, *value};
  throw UsageError("--community " + text +
                   ": neither two numbers up to 65535 with a colon between nor a known name");
}

bool carries(const CommunityValues& values, const Wanted& wanted) {
  for (Octets left = values[wanted.kind]; !left.empty(); left = left.subspan(wanted.value.size()))
    if (std::equal(wanted.value.begin(), wanted.value.end(), left.begin())) return true;
  return false;
}

/// `2026-07-30T14:00:00Z`, with microseconds where the dump has them.
std::string timeText(const Path& path) {
  const std::time_t seconds = path.seconds;
  std::tm utc{};
  gmtime_r(&seconds, &utc);
  char text[64];
  std::size_t size = std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &utc);
  if (path.microseconds)
    size += std::size_t(
        std::snprintf(text + size, sizeof text - size, ".%06u", unsigned(*path.microseconds)));
  return std::string(text, size) + 'Z';
}

class PathPrinter {
 public:
  PathPrinter(bool names, bool json) : names_(names), json_(json) {}

  void print(const Path& path, const CommunityValues& values) {
    bgpcomm::print(json_ ? jsonLine(path, values) : textLine(path, values));
  }

 private:
  std::string textLine(const Path& path, const CommunityValues& values) {
    std::string line = timeText(path) + '\t' + addressText(path.peer.address) + " AS" +
                       std::to_string(path.peer.asNumber) + '\t';
    const std::size_t start = line.size();
    const auto separate = [&line, start] {
      if (line.size() > start) line += ' ';
    };
    const bool whole = visitPrefixes(path, [&](const Prefix& prefix) {
      separate();
      line += nlriText(prefix.family, prefix.nlri);
      if (prefix.pathId) line += '#' + std::to_string(*prefix.pathId);
    });
    if (!whole) separate(), line += '?';
    if (line.size() == start) line += '-';
    return line + '\t' + communities(values) + '\n';
  }

  std::string communities(const CommunityValues& values) {
    std::string text;
    for (std::size_t kind = 0; kind < kindCount; ++kind) {
      if (!tables_[kind] || (values[kind].empty() && !values.malformed[kind])) continue;
      KindTable::Text list{false, ""};
      if (!values.malformed[kind]) list = tables_[kind]->text(values[kind], names_);
      text += (text.empty() ? "" : " ") + (list.good ? list.text : "malformed");
    }
    return text.empty() ? "-" : text;
  }

  std::string jsonLine(const Path& path, const CommunityValues& values) {
    nlohmann::ordered_json object;
    object["time"] = timeText(path);
    object["peer"] = addressText(path.peer.address);
    object["peerAs"] = path.peer.asNumber;
    nlohmann::ordered_json prefixes = nlohmann::ordered_json::array();
    const bool whole = visitPrefixes(path, [&](const Prefix& prefix) {
      nlohmann::ordered_json entry = {{"prefix", nlriText(prefix.family, prefix.nlri)}};
      if (prefix.pathId) entry["pathId"] = *prefix.pathId;
      prefixes.push_back(std::move(entry));
    });
    object["prefixes"] = std::move(prefixes);
    if (!whole) object["prefixesCutShort"] = true;
    for (std::size_t kind = 0; kind < kindCount; ++kind)
      if (tables_[kind]) object[std::string(kindRows[kind].key)] = list(kind, values[kind]);
    for (std::size_t i = 0; i < faultNames.size(); ++i)
      if (values.faults[Fault(i)]) object["malformed"].push_back(faultNames[i]);
    return object.dump() + '\n';
  }

  nlohmann::ordered_json list(std::size_t kind, Octets value) {
    nlohmann::ordered_json texts = nlohmann::ordered_json::array();
    if (!value.empty())
      for (const std::string& text : tables_[kind]->texts(value, names_)) texts.push_back(text);
    return texts;
  }

  bool names_;
  bool json_;
  KindTables tables_ = makeKindTables();
};

/// In one line what was passed over. What ended the file has had a line of its own.
void reportMalformed(const std::string& file, const ReadResult& result) {
  const U64 passed = result.faults[Fault::attrLength] + result.faults[Fault::attrOverrun] +
                     result.faults[Fault::badRecord];
  if (passed == 0) return;
  printError(file + ": " + grouped(passed) + " malformed, the first " +
             std::string(faultNames[std::size_t(result.firstFault->fault)]) +
             placeText(result.firstFault->place));
}

int runPaths(const Options& options) {
  std::vector<Wanted> wanted;
  for (const std::string& text : options.communities) wanted.push_back(readWanted(text));
  PathPrinter printer(!options.text.numeric, options.text.json);
  const auto printWanted = [&](const Path& path, const CommunityValues& values, Place) {
    const bool all = std::all_of(wanted.begin(), wanted.end(),
                                 [&](const Wanted& one) { return carries(values, one); });
    if (all) printer.print(path, values);
  };
  // A bar between lines on the same screen would only disturb.
  const bool showProgress = !::isatty(STDOUT_FILENO);
  bool good = true;
  for (const std::string& file : options.files) {
    const ReadResult result = readFile(file, printWanted, showProgress);
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
  command
      .add_option("--community", options.communities,
                  "Only paths with this one (65000:100, no-export);\n"
                  "given again, only those with all of them")
      ->allow_extra_args(false)
      ->option_text("VALUE");
  addTextOptions(command, options.text);
}

}  // namespace bgpcomm
