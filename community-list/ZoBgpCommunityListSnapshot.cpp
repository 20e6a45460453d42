#include "community-list/ZoBgpCommunityListSnapshot.h"

namespace Routing::Bgp {

const Mox::Type CommListSnapshot::type{"Routing::Bgp::CommListSnapshot",
                                       &Mox::PtrInterface::type,
                                       {Mox::collection<&CommListSnapshot::toStrep>("comm")}};

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

Mox::String CommListSnapshot::toStrep() const {
  Mox::String text;
  for (const auto& [community, value] : comm_)
    text +=
        (text.empty() ? "" : ", ") + std::to_string(community) + ": " + Mox::valueToStrep(value);
  return "{" + text + "}";
}

}  // namespace Routing::Bgp
