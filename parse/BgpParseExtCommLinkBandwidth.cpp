#include "parse/BgpParseExtCommLinkBandwidth.h"

namespace Routing::Bgp {

const Mox::Type BgpParseExtComSubTypeNonTransTwoOctetAsLinkBandwidthRule::type{
    "Routing::Bgp::BgpParseExtComSubTypeNonTransTwoOctetAsLinkBandwidthRule",
    &BgpParseExtComSubTypeNonTransTwoOctetAsRuleBase::type,
    {}};

const Mox::Type BgpParseExtCommLinkBandwidthSm::type{
    "Routing::Bgp::BgpParseExtCommLinkBandwidthSm", &BgpParseExtCommPluginBaseSm::type, {}};

BgpParseExtCommLinkBandwidthSm::BgpParseExtCommLinkBandwidthSm(
    const RuleCollections& ruleCollections)
    : Entity(ruleCollections) {
  handleStartup();
}

void BgpParseExtCommLinkBandwidthSm::instantiateExtCommSubTypeNonTransTwoOctetAsSubRule(
    const BgpParseExtCommSubTypeNonTransTwoOctetAsRuleKey& ruleKey,
    const BgpParseExtCommControl& control) const {
  installSubRule<BgpParseExtComSubTypeNonTransTwoOctetAsLinkBandwidthRule>(ruleKey, control,
                                                                           __PRETTY_FUNCTION__);
}

}  // namespace Routing::Bgp
