// Parser plug-ins: rules, most of them a subtype and a factory, and a class that installs them in
// every rule that takes them. A complete plug-in:
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
// 1. A plug-in is asked to `instantiate` its sub-rules for every rule of its kinds, whether that
//    is there already or made later. It is asked again for a rule that is being withdrawn.
// 2. The sub-rule installed last for an octet serves it.
// 3. A plug-in that is marked deleted, or has been released, is asked nothing more. Its sub-rules
//    stay: they belong to the rules that they are installed in.
// 4. A plug-in may throw while it is asked. A rule that is being made is then not made, one that is
//    being withdrawn is withdrawn all the same, and the caller gets the exception.
// 5. A type that the library has no rule for is shared by the plug-ins whose rules for it derive
//    from BgpParseExtCommOpenSubRule: see BgpParseExtCommOpenType.h. A plug-in that brings a whole
//    rule for the type excludes them from it.
//
// `examples/evpn-router-mac` is a plug-in from outside the library.
//
// Threads: that of the registry.
#pragma once

#include <concepts>
#include <memory>

#include "parse/BgpParseExtCommOpenType.h"
#include "parse/BgpParseExtCommTopRule.h"

namespace Routing::Bgp {

/// The base of plug-ins: it watches a registry and asks its overrides for sub-rules.
class BgpParseExtCommPluginBaseSm
    : public Mox::Entity<BgpParseExtCommPluginBaseSm, Mox::PtrInterface> {
 public:
  static const Mox::Type type;
  using RuleCollections = BgpParseExtCommRuleCollections::PtrConst;

  /// Watches the registry; null for none. REQUIRES: every class below ends its own constructor with
  /// `handleStartup`, for the rules that are there already; this one cannot call its overrides yet.
  explicit BgpParseExtCommPluginBaseSm(const RuleCollections& ruleCollections);
  ~BgpParseExtCommPluginBaseSm() override;

  /// The registry that is watched; null for none.
  const RuleCollections& ruleCollections() const { return ruleCollections_; }
  /// Watches this registry instead and catches up with it. The same one again changes nothing, not
  /// even the order in which observers hear; null is `ruleCollectionsDel`.
  void ruleCollectionsIs(const RuleCollections& ruleCollections);
  /// Watches nothing any more. Returns the registry that was watched.
  RuleCollections ruleCollectionsDel();

  /// Runs the handlers of all kinds for all rules in the registry, top rules first.
  void handleStartup() const;
  /// Sets the mark that says deleted, which ends the plug-in's reactions, or takes it back.
  void moxDoZombieReactors(bool zombie);
  void zeroReferencesIs(bool zero) override;

  // For each kind, and for example for the sub-rules of opaque types:
  //
  // `addExtCommSubTypeTransOpaqueSubRule` installs a sub-rule in the rule that the key names. The
  // one of the top kind installs a whole type rule. Asserts "rule != __null" on a null sub-rule
  // ("__null != rule" for the top kind) and "__null != ruleKey.rule()" on a key that names none.
  //
  // `instantiateExtCommSubTypeTransOpaqueSubRule` is for a plug-in to override: it makes its
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

  /// Installs a sub-rule in the open rule of its type, which is made now if the type has no rule.
  /// False, and no change, when a rule of another class serves the type, or the type is no member.
  /// Asserts as the `add` of the top kind.
  static bool addExtCommOpenTypeSubRule(
      const BgpParseExtendedCommunityRuleKey& ruleKey,
      const Mox::PtrConst<BgpParseExtCommOpenSubTypeRuleBase>& rule);

 protected:
  /// The operations above, for a kind that is a parameter.
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
    // A copy: handling a rule may bring others, or take them away.
    const auto keys = registry->instances<Kind>();
    for (const BgpParseExtCommRuleKey<Kind>& key : keys)
      if (registry->instanceHas(key)) handle(key);
  }

