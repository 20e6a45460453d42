// The subtypes of extended communities, one enumeration for each type that has some.
//
//   extCommSubtypeString<BgpExtCommPktSubtypeTransIpv4Address>(0x07)
//       // "extCommPktSubtypeTransIpv4AddressOspfRouteId"
//   extCommSubtypeString<BgpExtCommPktSubtypeTransIpv4Address>(0x06)   // "subtype=6"
//
// Every enumeration has an `Unknown` of 256, which no octet is; it and whatever is not listed are
// no members. Some spellings break the pattern (`TransOpaqe`, `PktSubNonTrans`, a missing `Trans`
// or `Opaque`); they are configuration and show vocabulary and stay.
#pragma once

#include "attr/BgpEnum.h"

namespace Routing::Bgp {

/// Type 0x00. The subtype 0x14 has a name, which says non-transitive, and is yet no member.
enum BgpExtCommPktSubtypeTransTwoOctetAs : U32 {
  extCommPktSubtypeTransTwoOctetAsRouteTarget = 0x02,
  extCommPktSubtypeTransTwoOctetAsRouteOrigin = 0x03,
  extCommPktSubtypeTransTwoOctetAsOspfDomainIdentifier = 0x05,
  extCommPktSubtypeTransTwoOctetAsBgpDataCollection = 0x08,
  extCommPktSubtypeTransTwoOctetAsSourceAs = 0x09,
  extCommPktSubtypeTransTwoOctetAsL2VpnIdentifier = 0x0a,
  extCommPktSubtypeTransTwoOctetAsCiscoVpnDistinguisher = 0x10,
  extCommPktSubtypeNonTransTwoOctetAsLinkBandwidthAny = 0x14,
  extCommPktSubtypeTransTwoOctetAsUnknown = 256,
};

consteval auto enumTable(BgpExtCommPktSubtypeTransTwoOctetAs) {
  return Mox::enumRows<BgpExtCommPktSubtypeTransTwoOctetAs>(
      "Routing::Bgp::BgpExtCommPktSubtypeTransTwoOctetAs",
      {{extCommPktSubtypeTransTwoOctetAsRouteTarget, "extCommPktSubtypeTransTwoOctetAsRouteTarget"},
       {extCommPktSubtypeTransTwoOctetAsRouteOrigin, "extCommPktSubtypeTransTwoOctetAsRouteOrigin"},
       {extCommPktSubtypeTransTwoOctetAsOspfDomainIdentifier,
        "extCommPktSubtypeTransTwoOctetAsOspfDomainIdentifier"},
       {extCommPktSubtypeTransTwoOctetAsBgpDataCollection,
        "extCommPktSubtypeTransTwoOctetAsBgpDataCollection"},
       {extCommPktSubtypeTransTwoOctetAsSourceAs, "extCommPktSubtypeTransTwoOctetAsSourceAs"},
       {extCommPktSubtypeTransTwoOctetAsL2VpnIdentifier,
        "extCommPktSubtypeTransTwoOctetAsL2VpnIdentifier"},
       {extCommPktSubtypeTransTwoOctetAsCiscoVpnDistinguisher,
        "extCommPktSubtypeTransTwoOctetAsCiscoVpnDistinguisher"},
       {extCommPktSubtypeNonTransTwoOctetAsLinkBandwidthAny,
        "extCommPktSubtypeNonTransTwoOctetAsLinkBandwidthAny", false},
       {extCommPktSubtypeTransTwoOctetAsUnknown, "extCommPktSubtypeTransTwoOctetAsUnknown",
        false}});
}
inline constexpr Mox::EnumInstance<BgpExtCommPktSubtypeTransTwoOctetAs>
    BgpExtCommPktSubtypeTransTwoOctetAsInstance{};

/// Type 0x01.
enum BgpExtCommPktSubtypeTransIpv4Address : U32 {
  extCommPktSubtypeTransIpv4AddressRouteTarget = 0x02,
  extCommPktSubtypeTransIpv4AddressRouteOrigin = 0x03,
  extCommPktSubtypeTransIpv4AddressOspfDomainIdentifier = 0x05,
  extCommPktSubtypeTransIpv4AddressOspfRouteId = 0x07,
  extCommPktSubtypeTransIpv4AddressL2VpnIdentifier = 0x0a,
  extCommPktSubtypeTransIpv4AddressVrfRouteImport = 0x0b,
  extCommPktSubtypeTransIpv4AddressFlowspecRedirectIp = 0x0c,
  extCommPktSubtypeTransIpv4AddressCiscoVpnDistinguisher = 0x10,
  extCommPktSubtypeTransIpv4AddressUnknown = 256,
};

consteval auto enumTable(BgpExtCommPktSubtypeTransIpv4Address) {
  return Mox::enumRows<BgpExtCommPktSubtypeTransIpv4Address>(
      "Routing::Bgp::BgpExtCommPktSubtypeTransIpv4Address",
      {{extCommPktSubtypeTransIpv4AddressRouteTarget,
        "extCommPktSubtypeTransIpv4AddressRouteTarget"},
       {extCommPktSubtypeTransIpv4AddressRouteOrigin,
        "extCommPktSubtypeTransIpv4AddressRouteOrigin"},
       {extCommPktSubtypeTransIpv4AddressOspfDomainIdentifier,
        "extCommPktSubtypeTransIpv4AddressOspfDomainIdentifier"},
       {extCommPktSubtypeTransIpv4AddressOspfRouteId,
        "extCommPktSubtypeTransIpv4AddressOspfRouteId"},
       {extCommPktSubtypeTransIpv4AddressL2VpnIdentifier,
        "extCommPktSubtypeTransIpv4AddressL2VpnIdentifier"},
       {extCommPktSubtypeTransIpv4AddressVrfRouteImport,
        "extCommPktSubtypeTransIpv4AddressVrfRouteImport"},
       {extCommPktSubtypeTransIpv4AddressFlowspecRedirectIp,
        "extCommPktSubtypeTransIpv4AddressFlowspecRedirectIp"},
       {extCommPktSubtypeTransIpv4AddressCiscoVpnDistinguisher,
        "extCommPktSubtypeTransIpv4AddressCiscoVpnDistinguisher"},
       {extCommPktSubtypeTransIpv4AddressUnknown, "extCommPktSubtypeTransIpv4AddressUnknown",
        false}});
}
inline constexpr Mox::EnumInstance<BgpExtCommPktSubtypeTransIpv4Address>
    BgpExtCommPktSubtypeTransIpv4AddressInstance{};

/// Type 0x02.
enum BgpExtCommPktSubtypeTransFourOctetAs : U32 {
  extCommPktSubtypeTransFourOctetAsRouteTarget = 0x02,
  extCommPktSubtypeTransFourOctetAsRouteOrigin = 0x03,
  extCommPktSubtypeTransFourOctetAsGeneric = 0x04,
  extCommPktSubtypeTransFourOctetAsOspfDomainIdentifier = 0x05,
  extCommPktSubtypeTransFourOctetAsBgpDataCollection = 0x08,
  extCommPktSubtypeTransFourOctetAsSourceAs = 0x09,
  extCommPktSubtypeTransFourOctetAsCiscoVpnDistinguisher = 0x10,
  extCommPktSubtypeTransFourOctetAsUnknown = 256,
};

consteval auto enumTable(BgpExtCommPktSubtypeTransFourOctetAs) {
  return Mox::enumRows<BgpExtCommPktSubtypeTransFourOctetAs>(
      "Routing::Bgp::BgpExtCommPktSubtypeTransFourOctetAs",
      {{extCommPktSubtypeTransFourOctetAsRouteTarget,
        "extCommPktSubtypeTransFourOctetAsRouteTarget"},
       {extCommPktSubtypeTransFourOctetAsRouteOrigin,
        "extCommPktSubtypeTransFourOctetAsRouteOrigin"},
       {extCommPktSubtypeTransFourOctetAsGeneric, "extCommPktSubtypeTransFourOctetAsGeneric"},
       {extCommPktSubtypeTransFourOctetAsOspfDomainIdentifier,
        "extCommPktSubtypeTransFourOctetAsOspfDomainIdentifier"},
       {extCommPktSubtypeTransFourOctetAsBgpDataCollection,
        "extCommPktSubtypeTransFourOctetAsBgpDataCollection"},
       {extCommPktSubtypeTransFourOctetAsSourceAs, "extCommPktSubtypeTransFourOctetAsSourceAs"},
       {extCommPktSubtypeTransFourOctetAsCiscoVpnDistinguisher,
        "extCommPktSubtypeTransFourOctetAsCiscoVpnDistinguisher"},
       {extCommPktSubtypeTransFourOctetAsUnknown, "extCommPktSubtypeTransFourOctetAsUnknown",
        false}});
}
inline constexpr Mox::EnumInstance<BgpExtCommPktSubtypeTransFourOctetAs>
    BgpExtCommPktSubtypeTransFourOctetAsInstance{};

/// Type 0x03.
enum BgpExtCommPktSubtypeTransOpaque : U32 {
  extCommPktSubtypeTransOpaqueCostCommunity = 0x01,
  extCommPktSubtypeTransOpaqueOutboundRouteFilter = 0x03,
  extCommPktSubtypeTransOpaqueOspfRouteType = 0x06,
  extCommPktSubtypeTransOpaqueColorExtendedCommunity = 0x0b,
  extCommPktSubtypeTransOpaqueEncapsulationExtendedCommunity = 0x0c,
  extCommPktSubtypeTransOpaqueDefaultGateway = 0x0d,
  extCommPktSubtypeTransOpaqeUnknown = 256,
};

consteval auto enumTable(BgpExtCommPktSubtypeTransOpaque) {
  return Mox::enumRows<BgpExtCommPktSubtypeTransOpaque>(
      "Routing::Bgp::BgpExtCommPktSubtypeTransOpaque",
      {{extCommPktSubtypeTransOpaqueCostCommunity, "extCommPktSubtypeTransOpaqueCostCommunity"},
       {extCommPktSubtypeTransOpaqueOutboundRouteFilter,
        "extCommPktSubtypeTransOpaqueOutboundRouteFilter"},
       {extCommPktSubtypeTransOpaqueOspfRouteType, "extCommPktSubtypeTransOpaqueOspfRouteType"},
       {extCommPktSubtypeTransOpaqueColorExtendedCommunity,
        "extCommPktSubtypeTransOpaqueColorExtendedCommunity"},
       {extCommPktSubtypeTransOpaqueEncapsulationExtendedCommunity,
        "extCommPktSubtypeTransOpaqueEncapsulationExtendedCommunity"},
       {extCommPktSubtypeTransOpaqueDefaultGateway, "extCommPktSubtypeTransOpaqueDefaultGateway"},
       {extCommPktSubtypeTransOpaqeUnknown, "extCommPktSubtypeTransOpaqeUnknown", false}});
}
inline constexpr Mox::EnumInstance<BgpExtCommPktSubtypeTransOpaque>
    BgpExtCommPktSubtypeTransOpaqueInstance{};

/// Type 0x06 (RFC 7432).
enum BgpExtCommPktSubtypeEvpn : U32 {
  extCommPktSubtypeEvpnMacMobility = 0x00,
  extCommPktSubtypeEvpnEsiMplsLabel = 0x01,
  extCommPktSubtypeEvpnEsImport = 0x02,
  extCommPktSubtypeEvpnRouterMac = 0x03,
  extCommPktSubtypeEvpnLayer2Attributes = 0x04,
  extCommPktSubtypeEvpnUnknown = 256,
};

consteval auto enumTable(BgpExtCommPktSubtypeEvpn) {
  return Mox::enumRows<BgpExtCommPktSubtypeEvpn>(
      "Routing::Bgp::BgpExtCommPktSubtypeEvpn",
      {{extCommPktSubtypeEvpnMacMobility, "extCommPktSubtypeEvpnMacMobility"},
       {extCommPktSubtypeEvpnEsiMplsLabel, "extCommPktSubtypeEvpnEsiMplsLabel"},
       {extCommPktSubtypeEvpnEsImport, "extCommPktSubtypeEvpnEsImport"},
       {extCommPktSubtypeEvpnRouterMac, "extCommPktSubtypeEvpnRouterMac"},
       {extCommPktSubtypeEvpnLayer2Attributes, "extCommPktSubtypeEvpnLayer2Attributes"},
       {extCommPktSubtypeEvpnUnknown, "extCommPktSubtypeEvpnUnknown", false}});
}
inline constexpr Mox::EnumInstance<BgpExtCommPktSubtypeEvpn> BgpExtCommPktSubtypeEvpnInstance{};

/// Type 0x08.
enum BgpExtCommPktSubtypeTransFlowspecRedirectNexthop : U32 {
  extCommPktSubtypeFlowspecRedirectNexthop = 0x00,
  extCommPktSubtypeFlowspecRedirectUnknown = 256,
};

consteval auto enumTable(BgpExtCommPktSubtypeTransFlowspecRedirectNexthop) {
  return Mox::enumRows<BgpExtCommPktSubtypeTransFlowspecRedirectNexthop>(
      "Routing::Bgp::BgpExtCommPktSubtypeTransFlowspecRedirectNexthop",
      {{extCommPktSubtypeFlowspecRedirectNexthop, "extCommPktSubtypeFlowspecRedirectNexthop"},
       {extCommPktSubtypeFlowspecRedirectUnknown, "extCommPktSubtypeFlowspecRedirectUnknown",
        false}});
}
inline constexpr Mox::EnumInstance<BgpExtCommPktSubtypeTransFlowspecRedirectNexthop>
    BgpExtCommPktSubtypeTransFlowspecRedirectNexthopInstance{};

/// Type 0x80 (RFC 8955).
enum BgpExtCommPktSubtypeTransGeneric : U32 {
  extCommPktSubtypeTransGenericFlowspecTrafficRate = 0x06,
  extCommPktSubtypeTransGenericFlowspecTrafficAction = 0x07,
  extCommPktSubtypeTransGenericFlowspecRedirectAs2Byte = 0x08,
  extCommPktSubtypeTransGenericFlowspecTrafficRemarking = 0x09,
  extCommPktSubtypeTransGenericLayer2InfoExtendedCommunity = 0x0a,
  extCommPktSubtypeTransGenericEtreeInfo = 0x0b,
  extCommPktSubtypeTransGenericUnknown = 256,
};

consteval auto enumTable(BgpExtCommPktSubtypeTransGeneric) {
  return Mox::enumRows<BgpExtCommPktSubtypeTransGeneric>(
      "Routing::Bgp::BgpExtCommPktSubtypeTransGeneric",
      {{extCommPktSubtypeTransGenericFlowspecTrafficRate,
        "extCommPktSubtypeTransGenericFlowspecTrafficRate"},
       {extCommPktSubtypeTransGenericFlowspecTrafficAction,
        "extCommPktSubtypeTransGenericFlowspecTrafficAction"},
       {extCommPktSubtypeTransGenericFlowspecRedirectAs2Byte,
        "extCommPktSubtypeTransGenericFlowspecRedirectAs2Byte"},
       {extCommPktSubtypeTransGenericFlowspecTrafficRemarking,
        "extCommPktSubtypeTransGenericFlowspecTrafficRemarking"},
       {extCommPktSubtypeTransGenericLayer2InfoExtendedCommunity,
        "extCommPktSubtypeTransGenericLayer2InfoExtendedCommunity"},
       {extCommPktSubtypeTransGenericEtreeInfo, "extCommPktSubtypeTransGenericEtreeInfo"},
       {extCommPktSubtypeTransGenericUnknown, "extCommPktSubtypeTransGenericUnknown", false}});
}
inline constexpr Mox::EnumInstance<BgpExtCommPktSubtypeTransGeneric>
    BgpExtCommPktSubtypeTransGenericInstance{};

/// Type 0x81 (RFC 8955).
enum BgpExtCommPktSubtypeTransGenericPart2 : U32 {
  extCommPktSubtypeTransGenericPart2FlowspecRedirectIpv4 = 0x08,
  extCommPktSubtypeTransGenericPart2Unknown = 256,
};

consteval auto enumTable(BgpExtCommPktSubtypeTransGenericPart2) {
  return Mox::enumRows<BgpExtCommPktSubtypeTransGenericPart2>(
      "Routing::Bgp::BgpExtCommPktSubtypeTransGenericPart2",
      {{extCommPktSubtypeTransGenericPart2FlowspecRedirectIpv4,
        "extCommPktSubtypeTransGenericPart2FlowspecRedirectIpv4"},
       {extCommPktSubtypeTransGenericPart2Unknown, "extCommPktSubtypeTransGenericPart2Unknown",
        false}});
}
inline constexpr Mox::EnumInstance<BgpExtCommPktSubtypeTransGenericPart2>
    BgpExtCommPktSubtypeTransGenericPart2Instance{};

/// Type 0x82 (RFC 8955).
enum BgpExtCommPktSubtypeTransGenericPart3 : U32 {
  extCommPktSubtypeTransGenericPart3FlowspecRedirectAs4Byte = 0x08,
  extCommPktSubtypeTransGenericPart3Unknown = 256,
};

consteval auto enumTable(BgpExtCommPktSubtypeTransGenericPart3) {
  return Mox::enumRows<BgpExtCommPktSubtypeTransGenericPart3>(
      "Routing::Bgp::BgpExtCommPktSubtypeTransGenericPart3",
      {{extCommPktSubtypeTransGenericPart3FlowspecRedirectAs4Byte,
        "extCommPktSubtypeTransGenericPart3FlowspecRedirectAs4Byte"},
       {extCommPktSubtypeTransGenericPart3Unknown, "extCommPktSubtypeTransGenericPart3Unknown",
        false}});
}
inline constexpr Mox::EnumInstance<BgpExtCommPktSubtypeTransGenericPart3>
    BgpExtCommPktSubtypeTransGenericPart3Instance{};

/// Type 0x40.
enum BgpExtCommPktSubtypeNonTransTwoOctetAs : U32 {
  extCommPktSubtypeNonTransTwoOctetAsLinkBandwidth = 0x04,
  extCommPktSubtypeNonTransTwoOctetAsVirtualNetworkIdentifier = 0x80,
  extCommPktSubtypeNonTransTwoOctetAsUnknown = 256,
};

consteval auto enumTable(BgpExtCommPktSubtypeNonTransTwoOctetAs) {
  return Mox::enumRows<BgpExtCommPktSubtypeNonTransTwoOctetAs>(
      "Routing::Bgp::BgpExtCommPktSubtypeNonTransTwoOctetAs",
      {{extCommPktSubtypeNonTransTwoOctetAsLinkBandwidth,
        "extCommPktSubtypeNonTransTwoOctetAsLinkBandwidth"},
       {extCommPktSubtypeNonTransTwoOctetAsVirtualNetworkIdentifier,
        "extCommPktSubtypeNonTransTwoOctetAsVirtualNetworkIdentifier"},
       {extCommPktSubtypeNonTransTwoOctetAsUnknown, "extCommPktSubtypeNonTransTwoOctetAsUnknown",
        false}});
}
inline constexpr Mox::EnumInstance<BgpExtCommPktSubtypeNonTransTwoOctetAs>
    BgpExtCommPktSubtypeNonTransTwoOctetAsInstance{};

/// Type 0x41, none of whose subtypes has a name.
enum BgpExtCommPktSubtypeNonTransIpv4Address : U32 {
  extCommPktSubtypeNonTransIpv4AddressUnknown = 256,
};

consteval auto enumTable(BgpExtCommPktSubtypeNonTransIpv4Address) {
  return Mox::enumRows<BgpExtCommPktSubtypeNonTransIpv4Address>(
      "Routing::Bgp::BgpExtCommPktSubtypeNonTransIpv4Address",
      {{extCommPktSubtypeNonTransIpv4AddressUnknown, "extCommPktSubtypeNonTransIpv4AddressUnknown",
        false}});
}
inline constexpr Mox::EnumInstance<BgpExtCommPktSubtypeNonTransIpv4Address>
    BgpExtCommPktSubtypeNonTransIpv4AddressInstance{};

/// Type 0x42.
enum BgpExtCommPktSubtypeNonTransFourOctetAs : U32 {
  extCommPktSubtypeNonTransFourOctetAsGeneric = 0x04,
  extCommPktSubNonTransFourOctetAsUnknown = 256,
};

consteval auto enumTable(BgpExtCommPktSubtypeNonTransFourOctetAs) {
  return Mox::enumRows<BgpExtCommPktSubtypeNonTransFourOctetAs>(
      "Routing::Bgp::BgpExtCommPktSubtypeNonTransFourOctetAs",
      {{extCommPktSubtypeNonTransFourOctetAsGeneric, "extCommPktSubtypeNonTransFourOctetAsGeneric"},
       {extCommPktSubNonTransFourOctetAsUnknown, "extCommPktSubNonTransFourOctetAsUnknown",
        false}});
}
inline constexpr Mox::EnumInstance<BgpExtCommPktSubtypeNonTransFourOctetAs>
    BgpExtCommPktSubtypeNonTransFourOctetAsInstance{};

/// Type 0x43.
enum BgpExtCommPktSubtypeNonTransOpaque : U32 {
  extCommPktSubtypeNonTransOriginValidationState = 0x00,
  extCommPktSubtypeNonTransCostCommunity = 0x01,
  extCommPktSubtypeNonTransOpaqueUnknown = 256,
};

consteval auto enumTable(BgpExtCommPktSubtypeNonTransOpaque) {
  return Mox::enumRows<BgpExtCommPktSubtypeNonTransOpaque>(
      "Routing::Bgp::BgpExtCommPktSubtypeNonTransOpaque",
      {{extCommPktSubtypeNonTransOriginValidationState,
        "extCommPktSubtypeNonTransOriginValidationState"},
       {extCommPktSubtypeNonTransCostCommunity, "extCommPktSubtypeNonTransCostCommunity"},
       {extCommPktSubtypeNonTransOpaqueUnknown, "extCommPktSubtypeNonTransOpaqueUnknown", false}});
}
inline constexpr Mox::EnumInstance<BgpExtCommPktSubtypeNonTransOpaque>
    BgpExtCommPktSubtypeNonTransOpaqueInstance{};

/// Type 0x00 of the 20-octet family.
enum BgpExtCommIp6PktSubtypeTransIpv6Address : U32 {
  extCommIp6PktSubtypeRouteTarget = 0x02,
  extCommIp6PktSubtypeRouteOrigin = 0x03,
  extCommIp6PktSubtypeOspf3RouteAttributes = 0x04,
  extCommIp6PktSubtypeVrfRouteImport = 0x0b,
  extCommIp6PktSubtypeFlowspecRedirectIpv6 = 0x0c,
  extCommIp6PktSubtypeCiscoVpnDistinguisher = 0x10,
  extCommIp6PktSubtypeUuidRouteTarget = 0x11,
  extCommIp6PktSubtypeInterAreaP2MPNextHop = 0x12,
  extCommIp6PktSubtypeTransIpv6AddressUnknown = 256,
};

consteval auto enumTable(BgpExtCommIp6PktSubtypeTransIpv6Address) {
  return Mox::enumRows<BgpExtCommIp6PktSubtypeTransIpv6Address>(
      "Routing::Bgp::BgpExtCommIp6PktSubtypeTransIpv6Address",
      {{extCommIp6PktSubtypeRouteTarget, "extCommIp6PktSubtypeRouteTarget"},
       {extCommIp6PktSubtypeRouteOrigin, "extCommIp6PktSubtypeRouteOrigin"},
       {extCommIp6PktSubtypeOspf3RouteAttributes, "extCommIp6PktSubtypeOspf3RouteAttributes"},
       {extCommIp6PktSubtypeVrfRouteImport, "extCommIp6PktSubtypeVrfRouteImport"},
       {extCommIp6PktSubtypeFlowspecRedirectIpv6, "extCommIp6PktSubtypeFlowspecRedirectIpv6"},
       {extCommIp6PktSubtypeCiscoVpnDistinguisher, "extCommIp6PktSubtypeCiscoVpnDistinguisher"},
       {extCommIp6PktSubtypeUuidRouteTarget, "extCommIp6PktSubtypeUuidRouteTarget"},
       {extCommIp6PktSubtypeInterAreaP2MPNextHop, "extCommIp6PktSubtypeInterAreaP2MPNextHop"},
       {extCommIp6PktSubtypeTransIpv6AddressUnknown, "extCommIp6PktSubtypeTransIpv6AddressUnknown",
        false}});
}
inline constexpr Mox::EnumInstance<BgpExtCommIp6PktSubtypeTransIpv6Address>
    BgpExtCommIp6PktSubtypeTransIpv6AddressInstance{};

/// Type 0x40 of the 20-octet family, none of whose subtypes has a name.
enum BgpExtCommIp6PktSubtypeNonTransIpv6Address : U32 {
  extCommIp6PktSubtypeNonTransIpv6AddressUnknown = 256,
};

consteval auto enumTable(BgpExtCommIp6PktSubtypeNonTransIpv6Address) {
  return Mox::enumRows<BgpExtCommIp6PktSubtypeNonTransIpv6Address>(
      "Routing::Bgp::BgpExtCommIp6PktSubtypeNonTransIpv6Address",
      {{extCommIp6PktSubtypeNonTransIpv6AddressUnknown,
        "extCommIp6PktSubtypeNonTransIpv6AddressUnknown", false}});
}
inline constexpr Mox::EnumInstance<BgpExtCommIp6PktSubtypeNonTransIpv6Address>
    BgpExtCommIp6PktSubtypeNonTransIpv6AddressInstance{};

/// The name of a subtype octet; empty when it is no member.
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
