// Threads intern and release a few contents as fast as they can, in two layers: pairs hold things,
// and each pair that lives is followed by a notifier. Every promise is checked on the way, and at
// the end nothing may be left.
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <mutex>
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

struct World;

// The notifiers of all pairs that live, under a mutex of its own that is never held while anything
// is called or dropped.
class Collection final : public Orv::DedupHashTableLifeTimeNotifiee {
 public:
  explicit Collection(World& world) : world_(world) {}
  void handleInsert(const Mox::Ptr<Orv::DedupHandle>& member) const override;
  void handleRemove(Orv::DedupHandle* member) const override;
  void handleNotificationStop(const Mox::Ptr<const Orv::DedupHashTable>&) const override {
    for (const auto& notifier : copy()) handleRemove(notifier->getDedupedObjectRawPtr());
  }
  std::set<Mox::Ptr<Orv::DedupHandleLifeTimeNotifier>> copy() const {
    const std::lock_guard guard(mutex_);
    return notifiers_;
  }

 private:
  World& world_;
  mutable std::mutex mutex_;
  mutable std::set<Mox::Ptr<Orv::DedupHandleLifeTimeNotifier>> notifiers_;
};

struct World {
  Table things = newTable();
  Table pairs = Orv::DedupHashTableUnorderedSet::DedupHashTableUnorderedSetIs(true);
  Mox::Ptr<Collection> collection = Mox::Ptr<Collection>(new Collection(*this));
  std::atomic<U32> heardIn{0}, heardOut{0};

  World() { pairs->lifeTimeNotifieeIs(collection); }
  Pair::Ptr pair(U64 content) {
    return Mox::staticCast<Pair>(pairs->dedup(
        Mox::makeNew<Pair>(intern(things, content), intern(things, (content + 1) % contents))));
  }
};

// Callbacks intern and release in their turn, one level deep.
thread_local bool inCallback = false;
void reenter(World& world, const Pair& pair, bool dying) {
  if (inCallback) return;
  inCallback = true;
  Pair::Ptr same = world.pair(pair.things[0]->content());
  require((same.get() == &pair) == !dying, "a callback finds the pair exactly while it lives");
  same = nullptr;  // its removal is a callback too
  inCallback = false;
}

void Collection::handleInsert(const Mox::Ptr<Orv::DedupHandle>& member) const {
  auto& pair = static_cast<Pair&>(*member);
  require(!pair.notifier, "insertion is heard once");
  pair.notifier = Mox::makeNew<Orv::DedupHandleLifeTimeNotifier>(member);
  {
    const std::lock_guard guard(mutex_);
    require(notifiers_.insert(pair.notifier).second, "a notifier is new");
  }
  ++world_.heardIn;
  reenter(world_, pair, false);
}

void Collection::handleRemove(Orv::DedupHandle* member) const {
  auto& pair = static_cast<Pair&>(*member);
  require(bool(pair.notifier), "removal is heard once, after insertion");
  {
    const std::lock_guard guard(mutex_);
    require(notifiers_.erase(pair.notifier) == 1, "a notifier is known");
  }
  ++world_.heardOut;
  if (member->beingDetached()) reenter(world_, pair, true);
  pair.notifier = nullptr;
}

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

void work(World& world, Mail& mail, U32 rounds, U32 seed) {
  U32 random = seed * 2654435761u | 1;
  auto draw = [&](U32 below) {
    random ^= random << 13, random ^= random >> 17, random ^= random << 5;
    return (random >> 8) % below;
  };
  // Each thread holds little and lets go often: what is tested is the last release.
  Thing::Ptr thing;
  Pair::Ptr pair;
  for (U32 round = 0; round < rounds; ++round) {
    const U32 content = draw(contents);
    switch (draw(12)) {
      case 0:
        thing = nullptr;
        break;
      case 1:
        pair = nullptr;
        break;
      case 2:
        thing = intern(world.things, content);
        break;
      case 3:
        pair = world.pair(content);
        break;
      case 4:
        mail.things[content].swap(intern(world.things, content));
        break;
      case 5:
        mail.pairs[content].swap(world.pair(content));
        break;
      case 6:
      case 10:
        if (const auto taken = mail.things[content].take())
          require(taken == intern(world.things, content), "a held thing is the one that is found");
        break;
      case 11:
        if (const auto taken = mail.pairs[content].take())
          require(taken == world.pair(content), "a held pair is the one that is found");
        break;
      case 7: {
        const auto found = world.pair(content);
        require(found->things[0] == intern(world.things, content), "things are one object each");
        require(found->isDeduped() && !found->beingDetached(), "what is found is not dying");
        break;
      }
      case 8: {
        const auto found = intern(world.things, content);
        require(found->content() == content && found->isDeduped(), "what is found is alive");
        break;
      }
      case 9: {  // walk the notifiers while others come and go
        for (const auto& notifier : world.collection->copy()) {
          auto* const raw = static_cast<Pair*>(notifier->getDedupedObjectRawPtr());
          require(raw->things[0]->content() < contents, "a notifier keeps the memory valid");
          if (!raw->referencesIncIfAlive()) continue;
          const auto alive = Pair::Ptr::adopt(raw);
          require(world.pair(alive->things[0]->content()) == alive, "a live pair is found");
        }
        break;
      }
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
    EXPECT_EQ(world.heardIn, world.heardOut);
    EXPECT_GT(world.heardIn, rounds / 10) << "pairs lived and died often";

    // And once more with holders that outlive the tables, the lower one dying first.
    std::vector<Pair::Ptr> survivors;
    for (U32 content = 0; content < contents; ++content) survivors.push_back(world.pair(content));
    inCallback = true;  // nothing may be interned into a dying table
    world.things = nullptr;
    world.pairs = nullptr;
    inCallback = false;
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
