// The paths of two dumps, each beside its like: same peer, prefix and path identifier.
//
//   PathJoin join([](const PathJoin::Pair& pair) { ... });
//   join.add(PathJoin::before, path, prefix, communities);      // from both dumps in turn
//   join.end();                                                 // those that one dump alone has
//
// Dumps of tables hold their prefixes in the same order, so that a path waits for its like only as
// long as one dump is ahead of the other: memory goes with what differs, not with the tables. A
// path that a dump has twice is two paths.
#pragma once

#include <array>
#include <deque>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

#include "Numbering.h"
#include "ReaderNames.h"
#include "mrt/PathKey.h"
#include "path/ZoBgpPathCommunities.h"

namespace bgpcomm {

class PathJoin {
 public:
  enum Side : U8 { before, after };
  using Communities = Routing::Bgp::PathCommunities;

  /// Two paths that are alike, or one that has no like.
  struct Pair {
    Peer peer;
    Prefix prefix;
    const Communities* before;  ///< null when only the other dump has it
    const Communities* after;
    bool isSame() const { return before && after && *before == *after; }
  };

  explicit PathJoin(std::function<void(const Pair&)> use) : use_(std::move(use)) {}

  /// Takes a path. Paths of one prefix that follow each other cost little more than the first.
  void add(Side side, const Path& path, const Prefix& prefix, const Communities& communities);
  /// Hands out all that still wait. Nothing is added afterwards.
  void end();

 private:
  struct Entry {
    U32 peer;
    std::optional<U32> pathId;
    Communities communities;
    bool isLike(const Entry& other) const { return peer == other.peer && pathId == other.pathId; }
  };
  /// Paths of one prefix.
  struct Group {
    AddressFamily addressFamily;
    std::string nlri;
    std::vector<Entry> entries;
    void eraseMet();
  };
  static constexpr U32 met = ~U32{0};  // the peer of an entry that has met its like
  using Waiting = std::unordered_map<std::string, Group, SeededHash>;
  struct OfSide {
    // The prefix whose paths are being added.
    std::string key;
    Group group;
    bool sent = false;
    Waiting waiting;
  };

  U32 numberOf(const Peer& peer);
  void close(Side side);
  void meet(Side side, Group& group, Group& others);
  /// `before` and `after` by side.
  void use(const Group& group, const Entry& entry, const Communities* (&sides)[2]) const;

  const std::function<void(const Pair&)> use_;
  std::deque<std::string> peerKeys_;  // by number
  std::vector<Peer> peers_;           // with addresses in the keys
  std::unordered_map<std::string_view, U32, SeededHash> peerNumbers_;
  std::array<U32, 256> guesses_{};  // the last peer whose AS number and address end so
  OfSide sides_[2];
};

}  // namespace bgpcomm
