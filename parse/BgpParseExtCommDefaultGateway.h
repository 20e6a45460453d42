// Default gateway (RFC 7432, section 7.8).
#pragma once

#include "parse/BgpParseExtCommPlugin.h"

namespace Routing::Bgp {

class BgpParseExtComSubTypeTransOpaqueDefaultGatewayRule final
    : public BgpParseExtCommSubRule<BgpParseExtComSubTypeTransOpaqueDefaultGatewayRule,
                                    kind::TransOpaque, extCommPktSubtypeTransOpaqueDefaultGateway,
                                    extCommDefaultGatewayFactory> {
 public:
  static const Mox::Type type;
  using BgpParseExtCommSubRule::BgpParseExtCommSubRule;
};

class BgpParseExtCommDefaultGatewaySm final
    : public BgpParseExtCommPlugin<BgpParseExtCommDefaultGatewaySm,
                                   BgpParseExtComSubTypeTransOpaqueDefaultGatewayRule> {
 public:
  static const BgpParseExtCommPluginType type;
  using BgpParseExtCommPlugin::BgpParseExtCommPlugin;
};
inline constexpr BgpParseExtCommPluginFactory<BgpParseExtCommDefaultGatewaySm>
    BgpParseExtCommDefaultGatewaySmIs, bgpParseExtCommDefaultGatewaySmFactory;

}  // namespace Routing::Bgp
