// Origin validation state (RFC 8097). The container makes this plug-in only while the feature is
// on.
#pragma once

#include "parse/BgpParseExtCommPlugin.h"

namespace Routing::Bgp {

class BgpParseExtComSubTypeNonTransOpaqueOriginValidationStateRule final
    : public BgpParseExtCommSubRule<
          BgpParseExtComSubTypeNonTransOpaqueOriginValidationStateRule, kind::NonTransOpaque,
          extCommPktSubtypeNonTransOriginValidationState, extCommOriginValidationStateFactory> {
 public:
  static const Mox::Type type;
  using BgpParseExtCommSubRule::BgpParseExtCommSubRule;
};

class BgpParseExtCommOriginValidationStateSm final
    : public BgpParseExtCommPlugin<BgpParseExtCommOriginValidationStateSm,
                                   BgpParseExtComSubTypeNonTransOpaqueOriginValidationStateRule> {
 public:
  static const BgpParseExtCommPluginType type;
  using BgpParseExtCommPlugin::BgpParseExtCommPlugin;
};
inline constexpr BgpParseExtCommPluginFactory<BgpParseExtCommOriginValidationStateSm>
    BgpParseExtCommOriginValidationStateSmIs, bgpParseExtCommOriginValidationStateSmFactory;

}  // namespace Routing::Bgp
