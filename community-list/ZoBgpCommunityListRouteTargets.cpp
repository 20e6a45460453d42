#include "community-list/ZoBgpCommunityListRouteTargets.h"

#include <algorithm>
#include <sstream>

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
    {Mox::collection<&NotifyingRtExtCommListCollection::rtExtCommLists>("rtExtCommList"),
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

// The group's reference is counted by hand, since other threads read the pointer meanwhile. Nobody
// can read it while it is taken away: that happens once the group's last user is gone.

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
  {
    const std::lock_guard guard(mutex_);
    if (!rtExtCommList_.insert(notifier).second) return;
  }
  tell(notifier);
}

void NotifyingRtExtCommListCollection::rtExtCommListDel(const Notifier& notifier) {
  std::unordered_set<Notifier, ByIdentity>::node_type taken;  // it may be given as it stands there
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
  Notifiee::notifierIs(collection);
  if (collection) onRtExtCommList();
}

// --- The notifiee.

namespace {

constexpr U32 traceLevel = 9;

template <class... Parts>
void traceLine(int line, const char* function, const Parts&... parts) {
  std::ostringstream text;
  text << "ZoBgpCommunityListRouteTargets.cpp:" << line << ':' << function << ' ';
  (text << ... << parts);
  Mox::trace(traceLevel, text.str());
}

RtExtCommClassificationList* groupOf(Orv::DedupHandle* member) {
  return static_cast<RtExtCommClassificationList*>(member);
}

}  // namespace

void RtExtCommListLifeTimeNotifiee::handleInsert(const Mox::Ptr<Orv::DedupHandle>& group) const {
  auto* const rtExtCommList = groupOf(group.get());
  MOX_ASSERT(!rtExtCommList->getLifeTimeNotifier(), "__null == rtExtCommList->lifeTimeNotifier()");
  const auto notifier = Mox::makeNew<RtExtCommListLifeTimeNotifier>(group);
  rtExtCommList->lifeTimeNotifierIs(notifier);
  if (Mox::traceEnabled(traceLevel))
    traceLine(__LINE__, __func__, this, " handle: ", rtExtCommList,
              " rtExtCommListLifeTimeNotifier: ", notifier);
  collection_->rtExtCommListIs(notifier);
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
  return Mox::makeNew<RtExtCommListLifeTimeNotifiee>(collection);
}

RtExtCommListLifeTimeNotifiee::Ptr rtExtCommListLifeTimeNotifieeFactory(
    const NotifyingRtExtCommListCollection::Ptr& collection) {
  return RtExtCommListLifeTimeNotifieeIs(collection);
}

}  // namespace Routing::Bgp
