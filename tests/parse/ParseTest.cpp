// How a content finds its rule: the two levels of rules, and the container that brings them up.
#include "tests/parse/Parsing.h"

namespace Routing::Bgp {
namespace {

/// The object that a parser builds of a content of these two octets: the class, an AS number's
/// width and the classification, always in a new object at the cost of one allocation.
std::string builtBy(const BgpParseExtendedCommunityRule::Ptr& parser, const auto& content) {
  const auto parse = [&] {
    if constexpr (std::is_same_v<decltype(content), const ExtCommContent&>)
      return parser->parseExtendedCommunity(content);
    else
      return parser->parseExtendedCommunityIp6(content);
  };
  parse();  // the first of a class enters its name where allocations are counted
  const std::size_t before = allocations;
  const auto comm = parse();
  EXPECT_EQ(allocations - before, 1u);
  EXPECT_TRUE(comm->references() == 1 && !comm->isDeduped() && comm->hasNotificationActive());
  EXPECT_EQ(comm->getContent(), content);
  const auto* as =
      dynamic_cast<const ExtCommAsNumber*>(static_cast<const Mox::PtrInterface*>(comm.get()));
  return comm->fwkType().name().substr(21) + (as ? as->fourByteAs() ? "4 " : "2 " : " ") +
         std::to_string(comm->classification());
}
std::string built(const BgpParseExtendedCommunityRule::Ptr& parser, auto... octets) {
  return (builtBy(parser, ExtCommContent(U64(octets) << 48 | 0xFDE800000064)) + ...);
}
std::string builtIp6(const BgpParseExtendedCommunityRule::Ptr& parser, auto... octets) {
  return (builtBy(parser, ExtCommIp6Content{U8(octets >> 8), U8(octets), {}, 1}) + ...);
}

TEST_F(Parsing, BuildsTheClassThatTheRulesSay) {
  const auto bare = newParser();
  // clang-format off
  std::map<U32, std::string> typed = {
      {0x0002, "RouteTargetAs2 1"}, {0x0102, "RouteTargetIpv4Address 1"}, {0x0202, "RouteTargetAs4 1"},
      {0x0003, "RouteOriginAs2 2"}, {0x0103, "RouteOriginIpv4Address 2"}, {0x0203, "RouteOriginAs4 2"},
      {0x030b, "Color 8"}, {0x030c, "TunnelEncap 4"}, {0x030d, "DefaultGateway 5"},
      {0x4004, "LinkBandwidth2 7"}, {0x4300, "OriginValidationState 9"}};
  // clang-format on
  const std::string general[] = {" 0", "AsNumber2 0", "Ipv4Address 0", "AsNumber4 0", "Subtyped 0"};
  const std::map<U32, int> types{{0x00, 1}, {0x01, 2}, {0x02, 3}, {0x03, 4}, {0x40, 1}, {0x41, 2},
                                 {0x42, 3}, {0x43, 4}, {0x80, 4}, {0x81, 4}, {0x82, 4}};
  for (U32 octets = 0; octets <= 0xFFFF; ++octets) {
    if (octets & 0xE0) continue;  // no type has such subtypes
    const auto type = types.find(octets >> 8);
    const auto& plain = general[type == types.end() ? 0 : type->second];
    const auto& own = typed.try_emplace(octets, plain).first->second;
    ASSERT_EQ(built(bare, octets), plain) << std::hex << octets;
    ASSERT_EQ(built(parser, octets), own) << std::hex << octets;
  }
  for (const auto& any : {parser, bare})
    EXPECT_EQ(builtIp6(any, 0x0002, 0x4002, 0x0702), "Ip6Subtyped 0Ip6Subtyped 0Ip6 0");
}

const std::string mark = " 3";
using OpaqueMark = MarkRule<BgpParseExtComSubTypeTransOpaqueRuleBase>;
using Ip6Mark = MarkRule<BgpParseExtCommIp6SubTypeTransRuleBase>;
using TypeMark = MarkRule<BgpParseExtendedCommunityTypeRuleBase>;
static_assert(BgpParseExtCommPluginRule<OpaqueMark> && BgpParseExtCommPluginRule<TypeMark>);
static_assert(!BgpParseExtCommPluginRule<BgpParseExtCommIp6SubTypeNonTransRuleBase>);

TEST(Rules, OfOneSubtypeTheLastInstalledServes) {
  const auto parser = newParser();
  const auto rule = Mox::makeNew<OpaqueRule>(Control());
  parser->typeRuleIs(rule);
  const auto subtypeRule = [](U32 subtype) {
    return Mox::makeNew<OpaqueMark>(Control(), OpaqueSubtype(subtype));
  };
  const auto first = subtypeRule(0x0b);
  for (int twice = 0; twice < 2; ++twice) rule->subTypeRuleIs(first);
  EXPECT_EQ(row(first->references(), built(parser, 0x030b)), "2 " + mark);  // put in once
  EXPECT_EQ(rule->subTypeRule(OpaqueSubtype(0x0b)), first);
  const auto second = subtypeRule(0x0b);
  second->act = [] { return false; };
  rule->subTypeRuleIs(second);
  // The first is replaced and released; null is as good as no rule.
  EXPECT_EQ(row(first->references(), built(parser, 0x030b)), "1 Subtyped 0");

  // 0x0e is no member, and not even looked up; 0x01 and 0x06 are.
  for (const U32 subtype : {0x0e, 0x06, 0x01, 256}) rule->subTypeRuleIs(subtypeRule(subtype));
  EXPECT_EQ(built(parser, 0x030e, 0x0306), "Subtyped 0" + mark);
  EXPECT_EQ(rule->subTypeRuleDel(OpaqueSubtype(0x06))->pktSubType(), 6u);
  EXPECT_FALSE(rule->subTypeRuleDel(OpaqueSubtype(0x06)));
  EXPECT_EQ(built(parser, 0x0306, 0x0301), "Subtyped 0" + mark);

  rule->subTypeRuleDelAll();
  EXPECT_EQ(row(second->references(), built(parser, 0x0301)), "1 Subtyped 0");

  const auto ip6 = Mox::makeNew<BgpParseExtCommIp6TransRule>(Control());
  parser->ip6TypeRuleIs(ip6);
  EXPECT_EQ(parser->ip6TypeRule(extCommIp6PktTypeTransIpv6Address), ip6);
  ip6->subTypeRuleIs(Mox::makeNew<Ip6Mark>(Control(), BgpExtCommIp6PktSubtypeTransIpv6Address(2)));
  EXPECT_EQ(builtIp6(parser, 0x0002, 0x0003), "Ip6 3Ip6Subtyped 0");
}

// Two threads at one registry without a lock: ThreadSanitizer would tell.
TEST(Rules, EndOnAnyThreadOnceWithdrawn) {
  const auto registry = bgpParseExtCommRuleCollectionsFactory();
  auto parser = newParser(registry);
  parser->handleDel();
  std::jthread elsewhere([last = std::move(parser)]() mutable { last = nullptr; });
  for (int i = 0; i < 1000; ++i) {
    registry->extendedCommunityTypeRuleInstanceIs({});
    registry->extendedCommunityTypeRuleInstanceDel({});
  }
  auto rule = Mox::makeNew<OpaqueRule>(Control(registry));
  rule->handleDel();
  registry->instanceIs(BgpParseExtCommSubTypeTransOpaqueRuleKey(rule.get()));
  rule = nullptr;
  EXPECT_EQ(registered(registry), 0u) << "a key that was put back by hand";
}

// Every rule that goes is held here: it is not its destructor that takes it out.
TEST_F(Parsing, WithdrawsTypeRulesWhenTheyGo) {
  const auto opaque = parser->typeRule(extCommPktTypeTransOpaque);
  parser->typeRuleIs(opaque);
  EXPECT_EQ(registered(registry), 13u) << "the same one again changes nothing";
  // A type that had no rule, one that has, and one that is no member.
  for (const U32 type : {0x06, 0x03, 0x07})
    parser->typeRuleIs(Mox::makeNew<TypeMark>(Control(), BgpExtCommPktType(type)));
  EXPECT_EQ(row(registered(registry), built(parser, 0x0603, 0x030b, 0x0700)), "12  3 3 0");
  parser->typeRuleIs(Mox::makeNew<OpaqueRule>(parser->parseControl()));
  EXPECT_EQ(built(parser, 0x030b), "Color 8") << "it has entered itself, and so been filled";

  const auto removed = parser->typeRuleDel(extCommPktTypeTransIpv4Address);
  EXPECT_EQ(row(U32(removed->pktType()), registered(registry)), "1 12");
  EXPECT_FALSE(parser->typeRuleDel(extCommPktTypeTransIpv4Address));
  const auto all = parser->typeRules();
  parser->typeRuleDelAll();
  EXPECT_EQ(row(registered(registry), built(parser, 0x0102, 0x0002)), "2  0 0") << "all valid";

  const auto ip6 = parser->ip6TypeRuleDel(extCommIp6PktTypeTransIpv6Address);
  EXPECT_EQ(registered(registry), 1u);
  const auto again = Mox::makeNew<BgpParseExtCommIp6TransRule>(parser->parseControl());
  parser->ip6TypeRuleIs(again);
  EXPECT_EQ(registered(registry), 2u);
  parser->ip6TypeRuleDelAll();
  EXPECT_EQ(builtIp6(parser, 0x0002, 0x4002), "Ip6 0Ip6 0");
  // The kind that no plug-in is offered: initialised, its rule is out of the registry, not in.
  const auto withheld = Mox::makeNew<BgpParseExtCommIp6NonTransRule>(parser->parseControl());
  registry->instanceIs(BgpParseExtCommIp6SubTypeNonTransRuleKey(withheld.get()));
  withheld->handleInitialized();
  EXPECT_EQ(registered(registry), 1u);
}

TEST_F(Parsing, RefusesANull) {
  const auto opaque = Mox::makeNew<OpaqueRule>(Control());
  const auto ip6 = Mox::makeNew<BgpParseExtCommIp6NonTransRule>(Control());
  const auto open = bgpParseExtCommOpenTypeRuleIs(*parser, extCommPktTypeTransEvpn);
  // clang-format off
  const std::pair<std::function<void()>, std::string> cases[] = {
      {[&] { parser->typeRuleIs(nullptr); }, "BgpParseExtendedCommunityRule::typeRule"},
      {[&] { parser->ip6TypeRuleIs(nullptr); }, "BgpParseExtendedCommunityRule::ip6TypeRule"},
      {[&] { opaque->subTypeRuleIs(nullptr); }, "BgpParseExtCommTransOpaqueRule::subTypeRule"},
      {[&] { ip6->subTypeRuleIs(nullptr); }, "BgpParseExtCommIp6NonTransRule::subTypeRule"},
      {[&] { open->subTypeRuleIs(nullptr); }, "BgpParseExtCommOpenTypeRule::subTypeRule"},
      {[&] { container->extCommParserSmsEnq(nullptr); }, "BgpParseExtCommContainerSm::extCommParserSms"},
      {[&] { container->extCommParserSmsIs(0, nullptr); }, "BgpParseExtCommContainerSm::extCommParserSms"},
      {[] { extCommDedupTableFactory(nullptr); }, "ExtCommDedupTable::parseExtCommRule"},
      {[] { extCommIp6DedupTableFactory(nullptr); }, "ExtCommIp6DedupTable::parseExtCommRule"}};
  // clang-format on
  for (const auto& [act, name] : cases) EXPECT_EQ(raised(act), nullRefused(name));
  const auto foreign =
      Mox::makeNew<BgpParseExtCommOpenSubTypeRuleBase>(Control(), extCommPktTypeTransQosMarking, 3);
  EXPECT_EQ(raised([&] { open->subTypeRuleIs(foreign); }),
            "range: a sub-rule of extCommPktTypeTransQosMarking in a rule of "
            "extCommPktTypeTransEvpn");
}

TEST(RulesDeathTest, MisuseEndsTheProcess) {
  const auto sm = BgpParseExtCommPluginBaseSmIs(bgpParseExtCommRuleCollectionsFactory());
  const auto subRule = Mox::makeNew<OpaqueMark>(Control(), OpaqueSubtype(0x0b));
  const char* const override = "0 && \"Must override in derived class\"";
  const std::pair<std::function<void()>, std::string> cases[] = {
      {[&] { BgpParseExtComSubTypeTransGenericRuleBase(Control(), {}).inhale({}); }, override},
      {[&] { BgpParseExtendedCommunityIp6TypeRuleBase(Control(), {}).inhale({}); }, override},
      {[&] { sm->addExtCommSubTypeTransOpaqueSubRule({}, nullptr); }, "rule != __null"},
      {[&] { sm->addExtCommIp6SubTypeTransSubRule({}, nullptr); }, "rule != __null"},
      {[&] { sm->addExtendedCommunityTypeSubRule({}, nullptr); }, "__null != rule"},
      {[&] { sm->addExtCommSubTypeTransOpaqueSubRule({}, subRule); }, "__null != ruleKey.rule()"},
      {[&] { BgpParseExtCommOpenSubTypeRuleBase(Control(), {}, 0).inhale({}); }, override},
      {[&] { sm->addExtCommOpenTypeSubRule({}, nullptr); }, "__null != rule"},
      {[] { ExtComm::dedupContent(nullptr, {}); }, "__null != table"},
      {[] { ExtCommIp6::dedupContent(nullptr, {}); }, "__null != table"}};
  for (const auto& [act, text] : cases)
    EXPECT_DEATH(act(), ": " + std::regex_replace(text, std::regex("[()]"), "\\$&") + "\n");
}

TEST_F(Parsing, HasItsPluginsInOrderAndTheirSubRules) {
  const std::string text =
      Mox::Type::read(*container, "extCommParserSms") + "; " +
      Mox::Type::read(*parser->typeRule(extCommPktTypeTransOpaque), "subTypeRule");
  const std::regex common("Routing::Bgp::BgpParseExtCom(m|SubType)");
  EXPECT_EQ(std::regex_replace(text, common, ""),
            "0: RouteOriginSm, 1: RouteTargetSm, 2: TunnelEncapSm, 3: DefaultGatewaySm, "
            "4: LinkBandwidthSm, 5: ColorSm, 6: OriginValidationStateSm; 11: TransOpaqueColorRule, "
            "12: TransOpaqueTunnelEncapRule, 13: TransOpaqueDefaultGatewayRule");
}

TEST_F(Parsing, WithdrawsTheParserThatItReplaces) {
  EXPECT_EQ(container->parseExtCommRuleCollectionsIs(), registry);
  EXPECT_EQ(container->extCommParserIs(Control(registry)), parser) << "an equal control";
  const auto bare = container->extCommParserIs(Control());
  EXPECT_EQ(registered(registry), 0u);
  EXPECT_EQ(built(parser, 0x030b) + built(bare, 0x030b), "Color 8Subtyped 0");
  const auto last = container->extCommParserIs(Control(registry));
  EXPECT_EQ(container->extCommParserDel(), last);
  EXPECT_EQ(container->parseExtCommRuleCollectionsDel(), registry);
  EXPECT_EQ(row(registered(registry), container->extCommParserDel(),
                container->parseExtCommRuleCollections()),
            "0 NULL NULL");
}

TEST_F(Parsing, QueueHandsOutEveryIndexOnce) {
  const BgpParseExtCommPluginBaseSm::PtrConst sm = BgpParseExtCommPluginBaseSmIs(nullptr);
  container->extCommParserSmsIs(20, sm);
  EXPECT_EQ(container->extCommParserSmsMetadata().nextIndex, 7u);
  for (const U64 behindTheLast : {21, 22}) {  // which is not handed out again
    EXPECT_EQ(container->extCommParserSmsEnq(sm), behindTheLast);
    container->extCommParserSmsDel(behindTheLast);
  }
  const auto front = container->extCommParserSms(0);
  EXPECT_EQ(container->extCommParserSmsDeq(), front);
  EXPECT_FALSE(container->extCommParserSms(0));
  container->extCommParserSmsIs(0xFFFFFFFE, sm);
  EXPECT_EQ(container->extCommParserSmsEnq(sm), 0xFFFFFFFF);
  container->extCommParserSmsDelAll();
  EXPECT_FALSE(container->extCommParserSmsDeq());
  EXPECT_EQ(raised([&] { container->extCommParserSmsEnq(sm); }),
            "range: linkqueue index space full");
}

TEST(ContainerDeathTest, ReadsTheToggleOncePerProcess) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto inAFreshProcess = [] {
    std::string classes;
    for (const bool toggle : {false, true}) {
      featureToggleIs("RpkiToggle", toggle);
      classes += built(bgpParseExtCommContainerSmFactory()->extCommParser(), 0x4300);
    }
    std::exit(classes == "Subtyped 0Subtyped 0" ? 0 : 1);
  };
  EXPECT_EXIT(inAFreshProcess(), testing::ExitedWithCode(0), "");
}

TEST_F(Parsing, CacheKeepsTheTwoNotationsApart) {
  const auto cache = container->extCommCache();
  const U64 content = 0x0202000100640001, swapped = 0x0064000102020001;  // of one hash
  const auto texts = [&] {
    return row(Mox::Type::read(*cache, "extCommToString"), '|',
               Mox::Type::read(*cache, "extCommToAsdotString"));
  };
  cache->insert(content, "65636:1", false);
  EXPECT_EQ(cache->lookup(content, true), "");
  for (const char* text : {"1.100:0", "1.100:1"}) cache->insert(content, text, true);
  EXPECT_EQ(texts(), "144678142330798081: 65636:1 | 144678142330798081: 1.100:1");
  cache->extCommToStringIs(swapped, "other");
  EXPECT_THAT(texts(), testing::HasSubstr(", "));
  EXPECT_EQ(row(cache->lookup(content, false), cache->lookup(swapped, false),
                cache->lookup(content, true)),
            "65636:1 other 1.100:1");
  for (const char* there : {"other", ""}) EXPECT_EQ(cache->extCommToStringDel(swapped), there);
  cache->extCommToAsdotStringDelAll();
  EXPECT_EQ(texts(), "144678142330798081: 65636:1 | ");
  cache->extCommToStringDelAll();
  cache->extCommToAsdotStringIs(content, "1.100:2");
  EXPECT_EQ(texts(), " | 144678142330798081: 1.100:2");
  EXPECT_EQ(cache->extCommToAsdotStringDel(content), "1.100:2");
  EXPECT_EQ(texts(), " | ");
}

}  // namespace
}  // namespace Routing::Bgp
