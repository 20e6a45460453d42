#include "PeerUses.h"

#include <algorithm>
#include <tuple>

#include "mrt/Nlri.h"
#include "mrt/PathKey.h"

namespace bgpcomm {

void PeerUses::startPath(const Peer& peer) {
  current_ = peers_.numberOf(peerKey(peer));
  if (current_ >= uses_.size()) uses_.resize(current_ + 1);
  PeerUse& use = uses_[current_];
  if (use.paths++ > 0) return;
  use.address = addressText(peer.address);
  use.asNumber = peer.asNumber;
}

void PeerUses::addList(std::size_t type, U32 list) {
  PeerUse& use = uses_[current_];
  ++use.attributes[type];
  if (pairs_[type].insert(U64{current_} << 32 | list).second) ++use.lists;
}

std::vector<PeerUse> PeerUses::sorted() const {
  std::vector<PeerUse> sorted = uses_;
  std::ranges::sort(sorted, [](const PeerUse& a, const PeerUse& b) {
    return std::tie(b.paths, a.asNumber, a.address) < std::tie(a.paths, b.asNumber, b.address);
  });
  return sorted;
}

}  // namespace bgpcomm
