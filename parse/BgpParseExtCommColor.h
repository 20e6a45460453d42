// Color (RFC 9012, section 4.3), by which routes are steered into tunnels: the rule that knows it,
// and the plug-in that brings the rule. ExtCommColor says what the octets mean.
//
//   const auto plugin = bgpParseExtCommColorSmFactory(registry);
//   parser->parseExtendedCommunity(ExtCommContent(0x030B000000000064))
//       // an ExtCommColor of color 100
//
// 1. Without the plug-in such a content becomes an ExtCommSubtyped of no classification.
// 2. No content is refused: every color is taken, and flags that nobody has defined are ignored.
//
// IANA registers the subtype among the "Transitive Opaque Extended Community Sub-Types" (RFC 7153).
//
// Threads: that of the registry; the rule may be asked from any.
#pragma once

#include "parse/BgpParseExtCommPlugin.h"

namespace Routing::Bgp {

/// Makes an ExtCommColor of each content of type 0x03, subtype 0x0b.
class BgpParseExtComSubTypeTransOpaqueColorRule final
    : public BgpParseExtCommSubRule<BgpParseExtComSubTypeTransOpaqueColorRule, kind::TransOpaque,
                                    extCommPktSubtypeTransOpaqueColorExtendedCommunity,
                                    extCommColorFactory> {
 public:
  static const Mox::Type type;
  using BgpParseExtCommSubRule::BgpParseExtCommSubRule;
};

/// Installs the rule in every rule of transitive opaque types.
class BgpParseExtCommColorSm final
    : public BgpParseExtCommPlugin<BgpParseExtCommColorSm,
                                   BgpParseExtComSubTypeTransOpaqueColorRule> {
 public:
  static const BgpParseExtCommPluginType type;
  using BgpParseExtCommPlugin::BgpParseExtCommPlugin;
};
/// Two names of one factory. A plug-in without a registry, that is with null, reacts to nothing
/// until `ruleCollectionsIs` gives it one.
inline constexpr BgpParseExtCommPluginFactory<BgpParseExtCommColorSm> BgpParseExtCommColorSmIs,
    bgpParseExtCommColorSmFactory;

}  // namespace Routing::Bgp
