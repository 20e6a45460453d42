#include "parse/BgpParseExtCommContainer.h"

#include "agent/FeatureToggles.h"
#include "parse/BgpParseExtCommColor.h"
#include "parse/BgpParseExtCommDefaultGateway.h"
#include "parse/BgpParseExtCommLinkBandwidth.h"
#include "parse/BgpParseExtCommOriginValidationState.h"
#include "parse/BgpParseExtCommRouteOrigin.h"
#include "parse/BgpParseExtCommRouteTarget.h"
#include "parse/BgpParseExtCommTunnelEncap.h"

namespace Routing::Bgp {
namespace {

bool originValidationOn() {
  static const bool on = getToggleState("RpkiToggle", true);
  return on;
}

Mox::String pluginsText(const void* container) {
  Mox::String text;
  for (const auto& [index, sm] :
       static_cast<const BgpParseExtCommContainerSm*>(container)->extCommParserSms())
    text += (text.empty() ? "" : ", ") + std::to_string(index) + ": " + sm->fwkType().name();
  return text;
}

}  // namespace

const Mox::Type BgpParseExtCommContainerSm::type{
    "Routing::Bgp::BgpParseExtCommContainerSm",
    &Mox::PtrInterface::type,
    {Mox::attribute<&BgpParseExtCommContainerSm::parseExtCommRuleCollections>(
         "parseExtCommRuleCollections"),
     Mox::attribute<&BgpParseExtCommContainerSm::extCommParser>("extCommParser"),
     {"extCommParserSms", Mox::Attribute::Form::collection, &pluginsText},
     Mox::attribute<&BgpParseExtCommContainerSm::extCommCache>("extCommCache")}};

BgpParseExtCommContainerSm::BgpParseExtCommContainerSm() { handleInitialized(); }

// The parser is not withdrawn here: others may hold it and keep it as it is, registered and whole.
// So no plug-in hears of the end.
BgpParseExtCommContainerSm::~BgpParseExtCommContainerSm() {
  parseExtCommRuleCollectionsDel();
  parser_ = nullptr;
  cache_ = nullptr;
  extCommParserSmsDelAll();
}

void BgpParseExtCommContainerSm::handleInitialized() {
  const auto registry = parseExtCommRuleCollectionsIs();
  extCommParserSmsEnq(bgpParseExtCommRouteOriginSmFactory(registry));
  extCommParserSmsEnq(bgpParseExtCommRouteTargetSmFactory(registry));
  extCommParserSmsEnq(bgpParseExtCommTunnelEncapSmFactory(registry));
  extCommParserSmsEnq(bgpParseExtCommDefaultGatewaySmFactory(registry));
  extCommParserSmsEnq(bgpParseExtCommLinkBandwidthSmFactory(registry));
  extCommParserSmsEnq(bgpParseExtCommColorSmFactory(registry));
  if (originValidationOn())
    extCommParserSmsEnq(bgpParseExtCommOriginValidationStateSmFactory(registry));
  extCommParserIs(BgpParseExtCommControl(registry));
  cache_ = BgpShowCli::extCommCacheFactory();
}

BgpParseExtCommRuleCollections::Ptr BgpParseExtCommContainerSm::parseExtCommRuleCollectionsIs() {
  if (!ruleCollections_) ruleCollections_ = bgpParseExtCommRuleCollectionsFactory();
  return ruleCollections_;
}

BgpParseExtCommRuleCollections::Ptr BgpParseExtCommContainerSm::parseExtCommRuleCollectionsDel() {
  return std::exchange(ruleCollections_, nullptr);
}

// The member changes before the old parser is withdrawn: plug-ins are asked meanwhile and may
// change it again.

BgpParseExtendedCommunityRule::Ptr BgpParseExtCommContainerSm::extCommParserIs(
    const BgpParseExtCommControl& control) {
  if (parser_ && parser_->parseControl() == control) return parser_;
  const auto parser = bgpParseExtendedCommunityRuleFactory(control);
  const auto replaced = std::exchange(parser_, parser);
  if (replaced) replaced->handleDel();
  return parser;
}

BgpParseExtendedCommunityRule::Ptr BgpParseExtCommContainerSm::extCommParserDel() {
  const auto parser = std::exchange(parser_, nullptr);
  if (parser) parser->handleDel();
  return parser;
}

U32 BgpParseExtCommContainerSm::extCommParserSmsEnq(const ParserSm& sm) {
  Mox::refuseNull(sm, type.name(), "extCommParserSms");
  return sms_.enqueue(sm);
}

void BgpParseExtCommContainerSm::extCommParserSmsIs(U32 index, const ParserSm& sm) {
  Mox::refuseNull(sm, type.name(), "extCommParserSms");
  sms_.insert(index, sm);
}

void BgpParseExtCommContainerSm::extCommParserSmsDelAll() {
  while (!sms_.empty()) sms_.dequeue();
}

BgpParseExtCommContainerSm::Ptr bgpParseExtCommContainerSmFactory() {
  return Mox::makeNew<BgpParseExtCommContainerSm>();
}

}  // namespace Routing::Bgp
