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

RtExtCommClassificationList::~RtExtCommClassificationList() {
  if (lifeTimeNotifier_.load(std::memory_order_relaxed)) lifeTimeNotifierIs(nullptr);
}

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

NotifyingRtExtCommListCollection::~NotifyingRtExtCommListCollection() {
  while (first_) unlink(Notifier(first_));
}

/// Returns whether the notifier is new. REQUIRES: it was made for this collection; the lock is
/// held.
bool NotifyingRtExtCommListCollection::link(const Notifier& notifier) {
  if (notifier->link_) return false;
  notifier->link_ = &first_;
  notifier->next_ = first_;
  if (first_) first_->link_ = &notifier->next_;
  first_ = Notifier(notifier).release();
  ++linked_;
  return true;
}

/// Returns the list's pointer to the notifier, or null if it is not there. As `link`.
auto NotifyingRtExtCommListCollection::unlink(const Notifier& notifier) -> Notifier {
  if (!notifier->link_) return nullptr;
  *notifier->link_ = notifier->next_;
  if (notifier->next_) notifier->next_->link_ = notifier->link_;
  notifier->link_ = nullptr;
  --linked_;
  return Notifier::adopt(notifier.get());
}

void NotifyingRtExtCommListCollection::rtExtCommListIs(const Notifier& notifier) {
  Mox::refuseNull(notifier, type.name(), "rtExtCommList");
  Set one;  // a node made beforehand enters without memory
  if (notifier->collection_ != this) one.insert(notifier);
  bool isNew;
  {
    const std::lock_guard guard(mutex_);
    if (one.empty()) {
      isNew = link(notifier);
    } else {
      others_.merge(one);
      isNew = one.empty();
    }
  }
  if (isNew) tell(notifier);
}

void NotifyingRtExtCommListCollection::rtExtCommListDel(const Notifier& notifier) {
  if (!notifier) return;
  // The collection's reference goes when the lock has gone: `notifier` may be the member itself.
  Notifier taken;
  Set::node_type node;
  {
    const std::lock_guard guard(mutex_);
    if (notifier->collection_ == this)
      taken = unlink(notifier);
    else if ((node = others_.extract(notifier)))
      taken = node.value();
  }
  if (taken) tell(taken);
}

void NotifyingRtExtCommListCollection::rtExtCommListDelAll() {
  for (const Notifier& notifier : rtExtCommList()) rtExtCommListDel(notifier);
}

bool NotifyingRtExtCommListCollection::rtExtCommListHas(const Notifier& notifier) const {
  if (!notifier) return false;
  const std::lock_guard guard(mutex_);
  return notifier->collection_ == this ? notifier->link_ != nullptr : others_.contains(notifier);
}

U32 NotifyingRtExtCommListCollection::rtExtCommLists() const {
  const std::lock_guard guard(mutex_);
  return linked_ + U32(others_.size());
}

auto NotifyingRtExtCommListCollection::rtExtCommList() const -> std::vector<Notifier> {
  const std::lock_guard guard(mutex_);
  std::vector<Notifier> all;
  all.reserve(linked_ + others_.size());
  for (auto* notifier = first_; notifier; notifier = notifier->next_) all.emplace_back(notifier);
  all.insert(all.end(), others_.begin(), others_.end());
  return all;
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

/// Keeps the memory of a notifier until a group comes for it: it stands there itself.
class RtExtCommListLifeTimeNotifiee::Prepared final : public PreparedInsert {
  using Notifier = RtExtCommListLifeTimeNotifier;

 public:
  static void* operator new(std::size_t) { return Notifier::operator new(sizeof(Notifier)); }
  static void operator delete(void* memory) noexcept {
    Notifier::operator delete(memory, sizeof(Notifier));
  }
  static Notifier::Ptr notifierOf(std::unique_ptr<PreparedInsert> prepared,
                                  const Mox::Ptr<Orv::DedupHandle>& group) {
    static_assert(sizeof(Prepared) <= sizeof(Notifier));
    auto* const self = static_cast<Prepared*>(prepared.release());
    std::destroy_at(self);
    return Notifier::Ptr::ofNew(::new (static_cast<void*>(self)) Notifier(group));
  }
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
  MOX_ASSERT(!rtExtCommList->lifeTimeNotifier_.load(),
             "__null == rtExtCommList->lifeTimeNotifier()");
  const auto notifier = Prepared::notifierOf(std::move(prepared), group);
  notifier->collection_ = collection_.get();
  rtExtCommList->lifeTimeNotifier_.store(RtExtCommListLifeTimeNotifier::Ptr(notifier).release(),
                                         std::memory_order_release);
  if (Mox::traceEnabled(traceLevel))
    traceLine(__LINE__, "handleInsert", this, " handle: ", rtExtCommList,
              " rtExtCommListLifeTimeNotifier: ", notifier);
  collection_->rtExtCommListIs(notifier);
}

// The group is dying: its notifier is what still holds it, and then its table.
void RtExtCommListLifeTimeNotifiee::handleRemove(Orv::DedupHandle* group) const {
  auto* const rtExtCommList = groupOf(group);
  // The group's own reference; the notifier can be read from the group until it has been told.
  const auto lifeTimeNotifier =
      RtExtCommListLifeTimeNotifier::Ptr::adopt(rtExtCommList->lifeTimeNotifier_.load());
  if (Mox::traceEnabled(traceLevel))
    traceLine(__LINE__, __func__, this, " handle: ", rtExtCommList,
              " rtExtCommListLifeTimeNotifier: ", lifeTimeNotifier);
  MOX_ASSERT(lifeTimeNotifier, "__null != lifeTimeNotifier");
  collection_->rtExtCommListDel(lifeTimeNotifier);
  rtExtCommList->lifeTimeNotifier_.store(nullptr, std::memory_order_relaxed);
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
