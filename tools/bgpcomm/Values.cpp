#include <algorithm>
#include <nlohmann/json.hpp>

#include "Commands.h"
#include "ListedValue.h"
#include "Meant.h"
#include "Numbering.h"
#include "PathFilter.h"
#include "Reading.h"
#include "Terminal.h"
#include "TextStyle.h"
#include "Wrapped.h"
#include "Zonet/NetworkOrder.h"

namespace bgpcomm {
namespace {

using Routing::Bgp::ValuePattern;

struct Options {
  std::vector<std::string> files;
  PathFilterOptions filter;
  std::string kind, sort = "paths";
  U64 limit = 0;
  bool json = false;
};

struct ValueFigures {
  std::string key;  ///< of the value
  U64 paths = 0, peers = 0, prefixes = 0;
};

/// The values that paths carry. Paths are counted by combinations of lists, of which there are few.
class ValueCounter {
 public:
  explicit ValueCounter(std::optional<ValuePattern> kind) : kind_(std::move(kind)) {}

  void startFile() { inTable_ = false; }
  void add(const Path& path, CommunityValues& values, const PathFilter& filter) {
    if (std::ranges::all_of(values, &Octets::empty)) return;
    const auto combination = combinations_.of(values);
    Carried& carried = combination.count;
    if (carried.paths == 0) carried.values = numbersOf(combination.lists);
    ++carried.paths;
    carried.peers.insert(peerNumber(path.peer));
    if (path.fromTable)
      addTablePrefix(path, carried);
    else
      visitPrefixes(path, [&](const Prefix& prefix) { carried.announced += filter.wants(prefix); });
  }

  std::vector<ValueFigures> figures() const {
    std::vector<ValueFigures> figures;
    for (U32 number = 0; number < values_.size(); ++number)
      figures.push_back({.key = numbers_[number], .prefixes = values_[number].tablePrefixes});
    std::vector<NumberSet> peers(values_.size());
    combinations_.forEach([&](const PathCommunities&, const Carried& carried) {
      for (const U32 number : carried.values) {
        figures[number].paths += carried.paths;
        figures[number].prefixes += carried.announced;
        peers[number].add(carried.peers);
      }
    });
    for (std::size_t i = 0; i < figures.size(); ++i) figures[i].peers = peers[i].size();
    return figures;
  }

 private:
  struct Value {
    U64 tablePrefixes = 0;
    U64 lastPrefix = 0;  ///< of a table, that carries it
  };
  /// A combination of lists.
  struct Carried {
    std::vector<U32> values = {};  ///< their numbers
    U64 paths = 0;
    NumberSet peers = {};
    U64 announced = 0;   ///< prefixes in UPDATEs
    U64 lastPrefix = 0;  ///< as of its values
  };

  U32 peerNumber(const Peer& peer) {
    std::array<U8, 16 + sizeof peer.asNumber> key;
    U8* const at = std::ranges::copy(peer.address, key.begin()).out;
    Zonet::storeNetworkOrder(at, peer.asNumber);
    return peers_.numberOf(asText(Octets(key.begin(), at + sizeof peer.asNumber)));
  }

  /// The numbers of the values that are asked for.
  std::vector<U32> numbersOf(const PathCommunities& lists) {
    std::vector<U32> numbers;
    forEachValue(lists, [&](const ListedValue& value) {
      if (kind_ && !kind_->matches(value.community())) return;
      numbers.push_back(numbers_.numberOf(value.key()));
    });
    values_.resize(numbers_.size());
    return numbers;
  }

  /// The paths of a prefix stand one behind the other: it counts at the first that has the value.
  void addTablePrefix(const Path& path, Carried& carried) {
    if (!inTable_ || path.addressFamily != family_ || !std::ranges::equal(path.nlri, nlri_)) {
      ++prefix_;
      inTable_ = true;
      family_ = path.addressFamily;
      nlri_.assign(path.nlri.begin(), path.nlri.end());
    }
    if (std::exchange(carried.lastPrefix, prefix_) == prefix_) return;
    for (const U32 number : carried.values)
      if (std::exchange(values_[number].lastPrefix, prefix_) != prefix_)
        ++values_[number].tablePrefixes;
  }

  const std::optional<ValuePattern> kind_;
  Combinations<Carried> combinations_;
  Numbering<std::string> numbers_, peers_;
  std::vector<Value> values_;

