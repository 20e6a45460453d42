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
  const Mox::String first = notifiers[0]->toStrep(), both = first + ' ' + notifiers[1]->toStrep();
  EXPECT_EQ(Mox::Type::read(*groupOf(list), "comm"), groupOf(list)->toStrep());
  EXPECT_EQ(Mox::Type::read(*notifiers[0], "toStrep"), first);
  EXPECT_EQ(Mox::Type::read(*collection(), "rtExtCommList"), both);
  EXPECT_TRUE(notifiers[0]->hasNotificationActive());
  std::ostringstream out;
  out << Notifier() << ' ' << notifiers[0];
  EXPECT_EQ(out.str(), "NULL " + first);
}

TEST_F(RouteTargets, FirstUseAndLastReleaseAreHeardOnce) {
  auto first = interned({target(1), target(2), color(1)});
  Observer observer(collection());
  EXPECT_EQ(observer.looked, 1) << "what is there already is looked through";
  auto second = interned({target(2), target(1), color(2)});
  EXPECT_EQ(groupOf(first), groupOf(second));
  EXPECT_EQ(collection()->rtExtCommLists(), 1u) << "two lists, one group, one notifier";
  EXPECT_EQ(observer.came, 0);
  auto third = interned({target(3)});
  auto notifier = groupOf(third)->getLifeTimeNotifier();
  EXPECT_EQ(notifier->rtExtCommList(), groupOf(third));
  EXPECT_EQ(notifier->comm(ExtCommContent(0x0002FDE800000003)), value(target(3)));
  EXPECT_FALSE(notifier->comm(ExtCommContent(0)));
  EXPECT_TRUE(collection()->rtExtCommListHas(notifier));

  third = nullptr;
  EXPECT_EQ(observer.came + observer.went, 2);
  EXPECT_FALSE(notifier->rtExtCommList()) << "nobody gets a group that is gone";
  EXPECT_EQ(notifier->toStrep(),
            "extCommClassificationRouteTarget : <RouteTarget2ByteASN 65000:3 0x0002fde800000003>");
  notifier = nullptr;
  first = nullptr;
  EXPECT_EQ(observer.went, 1) << "the other list still uses the group";
  second = nullptr;
  EXPECT_EQ(observer.went, 2);
  EXPECT_EQ(collection()->rtExtCommLists(), 0u);
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
  EXPECT_EQ(row(alone->comms(), list->comms()), "1 1");
}

TEST_F(RouteTargets, DroppedPartsLiveOnWithTheirOtherHolders) {
  auto& table = *this->table();
  const auto collection = this->collection();
  EXPECT_EQ(table.notifyingRtExtCommListCollectionIs(), collection) << "a live one stays";
  table.notifyingRtExtCommListCollectionDel();
  table.rtExtCommListLifeTimeNotifieeDel();
  EXPECT_FALSE(table.notifyingRtExtCommListCollection() || table.rtExtCommListLifeTimeNotifiee());
  const auto list = interned({target(1)});
  EXPECT_EQ(collection->rtExtCommLists(), 1u);
}

TEST_F(RouteTargets, TracesNameNotifieeGroupAndNotifier) {
  EXPECT_EQ(traced(8, [&] { interned({target(1)}); }), "");
  const auto lines = traced(9, [&] {
    interned({target(1)});
    notifiee()->handleNotificationStop(table()->rtExtCommClassificationListDedupTable());
  });
  const Mox::String text =
      "extCommClassificationRouteTarget : <RouteTarget2ByteASN 65000:1 0x0002fde800000001>";
  const Mox::String both = " 0x[^ ]* handle: " + text + " rtExtCommListLifeTimeNotifier: " + text;
  EXPECT_THAT(lines, testing::MatchesRegex(
                         "9[^ ]*:handleInsert" + both + "\n9[^ ]*:handleRemove" + both +
                         "\n9[^ ]*:handleNotificationStop 0x[^ ]* dedupTable: 0x[^ ]*\n"));
}

TEST_F(RouteTargets, ObserversMayInternReleaseComeAndGoWhileTheyAreCalled) {
  Observer observer(collection());
  std::optional<Observer> another;
  observer.also = [&](const Notifier& notifier) {
    if (notifier->comm(ExtCommContent(0x0002FDE800000001))) {
      interned({target(2)});  // heard inside, coming and going
      another.has_value() ? another.reset() : void(another.emplace(collection()));
    }
  };
  interned({target(1)});
  EXPECT_EQ(row(observer.came, observer.went, observer.faults), "3 3 0");
  EXPECT_FALSE(another);
}

// Sets of few route targets come and go on several threads; the observer itself interns; others
// walk the collection, come and go.
TEST_F(RouteTargets, HoldUnderThreads) {
  std::atomic<int> running = 4;
  const auto held = interned({target(100)});
  Observer observer(collection());
  observer.also = [&](const Notifier&) { interned({target(100), color(7)}); };
  std::atomic<int> walked = 0;
  std::vector<std::unique_ptr<Observer>> joiners;
  std::vector<std::thread> threads;
  for (U32 seed = 0; seed < 4; ++seed)
    threads.emplace_back([&, seed] {
      std::mt19937 random(seed);
      std::array<ExtCommList::PtrConst, 3> mine;
      for (int round = 0; round < 2000; ++round) {
        const auto list = mine[random() % 3] =
            interned({target(random() % 3), target(random() % 3), color(random() % 2)});
        EXPECT_TRUE(groupOf(list));
      }
      --running;
    });
  threads.emplace_back([&] {
    do {
      const Observer other(collection());
      if (joiners.size() < 20) joiners.push_back(std::make_unique<Observer>(collection(), true));
      for (const Notifier& notifier : collection()->rtExtCommList()) {
        if (const auto group = notifier->rtExtCommList()) walked += int(group->comms());
        walked += int(notifier->toStrep().size() > 0);
      }
      const auto context = Mox::makeNew<Orv::DumpContext>();
      collection()->dumpState(context, 0);
    } while (running);
  });
  for (std::thread& thread : threads) thread.join();
  const Notifier left = groupOf(held)->getLifeTimeNotifier();
  EXPECT_EQ(collection()->rtExtCommList(), std::vector{left}) << "the one still held";
  for (const auto& joiner : joiners) EXPECT_EQ(joiner->book, std::set{left});
  EXPECT_GT(walked, 0);
  EXPECT_EQ(row(observer.faults, observer.came, observer.book.size()), row(0, observer.went, 0));
}

}  // namespace
}  // namespace Routing::Bgp
