// A mutex of one word for critical sections of a few dozen instructions: a short spin, then sleep.
// Smaller than `std::mutex`, inline when nobody contends, and unlike a spin lock it cannot starve a
// holder of lower priority on the same processor.
#pragma once

#include <atomic>

#include "Mox/Types.h"

namespace Orv {

class ShardLock {
 public:
  void lock() {
    U32 expected = unlocked;
    if (!state_.compare_exchange_strong(expected, locked, std::memory_order_acquire,
                                        std::memory_order_relaxed)) [[unlikely]]
      lockContended();
  }
  void unlock() {
    if (state_.exchange(unlocked, std::memory_order_release) == lockedWithSleepers) [[unlikely]]
      wakeOne();
  }

 private:
  enum : U32 { unlocked, locked, lockedWithSleepers };

  // Sleeping and waking stand in one source file, and must: the standard library keeps count of
  // sleepers in a table that each shared library may have a copy of its own of, and who wakes by
  // another copy than the sleeper's finds nobody to wake.
  void lockContended();
  void wakeOne();

  std::atomic<U32> state_{unlocked};
};

}  // namespace Orv
