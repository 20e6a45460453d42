// Route target: the sets of routers that a route is for (RFC 4360, section 4).
#pragma once

#include "parse/BgpParseExtCommPlugin.h"

namespace Routing::Bgp {

class BgpParseExtComSubTypeTransTwoOctetAsRouteTargetRule final
    : public BgpParseExtCommSubRule<BgpParseExtComSubTypeTransTwoOctetAsRouteTargetRule,
                                    BgpParseExtComSubTypeTransTwoOctetAsRuleBase,
                                    extCommPktSubtypeTransTwoOctetAsRouteTarget,
                                    extCommRouteTargetAsFactory, false> {
 public:
  static const Mox::Type type;
  using BgpParseExtCommSubRule::BgpParseExtCommSubRule;
};

class BgpParseExtComSubTypeTransIpv4AddressRouteTargetRule final
    : public BgpParseExtCommSubRule<BgpParseExtComSubTypeTransIpv4AddressRouteTargetRule,
                                    BgpParseExtComSubTypeTransIpv4AddressRuleBase,
                                    extCommPktSubtypeTransIpv4AddressRouteTarget,
                                    extCommRouteTargetIpv4AddressFactory> {
 public:
  static const Mox::Type type;
  using BgpParseExtCommSubRule::BgpParseExtCommSubRule;
};

class BgpParseExtComSubTypeTransFourOctetAsRouteTargetRule final
    : public BgpParseExtCommSubRule<BgpParseExtComSubTypeTransFourOctetAsRouteTargetRule,
                                    BgpParseExtComSubTypeTransFourOctetAsRuleBase,
                                    extCommPktSubtypeTransFourOctetAsRouteTarget,
                                    extCommRouteTargetAsFactory, true> {
 public:
  static const Mox::Type type;
  using BgpParseExtCommSubRule::BgpParseExtCommSubRule;
};

class BgpParseExtCommRouteTargetSm final
    : public Mox::Entity<BgpParseExtCommRouteTargetSm, BgpParseExtCommPluginBaseSm> {
 public:
  static const Mox::Type type;
  explicit BgpParseExtCommRouteTargetSm(const RuleCollections& ruleCollections);

  void instantiateExtCommSubTypeTransTwoOctetAsSubRule(
      const BgpParseExtCommSubTypeTransTwoOctetAsRuleKey& ruleKey,
      const BgpParseExtCommControl& control) const override;
  void instantiateExtCommSubTypeTransIpv4AddressSubRule(
      const BgpParseExtCommSubTypeTransIpv4AddressRuleKey& ruleKey,
      const BgpParseExtCommControl& control) const override;
  void instantiateExtCommSubTypeTransFourOctetAsSubRule(
      const BgpParseExtCommSubTypeTransFourOctetAsRuleKey& ruleKey,
      const BgpParseExtCommControl& control) const override;
};
inline constexpr BgpParseExtCommPluginFactory<BgpParseExtCommRouteTargetSm>
    BgpParseExtCommRouteTargetSmIs, bgpParseExtCommRouteTargetSmFactory;

}  // namespace Routing::Bgp
