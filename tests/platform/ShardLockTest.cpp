#include "Orv/ShardLock.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace Orv {
namespace {

// The holder keeps the lock for so long that the others go to sleep, and lets go in this program
// while they sleep in the library. A sleeper that is not woken hangs the test.
TEST(ShardLock, WakesThoseWhoSleepInTheLibrary) {
  ShardLock lock;
  int held = 0;
  for (int round = 0; round < 5; ++round) {
    lock.lock();
    std::thread sleepers[2];
    for (std::thread& sleeper : sleepers)
      sleeper = std::thread([&] {
        lock.lock();
        ++held;
        lock.unlock();
      });
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_EQ(held, 2 * round) << "nobody else gets in";
    lock.unlock();
    for (std::thread& sleeper : sleepers) sleeper.join();
  }
  EXPECT_EQ(held, 10);
}

}  // namespace
}  // namespace Orv
