#include "parse/BgpParseExtCommColor.h"

namespace Routing::Bgp {

const Mox::Type BgpParseExtComSubTypeTransOpaqueColorRule::type{
    "Routing::Bgp::BgpParseExtComSubTypeTransOpaqueColorRule",
    &BgpParseExtComSubTypeTransOpaqueRuleBase::type,
    {}};

const Mox::Type BgpParseExtCommColorSm::type{
    "Routing::Bgp::BgpParseExtCommColorSm", &BgpParseExtCommPluginBaseSm::type, {}};

BgpParseExtCommColorSm::BgpParseExtCommColorSm(const RuleCollections& ruleCollections)
    : Entity(ruleCollections) {
  handleStartup();
}

void BgpParseExtCommColorSm::instantiateExtCommSubTypeTransOpaqueSubRule(
    const BgpParseExtCommSubTypeTransOpaqueRuleKey& ruleKey,
    const BgpParseExtCommControl& control) const {
  installSubRule<BgpParseExtComSubTypeTransOpaqueColorRule>(ruleKey, control, __PRETTY_FUNCTION__);
}

}  // namespace Routing::Bgp
