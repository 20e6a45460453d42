// Route origin: the site that a route comes from (RFC 4360, section 5).
#pragma once

#include "parse/BgpParseExtCommRoute.h"

namespace Routing::Bgp {

using BgpParseExtComSubTypeTransTwoOctetAsRouteOriginRule =
    BgpParseExtCommRouteRule<RouteOrigin, kind::TransTwoOctetAs>;
using BgpParseExtComSubTypeTransIpv4AddressRouteOriginRule =
    BgpParseExtCommRouteRule<RouteOrigin, kind::TransIpv4Address>;
using BgpParseExtComSubTypeTransFourOctetAsRouteOriginRule =
    BgpParseExtCommRouteRule<RouteOrigin, kind::TransFourOctetAs>;

class BgpParseExtCommRouteOriginSm final
    : public BgpParseExtCommPlugin<BgpParseExtCommRouteOriginSm,
                                   BgpParseExtComSubTypeTransTwoOctetAsRouteOriginRule,
                                   BgpParseExtComSubTypeTransIpv4AddressRouteOriginRule,
                                   BgpParseExtComSubTypeTransFourOctetAsRouteOriginRule> {
 public:
  static const BgpParseExtCommPluginType type;
  using BgpParseExtCommPlugin::BgpParseExtCommPlugin;
};
inline constexpr BgpParseExtCommPluginFactory<BgpParseExtCommRouteOriginSm>
    BgpParseExtCommRouteOriginSmIs, bgpParseExtCommRouteOriginSmFactory;

}  // namespace Routing::Bgp
