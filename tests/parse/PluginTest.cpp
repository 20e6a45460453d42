// Observers of the registry: when plug-ins are asked, and when no more.
#include "tests/parse/Parsing.h"

namespace Routing::Bgp {
namespace {

using Registry = BgpParseExtCommRuleCollections;
using OpaqueKey = BgpParseExtCommSubTypeTransOpaqueRuleKey;

/// All that plug-ins and observers were told, in order, since the last call of `take`.
std::string heard;
std::string take() { return std::exchange(heard, {}); }

/// A plug-in that overrides every operation and says of which kind it was.
struct EveryKindSm final : Mox::Entity<EveryKindSm, BgpParseExtCommPluginBaseSm> {
  inline static const Mox::Type type{"Test::EveryKindSm", &BgpParseExtCommPluginBaseSm::type, {}};

  explicit EveryKindSm(const RuleCollections& registry, std::string its = "")
      : Entity(registry), name(std::move(its)) {
    handleStartup();
  }
  ~EveryKindSm() override {
    if (atEnd) atEnd();
    if (!name.empty()) heard += '~' + name + ' ';
  }
#define ZOBGP_KIND(Kind, Operation, Collection, RuleClass, SubRuleClass, Key, ...)              \
  void instantiate##Operation##SubRule(const Key& key, const Control& control) const override { \
    EXPECT_EQ(control, key.rule()->parseControl());                                             \
    heard += name + #Kind " ";                                                                  \
    if (act) act();                                                                             \
  }
#define ZOBGP_TOP_KIND ZOBGP_KIND
#include "parse/BgpParseExtCommKindList.h"

  const std::string name;
  std::function<void()> act, atEnd;
};

struct Watcher : Registry::NotifieeConst {
  explicit Watcher(std::string its) : name(std::move(its)) {}
  void onExtendedCommSubTypeTransOpaqueRuleInstance(const OpaqueKey& key) override {
    hear(key.rule() ? "1 " : "0 ");
  }
  void onExtendedCommSubTypeTransOpaqueRuleInstance() override { hear("all "); }
  void hear(const char* what) const {
    heard += name + what;
    if (act) act();
  }

