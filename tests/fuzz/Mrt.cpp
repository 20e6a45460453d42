// A hostile dump: its records are cut into paths, and of each path everything is asked.

#include "mrt/Mrt.h"
#include "mrt/AsPath.h"
#include "mrt/NextHop.h"
#include "mrt/Nlri.h"
#include "tools/bgpcomm/Attributes.h"

using namespace bgpcomm;

static void askEverything(const Path& path, const CommunityTables& tables) {
  addressText(path.peer.address);
  const AsPath asPath(path);
  asPath.text();
  asPath.origin();
  addressText(nextHop(path));
  const auto ask = [&](const Prefix& prefix) {
    nlriText(prefix.addressFamily, prefix.nlri);
    addressText(nextHop(path, prefix.addressFamily));
  };
  visitPrefixes(path, ask);
  visitWithdrawn(path, ask);
  const CommunityValues values = findCommunities(path.attributes);
  for (std::size_t type = 0; type < listTypeCount; ++type) {
    if (values[type].empty()) continue;
    listTypes[type].text(tables, values[type]);
    listTypes[type].serialized(tables, values[type]);
  }
}

extern "C" int LLVMFuzzerTestOneInput(const U8* data, std::size_t size) {
  static const CommunityTables tables;
  PathCutter cutter(PathCutter::Updates::all);
  Cursor in(Octets(data, size));
  while (!in.atEnd()) {
    Record record;
    // The types that are understood are near each other; a length of two octets is found sooner.
    record.type = U16(in.u8() % 8 + 11);
    record.subtype = U16(in.u8() % 16);
    const Octets body = in.take(std::min<std::size_t>(in.u16(), in.left().size()));
    // In memory of its own, where reading beyond the end is seen.
    const std::vector<U8> copy(body.begin(), body.end());
    record.body = copy;
    cutter.cut(record, [](const Path& path) { askEverything(path, tables); });
  }
  return 0;
}
