// The types of extended communities (RFC 4360, RFC 7153, RFC 5701) and what lists group them by.
//
//   BgpExtCommPktTypeInstance(0x02)                       // extCommPktTypeTransFourOctetAs
//   stringValue(extCommPktTypeNonTransOpaque)             // "extCommPktTypeNonTransOpaque"
//   bgpIsValidEnumMember(BgpExtCommPktType(0x07))         // false
//
// Names and numbers are configuration and show vocabulary: they never change, the odd ones
// included.
//
// IANA registers types as "BGP Transitive Extended Community Types" and "BGP Non-Transitive
// Extended Community Types" (RFC 7153), and the types of 20 octets in registries of their own. A
// type that stands here is not yet one whose contents have a class of their own: the rules of the
// parser decide that, see parse/BgpParseExtCommKindList.h.
#pragma once

#include "attr/BgpEnum.h"

namespace Routing::Bgp {

/// The type octet (RFC 4360, section 2). Bit 0x80 says by which policy IANA assigns the type. Bit
/// 0x40 set: not transitive across autonomous systems.
/// - AS numbers of two and four octets, IPv4 addresses, opaque values: RFC 4360, RFC 5668
/// - Ethernet VPN: RFC 7432; generic: RFC 8955 and others
#define MOX_ROWS(X)                                   \
  X(extCommPktTypeTransTwoOctetAs, 0x00)              \
  X(extCommPktTypeTransIpv4Address, 0x01)             \
  X(extCommPktTypeTransFourOctetAs, 0x02)             \
  X(extCommPktTypeTransOpaque, 0x03)                  \
  X(extCommPktTypeTransQosMarking, 0x04)              \
  X(extCommPktTypeTransCosCapability, 0x05)           \
  X(extCommPktTypeTransEvpn, 0x06)                    \
  X(extCommPktTypeTransFlowspecRedirectNexthop, 0x08) \
  X(extCommPktTypeTransGeneric, 0x80)                 \
  X(extCommPktTypeTransGenericPart2, 0x81)            \
  X(extCommPktTypeTransGenericPart3, 0x82)            \
  X(extCommPktTypeNonTransTwoOctetAs, 0x40)           \
  X(extCommPktTypeNonTransIpv4Address, 0x41)          \
  X(extCommPktTypeNonTransFourOctetAs, 0x42)          \
  X(extCommPktTypeNonTransOpaque, 0x43)               \
  X(extCommPktTypeNonTransQosMarking, 0x44)           \
  X(extCommPktTypeUnknown, 256, false)
enum BgpExtCommPktType : U32 { MOX_ROWS(MOX_ENUMERATOR) };
BGP_ENUM_TABLE(BgpExtCommPktType, MOX_ROWS);
#undef MOX_ROWS

/// The type octet of a 20-octet community (RFC 5701). Not every type of the 8-octet family is one
/// here: an address is all that it can hold.
#define MOX_ROWS(X)                             \
  X(extCommIp6PktTypeTransIpv6Address, 0x00)    \
  X(extCommIp6PktTypeNonTransIpv6Address, 0x40) \
  X(extCommIp6PktTypeUnknown, 256, false)
enum BgpExtCommIp6PktType : U32 { MOX_ROWS(MOX_ENUMERATOR) };
BGP_ENUM_TABLE(BgpExtCommIp6PktType, MOX_ROWS);
#undef MOX_ROWS

/// The meaning of a community, as far as lists group by it; the order is that of the groups. A rule
/// of the parser assigns it, the octets do not hold it; in a store it is kept. The last one counts
/// the others: it is a member, and yet no object carries it.
#define MOX_ROWS(X)                                \
  X(extCommClassificationUnSpecified, 0)           \
  X(extCommClassificationRouteTarget, 1)           \
  X(extCommClassificationRouteOrigin, 2)           \
  X(extCommClassificationEvpn, 3)                  \
  X(extCommClassificationTunnelEncap, 4)           \
  X(extCommClassificationDefaultGateway, 5)        \
  X(extCommClassificationFlowspec, 6)              \
  X(extCommClassificationLinkBandwidth, 7)         \
  X(extCommClassificationColor, 8)                 \
  X(extCommClassificationOriginValidationState, 9) \
  X(extCommClassificationOneBeyondLast, 10)
enum ExtCommClassification : U32 { MOX_ROWS(MOX_ENUMERATOR) };
BGP_ENUM_TABLE(ExtCommClassification, MOX_ROWS);
#undef MOX_ROWS

}  // namespace Routing::Bgp
