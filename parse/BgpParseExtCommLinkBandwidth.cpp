#include "parse/BgpParseExtCommLinkBandwidth.h"

namespace Routing::Bgp {

const Mox::Type BgpParseExtComSubTypeNonTransTwoOctetAsLinkBandwidthRule::type{
    "Routing::Bgp::BgpParseExtComSubTypeNonTransTwoOctetAsLinkBandwidthRule",
    &BgpParseExtComSubTypeNonTransTwoOctetAsRuleBase::type,
    {}};

const BgpParseExtCommPluginType BgpParseExtCommLinkBandwidthSm::type{
    "Routing::Bgp::BgpParseExtCommLinkBandwidthSm"};

}  // namespace Routing::Bgp
