// The subtypes of extended communities, one enumeration for each type that has some.
//
//   extCommSubtypeString<BgpExtCommPktSubtypeTransIpv4Address>(0x07)
//       // "extCommPktSubtypeTransIpv4AddressOspfRouteId"
//   extCommSubtypeString<BgpExtCommPktSubtypeTransIpv4Address>(0x06)   // "subtype=6"
//
// Every enumeration has an `Unknown` of 256, which no octet is. It is no member, nor is any octet
// that is not listed. Some spellings break the pattern (`TransOpaqe`, `PktSubNonTrans`, a missing
// `Trans` or `Opaque`); they are configuration and show vocabulary and stay.
//
// IANA registers the octets, in a registry for each type (RFC 7153): "Transitive Two-Octet
// AS-Specific Extended Community Sub-Types" and so on. Each list below says which document gives a
// subtype its meaning. A name does not mean that the library looks into the value: the subtypes of
// the classes in ZoBgpCommunityTyped.h are all that it interprets.
#pragma once

#include "attr/BgpEnum.h"

namespace Routing::Bgp {

/// Type 0x00: an AS number of two octets and a number of four (RFC 4360, section 3.1).
/// - route target and origin: RFC 4360, sections 4 and 5
/// - OSPF domain identifier: RFC 4577; BGP data collection: RFC 4384
/// - source AS: RFC 6514, section 6; L2VPN identifier: RFC 6074
/// The subtype 0x14 has a name, which says non-transitive, and is yet no member.
#define MOX_ROWS(X)                                                   \
  X(extCommPktSubtypeTransTwoOctetAsRouteTarget, 0x02)                \
  X(extCommPktSubtypeTransTwoOctetAsRouteOrigin, 0x03)                \
  X(extCommPktSubtypeTransTwoOctetAsOspfDomainIdentifier, 0x05)       \
  X(extCommPktSubtypeTransTwoOctetAsBgpDataCollection, 0x08)          \
  X(extCommPktSubtypeTransTwoOctetAsSourceAs, 0x09)                   \
  X(extCommPktSubtypeTransTwoOctetAsL2VpnIdentifier, 0x0a)            \
  X(extCommPktSubtypeTransTwoOctetAsCiscoVpnDistinguisher, 0x10)      \
  X(extCommPktSubtypeNonTransTwoOctetAsLinkBandwidthAny, 0x14, false) \
  X(extCommPktSubtypeTransTwoOctetAsUnknown, 256, false)
enum BgpExtCommPktSubtypeTransTwoOctetAs : U32 { MOX_ROWS(MOX_ENUMERATOR) };
BGP_ENUM_TABLE(BgpExtCommPktSubtypeTransTwoOctetAs, MOX_ROWS);
#undef MOX_ROWS

/// Type 0x01: an IPv4 address and a number of two octets (RFC 4360, section 3.2).
/// - route target and origin: RFC 4360, sections 4 and 5
/// - OSPF domain identifier and router ID: RFC 4577; L2VPN identifier: RFC 6074
/// - VRF route import: RFC 6514, section 7
/// - flow specification redirect to an address: draft-ietf-idr-flowspec-redirect-ip
#define MOX_ROWS(X)                                               \
  X(extCommPktSubtypeTransIpv4AddressRouteTarget, 0x02)           \
  X(extCommPktSubtypeTransIpv4AddressRouteOrigin, 0x03)           \
  X(extCommPktSubtypeTransIpv4AddressOspfDomainIdentifier, 0x05)  \
  X(extCommPktSubtypeTransIpv4AddressOspfRouteId, 0x07)           \
  X(extCommPktSubtypeTransIpv4AddressL2VpnIdentifier, 0x0a)       \
  X(extCommPktSubtypeTransIpv4AddressVrfRouteImport, 0x0b)        \
  X(extCommPktSubtypeTransIpv4AddressFlowspecRedirectIp, 0x0c)    \
  X(extCommPktSubtypeTransIpv4AddressCiscoVpnDistinguisher, 0x10) \
  X(extCommPktSubtypeTransIpv4AddressUnknown, 256, false)
enum BgpExtCommPktSubtypeTransIpv4Address : U32 { MOX_ROWS(MOX_ENUMERATOR) };
BGP_ENUM_TABLE(BgpExtCommPktSubtypeTransIpv4Address, MOX_ROWS);
#undef MOX_ROWS

/// Type 0x02: an AS number of four octets and a number of two (RFC 5668). The subtypes mean what
/// they mean in type 0x00; the generic one is of draft-ietf-idr-as4octet-extcomm-generic-subtype.
#define MOX_ROWS(X)                                               \
  X(extCommPktSubtypeTransFourOctetAsRouteTarget, 0x02)           \
  X(extCommPktSubtypeTransFourOctetAsRouteOrigin, 0x03)           \
  X(extCommPktSubtypeTransFourOctetAsGeneric, 0x04)               \
  X(extCommPktSubtypeTransFourOctetAsOspfDomainIdentifier, 0x05)  \
  X(extCommPktSubtypeTransFourOctetAsBgpDataCollection, 0x08)     \
  X(extCommPktSubtypeTransFourOctetAsSourceAs, 0x09)              \
  X(extCommPktSubtypeTransFourOctetAsCiscoVpnDistinguisher, 0x10) \
  X(extCommPktSubtypeTransFourOctetAsUnknown, 256, false)
enum BgpExtCommPktSubtypeTransFourOctetAs : U32 { MOX_ROWS(MOX_ENUMERATOR) };
BGP_ENUM_TABLE(BgpExtCommPktSubtypeTransFourOctetAs, MOX_ROWS);
#undef MOX_ROWS

/// Type 0x03: six octets of the subtype's own layout (RFC 4360, section 3.3).
/// - cost community: draft-retana-bgp-custom-decision; outbound route filter: RFC 7543
/// - OSPF route type: RFC 4577; default gateway: RFC 7432, section 7.8
/// - encapsulation and color: RFC 9012, sections 4.1 and 4.3
#define MOX_ROWS(X)                                                   \
  X(extCommPktSubtypeTransOpaqueCostCommunity, 0x01)                  \
  X(extCommPktSubtypeTransOpaqueOutboundRouteFilter, 0x03)            \
  X(extCommPktSubtypeTransOpaqueOspfRouteType, 0x06)                  \
  X(extCommPktSubtypeTransOpaqueColorExtendedCommunity, 0x0b)         \
  X(extCommPktSubtypeTransOpaqueEncapsulationExtendedCommunity, 0x0c) \
  X(extCommPktSubtypeTransOpaqueDefaultGateway, 0x0d)                 \
  X(extCommPktSubtypeTransOpaqeUnknown, 256, false)
enum BgpExtCommPktSubtypeTransOpaque : U32 { MOX_ROWS(MOX_ENUMERATOR) };
BGP_ENUM_TABLE(BgpExtCommPktSubtypeTransOpaque, MOX_ROWS);
#undef MOX_ROWS

/// Type 0x06: Ethernet VPN (RFC 7432).
/// - MAC mobility, ESI label and ES import: RFC 7432, sections 7.7, 7.5 and 7.6
/// - router MAC: RFC 9135, section 8.1; layer 2 attributes: RFC 8214, section 3.1
#define MOX_ROWS(X)                              \
  X(extCommPktSubtypeEvpnMacMobility, 0x00)      \
  X(extCommPktSubtypeEvpnEsiMplsLabel, 0x01)     \
  X(extCommPktSubtypeEvpnEsImport, 0x02)         \
  X(extCommPktSubtypeEvpnRouterMac, 0x03)        \
  X(extCommPktSubtypeEvpnLayer2Attributes, 0x04) \
  X(extCommPktSubtypeEvpnUnknown, 256, false)
enum BgpExtCommPktSubtypeEvpn : U32 { MOX_ROWS(MOX_ENUMERATOR) };
BGP_ENUM_TABLE(BgpExtCommPktSubtypeEvpn, MOX_ROWS);
#undef MOX_ROWS

/// Type 0x08: redirection of a flow to the next hop (draft-simpson-idr-flowspec-redirect).
#define MOX_ROWS(X)                                 \
  X(extCommPktSubtypeFlowspecRedirectNexthop, 0x00) \
  X(extCommPktSubtypeFlowspecRedirectUnknown, 256, false)
enum BgpExtCommPktSubtypeTransFlowspecRedirectNexthop : U32 { MOX_ROWS(MOX_ENUMERATOR) };
BGP_ENUM_TABLE(BgpExtCommPktSubtypeTransFlowspecRedirectNexthop, MOX_ROWS);
#undef MOX_ROWS

/// Type 0x80, experimental once: flow specification actions and some of layer 2.
/// - traffic rate, action, redirect and remarking: RFC 8955, sections 7.1 and 7.3 to 7.5
/// - layer 2 information: RFC 4761; E-Tree: RFC 7796
#define MOX_ROWS(X)                                                 \
  X(extCommPktSubtypeTransGenericFlowspecTrafficRate, 0x06)         \
  X(extCommPktSubtypeTransGenericFlowspecTrafficAction, 0x07)       \
  X(extCommPktSubtypeTransGenericFlowspecRedirectAs2Byte, 0x08)     \
  X(extCommPktSubtypeTransGenericFlowspecTrafficRemarking, 0x09)    \
  X(extCommPktSubtypeTransGenericLayer2InfoExtendedCommunity, 0x0a) \
  X(extCommPktSubtypeTransGenericEtreeInfo, 0x0b)                   \
  X(extCommPktSubtypeTransGenericUnknown, 256, false)
enum BgpExtCommPktSubtypeTransGeneric : U32 { MOX_ROWS(MOX_ENUMERATOR) };
BGP_ENUM_TABLE(BgpExtCommPktSubtypeTransGeneric, MOX_ROWS);
#undef MOX_ROWS

/// Type 0x81: as 0x80, redirect to a route target of an IPv4 address (RFC 8955, section 7.4).
#define MOX_ROWS(X)                                               \
  X(extCommPktSubtypeTransGenericPart2FlowspecRedirectIpv4, 0x08) \
  X(extCommPktSubtypeTransGenericPart2Unknown, 256, false)
enum BgpExtCommPktSubtypeTransGenericPart2 : U32 { MOX_ROWS(MOX_ENUMERATOR) };
BGP_ENUM_TABLE(BgpExtCommPktSubtypeTransGenericPart2, MOX_ROWS);
#undef MOX_ROWS

/// Type 0x82: as 0x80, redirect to a route target of a four-octet AS number (RFC 8955,
/// section 7.4).
#define MOX_ROWS(X)                                                  \
  X(extCommPktSubtypeTransGenericPart3FlowspecRedirectAs4Byte, 0x08) \
  X(extCommPktSubtypeTransGenericPart3Unknown, 256, false)
enum BgpExtCommPktSubtypeTransGenericPart3 : U32 { MOX_ROWS(MOX_ENUMERATOR) };
BGP_ENUM_TABLE(BgpExtCommPktSubtypeTransGenericPart3, MOX_ROWS);
#undef MOX_ROWS

/// Type 0x40: as 0x00, and not transitive.
/// - link bandwidth: draft-ietf-idr-link-bandwidth
/// - virtual network identifier: draft-drao-bgp-l3vpn-virtual-network-overlays
#define MOX_ROWS(X)                                                    \
  X(extCommPktSubtypeNonTransTwoOctetAsLinkBandwidth, 0x04)            \
  X(extCommPktSubtypeNonTransTwoOctetAsVirtualNetworkIdentifier, 0x80) \
  X(extCommPktSubtypeNonTransTwoOctetAsUnknown, 256, false)
enum BgpExtCommPktSubtypeNonTransTwoOctetAs : U32 { MOX_ROWS(MOX_ENUMERATOR) };
BGP_ENUM_TABLE(BgpExtCommPktSubtypeNonTransTwoOctetAs, MOX_ROWS);
#undef MOX_ROWS

/// Type 0x41: as 0x01, and not transitive. None of its subtypes has a name.
#define MOX_ROWS(X) X(extCommPktSubtypeNonTransIpv4AddressUnknown, 256, false)
enum BgpExtCommPktSubtypeNonTransIpv4Address : U32 { MOX_ROWS(MOX_ENUMERATOR) };
BGP_ENUM_TABLE(BgpExtCommPktSubtypeNonTransIpv4Address, MOX_ROWS);
#undef MOX_ROWS

/// Type 0x42: as 0x02, and not transitive. The generic subtype is that of 0x02.
#define MOX_ROWS(X)                                    \
  X(extCommPktSubtypeNonTransFourOctetAsGeneric, 0x04) \
  X(extCommPktSubNonTransFourOctetAsUnknown, 256, false)
enum BgpExtCommPktSubtypeNonTransFourOctetAs : U32 { MOX_ROWS(MOX_ENUMERATOR) };
BGP_ENUM_TABLE(BgpExtCommPktSubtypeNonTransFourOctetAs, MOX_ROWS);
#undef MOX_ROWS

/// Type 0x43: as 0x03, and not transitive.
/// - origin validation state: RFC 8097; cost community: draft-retana-bgp-custom-decision
#define MOX_ROWS(X)                                       \
  X(extCommPktSubtypeNonTransOriginValidationState, 0x00) \
  X(extCommPktSubtypeNonTransCostCommunity, 0x01)         \
  X(extCommPktSubtypeNonTransOpaqueUnknown, 256, false)
enum BgpExtCommPktSubtypeNonTransOpaque : U32 { MOX_ROWS(MOX_ENUMERATOR) };
BGP_ENUM_TABLE(BgpExtCommPktSubtypeNonTransOpaque, MOX_ROWS);
#undef MOX_ROWS

/// Type 0x00 of the 20-octet family: an IPv6 address and a number of two octets (RFC 5701).
/// - route target and origin: RFC 5701; OSPFv3 route attributes: RFC 6565
/// - VRF route import: RFC 6515; inter-area P2MP next hop: RFC 7524
/// - flow specification redirect to an address: draft-ietf-idr-flowspec-redirect-ip
#define MOX_ROWS(X)                                  \
  X(extCommIp6PktSubtypeRouteTarget, 0x02)           \
  X(extCommIp6PktSubtypeRouteOrigin, 0x03)           \
  X(extCommIp6PktSubtypeOspf3RouteAttributes, 0x04)  \
  X(extCommIp6PktSubtypeVrfRouteImport, 0x0b)        \
  X(extCommIp6PktSubtypeFlowspecRedirectIpv6, 0x0c)  \
  X(extCommIp6PktSubtypeCiscoVpnDistinguisher, 0x10) \
  X(extCommIp6PktSubtypeUuidRouteTarget, 0x11)       \
  X(extCommIp6PktSubtypeInterAreaP2MPNextHop, 0x12)  \
  X(extCommIp6PktSubtypeTransIpv6AddressUnknown, 256, false)
enum BgpExtCommIp6PktSubtypeTransIpv6Address : U32 { MOX_ROWS(MOX_ENUMERATOR) };
BGP_ENUM_TABLE(BgpExtCommIp6PktSubtypeTransIpv6Address, MOX_ROWS);
#undef MOX_ROWS

/// Type 0x40 of the 20-octet family: as 0x00, and not transitive. None of its subtypes has a name.
#define MOX_ROWS(X) X(extCommIp6PktSubtypeNonTransIpv6AddressUnknown, 256, false)
enum BgpExtCommIp6PktSubtypeNonTransIpv6Address : U32 { MOX_ROWS(MOX_ENUMERATOR) };
BGP_ENUM_TABLE(BgpExtCommIp6PktSubtypeNonTransIpv6Address, MOX_ROWS);
#undef MOX_ROWS

/// The name of a subtype octet; empty when it is no member. The text is static.
template <Mox::Enumeration Subtypes>
std::string_view extCommSubtypeName(U8 subtype) {
  const auto* row = Mox::enumTableOf<Subtypes>.find(U32(subtype));
  return row && row->member ? row->name : std::string_view{};
}

/// The name of a subtype octet, or `subtype=` and its number when it is no member.
template <Mox::Enumeration Subtypes>
Mox::String extCommSubtypeString(unsigned char subtype) {
  const std::string_view name = extCommSubtypeName<Subtypes>(subtype);
  return name.empty() ? "subtype=" + std::to_string(subtype) : Mox::String(name);
}

}  // namespace Routing::Bgp
