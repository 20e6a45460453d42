// Plug-ins: when they are asked, and when no more.
#include "EveryKindSm.h"
#include "Mox/Trace.h"
#include "parse/BgpParseExtCommColor.h"

namespace parsing {
namespace {

const std::string types = "00 01 02 03 80 81 82 40 41 42 43 ip6-00 ";

TEST(Plugins, AreAskedForEveryRuleWheneverTheyCome) {
  const Registry::Ptr registry = bgpParseExtCommRuleCollectionsFactory();
  take();
  const auto early = Mox::makeNew<EveryKindSm>(registry);
  EXPECT_EQ(take(), "");
  const auto parser = bgpParseExtendedCommunityRuleFactory(BgpParseExtCommControl(registry));
  EXPECT_EQ(take(), types + "top ") << "as they are made: the type rules, then the top rule";
  const auto late = Mox::makeNew<EveryKindSm>(registry);
  EXPECT_EQ(take(), "top " + types) << "catching up: in the order of the kinds";

  late->handleExtCommIp6SubTypeTransRuleInstance();
  late->handleExtCommSubTypeTransOpaqueRuleInstance(
      *registry->extendedCommSubTypeTransOpaqueRuleInstance().begin());
  late->handleExtendedCommunityTypeRuleInstance({});
  EXPECT_EQ(take(), "ip6-00 03 ") << "a key that names no rule is for nobody";
  EXPECT_TRUE(registry->extendedCommIp6SubTypeNonTransRuleInstance().empty());

  // Both hear of the withdrawal, type rules first; the parser goes on.
  parser->handleDel();
  EXPECT_EQ(take().substr(0, 12), "00 00 01 01 ");
  EXPECT_EQ(parser->typeRules().size(), 11u);
  EXPECT_EQ(Mox::Type::read(*registry, "extendedCommunityTypeRuleInstance"), "");
}

TEST(Plugins, ReactionsEndWithTheMarkTheRegistryOrThePlugin) {
  const Registry::Ptr registry = bgpParseExtCommRuleCollectionsFactory(),
                      other = bgpParseExtCommRuleCollectionsFactory();
  const auto parser = bgpParseExtendedCommunityRuleFactory(BgpParseExtCommControl(registry));
  auto sm = Mox::makeNew<EveryKindSm>(registry, "a");
  const auto second = Mox::makeNew<EveryKindSm>(registry, "b");
  const auto rule = [&] {
    take();
    const auto ip6 = Mox::makeNew<BgpParseExtCommIp6TransRule>(BgpParseExtCommControl(registry));
    return take();
  };
  EXPECT_EQ(rule(), "aip6-00 bip6-00 ") << "and the rule's end is not heard";
  sm->ruleCollectionsIs(registry);
  EXPECT_EQ(rule(), "aip6-00 bip6-00 ") << "the same registry: its place is kept";
  sm->moxDoZombieReactors(true);
  EXPECT_TRUE(sm->deletionMark());
  EXPECT_EQ(rule(), "bip6-00 ");
  sm->ruleCollectionsDel();
  sm->ruleCollectionsIs(registry);
  EXPECT_EQ(rule(), "bip6-00 ") << "a new reactor knows the mark";
  sm->moxDoZombieReactors(false);
  EXPECT_EQ(rule(), "bip6-00 aip6-00 ");
  sm->ruleCollectionsIs(other);
  EXPECT_EQ(rule(), "bip6-00 ");
  sm->ruleCollectionsIs(registry);
  EXPECT_EQ(take().substr(0, 9), "atop a00 ") << "a new registry is caught up with";
  EXPECT_EQ(sm->ruleCollectionsDel(), registry);
  EXPECT_FALSE(sm->ruleCollections());
  EXPECT_EQ(rule(), "bip6-00 ");
  sm->ruleCollectionsIs(registry);
  sm->atEnd = [&] { heard = "end: " + rule(); };
  sm = nullptr;
  EXPECT_EQ(take(), "end: bip6-00 ~a ") << "not even what it brings about itself";
  EXPECT_EQ(rule(), "bip6-00 ");
}

// What a plug-in does while it is asked must not pull the ground from under those who ask.
TEST(Plugins, MayLeaveWhileTheyAreAsked) {
  const auto container = bgpParseExtCommContainerSmFactory();
  const Registry::Ptr registry = container->parseExtCommRuleCollections();
  const BgpParseExtCommControl control(registry);
  auto leaver = Mox::makeNew<EveryKindSm>(registry, "leaver");
  leaver->act = [&, index = container->extCommParserSmsEnq(leaver)] {
    container->extCommParserSmsDel(index);
  };
  leaver = nullptr;
  take();
  const auto rule = Mox::makeNew<BgpParseExtCommTransOpaqueRule>(control);
  EXPECT_EQ(take(), "leaver03 ~leaver ");
  EXPECT_EQ(rule->subTypeRules().size(), 3u) << "the others were asked";

  leaver = Mox::makeNew<EveryKindSm>(registry, "leaver");
  leaver->act = [&] { leaver = nullptr; };
  take();
  leaver->handleStartup();
  EXPECT_EQ(take(),
            "leavertop leaver00 leaver01 leaver02 leaver03 leaver03 leaver80 leaver81 "
            "leaver82 leaver40 leaver41 leaver42 leaver43 leaverip6-00 ~leaver ");
}

TEST(Plugins, MayTakeRulesAwayWhileTheyAreAsked) {
  const Registry::Ptr registry = bgpParseExtCommRuleCollectionsFactory();
  std::vector<BgpParseExtCommTransOpaqueRule::Ptr> rules;
  for (int i = 0; i < 3; ++i)
    rules.push_back(Mox::makeNew<BgpParseExtCommTransOpaqueRule>(BgpParseExtCommControl(registry)));
  const auto sm = Mox::makeNew<EveryKindSm>(registry);
  EXPECT_EQ(take(), "03 03 03 ");
  sm->act = [&] { rules.clear(); };
  sm->handleStartup();
  EXPECT_EQ(take(), "03 ") << "a rule that is no more is not asked for";
}

// A plug-in that throws while a parser is made ends that parser, and leaves nothing of it behind.
struct ThrowingSm final : BgpParseExtCommPluginBaseSm {
  explicit ThrowingSm(const RuleCollections& registry) : BgpParseExtCommPluginBaseSm(registry) {}
  void instantiateExtCommSubTypeTransOpaqueSubRule(const BgpParseExtCommSubTypeTransOpaqueRuleKey&,
                                                   const BgpParseExtCommControl&) const override {
    throw std::bad_alloc();
  }
};

TEST(Plugins, ThatThrowLeaveNoRuleOfADeadParser) {
  const auto registry = bgpParseExtCommRuleCollectionsFactory();
  {
    const auto plugin = Mox::makeNew<ThrowingSm>(registry);
    EXPECT_THROW(bgpParseExtendedCommunityRuleFactory(BgpParseExtCommControl(registry)),
                 std::bad_alloc);
  }
  const auto color = BgpParseExtCommColorSmIs(registry);  // would be offered the dead ones
  const auto parser = bgpParseExtendedCommunityRuleFactory(BgpParseExtCommControl(registry));
  EXPECT_EQ(parser->parseExtendedCommunity(ExtCommContent(0x030B000000000001))->classification(),
            extCommClassificationColor);
}

TEST(Plugins, TraceWhatTheyInstall) {
  static std::string lines;
  Mox::traceSinkIs([](U32 level, std::string_view line) {
    lines += std::to_string(level) + ' ' + std::string(line) + '\n';
  });
  Mox::traceLevel = 8;
  const auto container = bgpParseExtCommContainerSmFactory();
  Mox::traceLevel = 7;
  const auto silent = bgpParseExtCommContainerSmFactory();
  Mox::traceLevel = 0;
  Mox::traceSinkIs(nullptr);
  EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), 11);
  EXPECT_EQ(lines.find("8 parse/BgpParseExtCommRouteOrigin.cpp:"), 0u) << lines;
  EXPECT_NE(lines.find("ColorSm::instantiateExtCommSubTypeTransOpaqueSubRule(const "),
            std::string::npos);
}

}  // namespace
}  // namespace parsing
