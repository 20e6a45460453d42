#include "parse/BgpParseExtCommOriginValidationState.h"

namespace Routing::Bgp {

const Mox::Type BgpParseExtComSubTypeNonTransOpaqueOriginValidationStateRule::type{
    "Routing::Bgp::BgpParseExtComSubTypeNonTransOpaqueOriginValidationStateRule",
    &BgpParseExtComSubTypeNonTransOpaqueRuleBase::type,
    {}};

const BgpParseExtCommPluginType BgpParseExtCommOriginValidationStateSm::type{
    "Routing::Bgp::BgpParseExtCommOriginValidationStateSm"};

}  // namespace Routing::Bgp
