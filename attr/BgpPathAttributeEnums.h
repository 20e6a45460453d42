// The vocabulary of path attributes: their type codes, their flags, and the TLVs inside the
// Prefix-SID attribute.
//
//   stringValue(BgpPathAttrType::localPref)                // "localPref"
//   bgpPathAttrTypeShowString(BgpPathAttrType::localPref)  // "Local Preference"
//   BgpPathAttrTypeInstance(5)                             // BgpPathAttrType::localPref
#pragma once

#include "attr/BgpEnum.h"

namespace Routing::Bgp {

/// The type code of a path attribute, as on the wire (RFC 4271 and the IANA registry of BGP path
/// attributes). Code 11 and every other code that is not listed is no member.
enum class BgpPathAttrType : U32 {
  invalidPathAttr = 0,
  origin = 1,
  asPath = 2,
  nextHop = 3,
  multiExitDisc = 4,
  localPref = 5,
  atomicAggregate = 6,
  aggregator = 7,
  community = 8,             // RFC 1997
  originatorId = 9,          // RFC 4456
  clusterList = 10,          // RFC 4456
  advertiser = 12,           // historic
  rcidPath = 13,             // historic
  mpReachNlri = 14,          // RFC 4760
  mpUnreachNlri = 15,        // RFC 4760
  extCommunity = 16,         // RFC 4360
  as4Path = 17,              // RFC 6793
  as4Aggregator = 18,        // RFC 6793
  pmsiTunnel = 22,           // RFC 6514
  tunnelEncapsulation = 23,  // RFC 9012
  extCommunityIp6 = 25,      // RFC 5701
  largeCommunity = 32,       // RFC 8092
  prefixSid = 40,            // RFC 8669
  reservedForDevelopment = 255,
};

struct BgpPathAttrTypeRow {
  BgpPathAttrType value;
  std::string_view name;
  const char* showString;
  bool member = true;
};

consteval auto enumTable(BgpPathAttrType) {
  using enum BgpPathAttrType;
  return Mox::enumRows<BgpPathAttrType, BgpPathAttrTypeRow>(
      "Routing::Bgp::BgpPathAttrType",
      {{invalidPathAttr, "invalidPathAttr", "Invalid Path Attribute"},
       {origin, "origin", "Origin"},
       {asPath, "asPath", "AS Path"},
       {nextHop, "nextHop", "Nexthop"},
       {multiExitDisc, "multiExitDisc", "MED"},
       {localPref, "localPref", "Local Preference"},
       {atomicAggregate, "atomicAggregate", "Atomic Aggregator"},
       {aggregator, "aggregator", "Aggregator"},
       {community, "community", "Community"},
       {originatorId, "originatorId", "Originator ID"},
       {clusterList, "clusterList", "Cluster List"},
       {advertiser, "advertiser", "Advertiser"},
       {rcidPath, "rcidPath", "RCID Path"},
       {mpReachNlri, "mpReachNlri", "MP Reach NLRI"},
       {mpUnreachNlri, "mpUnreachNlri", "MP Unreach NLRI"},
       {extCommunity, "extCommunity", "Extended Community"},
       {as4Path, "as4Path", "AS4 Path"},
       {as4Aggregator, "as4Aggregator", "AS4 Aggregator"},
       {pmsiTunnel, "pmsiTunnel", "PMSI Tunnel"},
       {tunnelEncapsulation, "tunnelEncapsulation", "Tunnel Encapsulation"},
       {extCommunityIp6, "extCommunityIp6", "IPv6 Address Specific Extended Community"},
       {largeCommunity, "largeCommunity", "Large Community"},
       {prefixSid, "prefixSid", "BGP Prefix-SID"},
       {reservedForDevelopment, "reservedForDevelopment", "Reserved for Development"}});
}
inline constexpr Mox::EnumInstance<BgpPathAttrType> BgpPathAttrTypeInstance{};

/// The name that show commands print. Asserts "Unknown BgpPathAttrType" for a code that is no
/// member.
const char* bgpPathAttrTypeShowString(BgpPathAttrType type);

/// The flags octet of a path attribute (RFC 4271, section 4.3). The values are bit patterns, the
/// last two of them combinations.
enum class BgpPathAttrFlag : U32 {
  opt = 0x80,
  transitive = 0x40,
  partial = 0x20,
  extLen = 0x10,
  optionalTransitive = 0xC0,
  optionalTransitivePartial = 0xE0,
};

/// Both patterns together; the result need not be a member.
constexpr BgpPathAttrFlag operator|(BgpPathAttrFlag a, BgpPathAttrFlag b) {
  return BgpPathAttrFlag(U32(a) | U32(b));
}

consteval auto enumTable(BgpPathAttrFlag) {
  using enum BgpPathAttrFlag;
  return Mox::enumRows<BgpPathAttrFlag>("Routing::Bgp::BgpPathAttrFlag",
                                        {{opt, "opt"},
                                         {transitive, "transitive"},
                                         {partial, "partial"},
                                         {extLen, "extLen"},
                                         {optionalTransitive, "optionalTransitive"},
                                         {optionalTransitivePartial, "optionalTransitivePartial"}});
}
inline constexpr Mox::EnumInstance<BgpPathAttrFlag> BgpPathAttrFlagInstance{};

/// The type of a TLV inside the Prefix-SID attribute (RFC 8669).
enum class PrefixSidTlvType : U32 {
  invalidTlv = 0,
  labelIndexTlv = 1,
  ipv6SidTlv = 2,
  originatorSrgbTlv = 3,
};

consteval auto enumTable(PrefixSidTlvType) {
  using enum PrefixSidTlvType;
  return Mox::enumRows<PrefixSidTlvType>("Routing::Bgp::PrefixSidTlvType",
                                         {{invalidTlv, "invalidTlv"},
                                          {labelIndexTlv, "labelIndexTlv"},
                                          {ipv6SidTlv, "ipv6SidTlv"},
                                          {originatorSrgbTlv, "originatorSrgbTlv"}});
}
inline constexpr Mox::EnumInstance<PrefixSidTlvType> PrefixSidTlvTypeInstance{};

}  // namespace Routing::Bgp
