// Color (RFC 9012, section 4.3).
#pragma once

#include "parse/BgpParseExtCommPlugin.h"

namespace Routing::Bgp {

class BgpParseExtComSubTypeTransOpaqueColorRule final
    : public BgpParseExtCommSubRule<
          BgpParseExtComSubTypeTransOpaqueColorRule, BgpParseExtComSubTypeTransOpaqueRuleBase,
          extCommPktSubtypeTransOpaqueColorExtendedCommunity, extCommColorFactory> {
 public:
  static const Mox::Type type;
  using BgpParseExtCommSubRule::BgpParseExtCommSubRule;
};

class BgpParseExtCommColorSm final
    : public Mox::Entity<BgpParseExtCommColorSm, BgpParseExtCommPluginBaseSm> {
 public:
  static const Mox::Type type;
  explicit BgpParseExtCommColorSm(const RuleCollections& ruleCollections);

  void instantiateExtCommSubTypeTransOpaqueSubRule(
      const BgpParseExtCommSubTypeTransOpaqueRuleKey& ruleKey,
      const BgpParseExtCommControl& control) const override;
};
inline constexpr BgpParseExtCommPluginFactory<BgpParseExtCommColorSm> BgpParseExtCommColorSmIs,
    bgpParseExtCommColorSmFactory;

}  // namespace Routing::Bgp
