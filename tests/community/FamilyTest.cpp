// Values of both families of extended communities: every type and subtype, their formats, and their
// intern tables.
#include <random>

#include "community/BgpHashMixImpl.h"
#include "community/ZoBgpCommunityDedupTable.h"
#include "ip6/ExtCommIp6DedupTable.h"
#include "parse/BgpParseExtComm.h"
#include "parse/BgpParseExtCommRouteTarget.h"
#include "tests/AllocationCounter.h"
#include "tests/ClassShape.h"
#include "tests/Texts.h"

namespace Routing::Bgp {
namespace {

struct Eight {
  using Value = ExtComm;
  static constexpr auto makeTable = &extCommDedupTableFactory;
  static ExtCommContent content(U64 number) { return ExtCommContent(number); }
  static bool named(U32 t) { return t < 7 || t == 8 || t - 0x40 < 5 || t - 0x80 < 3; }
  static bool hasSubtypes(U32 type) { return type % 0x40 < 4 && type <= 0x82; }
};
struct Twenty {
  using Value = ExtCommIp6;
  static constexpr auto makeTable = &extCommIp6DedupTableFactory;
  static ExtCommIp6Content content(U64 number) {
    const auto octet = [=](U32 shift) { return U8(number >> shift); };
    const Zonet::Ip6Addr address({octet(40), octet(32), octet(24), octet(16)});
    return {octet(56), octet(48), address, U16(number)};
  }
  static bool named(U32 type) { return type % 0x40 == 0 && type < 0x80; }
  static bool hasSubtypes(U32 type) { return named(type); }
};

template <class F>
struct Family : testing::Test {
  auto intern(U64 number) const { return F::Value::dedupContent(table.get(), F::content(number)); }
  BgpParseExtCommContainerSm::Ptr container = bgpParseExtCommContainerSmFactory();
  decltype(F::makeTable(nullptr)) table = F::makeTable(container->extCommParser());
};
using Families = testing::Types<Eight, Twenty>;
TYPED_TEST_SUITE(Family, Families);

TYPED_TEST(Family, EveryTypeAndSubtypeIsOneObjectOfItsClassForAsLongAsItIsHeld) {
  using Value = typename TypeParam::Value;
  std::mt19937_64 random(4360);
  std::vector<typename Value::PtrConst> held;
  const auto& set = this->table->dedupHashTable();
  for (U32 octets = 0; octets < 0x10000; ++octets) {
    const U64 number = U64{octets} << 48 | random() >> 16;
    const auto content = TypeParam::content(number),
               other = TypeParam::content(number ^ 1ULL << random() % 64);
    const auto object = held.emplace_back(this->intern(number)).get();
    SCOPED_TRACE(object->toStrep());
    const U32 type = octets >> 8;
    const std::string subtype = TypeParam::hasSubtypes(type) ? std::to_string(octets & 0xFF) : "-";
    ASSERT_EQ(row(U32(object->pktType()), object->pktSubtype(), object->transitive()),
              row(TypeParam::named(type) ? type : 256, subtype, (type & 0x40) == 0));
    ASSERT_TRUE(object->isDeduped() && object->hasNotificationActive());
    ASSERT_TRUE(object->getContent() == content && object->hash() == content.hash());
    const std::size_t before = allocations;
    ASSERT_EQ(this->intern(number).get(), object);
    ASSERT_EQ(allocations, before) << "nothing is parsed again";
    ASSERT_EQ(set->lookupByContent({&content, sizeof content}, content.hash()).get(), object);
    ASSERT_EQ(object->references(), 2u);
    // Equality is that of the contents, across classes and classifications.
    ASSERT_TRUE(object->compare(Mox::makeNew<Value>(extCommClassificationColor, content).get()));
    ASSERT_FALSE(object->compare(Mox::makeNew<Value>(object->classification(), other).get()));
    for (const std::size_t size : {sizeof content - 1, sizeof content})
      ASSERT_EQ(object->compareByContent({&content, size}), size == sizeof content);
    ASSERT_FALSE(object->compareByContent({&other, sizeof other}));
  }
  EXPECT_EQ(this->table->parseExtCommRule(), this->container->extCommParser());
  const auto context = Mox::makeNew<Orv::DumpContext>();
  this->table->dumpState(context, 3);
  EXPECT_EQ(context->text(), "   members: 65536\n");
  held.clear();
  EXPECT_EQ(set->members(), 0u);
  EXPECT_EQ(this->intern(0)->references(), 2u) << "built afresh";
  EXPECT_EQ(TypeParam::makeTable(this->container->extCommParser())->dedupHashTable()->octets(),
            Orv::DedupHashTableUnorderedSet::DedupHashTableUnorderedSetIs(true)->octets())
      << "thread-safe, as the agent is";
  EXPECT_THROW(TypeParam::makeTable(nullptr), Mox::RangeException);
}

TYPED_TEST(Family, FormatsAreTextBothWaysAndNoOtherText) {
  using Format = typename TypeParam::Value::StrepFormat;
  const char* flags[] = {"Default", "Qualifier", "Classification", "UI", "Asdot", "LinkBwWeighted"};
  Format read;
  for (U32 value = 0; value <= 0x3f; ++value) {
    Mox::String text = "Value('" + TypeParam::Value::type.name() + "::StrepFormat', ** {";
    for (U32 bit = 0; bit < 6; ++bit)
      text += Mox::String("'strepFormat") + flags[bit] +
              "': " + (value >> bit & 1 ? "True" : "False") + (bit < 5 ? ", " : "})");
    expectText(Format(value), text);
    for (std::size_t index = 0; index < text.size(); ++index)
      for (const Mox::String& rest : {Mox::String(), '~' + text.substr(index + 1)})
        EXPECT_THROW(sequenceToValue(text.substr(0, index) + rest, read), Mox::ParseException)
            << index;
    EXPECT_THROW(sequenceToValue(text + ' ', read), Mox::ParseException);
  }
  EXPECT_EQ(raised([&] { read.valueIs(0x40); }), "range: StrepFormat::value > 0x3f not allowed");
  EXPECT_EQ(read.value(), 0u);
}

TYPED_TEST(Family, IsForClassesAndHashesOfOthers) {
  using Value = typename TypeParam::Value;
  EXPECT_EQ(row(slotOf(&Value::pktSubtype), slotOf(&Value::formatDerivedType),
                slotOf(&Value::toStrepForPolicy), slotOf(&Value::pktSubtypeIs),
                slotOf(&ExtCommAsNumber::formatAsNumber)),
            "12 13 14 15 16");
  // Hashes feed the address of an interned object, and nothing for null.
  const auto interned = this->intern(0);
  Orv::HashMix mix, address;
  _BgpHashMix(&mix, interned.get());
  _BgpHashMix(&mix, nullptr);
  address.feed(reinterpret_cast<std::uintptr_t>(interned.get()));
  EXPECT_EQ(mix.finish(), address.finish());
  const auto lone = Mox::makeNew<Value>(interned->classification(), interned->getContent());
  EXPECT_DEATH(_BgpHashMix(&mix, lone.get()), "__null == \\( p \\) .*NeverDeduped\\(\\)\n");
}

struct FalseRule final : BgpParseExtComSubTypeTransOpaqueRuleBase {
  using BgpParseExtComSubTypeTransOpaqueRuleBase::BgpParseExtCommSubTypeRuleBase;
  Mox::Ptr<ExtComm> inhale(const ExtCommContent&) const override {
    return extCommFactory({}, ExtCommContent(1));
  }
};

TEST(ExtCommDedupTable, TakesTheClassThatTheRulesGiveAContentWhenItIsFirstSeen) {
  const auto registry = bgpParseExtCommRuleCollectionsFactory();
  const BgpParseExtCommControl control(registry);
  const auto parser = bgpParseExtendedCommunityRuleFactory(control);
  const auto table = extCommDedupTableFactory(parser);
  const ExtCommContent target(0x0002FDE800000064), color(0x030BULL << 48);
  auto generic = table->dedupContent(target);
  EXPECT_EQ(generic->classification(), extCommClassificationUnSpecified) << "there is no plug-in";
  const auto plugin = BgpParseExtCommRouteTargetSmIs(registry);
  EXPECT_EQ(table->dedupContent(target), generic) << "a live value stays as it is";
  generic = nullptr;
  EXPECT_EQ(table->dedupContent(target)->classification(), extCommClassificationRouteTarget);

  const auto type = Mox::makeNew<BgpParseExtCommTransOpaqueRule>(control);
  parser->typeRuleIs(type);
  type->subTypeRuleIs(Mox::makeNew<FalseRule>(control, BgpExtCommPktSubtypeTransOpaque(0x0b)));
  EXPECT_DEATH(table->dedupContent(color), ": getContent\\(\\) == content\n");
}

}  // namespace
}  // namespace Routing::Bgp
