#include "parse/BgpParseExtCommPlugin.h"

#include "Mox/Trace.h"

namespace Routing::Bgp {

/// Forwards the registry's events to the plug-in that owns it.
class BgpParseExtCommPluginBaseSm::Reactor final
    : public BgpParseExtCommRuleCollections::NotifieeConst {
 public:
  Reactor(const BgpParseExtCommPluginBaseSm& owner, bool zombie) : owner_(owner), zombie_(zombie) {}

  void zombieIs(bool zombie) { zombie_ = zombie; }

#define ZOBGP_KIND(Kind, Operation, Collection, RuleClass, SubRuleClass, Key, ...) \
  void onExtended##Collection##RuleInstance(const Key& key) override {             \
    forward([&key](auto& owner) { owner.handle##Operation##RuleInstance(key); });  \
  }                                                                                \
  void onExtended##Collection##RuleInstance() override {                           \
    forward([](auto& owner) { owner.handle##Operation##RuleInstance(); });         \
  }
#define ZOBGP_TOP_KIND ZOBGP_KIND
#include "parse/BgpParseExtCommKindList.h"

 private:
  // The call may end the reactor, and the plug-in with it: the plug-in is held, and the reactor is
  // not touched afterwards.
  template <class Call>
  void forward(Call call) const {
    if (zombie_) return;
    const BgpParseExtCommPluginBaseSm& owner = owner_;
    const ConstructionGuard guard(owner);
    call(owner);
  }

  const BgpParseExtCommPluginBaseSm& owner_;
  bool zombie_;
};

const Mox::Type BgpParseExtCommPluginBaseSm::type{
    "Routing::Bgp::BgpParseExtCommPluginBaseSm",
    &Mox::PtrInterface::type,
    {Mox::attribute<&BgpParseExtCommPluginBaseSm::ruleCollections>("ruleCollections"),
     Mox::operation("handleStartup"), Mox::operation("moxDoZombieReactors")}};

BgpParseExtCommPluginBaseSm::BgpParseExtCommPluginBaseSm(const RuleCollections& ruleCollections) {
  ruleCollectionsIs(ruleCollections);
}

BgpParseExtCommPluginBaseSm::~BgpParseExtCommPluginBaseSm() = default;

void BgpParseExtCommPluginBaseSm::ruleCollectionsIs(const RuleCollections& ruleCollections) {
  if (ruleCollections == ruleCollections_) return;
  ruleCollectionsDel();
  if (!ruleCollections) return;
  ruleCollections_ = ruleCollections;
  reactor_ = std::make_unique<Reactor>(*this, deletionMark());
  reactor_->notifierIs(ruleCollections_);
  if (!deletionMark()) handleStartup();
}

BgpParseExtCommPluginBaseSm::RuleCollections BgpParseExtCommPluginBaseSm::ruleCollectionsDel() {
  reactor_.reset();
  return std::exchange(ruleCollections_, nullptr);
}

// Guarded: called from a constructor, nobody owns the plug-in yet; called later, it may be released
// while it is asked.
void BgpParseExtCommPluginBaseSm::handleStartup() const {
  const ConstructionGuard guard(*this);
#define ZOBGP_KIND(Kind, Operation, ...) handle##Operation##RuleInstance();
#define ZOBGP_TOP_KIND ZOBGP_KIND
#include "parse/BgpParseExtCommKindList.h"
}

bool BgpParseExtCommPluginBaseSm::addExtCommOpenTypeSubRule(
    const BgpParseExtendedCommunityRuleKey& ruleKey,
    const Mox::PtrConst<BgpParseExtCommOpenSubTypeRuleBase>& rule) {
  MOX_ASSERT(rule, kind::Top::nullRuleText);
  MOX_ASSERT(ruleKey.rule(), "__null != ruleKey.rule()");
  const auto open = bgpParseExtCommOpenTypeRuleIs(*ruleKey.rule(), rule->pktType());
  if (open) open->subTypeRuleIs(rule);
  return bool(open);
}

void BgpParseExtCommPluginBaseSm::moxDoZombieReactors(bool zombie) {
  if (zombie == deletionMark()) return;
  deletionMarkIs(zombie);
  if (reactor_) reactor_->zombieIs(zombie);
}

void BgpParseExtCommPluginBaseSm::zeroReferencesIs(bool zero) {
  if (zero) moxDoZombieReactors(true);
  Entity::zeroReferencesIs(zero);
}

void BgpParseExtCommPluginType::traceInstallation(std::string_view operation) const {
  if (!Mox::traceEnabled(8)) return;
  const std::string_view path(file_);
  Mox::trace(8, Mox::String(path.substr(path.rfind('/') + 1)) + ':' + std::to_string(line_) +
                    ":virtual void " + name() + "::" + Mox::String(operation));
}

}  // namespace Routing::Bgp
