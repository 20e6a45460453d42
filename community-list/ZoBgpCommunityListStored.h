// A list in the agent's store.
#pragma once

#include "MoxStash/StoreManager.h"

namespace Routing::Bgp {

/// `begin`, `end` and `capacity` are references: to the values themselves in lists of plain values,
/// to one reference per community in extended lists.
struct StoredCommList {
  MoxStash::StoreReference begin, end, capacity;
  U32 commVectorSorted;
  U32 unused;
};

}  // namespace Routing::Bgp
