// Breaches of rules by the paths of files: counts, peers and examples.
//
//   LintFindings findings({.longerThan = 50});
//   findings.add(path, values, filter);                     // once a path
//   for (const auto& one : findings.sorted()) use(one.rule, one.paths);
//
// A list is looked at once, however many paths carry it; its paths cost a look-up. Memory goes with
// distinct lists and peers.
#pragma once

#include <string>
#include <vector>

#include "Combinations.h"
#include "LintRules.h"
#include "ListedValue.h"
#include "Numbering.h"
#include "PathFilter.h"

namespace bgpcomm {

struct LintSettings {
  U32 rules = ~U32{0};       ///< a bit for each, in the order of `lintRules`
  U64 longerThan = 100;      ///< values of a list
  U64 examples = 3;          ///< of each rule
  bool allExternal = false;  ///< Every peer is in another AS.
};

class LintFindings {
 public:
  struct Example {
    std::string what;              ///< the value, or the fault
    std::string octets = {};       ///< of a value, in hex
    std::string description = {};  ///< of a value that has one
    std::string time = {}, prefix = {};
    std::string peer = {};  ///< a key, as `peerKey` makes it
  };
  struct PeerPaths {
    std::string peer;  ///< a key
    U64 paths;
  };
  struct OfRule {
    const LintRule* rule;
    U64 paths = 0;
    U64 found = 0;                       ///< values, lists or faults, each on each path
    std::vector<PeerPaths> peers = {};   ///< the most paths first
    std::vector<Example> examples = {};  ///< of different values or faults, the first that came
  };

  explicit LintFindings(const LintSettings& settings)
      : settings_(settings), byRule_(lintRules().size()) {}

  /// A list that is refused is one of the path's faults.
  void add(const Path& path, CommunityValues& values, const PathFilter& filter);

  U64 paths() const { return paths_; }
  /// Paths that break a rule.
  U64 brokenPaths() const { return brokenPaths_; }
  /// The rules that are broken: on the most paths first.
  std::vector<OfRule> sorted() const;

 private:
  /// Breaches of a rule by a list.
  struct InList {
    std::size_t rule;
    U64 found = 0;
    std::vector<std::string> keys = {};  ///< of values, for examples
    std::string length = {};             ///< of a list that is too long
    bool shown = false;                  ///< It is among the examples, or need not be.
  };
  struct Count {
    U64 paths = 0, found = 0;
    std::vector<U64> byPeer = {};
    std::vector<Example> examples = {};
  };
  class OnPath;

  template <class List>
  std::vector<InList>& inList(const Mox::Ptr<const List>& list);
  template <class List>
  std::vector<InList> look(const List& list) const;
  bool isOn(std::size_t rule) const { return settings_.rules >> rule & 1; }
  bool needsExamples(std::size_t rule) const {
    return byRule_[rule].examples.size() < settings_.examples;
  }
  /// Fills in the rest of an example.
  void addExample(std::size_t rule, Example example, const OnPath& path);
  void show(InList& found, const OnPath& path);

  const LintSettings settings_;
  const CommunityTables tables_{sharedParser()};
  Numbering<PathCommunities, HashLists> lists_;  // one each, held so that its address is its own
  std::vector<std::optional<std::vector<InList>>> inLists_;  // by number
  Numbering<std::string> peers_;
  std::vector<Count> byRule_;
  U64 paths_ = 0, brokenPaths_ = 0;
};

}  // namespace bgpcomm
