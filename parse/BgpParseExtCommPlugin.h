// What a parser plug-in is made of: the base that watches the registry, and sub-rules that are a
// subtype and a factory. A complete plug-in:
//
//   class ColorRule final
//       : public BgpParseExtCommSubRule<ColorRule, BgpParseExtComSubTypeTransOpaqueRuleBase,
//                                       extCommPktSubtypeTransOpaqueColorExtendedCommunity,
//                                       extCommColorFactory> {
//    public:
//     static const Mox::Type type;
//     using BgpParseExtCommSubRule::BgpParseExtCommSubRule;
//   };
//
//   class ColorSm final : public Mox::Entity<ColorSm, BgpParseExtCommPluginBaseSm> {
//    public:
//     static const Mox::Type type;
//     explicit ColorSm(const BgpParseExtCommRuleCollections::PtrConst& ruleCollections)
//         : Entity(ruleCollections) {
//       handleStartup();
//     }
//     void instantiateExtCommSubTypeTransOpaqueSubRule(
//         const BgpParseExtCommSubTypeTransOpaqueRuleKey& ruleKey,
//         const BgpParseExtCommControl& control) const override {
//       installSubRule<ColorRule>(ruleKey, control, __PRETTY_FUNCTION__);
//     }
//   };
//
//   container->extCommParserSmsEnq(Mox::makeNew<ColorSm>(container->parseExtCommRuleCollections()));
//
// 1. For every rule of its kind, there already or made later, a plug-in is asked to `instantiate`
//    its sub-rules. It may be asked again for the same rule, also when that is withdrawn.
// 2. Of two sub-rules for the same octet the one installed last serves it.
// 3. A plug-in that is marked deleted, or has been released, is asked nothing more. Its sub-rules
//    belong to the rules that they are installed in.
//
// Threads: that of the registry.
#pragma once

#include <memory>

#include "parse/BgpParseExtCommTopRule.h"

