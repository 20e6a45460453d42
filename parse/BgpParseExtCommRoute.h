// The sub-rules of route target and route origin (RFC 4360, sections 4 and 5; RFC 5668), which
// differ in the class of their objects and in the subtype octet. The plug-ins that install them are
// in BgpParseExtCommRouteTarget.h and BgpParseExtCommRouteOrigin.h.
#pragma once

#include "parse/BgpParseExtCommPlugin.h"

namespace Routing::Bgp {

/// Builds the objects of one type. `Route` is RouteTarget or RouteOrigin; `Kind` is one of the
/// three types that both have: AS number of two octets, IPv4 address, AS number of four octets.
template <class Route, class Kind>
class BgpParseExtCommRouteRule final
    : public Mox::Entity<BgpParseExtCommRouteRule<Route, Kind>, typename Kind::SubRule> {
 public:
  static const Mox::Type type;
  /// For the subtype of the template.
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
