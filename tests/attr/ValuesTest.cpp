// The vocabulary of path attributes and their compact values.
#include "attr/ZoBgpMiscTypes.h"

#include <gtest/gtest.h>

#include <functional>

#include "Mox/Exception.h"
#include "attr/BgpPathAttributeEnums.h"

namespace Routing::Bgp {
namespace {

TEST(PathAttributeEnums, HaveExactlyTheseMembersAndShowStrings) {
  std::string members, shown;
  for (const char* const name : {"BgpPathAttrType", "BgpPathAttrFlag", "PrefixSidTlvType"}) {
    const Mox::Type* const type = Mox::Type::find(std::string("Routing::Bgp::") + name);
    ASSERT_TRUE(type) << name;
    for (const Mox::Enumerator& e : type->enumerators())
      members += std::to_string(e.value) + '=' + e.name + ' ';
  }
  for (U32 code = 0; code <= 300; ++code)
    if (bgpIsValidEnumMember(BgpPathAttrType(code)))
      shown += bgpPathAttrTypeShowString(BgpPathAttrType(code)) + std::string(", ");
  EXPECT_EQ(members,
            "0=invalidPathAttr 1=origin 2=asPath 3=nextHop 4=multiExitDisc 5=localPref "
            "6=atomicAggregate 7=aggregator 8=community 9=originatorId 10=clusterList "
            "12=advertiser 13=rcidPath 14=mpReachNlri 15=mpUnreachNlri 16=extCommunity 17=as4Path "
            "18=as4Aggregator 22=pmsiTunnel 23=tunnelEncapsulation 25=extCommunityIp6 "
            "32=largeCommunity 40=prefixSid 255=reservedForDevelopment "
            "128=opt 64=transitive 32=partial 16=extLen 192=optionalTransitive "
            "224=optionalTransitivePartial "
            "0=invalidTlv 1=labelIndexTlv 2=ipv6SidTlv 3=originatorSrgbTlv ");
  EXPECT_EQ(shown,
            "Invalid Path Attribute, Origin, AS Path, Nexthop, MED, Local Preference, Atomic "
            "Aggregator, Aggregator, Community, Originator ID, Cluster List, Advertiser, RCID "
            "Path, MP Reach NLRI, MP Unreach NLRI, Extended Community, AS4 Path, AS4 Aggregator, "
            "PMSI Tunnel, Tunnel Encapsulation, IPv6 Address Specific Extended Community, Large "
            "Community, BGP Prefix-SID, Reserved for Development, ");
  EXPECT_DEATH(bgpPathAttrTypeShowString(BgpPathAttrType(11)),
               "BgpPathAttributeEnums.*: Unknown BgpPathAttrType\n");
}

/// The message of what `act` raises, behind its kind.
std::string raised(const std::function<void()>& act) try {
  act();
  return "nothing";
} catch (const Mox::RangeException& error) {
  return std::string("range: ") + error.what();
} catch (const Mox::NotDeletableException& error) {
  return std::string("not deletable: ") + error.what();
}

/// Bounds that exclude 0 at one end and the top bit at the other.
struct Wide : BgpMaybeU63 {
  using BgpMaybeU63::numberIs;
  U64 min() const override { return 1; }
  U64 max() const override { return ~0ULL; }
  U64 bestpathCompareUnspecifiedValue() const override { return 100; }
};

TEST(BgpMaybeU63, KeepsNoNumberThatItsBoundsRefuse) {
  const std::string outOfBounds = "range: value < min or > max not allowed";
  for (const U64 number : {0ULL, 2ULL, 255ULL, 256ULL, 1ULL << 32, 1ULL << 63, ~0ULL}) {
    const bool kept = number < 256;
    const std::string text = kept ? std::to_string(number) : "-";
    BgpExtCommPktSubtype subtype(7), read;
    EXPECT_EQ(raised([&] { subtype.valueIs(number); }), kept ? "nothing" : outOfBounds) << number;
    EXPECT_EQ(valueToStrep(subtype), text);
    EXPECT_EQ(subtype.bestpathCompareValue(), kept ? U64(subtype) : 0);
    if (number >> 63) continue;
    sequenceToValue(std::to_string(number), read);  // does not look at the bounds
    EXPECT_EQ(raised([&] { read.checkValue(); }), kept ? "nothing" : outOfBounds) << number;
    EXPECT_EQ(valueToStrep(read), text);
  }
  Wide wide;
  for (const U64 refused : {0ULL, 1ULL << 63})
    EXPECT_EQ(raised([&] { wide.numberIs(refused); }), outOfBounds) << refused;
  EXPECT_EQ(wide.bestpathCompareValue(), 100u);
  wide.numberIs(~0ULL >> 1);
  EXPECT_EQ(wide.bestpathCompareValue(), ~0ULL >> 1);
  EXPECT_DEATH(BgpMaybeU63().operator U64(),
               "ZoBgpMiscTypes.*: Caller must check isUnspecified\\(\\) before getting value");
}

TEST(BgpDenseU32Attr, ViewsOneWordInThreeWays) {
  BgpDenseU32Attr word;
  word.valueU16Is(1, 0xFEDC);
  word.valueU8Is(1, 0xAB);
  word.valueBoolIs(0, true);
  word.valueBoolIs(15, false);
  word.valueU8Is(3, 0x80);
  EXPECT_EQ(word.value(), 0x80DC2B01u);
  for (U8 i = 0; i < 16; ++i) EXPECT_EQ(word.valueBool(i), (0x2B01 >> i & 1) == 1);
  for (U8 i = 0; i < 4; ++i) EXPECT_EQ(word.valueU8(i), U8(0x80DC2B01 >> 8 * i));
  for (U8 i = 0; i < 2; ++i) EXPECT_EQ(word.valueU16(i), U16(0x80DC2B01 >> 16 * i));
}

TEST(BgpDenseU32Attr, RefusesByTheNameOfTheOperation) {
  using Word = BgpDenseU32Attr;
  const std::pair<void (*)(Word&), const char*> refused[] = {
      {[](Word& word) { word.valueBool(16); }, "range: BgpDenseU32Attr::valueBool"},
      {[](Word& word) { word.valueBoolIs(16, true); }, "range: BgpDenseU32Attr::valueBoolIs"},
      {[](Word& word) { word.valueU8(4); }, "range: BgpDenseU32Attr::valueU8"},
      {[](Word& word) { word.valueU8Is(255, 1); }, "range: BgpDenseU32Attr::valueU8Is"},
      {[](Word& word) { word.valueU16(2); }, "range: BgpDenseU32Attr::valueU16"},
      {[](Word& word) { word.valueU16Is(2, 1); }, "range: BgpDenseU32Attr::valueU16Is"},
      {[](Word& word) { word.valueBoolDel(0); }, "not deletable: BgpDenseU32Attr::valueBoolDel"},
      {[](Word& word) { word.valueU8Del(9); }, "not deletable: BgpDenseU32Attr::valueU8Del"},
      {[](Word& word) { word.valueU16Del(1); }, "not deletable: BgpDenseU32Attr::valueU16Del"},
  };
  BgpDenseU32Attr word(0x80002B01);
  for (const auto& [act, text] : refused) EXPECT_EQ(raised([&] { act(word); }), text);
  EXPECT_EQ(word.value(), 0x80002B01u);
}

}  // namespace
}  // namespace Routing::Bgp
