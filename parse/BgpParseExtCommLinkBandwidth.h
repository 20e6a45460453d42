// Link bandwidth (draft-ietf-idr-link-bandwidth).
#pragma once

#include "parse/BgpParseExtCommPlugin.h"

namespace Routing::Bgp {

class BgpParseExtComSubTypeNonTransTwoOctetAsLinkBandwidthRule final
    : public BgpParseExtCommSubRule<
          BgpParseExtComSubTypeNonTransTwoOctetAsLinkBandwidthRule, kind::NonTransTwoOctetAs,
          extCommPktSubtypeNonTransTwoOctetAsLinkBandwidth, extCommLinkBandwidthFactory> {
 public:
  static const Mox::Type type;
  using BgpParseExtCommSubRule::BgpParseExtCommSubRule;
};

class BgpParseExtCommLinkBandwidthSm final
    : public BgpParseExtCommPlugin<BgpParseExtCommLinkBandwidthSm,
                                   BgpParseExtComSubTypeNonTransTwoOctetAsLinkBandwidthRule> {
 public:
  static const BgpParseExtCommPluginType type;
  using BgpParseExtCommPlugin::BgpParseExtCommPlugin;
};
inline constexpr BgpParseExtCommPluginFactory<BgpParseExtCommLinkBandwidthSm>
    BgpParseExtCommLinkBandwidthSmIs, bgpParseExtCommLinkBandwidthSmFactory;

}  // namespace Routing::Bgp
