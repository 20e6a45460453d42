#include "parse/BgpParseExtCommOriginValidationState.h"

namespace Routing::Bgp {

const Mox::Type BgpParseExtComSubTypeNonTransOpaqueOriginValidationStateRule::type{
    "Routing::Bgp::BgpParseExtComSubTypeNonTransOpaqueOriginValidationStateRule",
    &BgpParseExtComSubTypeNonTransOpaqueRuleBase::type,
    {}};

const Mox::Type BgpParseExtCommOriginValidationStateSm::type{
    "Routing::Bgp::BgpParseExtCommOriginValidationStateSm", &BgpParseExtCommPluginBaseSm::type, {}};

BgpParseExtCommOriginValidationStateSm::BgpParseExtCommOriginValidationStateSm(
    const RuleCollections& ruleCollections)
    : Entity(ruleCollections) {
  handleStartup();
}

void BgpParseExtCommOriginValidationStateSm::instantiateExtCommSubTypeNonTransOpaqueSubRule(
    const BgpParseExtCommSubTypeNonTransOpaqueRuleKey& ruleKey,
    const BgpParseExtCommControl& control) const {
  installSubRule<BgpParseExtComSubTypeNonTransOpaqueOriginValidationStateRule>(ruleKey, control,
                                                                               __PRETTY_FUNCTION__);
}

}  // namespace Routing::Bgp
