// How a content finds its rule: the two levels of rules, and the container that brings them up.
#include <gmock/gmock.h>

#include <functional>
#include <regex>

#include "agent/FeatureToggles.h"
#include "parse/BgpParseExtComm.h"
#include "tests/AllocationCounter.h"

namespace Routing::Bgp {
namespace {

using Control = BgpParseExtCommControl;
using OpaqueRule = BgpParseExtCommTransOpaqueRule;

/// What a parser builds of a content of these two octets: its class and classification.
std::string built(const BgpParseExtendedCommunityRule::Ptr& parser, U32 octets) {
  const auto comm = parser->parseExtendedCommunity(ExtCommContent(U64{octets} << 48));
  return comm->fwkType().name().substr(21) + ' ' + std::to_string(comm->classification());
}

TEST(Parsing, CostsOneAllocation) {
  const auto container = bgpParseExtCommContainerSmFactory();
  for (const U32 octets : {0x0002, 0x0005, 0x0600, 0xFFFF}) {
    const ExtCommContent content(U64{octets} << 48);
    // The first of a class enters its name where allocations are counted.
    const auto warm = container->extCommParser()->parseExtendedCommunity(content);
    const std::size_t before = allocations;
    const auto comm = container->extCommParser()->parseExtendedCommunity(content);
    EXPECT_EQ(allocations - before, 1u) << std::hex << octets;
    EXPECT_TRUE(comm->references() == 1 && !comm->isDeduped() && comm->hasNotificationActive());
  }
}

// Two rules of one's own: one that knows nothing, one that builds plain objects of a mark.
struct NullRule final : BgpParseExtComSubTypeTransOpaqueRuleBase {
  using BgpParseExtComSubTypeTransOpaqueRuleBase::BgpParseExtCommSubTypeRuleBase;
  Mox::Ptr<ExtComm> inhale(const ExtCommContent&) const override { return nullptr; }
};
template <class Base>
struct MarkRule final : Base {
  using Base::Base;
  Mox::Ptr<ExtComm> inhale(const ExtCommContent& content) const override {
    return extCommFactory(extCommClassificationEvpn, content);
  }
};
const std::string mark = " 3";

TEST(Rules, OfOneSubtypeTheLastInstalledServes) {
  using Subtype = BgpExtCommPktSubtypeTransOpaque;
  using SubRule = MarkRule<BgpParseExtComSubTypeTransOpaqueRuleBase>;
  const auto parser = bgpParseExtendedCommunityRuleFactory(Control());
  const auto rule = Mox::makeNew<OpaqueRule>(Control());
  parser->typeRuleIs(rule);
  const auto first = Mox::makeNew<SubRule>(Control(), Subtype(0x0b));
  for (int twice = 0; twice < 2; ++twice) rule->subTypeRuleIs(first);
  EXPECT_EQ(first->references(), 2u) << "the same one again changes nothing";
  EXPECT_EQ(built(parser, 0x030b), mark);
  rule->subTypeRuleIs(Mox::makeNew<NullRule>(Control(), Subtype(0x0b)));
  EXPECT_EQ(first->references(), 1u) << "replaced and released";
  EXPECT_EQ(built(parser, 0x030b), "Subtyped 0") << "null is as good as no rule";

  // 0x0e is no member, and not even looked up; 0x01 and 0x06 are.
  for (const U32 subtype : {0x0e, 0x06, 0x01, 256})
    rule->subTypeRuleIs(Mox::makeNew<SubRule>(Control(), Subtype(subtype)));
  EXPECT_EQ(built(parser, 0x030e) + built(parser, 0x0306), "Subtyped 0" + mark);
  EXPECT_EQ(rule->subTypeRuleDel(Subtype(0x06))->pktSubType(), 6u);
  EXPECT_FALSE(rule->subTypeRuleDel(Subtype(0x06)));
  EXPECT_EQ(built(parser, 0x0306) + built(parser, 0x0301), "Subtyped 0" + mark);
  rule->subTypeRuleDelAll();
  EXPECT_EQ(built(parser, 0x0301), "Subtyped 0");
}

TEST(Rules, TypeRulesOfOthersTakeTheirPlace) {
  const auto container = bgpParseExtCommContainerSmFactory();
  const auto parser = container->extCommParser();
  const auto registry = container->parseExtCommRuleCollections();
  using TypeRule = MarkRule<BgpParseExtendedCommunityTypeRuleBase>;

  // A type that had no rule, one that has (and is held besides), and one that is no member.
  const auto held = parser->typeRule(extCommPktTypeTransOpaque);
  for (const U32 type : {0x06, 0x03, 0x07})
    parser->typeRuleIs(Mox::makeNew<TypeRule>(Control(), BgpExtCommPktType(type)));
  EXPECT_EQ(built(parser, 0x0603) + built(parser, 0x030b) + built(parser, 0x0700),
            mark + mark + " 0");
  EXPECT_TRUE(registry->extendedCommSubTypeTransOpaqueRuleInstance().empty()) << "withdrawn";

  // The library's rule again: it has entered itself, and so been filled.
  parser->typeRuleIs(Mox::makeNew<OpaqueRule>(parser->parseControl()));
  EXPECT_EQ(built(parser, 0x030b), "Color 8");

  EXPECT_EQ(parser->typeRuleDel(extCommPktTypeTransIpv4Address)->pktType(), 0x01u);
  EXPECT_TRUE(registry->extendedCommSubTypeTransIpv4AddressRuleInstance().empty());
  parser->typeRuleDelAll();
  EXPECT_EQ(built(parser, 0x0102) + built(parser, 0x0002), " 0 0") << "valid, without a rule";
  EXPECT_TRUE(registry->extendedCommSubTypeTransOpaqueRuleInstance().empty());

  EXPECT_TRUE(parser->ip6TypeRuleDel(extCommIp6PktTypeTransIpv6Address));
  EXPECT_TRUE(registry->extendedCommIp6SubTypeTransRuleInstance().empty());
  parser->ip6TypeRuleDelAll();
  for (const U8 type : {0x00, 0x40})
    EXPECT_EQ(&parser->parseExtendedCommunityIp6({type, 2, {}, 1})->fwkType(), &ExtCommIp6::type);
}

TEST(Rules, ANullIsRefused) {
  const auto container = bgpParseExtCommContainerSmFactory();
  const auto parser = container->extCommParser();
  const auto opaque = Mox::makeNew<OpaqueRule>(Control());
  const auto ip6 = Mox::makeNew<BgpParseExtCommIp6NonTransRule>(Control());
  const std::tuple<std::function<void()>, const char*, std::string> cases[] = {
      {[&] { parser->typeRuleIs(nullptr); }, "BgpParseExtendedCommunityRule", "typeRule"},
      {[&] { parser->ip6TypeRuleIs(nullptr); }, "BgpParseExtendedCommunityRule", "ip6TypeRule"},
      {[&] { opaque->subTypeRuleIs(nullptr); }, "BgpParseExtCommTransOpaqueRule", "subTypeRule"},
      {[&] { ip6->subTypeRuleIs(nullptr); }, "BgpParseExtCommIp6NonTransRule", "subTypeRule"},
      {[&] { container->extCommParserSmsEnq(nullptr); }, "BgpParseExtCommContainerSm",
       "extCommParserSms"}};
  for (const auto& [act, owner, attribute] : cases)
    EXPECT_THAT(act, testing::ThrowsMessage<Mox::RangeException>(
                         "null _" + attribute + " parameter to mutator for Routing::Bgp::" + owner +
                         "::" + attribute + " not allowed\""));
}

TEST(RulesDeathTest, MisuseEndsTheProcess) {
  const auto sm = BgpParseExtCommPluginBaseSmIs(bgpParseExtCommRuleCollectionsFactory());
  const char* const override = "0 && \"Must override in derived class\"";
  const std::pair<std::function<void()>, std::string> cases[] = {
      {[&] { BgpParseExtComSubTypeTransGenericRuleBase(Control(), {}).inhale({}); }, override},
      {[&] { BgpParseExtendedCommunityIp6TypeRuleBase(Control(), {}).inhale({}); }, override},
      {[&] { sm->addExtCommSubTypeTransOpaqueSubRule({}, nullptr); }, "rule != __null"},
      {[&] { sm->addExtCommIp6SubTypeTransSubRule({}, nullptr); }, "rule != __null"},
      {[&] { sm->addExtendedCommunityTypeSubRule({}, nullptr); }, "__null != rule"}};
  for (const auto& [act, text] : cases) EXPECT_DEATH(act(), ": " + text + "\n");
}

TEST(Container, HasItsPluginsInOrderAndTheirSubRules) {
  const auto container = bgpParseExtCommContainerSmFactory();
  std::string text = Mox::Type::read(*container, "extCommParserSms");
  for (const auto& rule : container->extCommParser()->typeRules())
    text += "; " + Mox::Type::read(*rule, "subTypeRule");
  const std::regex common("Routing::Bgp::BgpParseExtCom(m|SubType)");
  EXPECT_EQ(std::regex_replace(text, common, ""),
            "0: RouteOriginSm, 1: RouteTargetSm, 2: TunnelEncapSm, 3: DefaultGatewaySm, "
            "4: LinkBandwidthSm, 5: ColorSm, 6: OriginValidationStateSm; "
            "2: TransTwoOctetAsRouteTargetRule, 3: TransTwoOctetAsRouteOriginRule; "
            "2: TransIpv4AddressRouteTargetRule, 3: TransIpv4AddressRouteOriginRule; "
            "2: TransFourOctetAsRouteTargetRule, 3: TransFourOctetAsRouteOriginRule; "
            "11: TransOpaqueColorRule, 12: TransOpaqueTunnelEncapRule, "
            "13: TransOpaqueDefaultGatewayRule; 4: NonTransTwoOctetAsLinkBandwidthRule; ; ; "
            "0: NonTransOpaqueOriginValidationStateRule; ; ; ");
}

TEST(Container, WithdrawsTheParserThatItReplaces) {
  const auto container = bgpParseExtCommContainerSmFactory();
  const auto registry = container->parseExtCommRuleCollectionsIs();
  const auto old = container->extCommParser();
  EXPECT_EQ(container->extCommParserIs(Control(registry)), old) << "an equal control";
  const auto bare = container->extCommParserIs(Control());
  EXPECT_TRUE(registry->extendedCommunityTypeRuleInstance().empty());
  EXPECT_TRUE(registry->extendedCommSubTypeNonTransOpaqueRuleInstance().empty());
  EXPECT_EQ(built(old, 0x030b), "Color 8");
  EXPECT_EQ(built(bare, 0x030b), "Subtyped 0");
  EXPECT_EQ(container->extCommParserDel(), bare);
  EXPECT_FALSE(container->extCommParserDel());
}

TEST(Container, QueueHandsOutEveryIndexOnce) {
  const auto container = bgpParseExtCommContainerSmFactory();
  const BgpParseExtCommPluginBaseSm::PtrConst sm = BgpParseExtCommPluginBaseSmIs(nullptr);
  container->extCommParserSmsIs(20, sm);
  EXPECT_EQ(container->extCommParserSmsMetadata().nextIndex, 7u);
  EXPECT_EQ(container->extCommParserSmsEnq(sm), 21u) << "behind the last";
  container->extCommParserSmsDel(21);
  EXPECT_EQ(container->extCommParserSmsEnq(sm), 22u) << "not handed out again";
  const auto front = container->extCommParserSms(0);
  EXPECT_EQ(container->extCommParserSmsDeq(), front);
  EXPECT_FALSE(container->extCommParserSms(0));
  container->extCommParserSmsIs(0xFFFFFFFE, sm);
  EXPECT_EQ(container->extCommParserSmsEnq(sm), 0xFFFFFFFF);
  container->extCommParserSmsDelAll();
  EXPECT_FALSE(container->extCommParserSmsDeq());
  EXPECT_THAT([&] { container->extCommParserSmsEnq(sm); },
              testing::ThrowsMessage<Mox::RangeException>("linkqueue index space full"));
}

TEST(ContainerDeathTest, ReadsTheToggleOncePerProcess) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto inAFreshProcess = [] {
    std::size_t plugins = 0;
    for (const bool toggle : {false, true}) {
      featureToggleIs("RpkiToggle", toggle);
      const auto container = bgpParseExtCommContainerSmFactory();
      plugins += container->extCommParserSms().size();
      if (built(container->extCommParser(), 0x4300) != "Subtyped 0") std::exit(1);
    }
    std::exit(plugins == 12 ? 0 : 1);
  };
  EXPECT_EXIT(inAFreshProcess(), testing::ExitedWithCode(0), "");
}

TEST(ShowCache, KeepsTheTwoNotationsApart) {
  const auto cache = bgpParseExtCommContainerSmFactory()->extCommCache();
  const U64 content = 0x0202000100640001, swapped = 0x0064000102020001;
  cache->insert(content, "65636:1", false);
  EXPECT_EQ(cache->lookup(content, true), "");
  for (const char* text : {"1.100:0", "1.100:1"}) cache->insert(content, text, true);
  cache->insert(swapped, "other", false);
  EXPECT_EQ(cache->lookup(content, false) + cache->lookup(content, true), "65636:11.100:1");
  EXPECT_EQ(cache->extCommToStringDel(swapped) + cache->extCommToStringDel(swapped), "other");
  cache->extCommToAsdotStringDelAll();
  EXPECT_EQ(cache->extCommToAsdotString(content) + cache->extCommToString(content), "65636:1");
}

}  // namespace
}  // namespace Routing::Bgp
