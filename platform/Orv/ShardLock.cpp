#include "Orv/ShardLock.h"

namespace Orv {

void ShardLock::lockContended() {
  constexpr int spins = 100;  // about as long as a holder needs
  for (int i = 0; i < spins; ++i) {
    U32 expected = unlocked;
    if (state_.load(std::memory_order_relaxed) == unlocked &&
        state_.compare_exchange_weak(expected, locked, std::memory_order_acquire,
                                     std::memory_order_relaxed))
      return;
#if defined(__i386__) || defined(__x86_64__)
    __builtin_ia32_pause();
#endif
  }
  // Whoever has slept cannot know whether others still do, and so leaves the mark behind.
  while (state_.exchange(lockedWithSleepers, std::memory_order_acquire) != unlocked)
    state_.wait(lockedWithSleepers, std::memory_order_relaxed);
}

void ShardLock::wakeOne() { state_.notify_one(); }

}  // namespace Orv
