#include "parse/BgpParseExtCommRouteOrigin.h"

namespace Routing::Bgp {

const Mox::Type BgpParseExtComSubTypeTransTwoOctetAsRouteOriginRule::type{
    "Routing::Bgp::BgpParseExtComSubTypeTransTwoOctetAsRouteOriginRule",
    &BgpParseExtComSubTypeTransTwoOctetAsRuleBase::type,
    {}};

const Mox::Type BgpParseExtComSubTypeTransIpv4AddressRouteOriginRule::type{
    "Routing::Bgp::BgpParseExtComSubTypeTransIpv4AddressRouteOriginRule",
    &BgpParseExtComSubTypeTransIpv4AddressRuleBase::type,
    {}};

const Mox::Type BgpParseExtComSubTypeTransFourOctetAsRouteOriginRule::type{
    "Routing::Bgp::BgpParseExtComSubTypeTransFourOctetAsRouteOriginRule",
    &BgpParseExtComSubTypeTransFourOctetAsRuleBase::type,
    {}};

const Mox::Type BgpParseExtCommRouteOriginSm::type{
    "Routing::Bgp::BgpParseExtCommRouteOriginSm", &BgpParseExtCommPluginBaseSm::type, {}};

BgpParseExtCommRouteOriginSm::BgpParseExtCommRouteOriginSm(const RuleCollections& ruleCollections)
    : Entity(ruleCollections) {
  handleStartup();
}

void BgpParseExtCommRouteOriginSm::instantiateExtCommSubTypeTransTwoOctetAsSubRule(
    const BgpParseExtCommSubTypeTransTwoOctetAsRuleKey& ruleKey,
    const BgpParseExtCommControl& control) const {
  installSubRule<BgpParseExtComSubTypeTransTwoOctetAsRouteOriginRule>(ruleKey, control,
                                                                      __PRETTY_FUNCTION__);
}

void BgpParseExtCommRouteOriginSm::instantiateExtCommSubTypeTransIpv4AddressSubRule(
    const BgpParseExtCommSubTypeTransIpv4AddressRuleKey& ruleKey,
    const BgpParseExtCommControl& control) const {
  installSubRule<BgpParseExtComSubTypeTransIpv4AddressRouteOriginRule>(ruleKey, control,
                                                                       __PRETTY_FUNCTION__);
}

void BgpParseExtCommRouteOriginSm::instantiateExtCommSubTypeTransFourOctetAsSubRule(
    const BgpParseExtCommSubTypeTransFourOctetAsRuleKey& ruleKey,
    const BgpParseExtCommControl& control) const {
  installSubRule<BgpParseExtComSubTypeTransFourOctetAsRouteOriginRule>(ruleKey, control,
                                                                       __PRETTY_FUNCTION__);
}

}  // namespace Routing::Bgp
