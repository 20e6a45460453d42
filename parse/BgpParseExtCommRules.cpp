#include "parse/BgpParseExtCommRules.h"

#include "Mox/Trace.h"

namespace Routing::Bgp {

using Mox::attribute;
using Mox::collection;
using Mox::operation;

const Mox::Type BgpParseExtCommControl::type{
    "Routing::Bgp::BgpParseExtCommControl",
    nullptr,
    {attribute<&BgpParseExtCommControl::ruleCollections>("ruleCollections")}};

const Mox::Type BgpParseExtCommRuleBase::type{
    "Routing::Bgp::BgpParseExtCommRuleBase",
    &Mox::PtrInterface::type,
    {attribute<&BgpParseExtCommRuleBase::parseControl>("parseControl")}};

template <>
const Mox::Type BgpParseExtendedCommunityTypeRuleBase::type{
    "Routing::Bgp::BgpParseExtendedCommunityTypeRuleBase",
    &BgpParseExtCommRuleBase::type,
    {attribute<&BgpParseExtendedCommunityTypeRuleBase::pktType>("pktType"), operation("inhale")}};

template <>
const Mox::Type BgpParseExtendedCommunityIp6TypeRuleBase::type{
    "Routing::Bgp::BgpParseExtendedCommunityIp6TypeRuleBase",
    &BgpParseExtCommRuleBase::type,
    {attribute<&BgpParseExtendedCommunityIp6TypeRuleBase::pktType>("pktType"),
     operation("inhale")}};

template <class Kind>
const Mox::Type BgpParseExtCommSubTypeRuleBase<Kind>::type{
    Kind::subRuleName,
    &BgpParseExtCommRuleBase::type,
    {attribute<&BgpParseExtCommSubTypeRuleBase::pktSubType>("pktSubType"), operation("inhale")}};

template <class Kind>
const Mox::Type BgpParseExtCommTypeRule<Kind>::type{
    Kind::ruleName,
    &BgpParseExtCommTypeRuleBase<typename Kind::Family>::type,
    {collection<&BgpParseExtCommTypeRule::subTypeRules>("subTypeRule"), operation("inhale"),
     operation("handleInitialized"), operation("handleDel")}};

Mox::String valueToStrep(const BgpParseExtCommControl& control) {
  return Mox::valueText(BgpParseExtCommControl::type.name(),
                        {{"ruleCollections", valueToStrep(control.ruleCollections())}});
}

void BgpParseExtCommRuleBase::traceReplacement(const Mox::Type& owner, std::string_view attribute,
                                               U32 octet, const BgpParseExtCommRuleBase& replaced,
                                               const BgpParseExtCommRuleBase& rule) {
  if (!Mox::traceEnabled(8)) return;
  Mox::trace(8, owner.name() + "::" + Mox::String(attribute) + "Is: " + std::to_string(octet) +
                    ": " + rule.fwkType().name() + " replaces " + replaced.fwkType().name());
}

template <class Kind>
BgpParseExtCommTypeRule<Kind>::BgpParseExtCommTypeRule(const BgpParseExtCommControl& control)
    : BgpParseExtCommTypeRule(control, BgpParseExtCommUnregistered{}) {
  const Mox::PtrInterface::ConstructionGuard guard(*this);
  handleInitialized();
}

template <class Kind>
BgpParseExtCommTypeRule<Kind>::~BgpParseExtCommTypeRule() {
  this->forget(key());
}

// Keys name rules that plug-ins may fill, and a withdrawal is const.
template <class Kind>
BgpParseExtCommRuleKey<Kind> BgpParseExtCommTypeRule<Kind>::key() const {
  return BgpParseExtCommRuleKey<Kind>(const_cast<BgpParseExtCommTypeRule*>(this));
}

template <class Kind>
void BgpParseExtCommTypeRule<Kind>::handleInitialized() {
  if constexpr (Kind::offered)
    this->enter(key());
  else
    handleDel();
}

template <class Kind>
void BgpParseExtCommTypeRule<Kind>::handleDel() const {
  const Mox::PtrInterface::ConstructionGuard guard(*this);  // a plug-in may let go of the rule
  this->withdraw(key());
}

template <class Kind>
void BgpParseExtCommTypeRule<Kind>::subTypeRuleIs(const Mox::PtrConst<SubRule>& rule) {
  this->install(subTypeRules_, rule, type, "subTypeRule");
}

template <class Kind>
auto BgpParseExtCommTypeRule<Kind>::inhale(const Content& content) const -> Mox::Ptr<Object> {
  const auto subtype = Subtype(content.subtype());
  if (bgpIsValidEnumMember(subtype))
    if (Mox::Ptr<Object> object = subTypeRules_.inhale(subtype, content)) return object;
  return Kind::fallback(content);
}

#define ZOBGP_KIND(Kind, ...)                                \
  template class BgpParseExtCommSubTypeRuleBase<kind::Kind>; \
  template class BgpParseExtCommTypeRule<kind::Kind>;
#include "parse/BgpParseExtCommKindList.h"

}  // namespace Routing::Bgp
