#include <gtest/gtest.h>

#include <cstdio>

#include "community/ZoBgpCommunity.h"

namespace Routing::Bgp {
namespace {

// Each enumeration: its members in hexadecimal, then the names that are no members.
struct Enumeration {
  const char* name;
  const char* members;
  const char* others;
  Mox::String (*subtypeString)(unsigned char) = nullptr;
};

const Enumeration enumerations[] = {
    {"BgpExtCommPktType", "0 1 2 3 4 5 6 8 40 41 42 43 44 80 81 82 ", "extCommPktTypeUnknown=100 "},
    {"BgpExtCommPktSubtypeTransTwoOctetAs", "2 3 5 8 9 a 10 ",
     "extCommPktSubtypeNonTransTwoOctetAsLinkBandwidthAny=14 "
     "extCommPktSubtypeTransTwoOctetAsUnknown=100 ",
     extCommSubtypeString<BgpExtCommPktSubtypeTransTwoOctetAs>},
    {"BgpExtCommPktSubtypeTransIpv4Address", "2 3 5 7 a b c 10 ",
     "extCommPktSubtypeTransIpv4AddressUnknown=100 ",
     extCommSubtypeString<BgpExtCommPktSubtypeTransIpv4Address>},
    {"BgpExtCommPktSubtypeTransFourOctetAs", "2 3 4 5 8 9 10 ",
     "extCommPktSubtypeTransFourOctetAsUnknown=100 ",
     extCommSubtypeString<BgpExtCommPktSubtypeTransFourOctetAs>},
    {"BgpExtCommPktSubtypeTransOpaque", "1 3 6 b c d ", "extCommPktSubtypeTransOpaqeUnknown=100 ",
     extCommSubtypeString<BgpExtCommPktSubtypeTransOpaque>},
    {"BgpExtCommPktSubtypeEvpn", "0 1 2 3 4 ", "extCommPktSubtypeEvpnUnknown=100 ",
     extCommSubtypeString<BgpExtCommPktSubtypeEvpn>},
    {"BgpExtCommPktSubtypeTransFlowspecRedirectNexthop", "0 ",
     "extCommPktSubtypeFlowspecRedirectUnknown=100 ",
     extCommSubtypeString<BgpExtCommPktSubtypeTransFlowspecRedirectNexthop>},
    {"BgpExtCommPktSubtypeTransGeneric", "6 7 8 9 a b ",
     "extCommPktSubtypeTransGenericUnknown=100 ",
     extCommSubtypeString<BgpExtCommPktSubtypeTransGeneric>},
    {"BgpExtCommPktSubtypeTransGenericPart2", "8 ",
     "extCommPktSubtypeTransGenericPart2Unknown=100 ",
     extCommSubtypeString<BgpExtCommPktSubtypeTransGenericPart2>},
    {"BgpExtCommPktSubtypeTransGenericPart3", "8 ",
     "extCommPktSubtypeTransGenericPart3Unknown=100 ",
     extCommSubtypeString<BgpExtCommPktSubtypeTransGenericPart3>},
    {"BgpExtCommPktSubtypeNonTransTwoOctetAs", "4 80 ",
     "extCommPktSubtypeNonTransTwoOctetAsUnknown=100 ",
     extCommSubtypeString<BgpExtCommPktSubtypeNonTransTwoOctetAs>},
    {"BgpExtCommPktSubtypeNonTransIpv4Address", "",
     "extCommPktSubtypeNonTransIpv4AddressUnknown=100 ",
     extCommSubtypeString<BgpExtCommPktSubtypeNonTransIpv4Address>},
    {"BgpExtCommPktSubtypeNonTransFourOctetAs", "4 ",
     "extCommPktSubNonTransFourOctetAsUnknown=100 ",
     extCommSubtypeString<BgpExtCommPktSubtypeNonTransFourOctetAs>},
    {"BgpExtCommPktSubtypeNonTransOpaque", "0 1 ", "extCommPktSubtypeNonTransOpaqueUnknown=100 ",
     extCommSubtypeString<BgpExtCommPktSubtypeNonTransOpaque>},
    {"BgpExtCommIp6PktType", "0 40 ", "extCommIp6PktTypeUnknown=100 "},
    {"BgpExtCommIp6PktSubtypeTransIpv6Address", "2 3 4 b c 10 11 12 ",
     "extCommIp6PktSubtypeTransIpv6AddressUnknown=100 ",
     extCommSubtypeString<BgpExtCommIp6PktSubtypeTransIpv6Address>},
    {"BgpExtCommIp6PktSubtypeNonTransIpv6Address", "",
     "extCommIp6PktSubtypeNonTransIpv6AddressUnknown=100 ",
     extCommSubtypeString<BgpExtCommIp6PktSubtypeNonTransIpv6Address>},
    {"ExtCommClassification", "0 1 2 3 4 5 6 7 8 9 a ", ""},
    {"TunnelType", "1 2 7 8 9 a b c ", ""},
    {"OriginValidationState", "0 1 2 ", ""},
    {"StrepFormatFlag", "1 2 4 8 10 20 ", ""},
};

Mox::String hex(U64 number) {
  char text[20];
  std::snprintf(text, sizeof text, "%llx", number);
  return text;
}

TEST(Vocabulary, MembersAndOthersOfEveryEnumeration) {
  for (const Enumeration& e : enumerations) {
    SCOPED_TRACE(e.name);
    const Mox::Type* type = Mox::Type::find(Mox::String("Routing::Bgp::") + e.name);
    ASSERT_TRUE(type);
    std::map<U64, Mox::String> members;
    Mox::String others;
    for (const auto& [name, value, member] : type->enumerators())
      member ? void(members[value] = name) : void(others += name + "=" + hex(value) + " ");
    Mox::String numbers;
    for (const auto& [value, name] : members) numbers += hex(value) + " ";
    EXPECT_EQ(numbers, e.members);
    EXPECT_EQ(others, e.others);
    for (U32 octet = 0; e.subtypeString && octet < 256; ++octet)
      EXPECT_EQ(e.subtypeString(U8(octet)),
                members.contains(octet) ? members[octet] : "subtype=" + std::to_string(octet));
  }
}

// Names that are not what their neighbours let one expect, and one of each regular kind.
TEST(Vocabulary, SpellsNames) {
  const std::pair<Mox::String, const char*> cases[] = {
      {stringValue(BgpExtCommPktType(0x82)), "extCommPktTypeTransGenericPart3"},
      {stringValue(BgpExtCommPktType(0x08)), "extCommPktTypeTransFlowspecRedirectNexthop"},
      {stringValue(BgpExtCommPktSubtypeTransTwoOctetAs(0x14)),
       "extCommPktSubtypeNonTransTwoOctetAsLinkBandwidthAny"},
      {stringValue(BgpExtCommPktSubtypeTransIpv4Address(0x07)),
       "extCommPktSubtypeTransIpv4AddressOspfRouteId"},
      {stringValue(BgpExtCommPktSubtypeTransFlowspecRedirectNexthop(0)),
       "extCommPktSubtypeFlowspecRedirectNexthop"},
      {stringValue(BgpExtCommPktSubtypeNonTransOpaque(0)),
       "extCommPktSubtypeNonTransOriginValidationState"},
      {stringValue(BgpExtCommPktSubtypeNonTransOpaque(1)),
       "extCommPktSubtypeNonTransCostCommunity"},
      {stringValue(BgpExtCommIp6PktSubtypeTransIpv6Address(2)), "extCommIp6PktSubtypeRouteTarget"},
      {stringValue(BgpExtCommIp6PktSubtypeTransIpv6Address(0x12)),
       "extCommIp6PktSubtypeInterAreaP2MPNextHop"},
      {stringValue(ExtCommClassification(0)), "extCommClassificationUnSpecified"},
      {stringValue(ExtCommClassification(10)), "extCommClassificationOneBeyondLast"},
      {stringValue(TunnelType(12)), "tunnelTypeVxlanGpe"},
      {stringValue(OriginValidationState(1)), "notFound"},
  };
  for (const auto& [name, expected] : cases) EXPECT_EQ(name, expected);
}

}  // namespace
}  // namespace Routing::Bgp
