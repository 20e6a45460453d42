// Origin validation state (RFC 8097): the rule that knows it, and the plug-in that brings the rule.
// ExtCommOriginValidationState says what the octets mean. The container makes this plug-in only
// while the feature is on.
//
//   const auto plugin = bgpParseExtCommOriginValidationStateSmFactory(registry);
//   parser->parseExtendedCommunity(ExtCommContent(0x4300000000000002))
//       // an ExtCommOriginValidationState of OriginValidationState::invalid
//
// 1. Without the plug-in such a content becomes an ExtCommSubtyped of no classification.
// 2. No content is refused: a last octet that is no state is kept as its number, and the reserved
//    octets are ignored.
//
// IANA registers the subtype among the "Non-Transitive Opaque Extended Community Sub-Types" (RFC
// 7153).
//
// Threads: that of the registry; the rule may be asked from any.
#pragma once

#include "parse/BgpParseExtCommPlugin.h"

namespace Routing::Bgp {

/// Makes an ExtCommOriginValidationState of each content of type 0x43, subtype 0x00.
class BgpParseExtComSubTypeNonTransOpaqueOriginValidationStateRule final
    : public BgpParseExtCommSubRule<
          BgpParseExtComSubTypeNonTransOpaqueOriginValidationStateRule, kind::NonTransOpaque,
          extCommPktSubtypeNonTransOriginValidationState, extCommOriginValidationStateFactory> {
 public:
  static const Mox::Type type;
  using BgpParseExtCommSubRule::BgpParseExtCommSubRule;
};

/// Installs the rule in every rule of non-transitive opaque types.
class BgpParseExtCommOriginValidationStateSm final
    : public BgpParseExtCommPlugin<BgpParseExtCommOriginValidationStateSm,
                                   BgpParseExtComSubTypeNonTransOpaqueOriginValidationStateRule> {
 public:
  static const BgpParseExtCommPluginType type;
  using BgpParseExtCommPlugin::BgpParseExtCommPlugin;
};
/// Two names of one factory. A plug-in without a registry, that is with null, reacts to nothing
/// until `ruleCollectionsIs` gives it one.
inline constexpr BgpParseExtCommPluginFactory<BgpParseExtCommOriginValidationStateSm>
    BgpParseExtCommOriginValidationStateSmIs, bgpParseExtCommOriginValidationStateSmFactory;

}  // namespace Routing::Bgp
