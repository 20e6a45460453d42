// Route target: the sets of routers that a route is for (RFC 4360, section 4).
#pragma once

#include "parse/BgpParseExtCommRoute.h"

namespace Routing::Bgp {

using BgpParseExtComSubTypeTransTwoOctetAsRouteTargetRule =
    BgpParseExtCommRouteRule<RouteTarget, kind::TransTwoOctetAs>;
using BgpParseExtComSubTypeTransIpv4AddressRouteTargetRule =
    BgpParseExtCommRouteRule<RouteTarget, kind::TransIpv4Address>;
using BgpParseExtComSubTypeTransFourOctetAsRouteTargetRule =
    BgpParseExtCommRouteRule<RouteTarget, kind::TransFourOctetAs>;

class BgpParseExtCommRouteTargetSm final
    : public BgpParseExtCommPlugin<BgpParseExtCommRouteTargetSm,
                                   BgpParseExtComSubTypeTransTwoOctetAsRouteTargetRule,
                                   BgpParseExtComSubTypeTransIpv4AddressRouteTargetRule,
                                   BgpParseExtComSubTypeTransFourOctetAsRouteTargetRule> {
 public:
  static const BgpParseExtCommPluginType type;
  using BgpParseExtCommPlugin::BgpParseExtCommPlugin;
};
inline constexpr BgpParseExtCommPluginFactory<BgpParseExtCommRouteTargetSm>
    BgpParseExtCommRouteTargetSmIs, bgpParseExtCommRouteTargetSmFactory;

}  // namespace Routing::Bgp
