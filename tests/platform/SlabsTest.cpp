#include "Mox/internal/Slabs.h"

#include <sys/wait.h>
#include <unistd.h>

#include "Platform.h"

namespace {

using Mox::FreePieces, Mox::slabOctets;

// This program's objects stand in slabs, under the sanitizers too.
const int slabs = setenv("MOX_SLABS", "1", 1);

struct Held {
  void* memory;
  std::size_t octets;
  U8 fill;
};

// Pieces that overlap, or that are given out twice, lose what was written to them.
void takeAndGive(FreePieces* mine, std::vector<Held>& held, unsigned seed, std::size_t most) {
  std::mt19937 random(seed);
  for (int step = 0; step < 20'000; ++step) {
    // Waves: many are taken, then most are given, in any order.
    if (random() % 8 < (step / 2000 % 2 ? 7u : 2u) && !held.empty()) {
      std::swap(held[random() % held.size()], held.back());
      const Held last = held.back();
      held.pop_back();
      const auto* const octets = static_cast<const U8*>(last.memory);
      ASSERT_EQ(std::count(octets, octets + last.octets, last.fill), last.octets);
      mine ? mine->give(last.memory, last.octets)
           : FreePieces::giveShared(last.memory, last.octets);
    } else {
      const std::size_t octets = random() % 5 ? random() % 40 + 1 : random() % most;
      void* const memory = mine ? mine->take(octets) : FreePieces::takeShared(octets);
      ASSERT_EQ(std::uintptr_t(memory) % (octets % 16 || !octets ? 8 : 16), 0u);
      held.push_back({memory, octets, U8(random())});
      std::memset(memory, held.back().fill, octets);
    }
  }
}

TEST(Slabs, GiveEachPieceToOneAndTakeBackWhatAnyThreadGives) {
  const std::size_t before = slabOctets();
  for (int round = 0; round < 3; ++round) {
    std::vector<std::vector<Held>> held(4);
    for (int exchange = 0; exchange < 2; ++exchange) {  // each gives what another has taken
      std::vector<std::jthread> threads;
      for (unsigned i = 0; i < held.size(); ++i)
        threads.emplace_back([&, i] {
          static thread_local constinit FreePieces mine;
          takeAndGive(i ? &mine : nullptr, held[(i + exchange) % 4], round * 8 + exchange * 4 + i,
                      FreePieces::mostOctets + 40);
          mine.giveAll();
        });
    }
    EXPECT_GT(slabOctets(), before);
    FreePieces last;
    for (const auto& some : held)
      for (const Held& one : some) last.give(one.memory, one.octets);
    last.giveAll();
  }
  constexpr std::size_t sizes = FreePieces::mostOctets / FreePieces::step;
  EXPECT_LE(slabOctets(), before + sizes * 8192) << "one slab of each size may be kept";
}

TEST(Slabs, KeepLittleForAThread) {
  FreePieces mine;
  std::vector<void*> taken;
  for (int i = 0; i < 20'000; ++i) taken.push_back(mine.take(48));
  const std::size_t most = slabOctets();
  EXPECT_LT(most, 20'000 * 48 * 21 / 20 + (std::size_t{1} << 20)) << "pieces have no headers";
  std::shuffle(taken.begin(), taken.end(), std::mt19937(1));
  for (void* const memory : taken) mine.give(memory, 48);
  EXPECT_LE(slabOctets(), most - (20'000 / 170 - 32 - 2) * 8192) << "32 pieces hold 32 slabs";
  void* const again = mine.take(48);
  EXPECT_EQ(again, taken.back()) << "freed last, still in the cache";
  mine.give(again, 48);
#ifdef __SANITIZE_ADDRESS__
  EXPECT_TRUE(__asan_region_is_poisoned(again, 48) == again);
#endif
  mine.giveAll();
}

TEST(Slabs, AreWholeInTheChildOfAFork) {
  const auto takeAndGiveOne = [] { FreePieces::giveShared(FreePieces::takeShared(48), 48); };
  const std::jthread busy([&](const std::stop_token& end) {
    while (!end.stop_requested()) takeAndGiveOne();
  });
  int status = 0;
  for (int forks = 0; forks < 100 && status == 0; ++forks) {
    const pid_t child = fork();
    if (child == 0) {
      alarm(20);  // ends a child that waits for a thread which it does not have
      takeAndGiveOne();
      _exit(0);
    }
    waitpid(child, &status, 0);
  }
  EXPECT_EQ(status, 0);
}

}  // namespace
