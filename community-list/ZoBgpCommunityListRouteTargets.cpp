#include "community-list/ZoBgpCommunityListRouteTargets.h"

#include <new>
#include <sstream>
#include <utility>

#include "Mox/Trace.h"
#include "Mox/ValueText.h"

namespace Routing::Bgp {

using Mox::operation;

const Mox::Type RtExtCommListLifeTimeNotifier::type{
    "Routing::Bgp::RtExtCommListLifeTimeNotifier",
    &Orv::DedupHandleLifeTimeNotifier::type,
    {operation("rtExtCommListRawPtr"), operation("comm"),
     Mox::attribute<&RtExtCommListLifeTimeNotifier::toStrep>("toStrep")}};
const Mox::Type NotifyingRtExtCommListCollection::type{
    "Routing::Bgp::NotifyingRtExtCommListCollection",
    &Mox::PtrInterface::type,
    {Mox::collection<&NotifyingRtExtCommListCollection::rtExtCommListStringForm>("rtExtCommList"),
     operation("dumpState")}};
const Mox::Type RtExtCommListLifeTimeNotifiee::type{
    "Routing::Bgp::RtExtCommListLifeTimeNotifiee", &Orv::DedupHashTableLifeTimeNotifiee::type, {}};

// --- The notifier.

RtExtCommClassificationList::PtrConst RtExtCommListLifeTimeNotifier::rtExtCommList() const {
  auto* const group = rtExtCommListRawPtr();
  return group->referencesIncIfAlive() ? RtExtCommClassificationList::PtrConst::adopt(group)
                                       : nullptr;
}

std::ostream& operator<<(std::ostream& stream, const RtExtCommListLifeTimeNotifier* notifier) {
  return Mox::writeText(stream, notifier ? notifier->toStrep() : "NULL");
}

// The group's reference to its notifier is counted by hand, since other threads read the pointer
// meanwhile. Nobody reads it while it is taken away: the group's last user is gone then.

RtExtCommClassificationList::~RtExtCommClassificationList() { lifeTimeNotifierIs(nullptr); }

Mox::Ptr<RtExtCommListLifeTimeNotifier> RtExtCommClassificationList::getLifeTimeNotifier() const {
  return Mox::Ptr<RtExtCommListLifeTimeNotifier>(lifeTimeNotifier_.load());
}

void RtExtCommClassificationList::lifeTimeNotifierIs(
    const Mox::Ptr<RtExtCommListLifeTimeNotifier>& notifier) {
  auto mine = notifier;
  const auto replaced =
      Mox::Ptr<RtExtCommListLifeTimeNotifier>::adopt(lifeTimeNotifier_.exchange(mine.release()));
}

// --- The collection.

void NotifyingRtExtCommListCollection::tell(const Notifier& notifier) {
  // Two events: an observer may go in the first.
  notifiees_.deliver<NotifieeConst>(
      [&](NotifieeConst& notifiee) { notifiee.onRtExtCommListImmediate(notifier); });
  notifiees_.deliver<NotifieeConst>(
      [&](NotifieeConst& notifiee) { notifiee.onRtExtCommList(notifier); });
}

void NotifyingRtExtCommListCollection::rtExtCommListIs(const Notifier& notifier) {
  Mox::refuseNull(notifier, type.name(), "rtExtCommList");
  Set one{notifier};
  add(one.extract(one.begin()));
}

// A node that is not wanted goes when the lock has gone.
void NotifyingRtExtCommListCollection::add(Set::node_type node) {
  const Notifier notifier = node.value();
  Set::insert_return_type added;
  {
    const std::lock_guard guard(mutex_);
    added = rtExtCommList_.insert(std::move(node));
  }
  if (added.inserted) tell(notifier);
}

void NotifyingRtExtCommListCollection::rtExtCommListDel(const Notifier& notifier) {
  Set::node_type taken;  // keeps the notifier: `notifier` may be the member itself
  {
    const std::lock_guard guard(mutex_);
    taken = rtExtCommList_.extract(notifier);
  }
  if (taken) tell(taken.value());
}

void NotifyingRtExtCommListCollection::rtExtCommListDelAll() {
  for (const Notifier& notifier : rtExtCommList()) rtExtCommListDel(notifier);
}

bool NotifyingRtExtCommListCollection::rtExtCommListHas(const Notifier& notifier) const {
  const std::lock_guard guard(mutex_);
  return rtExtCommList_.contains(notifier);
}

U32 NotifyingRtExtCommListCollection::rtExtCommLists() const {
  const std::lock_guard guard(mutex_);
  return U32(rtExtCommList_.size());
}

auto NotifyingRtExtCommListCollection::rtExtCommList() const -> std::vector<Notifier> {
  const std::lock_guard guard(mutex_);
  return {rtExtCommList_.begin(), rtExtCommList_.end()};
}

Mox::String NotifyingRtExtCommListCollection::rtExtCommListStringForm() const {
  Mox::String texts;
  for (const Notifier& notifier : rtExtCommList())
    texts += (texts.empty() ? "" : " ") + notifier->toStrep();
  return texts;
}

void NotifyingRtExtCommListCollection::dumpState(const Mox::Ptr<const Orv::DumpContext>& context,
                                                 U32 indent) const {
  const auto notifiers = rtExtCommList();
  context->line(indent, "NotifyingRtExtCommListCollection rtExtCommLists #%u;\n",
                unsigned(notifiers.size()));
  for (const Notifier& notifier : notifiers)
    context->line(indent + 2, "rtExtCommList %s\n", notifier->toStrep().c_str());
}

void NotifyingRtExtCommListCollection::NotifieeConst::notifierIs(
    const NotifyingRtExtCommListCollection::PtrConst& collection) {
  if (!Notifiee::notifierIs(collection) || !collection) return;
  onRtExtCommListImmediate();
  if (isObserving(collection)) onRtExtCommList();
}

// --- The notifiee.

namespace {

constexpr U32 traceLevel = 9;

// A line for which there is no memory is lost: groups come and go without.
template <class... Parts>
void traceLine(int line, const char* function, const Parts&... parts) try {
  std::ostringstream text;
  text << "ZoBgpCommunityListRouteTargets.cpp:" << line << ':' << function << ' ';
  (text << ... << parts);
  Mox::trace(traceLevel, text.str());
} catch (const std::bad_alloc&) {
}

RtExtCommClassificationList* groupOf(Orv::DedupHandle* member) {
  return static_cast<RtExtCommClassificationList*>(member);
}

}  // namespace

/// The memory of a notifier and its node of the set, until a group comes for them.
class RtExtCommListLifeTimeNotifiee::Prepared final : public PreparedInsert {
  using Notifier = RtExtCommListLifeTimeNotifier;

