#include "parse/BgpParseExtCommDefaultGateway.h"

namespace Routing::Bgp {

const Mox::Type BgpParseExtComSubTypeTransOpaqueDefaultGatewayRule::type{
    "Routing::Bgp::BgpParseExtComSubTypeTransOpaqueDefaultGatewayRule",
    &BgpParseExtComSubTypeTransOpaqueRuleBase::type,
    {}};

const BgpParseExtCommPluginType BgpParseExtCommDefaultGatewaySm::type{
    "Routing::Bgp::BgpParseExtCommDefaultGatewaySm"};

}  // namespace Routing::Bgp
