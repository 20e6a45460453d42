#include "parse/BgpParseExtCommTopRule.h"

#include <exception>

namespace Routing::Bgp {
namespace {

using Mox::collection;
using Mox::operation;

/// The object that the type rule of the content builds, else a general object of the family.
template <class TypeRule>
auto parse(const BgpParseExtCommRuleMap<TypeRule>& rules,
           const typename TypeRule::Content& content) {
  using Object = typename TypeRule::Object;
  const auto pktType = typename TypeRule::MapKey(content.type());
  if (bgpIsValidEnumMember(pktType))
    if (Mox::Ptr<Object> object = rules.inhale(pktType, content)) return object;
  return Mox::makeNew<Object>(extCommClassificationUnSpecified, content);
}

// Rules are withdrawn once they are out of the map: plug-ins hear of it and may look.

template <class TypeRule>
Mox::PtrConst<TypeRule> remove(BgpParseExtCommRuleMap<TypeRule>& rules,
                               typename TypeRule::MapKey pktType) {
  const auto removed = rules.erase(pktType);
  if (removed) removed->handleDel();
  return removed;
}

/// Withdraws rules one after another, all of them even if plug-ins throw meanwhile: a key that
/// stayed behind would be offered to every plug-in that comes later.
class Withdrawal {
 public:
  void step(const auto& withdraw) {
    try {
      withdraw();
    } catch (...) {
      if (!fault_) fault_ = std::current_exception();
    }
  }
  /// Takes a copy, since plug-ins may change the map.
  void stepEach(const auto rules) {
    for (const auto& rule : rules) step([&] { rule->handleDel(); });
  }
  /// Throws what was thrown first.
  void end() const {
    if (fault_) std::rethrow_exception(fault_);
  }

 private:
  std::exception_ptr fault_;
};

void withdrawAll(const auto& rules) {
  Withdrawal withdrawal;
  withdrawal.stepEach(rules);
  withdrawal.end();
}

}  // namespace

const Mox::Type BgpParseExtendedCommunityRule::type{
    "Routing::Bgp::BgpParseExtendedCommunityRule",
    &BgpParseExtCommRuleBase::type,
    {collection<&BgpParseExtendedCommunityRule::typeRules>("typeRule"),
     collection<&BgpParseExtendedCommunityRule::ip6TypeRules>("ip6TypeRule"),
     operation("parseExtendedCommunity"), operation("parseExtendedCommunityIp6"),
     operation("handleInitialized"), operation("handleDel")}};

BgpParseExtendedCommunityRule::BgpParseExtendedCommunityRule(const BgpParseExtCommControl& control)
    : BgpParseExtendedCommunityRule(control, BgpParseExtCommUnregistered{}) {
  const ConstructionGuard guard(*this);
  handleInitialized();
}

BgpParseExtendedCommunityRule::~BgpParseExtendedCommunityRule() {
  forget(BgpParseExtendedCommunityRuleKey(this));
}

void BgpParseExtendedCommunityRule::handleInitialized() {
  const auto install = [this]<class Rule>(Mox::Ptr<Rule> rule) {
    if constexpr (std::derived_from<Rule, TypeRule>)
      typeRuleIs(std::move(rule));
    else
      ip6TypeRuleIs(std::move(rule));
  };
#define ZOBGP_KIND(Kind, ...) install(Mox::makeNew<kind::Kind::Rule>(parseControl()));
#include "parse/BgpParseExtCommKindList.h"
  enter(BgpParseExtendedCommunityRuleKey(this));
}

void BgpParseExtendedCommunityRule::handleDel() const {
  const ConstructionGuard guard(*this);  // a plug-in may let go of the parser
  const BgpParseExtendedCommunityRuleKey key(const_cast<BgpParseExtendedCommunityRule*>(this));
  Withdrawal withdrawal;
  withdrawal.stepEach(typeRules_);
  withdrawal.stepEach(ip6TypeRules_);
  withdrawal.step([&] { withdraw(key); });
  // Asked a last time, plug-ins may have installed type rules, which have entered the registry.
  withdrawal.stepEach(typeRules_);
  withdrawal.stepEach(ip6TypeRules_);
  withdrawal.end();
}

Mox::Ptr<ExtComm> BgpParseExtendedCommunityRule::parseExtendedCommunity(
    const ExtCommContent& content) const {
  return parse(typeRules_, content);
}
Mox::Ptr<ExtCommIp6> BgpParseExtendedCommunityRule::parseExtendedCommunityIp6(
    const ExtCommIp6Content& content) const {
  return parse(ip6TypeRules_, content);
}

void BgpParseExtendedCommunityRule::typeRuleIs(const Mox::PtrConst<TypeRule>& rule) {
  if (const auto replaced = install(typeRules_, rule, type, "typeRule")) replaced->handleDel();
}
Mox::PtrConst<BgpParseExtendedCommunityTypeRuleBase> BgpParseExtendedCommunityRule::typeRuleDel(
    BgpExtCommPktType pktType) {
  return remove(typeRules_, pktType);
}
void BgpParseExtendedCommunityRule::typeRuleDelAll() { withdrawAll(typeRules_.clear()); }

void BgpParseExtendedCommunityRule::ip6TypeRuleIs(const Mox::PtrConst<Ip6TypeRule>& rule) {
  if (const auto replaced = install(ip6TypeRules_, rule, type, "ip6TypeRule"))
    replaced->handleDel();
}
Mox::PtrConst<BgpParseExtendedCommunityIp6TypeRuleBase>
BgpParseExtendedCommunityRule::ip6TypeRuleDel(BgpExtCommIp6PktType pktType) {
  return remove(ip6TypeRules_, pktType);
}
void BgpParseExtendedCommunityRule::ip6TypeRuleDelAll() { withdrawAll(ip6TypeRules_.clear()); }

BgpParseExtendedCommunityRule::Ptr bgpParseExtendedCommunityRuleFactory(
    const BgpParseExtCommControl& control) {
  return Mox::makeNew<BgpParseExtendedCommunityRule>(control);
}

}  // namespace Routing::Bgp
