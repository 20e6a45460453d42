#include "Mox/Allocation.h"

#include <gtest/gtest.h>

#include <thread>

#include "Mox/Entity.h"

namespace {

struct Tracked final : Mox::Entity<Tracked, Mox::PtrInterface> {
  static inline const Mox::Type type{"test::Tracked", &Mox::PtrInterface::type, {}};
};

Mox::AllocationCount counted() { return Mox::allocationCount("test::Tracked"); }

TEST(Allocation, IsCountedAcrossThreadsThatComeAndGo) {
  for (int round = 0; round < 3; ++round) {
    std::vector<Tracked::Ptr> kept(8);
    std::vector<std::thread> threads;
    for (auto& place : kept)
      threads.emplace_back([&] {
        place = Mox::makeNew<Tracked>();
        Mox::makeNew<Tracked>();
      });
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(counted().objects, 8u);
    EXPECT_EQ(counted().octets, 8 * sizeof(Tracked));
    std::thread([&] { kept.clear(); }).join();  // freed by another than made it
    EXPECT_EQ(counted().objects, 0u);
    EXPECT_EQ(counted().octets, 0u);
  }
}

}  // namespace
