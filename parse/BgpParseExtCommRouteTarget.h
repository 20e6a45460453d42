// Route target: the sets of sites that a route may be distributed to (RFC 4360, section 4; RFC 5668
// for AS numbers of four octets): its three rules, one for each way to write who named the set, and
// the plug-in that brings them.
//
//   const auto plugin = bgpParseExtCommRouteTargetSmFactory(registry);
//   parser->parseExtendedCommunity(ExtCommContent(0x0002FDE800000064))
//       // an ExtCommRouteTargetAs, 65000:100
//
//   octets 0 1    object, and what its six octets are
//   0x00 0x02     ExtCommRouteTargetAs, an AS number of two octets and a number of four
//   0x01 0x02     ExtCommRouteTargetIpv4Address, an address and a number of two octets
//   0x02 0x02     ExtCommRouteTargetAs, an AS number of four octets and a number of two
//
// 1. Without the plug-in such a content becomes an ExtCommAsNumber or ExtCommIpv4Address of no
//    classification, as one of a non-transitive type always does.
// 2. No content is refused: all AS numbers, addresses and numbers are taken.
//
// IANA registers the subtype in a registry for each type, for example the "Transitive Two-Octet
// AS-Specific Extended Community Sub-Types" (RFC 7153).
//
// Threads: that of the registry; the rules may be asked from any.
#pragma once

#include "parse/BgpParseExtCommRoute.h"

namespace Routing::Bgp {

// The rules by the names under which reflection knows them.
using BgpParseExtComSubTypeTransTwoOctetAsRouteTargetRule =
    BgpParseExtCommRouteRule<RouteTarget, kind::TransTwoOctetAs>;
using BgpParseExtComSubTypeTransIpv4AddressRouteTargetRule =
    BgpParseExtCommRouteRule<RouteTarget, kind::TransIpv4Address>;
using BgpParseExtComSubTypeTransFourOctetAsRouteTargetRule =
    BgpParseExtCommRouteRule<RouteTarget, kind::TransFourOctetAs>;

/// Installs each rule in every rule of its type.
class BgpParseExtCommRouteTargetSm final
    : public BgpParseExtCommPlugin<BgpParseExtCommRouteTargetSm,
                                   BgpParseExtComSubTypeTransTwoOctetAsRouteTargetRule,
                                   BgpParseExtComSubTypeTransIpv4AddressRouteTargetRule,
                                   BgpParseExtComSubTypeTransFourOctetAsRouteTargetRule> {
 public:
  static const BgpParseExtCommPluginType type;
  using BgpParseExtCommPlugin::BgpParseExtCommPlugin;
};
/// Two names of one factory. A plug-in without a registry, that is with null, reacts to nothing
/// until `ruleCollectionsIs` gives it one.
inline constexpr BgpParseExtCommPluginFactory<BgpParseExtCommRouteTargetSm>
    BgpParseExtCommRouteTargetSmIs, bgpParseExtCommRouteTargetSmFactory;

}  // namespace Routing::Bgp
