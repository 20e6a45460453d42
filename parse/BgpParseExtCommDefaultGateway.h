// Default gateway (RFC 7432, section 7.8), which marks the MAC address of a gateway in an EVPN: the
// rule that knows it, and the plug-in that brings the rule.
//
//   const auto plugin = bgpParseExtCommDefaultGatewaySmFactory(registry);
//   parser->parseExtendedCommunity(ExtCommContent(0x030D000000000000))
//       // an ExtCommDefaultGateway
//
// 1. Without the plug-in such a content becomes an ExtCommSubtyped of no classification.
// 2. No content is refused: the six octets of the value say nothing, and contents that differ in
//    them stay different objects.
//
// IANA registers the subtype among the "Transitive Opaque Extended Community Sub-Types" (RFC 7153).
//
// Threads: that of the registry; the rule may be asked from any.
#pragma once

#include "parse/BgpParseExtCommPlugin.h"

namespace Routing::Bgp {

/// Makes an ExtCommDefaultGateway of each content of type 0x03, subtype 0x0d.
class BgpParseExtComSubTypeTransOpaqueDefaultGatewayRule final
    : public BgpParseExtCommSubRule<BgpParseExtComSubTypeTransOpaqueDefaultGatewayRule,
                                    kind::TransOpaque, extCommPktSubtypeTransOpaqueDefaultGateway,
                                    extCommDefaultGatewayFactory> {
 public:
  static const Mox::Type type;
  using BgpParseExtCommSubRule::BgpParseExtCommSubRule;
};

/// Installs the rule in every rule of transitive opaque types.
class BgpParseExtCommDefaultGatewaySm final
    : public BgpParseExtCommPlugin<BgpParseExtCommDefaultGatewaySm,
                                   BgpParseExtComSubTypeTransOpaqueDefaultGatewayRule> {
 public:
  static const BgpParseExtCommPluginType type;
  using BgpParseExtCommPlugin::BgpParseExtCommPlugin;
};
/// Two names of one factory. A plug-in without a registry, that is with null, reacts to nothing
/// until `ruleCollectionsIs` gives it one.
inline constexpr BgpParseExtCommPluginFactory<BgpParseExtCommDefaultGatewaySm>
    BgpParseExtCommDefaultGatewaySmIs, bgpParseExtCommDefaultGatewaySmFactory;

}  // namespace Routing::Bgp
