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

void NotifieeList::remove(const Notifiee* notifiee) {
  const auto place = std::find(notifiees_.begin(), notifiees_.end(), notifiee);
  if (place == notifiees_.end()) return;
  if (deliveries_ > 0)
    *place = nullptr;
  else
    notifiees_.erase(place);
}

}  // namespace Mox
