#include "PathText.h"

#include "mrt/AsPath.h"

namespace bgpcomm {

std::string peerText(const Peer& peer) {
  return addressText(peer.address) + " AS" + std::to_string(peer.asNumber);
}

std::string originText(const Path& path) {
  const auto origin = AsPath(path).origin();
  return origin ? "AS" + std::to_string(*origin) : "-";
}

std::string prefixesText(PrefixReader prefixes, const PathFilter& filter) {
  std::string text;
  while (const Prefix* const prefix = prefixes.next())
    if (filter.wants(*prefix)) appendPrefix(text, *prefix);
  if (prefixes.cutShort()) text += text.empty() ? "?" : " ?";
  return text.empty() ? "-" : text;
}

}  // namespace bgpcomm
