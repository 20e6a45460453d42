#include "Mox/NotifieeList.h"

#include <algorithm>

namespace Mox {

void Notifiee::notifierIs(PtrConst<PtrInterface> notifier) {
  if (notifier == notifier_) return;
  if (notifier_) notifier_->notifieeList()->remove(this);
  std::swap(notifier_, notifier);
  if (!notifier_) return;
  MOX_ASSERT(notifier_->notifieeList(), "notifieeList()");
  notifier_->notifieeList()->add(this);
}

void NotifieeList::add(Notifiee* notifiee) {
  const std::lock_guard guard(mutex_);
  notifiees_.push_back(notifiee);
  observed_.store(true, std::memory_order_release);
}

void NotifieeList::remove(const Notifiee* notifiee) {
  std::unique_lock guard(mutex_);
  const auto place = std::find(notifiees_.begin(), notifiees_.end(), notifiee);
  if (place == notifiees_.end()) return;
  if (deliveries_.empty())
    notifiees_.erase(place);
  else
    *place = nullptr;
  callEnded_.wait(guard, [&] { return !isCalledElsewhere(notifiee); });
}

bool NotifieeList::isCalledElsewhere(const Notifiee* notifiee) const {
  return std::any_of(deliveries_.begin(), deliveries_.end(), [&](const Delivery* delivery) {
    return delivery->called_ == notifiee && delivery->thread_ != std::this_thread::get_id();
  });
}

NotifieeList::Delivery::Delivery(NotifieeList& list)
    : list_(list), end_([&] {
        const std::lock_guard guard(list.mutex_);
        list.deliveries_.push_back(this);
        return list.notifiees_.size();
      }()) {}

NotifieeList::Delivery::~Delivery() {
  const std::lock_guard guard(list_.mutex_);
  callIs(nullptr);
  std::erase(list_.deliveries_, this);
  if (list_.deliveries_.empty()) std::erase(list_.notifiees_, nullptr);
}

Notifiee* NotifieeList::Delivery::next() {
  const std::lock_guard guard(list_.mutex_);
  while (at_ < end_ && !list_.notifiees_[at_]) ++at_;
  callIs(at_ < end_ ? list_.notifiees_[at_++] : nullptr);
  return called_;
}

void NotifieeList::Delivery::callIs(Notifiee* notifiee) {
  if (called_) list_.callEnded_.notify_all();
  called_ = notifiee;
}

}  // namespace Mox
