#include <gtest/gtest.h>

#include <functional>
#include <iomanip>
#include <map>
#include <random>
#include <sstream>
#include <thread>

#include "InternedThing.h"
#include "Mox/Exception.h"

namespace interning {
namespace {

TEST(Interning, EqualContentIsOneObjectForAsLongAsItIsHeld) {
  for (const bool threadSafe : {true, false}) {
    const Table table = newTable(threadSafe);
    Thing::Ptr a = intern(table, 7);
    const Thing::Ptr b = intern(table, 7), c = intern(table, 8);
    EXPECT_EQ(a, b);
    EXPECT_NE(a, c);
    EXPECT_TRUE(a->isDeduped());
    EXPECT_EQ(a->dedupTable(), table.get());
    EXPECT_EQ(a->references(), 3u);  // a, b, the table
    const Thing::Ptr given = Mox::makeNew<Thing>(7);
    EXPECT_EQ(table->dedup(given), a) << "the one that was there before";
    EXPECT_FALSE(given->isDeduped());
    EXPECT_EQ(table->dedup(a), a) << "a member is its own equal";
    EXPECT_EQ(lookup(table, 9), nullptr);
    const U64 content = 7;
    EXPECT_EQ(table->lookupByContent({&content, sizeof content}, 6), nullptr) << "another hash";
    EXPECT_EQ(table->members(), 2u);
  }
  EXPECT_EQ(Thing::alive, 0);
}

TEST(Interning, ReleaseToKeepEndsMembersOnly) {
  const Table table = newTable();
  Thing::Ptr a = intern(table, 1), b = a;
  a = nullptr;
  EXPECT_EQ(table->members(), 1u);
  b = nullptr;
  EXPECT_EQ(table->members(), 0u);
  EXPECT_EQ(Thing::alive, 0);
  const Thing::Ptr lone = Mox::makeNew<Thing>(2);
  EXPECT_EQ(lone->referencesInc(), 2u);
  EXPECT_EQ(lone->referencesDec(), 1u);
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
  const U32 counts[] = {thing->referencesInc(), thing->referencesDec()};
  const bool found = lookup(table, 1) == thing;
  Orv::dedupHandleDisableSmartPointerOperations = false;
  EXPECT_TRUE(counts[0] == 1 && counts[1] == 1 && found);
  EXPECT_EQ(thing->references(), 2u);
}

TEST(Interning, ATableThatDiesFirstLeavesMembersToTheirHolders) {
  Table table = newTable();
  Thing::Ptr held = intern(table, 1);
  table = nullptr;
  EXPECT_EQ(held->dedupState(), 3u);
  EXPECT_EQ(held->dedupTable(), nullptr);
  EXPECT_TRUE(held->referencesIncIfAlive()) << "no table holds it, so every count is somebody's";
  EXPECT_EQ(held->referencesDec(), 1u);
  EXPECT_EQ(Thing::Ptr(held)->content(), 1u);
}

// Against a plain map, for every way of placing: by content, by hash, and with all hashes equal.
TEST(Interning, TableAgreesWithAMap) {
  for (const U32 hashes : {~0u, 3u, 1u}) {
    for (const bool placedByContent : {true, false}) {
      const Table table =
          placedByContent ? newTable(false)
                          : Orv::DedupHashTableUnorderedSet::DedupHashTableUnorderedSetIs(false);
      std::map<U64, Thing::Ptr> model;
      std::mt19937 random(1);
      const U64 contents = hashes == 1 ? 300 : 3000;
      for (int step = 0; step < 20000; ++step) {
        const bool growing = (step / 5000) % 2 == 0;
        const U64 content = random() % contents;
        if (random() % 3 != 0 ? growing : !growing) {
          const Thing::Ptr thing = intern(table, content, hashes);
          ASSERT_EQ(thing->content(), content);
          const auto [at, isNew] = model.emplace(content, thing);
          ASSERT_EQ(at->second, thing);
        } else {
          model.erase(content);
        }
        ASSERT_EQ(table->members(), model.size());
      }
      for (U64 content = 0; content < contents; ++content) {
        const auto at = model.find(content);
        ASSERT_EQ(lookup(table, content, hashes), at == model.end() ? nullptr : at->second);
      }
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
  context->child(table.get(), 3);
  context->child(static_cast<Orv::DedupHashTable*>(nullptr), 1);
  EXPECT_EQ(context->text(), "   members: 2\n NULL\n");
  std::ostringstream out;
  out << std::setfill('*') << std::setw(9) << Table() << table;
  EXPECT_EQ(out.str().substr(0, 6), "NULL0x") << "whatever the stream's width";
}

TEST(InterningDeathTest, MisuseEndsTheProcess) {
  const Table table = newTable(), other = newTable();
  const Thing::Ptr member = intern(table, 1), dying = intern(table, 3);
  const Thing::Ptr lone = Mox::makeNew<Thing>(2);
  const std::pair<std::function<void()>, const char*> cases[] = {
      {[&] { dying->beingDetachedIs(true), dying->referencesInc(); }, "!beingDetached\\(\\)"},
      {[&] { lone->assertIsDeduped(); }, "isDeduped\\(\\)"},
      {[&] { table->dedup(nullptr); }, "dedupHandle"},
      {[&] { other->dedup(member); }, "dedupState\\(\\) == .* dedupTable\\(\\) == this"},
      {[&] { table->lifeTimeNotifieeIs(nullptr); }, "members\\(\\) == 0 && .*lifeTimeNotifiee"}};
  for (const auto& [misuse, text] : cases) EXPECT_DEATH(misuse(), Mox::String(": ") + text + "\n");
  Orv::dedupHandleDisableIsDedupedAssert = true;
  lone->assertIsDeduped();
  Orv::dedupHandleDisableIsDedupedAssert = false;
}

// Observes a table as the library's own notifiee does: one notifier per member.
class Observer final : public Orv::DedupHashTableLifeTimeNotifiee {
 public:
  void handleInsert(const Mox::Ptr<Orv::DedupHandle>& member) const override {
    notifiers_[member.get()] = Mox::makeNew<Orv::DedupHandleLifeTimeNotifier>(member);
    log_ += "+" + std::to_string(static_cast<Thing&>(*member).content());
  }
  void handleRemove(Orv::DedupHandle* member) const override {
    log_ += "-" + std::to_string(static_cast<Thing&>(*member).content());
    if (const Table* const again = std::exchange(reintern, nullptr)) {
      EXPECT_NE(intern(*again, 9).get(), member);
    }
    notifiers_.erase(member);
  }
  void handleNotificationStop(const Mox::Ptr<const Orv::DedupHashTable>& table) const override {
    EXPECT_EQ(table->members(), notifiers_.size());
    log_ += "!";
    notifiers_.clear();
  }
  mutable const Table* reintern = nullptr;  // for one removal
  mutable std::map<Orv::DedupHandle*, Mox::Ptr<Orv::DedupHandleLifeTimeNotifier>> notifiers_;
  mutable Mox::String log_;
};

TEST(LifeTimeNotification, EveryMemberIsHeardOnceInAndOnceOut) {
  const auto observer = Mox::makeNew<Observer>();
  {
    Table table = newTable();
    table->lifeTimeNotifieeIs(observer);
    Thing::Ptr one = intern(table, 1), again = intern(table, 1), two = intern(table, 2);
    EXPECT_EQ(one->keep(), 2u);
    EXPECT_EQ(one->references(), 4u);  // two pointers, table, notifier
    EXPECT_EQ(observer->notifiers_.at(one.get())->getDedupedObjectRawPtr(), one.get());
    one = nullptr;
    EXPECT_EQ(observer->log_, "+1+2");
    again = nullptr;
    EXPECT_EQ(observer->log_, "+1+2-1");

    observer->reintern = &table;  // a callback may intern and release
    intern(table, 9);
    EXPECT_EQ(observer->log_, "+1+2-1+9-9+9-9");

    // A notifier that an observer keeps past the removal keeps the memory valid, no more.
    Thing::Ptr three = intern(table, 3);
    const auto kept = observer->notifiers_.at(three.get());
    three = nullptr;
    EXPECT_EQ(static_cast<Thing*>(kept->getDedupedObjectRawPtr())->content(), 3u);
    EXPECT_FALSE(kept->getDedupedObjectRawPtr()->referencesIncIfAlive());
    EXPECT_EQ(lookup(table, 3), nullptr);

    table = nullptr;  // while two is held
    EXPECT_EQ(observer->log_, "+1+2-1+9-9+9-9+3-3!");
    EXPECT_EQ(two->references(), 1u);
  }
  EXPECT_EQ(Thing::alive, 0);
}

}  // namespace
}  // namespace interning
