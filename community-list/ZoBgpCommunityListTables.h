// The intern tables of standard and large lists, and the base of all intern tables of lists.
//
//   CommListDedupTable::Ptr table = commListDedupTableFactory();
//
// Threads: made thread-safe exactly when `ZoBgpGlobals::multiThreaded()` says so at that moment.
#pragma once

#include "Orv/DedupHashTableUnorderedSet.h"

namespace Routing::Bgp {

/// A table of lists; the intern table behind it is there once `initDedupTable` has run.
class CommListDedupTableBase : public Mox::Entity<CommListDedupTableBase, Mox::PtrInterface> {
 public:
  static const Mox::Type type;

  /// `placement` says where the table places its lists.
  explicit CommListDedupTableBase(const Orv::DedupPlacement& placement) : placement_(placement) {}

  /// Makes the intern table; factories call it.
  void initDedupTable();
  /// The intern table; null before `initDedupTable`.
  const Mox::Ptr<Orv::DedupHashTableUnorderedSet>& dedupHashTable() const {
    return dedupHashTable_;
  }
  /// The interned list of this one's content.
  Mox::Ptr<Orv::DedupHandle> dedup(Mox::Ptr<Orv::DedupHandle> list) const {
    return dedupHashTable_->dedup(std::move(list));
  }
  /// Writes the tables, one below the other, with the numbers of their members.
  virtual void dumpState(const Mox::Ptr<const Orv::DumpContext>& context, U32 indent) const;

 protected:
  /// An intern table like that of the lists, for what belongs to them.
  static Mox::Ptr<Orv::DedupHashTableUnorderedSet> makeTable(const Orv::DedupPlacement& placement);
  /// Part of a dump: a name, and the table below it.
  static void dumpPart(const Orv::DumpContext& context, U32 indent, const char* name,
                       const Mox::Ptr<Orv::DedupHashTableUnorderedSet>& table);
  /// Lets go of the intern table ahead of what its members belong to.
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

/// A new, empty table.
CommListDedupTable::Ptr commListDedupTableFactory();
/// A new, empty table.
LargeCommListDedupTable::Ptr largeCommListDedupTableFactory();

}  // namespace Routing::Bgp
