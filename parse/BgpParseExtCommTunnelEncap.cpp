#include "parse/BgpParseExtCommTunnelEncap.h"

namespace Routing::Bgp {

const Mox::Type BgpParseExtComSubTypeTransOpaqueTunnelEncapRule::type{
    "Routing::Bgp::BgpParseExtComSubTypeTransOpaqueTunnelEncapRule",
    &BgpParseExtComSubTypeTransOpaqueRuleBase::type,
    {}};

const BgpParseExtCommPluginType BgpParseExtCommTunnelEncapSm::type{
    "Routing::Bgp::BgpParseExtCommTunnelEncapSm"};

}  // namespace Routing::Bgp
