// Route origin: the site that a route comes from (RFC 4360, section 5).
#pragma once

#include "parse/BgpParseExtCommPlugin.h"

namespace Routing::Bgp {

class BgpParseExtComSubTypeTransTwoOctetAsRouteOriginRule final
    : public BgpParseExtCommSubRule<BgpParseExtComSubTypeTransTwoOctetAsRouteOriginRule,
                                    BgpParseExtComSubTypeTransTwoOctetAsRuleBase,
                                    extCommPktSubtypeTransTwoOctetAsRouteOrigin,
                                    extCommRouteOriginAsFactory, false> {
 public:
  static const Mox::Type type;
  using BgpParseExtCommSubRule::BgpParseExtCommSubRule;
};

class BgpParseExtComSubTypeTransIpv4AddressRouteOriginRule final
    : public BgpParseExtCommSubRule<BgpParseExtComSubTypeTransIpv4AddressRouteOriginRule,
                                    BgpParseExtComSubTypeTransIpv4AddressRuleBase,
                                    extCommPktSubtypeTransIpv4AddressRouteOrigin,
                                    extCommRouteOriginIpv4AddressFactory> {
 public:
  static const Mox::Type type;
  using BgpParseExtCommSubRule::BgpParseExtCommSubRule;
};

class BgpParseExtComSubTypeTransFourOctetAsRouteOriginRule final
    : public BgpParseExtCommSubRule<BgpParseExtComSubTypeTransFourOctetAsRouteOriginRule,
                                    BgpParseExtComSubTypeTransFourOctetAsRuleBase,
                                    extCommPktSubtypeTransFourOctetAsRouteOrigin,
                                    extCommRouteOriginAsFactory, true> {
 public:
  static const Mox::Type type;
  using BgpParseExtCommSubRule::BgpParseExtCommSubRule;
};

class BgpParseExtCommRouteOriginSm final
    : public Mox::Entity<BgpParseExtCommRouteOriginSm, BgpParseExtCommPluginBaseSm> {
 public:
  static const Mox::Type type;
  explicit BgpParseExtCommRouteOriginSm(const RuleCollections& ruleCollections);

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
inline constexpr BgpParseExtCommPluginFactory<BgpParseExtCommRouteOriginSm>
    BgpParseExtCommRouteOriginSmIs, bgpParseExtCommRouteOriginSmFactory;

}  // namespace Routing::Bgp
