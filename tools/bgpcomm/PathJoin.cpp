#include "PathJoin.h"

#include <algorithm>

namespace bgpcomm {

/// A guess spares most look-ups by key.
U32 PathJoin::numberOf(const Peer& peer) {
  const U32 end = peer.address.empty() ? 0 : peer.address.back();
  U32& guess = guesses_[(peer.asNumber * 31 + end) % guesses_.size()];
  if (guess < peers_.size() && peers_[guess].asNumber == peer.asNumber &&
      std::ranges::equal(peers_[guess].address, peer.address))
    return guess;
  std::string key = peerKey(peer);
  if (const auto known = peerNumbers_.find(key); known != peerNumbers_.end())
    return guess = known->second;
  const std::string& kept = peerKeys_.emplace_back(std::move(key));
  peers_.push_back(peerOfKey(kept));
  guess = U32(peers_.size() - 1);
  peerNumbers_.emplace(kept, guess);
  return guess;
}

void PathJoin::add(Side side, const Path& path, const Prefix& prefix,
                   const Communities& communities) {
  OfSide& its = sides_[side];
  const bool isSame = !its.key.empty() && its.sent == path.sent &&
                      its.group.addressFamily == prefix.addressFamily &&
                      its.group.nlri == asText(prefix.nlri);
  if (!isSame) {
    close(side);
    its.group.addressFamily = prefix.addressFamily;
    its.group.nlri = asText(prefix.nlri);
    its.sent = path.sent;
    its.key = nlriKey(prefix);
    const auto [afi, safi] = prefix.addressFamily;
    for (const int part : {int(path.sent), int(safi), afi & 0xFF, afi >> 8}) its.key += char(part);
  }
  its.group.entries.push_back({numberOf(path.peer), prefix.pathId, communities});
}

void PathJoin::Group::eraseMet() {
  std::erase_if(entries, [](const Entry& entry) { return entry.peer == met; });
}

/// Lets the paths of a prefix meet their likes; the others wait.
void PathJoin::close(Side side) {
  OfSide &its = sides_[side], &other = sides_[!side];
  if (its.group.entries.empty()) return;
  if (const auto likes = other.waiting.find(its.key); likes != other.waiting.end()) {
    meet(side, its.group, likes->second);
    if (likes->second.entries.empty()) other.waiting.erase(likes);
  }
  if (its.group.entries.empty()) return;
  const auto [at, isNew] = its.waiting.try_emplace(its.key, its.group);
  if (!isNew) std::ranges::copy(its.group.entries, std::back_inserter(at->second.entries));
  its.group.entries.clear();
}

/// Mostly both have the same peers in the same order: the search begins behind the last like.
void PathJoin::meet(Side side, Group& group, Group& others) {
  std::size_t at = 0;
  for (Entry& entry : group.entries) {
    std::size_t left = others.entries.size();
    while (left && !others.entries[at].isLike(entry)) at = (at + 1) % others.entries.size(), --left;
    if (!left) continue;
    Entry& like = others.entries[at];
    const Communities* sides[2];
    sides[side] = &entry.communities;
    sides[!side] = &like.communities;
    use(group, entry, sides);
    entry.peer = like.peer = met;
  }
  group.eraseMet();
  others.eraseMet();
}

void PathJoin::use(const Group& group, const Entry& entry, const Communities* (&sides)[2]) const {
  const Octets nlri(reinterpret_cast<const U8*>(group.nlri.data()), group.nlri.size());
  use_(
      {peers_[entry.peer], {group.addressFamily, nlri, entry.pathId}, sides[before], sides[after]});
}

void PathJoin::end() {
  close(before);
  close(after);
  for (const Side side : {before, after}) {
    // In an order that does not hang on hashes.
    std::vector<const Waiting::value_type*> waiting;
    for (const auto& one : sides_[side].waiting) waiting.push_back(&one);
    std::ranges::sort(waiting, {},
                      [](const auto* one) -> const std::string& { return one->first; });
    for (const auto* const one : waiting)
      for (const Entry& entry : one->second.entries) {
        const Communities* sides[2] = {};
        sides[side] = &entry.communities;
        use(one->second, entry, sides);
      }
  }
}

}  // namespace bgpcomm
