#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <random>
#include <sstream>
#include <thread>

#include "InternedThing.h"
#include "Mox/Exception.h"

namespace interning {
namespace {

// The least that a handle can be.
struct Plain final : Orv::DedupHandle {
  U32 hash() const override { return 0; }
  bool compare(const Orv::DedupHandle* other) const override { return other == this; }
};

TEST(Interning, EqualContentIsOneObjectForAsLongAsItIsHeld) {
  for (const bool threadSafe : {true, false}) {
    const Table table = newTable(threadSafe);
    Thing::Ptr a = intern(table, 7), c = intern(table, 8);
    const Thing::Ptr b = intern(table, 7), given = Mox::makeNew<Thing>(7);
    EXPECT_TRUE(a == b && a != c);
    EXPECT_TRUE(a->isDeduped() && a->dedupTable() == table.get());
    EXPECT_EQ(a->references(), 3u);  // a, b, the table
    EXPECT_EQ(table->dedup(given), a) << "the one that was there before";
    EXPECT_FALSE(given->isDeduped());
    EXPECT_EQ(table->dedup(a), a) << "a member is its own equal";
    EXPECT_EQ(lookup(table, 9), nullptr);
    const U64 content = 7;
    EXPECT_EQ(table->lookupByContent({&content, sizeof content}, 6), nullptr) << "another hash";
    a = c = nullptr;
    EXPECT_EQ(table->members(), 1u);
  }
  const Thing::Ptr lone = Mox::makeNew<Thing>(2);
  EXPECT_TRUE(lone->referencesInc() == 2 && lone->referencesDec() == 1);
  EXPECT_EQ(Thing::alive, 1) << "what would be keep is left, but it is in no table";
}

// A dying member is one whose count has come down to keep and whose removal has not begun: plain
// counting of the base leaves it in just this state.
TEST(Interning, LookupPassesByADyingMember) {
  const Table table = newTable();
  Thing* const dying = intern(table, 5).release();
  dying->Mox::PtrInterface::referencesDec();
  ASSERT_EQ(dying->references(), dying->keep());
  EXPECT_FALSE(dying->referencesIncIfAlive());
  EXPECT_EQ(lookup(table, 5), nullptr);
  const Thing::Ptr successor = intern(table, 5);
  EXPECT_NE(successor.get(), dying);
  EXPECT_EQ(table->members(), 2u);
  dying->doRemoveFromDedupTable();  // what the last release does next
  EXPECT_EQ(table->members(), 1u);
  EXPECT_EQ(lookup(table, 5), successor) << "removal is by identity, not by content";
  EXPECT_EQ(Thing::alive, 1);
}

// Taken out by hand while others hold it, a member behaves as one that a notifier still knows.
TEST(Interning, AMemberTakenOutByHandEndsWithItsLastHolder) {
  const Table table = newTable();
  Thing::Ptr a = intern(table, 5), b = a;
  a->userDataIs(6);
  a->doRemoveFromDedupTable();
  EXPECT_TRUE(a->beingDetached() && !a->dedupTable() && a->userData() == 6);
  EXPECT_EQ(a->references(), 2u);
  EXPECT_FALSE(a->referencesIncIfAlive());
  EXPECT_EQ(table->members(), 0u);
  EXPECT_NE(intern(table, 5), a);
  a = nullptr;
  EXPECT_EQ(Thing::alive, 1);
  b = nullptr;
  EXPECT_EQ(Thing::alive, 0);
}

TEST(Interning, StateWordKeepsItsFieldsApart) {
  const Thing::Ptr thing = Mox::makeNew<Thing>(1);
  thing->userDataIs(0xFFFFFFFF);
  EXPECT_FALSE(thing->beingDetached() || thing->haveLifeTimeNotifier() || thing->dedupState());
  thing->userDataBitsIs(0xF0, 0x20);
  thing->dedupStateIs(3);
  EXPECT_TRUE(!thing->isDeduped() && thing->isBitSet(30) && thing->isBitSet(31));
  thing->haveLifeTimeNotifierIs(true);
  EXPECT_EQ(thing->keep(), 2u);
  EXPECT_EQ(thing->references(), 1u) << "bit 29 of the state word is no reference";
  EXPECT_EQ(thing->userData(), 0x0FFFFF2Fu);
  EXPECT_EQ(Mox::Type::read(*thing, "haveLifeTimeNotifier"), "True");
  EXPECT_THROW(Mox::Type::read(*thing, "setBitsAtomic"), Mox::RangeException);
}

TEST(Interning, SwitchedOffCountingReportsOneAndChangesNothing) {
  const Table table = newTable();
  const Thing::Ptr thing = intern(table, 1);
  Orv::dedupHandleDisableSmartPointerOperations = true;
  const bool good =
      thing->referencesInc() == 1 && thing->referencesDec() == 1 && lookup(table, 1) == thing;
  Orv::dedupHandleDisableSmartPointerOperations = false;
  EXPECT_TRUE(good);
  EXPECT_EQ(thing->references(), 2u);
}

TEST(Interning, ATableThatDiesFirstLeavesMembersToTheirHolders) {
  Table table = newTable();
  const Thing::Ptr held = intern(table, 1);
  table = nullptr;
  EXPECT_TRUE(held->dedupState() == 3 && !held->dedupTable());
  EXPECT_TRUE(held->referencesIncIfAlive()) << "no table holds it, so every count is somebody's";
  EXPECT_EQ(held->referencesDec(), 1u);
  EXPECT_EQ(Thing::Ptr(held)->content(), 1u);
}

// Against a plain map, for every way of placing: by content, by hash, and with all hashes equal.
TEST(Interning, TableAgreesWithAMap) {
  for (const U32 hashes : {1u, 3u, ~0u}) {
    for (const bool placedByContent : {true, false}) {
      Thing::hashes = hashes;
      const Table table =
          placedByContent ? newTable(false)
                          : Orv::DedupHashTableUnorderedSet::DedupHashTableUnorderedSetIs(false);
      std::map<U64, Thing::Ptr> model;
      std::mt19937 random(1);
      const U64 contents = hashes == 1 ? 300 : 3000;
      for (int step = 0; step < 20000; ++step) {
        const U64 content = random() % contents;
        const bool growing = step / 5000 % 2 == 0;
        if ((random() % 3 != 0) == growing) {
          const Thing::Ptr thing = intern(table, content);
          ASSERT_EQ(thing->content(), content);
          ASSERT_EQ(model.emplace(content, thing).first->second, thing);
        } else {
          model.erase(content);
        }
        ASSERT_EQ(table->members(), model.size());
      }
      for (U64 content = 0; content < contents; ++content)
        ASSERT_EQ(lookup(table, content), model.contains(content) ? model[content] : nullptr);
      const U64 large = table->octets();
      model.clear();
      EXPECT_EQ(table->members(), 0u);
      EXPECT_LT(table->octets(), large) << "memory is given back";
    }
  }
  EXPECT_EQ(Thing::alive, 0);
}

TEST(Interning, MemoryIsCountedAcrossThreadsThatComeAndGo) {
  const auto counted = [] { return Mox::allocationCount("test::Thing"); };
  for (int round = 0; round < 3; ++round) {
    std::vector<Thing::Ptr> kept(8);
    std::vector<std::thread> threads;
    for (Thing::Ptr& place : kept)
      threads.emplace_back([&] {
        place = Mox::makeNew<Thing>(1);
        Mox::makeNew<Thing>(2);
      });
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(counted().objects, 8u);
    EXPECT_EQ(counted().octets, 8 * sizeof(Thing));
    std::thread([&] { kept.clear(); }).join();  // freed by another than made it
    EXPECT_EQ(counted().objects + counted().octets, 0u);
  }
}

TEST(Interning, TablesDumpAndPointersPrint) {
  const Table table = newTable();
  const Thing::Ptr a = intern(table, 1), b = intern(table, 2);
  const auto context = Mox::makeNew<Orv::DumpContext>();
  context->child(table.get(), 0);
  context->child(table.get(), 3);
  context->child(static_cast<Orv::DedupHashTable*>(nullptr), 1);
  EXPECT_EQ(context->text(), "members: 2\n   members: 2\n NULL\n");
  std::ostringstream out;
  out << std::hex << Table() << table;
  EXPECT_EQ(out.str().substr(0, 6), "NULL0x");
}

TEST(InterningDeathTest, MisuseEndsTheProcess) {
  const Table table = newTable(), other = newTable();
  const Thing::Ptr member = intern(table, 1), lone = Mox::makeNew<Thing>(2);
  const std::pair<std::function<void()>, const char*> cases[] = {
      {[&] { member->beingDetachedIs(true), member->referencesInc(); }, "!beingDetached\\(\\)"},
      {[&] { lone->assertIsDeduped(); }, "isDeduped\\(\\)"},
      {[&] { table->dedup(nullptr); }, "dedupHandle"},
      {[&] { table->dedup(nullptr, 0); }, "dedupHandle"},
      {[&] { member->haveLifeTimeNotifierIs(true), member->doRemoveFromDedupTable(); },
       "__null != lifeTimeNotifiee"},
      {[&] { lone->doRemoveFromDedupTable(); }, "dedupTable\\(\\)"},
      {[] { Mox::makeNew<Plain>()->dedupStateIs(1); }, "!isDeduped\\(\\) || beingDetached\\(\\)"},
      {[&] { other->dedup(member); }, "dedupState\\(\\) == .* dedupTable\\(\\) == this"},
      {[&] { table->lifeTimeNotifieeIs(nullptr); }, "members\\(\\) == 0 && .*lifeTimeNotifiee"}};
  for (const auto& [misuse, text] : cases) EXPECT_DEATH(misuse(), Mox::String(": ") + text + "\n");
  Orv::dedupHandleDisableIsDedupedAssert = true;
  lone->assertIsDeduped();
  Orv::dedupHandleDisableIsDedupedAssert = false;
}

}  // namespace
}  // namespace interning
