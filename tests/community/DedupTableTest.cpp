#include <gtest/gtest.h>

#include <random>
#include <thread>

#include "community/ZoBgpCommunityDedupTable.h"
#include "ip6/ExtCommIp6DedupTable.h"
#include "parse/BgpParseExtCommRouteTarget.h"

namespace Routing::Bgp {
namespace {

// Both families, by the same tests: the table, its value, a content made from a number.
struct Eight {
  using Value = ExtComm;
  static auto table(const BgpParseExtendedCommunityRule::Ptr& rule) {
    return extCommDedupTableFactory(rule);
  }
  static ExtCommContent content(U64 number) { return ExtCommContent(number); }
  static constexpr const char* className = "Routing::Bgp::ExtCommAsNumber";  // for number 0
};
struct Twenty {
  using Value = ExtCommIp6;
  static auto table(const BgpParseExtendedCommunityRule::Ptr& rule) {
    return extCommIp6DedupTableFactory(rule);
  }
  static ExtCommIp6Content content(U64 number) {
    Zonet::Ip6Addr addr;
    sequenceToValue("2001:db8::" + std::to_string(number % 10000), addr);
    return {U8(number >> 56), U8(number >> 48), addr, U16(number)};
  }
  static constexpr const char* className = "Routing::Bgp::ExtCommIp6Subtyped";
};

template <class Family>
class DedupTable : public testing::Test {
 protected:
  BgpParseExtCommContainerSm::Ptr container = bgpParseExtCommContainerSmFactory();
  decltype(Family::table(nullptr)) table = Family::table(container->extCommParser());

  auto intern(U64 number) const {
    return Family::Value::dedupContent(table.get(), Family::content(number));
  }
};
using Families = testing::Types<Eight, Twenty>;
TYPED_TEST_SUITE(DedupTable, Families);

TYPED_TEST(DedupTable, OneObjectForAsLongAsItIsHeld) {
  auto first = this->intern(0);
  EXPECT_EQ(this->intern(0), first);
  EXPECT_TRUE(first->isDeduped());
  EXPECT_EQ(first->fwkType().name(), TypeParam::className);
  EXPECT_EQ(first->references(), 2u);
  EXPECT_EQ(this->table->parseExtCommRule(), this->container->extCommParser());
  first = nullptr;
  EXPECT_EQ(this->table->dedupHashTable()->members(), 0u);
  EXPECT_EQ(this->intern(0)->references(), 2u) << "built afresh";
}

TYPED_TEST(DedupTable, EveryTypeAndSubtypeInternsAndIsFoundByItsContentAndHash) {
  std::mt19937_64 random(5);
  std::vector<decltype(this->intern(0))> held;
  for (U64 pair = 0; pair < 0x10000; ++pair) {
    const U64 number = pair << 48 | random() >> 16;
    const auto content = TypeParam::content(number);
    const auto object = this->intern(number);
    ASSERT_EQ(object->getContent(), content);
    ASSERT_EQ(object->hash(), content.hash());
    ASSERT_LE(U32(object->classification()), 9u);
    ASSERT_EQ(this->intern(number), object);
    const auto found =
        this->table->dedupHashTable()->lookupByContent({&content, sizeof content}, content.hash());
    ASSERT_EQ(found.get(), object.get());
    held.push_back(object);
  }
  EXPECT_EQ(this->table->dedupHashTable()->members(), held.size());
}

TYPED_TEST(DedupTable, ThreadsInternOverlappingContents) {
  std::vector<std::thread> threads;
  std::atomic<U32> differences{0};
  for (U32 thread = 0; thread < 3; ++thread)
    threads.emplace_back([&, thread] {
      std::mt19937_64 random(thread);
      decltype(this->intern(0)) held[4];
      for (U32 round = 0; round < 20000; ++round) {
        const U64 number = U64{0x0002} << 48 | random() % 12;
        auto& place = held[random() % 4];
        place = this->intern(number);
        differences += place != this->intern(number);
        differences += !place->isDeduped() || place->classification() > 1;
      }
    });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(differences, 0u);
  EXPECT_EQ(this->table->dedupHashTable()->members(), 0u);
}

TYPED_TEST(DedupTable, IsThreadSafeWhenTheAgentIs) {
  const auto as = [](bool threadSafe) {
    using Orv::DedupHashTableUnorderedSet;
    return DedupHashTableUnorderedSet::DedupHashTableUnorderedSetIs(threadSafe)->octets();
  };
  ASSERT_NE(as(true), as(false));
  EXPECT_EQ(this->table->dedupHashTable()->octets(), as(ZoBgpGlobals::multiThreaded()));
  EXPECT_EQ(Mox::Type::read(*this->table, "parseExtCommRule"),
            valueToStrep(this->table->parseExtCommRule()));
}

TYPED_TEST(DedupTable, DumpsAsItsSetDoes) {
  const auto held = this->intern(1);
  const auto context = Mox::makeNew<Orv::DumpContext>();
  this->table->dumpState(context, 3);
  EXPECT_EQ(context->text(), "   members: 1\n");
}

TEST(ExtCommDedupTable, KindIsDecidedWhenAContentIsFirstSeen) {
  const auto collections = bgpParseExtCommRuleCollectionsFactory();
  const auto parser = bgpParseExtendedCommunityRuleFactory(BgpParseExtCommControl(collections));
  const auto table = extCommDedupTableFactory(parser);
  const ExtCommContent target(0x0002FDE800000064);
  auto generic = ExtComm::dedupContent(table.get(), target);
  EXPECT_EQ(generic->classification(), extCommClassificationUnSpecified) << "there is no plug-in";
  const auto plugin = BgpParseExtCommRouteTargetSmIs(collections);
  EXPECT_EQ(ExtComm::dedupContent(table.get(), target), generic) << "a live value stays as it is";
  generic = nullptr;
  EXPECT_EQ(ExtComm::dedupContent(table.get(), target)->classification(),
            extCommClassificationRouteTarget);
}

}  // namespace
}  // namespace Routing::Bgp
