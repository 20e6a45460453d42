#include "community/BgpHashMixImpl.h"

namespace Routing::Bgp {

void _BgpHashMix(Orv::HashMix* mix, const Orv::DedupHandle* object) {
  MOX_ASSERT(!object || object->dedupState() != Orv::dedupHandleStateNeverDeduped(),
             "__null == ( p ) || ( p )->dedupState() != Orv::dedupHandleStateNeverDeduped()");
  if (!object) return;
  auto address = reinterpret_cast<std::uintptr_t>(object);
  for (std::size_t i = 0; i < sizeof address; ++i, address >>= 8) mix->feed(U8(address));
}

}  // namespace Routing::Bgp
