// How a content finds its rule: the two levels of rules, and the container that brings them up.
#include <gmock/gmock.h>

#include <functional>
#include <map>
#include <regex>
#include <thread>

#include "agent/FeatureToggles.h"
#include "community/ZoBgpCommunityDedupTable.h"
#include "ip6/ExtCommIp6DedupTable.h"
#include "tests/AllocationCounter.h"
#include "tests/parse/Registered.h"

namespace Routing::Bgp {
namespace {

using Control = BgpParseExtCommControl;
using OpaqueRule = BgpParseExtCommTransOpaqueRule;

/// The object that a parser builds of a content of these two octets: the class, an AS number's
/// width and the classification, always in a new object at the cost of one allocation.
template <class Parse, class Content>
std::string builtBy(Parse parse, const Content& content) {
  parse(content);  // the first of a class enters its name where allocations are counted
  const std::size_t before = allocations;
  const auto comm = parse(content);
  EXPECT_EQ(allocations - before, 1u);
  EXPECT_TRUE(comm->references() == 1 && !comm->isDeduped() && comm->hasNotificationActive());
  EXPECT_EQ(comm->getContent(), content);
  const auto* as =
      dynamic_cast<const ExtCommAsNumber*>(static_cast<const Mox::PtrInterface*>(comm.get()));
  return comm->fwkType().name().substr(21) + (as ? as->fourByteAs() ? "4 " : "2 " : " ") +
         std::to_string(comm->classification());
}
std::string built(const BgpParseExtendedCommunityRule::Ptr& parser, U32 octets) {
  return builtBy([&](const ExtCommContent& c) { return parser->parseExtendedCommunity(c); },
                 ExtCommContent(U64{octets} << 48 | 0xFDE800000064));
}
std::string builtIp6(const BgpParseExtendedCommunityRule::Ptr& parser, U8 type, U8 subtype) {
  return builtBy([&](const ExtCommIp6Content& c) { return parser->parseExtendedCommunityIp6(c); },
                 ExtCommIp6Content{type, subtype, {}, 1});
}

TEST(Parsing, BuildsTheClassThatTheRulesSay) {
  const auto container = bgpParseExtCommContainerSmFactory();
  const auto bare = bgpParseExtendedCommunityRuleFactory(Control());
  std::map<U32, std::string> typed{{0x0002, "RouteTargetAs2 1"},
                                   {0x0102, "RouteTargetIpv4Address 1"},
                                   {0x0202, "RouteTargetAs4 1"},
                                   {0x0003, "RouteOriginAs2 2"},
                                   {0x0103, "RouteOriginIpv4Address 2"},
                                   {0x0203, "RouteOriginAs4 2"},
                                   {0x030b, "Color 8"},
                                   {0x030c, "TunnelEncap 4"},
                                   {0x030d, "DefaultGateway 5"},
                                   {0x4004, "LinkBandwidth2 7"},
                                   {0x4300, "OriginValidationState 9"}};
  const std::string general[] = {" 0", "AsNumber2 0", "Ipv4Address 0", "AsNumber4 0", "Subtyped 0"};
  const std::map<U32, int> types{{0x00, 1}, {0x01, 2}, {0x02, 3}, {0x03, 4}, {0x40, 1}, {0x41, 2},
                                 {0x42, 3}, {0x43, 4}, {0x80, 4}, {0x81, 4}, {0x82, 4}};
  for (U32 octets = 0; octets <= 0xFFFF; ++octets) {
    if (octets & 0xE0) continue;  // no type has such subtypes
    const auto type = types.find(octets >> 8);
    const auto& plain = general[type == types.end() ? 0 : type->second];
    ASSERT_EQ(built(bare, octets), plain) << std::hex << octets;
    ASSERT_EQ(built(container->extCommParser(), octets),
              typed.try_emplace(octets, plain).first->second)
        << std::hex << octets;
  }
  for (const auto& parser : {container->extCommParser(), bare})
    EXPECT_EQ(builtIp6(parser, 0x00, 2) + builtIp6(parser, 0x40, 2) + builtIp6(parser, 0x07, 2),
              "Ip6Subtyped 0Ip6Subtyped 0Ip6 0");
}

// Rules of one's own: one that knows nothing, and some that build plain objects of a mark.
struct NullRule final : BgpParseExtComSubTypeTransOpaqueRuleBase {
  using BgpParseExtComSubTypeTransOpaqueRuleBase::BgpParseExtCommSubTypeRuleBase;
  Mox::Ptr<ExtComm> inhale(const ExtCommContent&) const override { return nullptr; }
};
template <class Base>
struct MarkRule final : Base {
  using Base::Base;
  ~MarkRule() override {
    if (ended) *ended = true;
  }
  Mox::Ptr<typename Base::Object> inhale(const typename Base::Content& content) const override {
    if (act) act();
    return Mox::makeNew<typename Base::Object>(extCommClassificationEvpn, content);
  }
  std::function<void()> act;
  bool* ended = nullptr;
};
const std::string mark = " 3";
using OpaqueMark = MarkRule<BgpParseExtComSubTypeTransOpaqueRuleBase>;
using Ip6Mark = MarkRule<BgpParseExtCommIp6SubTypeTransRuleBase>;
using TypeMark = MarkRule<BgpParseExtendedCommunityTypeRuleBase>;
static_assert(BgpParseExtCommPluginRule<OpaqueMark> && BgpParseExtCommPluginRule<TypeMark>);
static_assert(!BgpParseExtCommPluginRule<BgpParseExtCommIp6SubTypeNonTransRuleBase>);

TEST(Rules, OfOneSubtypeTheLastInstalledServes) {
  using Subtype = BgpExtCommPktSubtypeTransOpaque;
  const auto parser = bgpParseExtendedCommunityRuleFactory(Control());
  const auto rule = Mox::makeNew<OpaqueRule>(Control());
  parser->typeRuleIs(rule);
  const auto first = Mox::makeNew<OpaqueMark>(Control(), Subtype(0x0b));
  for (int twice = 0; twice < 2; ++twice) rule->subTypeRuleIs(first);
  EXPECT_EQ(first->references(), 2u) << "the same one again changes nothing";
  EXPECT_EQ(rule->subTypeRule(Subtype(0x0b)), first);
  EXPECT_EQ(built(parser, 0x030b), mark);
  rule->subTypeRuleIs(Mox::makeNew<NullRule>(Control(), Subtype(0x0b)));
  EXPECT_EQ(first->references(), 1u) << "replaced and released";
  EXPECT_EQ(built(parser, 0x030b), "Subtyped 0") << "null is as good as no rule";

  // 0x0e is no member, and not even looked up; 0x01 and 0x06 are.
  for (const U32 subtype : {0x0e, 0x06, 0x01, 256})
    rule->subTypeRuleIs(Mox::makeNew<OpaqueMark>(Control(), Subtype(subtype)));
  EXPECT_EQ(built(parser, 0x030e) + built(parser, 0x0306), "Subtyped 0" + mark);
  EXPECT_EQ(rule->subTypeRuleDel(Subtype(0x06))->pktSubType(), 6u);
  EXPECT_FALSE(rule->subTypeRuleDel(Subtype(0x06)));
  EXPECT_EQ(built(parser, 0x0306) + built(parser, 0x0301), "Subtyped 0" + mark);
  rule->subTypeRuleDelAll();
  EXPECT_EQ(built(parser, 0x0301), "Subtyped 0");

  const auto ip6 = Mox::makeNew<BgpParseExtCommIp6TransRule>(Control());
  parser->ip6TypeRuleIs(ip6);
  EXPECT_EQ(parser->ip6TypeRule(extCommIp6PktTypeTransIpv6Address), ip6);
  ip6->subTypeRuleIs(Mox::makeNew<Ip6Mark>(Control(), BgpExtCommIp6PktSubtypeTransIpv6Address(2)));
  EXPECT_EQ(builtIp6(parser, 0x00, 2) + builtIp6(parser, 0x00, 3), "Ip6 3Ip6Subtyped 0");
}

TEST(Rules, OutliveTheirRemovalWhileTheyAreAsked) {
  const auto rule = Mox::makeNew<OpaqueRule>(Control());
  auto remover = Mox::makeNew<OpaqueMark>(Control(), BgpExtCommPktSubtypeTransOpaque(0x0b));
  bool ended = false;
  remover->ended = &ended;
  remover->act = [&] {
    rule->subTypeRuleDelAll();
    EXPECT_FALSE(ended);
  };
  rule->subTypeRuleIs(remover);
  remover = nullptr;
  rule->inhale(ExtCommContent(0x030bULL << 48));
  EXPECT_TRUE(ended);
}

// Two threads at one registry without a lock: ThreadSanitizer would tell.
TEST(Rules, EndOnAnyThreadOnceWithdrawn) {
  const auto registry = bgpParseExtCommRuleCollectionsFactory();
  auto parser = bgpParseExtendedCommunityRuleFactory(Control(registry));
  parser->handleDel();
  std::thread elsewhere([last = std::move(parser)]() mutable { last = nullptr; });
  for (int i = 0; i < 1000; ++i) {
    registry->extendedCommunityTypeRuleInstanceIs({});
    registry->extendedCommunityTypeRuleInstanceDel({});
  }
  elsewhere.join();
  auto rule = Mox::makeNew<OpaqueRule>(Control(registry));
  rule->handleDel();
  registry->instanceIs(BgpParseExtCommSubTypeTransOpaqueRuleKey(rule.get()));
  rule = nullptr;
  EXPECT_EQ(registered(registry), 0u) << "a key that was put back by hand";
}

// Every rule that goes is held here: it is not its destructor that takes it out.
TEST(Rules, TypeRulesAreWithdrawnWhenTheyGo) {
  const auto container = bgpParseExtCommContainerSmFactory();
  const auto parser = container->extCommParser();
  const auto registry = container->parseExtCommRuleCollections();
  const auto opaque = parser->typeRule(extCommPktTypeTransOpaque);
  parser->typeRuleIs(opaque);
  EXPECT_EQ(registered(registry), 13u) << "the same one again changes nothing";
  // A type that had no rule, one that has, and one that is no member.
  for (const U32 type : {0x06, 0x03, 0x07})
    parser->typeRuleIs(Mox::makeNew<TypeMark>(Control(), BgpExtCommPktType(type)));
  EXPECT_EQ(built(parser, 0x0603) + built(parser, 0x030b) + built(parser, 0x0700),
            mark + mark + " 0");
  EXPECT_EQ(registered(registry), 12u);
  parser->typeRuleIs(Mox::makeNew<OpaqueRule>(parser->parseControl()));
  EXPECT_EQ(built(parser, 0x030b), "Color 8") << "it has entered itself, and so been filled";

  const auto removed = parser->typeRuleDel(extCommPktTypeTransIpv4Address);
  EXPECT_EQ(removed->pktType(), 0x01u);
  EXPECT_EQ(registered(registry), 12u);
  EXPECT_FALSE(parser->typeRuleDel(extCommPktTypeTransIpv4Address));
  const auto all = parser->typeRules();
  parser->typeRuleDelAll();
  EXPECT_EQ(registered(registry), 2u);
  EXPECT_EQ(built(parser, 0x0102) + built(parser, 0x0002), " 0 0") << "valid, without a rule";

  const auto ip6 = parser->ip6TypeRuleDel(extCommIp6PktTypeTransIpv6Address);
  EXPECT_EQ(registered(registry), 1u);
  const auto again = Mox::makeNew<BgpParseExtCommIp6TransRule>(parser->parseControl());
  parser->ip6TypeRuleIs(again);
  EXPECT_EQ(registered(registry), 2u);
  parser->ip6TypeRuleDelAll();
  EXPECT_EQ(builtIp6(parser, 0x00, 2) + builtIp6(parser, 0x40, 2), "Ip6 0Ip6 0");
  // The kind that no plug-in is offered: initialised, its rule is out of the registry, not in.
  const auto withheld = Mox::makeNew<BgpParseExtCommIp6NonTransRule>(parser->parseControl());
  registry->instanceIs(BgpParseExtCommIp6SubTypeNonTransRuleKey(withheld.get()));
  withheld->handleInitialized();
  EXPECT_EQ(registered(registry), 1u);
}

TEST(Rules, ANullIsRefused) {
  const auto container = bgpParseExtCommContainerSmFactory();
  const auto parser = container->extCommParser();
  const auto opaque = Mox::makeNew<OpaqueRule>(Control());
  const auto ip6 = Mox::makeNew<BgpParseExtCommIp6NonTransRule>(Control());
  const char* const sms = "BgpParseExtCommContainerSm";
  const std::tuple<std::function<void()>, const char*, std::string> cases[] = {
      {[&] { parser->typeRuleIs(nullptr); }, "BgpParseExtendedCommunityRule", "typeRule"},
      {[&] { parser->ip6TypeRuleIs(nullptr); }, "BgpParseExtendedCommunityRule", "ip6TypeRule"},
      {[&] { opaque->subTypeRuleIs(nullptr); }, "BgpParseExtCommTransOpaqueRule", "subTypeRule"},
      {[&] { ip6->subTypeRuleIs(nullptr); }, "BgpParseExtCommIp6NonTransRule", "subTypeRule"},
      {[&] { container->extCommParserSmsEnq(nullptr); }, sms, "extCommParserSms"},
      {[&] { container->extCommParserSmsIs(0, nullptr); }, sms, "extCommParserSms"},
      {[] { extCommDedupTableFactory(nullptr); }, "ExtCommDedupTable", "parseExtCommRule"},
      {[] { extCommIp6DedupTableFactory(nullptr); }, "ExtCommIp6DedupTable", "parseExtCommRule"}};
  for (const auto& [act, owner, attribute] : cases)
    EXPECT_THAT(act, testing::ThrowsMessage<Mox::RangeException>(
                         "null _" + attribute + " parameter to mutator for Routing::Bgp::" + owner +
                         "::" + attribute + " not allowed\""));
}

TEST(RulesDeathTest, MisuseEndsTheProcess) {
  const auto sm = BgpParseExtCommPluginBaseSmIs(bgpParseExtCommRuleCollectionsFactory());
  const auto subRule = Mox::makeNew<NullRule>(Control(), BgpExtCommPktSubtypeTransOpaque(0x0b));
  const char* const override = "0 && \"Must override in derived class\"";
  const std::pair<std::function<void()>, std::string> cases[] = {
      {[&] { BgpParseExtComSubTypeTransGenericRuleBase(Control(), {}).inhale({}); }, override},
      {[&] { BgpParseExtendedCommunityIp6TypeRuleBase(Control(), {}).inhale({}); }, override},
      {[&] { sm->addExtCommSubTypeTransOpaqueSubRule({}, nullptr); }, "rule != __null"},
      {[&] { sm->addExtCommIp6SubTypeTransSubRule({}, nullptr); }, "rule != __null"},
      {[&] { sm->addExtendedCommunityTypeSubRule({}, nullptr); }, "__null != rule"},
      {[&] { sm->addExtCommSubTypeTransOpaqueSubRule({}, subRule); }, "__null != ruleKey.rule()"},
      {[] { ExtComm::dedupContent(nullptr, {}); }, "__null != table"},
      {[] { ExtCommIp6::dedupContent(nullptr, {}); }, "__null != table"}};
  for (const auto& [act, text] : cases)
    EXPECT_DEATH(act(), ": " + std::regex_replace(text, std::regex("[()]"), "\\$&") + "\n");
}

TEST(Container, HasItsPluginsInOrderAndTheirSubRules) {
  const auto container = bgpParseExtCommContainerSmFactory();
  const auto parser = container->extCommParser();
  for (const Mox::PtrInterface* object : std::initializer_list<const Mox::PtrInterface*>{
           &*container, &*parser, &*container->extCommCache(),
           &*container->parseExtCommRuleCollections(),
           &*parser->ip6TypeRule(extCommIp6PktTypeTransIpv6Address)})
    EXPECT_TRUE(object->hasNotificationActive()) << object->fwkType().name();
  for (const auto& [index, sm] : container->extCommParserSms())
    EXPECT_TRUE(sm->hasNotificationActive()) << index;
  std::string text = Mox::Type::read(*container, "extCommParserSms");
  for (const auto& rule : parser->typeRules()) {
    EXPECT_TRUE(rule->hasNotificationActive());
    text += "; " + Mox::Type::read(*rule, "subTypeRule");
  }
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
  EXPECT_EQ(registered(registry), 0u);
  EXPECT_EQ(built(old, 0x030b), "Color 8");
  EXPECT_EQ(built(bare, 0x030b), "Subtyped 0");
  const auto last = container->extCommParserIs(Control(registry));
  EXPECT_EQ(container->extCommParserDel(), last);
  EXPECT_EQ(registered(registry), 0u);
  EXPECT_FALSE(container->extCommParserDel());
  EXPECT_EQ(container->parseExtCommRuleCollectionsDel(), registry);
  EXPECT_FALSE(container->parseExtCommRuleCollections());
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
  const auto both = [&] {
    return Mox::Type::read(*cache, "extCommToString") + " | " +
           Mox::Type::read(*cache, "extCommToAsdotString");
  };
  cache->insert(content, "65636:1", false);
  EXPECT_EQ(cache->lookup(content, true), "");
  for (const char* text : {"1.100:0", "1.100:1"}) cache->insert(content, text, true);
  EXPECT_EQ(both(), "144678142330798081: 65636:1 | 144678142330798081: 1.100:1");
  cache->extCommToStringIs(swapped, "other");
  EXPECT_THAT(both(), testing::HasSubstr(", "));
  EXPECT_EQ(cache->lookup(content, false) + cache->lookup(swapped, false), "65636:1other");
  EXPECT_EQ(cache->lookup(content, true), "1.100:1");
  EXPECT_EQ(cache->extCommToStringDel(swapped) + cache->extCommToStringDel(swapped), "other");
  cache->extCommToAsdotStringDelAll();
  EXPECT_EQ(both(), "144678142330798081: 65636:1 | ");
  cache->extCommToAsdotStringIs(content, "1.100:2");
  cache->extCommToStringDelAll();
  EXPECT_EQ(both(), " | 144678142330798081: 1.100:2");
  EXPECT_EQ(cache->extCommToAsdotStringDel(content), "1.100:2");
  EXPECT_EQ(both(), " | ");
}

}  // namespace
}  // namespace Routing::Bgp