namespace Routing::Bgp {

class BgpParseExtCommPluginBaseSm
    : public Mox::Entity<BgpParseExtCommPluginBaseSm, Mox::PtrInterface> {
 public:
  static const Mox::Type type;
  using RuleCollections = BgpParseExtCommRuleCollections::PtrConst;

  /// Watches the registry. What is there already is caught up with by `handleStartup`, which every
  /// class below calls at the end of its own constructor: before that its overrides are not heard.
  explicit BgpParseExtCommPluginBaseSm(const RuleCollections& ruleCollections);
  ~BgpParseExtCommPluginBaseSm() override;

  const RuleCollections& ruleCollections() const { return ruleCollections_; }
  /// Watches this registry instead and catches up with it. The same one again changes nothing, not
  /// even the place among its observers; null is `ruleCollectionsDel`.
  void ruleCollectionsIs(const RuleCollections& ruleCollections);
  /// Watches nothing any more; returns what it did.
  RuleCollections ruleCollectionsDel();

  /// Runs the handlers of all kinds for all rules in the registry, top rules first.
  void handleStartup() const;
  /// Marks the plug-in deleted, which ends its reactions, or takes the mark back.
  void moxDoZombieReactors(bool zombie);
  void zeroReferencesIs(bool zero) override;

  // For each kind, and for example for the sub-rules of opaque types:
  //
  // `addExtCommSubTypeTransOpaqueSubRule` installs a sub-rule in the rule that the key names. Ends
  // the process when the sub-rule is null. The one of the top kind installs a whole type rule.
  //
  // `instantiateExtCommSubTypeTransOpaqueSubRule` is what a plug-in overrides: it makes its
  // sub-rules with `control` and adds them; `installSubRule` does both. The base does nothing.
  //
  // `handleExtCommSubTypeTransOpaqueRuleInstance` asks the plug-in to instantiate its sub-rules for
  // the rule that the key names, or for all of the kind that are in the registry.
#define ZOBGP_KIND(Kind, Operation, Collection, RuleClass, SubRuleClass, Key, ...)                 \
  void add##Operation##SubRule(const Key& ruleKey, const Mox::PtrConst<SubRuleClass>& rule)        \
      const {                                                                                      \
    add(ruleKey, rule);                                                                            \
  }                                                                                                \
  virtual void instantiate##Operation##SubRule(const Key&, const BgpParseExtCommControl&) const {} \
  void handle##Operation##RuleInstance(const Key& ruleKey) const {                                 \
    const Mox::Ptr<RuleClass> held(ruleKey.rule());                                                \
    if (held) instantiate##Operation##SubRule(ruleKey, held->parseControl());                      \
  }                                                                                                \
  void handle##Operation##RuleInstance() const {                                                   \
    forEachKey<kind::Kind>([this](const Key& key) { handle##Operation##RuleInstance(key); });      \
  }
#define ZOBGP_TOP_KIND ZOBGP_KIND
#include "parse/BgpParseExtCommKindList.h"

 protected:
  /// Makes a `Rule` with `control` and adds it to the rule that the key names. Traced at level 8,
  /// with the caller's `signature`.
  template <class Rule, class Kind>
  void installSubRule(const BgpParseExtCommRuleKey<Kind>& ruleKey,
                      const BgpParseExtCommControl& control,
                      const char* signature = __builtin_FUNCTION(),
                      const char* file = __builtin_FILE(), int line = __builtin_LINE()) const {
    traceInstallation(file, line, signature);
    add<Kind>(ruleKey, Mox::makeNew<Rule>(control));
  }

 private:
  class Reactor;

  static void traceInstallation(const char* file, int line, const char* signature);

  template <class Kind>
  static void add(const BgpParseExtCommRuleKey<Kind>& ruleKey,
                  const Mox::PtrConst<typename Kind::SubRule>& rule) {
    MOX_ASSERT(rule, Kind::nullRuleText);
    MOX_ASSERT(ruleKey.rule(), "__null != ruleKey.rule()");
    if constexpr (std::same_as<Kind, kind::Top>)
      ruleKey.rule()->typeRuleIs(rule);
    else
      ruleKey.rule()->subTypeRuleIs(rule);
  }

  template <class Kind, class Handle>
  void forEachKey(Handle handle) const {
    const RuleCollections registry = ruleCollections_;
    if (!registry) return;
    // A copy, since handling a rule may bring others, or take them away.
    const auto keys = registry->instances<Kind>();
    for (const BgpParseExtCommRuleKey<Kind>& key : keys)
      if (registry->instanceHas(key)) handle(key);
  }

  RuleCollections ruleCollections_;
  std::unique_ptr<Reactor> reactor_;  // there exactly while a registry is
};

/// A sub-rule that makes the objects of one subtype with a factory: `factory(content,
/// arguments...)`. `Self` is the class that derives from it, `Base` the kind's sub-rule base.
template <class Self, class Base, typename Base::MapKey subtype, auto factory, auto... arguments>
class BgpParseExtCommSubRule : public Mox::Entity<Self, Base> {
 public:
  explicit BgpParseExtCommSubRule(const BgpParseExtCommControl& control)
      : Mox::Entity<Self, Base>(control, subtype) {}
  Mox::Ptr<typename Base::Object> inhale(const typename Base::Content& content) const override {
    return factory(content, arguments...);
  }
};

/// Makes plug-ins of a class: a new one with its notifications on.
template <class Sm>
struct BgpParseExtCommPluginFactory {
  Mox::Ptr<Sm> operator()(
      const BgpParseExtCommPluginBaseSm::RuleCollections& ruleCollections) const {
    return Mox::makeNew<Sm>(ruleCollections);
  }
};
inline constexpr BgpParseExtCommPluginFactory<BgpParseExtCommPluginBaseSm>
    BgpParseExtCommPluginBaseSmIs;

}  // namespace Routing::Bgp
