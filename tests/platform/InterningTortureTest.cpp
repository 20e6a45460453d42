// Things in two layers: pairs hold things, and each pair that lives is followed by a notifier. One
// thread goes through the life of a pair step by step; then threads intern and release a few
// contents as fast as they can, while every promise is checked on the way.
#include <set>

#include "Platform.h"

namespace {

constexpr U32 contents = 6;

using Notifier = Mox::Ptr<Orv::DedupHandleLifeTimeNotifier>;

struct Pair final : Mox::Entity<Pair, MoxStash::DedupHandle> {
  static inline const Mox::Type type{"test::Pair", &MoxStash::DedupHandle::type, {}};

  Pair(Thing::Ptr first, Thing::Ptr second) : things{std::move(first), std::move(second)} {}
  ~Pair() override { MOX_ASSERT(!notifier, "a pair ends after its notifier"); }
  U32 hash() const override { return U32(things[0]->content * 31 + things[1]->content); }
  bool compare(const Orv::DedupHandle* other) const override {
    return static_cast<const Pair*>(other)->things == things;
  }

  const std::array<Thing::Ptr, 2> things;
  Notifier notifier;  // its remover's, once it is being removed
};

// The notifiers of all pairs that live, under a mutex of its own that is never held while anything
// is called or dropped. Callbacks intern and release in their turn, one level deep.
struct Collection final : Orv::DedupHashTableLifeTimeNotifiee {
  explicit Collection(std::function<Pair::Ptr(U64)> intern) : internPair(std::move(intern)) {}
  auto locked(auto act) const {
    const std::lock_guard guard(mutex);
    return act(notifiers);
  }
  void handleInsert(const Mox::Ptr<Orv::DedupHandle>& member) const override {
    auto& pair = static_cast<Pair&>(*member);
    MOX_ASSERT(!pair.notifier, "insertion is heard once");
    pair.notifier = Mox::makeNew<Orv::DedupHandleLifeTimeNotifier>(member);
    MOX_ASSERT(locked([&](auto& all) { return all.insert(pair.notifier).second; }), "it is new");
    ++heardIn;
    reenter(pair, false);
  }
  void handleRemove(Orv::DedupHandle* member) const override {
    auto& pair = static_cast<Pair&>(*member);
    MOX_ASSERT(pair.notifier, "removal is heard once, after insertion");
    MOX_ASSERT(locked([&](auto& all) { return all.erase(pair.notifier) == 1; }), "it was known");
    ++heardOut;
    if (member->beingDetached()) reenter(pair, true);
    pair.notifier = nullptr;
  }
  void handleNotificationStop(const Mox::Ptr<const Orv::DedupHashTable>&) const override {
    for (const Notifier& notifier : copy()) handleRemove(notifier->getDedupedObjectRawPtr());
  }
  std::set<Notifier> copy() const {
    return locked([](const auto& all) { return all; });
  }
  void reenter(const Pair& pair, bool dying) const {
    static thread_local bool inCallback = false;
    if (std::exchange(inCallback, true)) return;
    Pair::Ptr same = internPair(pair.things[0]->content);
    MOX_ASSERT((same.get() == &pair) == !dying, "a callback finds the pair exactly while it lives");
    same = nullptr;  // its removal is a callback too
    inCallback = false;
  }

  mutable std::atomic<U32> heardIn{0}, heardOut{0};

