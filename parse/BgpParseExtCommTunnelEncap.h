// Tunnel encapsulation (RFC 9012, section 4.1): the rule that knows it, and the plug-in that brings
// the rule. ExtCommTunnelEncap says what the octets mean.
//
//   const auto plugin = bgpParseExtCommTunnelEncapSmFactory(registry);
//   parser->parseExtendedCommunity(ExtCommContent(0x030C000000000008))
//       // an ExtCommTunnelEncap of tunnelTypeVxlan
//
// 1. Without the plug-in such a content becomes an ExtCommSubtyped of no classification.
// 2. No content is refused: a tunnel type without a name is kept as its number, and the reserved
//    octets are ignored.
//
// IANA registers the subtype among the "Transitive Opaque Extended Community Sub-Types" (RFC 7153),
// the tunnel types among the "BGP Tunnel Encapsulation Attribute Tunnel Types" (RFC 9012).
//
// Threads: that of the registry; the rule may be asked from any.
#pragma once

#include "parse/BgpParseExtCommPlugin.h"

namespace Routing::Bgp {

/// Makes an ExtCommTunnelEncap of each content of type 0x03, subtype 0x0c.
class BgpParseExtComSubTypeTransOpaqueTunnelEncapRule final
    : public BgpParseExtCommSubRule<
          BgpParseExtComSubTypeTransOpaqueTunnelEncapRule, kind::TransOpaque,
          extCommPktSubtypeTransOpaqueEncapsulationExtendedCommunity, extCommTunnelEncapFactory> {
 public:
  static const Mox::Type type;
  using BgpParseExtCommSubRule::BgpParseExtCommSubRule;
};

/// Installs the rule in every rule of transitive opaque types.
class BgpParseExtCommTunnelEncapSm final
    : public BgpParseExtCommPlugin<BgpParseExtCommTunnelEncapSm,
                                   BgpParseExtComSubTypeTransOpaqueTunnelEncapRule> {
 public:
  static const BgpParseExtCommPluginType type;
  using BgpParseExtCommPlugin::BgpParseExtCommPlugin;
};
/// Two names of one factory. A plug-in without a registry, that is with null, reacts to nothing
/// until `ruleCollectionsIs` gives it one.
inline constexpr BgpParseExtCommPluginFactory<BgpParseExtCommTunnelEncapSm>
    BgpParseExtCommTunnelEncapSmIs, bgpParseExtCommTunnelEncapSmFactory;

}  // namespace Routing::Bgp
