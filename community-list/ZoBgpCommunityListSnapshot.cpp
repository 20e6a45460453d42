#include "community-list/ZoBgpCommunityListSnapshot.h"

namespace Routing::Bgp {

const Mox::Type CommListSnapshot::type{"Routing::Bgp::CommListSnapshot",
                                       &Mox::PtrInterface::type,
                                       {Mox::collection<&CommListSnapshot::toStrep>("comm")}};

}  // namespace Routing::Bgp
