#include "community-list/ZoBgpCommunityListSnapshotTypes.h"

#include "community-list/ZoBgpCommunityListExtended.h"

namespace Routing::Bgp {

const Mox::Type CommListSnapshot::type{"Routing::Bgp::CommListSnapshot",
                                       &Mox::PtrInterface::type,
                                       {Mox::collection<&CommListSnapshot::toStrep>("comm")}};
const Mox::Type ExtCommListSnapshot::type{"Routing::Bgp::ExtCommListSnapshot",
                                          &Mox::PtrInterface::type,
                                          extCommListSnapshotAttributes<ExtCommListSnapshot>()};
const Mox::Type ExtCommClassificationListSnapshot::type{
    "Routing::Bgp::ExtCommClassificationListSnapshot", &Mox::PtrInterface::type,
    extCommGroupSnapshotAttributes<ExtCommClassificationListSnapshot>()};

}  // namespace Routing::Bgp
