// The intern tables of extended lists, and the notifications of their sets of route targets.
//
//   ExtCommListDedupTable::Ptr table = extCommListDedupTableFactory();
//   watcher.notifierIs(table->notifyingRtExtCommListCollection());
//
// Threads: made thread-safe exactly when `ZoBgpGlobals::multiThreaded()` says so at that moment.
#pragma once

#include "community-list/ZoBgpCommunityListRouteTargets.h"
#include "community-list/ZoBgpCommunityListTables.h"

namespace Routing::Bgp {

/// The tables of lists, of groups, of route-target groups, and the collection that tells of the
/// last. Holders of interned lists and groups may outlive the tables.
class ExtCommListDedupTable final
    : public Mox::Entity<ExtCommListDedupTable, CommListDedupTableBase> {
 public:
  static const Mox::Type type;
  using Table = Mox::Ptr<Orv::DedupHashTableUnorderedSet>;

  ExtCommListDedupTable();
  ~ExtCommListDedupTable() override;

  /// Makes the tables of groups, the collection and its notifiee; factories call it.
  void handleInitialized();

  /// The groups of all classifications but route targets.
  const Table& extCommClassificationListDedupTable() const { return groups_; }
  /// The groups of route targets, whose coming and going is told.
  const Table& rtExtCommClassificationListDedupTable() const { return routeTargets_; }

  /// The sets of route targets that are in use.
  const NotifyingRtExtCommListCollection::Ptr& notifyingRtExtCommListCollection() const {
    return collection_;
  }
  /// Makes one unless there is one.
  const NotifyingRtExtCommListCollection::Ptr& notifyingRtExtCommListCollectionIs();
  /// Lets go of it. The notifiee goes on feeding it for its other holders.
  void notifyingRtExtCommListCollectionDel() { collection_ = nullptr; }

  /// The one that tells the collection; null once it was let go.
  const RtExtCommListLifeTimeNotifiee::Ptr& rtExtCommListLifeTimeNotifiee() const {
    return notifiee_;
  }
  /// Makes one for the collection unless there is one.
  const RtExtCommListLifeTimeNotifiee::Ptr& rtExtCommListLifeTimeNotifieeIs(
      const NotifyingRtExtCommListCollection::Ptr& collection);
  /// Lets go of it. The table of route targets keeps its own until it dies.
  void rtExtCommListLifeTimeNotifieeDel() { notifiee_ = nullptr; }

  void dumpState(const Mox::Ptr<const Orv::DumpContext>& context, U32 indent) const override;

 private:
  Table groups_;  // all but route targets
  NotifyingRtExtCommListCollection::Ptr collection_;
  RtExtCommListLifeTimeNotifiee::Ptr notifiee_;
  Table routeTargets_;
};

/// New, empty tables.
ExtCommListDedupTable::Ptr extCommListDedupTableFactory();

}  // namespace Routing::Bgp
