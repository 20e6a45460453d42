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
  for (const U64 number : {0ULL, 820131242901604ULL, 0x8000000000000000ULL, ~0ULL}) {
    ExtCommContent read(7);
    sequenceToValue(std::to_string(number), read);
    EXPECT_EQ(read, ExtCommContent(number));
    EXPECT_EQ(valueToStrep(read), std::to_string(number));
  }
  ExtCommContent content(7);
  for (const char* text : {"", "0x1", "-1", "18446744073709551616"})
    EXPECT_THROW(sequenceToValue(text, content), Mox::Exception) << text;
  EXPECT_EQ(content, ExtCommContent(7));
  EXPECT_LT(ExtCommContent(0x7FFFFFFFFFFFFFFF), ExtCommContent(0x8000000000000000));
  EXPECT_LT(ExtCommContent(0x00000000FFFFFFFF), ExtCommContent(0x0000000100000000));
}

// What holds of every object, whatever its class, its type and its subtype.
void check(const ExtCommClass& c, U64 number, U64 other, U32 flags) {
  const ExtCommContent content(number);
  const U32 type = U32(number >> 56), subtype = U32(number >> 48 & 0xFF);
  const ExtComm::PtrConst comm = c.make(content);
  ASSERT_EQ(comm->getContent(), content);
  ASSERT_EQ(comm->hash(), content.hash());
  ASSERT_EQ(comm->classification(), ExtCommClassification(c.classification));
  ASSERT_EQ(comm->fwkType().name(), Mox::String("Routing::Bgp::") + c.name);
  ASSERT_EQ(comm->transitive(), (type & 0x40) == 0);
  const bool member = type < 7 || type == 8 || (type - 0x40 < 5) || (type - 0x80 < 3);
  ASSERT_EQ(comm->pktType(), member ? type : 256);
  const bool hasSubtype = c.make != classes[plain].make;
  ASSERT_EQ(comm->pktSubtype().toStrep(), hasSubtype ? std::to_string(subtype) : "-");

  // Equality is that of the contents, across classes and classifications.
  const U64 otherContent = number ^ other;
  const ExtComm::PtrConst same = classes[color].make(content);
  const ExtComm::PtrConst different = c.make(ExtCommContent(otherContent));
  ASSERT_TRUE(comm->compare(same.get()));
  ASSERT_FALSE(comm->compare(different.get()));
  ASSERT_TRUE(comm->compareByContent({&number, sizeof number}));
  ASSERT_FALSE(comm->compareByContent({&otherContent, sizeof otherContent}));

  const Mox::String base =
      printed("%02x%02x%s:0x%02x 0x%02x 0x%02x 0x%02x 0x%02x 0x%02x", type & 0xBF, subtype,
              type & 0x40 ? "(NT)" : "", U8(number >> 40), U8(number >> 32), U8(number >> 24),
              U8(number >> 16), U8(number >> 8), U8(number));
  const Mox::String policy = comm->toStrepForPolicy(ExtComm::StrepFormat(flags));
  if (c.make == classes[plain].make || c.make == classes[subtyped].make) {
    ASSERT_EQ(policy, (flags & 0x0c) == 0x0c ? base : "");
  }
  const bool routeAs = c.make == classes[rtAs2].make || c.make == classes[rtAs4].make ||
                       c.make == classes[soAs2].make || c.make == classes[soAs4].make;
  if (routeAs && type != 0x00 && type != 0x02) return;  // their show text asserts
  const Mox::String show = comm->toStrep();
  ASSERT_TRUE(show.starts_with("<"));
  ASSERT_TRUE(show.ends_with(number ? printed(" 0x%016llx>", number) : " 000000000000000000>"));
}

