#include "ip6/ExtCommIp6.h"

#include <gtest/gtest.h>

#include <sstream>

namespace Routing::Bgp {
namespace {

using Mox::String;

Zonet::Ip6Addr address(std::string_view text) {
  Zonet::Ip6Addr address;
  sequenceToValue(text, address);
  return address;
}

const Zonet::Ip6Addr documentation = address("2001:db8::1");

// The same content as an object of the plain class and of the one with a subtype.
ExtCommIp6::PtrConst plain(const ExtCommIp6Content& content) {
  return extCommIp6Factory(extCommClassificationUnSpecified, content);
}
ExtCommIp6::PtrConst subtyped(const ExtCommIp6Content& content) {
  return Mox::makeNew<ExtCommIp6Subtyped>(extCommClassificationRouteTarget, content);
}

TEST(ExtCommIp6, HashesAndComparesFieldByField) {
  // Computed by an independent program.
  EXPECT_EQ(ExtCommIp6Content(0x00, 0x02, documentation, 100).hash(), 0x96c28a85u);
  EXPECT_EQ(ExtCommIp6Content(0x00, 0x02, documentation, 0x0102).hash(), 0x041a4f0au);
  EXPECT_EQ(ExtCommIp6Content(0x40, 0xff, documentation, 0x0102).hash(), 0x9b06c0b0u);
  const ExtCommIp6Content ascending[] = {
      {0x00, 0x02, address("::"), 1},  {0x00, 0x02, address("::"), 0x0100},
      {0x00, 0x02, address("::1"), 0}, {0x00, 0x02, address("1::"), 0},
      {0x00, 0xff, address("::"), 0},  {0x80, 0x00, address("::"), 0xffff}};
  for (const auto& a : ascending)
    for (const auto& b : ascending) {
      EXPECT_EQ(a <=> b, &a <=> &b);
      EXPECT_EQ(plain(a)->compare(subtyped(b).get()), &a == &b);
      EXPECT_EQ(plain(a)->compareByContent({&b, 20}), &a == &b);
    }
}

TEST(ExtCommIp6Content, IsTextWithTwoRawOctets) {
  const String text{"type=\0;subtype=\2;addr=2001:db8::1;localAdmin=100", 48};
  std::ostringstream stream;
  stream << std::hex << std::showbase << ExtCommIp6Content(0x00, 0x02, documentation, 100);
  EXPECT_EQ(stream.str(), text);
  for (U32 octet = 0; octet < 256; ++octet) {
    const ExtCommIp6Content any(U8(octet), U8(255 - octet), documentation, U16(octet * 257));
    ExtCommIp6Content read;
    sequenceToValue(valueToStrep(any), read);
    EXPECT_EQ(read, any) << octet;
  }
}

TEST(ExtCommIp6Content, RefusesOtherTextAndSaysWhere) {
  const String good = "type=a;subtype=b;addr=::;localAdmin=";
  std::vector<std::pair<String, std::size_t>> cases = {
      {"type=a;Su", 7},
      {good + "12 ", 38},
      {good + "-1", 36},
      {"type=a;subtype=b;addr=zz" + good.substr(24), 22}};
  for (std::size_t cut = 0; cut <= good.size(); ++cut) cases.push_back({good.substr(0, cut), cut});
  const ExtCommIp6Content unchanged(1, 2, documentation, 3);
  ExtCommIp6Content content = unchanged;
  for (const auto& [text, offset] : cases) try {
      sequenceToValue(text, content);
      ADD_FAILURE() << text;
    } catch (const Mox::ParseException& error) {
      EXPECT_EQ(error.offset(), offset) << text;
    }
  for (const char* number : {"65536", "4294967296"})
    EXPECT_THROW(sequenceToValue(good + number, content), Mox::RangeException);
  EXPECT_EQ(content, unchanged);
}

TEST(ExtCommIp6, Texts) {
  const struct {
    ExtCommIp6::PtrConst (*make)(const ExtCommIp6Content&);
    U8 type, subtype;
    const char *showType, *showSubtype, *inFull;
  } cases[] = {
      {subtyped, 0x00, 0x02, "TransIpv6Address", " extCommIp6PktSubtypeRouteTarget", "0002-IP6:"},
      {subtyped, 0x00, 18, "TransIpv6Address", " extCommIp6PktSubtypeInterAreaP2MPNextHop",
       "0012-IP6:"},
      {subtyped, 0x40, 0x02, "NonTransIpv6Address", " subtype=2", "0002-IP6(NT):"},
      {subtyped, 0x00, 99, "TransIpv6Address", " subtype=99", "0063-IP6:"},
      {subtyped, 0x01, 0x02, "Unknown", " none", "0102-IP6:"},
      {plain, 0x00, 0x02, "TransIpv6Address", "", "0002-IP6:"},
      {plain, 0xff, 0xff, "Unknown", "", "bfff-IP6(NT):"}};
  for (const auto& c : cases) {
    const auto comm = c.make({c.type, c.subtype, documentation, 100});
    const String show = String("<extCommIp6PktType") + c.showType + c.showSubtype +
                        " addr=2001:db8::1 localAdmin=100>";
    std::ostringstream stream, subtype;
    stream << std::hex << std::showbase << comm << *comm << ExtCommIp6::PtrConst();
    EXPECT_EQ(stream.str(), show + show + "NULL");
    comm->formatSubtype(subtype);
    EXPECT_EQ(' ' + subtype.str(), *c.showSubtype ? c.showSubtype : " unspecified");
    for (U32 flags = 0; flags <= 0x3f; ++flags)
      EXPECT_EQ(comm->toStrepForPolicy(ExtCommIp6::StrepFormat(flags)),
                ((flags & 0x0c) == 0x0c ? c.inFull : String()) + "2001:db8::1:100");
  }
}

TEST(ExtCommIp6DeathTest, NamesSubtypesOfItsOwnTypeOnly) {
  const ExtCommIp6Content trans(0x00, 0x12, documentation, 0), nonTrans(0x40, 2, documentation, 0);
  EXPECT_EQ(subtyped(nonTrans)->pktSubtypeNonTransIpv6AddressAsString(), "subtype=2");
  EXPECT_DEATH(plain(nonTrans)->pktSubtypeTransIpv6AddressAsString(),
               "ExtCommIp6.*: extCommIp6PktTypeTransIpv6Address_ == pktType\\(\\)");
  EXPECT_DEATH(plain(trans)->pktSubtypeNonTransIpv6AddressAsString(),
               "ExtCommIp6.*: extCommIp6PktTypeNonTransIpv6Address_ == pktType\\(\\)");
  EXPECT_DEATH(plain(trans)->pktSubtypeTransIpv6AddressAsString(),
               ": !pktSubtype\\(\\).isUnspecified\\(\\)");
}

}  // namespace
}  // namespace Routing::Bgp
