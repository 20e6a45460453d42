#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "Commands.h"
#include "Descriptions.h"
#include "LintFindings.h"
#include "Meant.h"
#include "PathText.h"
#include "Reading.h"
#include "Terminal.h"
#include "Wrapped.h"

namespace bgpcomm {
namespace {

struct Options {
  std::vector<std::string> files;
  PathFilterOptions filter;
  std::vector<std::string> rules, without;
  LintSettings settings;
  U64 peers = 5;
  bool strict = false, json = false;
};

/// A bit for each rule; throws UsageError.
U32 readRules(const char* option, const std::vector<std::string>& names) {
  U32 bits = 0;
  for (const std::string& name : names) {
    const auto rules = lintRules();
    const auto at = std::ranges::find(rules, name, &LintRule::name);
    if (at == rules.end()) {
      std::vector<std::string_view> known;
      for (const LintRule& rule : rules) known.push_back(rule.name);
      throw UsageError(std::string(option) + ' ' + name + ": no such rule, see --list-rules" +
                       meantAmong(known, name));
    }
    bits |= U32{1} << (at - rules.begin());
  }
  return bits;
}

std::string peerText(const std::string& key) { return bgpcomm::peerText(peerOfKey(key)); }

std::string reasonOf(const LintRule& rule) {
  return std::string(rule.reason) + " (" + std::string(rule.reference) + ").";
}

void listRules() {
  for (const LintRule& rule : lintRules()) {
    print(std::string(rule.name) + '\n');
    print(broken("  ", reasonOf(rule), 2));
  }
}

void printText(const LintFindings::OfRule& one, const Options& options) {
  print('\n' + strong(one.rule->name) + ": " + counted(one.paths, "path") + " of " +
        counted(one.peers.size(), "peer") + ", found " + counted(one.found, "time") + '\n');
  print(broken("  ", reasonOf(*one.rule), 2));
  const auto shown =
      options.peers ? std::min<U64>(options.peers, one.peers.size()) : one.peers.size();
  const auto printPeers = [](U64 paths, const std::string& text) {
    char count[32];
    std::snprintf(count, sizeof count, "%14s", grouped(paths).c_str());
    print(count + ("  " + text) + '\n');
  };
  U64 left = one.paths;
  for (const auto& [peer, paths] : std::span(one.peers).first(shown)) {
    printPeers(paths, peerText(peer));
    left -= paths;
  }
  if (left > 0) printPeers(left, "of " + counted(one.peers.size() - shown, "more peer"));
  for (const LintFindings::Example& example : one.examples)
    print(broken("  ", example.what + " on " + example.prefix + " from " + peerText(example.peer),
                 4));
}

using Json = nlohmann::ordered_json;

Json peerJson(const std::string& key) {
  const Peer peer = peerOfKey(key);
  return {{"peer", addressText(peer.address)}, {"peerAs", peer.asNumber}};
}

void printJson(const LintFindings::OfRule& one) {
  const auto start = [&](const char* what) {
    return Json{{"what", what}, {"rule", one.rule->name}};
  };
  Json rule = start("rule");
  rule.update({{"paths", one.paths},
               {"found", one.found},
               {"peers", one.peers.size()},
               {"reason", one.rule->reason},
               {"reference", one.rule->reference}});
  print(rule.dump() + '\n');
  for (const auto& [key, paths] : one.peers) {
    Json peer = start("peer");
    peer.update(peerJson(key));
    peer["paths"] = paths;
    print(peer.dump() + '\n');
  }
  for (const auto& [found, octets, description, time, prefix, from] : one.examples) {
    Json example = start("example");
    example["time"] = time;
    example.update(peerJson(from));
    example.update({{"prefix", prefix == "-" ? Json() : Json(prefix)},
                    {"found", found},
                    {"octets", octets.empty() ? Json() : Json(octets)}});
    if (descriptions()) example["description"] = description;
    print(example.dump() + '\n');
  }
}

int runLint(const Options& options) {
  PathFilter filter(options.filter);
  LintSettings settings = options.settings;
  if (!options.rules.empty()) settings.rules = readRules("--rules", options.rules);
  settings.rules &= ~readRules("--without", options.without);
  LintFindings findings(settings);
  bool good = true;
  for (const std::string& file : options.files)
    good &= readReporting(file, [&](const Path& path, CommunityValues& values, Position) {
      if (filter.passes(path, values)) findings.add(path, values, filter);
    });
  if (options.json)
    print(Json{{"what", "total"},
               {"paths", findings.paths()},
               {"pathsWithFindings", findings.brokenPaths()}}
              .dump() +
          '\n');
  else
    print(counted(findings.paths(), "path") + ", " + grouped(findings.brokenPaths()) +
          " with findings\n");
  for (const LintFindings::OfRule& one : findings.sorted())
    options.json ? printJson(one) : printText(one, options);
  if (!good) return exitBadData;
  return options.strict && findings.brokenPaths() > 0 ? exitFound : 0;
}

}  // namespace

void addLint(CLI::App& app, int& exitCode) {
  const auto [command, options] =
      addCommand(app,
                 {"lint", "Print what ought not to be there, by rule and peer",
                  "For each rule that is broken: how many paths break it, how often, which peers\n"
                  "send them, and examples. Some rules are for paths from another AS only: those\n"
                  "whose AS path begins with the peer's own, as that of every external peer does\n"
                  "but of route servers (RFC 7947). Exit code 1 when a file cannot be read to its\n"
                  "end; bad records are counted on stderr, and passed over.\n\n"
                  "Example: bgpcomm lint --without private-as,no-export rib.bz2"},
                 exitCode, runLint);
  addFiles(command, options.files);
  addFilterOptions(command, options.filter);
  const auto addRules = [&its = command](const char* name, std::vector<std::string>& rules,
                                         const char* help) {
    std::vector<std::string> names;
    for (const LintRule& rule : lintRules()) names.emplace_back(rule.name);
    takesOneOf(its.add_option(name, rules, help)
                   ->delimiter(',')
                   ->allow_extra_args(false)
                   ->option_text("NAME,..."),
               names);
  };
  const auto addNumber = [&its = command](const char* name, U64& number, const char* help) {
    its.add_option(name, number, help)->option_text("N");
  };
  addRules("--rules", options.rules, "Only these rules");
  addRules("--without", options.without, "All but these");
  command.add_flag_callback(
      "--list-rules",
      [] {
        listRules();
        throw CLI::Success();
      },
      "Only print the rules, each with its reason");
  addNumber("--longer-than", options.settings.longerThan,
            "How many values a list may have (default 100)");
  command.add_flag("--external", options.settings.allExternal,
                   "Take all peers for such in another AS");
  addNumber("--peers", options.peers,
            "At most so many peers of a rule (default 5;\n0: all); JSON has all");
  addNumber(
      "--examples", options.settings.examples,
      "At most so many examples of a rule, of different\nvalues, the first that come (default 3)");
  command.add_flag("--strict", options.strict, "Exit code 3 when a rule is broken");
  addTextOptions(command);
  addJsonLines(command, options.json);
}

}  // namespace bgpcomm
