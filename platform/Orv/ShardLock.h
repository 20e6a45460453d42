// A lock of one octet for critical sections of a few dozen instructions: a short spin, then sleeps
// that grow from a microsecond to a millisecond. Letting go is one plain store, half the cost of a
// lock that knows its sleepers. A waiter sleeps instead of spinning on, so that a holder of lower
// priority on the same processor gets its turn.
//
// Not fair, and not recursive: a thread that takes it twice waits for itself.
#pragma once

#include <atomic>

#include "Mox/Types.h"

namespace Orv {

class ShardLock {
 public:
  /// Acquires: the section sees all that earlier holders wrote before they released.
  void lock() {
    if (locked_.exchange(true, std::memory_order_acquire)) [[unlikely]]
      lockContended();
  }
  /// REQUIRES: the caller has it.
  void unlock() { locked_.store(false, std::memory_order_release); }

 private:
  void lockContended();

  std::atomic<bool> locked_{false};
};

}  // namespace Orv
