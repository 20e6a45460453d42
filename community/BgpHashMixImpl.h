// Hashing of what has interned members.
#pragma once

#include "Orv/DedupHandle.h"
#include "Orv/HashMix.h"

namespace Routing::Bgp {

/// Feeds the address of an interned object, least significant octet first. Equal members are one
/// object, so a list may be hashed by the identity of its members. A null object is skipped.
/// REQUIRES: the object is interned. Asserts "... dedupState() !=
/// Orv::dedupHandleStateNeverDeduped()".
void _BgpHashMix(Orv::HashMix* mix, const Orv::DedupHandle* object);

}  // namespace Routing::Bgp
