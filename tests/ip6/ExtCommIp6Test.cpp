#include "ip6/ExtCommIp6.h"

#include <gmock/gmock.h>

#include "tests/Texts.h"

namespace Routing::Bgp {
namespace {

using Mox::String;

const Zonet::Ip6Addr documentation({0x20, 1, 0xd, 0xb8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1});

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
  EXPECT_EQ(ExtCommIp6Content(0x40, 0xff, documentation, 0x0102).hash(), 0x9b06c0b0u);
  const ExtCommIp6Content ascending[] = {// clang-format off
      {0x00, 0x02, {}, 1}, {0x00, 0x02, {}, 0x0100}, {0x00, 0x02, documentation, 0},
      {0x00, 0x02, Zonet::Ip6Addr({0x20, 2}), 0}, {0x00, 0xff, {}, 0}, {0x80, 0x00, {}, 0xffff}};
  // clang-format on
  for (const auto& a : ascending)
    for (const auto& b : ascending) {
      EXPECT_EQ(a <=> b, &a <=> &b);
      EXPECT_EQ(plain(a)->compare(subtyped(b).get()), &a == &b);
      EXPECT_EQ(plain(a)->compareByContent({&b, 20}), &a == &b);
    }
}

TEST(ExtCommIp6Content, IsTextWithTwoRawOctetsAndNoOtherText) {
  ExtCommIp6Content read;
  const auto expectStop = [&](const String& text, std::size_t offset) {
    ASSERT_THAT([&] { sequenceToValue(text, read); },
                testing::Throws<Mox::ParseException>(
                    testing::Property(&Mox::ParseException::offset, offset)));
  };
  for (U32 octet = 0; octet < 256; ++octet) {
    SCOPED_TRACE(octet);
    const ExtCommIp6Content any(U8(octet), U8(255 - octet), documentation, U16(octet * 257));
    const String address =
        String("type=") + char(octet) + ";subtype=" + char(255 - octet) + ";addr=";
    const String number = address + "2001:db8::1;localAdmin=";
    expectText(any, number + std::to_string(octet * 257));
    for (std::size_t cut = 0; cut <= number.size(); ++cut) expectStop(number.substr(0, cut), cut);
    expectStop("type=a;Su", 7);
    expectStop(address + "zz;localAdmin=0", address.size());
    expectStop(number + "-1", number.size());
    for (const char* tooLarge : {"65536", "4294967296"})
      ASSERT_THROW(sequenceToValue(number + tooLarge, read), Mox::RangeException);
    ASSERT_EQ(read, ExtCommIp6Content());
  }
}

TEST(ExtCommIp6, Texts) {
  const std::tuple<decltype(&plain), U8, U8, const char*, const char*, const char*> cases[] = {
      {subtyped, 0x00, 0x02, "TransIpv6Address", " extCommIp6PktSubtypeRouteTarget", "0002-IP6:"},
      {subtyped, 0x40, 0x02, "NonTransIpv6Address", " subtype=2", "0002-IP6(NT):"},
      {subtyped, 0x01, 0x02, "Unknown", " none", "0102-IP6:"},
      {plain, 0x00, 0x02, "TransIpv6Address", "", "0002-IP6:"},
      {plain, 0xff, 0xff, "Unknown", "", "bfff-IP6(NT):"}};
  for (const auto& [make, type, subtype, showType, showSubtype, inFull] : cases) {
    const auto comm = make({type, subtype, documentation, 100});
    const String show =
        String("<extCommIp6PktType") + showType + showSubtype + " addr=2001:db8::1 localAdmin=100>";
    std::ostringstream stream, ofSubtype;
    stream << std::hex << std::showbase << comm << *comm << ExtCommIp6::PtrConst();
    EXPECT_EQ(stream.str(), show + show + "NULL");
    comm->formatSubtype(ofSubtype);
    EXPECT_EQ(' ' + ofSubtype.str(), *showSubtype ? showSubtype : " unspecified");
    for (U32 flags = 0; flags <= 0x3f; ++flags)
      EXPECT_EQ(comm->toStrepForPolicy(ExtCommIp6::StrepFormat(flags)),
                ((flags & 0x0c) == 0x0c ? inFull : String()) + "2001:db8::1:100");
  }

  const ExtCommIp6Content trans(0x00, 0x12, documentation, 0), nonTrans(0x40, 2, documentation, 0);
  EXPECT_EQ(subtyped(trans)->pktSubtypeTransIpv6AddressAsString(),
            "extCommIp6PktSubtypeInterAreaP2MPNextHop");
  EXPECT_EQ(subtyped(nonTrans)->pktSubtypeNonTransIpv6AddressAsString(), "subtype=2");
  EXPECT_DEATH(plain(trans)->pktSubtypeNonTransIpv6AddressAsString(),
               "ExtCommIp6.*: extCommIp6PktTypeNonTransIpv6Address_ == pktType\\(\\)");
  EXPECT_DEATH(plain(trans)->pktSubtypeTransIpv6AddressAsString(),
               ": !pktSubtype\\(\\).isUnspecified\\(\\)");
}

}  // namespace
}  // namespace Routing::Bgp
