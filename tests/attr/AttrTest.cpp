// Path attributes as they are written, and as they are read from any octets; their vocabulary, the
// process-wide switches, and compact values.
#include <fstream>

#include "attr/BgpPathAttributeEnums.h"
#include "attr/ZoBgpAttributeReader.h"
#include "attr/ZoBgpGlobals.h"
#include "attr/ZoBgpMiscTypes.h"
#include "attr/ZoBgpSerialize.h"
#include "tests/ClassShape.h"
#include "tests/HexOctets.h"
#include "tests/Texts.h"

namespace Routing::Bgp {
namespace {

using enum BgpPathAttrType;
using enum BgpPathAttrFlag;

/// Adds a value whose every octet differs from its neighbours.
std::string addValue(Serialize& buffer, U32 octets) {
  std::string value;
  for (U32 i = 0; i < octets; ++i) value += char(1 + i % 251);
  for (const char octet : value) buffer.addU8(U8(octet));
  return value;
}

TEST(PathAttribute, HasTheHeaderThatItsLengthNeedsAndIsReadBack) {
  const std::tuple<U32, BgpPathAttrFlag, std::string> cases[] = {
      // clang-format off
      {0, optionalTransitive, {'\xC0', 25, 0}}, {40, BgpPathAttrFlag(0xEF), {'\xEF', 25, 40}},
      {255, optionalTransitive, {'\xC0', 25, '\xFF'}}, {256, optionalTransitive, {'\xD0', 25, 1, 0}},
      {4093, optionalTransitive | extLen | partial, {'\xF0', 25, '\x0F', '\xFD'}},
      {0xFFFF, opt, {'\x90', 25, '\xFF', '\xFF'}}};
  // clang-format on
  SerializePathAttribute reused(origin, transitive, 1);
  for (const auto& [octets, flags, header] : cases) {
    SCOPED_TRACE(octets);
    SerializePathAttributeAutoExtLen measured;
    const std::string value = addValue(measured, octets), written = header + value;
    reused.clearAndReInit(extCommunityIp6, flags, octets);
    EXPECT_GE(reused.capacity(), octets + 4) << "grown once, before the value comes";
    addValue(reused, octets);
    const auto fill = [&value](U8* at) { std::copy(value.begin(), value.end(), at); };
    for (const std::string& one :
         {measured.patchHdrAndStringify(extCommunityIp6, flags), reused.serializedString(),
          pathAttributeString(extCommunityIp6, flags, octets, fill)})
      EXPECT_TRUE(one == written);
    EXPECT_TRUE(measured.serializeAttributeValue() == value) << "the patch leaves the value alone";
    PathAttributeReader in({reinterpret_cast<const U8*>(written.data()), written.size()});
    const auto read = in.next().value();
    EXPECT_TRUE(read.type == extCommunityIp6 && U8(read.flags) == U8(header[0]));
    EXPECT_TRUE(std::string(read.value.begin(), read.value.end()) == value);
    EXPECT_FALSE(in.next() || in.overrun());
  }
}

TEST(PathAttribute, IsWrittenAsAskedForOctetByOctet) {
  SerializePathAttribute longHeader(largeCommunity, optionalTransitive | extLen, 2);
  longHeader.addU16hton(0x0102);
  EXPECT_EQ(longHeader.serializedString(), std::string("\xD0\x20\x00\x02\x01\x02", 6));
  SerializePathAttribute twoHeaders(origin, transitive, 7);
  twoHeaders.reInitHdr(BgpPathAttrType::community, optionalTransitive, 4);
  twoHeaders.addU32hton(0xFDE80164);
  EXPECT_EQ(twoHeaders.serializedString(), "\x40\x01\x07\xC0\x08\x04\xFD\xE8\x01\x64");
  const SerializedBgpPrefixSidAttribute tlv(PrefixSidTlvType::originatorSrgbTlv, 0x0102);
  EXPECT_EQ(tlv.serializedString(0), "\x03\x01\x02");
}

TEST(PathAttributeDeathTest, RefusesWhatNoHeaderCanSay) {
  const auto type = BgpPathAttrType(0x100);
  const auto flags = BgpPathAttrFlag(0x100);
  SerializePathAttributeAutoExtLen measured;
  addValue(measured, 0x10000);
  SerializePathAttribute shorter(origin, opt, 1), longer(shorter);
  longer.addU16hton(1);
  const char* const announced = "serialized.size\\(\\) == attrSize_ \\+ headerSize_";
  const std::pair<std::function<void()>, std::string> refused[] = {
      {[&] { SerializePathAttribute(type, flags, 0x10000); }, "attrType <= 0xFF"},
      {[&] { SerializePathAttribute(origin, flags, 0x10000); }, "attrFlags <= 0xFF"},
      {[&] { SerializePathAttribute(origin, opt, 0x10000); }, "attrSize <= 0xFFFF"},
      {[&] { SerializePathAttribute(origin, opt, 0xFFFFFFFF); }, "attrSize <= 0xFFFF"},
      {[&] { measured.patchHdrAndStringify(type, flags); }, "attrSize <= 0xFFFF"},
      {[&] { shorter.serializedString(); }, announced},
      {[&] { longer.serializedString(); }, announced}};
  for (const auto& [act, text] : refused) EXPECT_DEATH(act(), "ZoBgpSerialize.*: " + text + "\n");
}

/// The attributes found: `flags type@offset=octets of the value`, decimal, and the overrun:
/// `type @ offset + octets of the value : text`.
std::string found(std::span<const U8> octets) {
  std::string text;
  PathAttributeReader in(octets);
  while (const auto attribute = in.next()) {
    text += row(U32(attribute->flags), U32(attribute->type)) + '@' +
            std::to_string(attribute->offset) + '=';
    for (const U8 octet : attribute->value) text += std::to_string(octet) + '.';
    text += ' ';
  }
  EXPECT_FALSE(in.next()) << "the end is the end";
  if (const auto& overrun = in.overrun())
    text +=
        row(U32(overrun->type), '@', overrun->offset, '+', overrun->found, ':', overrun->toStrep());
  return text;
}

TEST(PathAttributeReader, FindsWhatIsThereAndWhereItIsCutShort) {
  const std::pair<const char*, const char*> cases[] = {
      {"", ""},
      {"ff630000 ef6300", "255 99@0= 239 99@4= "},
      {"400100 d0100001ff d0100000", "64 1@0= 208 16@3=255. 208 16@8= "},
      {"d010010000", "16 @ 0 + 1 : Extended Community attribute: 1 octet left of 256"},
      {"c00802 0102 c00803 0102",
       "192 8@0=1.2. 8 @ 5 + 2 : Community attribute: 2 octets left of 3"},
      {"c06301", "99 @ 0 + 0 : Attribute 99: 0 octets left of 1"},
      {"c00001", "0 @ 0 + 0 : Attribute 0: 0 octets left of 1"},
      {"400100 c0", "64 1@0= 0 @ 3 + 0 : an attribute's header is cut short"},
      {"c008", "8 @ 0 + 0 : an attribute's header is cut short"},
      {"d00800", "8 @ 0 + 0 : an attribute's header is cut short"}};
  for (const auto& [octets, expected] : cases)
    EXPECT_EQ(found(hexOctets(octets)), expected) << octets;
}

// vocabulary.txt has their numbers and names, and the strings that path attributes are shown by.
TEST(PathAttributeEnums, HaveExactlyTheseMembersAndShowStrings) {
  std::ifstream in("tests/attr/vocabulary.txt");
  std::ostringstream expected, found;
  expected << in.rdbuf();
  for (const std::string name : {"BgpPathAttrType", "BgpPathAttrFlag", "PrefixSidTlvType"}) {
    found << name << '\n';
    for (const Mox::Enumerator& e : Mox::Type::find("Routing::Bgp::" + name)->enumerators()) {
      found << "  " << e.value << ' ' << e.name;
      if (name == "BgpPathAttrType")
        found << ' ' << bgpPathAttrTypeShowString(BgpPathAttrType(e.value));
      found << '\n';
    }
  }
  EXPECT_EQ(found.str(), expected.str());
  EXPECT_DEATH(bgpPathAttrTypeShowString(BgpPathAttrType(11)),
               "BgpPathAttributeEnums.*: Unknown BgpPathAttrType\n");
  using enum BgpPathAttrFlag;
  EXPECT_EQ(optionalTransitive | transitive | partial, optionalTransitivePartial);
  EXPECT_TRUE(bgpIsValidEnumMember(origin) && !bgpIsValidEnumMember(BgpPathAttrType(11)));
  EXPECT_EQ(BgpPathAttrTypeInstance("origin"), origin);
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
    EXPECT_EQ(row(subtype, subtype.bestpathCompareValue()), row(text, kept ? number : 0));
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
      registered(BgpMaybeU63::type, static_cast<BgpMaybeU63*>(&wide)) +
          registered(BgpExtCommPktSubtype::type, nullptr),
      "toStrep=9223372036854775807 isUnspecified=False min=1 max=18446744073709551615 "
      "bestpathCompareValue=9223372036854775807 bestpathCompareUnspecifiedValue=100 checkValue "
      "valueIs ");
  EXPECT_TRUE(BgpExtCommPktSubtype::type.isA(BgpMaybeU63::type));
  const BgpMaybeU63 plain;
  EXPECT_EQ(row(plain.min(), plain.max(), plain.bestpathCompareValue()), "1 0 0");
  EXPECT_EQ(row(slotOf(&BgpMaybeU63::min), slotOf(&BgpMaybeU63::max),
                slotOf(&BgpMaybeU63::bestpathCompareUnspecifiedValue)),
            "1 2 3");
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
