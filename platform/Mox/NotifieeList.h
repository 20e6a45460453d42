// Observers, and the list that an observed object keeps of them.
//
//   class Shelf final : public Mox::Entity<Shelf, Mox::PtrInterface> {
//    public:
//     struct NotifieeConst : Mox::Notifiee {
//       virtual void onBook(U32) {}
//       void notifierIs(const Shelf::PtrConst& shelf) { Notifiee::notifierIs(shelf); }
//     };
//     Mox::NotifieeList* notifieeList() const override { return &notifiees_; }
//     void bookIs(U32 book) {
//       notifiees_.deliver<NotifieeConst>([&](NotifieeConst& n) { n.onBook(book); });
//     }
//     ...
//     mutable Mox::NotifieeList notifiees_;
//   };
//
// 1. An event is delivered to every observer, in the order of registration, before `deliver`
//    returns.
// 2. Observers may come, go and cause further events while they are called: one that came meanwhile
//    does not hear the event, one that went hears nothing more.
// 3. An observer keeps what it observes alive.
//
// Threads: list, observers and events belong to one thread.
#pragma once

#include <vector>

#include "Mox/Ptr.h"

namespace Mox {

/// The base of every observer interface: what is observed, if anything. Destroying it ends that.
class Notifiee {
 public:
  Notifiee(const Notifiee&) = delete;
  Notifiee& operator=(const Notifiee&) = delete;

 protected:
  Notifiee() = default;
  virtual ~Notifiee() { notifierIs(nullptr); }

  /// Observes `notifier` instead of what it did, or nothing when null. The interface makes this
  /// public for the class that it observes.
  void notifierIs(PtrConst<PtrInterface> notifier);

 private:
  PtrConst<PtrInterface> notifier_;
};

class NotifieeList {
 public:
  NotifieeList() = default;
  NotifieeList(const NotifieeList&) = delete;
  NotifieeList& operator=(const NotifieeList&) = delete;

  /// Calls `tell` with each observer, all of which are of class `N`. The owner of the list must
  /// stay alive meanwhile.
  template <class N, class Tell>
  void deliver(Tell tell) {
    const Delivery delivery(*this);
    const std::size_t end = notifiees_.size();
    for (std::size_t i = 0; i < end; ++i)
      if (notifiees_[i]) tell(static_cast<N&>(*notifiees_[i]));
  }

 private:
  friend class Notifiee;

  struct Delivery {
    explicit Delivery(NotifieeList& list) : list_(list) { ++list_.deliveries_; }
    ~Delivery() {
      if (--list_.deliveries_ == 0) std::erase(list_.notifiees_, nullptr);
    }
    NotifieeList& list_;
  };

  void add(Notifiee* notifiee) { notifiees_.push_back(notifiee); }
  void remove(const Notifiee* notifiee);

  // In the order of registration. Places stay as they are while events are being delivered; who
  // went meanwhile is null.
  std::vector<Notifiee*> notifiees_;
  U32 deliveries_ = 0;
};

}  // namespace Mox
