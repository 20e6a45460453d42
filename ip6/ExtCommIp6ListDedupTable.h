// The intern tables of lists of IPv6-address-specific extended communities and of their groups.
//
//   ExtCommIp6ListDedupTable::Ptr table = extCommIp6ListDedupTableFactory();
//   ExtCommIp6List::PtrConst shared = list->dedup(table);
//
// Lists and groups that are held may outlive the table. REQUIRES: all lists of one table hold
// communities of one ExtCommIp6DedupTable.
//
// Threads: made thread-safe exactly when `ZoBgpGlobals::multiThreaded()` says so at that moment.
#pragma once

#include "community-list/ZoBgpCommunityListTables.h"
#include "ip6/ExtCommIp6List.h"

namespace Routing::Bgp {

/// Two intern tables, that of lists and that of groups.
class ExtCommIp6ListDedupTable final
    : public Mox::Entity<ExtCommIp6ListDedupTable, CommListDedupTableBase> {
 public:
  static const Mox::Type type;
  using Table = Mox::Ptr<Orv::DedupHashTableUnorderedSet>;

  ExtCommIp6ListDedupTable();

  /// Makes both tables; the constructor calls it.
  void handleInitialized();
  /// The table of groups, of all classifications.
  const Table& extCommClassificationListDedupTable() const { return groups_; }
  /// Writes a title and how many lists and groups there are, one per line.
  void dumpState(const Mox::Ptr<const Orv::DumpContext>& context, U32 indent) const override;

 private:
  Table groups_;
};

/// A new, empty table.
ExtCommIp6ListDedupTable::Ptr extCommIp6ListDedupTableFactory();

}  // namespace Routing::Bgp
