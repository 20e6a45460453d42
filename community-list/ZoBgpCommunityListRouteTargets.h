// The sets of route targets that are in use. The import and export of routes of VPNs listens here.
//
//   const auto collection = table->notifyingRtExtCommListCollection();
//   struct Watcher : NotifyingRtExtCommListCollection::NotifieeConst {
//     void onRtExtCommList(const RtExtCommListLifeTimeNotifier::PtrConst& notifier) override {
//       const bool isNew = collection->rtExtCommListHas(notifier);
//       ...
//     }
//   };
//   watcher.notifierIs(collection);
//
// 1. Every interned group of route targets has exactly one notifier, and it is in the collection:
//    from the return of the call that interned the group until the group's last release begins.
//    Another thread may find the group, through a list, a moment earlier.
// 2. A group's coming is heard before its going, each once. Between two groups nothing is
//    promised, even if their contents are equal: the going of one may be heard after the coming of
//    its successor. So observers keep their books by notifier, or count per content.
// 3. `std::bad_alloc` from interning a group leaves table and collection as they were, and nothing
//    is heard. All memory is taken before the group enters its table; a release needs none.
//
// An observer that joins a running agent may find a notifier in its walk whose going it has heard
// already. It asks again, under the lock of its own book:
//
//   void onRtExtCommList(const Notifier& notifier) override { look(notifier); }
//   void look(const Notifier& notifier) {
//     const std::lock_guard guard(mutex);
//     if (collection->rtExtCommListHas(notifier)) book.insert(notifier);
//     else book.erase(notifier);
//   }
//   watcher.notifierIs(collection);                                       // first come,
//   for (const auto& n : collection->rtExtCommList()) watcher.look(n);    // then walk
//
// A notifier that goes after the question is heard of later, and waits for the lock.
//
// Threads: observers are called, with no lock held, on the thread that interns the group or lets go
// of it last; they may intern and release. Several threads may call one observer at a time. The
// collection may be read and changed from any thread: its mutex guards the set alone, is held while
// nothing is called and no reference dropped, and so is always the innermost.
#pragma once

#include <mutex>
#include <set>
#include <vector>

#include "Mox/NotifieeList.h"
#include "Orv/DedupHashTable.h"
#include "community-list/ZoBgpCommunityListRouteTargetGroup.h"

namespace Routing::Bgp {

class NotifyingRtExtCommListCollection;

/// Follows one interned group of route targets. It keeps the group's memory, so its text can be
/// read also when the group has gone; it does not keep the group interned.
class RtExtCommListLifeTimeNotifier final
    : public Mox::Entity<RtExtCommListLifeTimeNotifier, Orv::DedupHandleLifeTimeNotifier> {
 public:
  static const Mox::Type type;
  using Entity::Entity;

  /// The group, which may be dying.
  /// REQUIRES: no owning pointer is made of this one. `rtExtCommList` gives one.
  RtExtCommClassificationList* rtExtCommListRawPtr() const {
    return static_cast<RtExtCommClassificationList*>(getDedupedObjectRawPtr());
  }
  /// The group, or null when its last user has let go; not null once the group's table has died,
  /// since the notifier counts as a user then. From any thread.
  RtExtCommClassificationList::PtrConst rtExtCommList() const;
  /// The group's community of this content, or null.
  ExtComm::PtrConst comm(const ExtCommContent& content) const {
    return rtExtCommListRawPtr()->comm(content);
  }
  /// The group's text.
  Mox::String toStrep() const { return rtExtCommListRawPtr()->toStrep(); }

 private:
  friend class NotifyingRtExtCommListCollection;
  friend class RtExtCommListLifeTimeNotifiee;

  // The collection that it was made for; set before anybody knows the notifier. Perhaps gone.
  const NotifyingRtExtCommListCollection* collection_ = nullptr;
  // Guarded by the mutex of that collection: the notifier behind it there, and the pointer that
  // leads to this one; null when it is not there.
  mutable const RtExtCommListLifeTimeNotifier* next_ = nullptr;
  mutable const RtExtCommListLifeTimeNotifier** link_ = nullptr;
};

/// The group's text; `NULL` for null.
std::ostream& operator<<(std::ostream& stream, const RtExtCommListLifeTimeNotifier* notifier);

/// The notifiers of all interned groups of route targets. The collection of a table is filled and
/// emptied by the table's notifiee. A notifier that somebody else puts in or takes out is heard,
/// with no other effect.
class NotifyingRtExtCommListCollection final
    : public Mox::Entity<NotifyingRtExtCommListCollection, Mox::PtrInterface> {
 public:
  static const Mox::Type type;
  using Notifier = RtExtCommListLifeTimeNotifier::PtrConst;
  class NotifieeConst;

  NotifyingRtExtCommListCollection() = default;
  ~NotifyingRtExtCommListCollection() override;

  // O(1) for the notifiers of the collection's own table; O(log n) of the others for the others.

  /// Adds a notifier, which is heard unless it is there already. RangeException on null. On
  /// `std::bad_alloc` nothing has changed; a notifier of the collection's own table needs no
  /// memory.
  void rtExtCommListIs(const Notifier& notifier);
  /// Removes it, which is heard if it was there. Needs no memory.
  void rtExtCommListDel(const Notifier& notifier);
  /// Removes all that are there now, one by one.
  void rtExtCommListDelAll();
  /// Whether it is there.
  bool rtExtCommListHas(const Notifier& notifier) const;
  /// How many there are.
  U32 rtExtCommLists() const;
  /// A copy, to be walked while others change the collection; in no order.
  std::vector<Notifier> rtExtCommList() const;
  /// The texts of the members, with a space between two.
  Mox::String rtExtCommListStringForm() const;
  /// Writes how many there are, and the text of each.
  void dumpState(const Mox::Ptr<const Orv::DumpContext>& context, U32 indent) const;

  Mox::NotifieeList* notifieeList() const override { return &notifiees_; }

 private:
  friend class RtExtCommListLifeTimeNotifiee;
  using Set = std::set<Notifier>;

  bool link(const Notifier& notifier);
  Notifier unlink(const Notifier& notifier);
  void tell(const Notifier& notifier);

  mutable std::mutex mutex_;  // guards all of the next three
  // Notifiers that were made for this collection are linked through themselves: they come and go
  // without memory or search, and each is counted once for standing here. Others are in a set.
  const RtExtCommListLifeTimeNotifier* first_ = nullptr;
  U32 linked_ = 0;
  Set others_;
  mutable Mox::NotifieeList notifiees_;
};

/// An observer of the collection. The operations do nothing unless they are overridden.
/// REQUIRES: no override throws. It is called while a group comes or goes, which cannot be undone.
/// Nor does one end the observer's life while `notifierIs` is telling it to look.
class NotifyingRtExtCommListCollection::NotifieeConst : public Mox::Notifiee {
 public:
  /// Observes a collection, or nothing when null. The observer is then told, once, to look through
  /// the collection; not again when it observes that collection already. Threads, failure: see
  /// Mox/NotifieeList.h.
  void notifierIs(const NotifyingRtExtCommListCollection::PtrConst& collection);