  // The prefix of a table that was met last.
  U64 prefix_ = 0;  // counted from 1
  bool inTable_ = false;
  AddressFamily family_;
  std::vector<U8> nlri_;
};

std::optional<ValuePattern> readKind(const std::string& text) {
  if (text.empty()) return {};
  const auto& kinds = textStyle().kinds;
  auto pattern = ValuePattern::parse(text, kinds ? *kinds : Routing::Bgp::KindTable::builtIn());
  if (!pattern) throw UsageError("--kind: " + pattern.error.text());
  return std::move(*pattern.value);
}

constexpr std::string_view sortNames[] = {"paths", "peers", "prefixes", "value"};
/// The column to sort by; null to sort by value.
U64 ValueFigures::*readSort(const std::string& name) {
  U64 ValueFigures::*const columns[] = {&ValueFigures::paths, &ValueFigures::peers,
                                        &ValueFigures::prefixes, nullptr};
  return columns[placeAmong(sortNames, name, "--sort")];
}

void printJson(const ValueFigures& figures, const CommunityTables& tables) {
  const auto& [key, paths, peers, prefixes] = figures;
  auto object = ListedValue(key).json(tables);
  object.update({{"paths", paths}, {"peers", peers}, {"prefixes", prefixes}});
  print(object.dump() + '\n');
}

void printText(const std::vector<ValueFigures>& figures, const CommunityTables& tables) {
  const bool isTerminal = terminalColumns().has_value();
  TerminalTable table;
  for (const auto& [key, paths, peers, prefixes] : figures) {
    std::vector<std::string> its = {std::to_string(paths), std::to_string(peers),
                                    std::to_string(prefixes)};
    const std::string text = ListedValue(key).text(tables);
    if (isTerminal)
      table.add(std::move(its), text);
    else
      print(its[0] + '\t' + its[1] + '\t' + its[2] + '\t' + text + '\n');
  }
  table.print();
}

int runValues(const Options& options) {
  PathFilter filter(options.filter);
  ValueCounter counter(readKind(options.kind));
  const auto column = readSort(options.sort);
  bool good = true;
  for (const std::string& file : options.files) {
    counter.startFile();
    good &= readReporting(file, [&](const Path& path, CommunityValues& values, Position) {
      if (filter.passes(path, values)) counter.add(path, values, filter);
    });
  }
  auto figures = counter.figures();
  std::ranges::sort(figures, [column](const ValueFigures& a, const ValueFigures& b) {
    return column && a.*column != b.*column ? a.*column > b.*column : a.key < b.key;
  });
  if (options.limit && options.limit < figures.size()) figures.resize(options.limit);
  const CommunityTables tables(sharedParser());
  if (!options.json) printText(figures, tables);
  for (const ValueFigures& one : std::span(figures).first(options.json ? figures.size() : 0))
    printJson(one, tables);
  return good ? 0 : exitBadData;
}

}  // namespace

void addValues(CLI::App& app, int& exitCode) {
  const auto [command, options] =
      addCommand(app,
                 {"values", "Print every value with its paths, peers, prefixes",
                  "Fields are separated by tabs, on a terminal by blanks: paths, peers, prefixes,\n"
                  "value. The paths of a prefix in a table count it once, in each file; an UPDATE\n"
                  "counts all prefixes that it announces, each time anew. Exit code 1 when a file\n"
                  "cannot be read to its end; what is malformed is counted on stderr, and passed\n"
                  "over.\n\n"
                  "Example: bgpcomm values --kind '65000:*' --sort peers --limit 20 rib.bz2"},
                 exitCode, runValues);
  addFiles(command, options.files);
  addFilterOptions(command, options.filter);
  command
      .add_option("--kind", options.kind,
                  "Only values of this pattern (mac-mobility,\n65000:*, unknown)")
      ->option_text("PATTERN");
  takesOneOf(command
                 .add_option("--sort", options.sort,
                             "paths (default), peers or prefixes, largest\nfirst; or value")
                 ->option_text("WHAT"),
             {std::begin(sortNames), std::end(sortNames)});
  command.add_option("--limit,--top", options.limit, "At most so many lines (default 0: all)")
      ->option_text("N");
  addTextOptions(command);
  addJsonLines(command, options.json);
}

}  // namespace bgpcomm
