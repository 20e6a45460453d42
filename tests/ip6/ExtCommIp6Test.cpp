#include "ip6/ExtCommIp6.h"

#include <gmock/gmock.h>

#include "ip6/ExtCommIp6ListDedupTable.h"
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
  const ExtCommIp6Content ascending[] = {{0x00, 0x02, {}, 1},
                                         {0x00, 0x02, {}, 0x0100},
                                         {0x00, 0x02, documentation, 0},
                                         {0x00, 0x02, Zonet::Ip6Addr({0x20, 2}), 0},
                                         {0x00, 0xff, {}, 0},
                                         {0x80, 0x00, {}, 0xffff}};
  for (const auto& a : ascending)
    for (const auto& b : ascending) {
      EXPECT_EQ(a <=> b, &a <=> &b);
      EXPECT_EQ(plain(a)->compare(subtyped(b).get()), &a == &b);
      EXPECT_EQ(plain(a)->compareByContent({&b, 20}), &a == &b);
    }
}

TEST(ExtCommIp6Content, IsTextWithTwoRawOctetsAndNoOtherText) {
  ExtCommIp6Content read;
  const auto reading = [&](String text) { return [&read, text] { sequenceToValue(text, read); }; };
  const auto stopsAt = [](std::size_t offset) {
    return testing::Throws<Mox::ParseException>(
        testing::Property(&Mox::ParseException::offset, offset));
  };
  for (U32 octet = 0; octet < 256; ++octet) {
    SCOPED_TRACE(octet);
    const ExtCommIp6Content any(U8(octet), U8(255 - octet), documentation, U16(octet * 257));
    const String address =
        String("type=") + char(octet) + ";subtype=" + char(255 - octet) + ";addr=";
    const String number = address + "2001:db8::1;localAdmin=";
    expectText(any, number + std::to_string(octet * 257));
    for (std::size_t cut = 0; cut <= number.size(); ++cut)
      ASSERT_THAT(reading(number.substr(0, cut)), stopsAt(cut));
    ASSERT_THAT(reading("type=a;Su"), stopsAt(7));
    ASSERT_THAT(reading(address + "zz;localAdmin=0"), stopsAt(address.size()));
    ASSERT_THAT(reading(number + "-1"), stopsAt(number.size()));
    for (const char* tooLarge : {"65536", "4294967296"})
      ASSERT_THROW(reading(number + tooLarge)(), Mox::RangeException);
    ASSERT_EQ(read, ExtCommIp6Content());
  }
}

TEST(ExtCommIp6, Texts) {
  const struct {
    ExtCommIp6::PtrConst (*make)(const ExtCommIp6Content&);
    U8 type, subtype;
    const char *showType, *showSubtype, *inFull;
  } cases[] = {
      {subtyped, 0x00, 0x02, "TransIpv6Address", " extCommIp6PktSubtypeRouteTarget", "0002-IP6:"},
      {subtyped, 0x40, 0x02, "NonTransIpv6Address", " subtype=2", "0002-IP6(NT):"},
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

  const ExtCommIp6Content trans(0x00, 0x12, documentation, 0), nonTrans(0x40, 2, documentation, 0);
  EXPECT_EQ(subtyped(trans)->pktSubtypeTransIpv6AddressAsString(),
            "extCommIp6PktSubtypeInterAreaP2MPNextHop");
  EXPECT_EQ(subtyped(nonTrans)->pktSubtypeNonTransIpv6AddressAsString(), "subtype=2");
  EXPECT_DEATH(plain(trans)->pktSubtypeNonTransIpv6AddressAsString(),
               "ExtCommIp6.*: extCommIp6PktTypeNonTransIpv6Address_ == pktType\\(\\)");
  EXPECT_DEATH(plain(trans)->pktSubtypeTransIpv6AddressAsString(),
               ": !pktSubtype\\(\\).isUnspecified\\(\\)");
}

TEST(ExtCommIp6List, IsFrozenOnceATableHasIt) {
  const auto list = extCommIp6ListFactory();
  EXPECT_EQ(list->dedup(extCommIp6ListDedupTableFactory()), list);
  EXPECT_DEATH(list->commVectorRawPtrNonConst(),
               "dedupState\\(\\) == Orv::dedupHandleStateNeverDeduped\\(\\)");
}

}  // namespace
}  // namespace Routing::Bgp
