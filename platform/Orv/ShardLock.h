// A lock of one octet for critical sections of a few dozen instructions: a short spin, then sleeps
// that grow. Letting go is one plain store, half the cost of a lock that must know of its sleepers;
// and since who waits sleeps, a holder of lower priority on the same processor gets its turn.
#pragma once

#include <atomic>

#include "Mox/Types.h"

namespace Orv {

class ShardLock {
 public:
  void lock() {
    if (locked_.exchange(true, std::memory_order_acquire)) [[unlikely]]
      lockContended();
  }
  void unlock() { locked_.store(false, std::memory_order_release); }

 private:
  void lockContended();

  std::atomic<bool> locked_{false};
};

}  // namespace Orv
