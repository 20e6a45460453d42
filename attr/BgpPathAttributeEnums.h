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
#define MOX_ROWS(X)                                                                 \
  X(invalidPathAttr, 0, "Invalid Path Attribute")                                   \
  X(origin, 1, "Origin")                                                            \
  X(asPath, 2, "AS Path")                                                           \
  X(nextHop, 3, "Nexthop")                                                          \
  X(multiExitDisc, 4, "MED")                                                        \
  X(localPref, 5, "Local Preference")                                               \
  X(atomicAggregate, 6, "Atomic Aggregator")                                        \
  X(aggregator, 7, "Aggregator")                                                    \
  X(community, 8, "Community")                                       /* RFC 1997 */ \
  X(originatorId, 9, "Originator ID")                                /* RFC 4456 */ \
  X(clusterList, 10, "Cluster List")                                 /* RFC 4456 */ \
  X(advertiser, 12, "Advertiser")                                    /* historic */ \
  X(rcidPath, 13, "RCID Path")                                       /* historic */ \
  X(mpReachNlri, 14, "MP Reach NLRI")                                /* RFC 4760 */ \
  X(mpUnreachNlri, 15, "MP Unreach NLRI")                            /* RFC 4760 */ \
  X(extCommunity, 16, "Extended Community")                          /* RFC 4360 */ \
  X(as4Path, 17, "AS4 Path")                                         /* RFC 6793 */ \
  X(as4Aggregator, 18, "AS4 Aggregator")                             /* RFC 6793 */ \
  X(pmsiTunnel, 22, "PMSI Tunnel")                                   /* RFC 6514 */ \
  X(tunnelEncapsulation, 23, "Tunnel Encapsulation")                 /* RFC 9012 */ \
  X(extCommunityIp6, 25, "IPv6 Address Specific Extended Community") /* RFC 5701 */ \
  X(largeCommunity, 32, "Large Community")                           /* RFC 8092 */ \
  X(prefixSid, 40, "BGP Prefix-SID")                                 /* RFC 8669 */ \
  X(reservedForDevelopment, 255, "Reserved for Development")
enum class BgpPathAttrType : U32 { MOX_ROWS(MOX_ENUMERATOR) };

/// The row of a type also has the name that show commands print.
struct BgpPathAttrTypeRow {
  BgpPathAttrType value;
  std::string_view name;
  const char* showString;
  bool member = true;
};
BGP_ENUM_TABLE(BgpPathAttrType, MOX_ROWS, BgpPathAttrTypeRow);
#undef MOX_ROWS

/// The name that show commands print. Asserts "Unknown BgpPathAttrType" for a code that is no
/// member.
const char* bgpPathAttrTypeShowString(BgpPathAttrType type);

/// The flags octet of a path attribute (RFC 4271, section 4.3). The values are bit patterns, the
/// last two of them combinations.
#define MOX_ROWS(X)           \
  X(opt, 0x80)                \
  X(transitive, 0x40)         \
  X(partial, 0x20)            \
  X(extLen, 0x10)             \
  X(optionalTransitive, 0xC0) \
  X(optionalTransitivePartial, 0xE0)
enum class BgpPathAttrFlag : U32 { MOX_ROWS(MOX_ENUMERATOR) };

/// Both patterns together; the result need not be a member.
constexpr BgpPathAttrFlag operator|(BgpPathAttrFlag a, BgpPathAttrFlag b) {
  return BgpPathAttrFlag(U32(a) | U32(b));
}
BGP_ENUM_TABLE(BgpPathAttrFlag, MOX_ROWS);
#undef MOX_ROWS

/// The type of a TLV inside the Prefix-SID attribute (RFC 8669).
#define MOX_ROWS(X)   \
  X(invalidTlv, 0)    \
  X(labelIndexTlv, 1) \
  X(ipv6SidTlv, 2)    \
  X(originatorSrgbTlv, 3)
enum class PrefixSidTlvType : U32 { MOX_ROWS(MOX_ENUMERATOR) };
BGP_ENUM_TABLE(PrefixSidTlvType, MOX_ROWS);
#undef MOX_ROWS

}  // namespace Routing::Bgp
