#include <map>

#include "Orv/ShardLock.h"
#include "Platform.h"

static thread_local unsigned arraysLeft = ~0u;  // then memory ends

// Replaced for the whole program, in which only the arrays of tables are allocated in this way.
void* operator new[](std::size_t octets, const std::nothrow_t&) noexcept {
  return arraysLeft && arraysLeft-- ? ::operator new[](octets) : nullptr;
}

namespace {

// The smallest handle. It claims to be a member whatever its state word says.
struct Plain final : Orv::DedupHandle {
  U32 hash() const override { return 0; }
  bool compare(const Orv::DedupHandle* other) const override { return other == this; }
  bool isDeduped() const override { return true; }
};

TEST(Interning, VirtualOperationsStandInTheirSlotsAndAreReachedThroughThem) {
  using H = Orv::DedupHandle;
  // clang-format off
  EXPECT_EQ(row(slotOf(&H::notifieeList), slotOf(&H::hasNotificationActiveIs), slotOf(&H::zeroReferencesIs),
                slotOf(&H::fwkType), slotOf(&H::isDeduped), slotOf(&H::assertIsDeduped), slotOf(&H::hash),
                slotOf(&H::compare), slotOf(&H::compareByContent)),
            "1 2 3 4 7 8 9 10 11");  // 5, 6: destructors
  // clang-format on
  const auto plain = Mox::makeNew<Plain>();
  plain->assertIsDeduped();  // ends the process unless it asks the class itself
  EXPECT_FALSE(plain->compareByContent({}) || plain->getContent().octets);
}

TEST(Interning, EqualContentIsOneObjectForAsLongAsItIsHeld) {
  for (const bool threadSafe : {true, false}) {
    const Table table = newTable(threadSafe);
    Thing::Ptr a = intern(table, 7), c = intern(table, 8);
    const Thing::Ptr b = intern(table, 7), given = Mox::makeNew<Thing>(7);
    EXPECT_TRUE(a == b && a != c && a->isDeduped() && a->dedupTable() == table.get());
    EXPECT_EQ(a->references(), 3u);  // a, b, the table
    for (const Thing::Ptr& equal : {given, a}) EXPECT_EQ(table->dedup(equal), a);
    EXPECT_FALSE(table->lookupByContent({&a->content, sizeof a->content}, 6)) << "another hash";
    a = c = nullptr;
    EXPECT_EQ(row(given->isDeduped(), table->members(), !lookup(table, 8)), "0 1 1");
  }
  const Thing::Ptr lone = Mox::makeNew<Thing>(2);
  EXPECT_TRUE(lone->referencesInc() == 2 && lone->referencesDec() == 1);
  EXPECT_EQ(counted("test::Thing"), row(1, sizeof(Thing))) << "keep is left, but not in a table";
}

// A dying member is one whose count has come down to keep and whose removal has not begun: plain
// counting of the base leaves it in just this state.
TEST(Interning, LookupPassesByADyingMember) {
  const Table table = newTable();
  Thing* const dying = intern(table, 5).release();
  dying->Mox::PtrInterface::referencesDec();
  EXPECT_TRUE(!dying->referencesIncIfAlive() && !lookup(table, 5));
  Thing::Ptr successor = intern(table, 5);
  EXPECT_EQ(row(dying->references() == dying->keep(), table->members()), "1 2");
  dying->doRemoveFromDedupTable();  // what the last release does next
  EXPECT_EQ(row(table->members(), Thing::alive), "1 1");
  EXPECT_EQ(lookup(table, 5), successor) << "removal is by identity, not by content";

  // Taken out by hand while others hold it, a member behaves as one that a notifier still knows.
  Thing::Ptr other = successor;
  other->userDataIs(6);
  other->doRemoveFromDedupTable();
  EXPECT_EQ(row(other->beingDetached(), !other->dedupTable(), other->userData(),
                other->referencesIncIfAlive(), other->references(), table->members()),
            "1 1 6 0 2 0");
  EXPECT_NE(intern(table, 5), other);
  successor = nullptr;
  EXPECT_EQ(Thing::alive, 1);
  other = nullptr;
  EXPECT_EQ(Thing::alive, 0);
}

TEST(Interning, ATableThatDiesFirstLeavesMembersToTheirHolders) {
  Table table = newTable();
  std::vector<Thing::Ptr> held;  // in every shard
  for (U64 content = 0; content < 2000; ++content) held.push_back(intern(table, content));
  table = nullptr;
  for (const Thing::Ptr& thing : held)
    ASSERT_TRUE(thing->dedupState() == 3 && !thing->dedupTable() && thing->referencesIncIfAlive() &&
                thing->referencesDec() == 1)
        << "no table holds it, so every count is somebody's";
  EXPECT_EQ(Thing::Ptr(held[5])->content, 5u);
}

TEST(Interning, StateWordKeepsItsFieldsApart) {
  const Thing::Ptr thing = Mox::makeNew<Thing>(1);
  thing->userDataIs(0xFFFFFFFF);
  thing->userDataBitsIs(~0u, ~0u);
  EXPECT_FALSE(thing->beingDetached() || thing->haveLifeTimeNotifier() || thing->dedupState());
  thing->userDataBitsIs(0xF0, 0x20);
  EXPECT_EQ(thing->userData(), 0x0FFFFF2Fu);
  thing->userDataIs(5);
  thing->userDataBitsIs(0xF0, ~0u);
  thing->setBitsAtomic(0x300, 0x110);
  EXPECT_EQ(thing->userData(), 0x3E5u) << "a bit that is set and cleared is set";
  thing->bitReset(9);
  for (const U32 state : {3u, 1u, 2u, 3u}) {
    thing->dedupStateIs(state);
    EXPECT_EQ(thing->dedupState(), state);
  }
  thing->haveLifeTimeNotifierIs(true);
  for (const U32 bit : {29u, 30u, 31u}) EXPECT_TRUE(thing->isBitSet(bit)) << bit;
  EXPECT_EQ(row(thing->keep(), thing->references()), "2 1");
  EXPECT_EQ(registered(Orv::DedupHandle::type, thing.get()),
            "isBitSet bitSet bitReset setBitsAtomic dedupState=3 dedupStateIs "
            "haveLifeTimeNotifier=True haveLifeTimeNotifierIs beingDetached=False beingDetachedIs "
            "userData=485 userDataIs userDataBitsIs dedupTable=NULL isDeduped=False "
            "assertIsDeduped doRemoveFromDedupTable moxMemAlloc moxMemDealloc prepareToDestruct "
            "hash=1 compare compareByContent getContent ");
  thing->beingDetachedIs(true);
  EXPECT_TRUE(thing->isBitSet(28));
}

TEST(Interning, StateWordLosesNoBitsBetweenThreads) {
  const Thing::Ptr thing = Mox::makeNew<Thing>(1);
  const auto count = [&](U32 shift) {
    for (U32 i = 0; i < 0x3FFF; ++i) {
      thing->userDataBitsIs(0x3FFFu << shift, i << shift);
      ASSERT_EQ(thing->userData() >> shift & 0x3FFF, i);
    }
  };
  const std::jthread other(count, 14);
  count(0);
}

TEST(Interning, SwitchedOffCountingReportsOneAndChangesNothing) {
  Table table = newTable();
  const Thing::Ptr thing = intern(table, 1);
  Orv::dedupHandleDisableSmartPointerOperations = true;
  Thing* const uncounted = intern(table, 2).get();
  const std::string seen =
      row(thing->referencesInc(), thing->referencesDec(), lookup(table, 1) == thing,
          lookup(table, 2).get() == uncounted, uncounted->references(), table->members());
  uncounted->doRemoveFromDedupTable();
  Orv::dedupHandleDisableSmartPointerOperations = false;
  EXPECT_EQ(seen, "1 1 1 1 0 2");
  EXPECT_EQ(row(thing->references(), Thing::alive), "2 2") << "what is not counted does not end";
  uncounted->zeroReferencesIs(true);
}

// Against a plain map, for every way of placing: by content and all in one shard, by hash, and with
// all hashes equal. Memory runs out now and then, when a table grows and at last when it would
// shrink.
TEST(Interning, TableAgreesWithAMap) {
  for (const U32 hashes : {1u, 3u, ~0u})
    for (const U64 shards : {1, 64}) {
      const Table table =
          shards == 1 ? newTable<6>(false)
                      : Orv::DedupHashTableUnorderedSet::DedupHashTableUnorderedSetIs(false);
      Thing::hashes = hashes;
      const U64 empty = table->octets(), contents = hashes == 1 ? 300 : 3000;
      std::map<U64, Thing::Ptr> model;
      std::mt19937 random(1);
      for (U32 step = 0; step < 20000; ++step) {
        const U64 content = random() % contents;
        if ((random() % 3 == 0) == step / 5000 % 2) {  // grows, shrinks, grows, shrinks
          arraysLeft = step % 2;                       // a table that grows needs one
          try {
            const Thing::Ptr thing = intern(table, content);
            ASSERT_EQ(thing->content, content);
            ASSERT_EQ(model.emplace(content, thing).first->second, thing);
          } catch (const std::bad_alloc&) {
            ASSERT_TRUE(step % 2 == 0 && !model.contains(content));
          }
          arraysLeft = ~0u;
        } else {
          model.erase(content);
        }
        const U64 members = model.size(), places = (table->octets() - empty) / sizeof(U64);
        ASSERT_TRUE(table->members() == members && U64(Thing::alive) == members);
        ASSERT_TRUE(members * 3 <= places * 2 && places <= 64 * shards + 16 * members);
      }
      const U64 octets = table->octets();
      arraysLeft = 0;
      while (model.size() > 1) model.erase(model.begin());
      arraysLeft = ~0u;
      EXPECT_EQ(table->octets(), octets) << "shrinking is put off";
      for (U64 content = 0; content < contents; ++content)
        ASSERT_EQ(lookup(table, content), model.contains(content) ? model[content] : nullptr);
      model.clear();
      EXPECT_EQ(table->members(), 0u);
    }
}

TEST(Type, IsFoundByNameAndReadsItsBasesAttributes) {
  const Thing::Ptr thing = Mox::makeNew<Thing>(1);
  thing->userDataIs(5);
  EXPECT_TRUE(thing->hasNotificationActive() && !thing->deletionMark());
  for (const bool on : {true, false}) {
    thing->deletionMarkIs(on);
    thing->hasNotificationActiveIs(!on);
    EXPECT_EQ(row(thing->deletionMark(), thing->hasNotificationActive(), thing->references()),
              row(on, !on, 1));
  }
  EXPECT_EQ(Mox::Type::read(*thing, "userData"), "5") << "of the base's base";
  for (const char* name : {"setBitsAtomic", "none"})
    EXPECT_THROW(Mox::Type::read(*thing, name), Mox::RangeException) << name;
  {
    const Mox::Type derived("test::Derived", &Thing::type, {}), again("test::Thing", nullptr, {});
    EXPECT_TRUE(derived.isA(Thing::type) && derived.isA(derived) && !Thing::type.isA(derived));
    EXPECT_EQ(Mox::Type::find("test::Derived"), &derived);
  }
  EXPECT_FALSE(Mox::Type::find("test::Derived"));
  EXPECT_EQ(Mox::Type::find("test::Thing"), &Thing::type) << "the first stays";
}

TEST(Interning, TablesDumpAndPointersPrint) {
  const Table table = newTable();
  const auto* const base = static_cast<const Orv::DedupHashTable*>(table.get());
  const Thing::Ptr a = intern(table, 1), b = intern(table, 2);
  EXPECT_EQ(newTable()->octets() - sizeof *table, 64u * 64) << "a cache line for each shard";
  EXPECT_EQ(registered(Orv::DedupHashTable::type, base),
            "lookupByContent dedup lifeTimeNotifieeIs visitMembers members=2 octets=" +
                std::to_string(table->octets()) + " dumpState ");
  const auto context = Mox::makeNew<Orv::DumpContext>();
  for (const int indent : {0, 3}) context->child(base, indent);
  context->child(static_cast<Orv::DedupHashTable*>(nullptr), 1);
  EXPECT_EQ(context->text(), "members: 2\n   members: 2\n NULL\n");
  std::ostringstream out;
  out << std::hex << std::setw(30) << Table() << table;
  EXPECT_EQ(out.str(), "NULL" + row(static_cast<const void*>(table.get())));
  EXPECT_EQ(raised([&] { Mox::refuseNull(table, "Owner", "table"); }), "nothing");
  EXPECT_THROW(Mox::refuseNull(Table(), "Owner", "table"), Mox::RangeException);
}

// The holder keeps the lock for so long that the others go to sleep, and lets go in this program
// while they sleep in the library. A sleeper that is not woken hangs the test.
TEST(ShardLock, LetsOneInAtATimeAlsoOfThoseWhoSleepInTheLibrary) {
  Orv::ShardLock lock;
  int held = 0;
  const auto hold = [&] {
    for (int i = 0; i < 20'000; ++i) lock.lock(), ++held, lock.unlock();
  };
  for (int round = 0; round < 5; ++round) {
    lock.lock();
    const std::jthread one(hold), two(hold);
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_EQ(held, 40'000 * round) << "nobody else gets in";
    lock.unlock();
  }
  EXPECT_EQ(held, 200'000);
}

// Consecutive contents are what peers send: route targets of one AS, one number for many ASes.
TEST(Placement, SpreadsConsecutiveContentsUnderEverySeed) {
  std::mt19937_64 random(1);
  for (int round = 0; round < 800; ++round) {
    const U64 seed = random(), shift = round % 5 * 8;
    std::vector<bool> taken(1024);
    U32 probes = 0;
    for (U64 i = 0; i < 512; ++i, ++probes) {
      U64 place = Orv::placeOf(0x0002FDE800000000 + (i << shift), seed) % taken.size();
      for (; taken[place]; place = (place + 1) % taken.size()) ++probes;
      taken[place] = true;
    }
    EXPECT_LT(probes, 512 * 2.5) << shift;  // 1.5 on average when places are random
  }
}

TEST(Placement, OfOctetsDependsOnEachAndOnTheirNumber) {
  const U64 seed = Orv::placementSeed();
  EXPECT_TRUE(seed == Orv::placementSeed() && seed != 0);
  std::set<U64> places;
  for (std::size_t size = 0; size < 40; ++size) {
    unsigned char octets[40] = {};
    const U64 plain = Orv::placeOf(octets, size, seed);
    EXPECT_TRUE(places.insert(plain).second) << size;
    for (std::size_t i = 0; i < sizeof octets; ++i) {
      octets[i] = 1;
      const U64 place = Orv::placeOf(octets, size, seed);
      octets[i] = 0;
      ASSERT_TRUE(i < size ? places.insert(place).second : place == plain) << i << " of " << size;
    }
  }
}

TEST(InterningDeathTest, MisuseEndsTheProcess) {
  const Table table = newTable(), other = newTable();
  const Thing::Ptr member = intern(table, 1), lone = Mox::makeNew<Thing>(2);
  // clang-format off
  const std::pair<std::function<void()>, const char*> cases[] = {
      {[&] { member->beingDetachedIs(true), member->referencesInc(); }, "!beingDetached\\(\\)"},
      {[&] { lone->assertIsDeduped(); }, "isDeduped\\(\\)"}, {[&] { table->dedup(nullptr); }, "dedupHandle"},
      {[&] { table->dedup(nullptr, 0); }, "dedupHandle"},
      {[&] { member->haveLifeTimeNotifierIs(true), member->doRemoveFromDedupTable(); },
       "__null != lifeTimeNotifiee"},
      {[&] { lone->doRemoveFromDedupTable(); }, "dedupTable\\(\\)"},
      {[] { Mox::makeNew<Plain>()->dedupStateIs(1); }, "!isDeduped\\(\\) || beingDetached\\(\\)"},
      {[&] { other->dedup(member); }, "dedupState\\(\\) == .* dedupTable\\(\\) == this"},
      {[&] { table->lifeTimeNotifieeIs(nullptr); }, "members\\(\\) == 0 && .*lifeTimeNotifiee"}};
  // clang-format on
  for (const auto& [misuse, text] : cases) EXPECT_DEATH(misuse(), Mox::String(": ") + text + "\n");
  Orv::dedupHandleDisableIsDedupedAssert = true;
  lone->assertIsDeduped();
  Orv::dedupHandleDisableIsDedupedAssert = false;
}

}  // namespace