  const std::string name;
  std::function<void()> act;
};

// clang-format off
const std::string kinds =
    "TransTwoOctetAs TransIpv4Address TransFourOctetAs TransOpaque TransGeneric TransGenericPart2 "
    "TransGenericPart3 NonTransTwoOctetAs NonTransIpv4Address NonTransFourOctetAs NonTransOpaque Ip6Trans ";
// Rules go in the order of their type octets.
const std::string inOrderOfTypes =
    "TransTwoOctetAs TransIpv4Address TransFourOctetAs TransOpaque NonTransTwoOctetAs NonTransIpv4Address "
    "NonTransFourOctetAs NonTransOpaque TransGeneric TransGenericPart2 TransGenericPart3 Ip6Trans Top ";
// clang-format on

TEST(Plugins, AreAskedForEveryRuleWheneverTheyCome) {
  const auto registry = bgpParseExtCommRuleCollectionsFactory();
  const auto early = Mox::makeNew<EveryKindSm>(registry);
  EXPECT_EQ(take(), "");
  const auto parser = newParser(registry);
  EXPECT_EQ(take(), kinds + "Top ") << "as they are made: the type rules, then the top rule";
  const auto late = Mox::makeNew<EveryKindSm>(registry);
  EXPECT_EQ(take(), "Top " + kinds) << "catching up: in the order of the kinds";

  late->handleExtCommIp6SubTypeTransRuleInstance();
  late->handleExtCommSubTypeTransOpaqueRuleInstance(
      *registry->extendedCommSubTypeTransOpaqueRuleInstance().begin());
  late->handleExtendedCommunityTypeRuleInstance({});
  EXPECT_EQ(take(), "Ip6Trans TransOpaque ") << "a key that names no rule is for nobody";

  early->ruleCollectionsDel();
  parser->handleDel();
  EXPECT_EQ(take(), inOrderOfTypes);
  EXPECT_EQ(row(registered(registry), parser->typeRules().size()), "0 11") << "it goes on";
}

TEST(Plugins, ReactionsEndWithTheMarkTheRegistryOrThePlugin) {
  const auto registry = bgpParseExtCommRuleCollectionsFactory();
  const auto rule = Mox::makeNew<OpaqueRule>(Control(registry));
  auto sm = Mox::makeNew<EveryKindSm>(registry, "a");
  const auto second = Mox::makeNew<EveryKindSm>(registry, "b");
  EXPECT_EQ(take(), "aTransOpaque bTransOpaque ");
  const auto atARule = [&] {
    Mox::makeNew<BgpParseExtCommIp6TransRule>(Control(registry));  // its end is not heard
    return take();
  };
  const std::string both = "aIp6Trans bIp6Trans ", other = "bIp6Trans ";
  const std::pair<std::function<void()>, std::string> steps[] = {
      {[] {}, both},
      {[&] { sm->ruleCollectionsIs(registry); }, both},  // the same one: its place is kept
      {[&] { sm->moxDoZombieReactors(true); }, other},
      {[&] { EXPECT_EQ(sm->ruleCollectionsDel(), registry); }, other},
      {[&] { sm->ruleCollectionsIs(registry); }, other},  // a new reactor knows the mark
      {[&] { sm->moxDoZombieReactors(false); }, "bIp6Trans aIp6Trans "},
      {[&] { sm->ruleCollectionsIs(bgpParseExtCommRuleCollectionsFactory()); }, other},
      {[&] { sm->ruleCollectionsIs(registry); }, "aTransOpaque bIp6Trans aIp6Trans "}};
  for (const auto& [step, expected] : steps) {
    step();
    EXPECT_EQ(atARule(), expected) << "step " << &step - &steps[0].first;
  }
  EXPECT_EQ(sm->ruleCollections(), registry);
  sm->atEnd = [&] { heard = "end: " + atARule(); };
  sm = nullptr;
  EXPECT_EQ(take() + atARule(), "end: bIp6Trans ~a " + other) << "not even what it brings about";
}

// A plug-in may do anything while it is asked: the callers keep alive all that they still use.
TEST_F(Parsing, PluginsMayLeaveOrTakeRulesAwayWhileTheyAreAsked) {
  auto leaver = Mox::makeNew<EveryKindSm>(registry, "leaver");
  leaver->act = [&, index = container->extCommParserSmsEnq(leaver)] {
    container->extCommParserSmsDel(index);
    heard += "left ";
  };
  leaver = nullptr;
  take();
  std::vector rules{Mox::makeNew<OpaqueRule>(Control(registry))};
  EXPECT_EQ(take(), "leaverTransOpaque left ~leaver ");
  EXPECT_EQ(rules[0]->subTypeRules().size(), 3u) << "the others were asked";

  rules.clear();
  leaver = Mox::makeNew<EveryKindSm>(registry);
  leaver->act = [&] { leaver = nullptr; };
  take();
  leaver->handleStartup();
  EXPECT_EQ(take(), "Top " + kinds) << "to the end";

  container->extCommParserDel();
  for (int i = 0; i < 3; ++i) rules.push_back(Mox::makeNew<OpaqueRule>(Control(registry)));
  const auto taker = Mox::makeNew<EveryKindSm>(registry);
  EXPECT_EQ(take(), "TransOpaque TransOpaque TransOpaque ");
  taker->act = [&] { rules.clear(); };
  taker->handleStartup();
  EXPECT_EQ(take(), "TransOpaque ") << "a rule that is no more is not asked for";
}

// A plug-in that throws while a parser is made ends that parser, and leaves nothing of it behind;
// one that throws while it is withdrawn does not keep the rest of it in the registry.
TEST(Plugins, ThatThrowLeaveNoRuleOfADeadParser) {
  const auto registry = bgpParseExtCommRuleCollectionsFactory();
  const auto thrower = Mox::makeNew<EveryKindSm>(registry);
  thrower->act = [] {
    if (heard.ends_with("Opaque ")) throw std::bad_alloc();
  };
  EXPECT_THROW(newParser(registry), std::bad_alloc);
  EXPECT_EQ(registered(registry), 0u);
  thrower->act = nullptr;

  for (const bool all : {true, false}) {
    const auto parser = newParser(registry);
    take();
    thrower->act = [] { throw std::runtime_error(heard); };
    EXPECT_THAT([&] { all ? parser->typeRuleDelAll() : parser->handleDel(); },
                testing::ThrowsMessage<std::runtime_error>("TransTwoOctetAs "));
    thrower->act = nullptr;
    EXPECT_EQ(take(), inOrderOfTypes.substr(0, inOrderOfTypes.find(all ? "Ip6" : "none")));
    parser->handleDel();
  }
}

// Asked the last time, by a withdrawal, plug-ins still find the container and the parser.
TEST_F(Parsing, PluginsMayChangeTheParserWhileItIsWithdrawn) {
  const auto sm = Mox::makeNew<EveryKindSm>(registry);
  const auto installed = [&] {
    sm->act = nullptr;
    return container->extCommParserIs(Control(registry));
  };
  const auto replace = [&] { return container->extCommParserIs(Control()); };
  for (const bool replaces : {true, false}) {
    installed();
    sm->act = [&] { replaces ? replace() : container->extCommParserDel(); };
    EXPECT_EQ(container->extCommParserDel()->parseControl(), Control(registry));
    EXPECT_EQ(row(bool(container->extCommParser()), registered(registry)), row(replaces, 0));
  }
  installed();
  sm->act = [&] { container->extCommParserDel(); };
  EXPECT_TRUE(replace()) << "although it is let go of meanwhile";
  const auto parser = installed();
  sm->act = [&] {
    if (heard.ends_with("Top ")) parser->typeRuleIs(Mox::makeNew<OpaqueRule>(Control(registry)));
  };
  parser->handleDel();
  EXPECT_EQ(registered(registry), 0u) << "the rule of the last moment, too";
  take();
}

TEST(Plugins, TraceWhatTheyInstallAtLevel8) {
  const auto make = [] { bgpParseExtCommContainerSmFactory(); };
  const std::string lines = traced(8, make);
  const std::regex form(
      "(8BgpParseExtComm\\w+.cpp:\\d+:virtual void Routing::Bgp::\\w+Sm::instantiate"
      "\\w+SubRule\\(const .*RuleKey&, const .*\\) const\n){11}");
  EXPECT_TRUE(std::regex_match(lines, form)) << lines;
  EXPECT_EQ(traced(7, make), "");
}

TEST(Container, GoesInOrderAndUnheard) {
  for (const bool held : {true, false}) {
    auto container = bgpParseExtCommContainerSmFactory();
    const auto registry = container->parseExtCommRuleCollections();
    for (const char* name : {"a", "b"}) {
      const auto sm = Mox::makeNew<EveryKindSm>(registry, name);
      sm->atEnd = [&] {
        EXPECT_EQ(alive("BgpShowCli::ExtCommCache"), 0u) << "gone by then";
        EXPECT_EQ(alive("Routing::Bgp::BgpParseExtendedCommunityRule"), held);
      };
      container->extCommParserSmsEnq(sm);
    }
    auto parser = container->extCommParser();
    if (!held) parser = nullptr;
    take();
    container = nullptr;
    EXPECT_EQ(take(), "~a ~b ");
    // A rule that is held stays whole: in the registry, and with all its rules.
    EXPECT_EQ(registry->extendedCommunityTypeRuleInstance().size(), held);
    EXPECT_EQ(parser ? parser->typeRules().size() : 11, 11u);
    parser = nullptr;
    EXPECT_EQ(row(take(), registered(registry)), " 0");
    for (const std::string name : {"ContainerSm", "TransOpaqueRule", "ColorSm"})
      EXPECT_EQ(alive("Routing::Bgp::BgpParseExtComm" + name), 0u);
  }
}

TEST(Registry, TellsOfChangesAndOfNothingElse) {
  const auto registry = bgpParseExtCommRuleCollectionsFactory();
  const auto rule = Mox::makeNew<OpaqueRule>(Control());
  const OpaqueKey key(rule.get()), none;
  Watcher first("a"), second("b");
  for (Watcher* const watcher : {&first, &second}) watcher->notifierIs(registry);
  registry->extendedCommSubTypeTransOpaqueRuleInstanceIs(key);
  registry->extendedCommSubTypeTransOpaqueRuleInstanceIs(key);
  EXPECT_EQ(take(), "a1 b1 ") << "once";
  EXPECT_FALSE(registry->extendedCommSubTypeTransOpaqueRuleInstanceDel(none));
  EXPECT_EQ(Mox::Type::read(*registry, "extendedCommSubTypeTransOpaqueRuleInstance"),
            valueToStrep(key));
  EXPECT_TRUE(registry->extendedCommSubTypeTransOpaqueRuleInstanceHas(key));
  for (const bool there : {true, false})
    EXPECT_EQ(registry->extendedCommSubTypeTransOpaqueRuleInstanceDel(key), there);
  EXPECT_EQ(take(), "a1 b1 ") << "once";
  // A rule comes while the collection goes: a plug-in is asked for it, and again for what is there.
  const auto asked = Mox::makeNew<EveryKindSm>(registry);
  registry->extendedCommSubTypeTransOpaqueRuleInstanceIs(none);
  second.act = [&] { registry->extendedCommSubTypeTransOpaqueRuleInstanceIs(key); };
  take();
  registry->extendedCommSubTypeTransOpaqueRuleInstanceDelAll();
  EXPECT_EQ(take(), "aall ball a1 b1 TransOpaque TransOpaque ");
  EXPECT_FALSE(registry->extendedCommSubTypeTransOpaqueRuleInstanceHas(none));
  second.act = nullptr;
  for (int twice = 0; twice < 2; ++twice)
    registry->extendedCommSubTypeTransOpaqueRuleInstanceDelAll();
  EXPECT_EQ(take(), "aall ball ") << "once, and nothing of an empty one";
}

TEST(Keys, NameARuleByItsAddress) {
  const auto a = Mox::makeNew<OpaqueRule>(Control()), b = Mox::makeNew<OpaqueRule>(Control());
  const OpaqueKey key(a.get()), none;
  OpaqueKey other(b.get());
  const bool less = std::less<>()(a.get(), b.get());
  EXPECT_EQ(row(key == OpaqueKey(a.get()), key == other, key.hash() == other.hash(), none.hash(),
                key < other, other < key),
            row(1, 0, 0, 0, less, !less));
  for (const auto& text : {valueToStrep(key), valueToStrep(none) + ' '})
    EXPECT_THROW(sequenceToValue(text, other), Mox::ParseException);
  EXPECT_EQ(other.rule(), b.get());
  expectText(none,
             "Value('Routing::Bgp::BgpParseExtCommSubTypeTransOpaqueRuleKey', ** {'rule': NULL})",
             other);
}

}  // namespace
}  // namespace Routing::Bgp
