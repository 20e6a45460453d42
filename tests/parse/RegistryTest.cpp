// The registry, its keys, and those who watch it.
#include "EveryKindSm.h"

namespace parsing {
namespace {

using OpaqueKey = BgpParseExtCommSubTypeTransOpaqueRuleKey;

struct Watcher : Registry::NotifieeConst {
  explicit Watcher(std::string name) : name_(std::move(name)) {}
  void onExtendedCommSubTypeTransOpaqueRuleInstance(const OpaqueKey& key) override {
    heard += name_ + (key.rule() ? "1 " : "0 ");
    if (act) act();
  }
  void onExtendedCommSubTypeTransOpaqueRuleInstance() override { heard += name_ + "all "; }
  std::function<void()> act;

 private:
  const std::string name_;
};

TEST(Registry, TellsOfChangesAndOfNothingElse) {
  const Registry::Ptr registry = bgpParseExtCommRuleCollectionsFactory();
  Watcher watcher("w");
  watcher.notifierIs(registry);
  const auto rule = Mox::makeNew<BgpParseExtCommTransOpaqueRule>(BgpParseExtCommControl());
  const OpaqueKey key(rule.get()), none;
  take();
  registry->extendedCommSubTypeTransOpaqueRuleInstanceIs(key);
  registry->extendedCommSubTypeTransOpaqueRuleInstanceIs(key);
  EXPECT_EQ(take(), "w1 ");
  EXPECT_TRUE(registry->extendedCommSubTypeTransOpaqueRuleInstanceHas(key));
  EXPECT_FALSE(registry->extendedCommSubTypeTransOpaqueRuleInstanceDel(none));
  EXPECT_TRUE(registry->extendedCommSubTypeTransOpaqueRuleInstanceDel(key));
  EXPECT_FALSE(registry->extendedCommSubTypeTransOpaqueRuleInstanceDel(key));
  EXPECT_EQ(take(), "w1 ");
  registry->extendedCommSubTypeTransOpaqueRuleInstanceDelAll();
  registry->extendedCommSubTypeTransOpaqueRuleInstanceIs(none);
  registry->extendedCommSubTypeTransOpaqueRuleInstanceDelAll();
  EXPECT_EQ(take(), "w0 wall ");
  EXPECT_FALSE(registry->extendedCommSubTypeTransOpaqueRuleInstanceHas(none));
}

TEST(Registry, ObserversMayComeAndGoWhileTheyAreTold) {
  const Registry::Ptr registry = bgpParseExtCommRuleCollectionsFactory();
  Watcher first("a"), second("b"), third("c"), late("d");
  for (Watcher* const watcher : {&first, &second, &third}) watcher->notifierIs(registry);
  const auto toggle = [&] {
    take();
    if (!registry->extendedCommSubTypeTransOpaqueRuleInstanceDel(OpaqueKey()))
      registry->extendedCommSubTypeTransOpaqueRuleInstanceIs(OpaqueKey());
    return take();
  };
  EXPECT_EQ(toggle(), "a0 b0 c0 ");
  first.act = [&] {
    second.notifierIs(nullptr);
    late.notifierIs(registry);
  };
  EXPECT_EQ(toggle(), "a0 c0 ");
  EXPECT_EQ(toggle(), "a0 c0 d0 ");
  first.act = [&] { first.notifierIs(nullptr); };
  EXPECT_EQ(toggle(), "a0 c0 d0 ");
  // An event in the middle of an event: who came meanwhile hears the inner one
  // and not what is left of the outer one.
  bool once = true;
  third.act = [&] {
    if (!std::exchange(once, false)) return;
    second.notifierIs(registry);
    registry->extendedCommSubTypeTransOpaqueRuleInstanceDel(OpaqueKey());
  };
  EXPECT_EQ(toggle(), "c0 c0 d0 b0 d0 ");
  EXPECT_EQ(toggle(), "c0 d0 b0 ");
}

TEST(Keys, NameARuleByItsAddress) {
  const auto a = Mox::makeNew<BgpParseExtCommTransOpaqueRule>(BgpParseExtCommControl());
  const auto b = Mox::makeNew<BgpParseExtCommTransOpaqueRule>(BgpParseExtCommControl());
  OpaqueKey key(a.get()), none;
  EXPECT_EQ(key, OpaqueKey(a.get()));
  EXPECT_NE(key, OpaqueKey(b.get()));
  EXPECT_EQ(key < OpaqueKey(b.get()), std::less<>()(a.get(), b.get()));
  EXPECT_EQ(none.hash(), 0u);
  EXPECT_NE(key.hash(), OpaqueKey(b.get()).hash());
  const std::string start =
      "Value('Routing::Bgp::BgpParseExtCommSubTypeTransOpaqueRuleKey', ** {'rule': ";
  EXPECT_EQ(valueToStrep(none), start + "NULL})");
  EXPECT_EQ(valueToStrep(key).find(start + "0x"), 0u);
  EXPECT_NE(raised<Mox::ParseException>([&] { sequenceToValue(valueToStrep(key), none); }), "");
  sequenceToValue(start + "NULL})", key);
  EXPECT_EQ(key, none);
}

}  // namespace
}  // namespace parsing