  const std::function<Pair::Ptr(U64)> internPair;
  mutable std::mutex mutex;
  mutable std::set<Notifier> notifiers;
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

// A box in which threads leave references for each other.
template <class T>
struct Mailbox {
  ~Mailbox() { swap(nullptr); }
  Mox::Ptr<T> swap(Mox::Ptr<T> mine) { return Mox::Ptr<T>::adopt(held.exchange(mine.release())); }
  std::atomic<T*> held{nullptr};
};

struct Mail {
  Mailbox<Thing> things[contents];
  Mailbox<Pair> pairs[contents];
};

// One of four steps in one of the layers: let go, hold, leave or take a reference. A thread holds
// little and lets go often: what is tested is the last release.
template <class T>
void stepInLayer(U32 step, Mox::Ptr<T>& held, Mailbox<T>& mailbox, auto intern) {
  if (step == 0) held = nullptr;
  if (step == 1) held = intern();
  if (step < 2) return;
  const Mox::Ptr<T> mine = step == 2 ? intern() : nullptr;
  const Mox::Ptr<T> theirs = mailbox.swap(mine);
  MOX_ASSERT(!theirs || theirs == (mine ? mine : intern()), "what is held is what is found");
}

// Walks the notifiers while others come and go. A bit of the user data is the thread's own.
void walk(const World& world, U32 bit) {
  for (const Notifier& notifier : world.collection->copy()) {
    auto* const raw = static_cast<Pair*>(notifier->getDedupedObjectRawPtr());
    MOX_ASSERT(raw->things[0]->content < contents, "a notifier keeps the memory valid");
    for (int i = 0; i < 10; ++i) {
      raw->bitSet(bit);
      MOX_ASSERT(raw->isBitSet(bit), "no bit is lost, though the pair be dying");
      raw->bitReset(bit);
    }
    if (!raw->referencesIncIfAlive()) continue;
    const auto alive = Pair::Ptr::adopt(raw);
    MOX_ASSERT(world.pair(alive->things[0]->content) == alive, "a live pair is found");
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
      MOX_ASSERT(found->content == content && found->isDeduped(), "what is found is alive");
    } else if (step == 1) {
      const Pair::Ptr found = pair();
      MOX_ASSERT(found->isDeduped() && !found->beingDetached(), "what is found is not dying");
      MOX_ASSERT(found->things[0] == thing(), "things are one object each");
    } else if (step == 2) {
      walk(world, seed);
    } else if (step < 8) {
      stepInLayer(step % 4, heldThing, mail.things[content], thing);
    } else {
      stepInLayer(step % 4, heldPair, mail.pairs[content], pair);
    }
  }
}

TEST(LifeTimeNotification, IsHeardOnceInAndOnceOut) {
  World world;
  const Collection& heard = *world.collection;
  Pair::Ptr one = world.pair(1), again = world.pair(1), two = world.pair(2), three = world.pair(3);
  EXPECT_EQ(row(one->keep(), one->references()), "2 4");  // two pointers, table, notifier
  EXPECT_DEATH(Mox::makeNew<Orv::DedupHandleLifeTimeNotifier>(one), "__null == dedupTable\\(\\)");
  EXPECT_DEATH(Mox::makeNew<Orv::DedupHandleLifeTimeNotifier>(one->things[0]),
               ": haveLifeTimeNotifier\\(\\)");
  EXPECT_DEATH(World().pairs->lifeTimeNotifieeIs(nullptr), "__null == lifeTimeNotifiee");
  one = nullptr;
  EXPECT_EQ(row(heard.heardIn, heard.heardOut), "3 0");
  again = nullptr;
  EXPECT_EQ(row(heard.heardIn, heard.heardOut), "4 2") << "a successor came and went meanwhile";

  // A notifier that is kept past the removal keeps the memory valid, no more.
  const Notifier kept = three->notifier;
  three = nullptr;
  const auto* const dead = static_cast<Pair*>(kept->getDedupedObjectRawPtr());
  EXPECT_EQ(row(dead->things[0]->content, dead->referencesIncIfAlive(), world.pairs->members()),
            "3 0 1");

  // A holder outlives the tables, of which the lower one dies first.
  world.things = nullptr;
  world.pairs = nullptr;
  EXPECT_TRUE(heard.heardIn == heard.heardOut && heard.copy().empty());
  EXPECT_EQ(row(two->dedupState() == Orv::dedupHandleStateDetached(), two->haveLifeTimeNotifier()),
            "1 1");
  EXPECT_TRUE(two->referencesIncIfAlive() && two->referencesDec() == 1);
  EXPECT_EQ(Pair::Ptr(two)->things[1]->content, 3u);
}

TEST(InterningTorture, ThreadsInternAndReleaseTheSameContents) {
  const U32 rounds = 200000;
  {
    World world;
    {
      Mail mail;
      std::vector<std::jthread> workers;
      for (const U32 seed : {1, 2, 3})
        workers.emplace_back([&, seed] { work(world, mail, rounds, seed); });
    }
    EXPECT_EQ(world.things->members() + world.pairs->members(), 0u);
    EXPECT_EQ(world.collection->heardIn, world.collection->heardOut);
    EXPECT_GT(world.collection->heardIn, rounds / 10) << "pairs lived and died often";
  }
  EXPECT_EQ(row(Thing::alive, counted("test::Pair"), counted("test::Thing")), "0 0 0 0 0");
}

}  // namespace
