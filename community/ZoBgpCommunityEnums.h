// The types of extended communities (RFC 4360, RFC 7153, RFC 5701) and what lists group them by.
//
//   BgpExtCommPktTypeInstance(0x02)                       // extCommPktTypeTransFourOctetAs
//   stringValue(extCommPktTypeNonTransOpaque)             // "extCommPktTypeNonTransOpaque"
//   bgpIsValidEnumMember(BgpExtCommPktType(0x07))         // false
//
// Names and numbers are configuration and show vocabulary: they never change, the odd ones
// included.
#pragma once

#include "attr/BgpEnum.h"

namespace Routing::Bgp {

/// The type octet. Bit 0x40 set: not transitive across autonomous systems.
enum BgpExtCommPktType : U32 {
  extCommPktTypeTransTwoOctetAs = 0x00,
  extCommPktTypeTransIpv4Address = 0x01,
  extCommPktTypeTransFourOctetAs = 0x02,
  extCommPktTypeTransOpaque = 0x03,
  extCommPktTypeTransQosMarking = 0x04,
  extCommPktTypeTransCosCapability = 0x05,
  extCommPktTypeTransEvpn = 0x06,
  extCommPktTypeTransFlowspecRedirectNexthop = 0x08,
  extCommPktTypeTransGeneric = 0x80,
  extCommPktTypeTransGenericPart2 = 0x81,
  extCommPktTypeTransGenericPart3 = 0x82,
  extCommPktTypeNonTransTwoOctetAs = 0x40,
  extCommPktTypeNonTransIpv4Address = 0x41,
  extCommPktTypeNonTransFourOctetAs = 0x42,
  extCommPktTypeNonTransOpaque = 0x43,
  extCommPktTypeNonTransQosMarking = 0x44,
  extCommPktTypeUnknown = 256,
};

consteval auto enumTable(BgpExtCommPktType) {
  return Mox::enumRows<BgpExtCommPktType>(
      "Routing::Bgp::BgpExtCommPktType",
      {{extCommPktTypeTransTwoOctetAs, "extCommPktTypeTransTwoOctetAs"},
       {extCommPktTypeTransIpv4Address, "extCommPktTypeTransIpv4Address"},
       {extCommPktTypeTransFourOctetAs, "extCommPktTypeTransFourOctetAs"},
       {extCommPktTypeTransOpaque, "extCommPktTypeTransOpaque"},
       {extCommPktTypeTransQosMarking, "extCommPktTypeTransQosMarking"},
       {extCommPktTypeTransCosCapability, "extCommPktTypeTransCosCapability"},
       {extCommPktTypeTransEvpn, "extCommPktTypeTransEvpn"},
       {extCommPktTypeTransFlowspecRedirectNexthop, "extCommPktTypeTransFlowspecRedirectNexthop"},
       {extCommPktTypeTransGeneric, "extCommPktTypeTransGeneric"},
       {extCommPktTypeTransGenericPart2, "extCommPktTypeTransGenericPart2"},
       {extCommPktTypeTransGenericPart3, "extCommPktTypeTransGenericPart3"},
       {extCommPktTypeNonTransTwoOctetAs, "extCommPktTypeNonTransTwoOctetAs"},
       {extCommPktTypeNonTransIpv4Address, "extCommPktTypeNonTransIpv4Address"},
       {extCommPktTypeNonTransFourOctetAs, "extCommPktTypeNonTransFourOctetAs"},
       {extCommPktTypeNonTransOpaque, "extCommPktTypeNonTransOpaque"},
       {extCommPktTypeNonTransQosMarking, "extCommPktTypeNonTransQosMarking"},
       {extCommPktTypeUnknown, "extCommPktTypeUnknown", false}});
}
inline constexpr Mox::EnumInstance<BgpExtCommPktType> BgpExtCommPktTypeInstance{};

/// The type octet of a 20-octet community. Octets that are types of the 8-octet family need not be
/// types here.
enum BgpExtCommIp6PktType : U32 {
  extCommIp6PktTypeTransIpv6Address = 0x00,
  extCommIp6PktTypeNonTransIpv6Address = 0x40,
  extCommIp6PktTypeUnknown = 256,
};

consteval auto enumTable(BgpExtCommIp6PktType) {
  return Mox::enumRows<BgpExtCommIp6PktType>(
      "Routing::Bgp::BgpExtCommIp6PktType",
      {{extCommIp6PktTypeTransIpv6Address, "extCommIp6PktTypeTransIpv6Address"},
       {extCommIp6PktTypeNonTransIpv6Address, "extCommIp6PktTypeNonTransIpv6Address"},
       {extCommIp6PktTypeUnknown, "extCommIp6PktTypeUnknown", false}});
}
inline constexpr Mox::EnumInstance<BgpExtCommIp6PktType> BgpExtCommIp6PktTypeInstance{};

/// What a community means, as far as lists group by it; the order is that of the groups. The last
/// one counts the others: it is a member, and yet no object carries it.
enum ExtCommClassification : U32 {
  extCommClassificationUnSpecified = 0,
  extCommClassificationRouteTarget = 1,
  extCommClassificationRouteOrigin = 2,
  extCommClassificationEvpn = 3,
  extCommClassificationTunnelEncap = 4,
  extCommClassificationDefaultGateway = 5,
  extCommClassificationFlowspec = 6,
  extCommClassificationLinkBandwidth = 7,
  extCommClassificationColor = 8,
  extCommClassificationOriginValidationState = 9,
  extCommClassificationOneBeyondLast = 10,
};

consteval auto enumTable(ExtCommClassification) {
  return Mox::enumRows<ExtCommClassification>(
      "Routing::Bgp::ExtCommClassification",
      {{extCommClassificationUnSpecified, "extCommClassificationUnSpecified"},
       {extCommClassificationRouteTarget, "extCommClassificationRouteTarget"},
       {extCommClassificationRouteOrigin, "extCommClassificationRouteOrigin"},
       {extCommClassificationEvpn, "extCommClassificationEvpn"},
       {extCommClassificationTunnelEncap, "extCommClassificationTunnelEncap"},
       {extCommClassificationDefaultGateway, "extCommClassificationDefaultGateway"},
       {extCommClassificationFlowspec, "extCommClassificationFlowspec"},
       {extCommClassificationLinkBandwidth, "extCommClassificationLinkBandwidth"},
       {extCommClassificationColor, "extCommClassificationColor"},
       {extCommClassificationOriginValidationState, "extCommClassificationOriginValidationState"},
       {extCommClassificationOneBeyondLast, "extCommClassificationOneBeyondLast"}});
}
inline constexpr Mox::EnumInstance<ExtCommClassification> ExtCommClassificationInstance{};

}  // namespace Routing::Bgp
