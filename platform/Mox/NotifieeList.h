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
//    returns. Delivery and going need no memory and never fail.
// 2. Observers may come, go and cause further events while they are called. An observer that comes
//    meanwhile does not hear the event; one that goes hears nothing more.
// 3. An observer keeps what it observes alive.
//
// Threads: an event is delivered on the thread that causes it, with no lock held. Several threads
// may cause events, come and go at a time, and one observer may then be called by several.
// `notifierIs(nullptr)` waits until no other thread is inside the observer, also when another
// thread, or the observer itself inside a call, has ended the observation already. Two threads that
// both end it from inside its calls do not wait for each other: the one that returns later has the
// observer for itself.
// REQUIRES: an observer that several threads call goes, `notifierIs(nullptr)`, before its own
// members do. Two observers do not end each other from inside their calls. Nobody makes an observer
// observe anew while it is being destroyed.
#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

#include "Mox/Ptr.h"

namespace Mox {

class Notifiee;

/// The observers of one object.
class NotifieeList {
 public:
  NotifieeList() = default;
  NotifieeList(const NotifieeList&) = delete;
  NotifieeList& operator=(const NotifieeList&) = delete;

  /// Calls `tell` with each observer. One branch when nobody ever observed.
  /// REQUIRES: all observers are of class `N`, and the owner of the list stays alive meanwhile.
  template <class N, class Tell>
  void deliver(Tell tell) {
    if (!observed_.load(std::memory_order_relaxed)) return;
    Delivery delivery(*this);
    while (Notifiee* const notifiee = delivery.next()) tell(static_cast<N&>(*notifiee));
  }

 private:
  friend class Notifiee;

  /// One event on its way, on the stack of the thread that delivers it. While an observer is
  /// called, the delivery is linked into the observer's calls.
  class Delivery {
   public:
    explicit Delivery(NotifieeList& list);
    ~Delivery();
    Delivery(const Delivery&) = delete;
    Delivery& operator=(const Delivery&) = delete;
    /// The next observer to be called, which stays until the one after is asked for; or null.
    Notifiee* next();

   private:
    friend class Notifiee;

    NotifieeList& list_;
    std::size_t at_ = 0;
    std::size_t end_ = 0;  // later observers do not hear of the event

    // Links into the observer that is being called, guarded by that observer's mutex. `called_` is
    // changed by the delivering thread alone.
    Notifiee* called_ = nullptr;
    Delivery* nextCall_ = nullptr;
    const std::thread::id thread_ = std::this_thread::get_id();
    bool going_ = false;  // the thread waits inside the call, in `notifierIs`
  };

  void add(Notifiee* notifiee);
  void remove(const Notifiee* notifiee);

  std::mutex mutex_;  // guards all below
  // In the order of registration. Indices stay as they are while events are being delivered; an
  // observer that went meanwhile leaves a null.
  std::vector<Notifiee*> notifiees_;
  std::size_t deliveries_ = 0;  // that have begun and not ended
  // Whether anybody ever came: most lists are never observed, and an event then costs one branch.
  // Relaxed, since a thread that reads true takes the mutex before it reads on. A thread that reads
  // false causes its event before the first observer has come.
  std::atomic<bool> observed_{false};
};

/// The base of every observer interface: what is observed, if anything. Destroying it ends that.
class Notifiee {
 public:
  Notifiee(const Notifiee&) = delete;
  Notifiee& operator=(const Notifiee&) = delete;

 protected:
  Notifiee() = default;
  virtual ~Notifiee();

  /// Observes `notifier` instead of what it did, or nothing when null; waits as said above. False,
  /// and nothing done, when it observes this notifier already. On `std::bad_alloc` it goes on
  /// observing what it did; null never fails. The interface makes this public for the class that it
  /// observes.
  bool notifierIs(PtrConst<PtrInterface> notifier);
  /// Whether it observes `notifier` now. From any thread.
  bool isObserving(const PtrConst<PtrInterface>& notifier);

 private:
  friend class NotifieeList::Delivery;
  using Delivery = NotifieeList::Delivery;

  void callBegins(Delivery& call);
  void callEnds(Delivery& call);
  void waitForCalls(const NotifieeList* but);

  std::mutex mutex_;  // guards all below
  std::condition_variable callsChanged_;
  PtrConst<PtrInterface> notifier_;
  Delivery* calls_ = nullptr;  // that are inside this observer
};

}  // namespace Mox
