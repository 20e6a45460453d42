// Types that the library has no rule for: plug-ins that know nothing of each other share them.
#include "community/ZoBgpCommunityTyped.h"
#include "tests/parse/Parsing.h"

namespace Routing::Bgp {
namespace {

using Open = BgpParseExtCommOpenTypeRule;
using OpenBase = BgpParseExtCommOpenSubTypeRuleBase;
constexpr auto evpn = extCommPktTypeTransEvpn, qos = extCommPktTypeNonTransQosMarking;

template <BgpExtCommPktType pktType, U8 subtype, auto factory>
struct SubRule final
    : BgpParseExtCommOpenSubRule<SubRule<pktType, subtype, factory>, pktType, subtype, factory> {
  inline static const Mox::Type type{"Test::SubRule", &OpenBase::type, {}};
  using SubRule::BgpParseExtCommOpenSubRule::BgpParseExtCommOpenSubRule;
};
struct WholeRule final : Mox::Entity<WholeRule, BgpParseExtendedCommunityTypeRuleBase> {
  inline static const Mox::Type type{
      "Test::WholeRule", &BgpParseExtendedCommunityTypeRuleBase::type, {}};
  explicit WholeRule(const Control& control) : Entity(control, evpn) {}
  Mox::Ptr<ExtComm> inhale(const ExtCommContent& content) const override {
    return extCommDefaultGatewayFactory(content);
  }
};
template <class... Rules>
struct Sm final : BgpParseExtCommPlugin<Sm<Rules...>, Rules...> {
  inline static const BgpParseExtCommPluginType type{"Test::Sm"};
  using Sm::BgpParseExtCommPlugin::BgpParseExtCommPlugin;
};
// Both are of one subtype in qos, where the last installed serves; 0xff is in no enumeration.
using SmA = Sm<SubRule<evpn, 0x00, extCommColorFactory>, SubRule<evpn, 0xff, extCommColorFactory>,
               SubRule<qos, 0x07, extCommColorFactory>>;
using SmB = Sm<SubRule<evpn, 0x03, extCommTunnelEncapFactory>,
               SubRule<qos, 0x07, extCommTunnelEncapFactory>>;
using SmWhole = Sm<WholeRule>;

/// The classes of the objects of contents with these first two octets.
std::string classes(const BgpParseExtendedCommunityRule::Ptr& parser,
                    std::initializer_list<U32> contents) {
  std::string text;
  for (const U64 octets : contents)
    text +=
        parser->parseExtendedCommunity(ExtCommContent(octets << 48))->fwkType().name().substr(21) +
        ' ';
  return text;
}
const std::initializer_list<U32> everybodys{0x0600, 0x0603, 0x06ff, 0x0604, 0x4407};

/// The state left when plug-ins come, by letter, and parsers, `p`, are made in this order.
struct Come {
  explicit Come(std::string_view order) {
    for (const char who : order) {
      if (who == 'a') sms.push_back(Mox::makeNew<SmA>(registry));
      if (who == 'b') sms.push_back(Mox::makeNew<SmB>(registry));
      if (who == 'w') sms.push_back(Mox::makeNew<SmWhole>(registry));
      if (who == 'p') parser = newParser(registry);
    }
  }
  const BgpParseExtCommRuleCollections::Ptr registry = bgpParseExtCommRuleCollectionsFactory();
  std::vector<BgpParseExtCommPluginBaseSm::Ptr> sms;
  BgpParseExtendedCommunityRule::Ptr parser;
};

TEST(OpenType, IsSharedWhoeverComesFirst) {
  for (const std::string order : {"abp", "bap", "apb", "bpa", "pab", "pba"}) {
    SCOPED_TRACE(order);
    Come come(order);
    const std::string last = order.find('a') < order.find('b') ? "TunnelEncap " : "Color ";
    const std::string expected = "Color TunnelEncap Color  " + last;
    EXPECT_EQ(classes(come.parser, everybodys), expected);
    EXPECT_EQ(row(registered(come.registry), come.parser->typeRules().size()), "13 13");
    EXPECT_EQ(come.parser->typeRule(evpn)->parseControl(), Control(come.registry));
    // Rules stay without their plug-ins, and without the registry.
    come.parser->handleDel();
    come.sms.clear();
    EXPECT_EQ(classes(come.parser, everybodys) + row(registered(come.registry)), expected + '0');
  }
}

// A whole rule serves alone, in any order; the type is free once that is gone.
TEST(OpenType, LeavesAWholeRuleWhereItIs) {
  for (const std::string order : {"wap", "awp", "wpa", "pwa", "paw", "apw"}) {
    SCOPED_TRACE(order);
    const Come come(order);
    EXPECT_EQ(classes(come.parser, {0x0600, 0x0604, 0x4407}),
              "DefaultGateway DefaultGateway Color ");
    const auto rule = come.parser->typeRule(evpn);
    EXPECT_TRUE(rule->hasNotificationActive() && come.parser->hasNotificationActive());
    EXPECT_EQ(rule->parseControl(), Control(come.registry));
    EXPECT_FALSE(bgpParseExtCommOpenTypeRuleIs(*come.parser, evpn));
    const auto& a = come.sms[order.find('a') > order.find('w')];
    const BgpParseExtendedCommunityRuleKey key(come.parser.get());
    const auto subRule = Mox::makeNew<SubRule<evpn, 0x05, extCommColorFactory>>(Control());
    EXPECT_FALSE(a->addExtCommOpenTypeSubRule(key, subRule));
    EXPECT_EQ(come.parser->typeRuleDel(evpn), rule);
    EXPECT_TRUE(a->addExtCommOpenTypeSubRule(key, subRule));
    a->handleStartup();
    EXPECT_EQ(classes(come.parser, {0x0600, 0x0605, 0x0604}), "Color Color  ");
  }
}

TEST_F(Parsing, OpensTheTypesThatHaveNoRule) {
  const std::string before = Mox::Type::read(*parser, "typeRule");
  std::string opened;
  for (U32 octet = 0; octet <= 256; ++octet) {
    const auto type = BgpExtCommPktType(octet);
    const bool had = bool(parser->typeRule(type));
    const auto open = bgpParseExtCommOpenTypeRuleIs(*parser, type);
    EXPECT_EQ(bgpParseExtCommOpenTypeRuleIs(*parser, type), open) << "found again";
    EXPECT_EQ(had && octet <= 0xff, kind::has(type)) << octet;
    if (!open) continue;
    EXPECT_EQ(open->pktType(), type);
    opened += row(octet) + ' ';
    EXPECT_EQ(classes(parser, {octet << 8}), " ") << "a plain object, as before";
    EXPECT_EQ(parser->typeRuleDel(type), open);
  }
  EXPECT_EQ(opened, "4 5 6 8 68 ");
  EXPECT_EQ(Mox::Type::read(*parser, "typeRule"), before);
}

TEST_F(Parsing, HoldsOpenRulesWhileTheyAreAsked) {
  const auto& base = OpenBase::type.name();
  const auto open = [&] { return bgpParseExtCommOpenTypeRuleIs(*parser, evpn); };
  const std::function<void()> removals[] = {
      [&] { EXPECT_EQ(open()->subTypeRuleDel(0x42)->pktSubType(), 0x42u); },
      [&] { open()->subTypeRuleDelAll(); }, [&] { parser->typeRuleDel(evpn); },
      [&] { parser->typeRuleIs(Mox::makeNew<WholeRule>(Control())); }};
  for (const auto& remove : removals) {
    bool asked = false;
    auto rule = Mox::makeNew<MarkRule<OpenBase>>(Control(), evpn, U8(0x42));
    rule->act = [&] {
      remove();
      EXPECT_EQ(row(alive(base), alive(Open::type.name())), "1 1");
      asked = true;
      return false;
    };
    open()->subTypeRuleIs(std::exchange(rule, nullptr));
    EXPECT_EQ(classes(parser, {0x0642}), " ") << "null: a plain object";
    EXPECT_EQ(row(asked, alive(base), alive(Open::type.name())), row(1, 0, &remove < removals + 2));
  }
}

TEST(Rules, TraceAtLevel8WhatIsReplaced) {
  const auto parser = newParser();
  const auto open = bgpParseExtCommOpenTypeRuleIs(*parser, evpn);
  using Color = SubRule<evpn, 0x0b, extCommColorFactory>;
  const auto color = Mox::makeNew<Color>(Control());
  const auto whole = [&] { parser->typeRuleIs(Mox::makeNew<WholeRule>(Control())); };
  // clang-format off
  const std::pair<std::function<void()>, std::string> cases[] = {
      {[&] { open->subTypeRuleIs(color), open->subTypeRuleIs(color); }, ""},  // the same one
      {[&] { open->subTypeRuleIs(Mox::makeNew<Color>(Control())); },
       "BgpParseExtCommOpenTypeRule::subTypeRuleIs: 11: Test::SubRule replaces Test::SubRule"},
      {whole, "BgpParseExtendedCommunityRule::typeRuleIs: 6: Test::WholeRule replaces " + Open::type.name()},
      {[&] { bgpParseExtCommOpenTypeRuleIs(*parser, evpn); },
       "bgpParseExtCommOpenTypeRuleIs: 6: Test::WholeRule is there"},
      {[&] { parser->typeRuleDel(evpn); }, ""},
      {[&] { parser->ip6TypeRuleIs(Mox::makeNew<BgpParseExtCommIp6TransRule>(Control())); },
       "BgpParseExtendedCommunityRule::ip6TypeRuleIs: 0: Routing::Bgp::BgpParseExtCommIp6TransRule replaces "
       "Routing::Bgp::BgpParseExtCommIp6TransRule"}};
  // clang-format on
  for (const auto& [act, expected] : cases)
    EXPECT_EQ(traced(8, act), expected.empty() ? "" : "8Routing::Bgp::" + expected + '\n');
  EXPECT_EQ(traced(7, [&] { whole(), whole(); }), "");
}

}  // namespace
}  // namespace Routing::Bgp
