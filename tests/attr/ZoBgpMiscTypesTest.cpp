#include "attr/ZoBgpMiscTypes.h"

#include <gtest/gtest.h>

#include <functional>
#include <sstream>

#include "Mox/Exception.h"

namespace Routing::Bgp {
namespace {

/// The kind and the message of what `act` raises.
std::string raised(const std::function<void()>& act) {
  try {
    act();
  } catch (const Mox::RangeException& error) {
    return std::string("range: ") + error.what();
  } catch (const Mox::NotDeletableException& error) {
    return std::string("not deletable: ") + error.what();
  }
  return "nothing";
}

/// Bounds that exclude 0 at one end and the top bit at the other.
struct Wide : BgpMaybeU63 {
  using BgpMaybeU63::numberIs;
  U64 min() const override { return 1; }
  U64 max() const override { return ~0ULL; }
  U64 bestpathCompareUnspecifiedValue() const override { return 100; }
};

const std::string outOfBounds = "range: value < min or > max not allowed";

TEST(BgpMaybeU63, KeepsWhatItsBoundsAdmit) {
  for (U64 kept : {0ULL, 2ULL, 255ULL}) {
    BgpExtCommPktSubtype subtype;
    subtype.valueIs(kept);
    EXPECT_EQ(U64(subtype), kept);
    EXPECT_EQ(subtype.bestpathCompareValue(), kept);
    EXPECT_EQ(subtype.toStrep(), std::to_string(kept));
    EXPECT_EQ(subtype, BgpExtCommPktSubtype(kept));
    EXPECT_NE(subtype, BgpExtCommPktSubtype());
  }
  Wide wide;
  EXPECT_EQ(wide.bestpathCompareValue(), 100u);
  wide.numberIs(0x7FFFFFFFFFFFFFFF);
  EXPECT_EQ(wide.bestpathCompareValue(), 0x7FFFFFFFFFFFFFFFu);
}

TEST(BgpMaybeU63, DropsWhatItsBoundsRefuse) {
  for (U64 refused : {256ULL, 0x100000000ULL, 1ULL << 63, (1ULL << 63) + 5, ~0ULL}) {
    BgpExtCommPktSubtype subtype(7);
    EXPECT_EQ(raised([&] { subtype.valueIs(refused); }), outOfBounds) << refused;
    EXPECT_TRUE(subtype.isUnspecified());
    EXPECT_EQ(subtype.toStrep(), "-");
    EXPECT_EQ(subtype.bestpathCompareValue(), 0u);
    EXPECT_EQ(raised([&] { BgpExtCommPktSubtype{refused}; }), outOfBounds);
  }
  for (U64 refused : {0ULL, 1ULL << 63})
    EXPECT_EQ(raised([&] { Wide().numberIs(refused); }), outOfBounds) << refused;
  EXPECT_DEATH(BgpMaybeU63().operator U64(),
               "ZoBgpMiscTypes.*: Caller must check isUnspecified\\(\\) before getting "
               "value\\(\\)\n");
}

TEST(BgpMaybeU63, ReadsTextWithoutLookingAtItsBounds) {
  BgpExtCommPktSubtype subtype;
  sequenceToValue("300", subtype);
  EXPECT_EQ(valueToStrep(subtype), "300");
  EXPECT_EQ(raised([&] { subtype.checkValue(); }), outOfBounds);
  EXPECT_EQ(raised([&] { subtype.checkValue(); }), "nothing");
  std::ostringstream stream;
  stream << subtype << BgpExtCommPktSubtype(20);
  EXPECT_EQ(stream.str(), "-20");

  BgpMaybeU63 plain;  // admits nothing, not even its own bound
  sequenceToValue("1", plain);
  EXPECT_EQ(raised([&] { plain.checkValue(); }), outOfBounds);
}

TEST(BgpDenseU32Attr, ViewsOneWordInThreeWays) {
  BgpDenseU32Attr word;
  const std::pair<std::function<void()>, U32> steps[] = {
      {[&] { word.valueU8Is(1, 0xAB); }, 0x0000AB00},
      {[&] { word.valueBoolIs(0, true); }, 0x0000AB01},
      {[&] { word.valueBoolIs(15, false); }, 0x00002B01},
      {[&] { word.valueU16Is(1, 0xFEDC); }, 0xFEDC2B01},
      {[&] { word.valueU8Is(3, 0x80); }, 0x80DC2B01},
      {[&] { word.valueU8Is(2, 0); }, 0x80002B01},
      {[&] { word.valueU16Is(0, 0x4000); }, 0x80004000},
      {[&] { word.valueBoolIs(14, true); }, 0x80004000},
  };
  for (const auto& [step, expected] : steps) {
    step();
    EXPECT_EQ(word.value(), expected);
    for (U8 i = 0; i < 16; ++i) EXPECT_EQ(word.valueBool(i), (expected >> i & 1) == 1);
    for (U8 i = 0; i < 4; ++i) EXPECT_EQ(word.valueU8(i), U8(expected >> 8 * i));
    for (U8 i = 0; i < 2; ++i) EXPECT_EQ(word.valueU16(i), U16(expected >> 16 * i));
    EXPECT_EQ(valueToStrep(word), std::to_string(expected));
    BgpDenseU32Attr read;
    sequenceToValue(std::to_string(expected), read);
    EXPECT_EQ(read, word);
  }
}

TEST(BgpDenseU32Attr, RefusesByTheNameOfTheOperation) {
  BgpDenseU32Attr word(0x80002B01);
  const std::pair<std::function<void()>, const char*> refused[] = {
      {[&] { word.valueBool(16); }, "range: BgpDenseU32Attr::valueBool"},
      {[&] { word.valueBoolIs(16, true); }, "range: BgpDenseU32Attr::valueBoolIs"},
      {[&] { word.valueU8(4); }, "range: BgpDenseU32Attr::valueU8"},
      {[&] { word.valueU8Is(255, 1); }, "range: BgpDenseU32Attr::valueU8Is"},
      {[&] { word.valueU16(2); }, "range: BgpDenseU32Attr::valueU16"},
      {[&] { word.valueU16Is(2, 1); }, "range: BgpDenseU32Attr::valueU16Is"},
      {[&] { word.valueBoolDel(0); }, "not deletable: BgpDenseU32Attr::valueBoolDel"},
      {[&] { word.valueU8Del(9); }, "not deletable: BgpDenseU32Attr::valueU8Del"},
      {[&] { word.valueU16Del(1); }, "not deletable: BgpDenseU32Attr::valueU16Del"},
  };
  for (const auto& [act, text] : refused) EXPECT_EQ(raised(act), text);
  EXPECT_EQ(word.value(), 0x80002B01u);
}

TEST(CompactValues, AreReadThroughReflection) {
  const BgpExtCommPktSubtype subtype(9);
  const BgpDenseU32Attr word(43776);
  const auto first = [](const Mox::Type& type, const void* object) {
    return type.attributes()[0].name + "=" + type.attributes()[0].read(object);
  };
  EXPECT_EQ(first(*BgpExtCommPktSubtype::type.base(), &subtype), "toStrep=9");
  EXPECT_EQ(first(BgpDenseU32Attr::type, &word), "value=43776");
}

}  // namespace
}  // namespace Routing::Bgp
