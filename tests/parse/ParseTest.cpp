// What becomes of a content: the classes and classifications, over every pair of octets.
#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>

#include "ParseHelp.h"

namespace parsing {
namespace {

struct Expected {
  std::string kind;  // without ExtComm
  ExtCommClassification classification = extCommClassificationUnSpecified;
  int fourByteAs = -1;  // -1: has none
  auto operator<=>(const Expected&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Expected& e) {
  return out << e.kind << ' ' << e.classification << ' ' << e.fourByteAs;
}

Expected seen(const ExtComm& comm) {
  const auto* as = dynamic_cast<const ExtCommAsNumber*>(&comm);
  return {comm.fwkType().name().substr(std::string("Routing::Bgp::ExtComm").size()),
          comm.classification(), as ? int(as->fourByteAs()) : -1};
}

// Type and subtype in one number. What is not here is told by its type alone.
const std::map<U32, Expected> typed = {
    {0x0002, {"RouteTargetAs", extCommClassificationRouteTarget, 0}},
    {0x0102, {"RouteTargetIpv4Address", extCommClassificationRouteTarget}},
    {0x0202, {"RouteTargetAs", extCommClassificationRouteTarget, 1}},
    {0x0003, {"RouteOriginAs", extCommClassificationRouteOrigin, 0}},
    {0x0103, {"RouteOriginIpv4Address", extCommClassificationRouteOrigin}},
    {0x0203, {"RouteOriginAs", extCommClassificationRouteOrigin, 1}},
    {0x030b, {"Color", extCommClassificationColor}},
    {0x030c, {"TunnelEncap", extCommClassificationTunnelEncap}},
    {0x030d, {"DefaultGateway", extCommClassificationDefaultGateway}},
    {0x4004, {"LinkBandwidth", extCommClassificationLinkBandwidth, 0}},
    {0x4300, {"OriginValidationState", extCommClassificationOriginValidationState}},
};
const std::map<U32, Expected> byType = {
    {0x00, {"AsNumber", {}, 0}}, {0x01, {"Ipv4Address"}},     {0x02, {"AsNumber", {}, 1}},
    {0x03, {"Subtyped"}},        {0x80, {"Subtyped"}},        {0x81, {"Subtyped"}},
    {0x82, {"Subtyped"}},        {0x40, {"AsNumber", {}, 0}}, {0x41, {"Ipv4Address"}},
    {0x42, {"AsNumber", {}, 1}}, {0x43, {"Subtyped"}},
};

Expected expected(U32 octets) {
  if (const auto row = typed.find(octets); row != typed.end()) return row->second;
  const auto row = byType.find(octets >> 8);
  return row != byType.end() ? row->second : Expected{""};
}

TEST(Parsing, EveryTypeAndSubtypeGivesANewObjectOfItsClass) {
  const auto container = bgpParseExtCommContainerSmFactory();
  std::mt19937_64 random(1);
  std::set<Expected> classes;
  for (U32 octets = 0; octets <= 0xFFFF; ++octets) {
    const ExtCommContent content(U64{octets} << 48 | random() >> 16);
    const auto comm = container->extCommParser()->parseExtendedCommunity(content);
    ASSERT_TRUE(comm);
    ASSERT_EQ(seen(*comm), expected(octets)) << std::hex << octets;
    ASSERT_EQ(comm->getContent(), content);
    ASSERT_EQ(comm->references(), 1u);
    ASSERT_FALSE(comm->isDeduped());
    ASSERT_TRUE(comm->hasNotificationActive());
    classes.insert(seen(*comm));
  }
  EXPECT_EQ(classes.size(), 11u + 5u) << "every row came out";
}

TEST(Parsing, EveryIp6TypeAndSubtypeIsGeneric) {
  const auto container = bgpParseExtCommContainerSmFactory();
  for (U32 octets = 0; octets <= 0xFFFF; ++octets) {
    const ExtCommIp6Content content(U8(octets >> 8), U8(octets), Zonet::Ip6Addr(), U16(octets));
    const auto comm = container->extCommParser()->parseExtendedCommunityIp6(content);
    ASSERT_TRUE(comm);
    ASSERT_EQ(comm->fwkType().name(), octets >> 8 == 0 || octets >> 8 == 0x40
                                          ? "Routing::Bgp::ExtCommIp6Subtyped"
                                          : "Routing::Bgp::ExtCommIp6");
    ASSERT_EQ(comm->classification(), extCommClassificationUnSpecified);
    ASSERT_EQ(comm->getContent(), content);
    ASSERT_TRUE(comm->hasNotificationActive());
  }
}

TEST(Parsing, CostsOneAllocation) {
  const auto container = bgpParseExtCommContainerSmFactory();
  for (const U64 content : {0x0002FDE800000064ULL, 0x0005ULL << 48, 0x0600ULL << 48, ~0ULL}) {
    const auto parse = [&] {
      container->extCommParser()->parseExtendedCommunity(ExtCommContent(content));
    };
    parse();  // the first of a class enters its name where allocations are counted
    const std::size_t before = allocations;
    parse();
    EXPECT_EQ(allocations - before, 1u) << std::hex << content;
  }
}

TEST(Parsing, WithoutPluginsEveryTypeGivesItsGeneralObject) {
  const auto parser = bgpParseExtendedCommunityRuleFactory(BgpParseExtCommControl());
  for (const auto& [octets, row] : typed)
    EXPECT_EQ(seen(*parse(parser, octets)), expected((octets & 0xFF00) | 0xFF))
        << std::hex << octets;
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
using Subtype = BgpExtCommPktSubtypeTransOpaque;
using SubRule = MarkRule<BgpParseExtComSubTypeTransOpaqueRuleBase>;

TEST(Rules, OfOneSubtypeTheLastInstalledServes) {
  const BgpParseExtCommControl control;
  const auto rule = Mox::makeNew<BgpParseExtCommTransOpaqueRule>(control);
  const auto inhale = [&](U32 subtype) {
    return seen(*rule->inhale(ExtCommContent(U64{0x0300 | subtype} << 48))).kind;
  };
  const auto first = Mox::makeNew<SubRule>(control, Subtype(0x0b));
  rule->subTypeRuleIs(first);
  rule->subTypeRuleIs(first);
  EXPECT_EQ(first->references(), 2u) << "the same one again changes nothing";
  EXPECT_EQ(inhale(0x0b), "") << "a plain ExtComm";
  rule->subTypeRuleIs(Mox::makeNew<NullRule>(control, Subtype(0x0b)));
  EXPECT_EQ(first->references(), 1u) << "replaced and released";
  EXPECT_EQ(inhale(0x0b), "Subtyped") << "null is as good as no rule";

  // 0x0e is no member, 0x01 and 0x06 are.
  for (const U32 subtype : {0x0e, 0x06, 0x01, 256})
    rule->subTypeRuleIs(Mox::makeNew<SubRule>(control, Subtype(subtype)));
  EXPECT_EQ(inhale(0x0e), "Subtyped") << "not even looked up";
  EXPECT_EQ(inhale(0x06) + inhale(0x01), "");
  EXPECT_EQ(rule->subTypeRule(Subtype(0x0e))->pktSubType(), 0x0eu);
  std::string order;
  for (const auto& subRule : rule->subTypeRules())
    order += Mox::valueToStrep(subRule->pktSubType()) + ' ';
  EXPECT_EQ(
      order,
      "extCommPktSubtypeTransOpaqueCostCommunity extCommPktSubtypeTransOpaqueOspfRouteType "
      "extCommPktSubtypeTransOpaqueColorExtendedCommunity 14 extCommPktSubtypeTransOpaqeUnknown ");
  EXPECT_EQ(rule->subTypeRuleDel(Subtype(0x06))->pktSubType(), 6u);
  EXPECT_FALSE(rule->subTypeRuleDel(Subtype(0x06)));
  EXPECT_EQ(inhale(0x06), "Subtyped");
  rule->subTypeRuleDelAll();
  EXPECT_EQ(rule->subTypeRules().size(), 0u);
}

TEST(Rules, TypeRulesOfOthersTakeTheirPlace) {
  const auto container = bgpParseExtCommContainerSmFactory();
  const auto parser = container->extCommParser();
  const auto registry = container->parseExtCommRuleCollections();
  using TypeRule = MarkRule<BgpParseExtendedCommunityTypeRuleBase>;
  const BgpParseExtCommControl& control = parser->parseControl();

  // A type that had no rule, one that has (and is held besides), and one that is no member.
  const auto held = parser->typeRule(extCommPktTypeTransOpaque);
  for (const U32 type : {0x06, 0x03, 0x07})
    parser->typeRuleIs(Mox::makeNew<TypeRule>(control, BgpExtCommPktType(type)));
  EXPECT_EQ(parse(parser, 0x0603)->classification(), extCommClassificationEvpn);
  EXPECT_EQ(parse(parser, 0x030b)->classification(), extCommClassificationEvpn);
  EXPECT_EQ(parse(parser, 0x0700)->classification(), extCommClassificationUnSpecified);
  EXPECT_TRUE(registry->extendedCommSubTypeTransOpaqueRuleInstance().empty()) << "withdrawn";

  // The library's rule again: it has entered itself, and so been filled.
  parser->typeRuleIs(Mox::makeNew<BgpParseExtCommTransOpaqueRule>(control));
  EXPECT_EQ(registry->extendedCommSubTypeTransOpaqueRuleInstance().size(), 1u);
  EXPECT_EQ(seen(*parse(parser, 0x030b)), expected(0x030b));

  EXPECT_EQ(parser->typeRuleDel(extCommPktTypeTransIpv4Address)->pktType(), 0x01u);
  EXPECT_TRUE(registry->extendedCommSubTypeTransIpv4AddressRuleInstance().empty());
  EXPECT_EQ(seen(*parse(parser, 0x0102)).kind, "") << "a valid type without a rule";
  parser->typeRuleDelAll();
  EXPECT_EQ(seen(*parse(parser, 0x0002)).kind, "");

  const ExtCommIp6Content route(0, 2, Zonet::Ip6Addr(), 1);
  EXPECT_TRUE(parser->ip6TypeRuleDel(extCommIp6PktTypeTransIpv6Address));
  EXPECT_FALSE(parser->ip6TypeRule(extCommIp6PktTypeTransIpv6Address));
  EXPECT_EQ(&parser->parseExtendedCommunityIp6(route)->fwkType(), &ExtCommIp6::type);
  parser->ip6TypeRuleDelAll();
  EXPECT_TRUE(registry->extendedCommIp6SubTypeTransRuleInstance().empty());
}

TEST(Rules, ANullIsRefused) {
  const auto container = bgpParseExtCommContainerSmFactory();
  const auto parser = container->extCommParser();
  const BgpParseExtCommControl control;
  const auto opaque = Mox::makeNew<BgpParseExtCommTransOpaqueRule>(control);
  const auto ip6 = Mox::makeNew<BgpParseExtCommIp6NonTransRule>(control);
  const struct {
    std::function<void()> act;
    const char *attribute, *owner;
  } cases[] = {
      {[&] { parser->typeRuleIs(nullptr); }, "typeRule", "BgpParseExtendedCommunityRule"},
      {[&] { parser->ip6TypeRuleIs(nullptr); }, "ip6TypeRule", "BgpParseExtendedCommunityRule"},
      {[&] { opaque->subTypeRuleIs(nullptr); }, "subTypeRule", "BgpParseExtCommTransOpaqueRule"},
      {[&] { ip6->subTypeRuleIs(nullptr); }, "subTypeRule", "BgpParseExtCommIp6NonTransRule"},
      {[&] { container->extCommParserSmsEnq(nullptr); }, "extCommParserSms",
       "BgpParseExtCommContainerSm"},
  };
  for (const auto& c : cases) {
    const std::string attribute = c.attribute;
    EXPECT_EQ(raised<Mox::RangeException>(c.act),
              "null _" + attribute + " parameter to mutator for Routing::Bgp::" + c.owner +
                  "::" + attribute + " not allowed\"");
  }
}

TEST(RulesDeathTest, MisuseEndsTheProcess) {
  const auto container = bgpParseExtCommContainerSmFactory();
  const auto registry = container->parseExtCommRuleCollections();
  const BgpParseExtCommControl control;
  const BgpParseExtCommPluginBaseSm::Ptr sm = BgpParseExtCommPluginBaseSmIs(registry);
  const struct {
    std::function<void()> act;
    std::string text;
  } cases[] = {
      {[&] { BgpParseExtComSubTypeTransGenericRuleBase(control, {}).inhale({}); },
       R"(0 && "Must override in derived class")"},
      {[&] { BgpParseExtendedCommunityIp6TypeRuleBase(control, {}).inhale({}); },
       R"(0 && "Must override in derived class")"},
      {[&] { sm->addExtCommSubTypeTransOpaqueSubRule({}, nullptr); }, "rule != __null"},
      {[&] { sm->addExtCommIp6SubTypeTransSubRule({}, nullptr); }, "rule != __null"},
      {[&] { sm->addExtendedCommunityTypeSubRule({}, nullptr); }, "__null != rule"},
  };
  for (const auto& c : cases) EXPECT_DEATH(c.act(), ": " + c.text + "\n");
}

}  // namespace
}  // namespace parsing
