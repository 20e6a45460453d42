#include "community/ZoBgpCommunityWellKnown.h"

namespace Routing::Bgp {

static const Mox::Type bgpCommunityValueType = Mox::enumType<BgpCommunityValue>();

}  // namespace Routing::Bgp
