// The base of everything that is counted: one 32-bit word in the object, no list, no mutex.
//
//   Mox::Ptr<Thing> a = Mox::makeNew<Thing>();  // count 1
//   Mox::Ptr<Thing> b = a;                      // count 2; the last to let go destroys
//
// 1. Objects are born with count 0 and belong to the first pointer that is made of them.
// 2. The word holds the count, and two bits that are no part of it: bit 29 "notifications on" and
//    bit 31 "being deleted". Every reported count has them masked off.
// 3. Nothing else is stored. An interned value does not pay for notifications that it never sends:
//    a class that sends some keeps its own list and returns it from `notifieeList()`.
//
// Threads: counting is atomic and sequentially consistent; for the rest see the derived class.
#pragma once

#include <atomic>

#include "Mox/Assert.h"
#include "Mox/Types.h"

namespace Mox {

class NotifieeList;
class Type;

class PtrInterface {
 public:
  static const Type type;

  /// The word AND this is the count.
  static constexpr U32 countMask = 0x5fffffff;

  PtrInterface() = default;
  PtrInterface(const PtrInterface&) = delete;
  PtrInterface& operator=(const PtrInterface&) = delete;

  // The first slots of every class below, in this order.

  /// The observers of this object; null unless the class keeps a list of them.
  virtual NotifieeList* notifieeList() const;
  /// Creators call this with true before they return a new object.
  virtual void hasNotificationActiveIs(bool active);
  /// Called with true when the count has fallen to zero: destroys the object.
  virtual void zeroReferencesIs(bool zero);
  /// The description of the object's own class.
  virtual const Type& fwkType() const;

 protected:
  virtual ~PtrInterface();

 public:
  /// Whether the creator has returned the object.
  bool hasNotificationActive() const { return word_.load() & notificationBit; }
  /// The count. Another thread may have changed it already.
  U32 references() const { return word_.load() & countMask; }
  /// Whether the object is being deleted, or stands marked for it ahead of its last release.
  bool deletionMark() const { return word_.load() & deletionMarkBit; }

  /// One reference more; returns the new count.
  U32 referencesInc() const { return increment(); }
  /// One reference less; returns the new count, and has destroyed the object when that is 0.
  U32 referencesDec() const {
    const U32 count = decrement();
    if (count == 0) zeroReached();
    return count;
  }

  /// Takes the first reference and turns notifications on, for the creator of an object that nobody
  /// else sees yet. A plain store, unless the constructor has given references away.
  void firstReferenceInc() {
    if (word_.load(std::memory_order_relaxed) == 0) {
      word_.store(notificationBit | 1, std::memory_order_relaxed);
    } else {
      increment();
      hasNotificationActiveIs(true);
    }
  }

  /// Plain memory; allocation throws `std::bad_alloc`. Tracked objects have theirs from their
  /// tracker, see Mox/Allocation.h. REQUIRES: no object that is placed here ends by its count.
  static void* moxMemAlloc(std::size_t octets);
  /// REQUIRES: the memory is of `moxMemAlloc`.
  static void moxMemDealloc(void* memory) noexcept;

  /// Which counting a pointer to this class does. Classes of different counting do not convert
  /// into each other's pointers: an interned value counted plainly would never leave its table.
  using Counting = PtrInterface;

 protected:
  // The single steps, for classes that count in their own way.
  U32 increment() const { return (roomAbove(word_.fetch_add(1)) + 1) & countMask; }
  U32 decrement() const { return (word_.fetch_sub(1) - 1) & countMask; }
  /// One reference more, but only while the count is above `keep`.
  bool incrementAbove(U32 keep) const {
    U32 word = word_.load();
    while ((word & countMask) > keep)
      if (word_.compare_exchange_weak(word, roomAbove(word) + 1)) return true;
    return false;
  }
  /// `n` references more.
  /// REQUIRES: no other thread can see the object yet.
  void incrementUnseen(U32 n) const {
    word_.store(word_.load(std::memory_order_relaxed) + n, std::memory_order_relaxed);
  }
  void zeroReached() const { const_cast<PtrInterface*>(this)->zeroReferencesIs(true); }
  void deletionMarkIs(bool marked);

  /// Keeps a plainly counted object alive for a scope in which `this` is handed to others. Without
  /// it the first pointer to come and go would destroy an object that is still inside its own
  /// constructor. An object that nobody owned before is not destroyed at the end of the scope.
  class ConstructionGuard {
   public:
    /// Takes a reference for as long as it is there.
    explicit ConstructionGuard(const PtrInterface& object)
        : object_(object), owned_(object.references() > 0) {
      object_.increment();
    }
    ~ConstructionGuard() {
      if (object_.decrement() == 0 && owned_) object_.zeroReached();
    }
    ConstructionGuard(const ConstructionGuard&) = delete;
    ConstructionGuard& operator=(const ConstructionGuard&) = delete;

   private:
    const PtrInterface& object_;
    const bool owned_;
  };

 private:
  static constexpr U32 notificationBit = 1u << 29;
  static constexpr U32 deletionMarkBit = 1u << 31;

  // The word itself. Asserts that one more reference does not carry into bit 29; in debug builds
  // only, since so many pointers take gigabytes.
  static U32 roomAbove(U32 word) {
#ifndef NDEBUG
    MOX_ASSERT(~word & (notificationBit - 1), "references < 2^29");
#endif
    return word;
  }

  mutable std::atomic<U32> word_{0};
};

}  // namespace Mox
