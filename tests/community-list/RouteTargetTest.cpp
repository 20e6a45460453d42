// Sets of route targets: notifiers that come and go with them, and who hears of it.
#include <mutex>

#include "Lists.h"

namespace Routing::Bgp {
namespace {

using Collection = NotifyingRtExtCommListCollection;
using Notifier = Collection::Notifier;

Octets target(U64 local) { return number(0x0002FDE800000000 + local, 8); }
Octets color(U64 value) { return number(0x030b000000000000 + value, 8); }

/// Keeps the book of what is there, from any thread, and counts what comes and goes. One that joins
/// an agent that runs does as the header's recipe says.
struct Observer final : Collection::NotifieeConst {
  explicit Observer(Collection::PtrConst from, bool joins = false) : collection(std::move(from)) {
    notifierIs(collection);
    if (!joins) return;
    for (const Notifier& notifier : collection->rtExtCommList()) look(notifier);
  }
  ~Observer() override { notifierIs(nullptr); }

  void onRtExtCommList(const Notifier& notifier) override {
    // Also while it goes: the group lets go of it later.
    faults += notifier->rtExtCommListRawPtr()->getLifeTimeNotifier() != notifier;
    look(notifier);
    if (also) also(notifier);
  }
  void onRtExtCommList() override { ++looked; }
  void look(const Notifier& notifier) {
    const std::lock_guard guard(mutex);
    if (collection->rtExtCommListHas(notifier))
      faults += !book.insert(notifier).second, ++came;
    else
      faults += book.erase(notifier) != 1, ++went;
  }

  const Collection::PtrConst collection;
  std::mutex mutex;
  std::set<Notifier> book;
  int came = 0, went = 0, looked = 0;
  std::atomic<int> faults = 0;
  std::function<void(const Notifier&)> also;
};

/// Writes down what it hears, without memory: its letter, then "I" for immediate events, "+" and
/// "-" for a notifier that has come or gone, "*" for the collection as a whole.
struct Listener final : Collection::NotifieeConst {
  Listener(char letter, std::string& log) : letter(letter), log(log) { log.reserve(1000); }
  ~Listener() override { notifierIs(nullptr); }
  void observe(const Collection::PtrConst& from) { notifierIs(collection = from); }
  void onRtExtCommList(const Notifier& n) override { (log += letter) += sign(n); }
  void onRtExtCommList() override { (log += letter) += '*'; }
  void onRtExtCommListImmediate(const Notifier& n) override { ((log += letter) += 'I') += sign(n); }
  void onRtExtCommListImmediate() override {
    (log += letter) += "I*";
    if (letter == 's') notifierIs(nullptr);  // is shy: goes as soon as it is called
  }
  char sign(const Notifier& n) const { return collection->rtExtCommListHas(n) ? '+' : '-'; }

