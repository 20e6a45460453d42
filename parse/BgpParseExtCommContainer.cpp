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
     {"extCommParserSms", Mox::Attribute::Kind::collection, &pluginsText},
     Mox::attribute<&BgpParseExtCommContainerSm::extCommCache>("extCommCache")}};

BgpParseExtCommContainerSm::BgpParseExtCommContainerSm() { handleInitialized(); }

// Whoever still holds the parser keeps it as it is, so it is not withdrawn here: the registry stays
// true, and no plug-in hears anything of the end.
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

BgpParseExtendedCommunityRule::Ptr BgpParseExtCommContainerSm::extCommParserIs(
    const BgpParseExtCommControl& control) {
  if (parser_ && parser_->parseControl() == control) return parser_;
  const auto replaced = std::exchange(parser_, bgpParseExtendedCommunityRuleFactory(control));
  if (replaced) replaced->handleDel();
  return parser_;
}

BgpParseExtendedCommunityRule::Ptr BgpParseExtCommContainerSm::extCommParserDel() {
  if (parser_) parser_->handleDel();
  return std::exchange(parser_, nullptr);
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
