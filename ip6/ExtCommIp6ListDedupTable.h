// The intern tables of lists of IPv6-address-specific extended communities and of their groups.
//
//   ExtCommIp6ListDedupTable::Ptr table = extCommIp6ListDedupTableFactory();
//
// Threads: made thread-safe exactly when `ZoBgpGlobals::multiThreaded()` says so at that moment.
#pragma once

#include "community-list/ZoBgpCommunityListTables.h"
#include "ip6/ExtCommIp6List.h"

namespace Routing::Bgp {

class ExtCommIp6ListDedupTable final
    : public Mox::Entity<ExtCommIp6ListDedupTable, CommListDedupTableBase> {
 public:
  static const Mox::Type type;
  using Table = Mox::Ptr<Orv::DedupHashTableUnorderedSet>;

  ExtCommIp6ListDedupTable();

  /// Makes both tables; the constructor calls it.
  void handleInitialized();
  const Table& extCommClassificationListDedupTable() const { return groups_; }
  void dumpState(const Mox::Ptr<const Orv::DumpContext>& context, U32 indent) const override;

 private:
  Table groups_;
};

ExtCommIp6ListDedupTable::Ptr extCommIp6ListDedupTableFactory();

}  // namespace Routing::Bgp
