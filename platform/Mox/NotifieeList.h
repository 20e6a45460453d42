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
// Threads: an event is delivered on the thread that causes it, with no lock held; several threads
// may cause events, come and go at a time, and one observer may then be called by several. An
// observer that goes waits until no other thread is inside it. So one that is called from several
// threads goes, `notifierIs(nullptr)`, before its own members do, and two of them must not remove
// each other from inside their calls.
#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>
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
    if (!observed_.load(std::memory_order_acquire)) return;
    Delivery delivery(*this);
    while (Notifiee* const notifiee = delivery.next()) tell(static_cast<N&>(*notifiee));
  }

 private:
  friend class Notifiee;

  /// One event on its way; it lives on the stack of the thread that delivers it.
  class Delivery {
   public:
    explicit Delivery(NotifieeList& list);
    ~Delivery();
    Delivery(const Delivery&) = delete;
    Delivery& operator=(const Delivery&) = delete;
    /// The next observer to be called, who stays until the one after is asked for; or null.
    Notifiee* next();

   private:
    friend class NotifieeList;
    void callIs(Notifiee* notifiee);

    NotifieeList& list_;
    const std::thread::id thread_ = std::this_thread::get_id();
    Notifiee* called_ = nullptr;  // changed under the list's mutex
    std::size_t at_ = 0;
    // Who comes later does not hear of it. Last: it is found out with this in the list already.
    const std::size_t end_;
  };

  void add(Notifiee* notifiee);
  void remove(const Notifiee* notifiee);
  bool isCalledElsewhere(const Notifiee* notifiee) const;

  std::mutex mutex_;  // guards all below; innermost
  std::condition_variable callEnded_;
  // In the order of registration. Places stay as they are while events are being delivered; who
  // went meanwhile is null.
  std::vector<Notifiee*> notifiees_;
  std::vector<const Delivery*> deliveries_;
  // Whether anybody ever came: most lists are never observed, and an event then costs nothing.
  std::atomic<bool> observed_{false};
};

}  // namespace Mox
