// The rules that turn a raw content into an object of a class that knows its meaning.
//
//   top rule   BgpParseExtendedCommunityRule, chooses by the type octet (BgpParseExtCommTopRule.h)
//   type rule  BgpParseExtCommTransOpaqueRule and kin, chooses by the subtype octet
//   sub-rule   from a plug-in, on BgpParseExtComSubTypeTransOpaqueRuleBase and kin, builds
//
// A type without a rule of the library's gets one from plug-ins: see BgpParseExtCommOpenType.h.
//
//   auto rule = Mox::makeNew<BgpParseExtCommTransOpaqueRule>(BgpParseExtCommControl());
//   rule->inhale(content);         // an ExtCommSubtyped: no sub-rule serves the content
//   rule->subTypeRuleIs(subRule);  // serves the subtype subRule->pktSubType()
//   rule->inhale(content);         // what subRule->inhale(content) returns, unless that is null
//
// 1. Parsing never fails. The level above builds a general object where nothing more specific is
//    installed, where an octet is no member of its enumeration, and where a rule returns null.
// 2. A rule installed under an octet replaces the one that was there, which is traced at level 8.
//    The same one again changes nothing.
// 3. A rule that is being asked stays alive, even if it is replaced or removed meanwhile.
// 4. The type rule of a kind enters itself in the registry at the end of its constructor, which
//    makes plug-ins fill it. `handleDel` takes it out, and so does its destructor if that was not
//    called.
//
// Threads: rules may be used from any thread as long as nobody installs or removes any. The end of
// a rule that is still in the registry changes the registry, which has no lock. REQUIRES: the last
// reference of a rule that was not withdrawn goes on the registry's thread.
#pragma once

#include "parse/BgpParseExtCommCollections.h"
#include "parse/BgpParseExtCommRuleMap.h"

namespace Routing::Bgp {

/// The setting of every rule: the registry, which it keeps alive. A rule without one works alone:
/// no plug-in fills it.
class BgpParseExtCommControl {
 public:
  static const Mox::Type type;

  BgpParseExtCommControl() = default;
  /// With a registry; null for none.
  explicit BgpParseExtCommControl(BgpParseExtCommRuleCollections::Ptr ruleCollections)
      : ruleCollections_(std::move(ruleCollections)) {}

  /// Null when there is none.
  const BgpParseExtCommRuleCollections::Ptr& ruleCollections() const { return ruleCollections_; }

  friend bool operator==(const BgpParseExtCommControl&, const BgpParseExtCommControl&) = default;
  /// The registry's address, for reflection.
  friend Mox::String valueToStrep(const BgpParseExtCommControl& control);
  friend std::ostream& operator<<(std::ostream& stream, const BgpParseExtCommControl& control) {
    return Mox::writeText(stream, valueToStrep(control));
  }

 private:
  BgpParseExtCommRuleCollections::Ptr ruleCollections_;
};

/// The base of every rule: its control, and whether the registry has its key.
class BgpParseExtCommRuleBase : public Mox::Entity<BgpParseExtCommRuleBase, Mox::PtrInterface> {
 public:
  static const Mox::Type type;

  /// Leaves the registry alone: a derived class enters its key.
  explicit BgpParseExtCommRuleBase(const BgpParseExtCommControl& control)
      : parseControl_(control) {}

  /// As given to the constructor.
  const BgpParseExtCommControl& parseControl() const { return parseControl_; }

 protected:
  // The key that names this rule, if there is a registry: in, out, and out from the destructor.
  template <class Kind>
  void enter(const BgpParseExtCommRuleKey<Kind>& key) const {
    if (const auto& registry = parseControl_.ruleCollections()) registry->instanceIs(key);
  }
  template <class Kind>
  void withdraw(const BgpParseExtCommRuleKey<Kind>& key) const {
    registered_ = false;
    if (const auto& registry = parseControl_.ruleCollections()) registry->instanceDel(key);
  }
  template <class Kind>
  void forget(const BgpParseExtCommRuleKey<Kind>& key) const {
    if (registered_) parseControl_.ruleCollections()->instanceForget(key);
  }

  /// Installs a rule under its octet and returns the one that it replaces, which is traced. `owner`
  /// and `attribute` name the map. RangeException for null.
  template <class Rule>
  static Mox::PtrConst<Rule> install(BgpParseExtCommRuleMap<Rule>& rules,
                                     const Mox::PtrConst<Rule>& rule, const Mox::Type& owner,
                                     std::string_view attribute) {
    Mox::refuseNull(rule, owner.name(), attribute);
    const Rule* const replaced = rules.find(rule->mapKey());
    if (replaced && replaced != rule.get())
      traceReplacement(owner, attribute, U32(rule->mapKey()), *replaced, *rule);
    return rules.insert(rule);
  }

 private:
  friend class BgpParseExtCommRuleCollections;

  static void traceReplacement(const Mox::Type& owner, std::string_view attribute, U32 octet,
                               const BgpParseExtCommRuleBase& replaced,
                               const BgpParseExtCommRuleBase& rule);

  const BgpParseExtCommControl parseControl_;
  // Set by the registry as it takes the key in, cleared by a withdrawal. A rule that was withdrawn
  // leaves the registry alone for good: its last reference may go on another thread. A rule whose
  // key somebody took out of the registry by hand does not know, and looks there as it dies.
  mutable bool registered_ = false;
};

/// A rule that builds the objects of the contents of one octet: of a type, or of a subtype of it.
template <class F, class Octet>
class BgpParseExtCommBuildingRule : public BgpParseExtCommRuleBase {
 public:
  using Family = F;
  using Content = typename F::Content;
  using Object = typename F::Object;
  using MapKey = Octet;

