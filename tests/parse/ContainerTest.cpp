// The container as a whole, and the show cache in it.
#include "EveryKindSm.h"
#include "agent/FeatureToggles.h"

namespace parsing {
namespace {

TEST(Container, HasItsPluginsInOrder) {
  const auto container = bgpParseExtCommContainerSmFactory();
  std::string names;
  for (const auto& [index, sm] : container->extCommParserSms())
    names += std::to_string(index) + sm->fwkType().name().substr(29) + ' ';
  EXPECT_EQ(names,
            "0RouteOriginSm 1RouteTargetSm 2TunnelEncapSm 3DefaultGatewaySm 4LinkBandwidthSm "
            "5ColorSm 6OriginValidationStateSm ");
  const auto parser = container->extCommParser();
  EXPECT_EQ(container->extCommParserIs(parser->parseControl()), parser);
  EXPECT_EQ(container->parseExtCommRuleCollectionsIs(), container->parseExtCommRuleCollections());
  EXPECT_TRUE(container->extCommCache());
}

TEST(Container, FillsTheRulesOfItsParser) {
  const auto container = bgpParseExtCommContainerSmFactory();
  const auto parser = container->extCommParser();
  // Type, class of its rule and, by subtype, of the sub-rules; all names begin alike.
  const struct {
    U32 type;
    std::string rule;
    std::vector<std::string> subRules;
  } rows[] = {
      {0x00, "TransTwoOctetAs", {"2 RouteTarget", "3 RouteOrigin"}},
      {0x01, "TransIpv4Address", {"2 RouteTarget", "3 RouteOrigin"}},
      {0x02, "TransFourOctetAs", {"2 RouteTarget", "3 RouteOrigin"}},
      {0x03, "TransOpaque", {"11 Color", "12 TunnelEncap", "13 DefaultGateway"}},
      {0x40, "NonTransTwoOctetAs", {"4 LinkBandwidth"}},
      {0x41, "NonTransIpv4Address", {}},
      {0x42, "NonTransFourOctetAs", {}},
      {0x43, "NonTransOpaque", {"0 OriginValidationState"}},
      {0x80, "TransGeneric", {}},
      {0x81, "TransGenericPart2", {}},
      {0x82, "TransGenericPart3", {}},
  };
  std::string rules;
  for (const auto& row : rows) {
    rules += (rules.empty() ? "" : ", ") + std::to_string(row.type) +
             ": Routing::Bgp::BgpParseExtComm" + row.rule + "Rule";
    std::string subRules;
    for (const std::string& subRule : row.subRules) {
      const std::size_t space = subRule.find(' ');
      subRules += (subRules.empty() ? "" : ", ") + subRule.substr(0, space) +
                  ": Routing::Bgp::BgpParseExtComSubType" + row.rule + subRule.substr(space + 1) +
                  "Rule";
    }
    EXPECT_EQ(Mox::Type::read(*parser->typeRule(BgpExtCommPktType(row.type)), "subTypeRule"),
              subRules);
  }
  EXPECT_EQ(Mox::Type::read(*parser, "typeRule"), rules);
  EXPECT_EQ(Mox::Type::read(*parser, "ip6TypeRule"),
            "0: Routing::Bgp::BgpParseExtCommIp6TransRule, "
            "64: Routing::Bgp::BgpParseExtCommIp6NonTransRule");
}

TEST(Container, WithdrawsTheParserThatItReplaces) {
  const auto container = bgpParseExtCommContainerSmFactory();
  const Registry::Ptr registry = container->parseExtCommRuleCollections();
  const auto old = container->extCommParser();
  const auto bare = container->extCommParserIs(BgpParseExtCommControl());
  EXPECT_NE(bare, old);
  EXPECT_TRUE(registry->extendedCommunityTypeRuleInstance().empty());
  EXPECT_TRUE(registry->extendedCommSubTypeNonTransOpaqueRuleInstance().empty());
  const auto late = Mox::makeNew<EveryKindSm>(registry);  // finds nothing that has gone
  EXPECT_EQ(&parse(old, 0x030b)->fwkType(), &ExtCommColor::type);
  EXPECT_EQ(&parse(bare, 0x030b)->fwkType(), &ExtCommSubtyped::type);
  EXPECT_EQ(container->extCommParserDel(), bare);
  EXPECT_FALSE(container->extCommParserDel());
}

TEST(Container, QueueHandsOutEveryIndexOnce) {
  const auto container = bgpParseExtCommContainerSmFactory();
  const BgpParseExtCommPluginBaseSm::PtrConst sm = BgpParseExtCommPluginBaseSmIs(nullptr);
  const auto before = container->extCommParserSmsMetadata();
  EXPECT_EQ(before.nextIndex, 7u);
  container->extCommParserSmsIs(20, sm);
  EXPECT_EQ(container->extCommParserSmsMetadata(), before);
  EXPECT_EQ(container->extCommParserSms(20), sm);
  container->extCommParserSmsDel(20);
  EXPECT_EQ(container->extCommParserSmsEnq(sm), 7u);
  container->extCommParserSmsIs(9, sm);
  EXPECT_EQ(container->extCommParserSmsEnq(sm), 10u);
  container->extCommParserSmsDel(10);
  EXPECT_EQ(container->extCommParserSmsEnq(sm), 11u) << "not handed out again";
  EXPECT_EQ(container->extCommParserSmsDeq()->fwkType().name(),
            "Routing::Bgp::BgpParseExtCommRouteOriginSm");
  EXPECT_FALSE(container->extCommParserSms(0));
  container->extCommParserSmsIs(0xFFFFFFFE, sm);
  EXPECT_EQ(container->extCommParserSmsEnq(sm), 0xFFFFFFFF);
  container->extCommParserSmsDelAll();
  EXPECT_EQ(raised<Mox::RangeException>([&] { container->extCommParserSmsEnq(sm); }),
            "linkqueue index space full");
  EXPECT_FALSE(container->extCommParserSmsDeq());
}

std::size_t alive(const char* name) {
  return Mox::allocationCount("Routing::Bgp::BgpParseExtComm" + std::string(name)).objects;
}

// Says when it goes, and whether the cache was still there.
struct Witness final : BgpParseExtendedCommunityTypeRuleBase {
  explicit Witness(const BgpParseExtCommControl& control)
      : BgpParseExtCommTypeRuleBase(control, extCommPktTypeTransEvpn) {}
  ~Witness() override {
    heard += Mox::allocationCount("BgpShowCli::ExtCommCache").objects ? "rules cache " : "rules ";
  }
};

TEST(Container, GoesInOrderAndUnheard) {
  auto container = bgpParseExtCommContainerSmFactory();
  const Registry::Ptr registry = container->parseExtCommRuleCollections();
  for (const char* name : {"a", "b"})
    container->extCommParserSmsEnq(Mox::makeNew<EveryKindSm>(registry, name));
  auto parser = container->extCommParser();
  parser->typeRuleIs(Mox::makeNew<Witness>(parser->parseControl()));
  take();
  // A parser that somebody holds stays whole: in the registry, and with all its rules.
  container = nullptr;
  EXPECT_EQ(take(), "~a ~b ");
  EXPECT_EQ(registry->extendedCommunityTypeRuleInstance().size(), 1u);
  EXPECT_EQ(&parse(parser, 0x030b)->fwkType(), &ExtCommColor::type);
  parser = nullptr;
  EXPECT_EQ(take(), "rules ");
  EXPECT_TRUE(registry->extendedCommSubTypeTransOpaqueRuleInstance().empty());

  container = bgpParseExtCommContainerSmFactory();
  container->extCommParserSmsEnq(
      Mox::makeNew<EveryKindSm>(container->parseExtCommRuleCollections(), "a"));
  parser = container->extCommParser();
  parser->typeRuleIs(Mox::makeNew<Witness>(parser->parseControl()));
  parser = nullptr;
  take();
  container = nullptr;
  EXPECT_EQ(take(), "rules cache ~a ");
  EXPECT_EQ(alive("ContainerSm") + alive("TransOpaqueRule") + alive("ColorSm"), 0u);
  EXPECT_EQ(alive("RuleCollections"), 1u) << "the one held here";
}

TEST(ContainerDeathTest, ReadsTheToggleOncePerProcess) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto inAFreshProcess = [] {
    Routing::featureToggleIs("RpkiToggle", false);
    const auto without = bgpParseExtCommContainerSmFactory();
    Routing::featureToggleIs("RpkiToggle", true);
    const auto still = bgpParseExtCommContainerSmFactory();
    bool right = Routing::getToggleState("RpkiToggle", false);
    for (const auto& container : {without, still}) {
      const auto comm = parse(container->extCommParser(), 0x4300);
      right = right && container->extCommParserSms().size() == 6 &&
              &comm->fwkType() == &ExtCommSubtyped::type && comm->classification() == 0;
    }
    std::exit(right ? 0 : 1);
  };
  EXPECT_EXIT(inAFreshProcess(), testing::ExitedWithCode(0), "");
}

// --- The show cache ---

TEST(ShowCache, KeepsTheTwoNotationsApart) {
  const auto cache = BgpShowCli::extCommCacheFactory();
  const U64 content = 0x0202000100640001, swapped = 0x0064000102020001;
  EXPECT_EQ(cache->lookup(content, false) + cache->lookup(content, true), "");
  cache->insert(content, "65636:1", false);
  EXPECT_EQ(cache->lookup(content, true), "");
  cache->insert(content, "1.100:0", true);
  cache->insert(content, "1.100:1", true);
  cache->insert(swapped, "other", false);
  EXPECT_EQ(cache->lookup(content, false), "65636:1");
  EXPECT_EQ(cache->lookup(content, true), "1.100:1");
  EXPECT_EQ(cache->lookup(swapped, false), "other");
  EXPECT_EQ(cache->extCommToStringDel(swapped), "other");
  EXPECT_EQ(cache->extCommToStringDel(swapped), "");
  cache->extCommToAsdotStringDelAll();
  EXPECT_EQ(cache->extCommToAsdotString(content) + cache->extCommToString(content), "65636:1");
}

}  // namespace
}  // namespace parsing
