// Tunnel encapsulation (RFC 9012, section 4.1).
#pragma once

#include "parse/BgpParseExtCommPlugin.h"

namespace Routing::Bgp {

class BgpParseExtComSubTypeTransOpaqueTunnelEncapRule final
    : public BgpParseExtCommSubRule<
          BgpParseExtComSubTypeTransOpaqueTunnelEncapRule, kind::TransOpaque,
          extCommPktSubtypeTransOpaqueEncapsulationExtendedCommunity, extCommTunnelEncapFactory> {
 public:
  static const Mox::Type type;
  using BgpParseExtCommSubRule::BgpParseExtCommSubRule;
};

class BgpParseExtCommTunnelEncapSm final
    : public BgpParseExtCommPlugin<BgpParseExtCommTunnelEncapSm,
                                   BgpParseExtComSubTypeTransOpaqueTunnelEncapRule> {
 public:
  static const BgpParseExtCommPluginType type;
  using BgpParseExtCommPlugin::BgpParseExtCommPlugin;
};
inline constexpr BgpParseExtCommPluginFactory<BgpParseExtCommTunnelEncapSm>
    BgpParseExtCommTunnelEncapSmIs, bgpParseExtCommTunnelEncapSmFactory;

}  // namespace Routing::Bgp
