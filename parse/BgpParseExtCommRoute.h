// The sub-rules of route target and route origin, which differ in their values and in one octet.
// Their plug-ins are in BgpParseExtCommRouteTarget.h and BgpParseExtCommRouteOrigin.h.
#pragma once

#include "parse/BgpParseExtCommPlugin.h"

namespace Routing::Bgp {

/// `Route` is RouteTarget or RouteOrigin, `Kind` one of the three types that both have.
template <class Route, class Kind>
class BgpParseExtCommRouteRule final
    : public Mox::Entity<BgpParseExtCommRouteRule<Route, Kind>, typename Kind::SubRule> {
 public:
  static const Mox::Type type;
  explicit BgpParseExtCommRouteRule(const BgpParseExtCommControl& control);
  Mox::Ptr<ExtComm> inhale(const ExtCommContent& content) const override;
};

extern template class BgpParseExtCommRouteRule<RouteTarget, kind::TransTwoOctetAs>;
extern template class BgpParseExtCommRouteRule<RouteTarget, kind::TransIpv4Address>;
extern template class BgpParseExtCommRouteRule<RouteTarget, kind::TransFourOctetAs>;
extern template class BgpParseExtCommRouteRule<RouteOrigin, kind::TransTwoOctetAs>;
extern template class BgpParseExtCommRouteRule<RouteOrigin, kind::TransIpv4Address>;
extern template class BgpParseExtCommRouteRule<RouteOrigin, kind::TransFourOctetAs>;

}  // namespace Routing::Bgp
