#include "community-list/ZoBgpCommunityListSnapshot.h"

namespace Routing::Bgp {

const Mox::Type CommListSnapshot::type{
    "Routing::Bgp::CommListSnapshot", &Mox::PtrInterface::type, {Mox::operation("comm")}};

void CommListSnapshot::commIs(U32 community, bool value) {
  comm_[community] = value;
  commNotify(community);
}

bool CommListSnapshot::commDel(U32 community) {
  const auto found = comm_.find(community);
  if (found == comm_.end()) return false;
  const bool value = found->second;
  comm_.erase(found);
  commNotify(community);
  return value;
}

void CommListSnapshot::commDelAll() {
  while (!comm_.empty()) commDel(comm_.begin()->first);
}

bool CommListSnapshot::comm(U32 community) const {
  const auto found = comm_.find(community);
  return found != comm_.end() && found->second;
}

}  // namespace Routing::Bgp
