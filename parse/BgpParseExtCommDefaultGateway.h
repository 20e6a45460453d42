// Default gateway (RFC 7432, section 7.8).
#pragma once

#include "parse/BgpParseExtCommPlugin.h"

namespace Routing::Bgp {

class BgpParseExtComSubTypeTransOpaqueDefaultGatewayRule final
    : public BgpParseExtCommSubRule<BgpParseExtComSubTypeTransOpaqueDefaultGatewayRule,
                                    BgpParseExtComSubTypeTransOpaqueRuleBase,
                                    extCommPktSubtypeTransOpaqueDefaultGateway,
                                    extCommDefaultGatewayFactory> {
 public:
  static const Mox::Type type;
  using BgpParseExtCommSubRule::BgpParseExtCommSubRule;
};

class BgpParseExtCommDefaultGatewaySm final
    : public Mox::Entity<BgpParseExtCommDefaultGatewaySm, BgpParseExtCommPluginBaseSm> {
 public:
  static const Mox::Type type;
  explicit BgpParseExtCommDefaultGatewaySm(const RuleCollections& ruleCollections);

  void instantiateExtCommSubTypeTransOpaqueSubRule(
      const BgpParseExtCommSubTypeTransOpaqueRuleKey& ruleKey,
      const BgpParseExtCommControl& control) const override;
};
inline constexpr BgpParseExtCommPluginFactory<BgpParseExtCommDefaultGatewaySm>
    BgpParseExtCommDefaultGatewaySmIs, bgpParseExtCommDefaultGatewaySmFactory;

}  // namespace Routing::Bgp
