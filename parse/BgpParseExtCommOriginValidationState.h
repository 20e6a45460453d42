// Origin validation state (RFC 8097). The container makes this plug-in only while the feature is
// on.
#pragma once

#include "parse/BgpParseExtCommPlugin.h"

namespace Routing::Bgp {

class BgpParseExtComSubTypeNonTransOpaqueOriginValidationStateRule final
    : public BgpParseExtCommSubRule<BgpParseExtComSubTypeNonTransOpaqueOriginValidationStateRule,
                                    BgpParseExtComSubTypeNonTransOpaqueRuleBase,
                                    extCommPktSubtypeNonTransOriginValidationState,
                                    extCommOriginValidationStateFactory> {
 public:
  static const Mox::Type type;
  using BgpParseExtCommSubRule::BgpParseExtCommSubRule;
};

class BgpParseExtCommOriginValidationStateSm final
    : public Mox::Entity<BgpParseExtCommOriginValidationStateSm, BgpParseExtCommPluginBaseSm> {
 public:
  static const Mox::Type type;
  explicit BgpParseExtCommOriginValidationStateSm(const RuleCollections& ruleCollections);

  void instantiateExtCommSubTypeNonTransOpaqueSubRule(
      const BgpParseExtCommSubTypeNonTransOpaqueRuleKey& ruleKey,
      const BgpParseExtCommControl& control) const override;
};
inline constexpr BgpParseExtCommPluginFactory<BgpParseExtCommOriginValidationStateSm>
    BgpParseExtCommOriginValidationStateSmIs, bgpParseExtCommOriginValidationStateSmFactory;

}  // namespace Routing::Bgp
