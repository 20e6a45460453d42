// Route origin: the site that a route comes from (RFC 4360, section 5; RFC 5668 for AS numbers of
// four octets): its three rules, one for each way to write who named the site, and the plug-in that
// brings them.
//
//   const auto plugin = bgpParseExtCommRouteOriginSmFactory(registry);
//   parser->parseExtendedCommunity(ExtCommContent(0x0003FDE800000064))
//       // an ExtCommRouteOriginAs, 65000:100
//
//   octets 0 1    object, and what its six octets are
//   0x00 0x03     ExtCommRouteOriginAs, an AS number of two octets and a number of four
//   0x01 0x03     ExtCommRouteOriginIpv4Address, an address and a number of two octets
//   0x02 0x03     ExtCommRouteOriginAs, an AS number of four octets and a number of two
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
using BgpParseExtComSubTypeTransTwoOctetAsRouteOriginRule =
    BgpParseExtCommRouteRule<RouteOrigin, kind::TransTwoOctetAs>;
using BgpParseExtComSubTypeTransIpv4AddressRouteOriginRule =
    BgpParseExtCommRouteRule<RouteOrigin, kind::TransIpv4Address>;
using BgpParseExtComSubTypeTransFourOctetAsRouteOriginRule =
    BgpParseExtCommRouteRule<RouteOrigin, kind::TransFourOctetAs>;

/// Installs each rule in every rule of its type.
class BgpParseExtCommRouteOriginSm final
    : public BgpParseExtCommPlugin<BgpParseExtCommRouteOriginSm,
                                   BgpParseExtComSubTypeTransTwoOctetAsRouteOriginRule,
                                   BgpParseExtComSubTypeTransIpv4AddressRouteOriginRule,
                                   BgpParseExtComSubTypeTransFourOctetAsRouteOriginRule> {
 public:
  static const BgpParseExtCommPluginType type;
  using BgpParseExtCommPlugin::BgpParseExtCommPlugin;
};
/// Two names of one factory. A plug-in without a registry, that is with null, reacts to nothing
/// until `ruleCollectionsIs` gives it one.
inline constexpr BgpParseExtCommPluginFactory<BgpParseExtCommRouteOriginSm>
    BgpParseExtCommRouteOriginSmIs, bgpParseExtCommRouteOriginSmFactory;

}  // namespace Routing::Bgp
