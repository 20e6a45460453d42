// Threads intern and release a few contents as fast as they can, in two layers: pairs hold things,
// and each pair that lives is followed by a notifier. Every promise is checked on the way, and at
// the end nothing may be left.
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <functional>
#include <mutex>
#include <random>
#include <set>
#include <thread>

#include "InternedThing.h"

namespace interning {
namespace {

constexpr U32 contents = 6;

void require(bool condition, const char* what) {
  if (condition) return;
  std::fprintf(stderr, "broken: %s\n", what);
  std::abort();  // at once: the state that broke it is worth a core
}

class Pair final : public Mox::Entity<Pair, MoxStash::DedupHandle> {
 public:
  static inline const Mox::Type type{"test::Pair", &MoxStash::DedupHandle::type, {}};

  Pair(Thing::Ptr first, Thing::Ptr second) : things{std::move(first), std::move(second)} {}
  ~Pair() override { require(!notifier, "a pair ends after its notifier"); }
  U32 hash() const override { return U32(things[0]->content() * 31 + things[1]->content()); }
  bool compare(const Orv::DedupHandle* other) const override {
    return static_cast<const Pair*>(other)->things == things;
  }

  const std::array<Thing::Ptr, 2> things;
  Mox::Ptr<Orv::DedupHandleLifeTimeNotifier> notifier;  // its remover's, once it is being removed
};

using Notifier = Mox::Ptr<Orv::DedupHandleLifeTimeNotifier>;

// The notifiers of all pairs that live, under a mutex of its own that is never held while anything
// is called or dropped. Callbacks intern and release in their turn, one level deep.
class Collection final : public Orv::DedupHashTableLifeTimeNotifiee {
 public:
  explicit Collection(std::function<Pair::Ptr(U64)> intern) : internPair(std::move(intern)) {}
  void handleInsert(const Mox::Ptr<Orv::DedupHandle>& member) const override {
    auto& pair = static_cast<Pair&>(*member);
    require(!pair.notifier, "insertion is heard once");
    pair.notifier = Mox::makeNew<Orv::DedupHandleLifeTimeNotifier>(member);
    {
      const std::lock_guard guard(mutex_);
      require(notifiers_.insert(pair.notifier).second, "a notifier is new");
    }
    ++heardIn;
    reenter(pair, false);
  }
  void handleRemove(Orv::DedupHandle* member) const override {
    auto& pair = static_cast<Pair&>(*member);
    require(bool(pair.notifier), "removal is heard once, after insertion");
    {
      const std::lock_guard guard(mutex_);
      require(notifiers_.erase(pair.notifier) == 1, "a notifier is known");
    }
    ++heardOut;
    if (member->beingDetached()) reenter(pair, true);
    pair.notifier = nullptr;
  }
  void handleNotificationStop(const Mox::Ptr<const Orv::DedupHashTable>&) const override {
    for (const Notifier& notifier : copy()) handleRemove(notifier->getDedupedObjectRawPtr());
  }
  std::set<Notifier> copy() const {
    const std::lock_guard guard(mutex_);
    return notifiers_;
  }

  mutable std::atomic<U32> heardIn{0}, heardOut{0};
  static inline thread_local bool inCallback = false;

 private:
  void reenter(const Pair& pair, bool dying) const {
    if (std::exchange(inCallback, true)) return;
    Pair::Ptr same = internPair(pair.things[0]->content());
    require((same.get() == &pair) == !dying, "a callback finds the pair exactly while it lives");
    same = nullptr;  // its removal is a callback too
    Collection::inCallback = false;
  }

  const std::function<Pair::Ptr(U64)> internPair;
  mutable std::mutex mutex_;
  mutable std::set<Notifier> notifiers_;
};

struct World {
  Table things = newTable();
  Table pairs = Orv::DedupHashTableUnorderedSet::DedupHashTableUnorderedSetIs(true);
  Mox::Ptr<Collection> collection{new Collection([this](U64 content) { return pair(content); })};