  /// For the contents of this octet.
  BgpParseExtCommBuildingRule(const BgpParseExtCommControl& control, Octet octet)
      : BgpParseExtCommRuleBase(control), octet_(octet) {}

  /// A new object of this content, or null to leave the content to the level above. Called from any
  /// thread that parses. The base asserts "0 && \"Must override in derived class\"".
  virtual Mox::Ptr<Object> inhale(const Content&) const {
    MOX_ASSERT(false, "0 && \"Must override in derived class\"");
    return nullptr;
  }
  /// The octet that the rule serves.
  Octet mapKey() const { return octet_; }

 private:
  const Octet octet_;
};

/// The base of type rules, the library's and those that plug-ins bring.
template <class F>
class BgpParseExtCommTypeRuleBase
    : public Mox::Entity<BgpParseExtCommTypeRuleBase<F>,
                         BgpParseExtCommBuildingRule<F, typename F::PktType>> {
 public:
  static const Mox::Type type;

  /// For the contents of this type.
  BgpParseExtCommTypeRuleBase(const BgpParseExtCommControl& control, typename F::PktType pktType)
      : BgpParseExtCommTypeRuleBase::Entity(control, pktType) {}

  /// The type that the rule serves.
  typename F::PktType pktType() const { return this->mapKey(); }
  /// Called when the top rule is withdrawn or lets go of the rule, ahead of the last reference, so
  /// maybe twice. A rule that has made itself known anywhere takes that back here.
  virtual void handleDel() const {}
};

template <>
const Mox::Type BgpParseExtendedCommunityTypeRuleBase::type;
template <>
const Mox::Type BgpParseExtendedCommunityIp6TypeRuleBase::type;

/// The base of the sub-rules of a kind.
template <class K>
class BgpParseExtCommSubTypeRuleBase
    : public Mox::Entity<BgpParseExtCommSubTypeRuleBase<K>,
                         BgpParseExtCommBuildingRule<typename K::Family, typename K::Subtype>> {
 public:
  static const Mox::Type type;
  using Kind = K;

  /// For the contents of this subtype.
  BgpParseExtCommSubTypeRuleBase(const BgpParseExtCommControl& control,
                                 typename K::Subtype pktSubType)
      : BgpParseExtCommSubTypeRuleBase::Entity(control, pktSubType) {}

  /// The subtype that the rule serves.
  typename K::Subtype pktSubType() const { return this->mapKey(); }
};

/// Marks the constructor that leaves the registry alone. The public one delegates to it and then
/// enters the registry: if a plug-in throws there, the destructor runs and takes the key back.
struct BgpParseExtCommUnregistered {};

/// The library's type rule of a kind. It owns its sub-rules.
template <class Kind>
class BgpParseExtCommTypeRule
    : public Mox::Entity<BgpParseExtCommTypeRule<Kind>,
                         BgpParseExtCommTypeRuleBase<typename Kind::Family>> {
 public:
  static const Mox::Type type;
  using Subtype = typename Kind::Subtype;
  using SubRule = typename Kind::SubRule;
  using Content = typename Kind::Family::Content;
  using Object = typename Kind::Family::Object;

  /// Ends with `handleInitialized`; an exception of a plug-in there leaves no rule behind.
  explicit BgpParseExtCommTypeRule(const BgpParseExtCommControl& control);
  ~BgpParseExtCommTypeRule() override;

  /// The object that the sub-rule of the content's subtype builds, else a general object of the
  /// type; never null. Costs one allocation, that of the object.
  Mox::Ptr<Object> inhale(const Content& content) const override;

  /// All of them, by subtype. Valid as long as the rule.
  const BgpParseExtCommRuleMap<SubRule>& subTypeRules() const { return subTypeRules_; }
  /// Null when there is none.
  Mox::PtrConst<SubRule> subTypeRule(Subtype subtype) const {
    return Mox::PtrConst<SubRule>(subTypeRules_.find(subtype));
  }
  /// Installs a sub-rule under its subtype. RangeException for null.
  void subTypeRuleIs(const Mox::PtrConst<SubRule>& rule);
  /// Returns what it removed; null when there was none.
  Mox::PtrConst<SubRule> subTypeRuleDel(Subtype subtype) { return subTypeRules_.erase(subtype); }
  /// Removes all.
  void subTypeRuleDelAll() { subTypeRules_.clear(); }

  /// Enters the rule in the registry, which makes plug-ins fill it. The rule of the non-transitive
  /// IPv6 type withdraws instead: no plug-in is ever offered it.
  void handleInitialized();
  /// Takes the rule out of the registry. It keeps its sub-rules and parses as before.
  void handleDel() const override;

 private:
  BgpParseExtCommTypeRule(const BgpParseExtCommControl& control, BgpParseExtCommUnregistered)
      : BgpParseExtCommTypeRule::Entity(control, Kind::pktType) {}
  BgpParseExtCommRuleKey<Kind> key() const;

  BgpParseExtCommRuleMap<SubRule> subTypeRules_;
};

#define ZOBGP_KIND(Kind, ...)                                       \
  extern template class BgpParseExtCommSubTypeRuleBase<kind::Kind>; \
  extern template class BgpParseExtCommTypeRule<kind::Kind>;
#include "parse/BgpParseExtCommKindList.h"

}  // namespace Routing::Bgp
