// Tunnel encapsulation (RFC 9012, section 4.1).
#pragma once

#include "parse/BgpParseExtCommPlugin.h"

namespace Routing::Bgp {

class BgpParseExtComSubTypeTransOpaqueTunnelEncapRule final
    : public BgpParseExtCommSubRule<
          BgpParseExtComSubTypeTransOpaqueTunnelEncapRule, BgpParseExtComSubTypeTransOpaqueRuleBase,
          extCommPktSubtypeTransOpaqueEncapsulationExtendedCommunity, extCommTunnelEncapFactory> {
 public:
  static const Mox::Type type;
  using BgpParseExtCommSubRule::BgpParseExtCommSubRule;
};

class BgpParseExtCommTunnelEncapSm final
    : public Mox::Entity<BgpParseExtCommTunnelEncapSm, BgpParseExtCommPluginBaseSm> {
 public:
  static const Mox::Type type;
  explicit BgpParseExtCommTunnelEncapSm(const RuleCollections& ruleCollections);

  void instantiateExtCommSubTypeTransOpaqueSubRule(
      const BgpParseExtCommSubTypeTransOpaqueRuleKey& ruleKey,
      const BgpParseExtCommControl& control) const override;
};
inline constexpr BgpParseExtCommPluginFactory<BgpParseExtCommTunnelEncapSm>
    BgpParseExtCommTunnelEncapSmIs, bgpParseExtCommTunnelEncapSmFactory;

}  // namespace Routing::Bgp
