// Each peer's paths, and the lists that they carry.
//
//   PeerUses peers;
//   peers.startPath(path.peer);
//   peers.addList(type, held.list);    // by the number that HeldLists gives it
//   peers.addFaults(values.faults);
//   for (const PeerUse& use : peers.sorted()) ...
#pragma once

#include <array>
#include <string>
#include <unordered_set>
#include <vector>

#include "Faults.h"
#include "ListTypes.h"
#include "Numbering.h"
#include "mrt/Mrt.h"

namespace bgpcomm {

struct PeerUse {
  std::string address;  ///< `-` when the dump does not say
  U32 asNumber = 0;
  U64 paths = 0;
  std::array<U64, listTypeCount> attributes{};
  U64 lists = 0;      ///< distinct ones, of all types
  U64 malformed = 0;  ///< attributes
};

/// Takes memory for each list that a peer has, once, and none for a path.
class PeerUses {
 public:
  void startPath(const Peer& peer);
  /// Counts an attribute of the path.
  void addList(std::size_t type, U32 list);
  void addFaults(const FaultCounts& faults) { uses_[current_].malformed += faults.total(); }

  /// The most paths first, equals by AS number and address.
  std::vector<PeerUse> sorted() const;

 private:
  Numbering<std::string> peers_;
  std::vector<PeerUse> uses_;
  U32 current_ = 0;
  // Numbers of a peer, and of a list that it has.
  std::array<std::unordered_set<U64>, listTypeCount> pairs_;
};

}  // namespace bgpcomm
