// Observers that come and go, also from inside their calls, also without memory.
#include <optional>

#include "Platform.h"

namespace {

using namespace std::chrono_literals;

struct Shelf final : Mox::Entity<Shelf, Mox::PtrInterface> {
  static inline const Mox::Type type{"test::Shelf", &Mox::PtrInterface::type, {}};
  struct NotifieeConst : Mox::Notifiee {
    virtual void onBook(U32) {}
    bool notifierIs(const Shelf::PtrConst& shelf) { return Notifiee::notifierIs(shelf); }
  };
  Mox::NotifieeList* notifieeList() const override { return &notifiees; }
  void bookIs(U32 book) {
    notifiees.deliver<NotifieeConst>([&](NotifieeConst& n) { n.onBook(book); });
  }
  mutable Mox::NotifieeList notifiees;
};

struct Reader final : Shelf::NotifieeConst {
  explicit Reader(const Shelf::PtrConst& shelf = nullptr) { notifierIs(shelf); }
  ~Reader() override { notifierIs(nullptr); }
  void onBook(U32 book) override {
    ++heard;
    if (act) act(book);
  }
  std::atomic<U32> heard = 0;
  std::function<void(U32)> act;
};

struct Notifiee : testing::Test {
  const Shelf::Ptr shelf = Mox::makeNew<Shelf>(), other = Mox::makeNew<Shelf>();
};

/// Whether the condition comes to hold while a thread that should not wait has its time.
bool soon(const std::function<bool()>& condition, std::chrono::milliseconds time = 10s) {
  const auto end = std::chrono::steady_clock::now() + time;
  while (!condition() && std::chrono::steady_clock::now() < end) std::this_thread::yield();
  return condition();
}

// The first test: nothing has been counted yet in the process that dies.
TEST(CountingDeathTest, FirstObjectOfAProcessAndOfAThreadNeedsNoMemoryToBeCounted) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto makeOne = [] {
    const MemoryFor object(1);
    Mox::makeNew<Shelf>();
  };
  const auto makeTwo = [&] {
    makeOne();
    std::thread(makeOne).join();
    std::_Exit(counted("test::Shelf") == "0 0" ? 0 : 1);
  };
  EXPECT_EXIT(makeTwo(), testing::ExitedWithCode(0), "");
}

TEST(Counting, TrackersOfOneNameAndAllThreadsShareTheirFigures) {
  static constinit const Mox::AllocationTracker one("test::Shared"), two("test::Shared");
  for (int round = 0; round < 3; ++round) {
    void* memory[100];  // more threads than have figures of their own
    std::latch made(100);
    std::vector<std::jthread> threads;
    for (void*& place : memory)
      threads.emplace_back([&] {
        two.deallocate(one.allocate(8), 8);
        place = one.allocate(8);
        made.arrive_and_wait();
      });
    threads.clear();
    EXPECT_EQ(counted("test::Shared"), "100 800");
    for (void* const each : memory) two.deallocate(each, 8);
    EXPECT_EQ(counted("test::Shared"), "0 0");
  }
}

TEST_F(Notifiee, HearsInOrderFromWhenItCameToWhenItWent) {
  Mox::String log;
  Reader first(shelf), second(shelf), third;
  std::optional<Reader> fourth(shelf);
  first.act = [&](U32 book) {
    log += "1";
    if (book == 1) second.notifierIs(nullptr), third.notifierIs(shelf), shelf->bookIs(2);
    if (book == 2) second.notifierIs(shelf);
  };
  second.act = [&](U32) { log += "2"; };
  third.act = [&](U32) { log += "3"; };
  fourth->act = [&](U32 book) {
    log += "4";
    if (book == 3) fourth.reset();  // in its own call
  };
  for (const U32 book : {1, 3, 4}) shelf->bookIs(book), log += " ";
  EXPECT_EQ(log, "11434 1432 132 ");
  EXPECT_FALSE(first.notifierIs(shelf)) << "observed already";
  EXPECT_TRUE(first.notifierIs(other));
  shelf->bookIs(5);
  EXPECT_EQ(first.heard, 4u);
  other->bookIs(5);
  EXPECT_EQ(row(first.heard, other->references()), "5 2") << "an observer keeps what it observes";
}

TEST_F(Notifiee, IsWaitedForThoughItHasGoneInsideItsOwnCall) {
  Reader reader(shelf);
  std::atomic<bool> inside = false, ended = false;
  reader.act = [&](U32) {
    reader.notifierIs(nullptr);
    inside = true;
    EXPECT_FALSE(soon([&] { return bool(ended); }, 100ms));
  };
  const std::jthread caller([&] { shelf->bookIs(1); });
  ASSERT_TRUE(soon([&] { return bool(inside); }));
  reader.notifierIs(nullptr);
  ended = true;
}

TEST_F(Notifiee, MayGoFromInsideTwoCallsAtATime) {
  Reader reader(shelf);
  std::atomic<U32> inside = 0;  // the threads' calls
  reader.act = [&](U32) {
    ++inside;
    EXPECT_TRUE(soon([&] { return inside == 2; }));
    reader.notifierIs(nullptr);
  };
  {
    const std::jthread one([&] { shelf->bookIs(1); }), two([&] { shelf->bookIs(2); });
  }
  shelf->bookIs(3);
  EXPECT_EQ(reader.heard, 2u);
}

TEST_F(Notifiee, HearsAndGoesWithoutMemoryAndStaysWhereItIs) {
  Reader reader(shelf), inner(other);
  reader.act = [&](U32) { other->bookIs(1); };
  {
    const MemoryFor none(0);
    shelf->bookIs(1);
    inner.notifierIs(nullptr);
    EXPECT_THROW(inner.notifierIs(shelf), std::bad_alloc);
    shelf->bookIs(2);
  }
  EXPECT_EQ(row(reader.heard, inner.heard), "2 1");
  EXPECT_TRUE(inner.notifierIs(shelf)) << "it is not deaf";
  shelf->bookIs(3);
  EXPECT_EQ(row(reader.heard, inner.heard), "3 2");
}

}  // namespace
