#include <gtest/gtest.h>

#include <random>

#include "tests/community/ExtCommClasses.h"

namespace Routing::Bgp {
namespace {

Mox::String printed(const char* format, auto... arguments) {
  char text[100];
  std::snprintf(text, sizeof text, format, arguments...);
  return text;
}

TEST(ExtCommContent, Hashes) {
  const std::pair<U64, U32> cases[] = {
      {0, 0}, {1, 0x98adb391}, {0x0002FDE800000064, 0xbfac65dc}, {0x0202000100640001, 0x065a557b}};
  for (const auto& [content, hash] : cases) EXPECT_EQ(ExtCommContent(content).hash(), hash);
}

TEST(ExtCommContent, IsStoredInDecimalAndOrderedUnsigned) {
  for (const U64 number : {0ULL, 0x0002FDE800000064ULL, 0x8000000000000000ULL, ~0ULL}) {
    ExtCommContent read(7);
    sequenceToValue(std::to_string(number), read);
    EXPECT_EQ(read, ExtCommContent(number));
    EXPECT_EQ(valueToStrep(read), std::to_string(number));
  }
  EXPECT_EQ(valueToStrep(ExtCommContent(0x0002FDE800000064)), "842122827661412");
  ExtCommContent content(7);
  for (const char* text : {"", "0x1", "-1", "18446744073709551616"})
    EXPECT_THROW(sequenceToValue(text, content), Mox::Exception) << text;
  EXPECT_EQ(content, ExtCommContent(7));
  EXPECT_LT(ExtCommContent(0x7FFFFFFFFFFFFFFF), ExtCommContent(0x8000000000000000));
  EXPECT_LT(ExtCommContent(0x00000000FFFFFFFF), ExtCommContent(0x0000000100000000));
}

// What holds of every object, whatever its class, its type and its subtype.
void check(Kind kind, U64 number, U64 otherNumber, U32 flags) {
  const ExtCommClass& c = classes[kind];
  const ExtCommContent content(number);
  const U32 type = U32(number >> 56), subtype = U32(number >> 48 & 0xFF);
  const ExtComm::Ptr comm = c.make(content);
  ASSERT_EQ(comm->getContent(), content);
  ASSERT_EQ(comm->hash(), content.hash());
  ASSERT_EQ(comm->classification(), ExtCommClassification(c.classification));
  ASSERT_EQ(comm->fwkType().name(), Mox::String("Routing::Bgp::") + c.name);
  ASSERT_EQ(comm->transitive(), (type & 0x40) == 0);
  const bool member = type < 7 || type == 8 || (type - 0x40 < 5) || (type - 0x80 < 3);
  ASSERT_EQ(comm->pktType(), member ? type : 256);
  comm->pktSubtypeIs(BgpExtCommPktSubtype(3));  // does nothing
  ASSERT_EQ(comm->pktSubtype().toStrep(), kind == plain ? "-" : std::to_string(subtype));

  // Equality is that of the contents, across classes and classifications.
  ASSERT_TRUE(comm->compare(classes[color].make(content).get()));
  ASSERT_FALSE(comm->compare(c.make(ExtCommContent(otherNumber)).get()));
  ASSERT_TRUE(comm->compareByContent({&number, sizeof number}));
  ASSERT_FALSE(comm->compareByContent({&number, sizeof number - 1}));
  ASSERT_FALSE(comm->compareByContent({&otherNumber, sizeof otherNumber}));

  const Mox::String policy = comm->toStrepForPolicy(ExtComm::StrepFormat(flags));
  const Mox::String octets =
      printed("%02x%02x%s:0x%02x 0x%02x 0x%02x 0x%02x 0x%02x 0x%02x", type & 0xBF, subtype,
              type & 0x40 ? "(NT)" : "", U8(number >> 40), U8(number >> 32), U8(number >> 24),
              U8(number >> 16), U8(number >> 8), U8(number));
  if (kind <= subtyped) {
    ASSERT_EQ(policy, (flags & 0x0c) == 0x0c ? octets : "");
  }
  const bool routeAs = kind == rtAs2 || kind == rtAs4 || kind == soAs2 || kind == soAs4;
  if (routeAs && type != 0x00 && type != 0x02) return;  // their show text asserts
  const Mox::String show = comm->toStrep();
  ASSERT_TRUE(show.starts_with("<"));
  ASSERT_TRUE(show.ends_with(number ? printed(" 0x%016llx>", number) : " 000000000000000000>"));
}

TEST(ExtComm, AnyTypeAndSubtypeOfAnyClass) {
  std::mt19937_64 random(4360);
  for (U64 typeAndSubtype = 0; typeAndSubtype < 65536; ++typeAndSubtype)
    for (U32 kind = plain; kind <= gateway; ++kind) {
      const U64 number = typeAndSubtype << 48 | random() >> 16, bit = 1ULL << random() % 64;
      ASSERT_NO_FATAL_FAILURE(check(Kind(kind), number, number ^ bit, U32(random() % 64)))
          << classes[kind].name << printed(" 0x%016llx", number);
    }
}

// Each operation names subtypes of its own type, and of no other.
TEST(ExtComm, NamesSubtypesByType) {
  using X = ExtComm;
  const std::tuple<U64, Mox::String (X::*)() const, const char*> cases[] = {
      {0x0003, &X::pktSubtypeTransTwoOctetAsString, "TransTwoOctetAsRouteOrigin"},
      {0x010c, &X::pktSubtypeTransIpv4AddressString, "TransIpv4AddressFlowspecRedirectIp"},
      {0x0204, &X::pktSubtypeTransFourOctetAsString, "TransFourOctetAsGeneric"},
      {0x030d, &X::pktSubtypeTransOpaqueString, "TransOpaqueDefaultGateway"},
      {0x0603, &X::pktSubtypeEvpnString, "EvpnRouterMac"},
      {0x0800, &X::pktSubtypeFlowspecRedirectNexthopString, "FlowspecRedirectNexthop"},
      {0x800b, &X::pktSubtypeTransGenericString, "TransGenericEtreeInfo"},
      {0x8108, &X::pktSubtypeTransGenericPart2String, "TransGenericPart2FlowspecRedirectIpv4"},
      {0x8208, &X::pktSubtypeTransGenericPart3String, "TransGenericPart3FlowspecRedirectAs4Byte"},
      {0x4004, &X::pktSubtypeNonTransTwoOctetAsString, "NonTransTwoOctetAsLinkBandwidth"},
      {0x4102, &X::pktSubtypeNonTransIpv4AddressString, nullptr},
      {0x4204, &X::pktSubtypeNonTransFourOctetAsString, "NonTransFourOctetAsGeneric"},
      {0x4300, &X::pktSubtypeNonTransOpaqueString, "NonTransOriginValidationState"},
  };
  for (const auto& [typeAndSubtype, operation, name] : cases) {
    const ExtCommContent content(typeAndSubtype << 48);
    EXPECT_EQ((*classes[subtyped].make(content).*operation)(),
              name ? Mox::String("extCommPktSubtype") + name : "subtype=2");
    EXPECT_DEATH((*classes[subtyped].make(ExtCommContent(0x44ULL << 56)).*operation)(),
                 "_ == pktType\\(\\)");
    EXPECT_DEATH((*classes[plain].make(content).*operation)(),
                 "!pktSubtype\\(\\).isUnspecified\\(\\)");
  }
  const auto evpn = classes[plain].make(ExtCommContent(0x0600000000000000));
  EXPECT_DEATH(evpn->pktSubtypeTransGenericString(),
               "extCommPktTypeTransGeneric_ == pktType\\(\\)");
  for (const Kind kind : {rtAs2, soAs4})
    EXPECT_DEATH(classes[kind].make(ExtCommContent(0x4202000100640001))->toStrep(),
                 "0 && \"unexpected type\"");
}

}  // namespace
}  // namespace Routing::Bgp
