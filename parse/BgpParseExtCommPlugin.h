// What a parser plug-in is made of: rules, most of them a subtype and a factory, and a class that
// installs them wherever they belong. A complete plug-in:
//
//   class ColorRule final
//       : public BgpParseExtCommSubRule<ColorRule, kind::TransOpaque,
//                                       extCommPktSubtypeTransOpaqueColorExtendedCommunity,
//                                       extCommColorFactory> {
//    public:
//     inline static const Mox::Type type{
//         "example::ColorRule", &BgpParseExtComSubTypeTransOpaqueRuleBase::type, {}};
//     using BgpParseExtCommSubRule::BgpParseExtCommSubRule;
//   };
//
//   class ColorSm final : public BgpParseExtCommPlugin<ColorSm, ColorRule> {
//    public:
//     inline static const BgpParseExtCommPluginType type{"example::ColorSm"};
//     using BgpParseExtCommPlugin::BgpParseExtCommPlugin;
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

#include <concepts>
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
  // sub-rules with `control` and adds them. The base does nothing.
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

 private:
  class Reactor;

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

/// What reflection knows of a plug-in, and where that is written, for the trace.
class BgpParseExtCommPluginType : public Mox::Type {
 public:
  explicit BgpParseExtCommPluginType(std::string_view name, const char* file = __builtin_FILE(),
                                     int line = __builtin_LINE())
      : Type(name, &BgpParseExtCommPluginBaseSm::type, {}), file_(file), line_(line) {}

  /// At level 8: file, line and the full signature of that operation.
  void traceInstallation(std::string_view operation) const;

 private:
  const char* const file_;
  const int line_;
};

/// A plug-in that is nothing but its rules: sub-rules are installed in every type rule of their
/// kind, type rules in every top rule. `Self` is the class that derives from it. A plug-in that
/// does more derives from the base and overrides what it needs.
template <class Self, class... Rules>
class BgpParseExtCommPlugin : public Mox::Entity<Self, BgpParseExtCommPluginBaseSm> {
 public:
  explicit BgpParseExtCommPlugin(const BgpParseExtCommPluginBaseSm::RuleCollections& registry)
      : BgpParseExtCommPlugin::Entity(registry) {
    this->handleStartup();
  }

#define ZOBGP_KIND(Kind, Operation, Collection, RuleClass, SubRuleClass, Key, ...)                \
  void instantiate##Operation##SubRule(const Key& ruleKey, const BgpParseExtCommControl& control) \
      const override {                                                                            \
    (install<Rules>(ruleKey, control,                                                             \
                    "instantiate" #Operation "SubRule(const Routing::Bgp::" #Key                  \
                    "&, const Routing::Bgp::BgpParseExtCommControl&) const"),                     \
     ...);                                                                                        \
  }
#define ZOBGP_TOP_KIND ZOBGP_KIND
#include "parse/BgpParseExtCommKindList.h"

 private:
  template <class Rule, class Kind>
  static void install(const BgpParseExtCommRuleKey<Kind>& ruleKey,
                      const BgpParseExtCommControl& control, std::string_view operation) {
    static_assert(
        (std::derived_from<Rule, kind::Top::SubRule> || requires { typename Rule::Kind; }),
        "no plug-in is offered a rule that this one could be installed in");
    if constexpr (std::derived_from<Rule, typename Kind::SubRule>) {
      Self::type.traceInstallation(operation);
      BgpParseExtCommPlugin::template add<Kind>(ruleKey, Mox::makeNew<Rule>(control));
    }
  }
};

/// A sub-rule that makes the objects of one subtype with a factory: `factory(content,
/// arguments...)`. `Self` is the class that derives from it.
template <class Self, class Kind, typename Kind::Subtype subtype, auto factory, auto... arguments>
class BgpParseExtCommSubRule : public Mox::Entity<Self, typename Kind::SubRule> {
 public:
  explicit BgpParseExtCommSubRule(const BgpParseExtCommControl& control)
      : BgpParseExtCommSubRule::Entity(control, subtype) {}
  Mox::Ptr<typename Kind::Family::Object> inhale(
      const typename Kind::Family::Content& content) const override {
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
