// Link bandwidth (draft-ietf-idr-link-bandwidth): the rule that knows it, and the plug-in that
// brings the rule. ExtCommLinkBandwidth says what the octets mean.
//
//   const auto plugin = bgpParseExtCommLinkBandwidthSmFactory(registry);
//   parser->parseExtendedCommunity(ExtCommContent(0x4004FDE84E9502F9))
//       // an ExtCommLinkBandwidth of AS 65000: 1.25e9 octets per second, ten gigabits
//
// 1. Without the plug-in such a content becomes an ExtCommAsNumber of no classification.
// 2. No content is refused: the bandwidth may be any bits of single precision, negative and no
//    number included. Only the non-transitive type 0x40 is served; subtype 0x04 of type 0x00 stays
//    an ExtCommAsNumber.
//
// IANA registers the subtype among the "Non-Transitive Two-Octet AS-Specific Extended Community
// Sub-Types" (RFC 7153).
//
// Threads: that of the registry; the rule may be asked from any.
#pragma once

#include "parse/BgpParseExtCommPlugin.h"

namespace Routing::Bgp {

/// Makes an ExtCommLinkBandwidth of each content of type 0x40, subtype 0x04.
class BgpParseExtComSubTypeNonTransTwoOctetAsLinkBandwidthRule final
    : public BgpParseExtCommSubRule<
          BgpParseExtComSubTypeNonTransTwoOctetAsLinkBandwidthRule, kind::NonTransTwoOctetAs,
          extCommPktSubtypeNonTransTwoOctetAsLinkBandwidth, extCommLinkBandwidthFactory> {
 public:
  static const Mox::Type type;
  using BgpParseExtCommSubRule::BgpParseExtCommSubRule;
};

/// Installs the rule in every rule of non-transitive types of a two-octet AS number.
class BgpParseExtCommLinkBandwidthSm final
    : public BgpParseExtCommPlugin<BgpParseExtCommLinkBandwidthSm,
                                   BgpParseExtComSubTypeNonTransTwoOctetAsLinkBandwidthRule> {
 public:
  static const BgpParseExtCommPluginType type;
  using BgpParseExtCommPlugin::BgpParseExtCommPlugin;
};
/// Two names of one factory. A plug-in without a registry, that is with null, reacts to nothing
/// until `ruleCollectionsIs` gives it one.
inline constexpr BgpParseExtCommPluginFactory<BgpParseExtCommLinkBandwidthSm>
    BgpParseExtCommLinkBandwidthSmIs, bgpParseExtCommLinkBandwidthSmFactory;

}  // namespace Routing::Bgp
