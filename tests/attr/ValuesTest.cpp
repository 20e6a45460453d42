// The vocabulary of path attributes, the process-wide switches, and compact values.
#include "attr/ZoBgpMiscTypes.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>

#include "Mox/Exception.h"
#include "attr/BgpPathAttributeEnums.h"
#include "attr/ZoBgpGlobals.h"
#include "tests/ClassShape.h"
#include "tests/Texts.h"

namespace Routing::Bgp {
namespace {

#define MOX_ROWS(X) X(testFruitPear, 9) X(testFruitUnknown, 256, false)
enum TestFruit : U32 { MOX_ROWS(MOX_ENUMERATOR) };
BGP_ENUM_TABLE(TestFruit, MOX_ROWS);
#undef MOX_ROWS

TEST(PathAttributeEnums, HaveExactlyTheseMembersAndShowStrings) {
  std::string members;
  for (const std::string name : {"BgpPathAttrType", "BgpPathAttrFlag", "PrefixSidTlvType"})
    for (const Mox::Enumerator& e : Mox::Type::find("Routing::Bgp::" + name)->enumerators()) {
      members += std::to_string(e.value) + ' ' + e.name;
      if (name == "BgpPathAttrType")
        members += std::string(" (") + bgpPathAttrTypeShowString(BgpPathAttrType(e.value)) + ')';
      members += ", ";
    }
  EXPECT_EQ(members,
            "0 invalidPathAttr (Invalid Path Attribute), 1 origin (Origin), 2 asPath (AS Path), "
            "3 nextHop (Nexthop), 4 multiExitDisc (MED), 5 localPref (Local Preference), "
            "6 atomicAggregate (Atomic Aggregator), 7 aggregator (Aggregator), 8 community "
            "(Community), 9 originatorId (Originator ID), 10 clusterList (Cluster List), 12 "
            "advertiser (Advertiser), 13 rcidPath (RCID Path), 14 mpReachNlri (MP Reach NLRI), 15 "
            "mpUnreachNlri (MP Unreach NLRI), 16 extCommunity (Extended Community), 17 as4Path "
            "(AS4 Path), 18 as4Aggregator (AS4 Aggregator), 22 pmsiTunnel (PMSI Tunnel), 23 "
            "tunnelEncapsulation (Tunnel Encapsulation), 25 extCommunityIp6 (IPv6 Address Specific "
            "Extended Community), 32 largeCommunity (Large Community), 40 prefixSid (BGP "
            "Prefix-SID), 255 reservedForDevelopment (Reserved for Development), "
            "128 opt, 64 transitive, 32 partial, 16 extLen, 192 optionalTransitive, "
            "224 optionalTransitivePartial, "
            "0 invalidTlv, 1 labelIndexTlv, 2 ipv6SidTlv, 3 originatorSrgbTlv, ");
  EXPECT_DEATH(bgpPathAttrTypeShowString(BgpPathAttrType(11)),
               "BgpPathAttributeEnums.*: Unknown BgpPathAttrType\n");
  using enum BgpPathAttrFlag;
  EXPECT_EQ(optionalTransitive | transitive | partial, optionalTransitivePartial);
  EXPECT_TRUE(bgpIsValidEnumMember(testFruitPear) && !bgpIsValidEnumMember(testFruitUnknown));
  EXPECT_EQ(stringValue(TestFruitInstance("testFruitUnknown")), "testFruitUnknown");
  EXPECT_EQ(Mox::enumTableOf<TestFruit>.qualifiedName(), "Routing::Bgp::TestFruit");
}

/// The message of the error that `act` raises, after its class or place.
std::string raised(const std::function<void()>& act) try {
  act();
  return "nothing";
} catch (const Mox::RangeException& error) {
  return std::string("range: ") + error.what();
} catch (const Mox::NotDeletableException& error) {
  return std::string("not deletable: ") + error.what();
} catch (const Mox::ParseException& error) {
  return "at " + std::to_string(error.offset()) + ": " + error.what();
}

/// Sets the variables, or none for null.
void environmentIs(const char* disableMt, const char* disableRxMt) {
  disableMt ? ::setenv("DISABLE_ZOBGP_MT", disableMt, 1) : ::unsetenv("DISABLE_ZOBGP_MT");
  disableRxMt ? ::setenv("DISABLE_ZOBGP_RX_MT", disableRxMt, 1) : ::unsetenv("DISABLE_ZOBGP_RX_MT");
}

TEST(ZoBgpGlobalsDeathTest, FindsEachAnswerInTheEnvironmentWhenItIsFirstAskedFor) {
  bool (*const questions[])() = {ZoBgpGlobals::multiThreaded, ZoBgpGlobals::rxMultiThreaded};
  const char* const settings[] = {nullptr, "", "0"};
  for (int i = 0; i < 18; ++i) {
    const char *const disableMt = settings[i % 3], *const disableRxMt = settings[i / 3 % 3];
    const bool answers[] = {!disableMt, !disableMt && !disableRxMt}, first = i / 9;
    const bool other = disableMt && (first || disableRxMt);  // in the reverse of the environment
    const auto ask = [&] {
      environmentIs(disableMt, disableRxMt);
      const bool answer = questions[first]();
      environmentIs(disableMt ? nullptr : "", disableRxMt ? nullptr : "");
      const bool same = questions[first]() == answer;
      std::exit(4 * answer + 2 * same + questions[!first]());
    };
    EXPECT_EXIT(ask(), testing::ExitedWithCode(4 * answers[first] + 2 + other), "") << i;
  }
  environmentIs(nullptr, "");
  const auto context = Mox::makeNew<Orv::DumpContext>();
  ZoBgpGlobals::dumpState(context, 4);
  EXPECT_EQ(context->text(),
            "    ZoBgp Globals\n       multiThreaded : 1\n       rxMultiThreaded : 0\n"
            "       bribMultiThreaded : 0\n");
  ZoBgpGlobals globals;
  expectText(globals, "");
  EXPECT_EQ(raised([&] { sequenceToValue(" ", globals); }), "at 0: text where none is expected");
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
  expectText<BgpMaybeU63>(wide, "9223372036854775807");
  expectText(BgpMaybeU63(), "-", BgpMaybeU63(wide));
  expectText(BgpExtCommPktSubtype(0), "0", BgpExtCommPktSubtype(255));
  EXPECT_EQ(
      registered(BgpMaybeU63::type, static_cast<BgpMaybeU63*>(&wide)),
      "toStrep=9223372036854775807 isUnspecified=False min=1 max=18446744073709551615 "
      "bestpathCompareValue=9223372036854775807 bestpathCompareUnspecifiedValue=100 checkValue ");
  EXPECT_TRUE(BgpExtCommPktSubtype::type.isA(BgpMaybeU63::type));
  EXPECT_EQ(registered(BgpExtCommPktSubtype::type, nullptr), "valueIs ");
  const BgpMaybeU63 plain;
  EXPECT_TRUE(plain.min() == 1 && plain.max() == 0 && plain.bestpathCompareValue() == 0);
  EXPECT_TRUE(slotOf(&BgpMaybeU63::min) == 1 && slotOf(&BgpMaybeU63::max) == 2 &&
              slotOf(&BgpMaybeU63::bestpathCompareUnspecifiedValue) == 3);
  EXPECT_DEATH(BgpMaybeU63().operator U64(),
               "ZoBgpMiscTypes.*: Caller must check isUnspecified\\(\\) before getting value");
}

TEST(BgpDenseU32Attr, ViewsOneWordInThreeWaysAndRefusesByTheNameOfTheOperation) {
  using Word = BgpDenseU32Attr;
  Word word;
  word.valueU16Is(1, 0xFEDC);
  word.valueU8Is(1, 0xAB);
  word.valueBoolIs(0, true);
  word.valueBoolIs(15, false);
  word.valueU8Is(3, 0x80);
  EXPECT_EQ(word.value(), 0x80DC2B01u);
  for (U8 i = 0; i < 16; ++i) EXPECT_EQ(word.valueBool(i), (0x2B01 >> i & 1) == 1);
  for (U8 i = 0; i < 4; ++i) EXPECT_EQ(word.valueU8(i), U8(0x80DC2B01 >> 8 * i));
  for (U8 i = 0; i < 2; ++i) EXPECT_EQ(word.valueU16(i), U16(0x80DC2B01 >> 16 * i));
  expectText(word, "2161912577");
  EXPECT_EQ(registered(Word::type, &word), "value=2161912577 valueBool valueU8 valueU16 ");

  const std::pair<void (*)(Word&), const char*> refused[] = {
      {[](Word& word) { word.valueBool(16); }, "range: BgpDenseU32Attr::valueBool"},
      {[](Word& word) { word.valueBoolIs(16, true); }, "range: BgpDenseU32Attr::valueBoolIs"},
      {[](Word& word) { word.valueU8(4); }, "range: BgpDenseU32Attr::valueU8"},
      {[](Word& word) { word.valueU8Is(255, 1); }, "range: BgpDenseU32Attr::valueU8Is"},
      {[](Word& word) { word.valueU16(2); }, "range: BgpDenseU32Attr::valueU16"},
      {[](Word& word) { word.valueU16Is(2, 1); }, "range: BgpDenseU32Attr::valueU16Is"},
      {[](Word& word) { word.valueBoolDel(0); }, "not deletable: BgpDenseU32Attr::valueBoolDel"},
      {[](Word& word) { word.valueU8Del(9); }, "not deletable: BgpDenseU32Attr::valueU8Del"},
      {[](Word& word) { word.valueU16Del(1); }, "not deletable: BgpDenseU32Attr::valueU16Del"}};
  for (const auto& one : refused) EXPECT_EQ(raised([&] { one.first(word); }), one.second);
  EXPECT_TRUE(word == Word(0x80DC2B01) && Word().value() == 0);
  word.valueIs(7);
  EXPECT_EQ(word.value(), 7u);
}

}  // namespace
}  // namespace Routing::Bgp
