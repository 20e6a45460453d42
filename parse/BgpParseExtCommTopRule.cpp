#include "parse/BgpParseExtCommTopRule.h"

namespace Routing::Bgp {
namespace {

using Mox::collection;
using Mox::operation;

/// What the type rule of the content builds, else a general object of the family.
template <class TypeRule>
auto parse(const BgpParseExtCommRuleMap<TypeRule>& rules,
           const typename TypeRule::Content& content) {
  using Object = typename TypeRule::Object;
  const auto pktType = typename TypeRule::MapKey(content.type());
  if (bgpIsValidEnumMember(pktType))
    if (const Mox::PtrConst<TypeRule> rule(rules.find(pktType)); rule)
      if (Mox::Ptr<Object> object = rule->inhale(content)) return object;
  return Mox::makeNew<Object>(extCommClassificationUnSpecified, content);
}

// Rules are withdrawn when they are in the map no longer: plug-ins hear of it and may look.

template <class TypeRule>
void replace(BgpParseExtCommRuleMap<TypeRule>& rules, const Mox::PtrConst<TypeRule>& rule,
             std::string_view attribute) {
  Mox::refuseNull(rule, BgpParseExtendedCommunityRule::type.name(), attribute);
  if (const auto replaced = rules.insert(rule)) replaced->handleDel();
}

template <class TypeRule>
Mox::PtrConst<TypeRule> remove(BgpParseExtCommRuleMap<TypeRule>& rules,
                               typename TypeRule::MapKey pktType) {
  const auto removed = rules.erase(pktType);
  if (removed) removed->handleDel();
  return removed;
}

// By value: who is withdrawn may change the map.
void withdraw(const auto rules) {
  for (const auto& rule : rules) rule->handleDel();
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
  if (const auto& registry = parseControl().ruleCollections())
    registry->instanceForget(BgpParseExtendedCommunityRuleKey(this));
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
  if (const auto& registry = parseControl().ruleCollections())
    registry->instanceIs(BgpParseExtendedCommunityRuleKey(this));
}

void BgpParseExtendedCommunityRule::handleDel() const {
  withdraw(typeRules_);
  withdraw(ip6TypeRules_);
  const BgpParseExtendedCommunityRuleKey key(const_cast<BgpParseExtendedCommunityRule*>(this));
  if (const auto& registry = parseControl().ruleCollections()) registry->instanceDel(key);
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
  replace(typeRules_, rule, "typeRule");
}
Mox::PtrConst<BgpParseExtendedCommunityTypeRuleBase> BgpParseExtendedCommunityRule::typeRuleDel(
    BgpExtCommPktType pktType) {
  return remove(typeRules_, pktType);
}
void BgpParseExtendedCommunityRule::typeRuleDelAll() { withdraw(typeRules_.clear()); }

void BgpParseExtendedCommunityRule::ip6TypeRuleIs(const Mox::PtrConst<Ip6TypeRule>& rule) {
  replace(ip6TypeRules_, rule, "ip6TypeRule");
}
Mox::PtrConst<BgpParseExtendedCommunityIp6TypeRuleBase>
BgpParseExtendedCommunityRule::ip6TypeRuleDel(BgpExtCommIp6PktType pktType) {
  return remove(ip6TypeRules_, pktType);
}
void BgpParseExtendedCommunityRule::ip6TypeRuleDelAll() { withdraw(ip6TypeRules_.clear()); }

BgpParseExtendedCommunityRule::Ptr bgpParseExtendedCommunityRuleFactory(
    const BgpParseExtCommControl& control) {
  return Mox::makeNew<BgpParseExtendedCommunityRule>(control);
}

}  // namespace Routing::Bgp
