// The rules that turn a raw content into an object of a class that knows its meaning.
//
//   top rule   BgpParseExtendedCommunityRule, chooses by the type octet (BgpParseExtCommTopRule.h)
//   type rule  BgpParseExtCommTransOpaqueRule and kin, chooses by the subtype octet
//   sub-rule   from a plug-in, on BgpParseExtComSubTypeTransOpaqueRuleBase and kin, builds
//
// 1. Parsing never fails: where nothing more specific is installed, an octet is no member of its
//    enumeration, or a rule returns null, the level above builds a general object instead.
// 2. A rule installed under a key replaces the one that was there; the same one again changes
//    nothing.
// 3. A type rule enters itself in the registry at the end of its constructor, which makes plug-ins
//    fill it, and is out of it before it is destroyed.
//
// Threads: rules may be used from any thread as long as nobody installs or removes any.
#pragma once

#include "parse/BgpParseExtCommCollections.h"
#include "parse/BgpParseExtCommRuleMap.h"

namespace Routing::Bgp {

/// What every rule is given: the registry, which it keeps alive. Without one, rules work by
/// themselves.
class BgpParseExtCommControl {
 public:
  static const Mox::Type type;

  BgpParseExtCommControl() = default;
  explicit BgpParseExtCommControl(BgpParseExtCommRuleCollections::Ptr ruleCollections)
      : ruleCollections_(std::move(ruleCollections)) {}

  const BgpParseExtCommRuleCollections::Ptr& ruleCollections() const { return ruleCollections_; }

  friend bool operator==(const BgpParseExtCommControl&, const BgpParseExtCommControl&) = default;
  friend Mox::String valueToStrep(const BgpParseExtCommControl& control);
  friend std::ostream& operator<<(std::ostream& stream, const BgpParseExtCommControl& control) {
    return Mox::writeText(stream, valueToStrep(control));
  }

 private:
  BgpParseExtCommRuleCollections::Ptr ruleCollections_;
};

/// The base of every rule.
class BgpParseExtCommRuleBase : public Mox::Entity<BgpParseExtCommRuleBase, Mox::PtrInterface> {
 public:
  static const Mox::Type type;

  explicit BgpParseExtCommRuleBase(const BgpParseExtCommControl& control)
      : parseControl_(control) {}

  const BgpParseExtCommControl& parseControl() const { return parseControl_; }

 private:
  const BgpParseExtCommControl parseControl_;
};

/// A rule that serves the contents of one octet and builds their objects.
template <class F, class Octet>
class BgpParseExtCommBuildingRule : public BgpParseExtCommRuleBase {
 public:
  using Family = F;
  using Content = typename F::Content;
  using Object = typename F::Object;
  using MapKey = Octet;

  BgpParseExtCommBuildingRule(const BgpParseExtCommControl& control, Octet octet)
      : BgpParseExtCommRuleBase(control), octet_(octet) {}

  /// A new object of the content, or null to leave it to the level above. The base ends the
  /// process.
  virtual Mox::Ptr<Object> inhale(const Content&) const {
    MOX_ASSERT(false, "0 && \"Must override in derived class\"");
    return nullptr;
  }
  Octet mapKey() const { return octet_; }

 private:
  const Octet octet_;
};

/// The base of a type rule, those of the library and those of others.
template <class F>
class BgpParseExtCommTypeRuleBase
    : public Mox::Entity<BgpParseExtCommTypeRuleBase<F>,
                         BgpParseExtCommBuildingRule<F, typename F::PktType>> {
 public:
  static const Mox::Type type;

  BgpParseExtCommTypeRuleBase(const BgpParseExtCommControl& control, typename F::PktType pktType)
      : BgpParseExtCommTypeRuleBase::Entity(control, pktType) {}

  typename F::PktType pktType() const { return this->mapKey(); }
  /// Called when the top rule lets go of the rule, ahead of the last reference: a rule that has
  /// made itself known anywhere takes that back.
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

  BgpParseExtCommSubTypeRuleBase(const BgpParseExtCommControl& control,
                                 typename K::Subtype pktSubType)
      : BgpParseExtCommSubTypeRuleBase::Entity(control, pktSubType) {}

  typename K::Subtype pktSubType() const { return this->mapKey(); }
};

/// Says of a constructor that it leaves the registry alone. The one that goes there delegates to
/// it: when a plug-in throws, the rule is whole enough for its destructor to take its key back.
struct BgpParseExtCommUnregistered {};

/// The library's type rule of a kind.
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

  explicit BgpParseExtCommTypeRule(const BgpParseExtCommControl& control);
  ~BgpParseExtCommTypeRule() override;

  /// What the sub-rule of the subtype builds, else a general object of the type.
  Mox::Ptr<Object> inhale(const Content& content) const override;

  const BgpParseExtCommRuleMap<SubRule>& subTypeRules() const { return subTypeRules_; }
  /// Null when there is none.
  Mox::PtrConst<SubRule> subTypeRule(Subtype subtype) const {
    return Mox::PtrConst<SubRule>(subTypeRules_.find(subtype));
  }
  /// RangeException for null.
  void subTypeRuleIs(const Mox::PtrConst<SubRule>& rule);
  /// Returns what it removed.
  Mox::PtrConst<SubRule> subTypeRuleDel(Subtype subtype) { return subTypeRules_.erase(subtype); }
  void subTypeRuleDelAll() { subTypeRules_.clear(); }

  /// Enters the rule in the registry. The rule of the non-transitive IPv6 type withdraws instead:
  /// no plug-in is ever offered it.
  void handleInitialized();
  /// Takes the rule out of the registry.
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
