#include "parse/BgpParseExtCommOpenType.h"

#include "Mox/Exception.h"
#include "Mox/Trace.h"
#include "parse/BgpParseExtCommTopRule.h"

namespace Routing::Bgp {

using Mox::attribute;
using Mox::collection;
using Mox::operation;

const Mox::Type BgpParseExtCommOpenSubTypeRuleBase::type{
    "Routing::Bgp::BgpParseExtCommOpenSubTypeRuleBase",
    &BgpParseExtCommRuleBase::type,
    {attribute<&BgpParseExtCommOpenSubTypeRuleBase::pktType>("pktType"),
     attribute<&BgpParseExtCommOpenSubTypeRuleBase::pktSubType>("pktSubType"),
     operation("inhale")}};

const Mox::Type BgpParseExtCommOpenTypeRule::type{
    "Routing::Bgp::BgpParseExtCommOpenTypeRule",
    &BgpParseExtendedCommunityTypeRuleBase::type,
    {collection<&BgpParseExtCommOpenTypeRule::subTypeRules>("subTypeRule"), operation("inhale")}};

Mox::Ptr<ExtComm> BgpParseExtCommOpenTypeRule::inhale(const ExtCommContent& content) const {
  return subTypeRules_.inhale(content.subtype(), content);
}

void BgpParseExtCommOpenTypeRule::subTypeRuleIs(const Mox::PtrConst<SubRule>& rule) {
  if (rule && rule->pktType() != pktType())
    throw Mox::RangeException("a sub-rule of " + stringValue(rule->pktType()) + " in a rule of " +
                              stringValue(pktType()));
  install(subTypeRules_, rule, type, "subTypeRule");
}

// The parser shows its rules as const, for all who only ask them. A caller that may install rules
// in it may do so in one of them, too.
BgpParseExtCommOpenTypeRule::Ptr bgpParseExtCommOpenTypeRuleIs(
    BgpParseExtendedCommunityRule& parser, BgpExtCommPktType pktType) {
  using Open = BgpParseExtCommOpenTypeRule;
  if (!bgpIsValidEnumMember(pktType)) return nullptr;
  if (const auto rule = parser.typeRule(pktType)) {
    const auto* const open = dynamic_cast<const Open*>(rule.get());
    if (!open && Mox::traceEnabled(8))
      Mox::trace(8, "Routing::Bgp::bgpParseExtCommOpenTypeRuleIs: " + std::to_string(pktType) +
                        ": " + rule->fwkType().name() + " is there");
    return Open::Ptr(const_cast<Open*>(open));
  }
  const auto open = Mox::makeNew<Open>(parser.parseControl(), pktType);
  parser.typeRuleIs(open);
  return open;
}

}  // namespace Routing::Bgp
