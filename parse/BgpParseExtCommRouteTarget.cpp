#include "parse/BgpParseExtCommRouteTarget.h"

namespace Routing::Bgp {

const BgpParseExtCommPluginType BgpParseExtCommRouteTargetSm::type{
    "Routing::Bgp::BgpParseExtCommRouteTargetSm"};

}  // namespace Routing::Bgp
