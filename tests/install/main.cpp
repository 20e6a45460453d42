// An agent as somebody else would build it, with the pack of kinds: installed headers and
// libraries, nothing of this tree.
#include <iostream>

#include "Mox/Exception.h"
#include "Mox/Type.h"
#include "community-list/ZoBgpCommunityList.h"
#include "kinds/ZoBgpCommunityReader.h"
#include "kinds/ZoBgpKindPack.h"

using namespace Routing::Bgp;

int main() {
  const auto container = bgpParseExtCommContainerSmFactory();
  installKinds(*container);
  const ExtCommContent content(0x0600010000000005);
  const auto comm = container->extCommParser()->parseExtendedCommunity(content);
  if (comm->classification() != extCommClassificationEvpn) return 1;
  const auto read = readCommunity(canonicalText(content));
  if (!read || *read != AnyCommunity(content)) return 1;

  const CommListDedupTable::Ptr table = commListDedupTableFactory();
  const CommList::Ptr built = CommList::CommListIs();
  built->commIs(0xFFFFFF01);
  const auto interned = built->dedup(table);
  const Mox::U8 received[] = {0xFF, 0xFF, 0xFF, 0x01};
  if (CommList::lookupWire(table, received).list != interned) return 1;
  std::cout << interned->commsWellKnownStringForm() << ' ' << canonicalText(content) << '\n';
  // One is known here, the other by its name alone.
  if (Mox::Type::find("Routing::Bgp::CommList") != &interned->fwkType()) return 1;
  if (!Mox::Type::find("Routing::Bgp::ExtCommIp6List")) return 1;
  try {
    Mox::Type::read(*interned, "no such attribute");
  } catch (const Mox::RangeException&) {  // by its type on this side
    return 0;
  }
  return 1;
}
