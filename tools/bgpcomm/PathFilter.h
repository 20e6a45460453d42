// The paths that a command looks at, as its options ask: by communities, prefix, peer, origin and
// time.
//
//   PathFilterOptions options;
//   addFilterOptions(command, options);
//   PathFilter filter(options);                         // when the command runs
//   if (filter.passes(path, values)) visitPrefixes(path, [&](const Prefix& prefix) {
//     if (filter.wants(prefix)) use(prefix);
//   });
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Attributes.h"
#include "Wanted.h"
#include "mrt/PathKey.h"
#include "query/ZoBgpPatternMatcher.h"

namespace CLI {
class App;
}

namespace bgpcomm {

struct PathFilterOptions {
  std::string where;
  std::vector<std::string> communities, routeTargets, large, extended;
  std::vector<std::string> prefixes, peers, origins;
  const char* prefixOption = "--prefix";  ///< how messages call it
  bool moreSpecific = false, lessSpecific = false;
  std::string since, until;
};
/// Declares the options of all commands that look at paths one by one; `--prefix` only if asked to.
void addFilterOptions(CLI::App& command, PathFilterOptions& options, bool withPrefix = true);

/// The question of a command line; throws UsageError.
Routing::Bgp::CommunityPattern readQuestion(const std::string& text);

class PathFilter {
 public:
  /// Throws UsageError, which names the option.
  explicit PathFilter(const PathFilterOptions& options);

  /// Whether all that is asked for holds for the path, and for one of the prefixes that it
  /// announces, or `withdrawn`. Lists that are refused are not there.
  bool passes(const Path& path, const CommunityValues& values, bool withdrawn = false);
  /// Whether the path is of the time that is asked for.
  bool isInTime(const Path& path) const;
  /// Whether a prefix is asked for; each is when none is named.
  bool wants(const Prefix& prefix) const;
  /// Whether there is such a prefix.
  bool wantsOneOf(PrefixReader prefixes) const;

 private:
  struct WantedPrefix {
    U16 afi;
    IpPrefix prefix;
  };
  struct WantedPeer {
    std::optional<U32> asNumber;  // or
    std::string address;
  };

  bool isOfPeer(const Peer& peer) const;
  bool isOfOrigin(const Path& path) const;
  bool holds(const CommunityValues& values);

  const CommunityTables tables_{sharedParser()};
  std::optional<Routing::Bgp::PatternMatcher> where_;
  std::vector<Routing::Bgp::ValuePattern> wanted_;
  std::vector<WantedPrefix> prefixes_;
  bool moreSpecific_, lessSpecific_;
  std::vector<WantedPeer> peers_;
  std::vector<U32> origins_;
  std::optional<U32> since_, until_;
};

}  // namespace bgpcomm
