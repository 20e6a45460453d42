// An agent as somebody else would build it: installed headers and libraries, nothing of this tree.
#include <iostream>

#include "Mox/Exception.h"
#include "Mox/Type.h"
#include "community-list/ZoBgpCommunityList.h"

using namespace Routing::Bgp;

// An exception of the library's is caught by its type on this side.
static bool refusesUnknownNames() {
  try {
    Mox::Type::read(*CommList::CommListIs(), "no such attribute");
  } catch (const Mox::RangeException&) {
    return true;
  }
  return false;
}

int main() {
  const CommListDedupTable::Ptr table = commListDedupTableFactory();
  const CommList::Ptr built = CommList::CommListIs();
  built->commIs(0xFFFFFF01);
  built->commIs(65000u << 16 | 100);
  const auto interned = built->dedup(table);

  const Mox::U8 received[] = {0xFD, 0xE8, 0, 100, 0xFF, 0xFF, 0xFF, 0x01};
  const auto found = CommList::lookupWire(table, received);

  std::cout << interned->commsWellKnownStringForm() << '\n';
  const bool same = found && found.list == interned;
  const bool described = Mox::Type::find("Routing::Bgp::CommList") == &interned->fwkType();
  return same && described && refusesUnknownNames() ? 0 : 1;
}
