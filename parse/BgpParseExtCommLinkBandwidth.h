// Link bandwidth (draft-ietf-idr-link-bandwidth).
#pragma once

#include "parse/BgpParseExtCommPlugin.h"

namespace Routing::Bgp {

class BgpParseExtComSubTypeNonTransTwoOctetAsLinkBandwidthRule final
    : public BgpParseExtCommSubRule<BgpParseExtComSubTypeNonTransTwoOctetAsLinkBandwidthRule,
                                    BgpParseExtComSubTypeNonTransTwoOctetAsRuleBase,
                                    extCommPktSubtypeNonTransTwoOctetAsLinkBandwidth,
                                    extCommLinkBandwidthFactory> {
 public:
  static const Mox::Type type;
  using BgpParseExtCommSubRule::BgpParseExtCommSubRule;
};

class BgpParseExtCommLinkBandwidthSm final
    : public Mox::Entity<BgpParseExtCommLinkBandwidthSm, BgpParseExtCommPluginBaseSm> {
 public:
  static const Mox::Type type;
  explicit BgpParseExtCommLinkBandwidthSm(const RuleCollections& ruleCollections);

  void instantiateExtCommSubTypeNonTransTwoOctetAsSubRule(
      const BgpParseExtCommSubTypeNonTransTwoOctetAsRuleKey& ruleKey,
      const BgpParseExtCommControl& control) const override;
};
inline constexpr BgpParseExtCommPluginFactory<BgpParseExtCommLinkBandwidthSm>
    BgpParseExtCommLinkBandwidthSmIs, bgpParseExtCommLinkBandwidthSmFactory;

}  // namespace Routing::Bgp