  World() { pairs->lifeTimeNotifieeIs(collection); }
  Thing::Ptr thing(U64 content) const { return intern(things, content); }
  Pair::Ptr pair(U64 content) const {
    return Mox::staticCast<Pair>(
        pairs->dedup(Mox::makeNew<Pair>(thing(content), thing((content + 1) % contents))));
  }
};

// A place where threads leave references for each other. Two references to one content that are
// held at the same time must be to one object.
template <class T>
class Mailbox {
 public:
  ~Mailbox() { take(); }
  Mox::Ptr<T> take() { return Mox::Ptr<T>::adopt(held_.exchange(nullptr)); }
  void swap(Mox::Ptr<T> mine) {
    T* const raw = mine.get();
    raw->referencesInc();
    const auto got = Mox::Ptr<T>::adopt(held_.exchange(raw));
    require(!got || got.get() == raw, "of equal members at most one can be found");
  }

 private:
  std::atomic<T*> held_{nullptr};
};

struct Mail {
  Mailbox<Thing> things[contents];
  Mailbox<Pair> pairs[contents];
};

// One of four steps in one of the layers. A thread holds little and lets go often: what is tested
// is the last release.
template <class T>
void stepInLayer(U32 step, Mox::Ptr<T>& held, Mailbox<T>& mailbox, auto intern) {
  if (step == 0) held = nullptr;
  if (step == 1) held = intern();
  if (step == 2) mailbox.swap(intern());
  if (step != 3) return;
  if (const Mox::Ptr<T> taken = mailbox.take())
    require(taken == intern(), "what is held is what is found");
}

// Walks the notifiers while others come and go.
void walk(const World& world) {
  for (const Notifier& notifier : world.collection->copy()) {
    auto* const raw = static_cast<Pair*>(notifier->getDedupedObjectRawPtr());
    require(raw->things[0]->content() < contents, "a notifier keeps the memory valid");
    if (!raw->referencesIncIfAlive()) continue;
    const auto alive = Pair::Ptr::adopt(raw);
    require(world.pair(alive->things[0]->content()) == alive, "a live pair is found");
  }
}

void work(const World& world, Mail& mail, U32 rounds, U32 seed) {
  std::mt19937 random(seed);
  Thing::Ptr heldThing;
  Pair::Ptr heldPair;
  for (U32 round = 0; round < rounds; ++round) {
    const U32 content = random() % contents, step = random() % 12;
    const auto thing = [&] { return world.thing(content); };
    const auto pair = [&] { return world.pair(content); };
    if (step == 0) {
      const Thing::Ptr found = thing();
      require(found->content() == content && found->isDeduped(), "what is found is alive");
    } else if (step == 1) {
      const Pair::Ptr found = pair();
      require(found->things[0] == thing(), "things are one object each");
      require(found->isDeduped() && !found->beingDetached(), "what is found is not dying");
    } else if (step == 2) {
      walk(world);
    } else if (step < 8) {
      stepInLayer(step % 4, heldThing, mail.things[content], thing);
    } else {
      stepInLayer(step % 4, heldPair, mail.pairs[content], pair);
    }
  }
}

TEST(InterningTorture, ThreadsInternAndReleaseTheSameContents) {
  const U32 threads = 3, rounds = 100000;
  {
    World world;
    {
      Mail mail;
      std::vector<std::thread> workers;
      for (U32 i = 0; i < threads; ++i)
        workers.emplace_back([&, i] { work(world, mail, rounds, i + 1); });
      for (auto& worker : workers) worker.join();
    }
    EXPECT_EQ(world.things->members(), 0u);
    EXPECT_EQ(world.pairs->members(), 0u);
    EXPECT_EQ(world.collection->heardIn, world.collection->heardOut);
    EXPECT_GT(world.collection->heardIn, rounds / 10) << "pairs lived and died often";

    // And once more with holders that outlive the tables, the lower one dying first.
    std::vector<Pair::Ptr> survivors;
    for (U32 content = 0; content < contents; ++content) survivors.push_back(world.pair(content));
    Collection::inCallback = true;  // nothing may be interned into a dying table
    world.things = nullptr;
    world.pairs = nullptr;
    Collection::inCallback = false;
    EXPECT_TRUE(world.collection->copy().empty());
    for (const Pair::Ptr& pair : survivors) {
      EXPECT_EQ(pair->dedupState(), Orv::dedupHandleStateDetached());
      EXPECT_LT(Pair::Ptr(pair)->things[1]->content(), contents);
    }
  }
  EXPECT_EQ(Thing::alive, 0);
  EXPECT_EQ(Mox::allocationCount("test::Pair").objects, 0u);
  EXPECT_EQ(Mox::allocationCount("test::Thing").octets, 0u);
}

}  // namespace
}  // namespace interning
