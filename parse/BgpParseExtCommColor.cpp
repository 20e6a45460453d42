#include "parse/BgpParseExtCommColor.h"

namespace Routing::Bgp {

const Mox::Type BgpParseExtComSubTypeTransOpaqueColorRule::type{
    "Routing::Bgp::BgpParseExtComSubTypeTransOpaqueColorRule",
    &BgpParseExtComSubTypeTransOpaqueRuleBase::type,
    {}};

const BgpParseExtCommPluginType BgpParseExtCommColorSm::type{
    "Routing::Bgp::BgpParseExtCommColorSm"};

}  // namespace Routing::Bgp