  /// A notifier has come or gone: `rtExtCommListHas` says which.
  virtual void onRtExtCommList(const Notifier&) {}
  /// The collection as a whole is to be looked through.
  virtual void onRtExtCommList() {}
  /// The same two. All observers hear an event here before any hears it above.
  virtual void onRtExtCommListImmediate(const Notifier&) {}
  /// See above.
  virtual void onRtExtCommListImmediate() {}
};

/// Feeds a collection from the intern table of groups of route targets. The table calls it; a trace
/// line of level 9 tells of each call.
class RtExtCommListLifeTimeNotifiee final
    : public Mox::Entity<RtExtCommListLifeTimeNotifiee, Orv::DedupHashTableLifeTimeNotifiee> {
 public:
  static const Mox::Type type;

  /// Feeds this collection. REQUIRES: not null.
  explicit RtExtCommListLifeTimeNotifiee(
      const NotifyingRtExtCommListCollection::Ptr& notifyingRtExtCommListCollection)
      : collection_(notifyingRtExtCommListCollection) {}

  /// Makes the group's notifier and adds it. Asserts "__null == rtExtCommList->lifeTimeNotifier()".
  void handleInsert(const Mox::Ptr<Orv::DedupHandle>& group) const override;
  /// Removes it. Asserts "__null != lifeTimeNotifier".
  void handleRemove(Orv::DedupHandle* group) const override;
  /// Does the same for every group of the table.
  void handleNotificationStop(const Mox::Ptr<const Orv::DedupHashTable>& table) const override;
  std::unique_ptr<PreparedInsert> prepareInsert() const override;
  void handlePreparedInsert(const Mox::Ptr<Orv::DedupHandle>& group,
                            std::unique_ptr<PreparedInsert> prepared) const override;

 private:
  class Prepared;

  const NotifyingRtExtCommListCollection::Ptr collection_;
};

/// New objects, with their notifications on. RangeException on null.
NotifyingRtExtCommListCollection::Ptr NotifyingRtExtCommListCollectionIs();
// One that feeds the collection.
RtExtCommListLifeTimeNotifiee::Ptr RtExtCommListLifeTimeNotifieeIs(
    const NotifyingRtExtCommListCollection::Ptr& collection);
RtExtCommListLifeTimeNotifiee::Ptr rtExtCommListLifeTimeNotifieeFactory(
    const NotifyingRtExtCommListCollection::Ptr& collection);

}  // namespace Routing::Bgp
