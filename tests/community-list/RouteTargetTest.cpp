#include <atomic>
#include <mutex>
#include <thread>

#include "ExtCommFamilies.h"
#include "Mox/Trace.h"

namespace Routing::Bgp {
namespace {

using Collection = NotifyingRtExtCommListCollection;
using Notifier = Collection::Notifier;

Octets target(U64 local) { return number(0x0002FDE800000000 + local, 8); }
Octets color(U64 value) { return number(0x030b000000000000 + value, 8); }

/// Keeps a book of what comes and goes, from any thread.
class Observer final : public Collection::NotifieeConst {
 public:
  explicit Observer(const Collection::PtrConst& collection) : collection_(collection) {
    notifierIs(collection);
  }
  ~Observer() override { notifierIs(nullptr); }

  void onRtExtCommList(const Notifier& notifier) override {
    {
      const std::lock_guard guard(mutex_);
      if (collection_->rtExtCommListHas(notifier))
        faults += !alive_.insert(notifier.get()).second, ++came;
      else
        faults += alive_.erase(notifier.get()) != 1, ++went;
    }
    if (also) also(notifier);
  }
  void onRtExtCommList() override { ++looked; }

  std::size_t alive() const { return alive_.size(); }
  int came = 0, went = 0, faults = 0, looked = 0;
  std::function<void(const Notifier&)> also;

