#include "parse/BgpParseExtCommRouteOrigin.h"

namespace Routing::Bgp {

const BgpParseExtCommPluginType BgpParseExtCommRouteOriginSm::type{
    "Routing::Bgp::BgpParseExtCommRouteOriginSm"};

}  // namespace Routing::Bgp
