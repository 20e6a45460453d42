// The agent's policy for the communities of a path: an import drops no-export.
#pragma once

#include "path/ZoBgpCommunityTables.h"

namespace example {

using namespace Mox::Words;
using namespace Routing::Bgp;

/// Interned lists do not change: an edit makes another list, of a snapshot.
inline void dropNoExport(const CommunityTables& tables, PathCommunities& path) {
  const CommList::PtrConst& list = path.list<CommList>();
  if (!list || !list->noExport()) return;
  const CommListSnapshot::Ptr snapshot = list->commSnapshot();
  snapshot->commDel(communityNoExport);
  const CommList::Ptr edited = CommList::CommListIs();
  for (const auto& [value, flag] : snapshot->comms()) edited->commIs(value);
  path.listIs(edited->dedup(tables.of<CommList>().lists()));
}

}  // namespace example
