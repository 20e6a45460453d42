// Which sets of route targets are in use: what imports and exports routes of VPNs listens here.
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
// 1. Every group of route targets that is interned has exactly one notifier in the collection.
// 2. Of one group its coming is heard before its going, each once. Between two groups nothing is
//    promised, even if their contents are equal: the going of one may be heard after the coming of
//    its successor. So observers keep their books by notifier, or count per content.
//
// Threads: observers are called, with no lock held, on the thread that interns the group or lets go
// of it last; they may intern and release. Several threads may call one observer at a time. The
// collection may be read and changed from any thread: its mutex guards the set alone, is held while
// nothing is called and no reference dropped, and so is always the innermost.
#pragma once

#include <mutex>
#include <unordered_set>
#include <vector>

#include "Mox/NotifieeList.h"
#include "Orv/DedupHashTable.h"
#include "community-list/ZoBgpCommunityListRouteTargetGroup.h"

namespace Routing::Bgp {

/// Follows one interned group of route targets. It keeps the group's memory, so its text can be
/// had also when the group has gone; it does not keep the group interned.
class RtExtCommListLifeTimeNotifier final
    : public Mox::Entity<RtExtCommListLifeTimeNotifier, Orv::DedupHandleLifeTimeNotifier> {
 public:
  static const Mox::Type type;
  using Entity::Entity;

  /// The group, which may be dying: no pointer that owns may be made of this one. See
  /// `rtExtCommList`.
  RtExtCommClassificationList* rtExtCommListRawPtr() const {
    return static_cast<RtExtCommClassificationList*>(getDedupedObjectRawPtr());
  }
  /// The group, or null when its last user is gone.
  RtExtCommClassificationList::PtrConst rtExtCommList() const;
  /// The group's community of this content, or null.
  ExtComm::PtrConst comm(const ExtCommContent& content) const {
    return rtExtCommListRawPtr()->comm(content);
  }
  /// The group's text.
  Mox::String toStrep() const { return rtExtCommListRawPtr()->toStrep(); }
};

/// The group's text; `NULL` for null.
std::ostream& operator<<(std::ostream& stream, const RtExtCommListLifeTimeNotifier* notifier);

/// The notifiers of all groups of route targets that are interned, told to whom it concerns. The
/// collection of a table is filled and emptied by its notifiee; what others put in or take out is
/// heard, and no more comes of it.
class NotifyingRtExtCommListCollection final
    : public Mox::Entity<NotifyingRtExtCommListCollection, Mox::PtrInterface> {
 public:
  static const Mox::Type type;
  using Notifier = RtExtCommListLifeTimeNotifier::PtrConst;
  class NotifieeConst;

  /// Adds a notifier; RangeException on null. Heard unless it is there already.
  void rtExtCommListIs(const Notifier& notifier);
  /// Removes it; heard if it was there.
  void rtExtCommListDel(const Notifier& notifier);
  /// Removes all, one by one.
  void rtExtCommListDelAll();
  bool rtExtCommListHas(const Notifier& notifier) const;
  U32 rtExtCommLists() const;
  /// A copy, to be walked while others change the collection.
  std::vector<Notifier> rtExtCommList() const;
  void dumpState(const Mox::Ptr<const Orv::DumpContext>& context, U32 indent) const;

  Mox::NotifieeList* notifieeList() const override { return &notifiees_; }

 private:
  struct ByIdentity {
    std::size_t operator()(const Notifier& notifier) const {
      return std::hash<const void*>()(notifier.get());
    }
  };
  void tell(const Notifier& notifier);

  mutable std::mutex mutex_;  // guards the set
  std::unordered_set<Notifier, ByIdentity> rtExtCommList_;
  mutable Mox::NotifieeList notifiees_;
};

/// An observer of the collection. All that it hears does nothing unless it is overridden. What it
/// overrides must not throw: it is called while a group comes or goes, which cannot be undone.
class NotifyingRtExtCommListCollection::NotifieeConst : public Mox::Notifiee {
 public:
  /// Observes a collection, which is then heard of once as a whole, or nothing when null.
  void notifierIs(const NotifyingRtExtCommListCollection::PtrConst& collection);

  /// A notifier has come or gone: `rtExtCommListHas` says which.
  virtual void onRtExtCommList(const Notifier&) {}
  /// The collection as a whole is to be looked through.
  virtual void onRtExtCommList() {}
  // The same, told to all observers before those above; here both are told at once, and the second
  // of a pair has nothing left to tell.
  virtual void onRtExtCommListImmediate(const Notifier&) {}
  virtual void onRtExtCommListImmediate() {}
};

/// Feeds a collection from the intern table of groups of route targets.
class RtExtCommListLifeTimeNotifiee final
    : public Mox::Entity<RtExtCommListLifeTimeNotifiee, Orv::DedupHashTableLifeTimeNotifiee> {
 public:
  static const Mox::Type type;

  explicit RtExtCommListLifeTimeNotifiee(
      const NotifyingRtExtCommListCollection::Ptr& notifyingRtExtCommListCollection)
      : collection_(notifyingRtExtCommListCollection) {}

  void handleInsert(const Mox::Ptr<Orv::DedupHandle>& group) const override;
  void handleRemove(Orv::DedupHandle* group) const override;
  void handleNotificationStop(const Mox::Ptr<const Orv::DedupHashTable>& table) const override;

 private:
  const NotifyingRtExtCommListCollection::Ptr collection_;
};

NotifyingRtExtCommListCollection::Ptr NotifyingRtExtCommListCollectionIs();
RtExtCommListLifeTimeNotifiee::Ptr RtExtCommListLifeTimeNotifieeIs(
    const NotifyingRtExtCommListCollection::Ptr& collection);
RtExtCommListLifeTimeNotifiee::Ptr rtExtCommListLifeTimeNotifieeFactory(
    const NotifyingRtExtCommListCollection::Ptr& collection);

}  // namespace Routing::Bgp
