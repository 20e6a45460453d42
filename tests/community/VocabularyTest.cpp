#include <gtest/gtest.h>

#include <map>

#include "community/ZoBgpCommunity.h"

namespace Routing::Bgp {
namespace {

// An enumeration: its members in hexadecimal, then the names that are no members.
struct Row {
  std::string_view name;
  const char *members, *others;
  Mox::String (*subtypeString)(unsigned char);
};
template <class E>
constexpr Row row(const char* members, const char* others = "") {
  return {Mox::enumTableOf<E>.qualifiedName(), members, others, &extCommSubtypeString<E>};
}

const Row rows[] = {
    row<BgpExtCommPktType>("0 1 2 3 4 5 6 8 40 41 42 43 44 80 81 82 ",
                           "extCommPktTypeUnknown=100 "),
    row<BgpExtCommPktSubtypeTransTwoOctetAs>(
        "2 3 5 8 9 a 10 ",
        "extCommPktSubtypeNonTransTwoOctetAsLinkBandwidthAny=14 "
        "extCommPktSubtypeTransTwoOctetAsUnknown=100 "),
    row<BgpExtCommPktSubtypeTransIpv4Address>("2 3 5 7 a b c 10 ",
                                              "extCommPktSubtypeTransIpv4AddressUnknown=100 "),
    row<BgpExtCommPktSubtypeTransFourOctetAs>("2 3 4 5 8 9 10 ",
                                              "extCommPktSubtypeTransFourOctetAsUnknown=100 "),
    row<BgpExtCommPktSubtypeTransOpaque>("1 3 6 b c d ", "extCommPktSubtypeTransOpaqeUnknown=100 "),
    row<BgpExtCommPktSubtypeEvpn>("0 1 2 3 4 ", "extCommPktSubtypeEvpnUnknown=100 "),
    row<BgpExtCommPktSubtypeTransFlowspecRedirectNexthop>(
        "0 ", "extCommPktSubtypeFlowspecRedirectUnknown=100 "),
    row<BgpExtCommPktSubtypeTransGeneric>("6 7 8 9 a b ",
                                          "extCommPktSubtypeTransGenericUnknown=100 "),
    row<BgpExtCommPktSubtypeTransGenericPart2>("8 ",
                                               "extCommPktSubtypeTransGenericPart2Unknown=100 "),
    row<BgpExtCommPktSubtypeTransGenericPart3>("8 ",
                                               "extCommPktSubtypeTransGenericPart3Unknown=100 "),
    row<BgpExtCommPktSubtypeNonTransTwoOctetAs>("4 80 ",
                                                "extCommPktSubtypeNonTransTwoOctetAsUnknown=100 "),
    row<BgpExtCommPktSubtypeNonTransIpv4Address>(
        "", "extCommPktSubtypeNonTransIpv4AddressUnknown=100 "),
    row<BgpExtCommPktSubtypeNonTransFourOctetAs>("4 ",
                                                 "extCommPktSubNonTransFourOctetAsUnknown=100 "),
    row<BgpExtCommPktSubtypeNonTransOpaque>("0 1 ", "extCommPktSubtypeNonTransOpaqueUnknown=100 "),
    row<BgpExtCommIp6PktType>("0 40 ", "extCommIp6PktTypeUnknown=100 "),
    row<BgpExtCommIp6PktSubtypeTransIpv6Address>(
        "2 3 4 b c 10 11 12 ", "extCommIp6PktSubtypeTransIpv6AddressUnknown=100 "),
    row<BgpExtCommIp6PktSubtypeNonTransIpv6Address>(
        "", "extCommIp6PktSubtypeNonTransIpv6AddressUnknown=100 "),
    row<ExtCommClassification>("0 1 2 3 4 5 6 7 8 9 a "),
    row<TunnelType>("1 2 7 8 9 a b c "),
    row<OriginValidationState>("0 1 2 "),
};

TEST(Vocabulary, MembersAndOthersOfEveryEnumeration) {
  const auto hex = [](U64 number) {
    char text[20];
    return Mox::String(text, std::to_chars(text, std::end(text), number, 16).ptr);
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    const Mox::Type* type = Mox::Type::find(row.name);
    ASSERT_TRUE(type);
    std::map<U64, Mox::String> members;
    Mox::String numbers, others;
    for (const auto& [name, value, member] : type->enumerators())
      member ? void(members[value] = name) : void(others += name + "=" + hex(value) + " ");
    for (const auto& [value, name] : members) numbers += hex(value) + " ";
    EXPECT_EQ(numbers, row.members);
    EXPECT_EQ(others, row.others);
    for (U32 octet = 0; octet < 256; ++octet)
      EXPECT_EQ(row.subtypeString(U8(octet)),
                members.contains(octet) ? members[octet] : "subtype=" + std::to_string(octet));
  }
}

}  // namespace
}  // namespace Routing::Bgp
