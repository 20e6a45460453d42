// The base of every interned value: a count that knows when only the value's table holds it, and a
// word that says where in its life the value is.
//
//   never deduped (0): private and mutable, built by its owner
//   deduped (1):       member of its table, immutable, shared
//   detached (3):      its table died first; counted plainly, freed by its last holder
//
// 1. A table holds one reference to each member, a lifetime notifier one more. The release that
//    leaves just these ("keep") takes the member out of its table, which ends it.
// 2. A removal sets `beingDetached()` first. From then on no reference can be taken.
// 3. A member whose count has come down to keep is dying. Look-ups pass it by: they take their
//    reference with `referencesIncIfAlive()`, which fails. So keep is reached once, and exactly
//    one thread removes the member.
//
// Cost: one atomic operation each way; a release also reads the state and the table.
// Threads: counting is lock-free, on any thread. `referencesDec` reads all it decides by *before*
// the decrement. After it only the thread that saw keep or zero touches the object; for every other
// thread the object may be freed already.
#pragma once

#include <cstddef>

#include "Mox/Ptr.h"
#include "Mox/Type.h"
#include "Orv/Interleave.h"

namespace Orv {

class DedupHashTable;

/// Set: taking and dropping references does nothing and reports 1, for processes that never free.
/// REQUIRES: no other thread runs while it is changed.
extern bool dedupHandleDisableSmartPointerOperations;
/// Set: `assertIsDeduped` checks nothing.
extern bool dedupHandleDisableIsDedupedAssert;

// The states of a value; above is when it is in which.
constexpr U32 dedupHandleStateNeverDeduped() { return 0; }
constexpr U32 dedupHandleStateDeduped() { return 1; }
constexpr U32 dedupHandleStateDetached() { return 3; }

/// The raw octets of a content that is looked up before any object for it exists; for extended
/// communities the 64-bit content itself. Owns nothing: valid for as long as its octets are.
struct DedupContentHandle {
  const void* octets = nullptr;
  std::size_t size = 0;
};

class DedupHandle : public Mox::PtrInterface {
 public:
  using Ptr = Mox::Ptr<DedupHandle>;
  using PtrConst = Mox::PtrConst<DedupHandle>;
  using Counting = DedupHandle;
  static const Mox::Type type;

  static constexpr U32 beingDetachedBitPos = 28;
  static constexpr U32 haveLifeTimeNotifierBitPos = 29;
  static constexpr U32 dedupHandleStateBitPos = 30;

  // Slots after those of PtrInterface, in this order. A new virtual operation, here or in a derived
  // class, comes after the last of its class.
  void zeroReferencesIs(bool zero) override;
  const Mox::Type& fwkType() const override { return type; }
  virtual bool isDeduped() const { return dedupState() == dedupHandleStateDeduped(); }
  /// Asserts "isDeduped()" unless the value is a member of a table.
  virtual void assertIsDeduped() const;
  /// 32-bit hash of the content; 0 is a value like any other.
  virtual U32 hash() const = 0;
  /// Whether `other` has equal content. REQUIRES: `other` is of this object's class.
  virtual bool compare(const DedupHandle* other) const = 0;
  /// Whether this object's content is `content`; false for classes that are not looked up by it.
  virtual bool compareByContent(const DedupContentHandle& content) const;

  // Counting. Both return the new count, or 1 while counting is switched off. Taking a reference
  // asserts "!beingDetached()".
  U32 referencesInc() const {
    if (dedupHandleDisableSmartPointerOperations) [[unlikely]]
      return 1;
    MOX_ASSERT(!beingDetached(), "!beingDetached()");
    return increment();
  }
  U32 referencesDec() const;
  void firstReferenceInc() {
    if (dedupHandleDisableSmartPointerOperations) [[unlikely]]
      return hasNotificationActiveIs(true);
    Mox::PtrInterface::firstReferenceInc();
  }
  /// Takes a reference if somebody outside table and notifier holds one; false for a dying object.
  /// The one way from a raw pointer to a reference. REQUIRES: the memory stays valid during the
  /// call, by a lock of the table or by a notifier.
  [[nodiscard]] bool referencesIncIfAlive() const {
    if (dedupHandleDisableSmartPointerOperations) [[unlikely]]
      return true;
    const U32 state = state_.load();
    interleave();
    if (state >> beingDetachedBitPos & 1) return false;
    const bool heldByTable = state >> dedupHandleStateBitPos == dedupHandleStateDeduped();
    return incrementAbove(heldByTable ? keepOf(state) : 0);
  }
  /// The number of references to a member that are its table's and its notifier's: 1 or 2.
  U32 keep() const { return keepOf(state_.load()); }

