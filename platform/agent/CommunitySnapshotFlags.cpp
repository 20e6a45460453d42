#include "agent/CommunitySnapshotFlags.h"

namespace Routing::RouteMap {

const Mox::Type CommListSnapshot::type{"Routing::RouteMap::CommListSnapshot",
                                       &Mox::PtrInterface::type,
                                       {Mox::collection<&CommListSnapshot::toStrep>("comm")}};

}  // namespace Routing::RouteMap
