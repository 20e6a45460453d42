#include "parse/BgpParseExtCommDefaultGateway.h"

namespace Routing::Bgp {

const Mox::Type BgpParseExtComSubTypeTransOpaqueDefaultGatewayRule::type{
    "Routing::Bgp::BgpParseExtComSubTypeTransOpaqueDefaultGatewayRule",
    &BgpParseExtComSubTypeTransOpaqueRuleBase::type,
    {}};

const Mox::Type BgpParseExtCommDefaultGatewaySm::type{
    "Routing::Bgp::BgpParseExtCommDefaultGatewaySm", &BgpParseExtCommPluginBaseSm::type, {}};

BgpParseExtCommDefaultGatewaySm::BgpParseExtCommDefaultGatewaySm(
    const RuleCollections& ruleCollections)
    : Entity(ruleCollections) {
  handleStartup();
}

void BgpParseExtCommDefaultGatewaySm::instantiateExtCommSubTypeTransOpaqueSubRule(
    const BgpParseExtCommSubTypeTransOpaqueRuleKey& ruleKey,
    const BgpParseExtCommControl& control) const {
  installSubRule<BgpParseExtComSubTypeTransOpaqueDefaultGatewayRule>(ruleKey, control,
                                                                     __PRETTY_FUNCTION__);
}

}  // namespace Routing::Bgp
