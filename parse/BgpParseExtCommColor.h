// Color (RFC 9012, section 4.3).
#pragma once

#include "parse/BgpParseExtCommPlugin.h"

namespace Routing::Bgp {

class BgpParseExtComSubTypeTransOpaqueColorRule final
    : public BgpParseExtCommSubRule<BgpParseExtComSubTypeTransOpaqueColorRule, kind::TransOpaque,
                                    extCommPktSubtypeTransOpaqueColorExtendedCommunity,
                                    extCommColorFactory> {
 public:
  static const Mox::Type type;
  using BgpParseExtCommSubRule::BgpParseExtCommSubRule;
};

class BgpParseExtCommColorSm final
    : public BgpParseExtCommPlugin<BgpParseExtCommColorSm,
                                   BgpParseExtComSubTypeTransOpaqueColorRule> {
 public:
  static const BgpParseExtCommPluginType type;
  using BgpParseExtCommPlugin::BgpParseExtCommPlugin;
};
inline constexpr BgpParseExtCommPluginFactory<BgpParseExtCommColorSm> BgpParseExtCommColorSmIs,
    bgpParseExtCommColorSmFactory;

}  // namespace Routing::Bgp
