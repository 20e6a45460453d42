#include "Orv/ShardLock.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace Orv {
namespace {

// Tells the processor that this is a spin, so that its other hardware thread gets on. Nothing on
// processors other than x86: the spins are few, and the sleep after them does the same.
void pause() {
#if defined(__i386__) || defined(__x86_64__)
  __builtin_ia32_pause();
#endif
}

}  // namespace

void ShardLock::lockContended() {
  constexpr int spins = 100;  // about as long as a holder needs
  constexpr std::chrono::microseconds longestSleep{1000};
  std::chrono::microseconds sleep{1};
  do {
    for (int i = 0; i < spins; ++i) {
      // Looked at first, relaxed: an exchange would take the cache line from the holder each time.
      if (!locked_.load(std::memory_order_relaxed) &&
          !locked_.exchange(true, std::memory_order_acquire))
        return;
      pause();
    }
    // The holder has lost its processor.
    std::this_thread::sleep_for(sleep);
    sleep = std::min(2 * sleep, longestSleep);
  } while (true);
}

}  // namespace Orv
