// Mutable copies of lists: an interned list cannot change, so an edit takes a snapshot, changes it,
// and makes a new list of its entries.
//
//   CommListSnapshot::Ptr snapshot = shared->commSnapshot();
//   snapshot->commDel(0xFFFFFF01);
//   CommList::Ptr list = CommList::CommListIs();
//   for (const auto& [value, flag] : snapshot->comms()) list->commIs(value);
//   shared = list->dedup(table);
//
// Threads: a snapshot belongs to the thread that edits it.
#pragma once

#include <map>

#include "Mox/Entity.h"

namespace Routing::Bgp {

class CommListSnapshot final : public Mox::Entity<CommListSnapshot, Mox::PtrInterface> {
 public:
  static const Mox::Type type;

  /// Adds the community, or overwrites the value that it has.
  void commIs(U32 community, bool value);
  /// Removes it; returns the value it had, false when it was not there.
  bool commDel(U32 community);
  /// Removes all, in ascending order.
  void commDelAll();
  bool commHas(U32 community) const { return comm_.count(community) != 0; }
  /// Its value; false when it is not there.
  bool comm(U32 community) const;
  /// All entries, ascending. Who deletes while walking them steps on before deleting.
  const std::map<U32, bool>& comms() const { return comm_; }

  /// The entries as `{1: True, 7: False}`, for reflection.
  Mox::String toStrep() const;
  /// Called after an entry has changed. Nothing in this library reacts to it.
  void commNotify(U32 /*community*/) {}

 private:
  std::map<U32, bool> comm_;
};

}  // namespace Routing::Bgp
