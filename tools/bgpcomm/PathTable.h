// The paths as their peers have last announced them: what a dump of a table holds, or what a file
// of updates leaves.
//
//   PathTable<PathCommunities> table;
//   readFile(file, [&](const Path& path, ...) {
//     table.take(path, [&](const Prefix&) { return std::optional(communities); });
//   }, {.updates = PathCutter::Updates::all});
//   table.forEach([](const Path& path, const Prefix& prefix, const PathCommunities& its) { ... });
#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "Numbering.h"
#include "ReaderNames.h"
#include "mrt/PathKey.h"

namespace bgpcomm {

template <class Entry>
class PathTable {
 public:
  /// Takes the path's prefixes in with `entry(prefix)`, or out where that is nothing, and out what
  /// it withdraws. A prefix that a message both withdraws and announces is announced (RFC 4271,
  /// section 4.3). Any change of a peer's state means that what it announced before is void: a new
  /// session starts with nothing, too.
  template <class MakeEntry>
  void take(const Path& path, const MakeEntry& makeEntry) {
    if (path.stateChange) forget(path.peer);
    std::unordered_set<std::string, SeededHash> announced;
    const bool withdraws = PrefixReader::withdrawn(path).next() != nullptr;
    visitPrefixes(path, [&](const Prefix& prefix) {
      std::string key = pathKey(path, prefix);
      if (withdraws) announced.insert(key);
      if (std::optional<Entry> entry = makeEntry(prefix))
        paths_.insert_or_assign(std::move(key),
                                Announced{std::move(*entry), prefix.addressFamily, path.sent,
                                          prefix.pathId, std::string(asText(prefix.nlri))});
      else
        paths_.erase(key);
    });
    visitWithdrawn(path, [&](const Prefix& prefix) {
      const std::string key = pathKey(path, prefix);
      if (!announced.contains(key)) paths_.erase(key);
    });
  }

  /// Calls `use(path, prefix, entry)` for each, in the order of peer and prefix.
  template <class Use>
  void forEach(const Use& use) const {
    std::vector<const typename Paths::value_type*> sorted;
    for (const auto& path : paths_) sorted.push_back(&path);
    std::ranges::sort(sorted, {}, [](const auto* one) -> const std::string& { return one->first; });
    for (const auto* const one : sorted) {
      const auto& [key, announced] = *one;
      Path path;
      path.peer = peerOfKey(key);
      path.sent = announced.sent;
      use(path, Prefix{announced.addressFamily, viewOf(announced.nlri), announced.pathId},
          announced.entry);
    }
  }

 private:
  struct Announced {
    Entry entry;
    AddressFamily addressFamily;
    bool sent;
    std::optional<U32> pathId;
    std::string nlri;
  };
  using Paths = std::unordered_map<std::string, Announced, SeededHash>;

  static Octets viewOf(const std::string& octets) {
    return {reinterpret_cast<const U8*>(octets.data()), octets.size()};
  }

  /// In the order of the keys: whoever watches entries go sees the same each time.
  void forget(const Peer& peer) {
    const std::string start = peerKey(peer);
    std::vector<std::string> keys;
    for (const auto& path : paths_)
      if (path.first.starts_with(start)) keys.push_back(path.first);
    std::ranges::sort(keys);
    for (const std::string& key : keys) paths_.erase(key);
  }

  Paths paths_;
};

}  // namespace bgpcomm