 private:
  const Collection::PtrConst collection_;
  std::mutex mutex_;
  std::set<const RtExtCommListLifeTimeNotifier*> alive_;
};

class RouteTargets : public ExtCommLists<EightOctets> {
 protected:
  Collection::Ptr collection() { return family().table->notifyingRtExtCommListCollection(); }
};

TEST_F(RouteTargets, FirstUseAndLastReleaseAreHeardOnce) {
  auto first = interned({target(1), target(2), color(1)});
  Observer observer(collection());
  EXPECT_EQ(observer.looked, 1) << "what is there already is looked through";
  const auto rtGroup = [](const auto& list) {
    return Mox::Ptr<const RtExtCommClassificationList>(
        static_cast<const RtExtCommClassificationList*>(
            list->classificationList(extCommClassificationRouteTarget).get()));
  };
  auto second = interned({target(2), target(1), color(2)});
  EXPECT_EQ(rtGroup(first), rtGroup(second));
  EXPECT_EQ(collection()->rtExtCommLists(), 1u) << "two lists, one group, one notifier";
  EXPECT_EQ(observer.came, 0);
  auto third = interned({target(3)});
  auto notifier = rtGroup(third)->getLifeTimeNotifier();
  EXPECT_EQ(notifier->rtExtCommList(), rtGroup(third));
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
  EXPECT_EQ(observer.came, 1);
  EXPECT_EQ(observer.went, 1);
  try {
    other->rtExtCommListIs(nullptr);
    FAIL();
  } catch (const Mox::RangeException& refusal) {
    EXPECT_STREQ(refusal.what(),
                 "null _rtExtCommList parameter to mutator for "
                 "Routing::Bgp::NotifyingRtExtCommListCollection::rtExtCommList not allowed\"");
  }
}

// Whoever holds a group may outlive the table; observers hear of its end with the table's.
TEST_F(RouteTargets, TableTakesItsNotifiersAlong) {
  auto list = interned({target(1)});
  auto alone = interned({target(2)})->classificationList(extCommClassificationRouteTarget);
  const auto collection = this->collection();
  {
    Observer observer(collection);
    family().table = nullptr;
    EXPECT_EQ(observer.went, 2);
    EXPECT_EQ(observer.faults, 2) << "they came before it was there";
  }
  EXPECT_EQ(collection->rtExtCommLists(), 0u);
  EXPECT_EQ(alone->comms(), 1u);
  list = nullptr;
  alone = nullptr;
  family() = EightOctets();
}

// Whatever others do to the collection: the table ends what its own notifiee began, and no more.
TEST_F(RouteTargets, TableEndsItsOwnGroupsOnly) {
  const auto other = extCommListDedupTableFactory();
  auto list = interned({target(1)});
  const auto foreign = built({target(2)})->dedup(other);
  collection()->rtExtCommListDelAll();
  collection()->rtExtCommListIs(other->notifyingRtExtCommListCollection()->rtExtCommList()[0]);
  family().table = nullptr;
  list = nullptr;
  family() = EightOctets();
}

TEST_F(RouteTargets, NotifieeEndsTheProcessOnGroupsThatItDoesNotKnow) {
  const auto& notifiee = family().table->rtExtCommListLifeTimeNotifiee();
  const auto list = interned({target(1)});
  const Mox::Ptr<Orv::DedupHandle> known(const_cast<ExtCommClassificationList*>(
      list->classificationList(extCommClassificationRouteTarget).get()));
  const auto unknown =
      RtExtCommClassificationList::RtExtCommClassificationListIs(extCommClassificationRouteTarget);
  EXPECT_DEATH(notifiee->handleInsert(known),
               ": __null == rtExtCommList->lifeTimeNotifier\\(\\)\n");
  EXPECT_DEATH(notifiee->handleRemove(unknown.get()), ": __null != lifeTimeNotifier\n");
}

TEST_F(RouteTargets, DroppedPartsLiveOnWithTheirOtherHolders) {
  auto& table = *family().table;
  const auto collection = this->collection();
  EXPECT_EQ(table.notifyingRtExtCommListCollectionIs(), collection) << "a live one stays";
  table.notifyingRtExtCommListCollectionDel();
  table.rtExtCommListLifeTimeNotifieeDel();
  EXPECT_FALSE(table.notifyingRtExtCommListCollection() || table.rtExtCommListLifeTimeNotifiee());
  const auto list = interned({target(1)});
  EXPECT_EQ(collection->rtExtCommLists(), 1u);
}

TEST_F(RouteTargets, TracesNameNotifieeGroupAndNotifier) {
  static std::vector<Mox::String> traced;
  traced.clear();
  Mox::traceSinkIs([](U32, std::string_view line) { traced.emplace_back(line); });
  Mox::traceLevel = 9;
  interned({target(1)});
  Mox::traceLevel = 0;
  Mox::traceSinkIs(nullptr);
  ASSERT_EQ(traced.size(), 2u);
  const Mox::String text =
      "extCommClassificationRouteTarget : <RouteTarget2ByteASN 65000:1 0x0002fde800000001>";
  for (std::size_t i = 0; i < 2; ++i) {
    EXPECT_NE(traced[i].find(i ? ":handleRemove " : ":handleInsert "), Mox::String::npos);
    EXPECT_TRUE(traced[i].ends_with(" handle: " + text + " rtExtCommListLifeTimeNotifier: " + text))
        << traced[i];
  }
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
  EXPECT_EQ(observer.came, 3);
  EXPECT_EQ(observer.went, 3);
  EXPECT_EQ(observer.faults, 0);
  EXPECT_FALSE(another);
}

// Sets of few route targets come and go on several threads; the observer itself interns; others
// walk the collection, come and go.
TEST_F(RouteTargets, HoldUnderThreads) {
  std::atomic<int> running = 4;
  const auto held = interned({target(100)});
  Observer observer(collection());
  observer.also = [&](const Notifier&) { interned({target(100), color(7)}); };
  std::atomic<int> walked = 0, missing = 0;
  std::vector<std::thread> threads;
  for (U32 seed = 0; seed < 4; ++seed)
    threads.emplace_back([&, seed] {
      std::mt19937 random(seed);
      std::array<ExtCommList::PtrConst, 3> mine;
      for (int round = 0; round < 2000; ++round) {
        const auto list = mine[random() % 3] =
            interned({target(random() % 3), target(random() % 3), color(random() % 2)});
        missing += !list->classificationList(extCommClassificationRouteTarget);
      }
      --running;
    });
  threads.emplace_back([&] {
    do {
      const Observer other(collection());
      for (const Notifier& notifier : collection()->rtExtCommList()) {
        if (const auto group = notifier->rtExtCommList()) walked += int(group->comms());
        walked += int(notifier->toStrep().size() > 0);
      }
      const auto context = Mox::makeNew<Orv::DumpContext>();
      collection()->dumpState(context, 0);
    } while (running);
  });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(missing, 0);
  EXPECT_GT(walked, 0);
  EXPECT_EQ(observer.faults, 0);
  EXPECT_EQ(observer.came, observer.went);
  EXPECT_EQ(observer.alive(), 0u);
  EXPECT_EQ(collection()->rtExtCommLists(), 1u) << "the one still held";
}

}  // namespace
}  // namespace Routing::Bgp
