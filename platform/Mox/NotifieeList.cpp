#include "Mox/NotifieeList.h"

#include <algorithm>

// Two locks: a list's, which guards the list of observers, and an observer's, which guards its
// notifier and the calls that are inside it. A thread may take an observer's lock while it holds a
// list's: so does `next`, which must enter the call before the observer can be found gone. Nothing
// is taken under an observer's lock, no two locks of one sort are held at a time, and no function
// of a user runs and no reference is dropped under either.
//
// An observer that goes leaves its list first, under the list's lock. From then on no call of that
// list begins; those that have begun are linked into the observer, under whose lock it waits. Calls
// are counted by the observer, not by the list, since the list may die before the wait is over.

namespace Mox {

// --- The observer.

Notifiee::~Notifiee() {
  notifierIs(nullptr);
  // Calls that are left are below on this thread's stack: the observer destroys itself in its call.
  for (Delivery* call = calls_; call; call = call->nextCall_) call->called_ = nullptr;
}

bool Notifiee::notifierIs(PtrConst<PtrInterface> notifier) {
  if (notifier && isObserving(notifier)) return false;
  NotifieeList* const list = notifier ? notifier->notifieeList() : nullptr;
  MOX_ASSERT(!notifier || list, "notifieeList()");
  // It comes before it goes: without memory all stays as it was. And when several threads do this
  // at a time it ends in one list, since a notifier that is swapped out has it in its list already.
  if (list) list->add(this);
  {
    const std::lock_guard guard(mutex_);
    std::swap(notifier_, notifier);
  }
  if (notifier) notifier->notifieeList()->remove(this);
  waitForCalls(list);
  return true;
}

bool Notifiee::isObserving(const PtrConst<PtrInterface>& notifier) {
  const std::lock_guard guard(mutex_);
  return notifier_ == notifier;
}

void Notifiee::callBegins(Delivery& call) {
  const std::lock_guard guard(mutex_);
  call.called_ = this;
  call.nextCall_ = calls_;
  calls_ = &call;
}

// Notifies under the lock: the waiting thread destroys the observer next.
void Notifiee::callEnds(Delivery& call) {
  const std::lock_guard guard(mutex_);
  Delivery** link = &calls_;
  while (*link != &call) link = &(*link)->nextCall_;
  *link = call.nextCall_;
  call.called_ = nullptr;
  callsChanged_.notify_all();
}

// For all other threads' calls but those of the list that is observed now. Calls of this thread's
// own are marked, lest two threads wait inside for each other.
void Notifiee::waitForCalls(const NotifieeList* but) {
  std::unique_lock guard(mutex_);
  const auto self = std::this_thread::get_id();
  bool inside = false;
  const auto markOwn = [&](bool going) {
    for (Delivery* call = calls_; call; call = call->nextCall_)
      if (call->thread_ == self) call->going_ = going, inside = true;
  };
  const auto isCalledElsewhere = [&] {
    for (const Delivery* call = calls_; call; call = call->nextCall_)
      if (call->thread_ != self && &call->list_ != but && !(inside && call->going_)) return true;
    return false;
  };
  markOwn(true);
  if (inside) callsChanged_.notify_all();
  while (isCalledElsewhere()) callsChanged_.wait(guard);
  markOwn(false);
}

// --- The list.

void NotifieeList::add(Notifiee* notifiee) {
  const std::lock_guard guard(mutex_);
  notifiees_.push_back(notifiee);
  observed_.store(true, std::memory_order_relaxed);
}

void NotifieeList::remove(const Notifiee* notifiee) {
  const std::lock_guard guard(mutex_);
  const auto entry = std::find(notifiees_.begin(), notifiees_.end(), notifiee);
  if (deliveries_)
    *entry = nullptr;
  else
    notifiees_.erase(entry);
}

NotifieeList::Delivery::Delivery(NotifieeList& list) : list_(list) {
  const std::lock_guard guard(list_.mutex_);
  ++list_.deliveries_;
  end_ = list_.notifiees_.size();
}

NotifieeList::Delivery::~Delivery() {
  if (called_) called_->callEnds(*this);
  const std::lock_guard guard(list_.mutex_);
  if (--list_.deliveries_ == 0) std::erase(list_.notifiees_, nullptr);
}

Notifiee* NotifieeList::Delivery::next() {
  if (called_) called_->callEnds(*this);
  const std::lock_guard guard(list_.mutex_);
  while (at_ < end_ && !list_.notifiees_[at_]) ++at_;
  if (at_ == end_) return nullptr;
  Notifiee* const notifiee = list_.notifiees_[at_++];
  notifiee->callBegins(*this);
  return notifiee;
}

}  // namespace Mox
