#include "parse/BgpParseExtCommRoute.h"

namespace Routing::Bgp {
namespace {

/// The word in its class names, and its subtype, which is the same in every type.
template <class Route>
struct Words;
template <>
struct Words<RouteTarget> {
  static constexpr std::string_view name = "RouteTarget";
  static constexpr U32 subtype = extCommPktSubtypeTransTwoOctetAsRouteTarget;
};
template <>
struct Words<RouteOrigin> {
  static constexpr std::string_view name = "RouteOrigin";
  static constexpr U32 subtype = extCommPktSubtypeTransTwoOctetAsRouteOrigin;
};

/// `Routing::Bgp::BgpParseExtComSubTypeTransIpv4AddressRouteTargetRule`
template <class Route, class Kind>
Mox::String ruleName() {
  constexpr auto end = Kind::subRuleName.find("RuleBase");
  return Mox::String(Kind::subRuleName.substr(0, end)) + Mox::String(Words<Route>::name) + "Rule";
}

}  // namespace

template <class Route, class Kind>
const Mox::Type BgpParseExtCommRouteRule<Route, Kind>::type{
    ruleName<Route, Kind>(), &Kind::SubRule::type, {}};

template <class Route, class Kind>
BgpParseExtCommRouteRule<Route, Kind>::BgpParseExtCommRouteRule(
    const BgpParseExtCommControl& control)
    : BgpParseExtCommRouteRule::Entity(control, typename Kind::Subtype(Words<Route>::subtype)) {}

template <class Route, class Kind>
Mox::Ptr<ExtComm> BgpParseExtCommRouteRule<Route, Kind>::inhale(
    const ExtCommContent& content) const {
  if constexpr (std::same_as<Kind, kind::TransIpv4Address>)
    return Mox::makeNew<typename Route::Ipv4Address>(content);
  else
    return Mox::makeNew<typename Route::As>(content, std::same_as<Kind, kind::TransFourOctetAs>);
}

template class BgpParseExtCommRouteRule<RouteTarget, kind::TransTwoOctetAs>;
template class BgpParseExtCommRouteRule<RouteTarget, kind::TransIpv4Address>;
template class BgpParseExtCommRouteRule<RouteTarget, kind::TransFourOctetAs>;
template class BgpParseExtCommRouteRule<RouteOrigin, kind::TransTwoOctetAs>;
template class BgpParseExtCommRouteRule<RouteOrigin, kind::TransIpv4Address>;
template class BgpParseExtCommRouteRule<RouteOrigin, kind::TransFourOctetAs>;

}  // namespace Routing::Bgp
