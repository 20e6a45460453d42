#include "parse/BgpParseExtCommPlugin.h"

#include "Mox/Trace.h"

namespace Routing::Bgp {

/// Forwards what the registry says to the plug-in that owns it.
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
  // The plug-in may drop its reactor, and its owner the plug-in, while it is called; nothing of the
  // reactor is touched after that.
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

// Inside a constructor nobody owns the plug-in yet, and what it does here may reach its reactor.
void BgpParseExtCommPluginBaseSm::handleStartup() const {
  const ConstructionGuard guard(*this);
#define ZOBGP_KIND(Kind, Operation, ...) handle##Operation##RuleInstance();
#define ZOBGP_TOP_KIND ZOBGP_KIND
#include "parse/BgpParseExtCommKindList.h"
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
  if (Mox::traceEnabled(8))
    Mox::trace(8, Mox::String(file_) + ':' + std::to_string(line_) + ": virtual void " + name() +
                      "::" + Mox::String(operation));
}

}  // namespace Routing::Bgp
