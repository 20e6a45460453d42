// An agent as somebody else would build it, with the pack of kinds: installed headers and
// libraries, nothing of this tree.
#include <iostream>

#include "Mox/Exception.h"
#include "Mox/Type.h"
#include "community-list/ZoBgpCommunityList.h"
#include "kinds/ZoBgpCommunityReader.h"
#include "kinds/ZoBgpKindPack.h"

using namespace Routing::Bgp;

static bool describes(const ExtCommContent& content, std::string_view text) {
  const auto container = bgpParseExtCommContainerSmFactory();
  installKinds(*container);
  const auto comm = container->extCommParser()->parseExtendedCommunity(content);
  const auto read = readCommunity(text);
  return read && *read == AnyCommunity(content) && canonicalText(content) == text &&
         comm->classification() == extCommClassificationEvpn;
}

int main() {
  const CommListDedupTable::Ptr table = commListDedupTableFactory();
  const CommList::Ptr built = CommList::CommListIs();
  built->commIs(0xFFFFFF01);
  const auto interned = built->dedup(table);
  const Mox::U8 received[] = {0xFF, 0xFF, 0xFF, 0x01};
  if (CommList::lookupWire(table, received).list != interned) return 1;
  std::cout << interned->commsWellKnownStringForm() << '\n';
  if (!describes(ExtCommContent(0x0600010000000005), "mac-mobility:S:5")) return 1;
  try {
    Mox::Type::read(*interned, "no such attribute");
  } catch (const Mox::RangeException&) {  // caught by its type on this side
    // One is known here, the other by its name alone.
    return Mox::Type::find("Routing::Bgp::CommList") == &interned->fwkType() &&
                   Mox::Type::find("Routing::Bgp::ExtCommIp6List")
               ? 0
               : 1;
  }
  return 1;
}
