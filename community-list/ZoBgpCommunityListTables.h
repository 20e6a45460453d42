// The intern tables of lists, one per kind.
//
//   CommListDedupTable::Ptr table = commListDedupTableFactory();
//
// Threads: made thread-safe exactly when `ZoBgpGlobals::multiThreaded()` says so at that moment.
#pragma once

#include "Orv/DedupHashTableUnorderedSet.h"
#include "community-list/ZoBgpCommunityListRouteTargets.h"

namespace Routing::Bgp {

/// A table of lists; the intern table behind it is there once `initDedupTable` has run.
class CommListDedupTableBase : public Mox::Entity<CommListDedupTableBase, Mox::PtrInterface> {
 public:
  static const Mox::Type type;

  /// `placement` says how lists of the kind are placed.
  explicit CommListDedupTableBase(const Orv::DedupPlacement& placement) : placement_(placement) {}

  /// Makes the intern table; factories call it.
  void initDedupTable();
  const Mox::Ptr<Orv::DedupHashTableUnorderedSet>& dedupHashTable() const {
    return dedupHashTable_;
  }
  /// The interned list of this one's content.
  Mox::Ptr<Orv::DedupHandle> dedup(Mox::Ptr<Orv::DedupHandle> list) const {
    return dedupHashTable_->dedup(std::move(list));
  }
  virtual void dumpState(const Mox::Ptr<const Orv::DumpContext>& context, U32 indent) const;

 protected:
  /// An intern table like that of the lists, for what belongs to them.
  static Mox::Ptr<Orv::DedupHashTableUnorderedSet> makeTable(const Orv::DedupPlacement& placement);
  /// Part of a dump: a name, and the table below it.
  static void dumpPart(const Orv::DumpContext& context, U32 indent, const char* name,
                       const Mox::Ptr<Orv::DedupHashTableUnorderedSet>& table);
  void dropDedupTable() { dedupHashTable_ = nullptr; }

 private:
  const Orv::DedupPlacement placement_;
  Mox::Ptr<Orv::DedupHashTableUnorderedSet> dedupHashTable_;
};

/// The table of standard lists.
class CommListDedupTable final : public Mox::Entity<CommListDedupTable, CommListDedupTableBase> {
 public:
  static const Mox::Type type;
  CommListDedupTable();
};

/// The table of large lists.
class LargeCommListDedupTable final
    : public Mox::Entity<LargeCommListDedupTable, CommListDedupTableBase> {
 public:
  static const Mox::Type type;
  LargeCommListDedupTable();
};

/// The tables of extended lists: of the lists, of their groups, of their groups of route targets;
/// and what tells of the last. Whatever holds an interned list or group may outlive it.
class ExtCommListDedupTable final
    : public Mox::Entity<ExtCommListDedupTable, CommListDedupTableBase> {
 public:
  static const Mox::Type type;
  using Table = Mox::Ptr<Orv::DedupHashTableUnorderedSet>;

  ExtCommListDedupTable();
  ~ExtCommListDedupTable() override;

  /// Makes the tables of groups, the collection and its notifiee; factories call it.
  void handleInitialized();

  const Table& extCommClassificationListDedupTable() const { return groups_; }
  const Table& rtExtCommClassificationListDedupTable() const { return routeTargets_; }

  /// The sets of route targets that are in use.
  const NotifyingRtExtCommListCollection::Ptr& notifyingRtExtCommListCollection() const {
    return collection_;
  }
  /// Makes one unless there is one.
  const NotifyingRtExtCommListCollection::Ptr& notifyingRtExtCommListCollectionIs();
  /// Lets go of it. The notifiee goes on feeding it for its other holders.
  void notifyingRtExtCommListCollectionDel() { collection_ = nullptr; }

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

CommListDedupTable::Ptr commListDedupTableFactory();
LargeCommListDedupTable::Ptr largeCommListDedupTableFactory();
ExtCommListDedupTable::Ptr extCommListDedupTableFactory();

}  // namespace Routing::Bgp