TEST(ExtComm, AnyTypeAndSubtypeOfAnyClass) {
  std::mt19937_64 random(4360);
  for (U64 typeAndSubtype = 0; typeAndSubtype < 65536; ++typeAndSubtype)
    for (const ExtCommClass& c : classes) {
      const U64 number = typeAndSubtype << 48 | random() >> 16;
      ASSERT_NO_FATAL_FAILURE(check(c, number, 1ULL << random() % 64, U32(random() % 64)))
          << c.name << printed(" 0x%016llx", number);
    }
}

TEST(ExtComm, SubtypeIsNeverSet) {
  const auto comm = classes[subtyped].make(ExtCommContent(0x0002FDE800000064));
  comm->pktSubtypeIs(BgpExtCommPktSubtype(3));
  EXPECT_EQ(U64(comm->pktSubtype()), 2u);
}

TEST(ExtCommAsNumber, ReadsBothLayouts) {
  const ExtCommContent content(0x0002ABCD12345678);
  const auto two = ExtCommAsNumber::ExtCommAsNumberIs(extCommClassificationEvpn, content, false);
  const auto four = ExtCommAsNumber::ExtCommAsNumberIs(extCommClassificationEvpn, content, true);
  EXPECT_EQ(two->asNumber(), 0xABCDu);
  EXPECT_EQ(two->localAdmin4Octets(), 0x12345678u);
  EXPECT_EQ(four->asNumber(), 0xABCD1234u);
  EXPECT_EQ(four->localAdmin2Octets(), 0x5678u);
  EXPECT_EQ(four->classification(), extCommClassificationEvpn);
  EXPECT_TRUE(four->hasNotificationActive());
}

// Each operation names subtypes of its own type, and of no other.
TEST(ExtComm, NamesSubtypesByType) {
  using Operation = Mox::String (ExtComm::*)() const;
  const std::tuple<U64, Operation, const char*> cases[] = {
      {0x0003, &ExtComm::pktSubtypeTransTwoOctetAsString,
       "extCommPktSubtypeTransTwoOctetAsRouteOrigin"},
      {0x010c, &ExtComm::pktSubtypeTransIpv4AddressString,
       "extCommPktSubtypeTransIpv4AddressFlowspecRedirectIp"},
      {0x0204, &ExtComm::pktSubtypeTransFourOctetAsString,
       "extCommPktSubtypeTransFourOctetAsGeneric"},
      {0x030d, &ExtComm::pktSubtypeTransOpaqueString, "extCommPktSubtypeTransOpaqueDefaultGateway"},
      {0x0603, &ExtComm::pktSubtypeEvpnString, "extCommPktSubtypeEvpnRouterMac"},
      {0x0800, &ExtComm::pktSubtypeFlowspecRedirectNexthopString,
       "extCommPktSubtypeFlowspecRedirectNexthop"},
      {0x800b, &ExtComm::pktSubtypeTransGenericString, "extCommPktSubtypeTransGenericEtreeInfo"},
      {0x8108, &ExtComm::pktSubtypeTransGenericPart2String,
       "extCommPktSubtypeTransGenericPart2FlowspecRedirectIpv4"},
      {0x8208, &ExtComm::pktSubtypeTransGenericPart3String,
       "extCommPktSubtypeTransGenericPart3FlowspecRedirectAs4Byte"},
      {0x4080, &ExtComm::pktSubtypeNonTransTwoOctetAsString,
       "extCommPktSubtypeNonTransTwoOctetAsVirtualNetworkIdentifier"},
      {0x4102, &ExtComm::pktSubtypeNonTransIpv4AddressString, "subtype=2"},
      {0x4204, &ExtComm::pktSubtypeNonTransFourOctetAsString,
       "extCommPktSubtypeNonTransFourOctetAsGeneric"},
      {0x4301, &ExtComm::pktSubtypeNonTransOpaqueString, "extCommPktSubtypeNonTransCostCommunity"},
  };
  for (const auto& [typeAndSubtype, operation, expected] : cases) {
    const ExtCommContent content(typeAndSubtype << 48);
    EXPECT_EQ((*classes[subtyped].make(content).*operation)(), expected);
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