  RuleCollections ruleCollections_;
  std::unique_ptr<Reactor> reactor_;  // there exactly while a registry is
};

/// The reflection of a plug-in. It also keeps the source position where it is written, for traces.
class BgpParseExtCommPluginType : public Mox::Type {
 public:
  /// REQUIRES: file and line are left to the compiler.
  explicit BgpParseExtCommPluginType(std::string_view name, const char* file = __builtin_FILE(),
                                     int line = __builtin_LINE())
      : Type(name, &BgpParseExtCommPluginBaseSm::type, {}), file_(file), line_(line) {}

  /// Traces, at level 8, the position and the full signature of this operation of the plug-in:
  /// `BgpParseExtCommColor.cpp:10:virtual void Routing::Bgp::BgpParseExtCommColorSm::...`
  void traceInstallation(std::string_view operation) const;

 private:
  const char* const file_;
  const int line_;
};

/// Whether plug-ins are offered a rule that this one can be installed in: a type rule and a
/// sub-rule of an open one can always be, any other sub-rule only if it is of a kind that is
/// offered.
template <class Rule>
concept BgpParseExtCommPluginRule = std::derived_from<Rule, kind::Top::SubRule> ||
    std::derived_from<Rule, BgpParseExtCommOpenSubTypeRuleBase> || requires {
  requires Rule::Kind::offered;
};

/// A plug-in that only brings rules: sub-rules for every type rule of their kind or every open one
/// of their type, type rules for every top rule. `Self` is the class that derives from it. A
/// plug-in that does more derives from the base and overrides what it needs.
template <class Self, class... Rules>
class BgpParseExtCommPlugin : public Mox::Entity<Self, BgpParseExtCommPluginBaseSm> {
 public:
  /// Watches the registry and installs its rules where they are missing; null for none.
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
    static_assert(BgpParseExtCommPluginRule<Rule>,
                  "no plug-in is offered a rule that this one could be installed in");
    constexpr bool open = std::same_as<Kind, kind::Top> &&
                          std::derived_from<Rule, BgpParseExtCommOpenSubTypeRuleBase>;
    if constexpr (open || std::derived_from<Rule, typename Kind::SubRule>) {
      Self::type.traceInstallation(operation);
      const auto rule = Mox::makeNew<Rule>(control);
      if constexpr (open)
        BgpParseExtCommPlugin::addExtCommOpenTypeSubRule(ruleKey, rule);
      else
        BgpParseExtCommPlugin::template add<Kind>(ruleKey, rule);
    }
  }
};

/// A sub-rule that makes the objects of one subtype with a factory: `factory(content,
/// arguments...)`. `Self` is the class that derives from it.
template <class Self, class Kind, typename Kind::Subtype subtype, auto factory, auto... arguments>
class BgpParseExtCommSubRule : public Mox::Entity<Self, typename Kind::SubRule> {
  static_assert(bgpIsValidEnumMember(subtype), "a subtype that is no member is never looked up");

 public:
  /// For the subtype of the template.
  explicit BgpParseExtCommSubRule(const BgpParseExtCommControl& control)
      : BgpParseExtCommSubRule::Entity(control, subtype) {}
  Mox::Ptr<typename Kind::Family::Object> inhale(
      const typename Kind::Family::Content& content) const override {
    return factory(content, arguments...);
  }
};

/// Makes plug-ins of a class, each new and with its notifications on.
template <class Sm>
struct BgpParseExtCommPluginFactory {
  /// A plug-in that watches this registry.
  Mox::Ptr<Sm> operator()(
      const BgpParseExtCommPluginBaseSm::RuleCollections& ruleCollections) const {
    return Mox::makeNew<Sm>(ruleCollections);
  }
};
inline constexpr BgpParseExtCommPluginFactory<BgpParseExtCommPluginBaseSm>
    BgpParseExtCommPluginBaseSmIs;

}  // namespace Routing::Bgp
