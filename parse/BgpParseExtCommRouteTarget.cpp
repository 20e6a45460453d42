#include "parse/BgpParseExtCommRouteTarget.h"

namespace Routing::Bgp {

const Mox::Type BgpParseExtComSubTypeTransTwoOctetAsRouteTargetRule::type{
    "Routing::Bgp::BgpParseExtComSubTypeTransTwoOctetAsRouteTargetRule",
    &BgpParseExtComSubTypeTransTwoOctetAsRuleBase::type,
    {}};

const Mox::Type BgpParseExtComSubTypeTransIpv4AddressRouteTargetRule::type{
    "Routing::Bgp::BgpParseExtComSubTypeTransIpv4AddressRouteTargetRule",
    &BgpParseExtComSubTypeTransIpv4AddressRuleBase::type,
    {}};

const Mox::Type BgpParseExtComSubTypeTransFourOctetAsRouteTargetRule::type{
    "Routing::Bgp::BgpParseExtComSubTypeTransFourOctetAsRouteTargetRule",
    &BgpParseExtComSubTypeTransFourOctetAsRuleBase::type,
    {}};

const Mox::Type BgpParseExtCommRouteTargetSm::type{
    "Routing::Bgp::BgpParseExtCommRouteTargetSm", &BgpParseExtCommPluginBaseSm::type, {}};

BgpParseExtCommRouteTargetSm::BgpParseExtCommRouteTargetSm(const RuleCollections& ruleCollections)
    : Entity(ruleCollections) {
  handleStartup();
}

void BgpParseExtCommRouteTargetSm::instantiateExtCommSubTypeTransTwoOctetAsSubRule(
    const BgpParseExtCommSubTypeTransTwoOctetAsRuleKey& ruleKey,
    const BgpParseExtCommControl& control) const {
  installSubRule<BgpParseExtComSubTypeTransTwoOctetAsRouteTargetRule>(ruleKey, control,
                                                                      __PRETTY_FUNCTION__);
}

void BgpParseExtCommRouteTargetSm::instantiateExtCommSubTypeTransIpv4AddressSubRule(
    const BgpParseExtCommSubTypeTransIpv4AddressRuleKey& ruleKey,
    const BgpParseExtCommControl& control) const {
  installSubRule<BgpParseExtComSubTypeTransIpv4AddressRouteTargetRule>(ruleKey, control,
                                                                       __PRETTY_FUNCTION__);
}

void BgpParseExtCommRouteTargetSm::instantiateExtCommSubTypeTransFourOctetAsSubRule(
    const BgpParseExtCommSubTypeTransFourOctetAsRuleKey& ruleKey,
    const BgpParseExtCommControl& control) const {
  installSubRule<BgpParseExtComSubTypeTransFourOctetAsRouteTargetRule>(ruleKey, control,
                                                                       __PRETTY_FUNCTION__);
}

}  // namespace Routing::Bgp