 public:
  Prepared() {
    NotifyingRtExtCommListCollection::Set one{nullptr};
    node_ = one.extract(one.begin());
    memory_ = Notifier::operator new(sizeof(Notifier));
  }
  ~Prepared() override {
    if (memory_) Notifier::operator delete(memory_, sizeof(Notifier));
  }
  Notifier::Ptr notifierOf(const Mox::Ptr<Orv::DedupHandle>& group) {
    Notifier::Ptr notifier(::new (std::exchange(memory_, nullptr)) Notifier(group));
    notifier->hasNotificationActiveIs(true);
    node_.value() = notifier;
    return notifier;
  }
  NotifyingRtExtCommListCollection::Set::node_type takeNode() { return std::move(node_); }

 private:
  NotifyingRtExtCommListCollection::Set::node_type node_;
  void* memory_ = nullptr;
};

auto RtExtCommListLifeTimeNotifiee::prepareInsert() const -> std::unique_ptr<PreparedInsert> {
  return std::make_unique<Prepared>();
}

void RtExtCommListLifeTimeNotifiee::handleInsert(const Mox::Ptr<Orv::DedupHandle>& group) const {
  handlePreparedInsert(group, RtExtCommListLifeTimeNotifiee::prepareInsert());
}

void RtExtCommListLifeTimeNotifiee::handlePreparedInsert(
    const Mox::Ptr<Orv::DedupHandle>& group, std::unique_ptr<PreparedInsert> prepared) const {
  auto* const rtExtCommList = groupOf(group.get());
  MOX_ASSERT(!rtExtCommList->getLifeTimeNotifier(), "__null == rtExtCommList->lifeTimeNotifier()");
  auto& mine = static_cast<Prepared&>(*prepared);
  const auto notifier = mine.notifierOf(group);
  rtExtCommList->lifeTimeNotifierIs(notifier);
  if (Mox::traceEnabled(traceLevel))
    traceLine(__LINE__, "handleInsert", this, " handle: ", rtExtCommList,
              " rtExtCommListLifeTimeNotifier: ", notifier);
  collection_->add(mine.takeNode());
}

// The group is dying: its notifier is what still holds it, and then its table.
void RtExtCommListLifeTimeNotifiee::handleRemove(Orv::DedupHandle* group) const {
  auto* const rtExtCommList = groupOf(group);
  const auto lifeTimeNotifier = rtExtCommList->getLifeTimeNotifier();
  if (Mox::traceEnabled(traceLevel))
    traceLine(__LINE__, __func__, this, " handle: ", rtExtCommList,
              " rtExtCommListLifeTimeNotifier: ", lifeTimeNotifier);
  MOX_ASSERT(lifeTimeNotifier, "__null != lifeTimeNotifier");
  collection_->rtExtCommListDel(lifeTimeNotifier);
  rtExtCommList->lifeTimeNotifierIs(nullptr);
}

void RtExtCommListLifeTimeNotifiee::handleNotificationStop(
    const Mox::Ptr<const Orv::DedupHashTable>& table) const {
  if (Mox::traceEnabled(traceLevel)) traceLine(__LINE__, __func__, this, " dedupTable: ", table);
  // The table's own groups, also such as somebody took out of the collection; not those of another
  // table that feeds it too.
  table->visitMembers([this](Orv::DedupHandle& group) { handleRemove(&group); });
}

NotifyingRtExtCommListCollection::Ptr NotifyingRtExtCommListCollectionIs() {
  return Mox::makeNew<NotifyingRtExtCommListCollection>();
}

RtExtCommListLifeTimeNotifiee::Ptr RtExtCommListLifeTimeNotifieeIs(
    const NotifyingRtExtCommListCollection::Ptr& collection) {
  Mox::refuseNull(collection, RtExtCommListLifeTimeNotifiee::type.name(),
                  "notifyingRtExtCommListCollection");
  return Mox::makeNew<RtExtCommListLifeTimeNotifiee>(collection);
}

RtExtCommListLifeTimeNotifiee::Ptr rtExtCommListLifeTimeNotifieeFactory(
    const NotifyingRtExtCommListCollection::Ptr& collection) {
  return RtExtCommListLifeTimeNotifieeIs(collection);
}

}  // namespace Routing::Bgp