  // The state word: bits 0-27 user data, 28 being detached, 29 notifier, 30-31 state. Each change
  // is one atomic step. The user data is free for the derived class; the rest belongs to the table.
  bool isBitSet(U32 position) const { return state_.load() >> position & 1; }
  void bitSet(U32 position) { setBitsAtomic(1u << position); }
  void bitReset(U32 position) { setBitsAtomic(0, 1u << position); }
  /// Sets and clears bits of the state word in one atomic step.
  void setBitsAtomic(U32 set, U32 clear = 0);
  U32 dedupState() const { return state_.load() >> dedupHandleStateBitPos; }
  void dedupStateIs(U32 state);
  bool haveLifeTimeNotifier() const { return isBitSet(haveLifeTimeNotifierBitPos); }
  void haveLifeTimeNotifierIs(bool have) { bitIs(haveLifeTimeNotifierBitPos, have); }
  bool beingDetached() const { return isBitSet(beingDetachedBitPos); }
  void beingDetachedIs(bool being) { bitIs(beingDetachedBitPos, being); }
  U32 userData() const { return state_.load() & userDataMask; }
  void userDataIs(U32 data) { userDataBitsIs(userDataMask, data); }
  /// Replaces the user-data bits in `mask` by those of `data`.
  void userDataBitsIs(U32 mask, U32 data);

  /// The table that holds this value; null while it is in none. The load is relaxed: a
  /// holder got its reference under the shard's lock, or from a thread that did, and so sees the
  /// insertion.
  DedupHashTable* dedupTable() const { return dedupTable_.load(std::memory_order_relaxed); }
  /// The content for `compareByContent`; empty for classes that are not looked up by it.
  DedupContentHandle getContent() const { return {}; }
  /// Takes a member out of its table and drops the table's reference: the end of the last release.
  /// Called by hand, it leaves the member to its holders, who may let go of it, but not copy their
  /// pointers. Asserts "dedupTable()" for an object in no table, "__null != lifeTimeNotifiee" for
  /// one whose notifier bit was set by hand. REQUIRES: no other thread lets go of it meanwhile.
  void doRemoveFromDedupTable();
  /// The last step before the destructor. Asserts "!isDeduped() || beingDetached()" for an object
  /// that can still be found.
  void prepareToDestruct() const;

 private:
  friend class DedupHashTable;
  static constexpr U32 userDataMask = (1u << beingDetachedBitPos) - 1;

  static bool countedPlainly(U32 state) {
    return state >> beingDetachedBitPos & 1 ||
           state >> dedupHandleStateBitPos == dedupHandleStateDetached();
  }
  static U32 keepOf(U32 state) { return 1 + (state >> haveLifeTimeNotifierBitPos & 1); }
  // As setBitsAtomic. REQUIRES: no other thread changes the word meanwhile.
  void setBitsAlone(U32 set) {
    state_.store(state_.load(std::memory_order_relaxed) | set, std::memory_order_release);
  }
  void bitIs(U32 position, bool value) { value ? bitSet(position) : bitReset(position); }

  std::atomic<U32> state_{0};
  // Set before the object can be found. Cleared by its remover, or by the table's destructor, when
  // nobody else uses the table or its members.
  std::atomic<DedupHashTable*> dedupTable_{nullptr};
};

inline U32 DedupHandle::referencesDec() const {
  if (dedupHandleDisableSmartPointerOperations) [[unlikely]]
    return 1;
  const U32 state = state_.load();
  const bool inTable = dedupTable() != nullptr;
  interleave();
  const U32 count = decrement();
  if (count == 0) {
    zeroReached();
  } else if (!countedPlainly(state) && count == keepOf(state) && inTable) {
    interleave();
    const_cast<DedupHandle*>(this)->doRemoveFromDedupTable();
  }
  return count;
}

}  // namespace Orv
