#include "parse/BgpParseExtCommTunnelEncap.h"

namespace Routing::Bgp {

const Mox::Type BgpParseExtComSubTypeTransOpaqueTunnelEncapRule::type{
    "Routing::Bgp::BgpParseExtComSubTypeTransOpaqueTunnelEncapRule",
    &BgpParseExtComSubTypeTransOpaqueRuleBase::type,
    {}};

const Mox::Type BgpParseExtCommTunnelEncapSm::type{
    "Routing::Bgp::BgpParseExtCommTunnelEncapSm", &BgpParseExtCommPluginBaseSm::type, {}};

BgpParseExtCommTunnelEncapSm::BgpParseExtCommTunnelEncapSm(const RuleCollections& ruleCollections)
    : Entity(ruleCollections) {
  handleStartup();
}

void BgpParseExtCommTunnelEncapSm::instantiateExtCommSubTypeTransOpaqueSubRule(
    const BgpParseExtCommSubTypeTransOpaqueRuleKey& ruleKey,
    const BgpParseExtCommControl& control) const {
  installSubRule<BgpParseExtComSubTypeTransOpaqueTunnelEncapRule>(ruleKey, control,
                                                                  __PRETTY_FUNCTION__);
}

}  // namespace Routing::Bgp