  const char letter;
  std::string& log;
  Collection::PtrConst collection;
};

struct RouteTargets : ListsOf<EightOctets> {
  Collection::Ptr collection() { return table()->notifyingRtExtCommListCollection(); }
  auto notifiee() const { return table()->rtExtCommListLifeTimeNotifiee(); }
};
const RtExtCommClassificationList::PtrConst groupOf(const ExtCommList::PtrConst& list) {
  return Mox::staticCast<const RtExtCommClassificationList>(
      list->classificationList(extCommClassificationRouteTarget));
}

// A list of a group of route targets, and each allocation on its way into the tables failing.
TEST_F(RouteTargets, ComeWholeOrNotAtAllAndGoWithoutMemory) {
  std::string log;
  Listener observer('a', log), late('b', log);
  for (int twice = 0; twice < 2; ++twice) observer.observe(collection());
  Listener shy('s', log);
  shy.observe(collection());
  EXPECT_EQ(log, "aI*a*sI*");
  ExtCommList::PtrConst shared;
  std::size_t count = 0;
  for (; !shared; ++count) {
    log.clear();
    auto list = built({target(1)});
    try {
      const MemoryFor some(count);
      shared = list->dedup(table());
    } catch (const std::bad_alloc&) {
      // The group may have come before there was no memory for the list; then it has gone.
      EXPECT_TRUE(log.empty() || log == "aI+a+aI-a-") << log;
      EXPECT_EQ(collection()->rtExtCommLists() + groups(), 0u);
      EXPECT_EQ(list->totalTransitiveCommunities(), 0u);
    }
  }
  EXPECT_GT(count, 2u);
  EXPECT_EQ(log, "aI+a+");
  EXPECT_EQ(collection()->rtExtCommLists(), 1u);
  late.observe(collection());
  {
    const MemoryFor none(0);
    shared = nullptr;
  }
  EXPECT_EQ(log, "aI+a+bI*b*aI-bI-a-b-") << "immediate events are told to all first";
  late.observe(nullptr);
  interned({target(1)});
  EXPECT_TRUE(log.ends_with("b-aI+a+aI-a-"));
}

TEST_F(RouteTargets, HaveTexts) {
  const auto list = interned({target(1)}), other = interned({target(2)});
  const auto notifiers = collection()->rtExtCommList();
  const Mox::String first = notifiers[0]->toStrep();
  EXPECT_EQ(Mox::Type::read(*groupOf(list), "comm"), groupOf(list)->toStrep());
  EXPECT_EQ(Mox::Type::read(*notifiers[0], "toStrep"), first);
  EXPECT_EQ(Mox::Type::read(*collection(), "rtExtCommList"), row(first, notifiers[1]));
  EXPECT_EQ(row(Notifier(), notifiers[0]), "NULL " + first);
  EXPECT_TRUE(notifiers[0]->hasNotificationActive());
}

TEST_F(RouteTargets, FirstUseAndLastReleaseAreHeardOnce) {
  auto first = interned({target(1), target(2), color(1)});
  Observer observer(collection());
  auto second = interned({target(2), target(1), color(2)});
  EXPECT_EQ(groupOf(first), groupOf(second));
  const auto heard = [&] {
    return row(observer.looked, observer.came, observer.went, collection()->rtExtCommLists());
  };
  EXPECT_EQ(heard(), "1 0 0 1") << "what was there is looked through; one group has one notifier";
  {
    const auto group = groupOf(first);
    EXPECT_EQ(row(group->keep(), group->references()), "2 5");  // and two lists, and this
  }
  auto third = interned({target(3)});
  auto notifier = groupOf(third)->getLifeTimeNotifier();
  EXPECT_EQ(notifier->rtExtCommList(), groupOf(third));
  EXPECT_EQ(notifier->comm(ExtCommContent(0x0002FDE800000003)), value(target(3)));
  EXPECT_TRUE(!notifier->comm(ExtCommContent(0)) && collection()->rtExtCommListHas(notifier));
  third = nullptr;
  EXPECT_EQ(heard(), "1 1 1 1");
  EXPECT_FALSE(notifier->rtExtCommList()) << "nobody gets a group that is gone";
  EXPECT_EQ(notifier->toStrep(),
            "extCommClassificationRouteTarget : <RouteTarget2ByteASN 65000:3 0x0002fde800000003>");
  notifier = nullptr;
  first = nullptr;
  EXPECT_EQ(heard(), "1 1 1 1") << "the other list still uses the group";
  second = nullptr;
  EXPECT_EQ(heard(), "1 1 2 0");
}

TEST_F(RouteTargets, CollectionChangesAreHeardAndRefused) {
  const auto list = interned({target(1)});
  const auto notifier = collection()->rtExtCommList().front();
  const auto other = NotifyingRtExtCommListCollectionIs();
  Observer observer(other);
  for (int twice = 0; twice < 2; ++twice) other->rtExtCommListIs(notifier);
  other->rtExtCommListDelAll();
  other->rtExtCommListDel(notifier);
  EXPECT_EQ(row(observer.came, observer.went), "1 1");
  EXPECT_THROW(rtExtCommListLifeTimeNotifieeFactory(nullptr), Mox::RangeException);
  EXPECT_EQ(raised([&] { other->rtExtCommListIs(nullptr); }),
            nullRefused("NotifyingRtExtCommListCollection::rtExtCommList"));
  const Mox::Ptr<Orv::DedupHandle> known(
      const_cast<RtExtCommClassificationList*>(groupOf(list).get()));
  const auto unknown =
      RtExtCommClassificationList::RtExtCommClassificationListIs(extCommClassificationRouteTarget);
  EXPECT_DEATH(notifiee()->handleInsert(known),
               ": __null == rtExtCommList->lifeTimeNotifier\\(\\)\n");
  EXPECT_DEATH(notifiee()->handleRemove(unknown.get()), ": __null != lifeTimeNotifier\n");
  using Follower = Orv::DedupHandleLifeTimeNotifier;
  EXPECT_DEATH(Mox::makeNew<Follower>(known), "__null == dedupTable\\(\\)");
  EXPECT_DEATH(Mox::makeNew<Follower>(unknown), ": haveLifeTimeNotifier\\(\\)");
}

// The table ends the groups of its own notifiee, though the collection was changed, and no others;
// observers hear of it. Groups and lists may outlive the table.
TEST_F(RouteTargets, TableTakesItsNotifiersAlong) {
  const auto other = extCommListDedupTableFactory();
  auto list = interned({target(1)});
  auto alone = groupOf(interned({target(2)}));
  auto foreign = built({target(3)})->dedup(other);
  const auto collection = this->collection();
  const auto kept = groupOf(foreign)->getLifeTimeNotifier();
  collection->rtExtCommListDel(groupOf(list)->getLifeTimeNotifier());
  collection->rtExtCommListIs(kept);
  {
    Observer observer(collection);
    tables.reset();
    EXPECT_EQ(observer.went, 1);
    EXPECT_EQ(observer.faults, 1) << "it came before the observer was there";
  }
  EXPECT_EQ(collection->rtExtCommList(), std::vector<Notifier>{kept});
  EXPECT_EQ(row(alone->comms(), list->comms(), alone->haveLifeTimeNotifier(),
                alone->referencesIncIfAlive() && alone->referencesDec() == 1),
            "1 1 1 1");
}

TEST_F(RouteTargets, DroppedPartsLiveOnWithTheirOtherHolders) {
  const auto collection = this->collection();
  EXPECT_EQ(table()->notifyingRtExtCommListCollectionIs(), collection) << "a live one stays";
  table()->notifyingRtExtCommListCollectionDel();
  table()->rtExtCommListLifeTimeNotifieeDel();
  EXPECT_FALSE(this->collection() || notifiee());
  const auto list = interned({target(1)});
  EXPECT_EQ(collection->rtExtCommLists(), 1u);
}

TEST_F(RouteTargets, TracesNameNotifieeGroupAndNotifier) {
  EXPECT_EQ(traced(8, [&] { interned({target(1)}); }), "");
  const auto lines = traced(9, [&] {
    interned({target(1)});
    notifiee()->handleNotificationStop(table()->rtExtCommClassificationListDedupTable());
  });
  const Mox::String group = groupOf(interned({target(1)}))->toStrep(),
                    both = " 0x[^ ]* handle: " + group + " rtExtCommListLifeTimeNotifier: " + group;
  EXPECT_THAT(lines, testing::MatchesRegex(
                         "9[^ ]*:handleInsert" + both + "\n9[^ ]*:handleRemove" + both +
                         "\n9[^ ]*:handleNotificationStop 0x[^ ]* dedupTable: 0x[^ ]*\n"));
}

// Threads intern, hand over and let go of few sets of route targets as fast as they can, and walk
// the collection; others join as observers. One observer interns the very set that it hears of.
TEST_F(RouteTargets, HoldUnderThreads) {
  const auto set = [&](U32 n) { return interned({target(n), target(n + 4), color(n % 2)}); };
  const auto numberOf = [](const ExtCommClassificationList& group) {
    return U32(group.commVector()[0]->getContent().value() & 0xFF);
  };
  const auto held = set(100);
  Observer observer(collection());
  observer.also = [&](const Notifier& notifier) {
    static thread_local bool inside = false;
    if (std::exchange(inside, true)) return;
    const auto* const group = notifier->rtExtCommListRawPtr();
    auto same = set(numberOf(*group));
    observer.faults += (groupOf(same).get() == group) == group->beingDetached();
    same = nullptr;  // its end is heard inside, too
    inside = false;
  };
  const auto walk = [&](U32 thread) {
    for (const Notifier& notifier : collection()->rtExtCommList()) {
      auto* const group = notifier->rtExtCommListRawPtr();  // it is valid, though it be dying
      group->bitSet(thread);
      ASSERT_TRUE(group->isBitSet(thread) && !notifier->toStrep().empty());
      group->bitReset(thread);
      const auto alive = notifier->rtExtCommList();
      ASSERT_TRUE(!alive || groupOf(set(numberOf(*alive))) == alive) << "what lives is found";
    }
  };
  std::mutex mutex;
  std::array<ExtCommList::PtrConst, 4> box;  // in which threads leave sets for each other
  const auto work = [&](U32 thread) {
    std::mt19937 random(thread);
    std::array<ExtCommList::PtrConst, 2> mine;
    for (U32 round = 0; round < 15000; ++round) {
      const U32 n = random() % 4, step = random() % 8;
      auto& list = mine[round % 2] = nullptr;
      if (step < 4) list = set(n);
      if (step % 3 == 0) {
        const std::lock_guard guard(mutex);
        std::swap(list, box[n]);
      }
      if (step == 7) walk(thread);
      if (!list) continue;
      const auto group = groupOf(list);
      ASSERT_TRUE(group->isDeduped() && !group->beingDetached()) << "what is held is not dying";
      ASSERT_EQ(list, set(n)) << "what is held is what is found";
      ASSERT_EQ(list->comm(ExtCommContent(0x0002FDE800000000 + n)), value(target(n)));
    }
  };
  std::atomic<int> running = 4;
  std::vector<std::jthread> threads;
  for (U32 thread = 0; thread < 4; ++thread)
    threads.emplace_back([&, thread] { work(thread), --running; });
  std::vector<std::unique_ptr<Observer>> joiners;
  for (; running; collection()->dumpState(Mox::makeNew<Orv::DumpContext>(), 0)) {
    const Observer other(collection());
    if (joiners.size() < 20) joiners.push_back(std::make_unique<Observer>(collection(), true));
  }
  threads.clear();
  box = {};
  const Notifier left = groupOf(held)->getLifeTimeNotifier();
  EXPECT_EQ(collection()->rtExtCommList(), std::vector{left}) << "the one still held";
  for (const auto& joiner : joiners) EXPECT_EQ(joiner->book, std::set{left});
  EXPECT_EQ(row(observer.faults, observer.came, observer.book.size()), row(0, observer.went, 0));
  EXPECT_GT(observer.came, 1500) << "sets lived and died often";
}

}  // namespace
}  // namespace Routing::Bgp
