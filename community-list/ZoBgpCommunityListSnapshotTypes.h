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

#include "agent/CommunitySnapshotFlags.h"
#include "community-list/ZoBgpCommunityListSnapshotTemplates.h"
#include "community/ZoBgpCommunityValue.h"

namespace Routing::Bgp {

class ExtCommClassificationList;

/// The snapshot of a standard list.
class CommListSnapshot final : public CommunitySnapshotFlags<CommListSnapshot, U32> {
 public:
  static const Mox::Type type;
};

/// The snapshot of an extended list.
class ExtCommListSnapshot final
    : public ExtCommListSnapshotOf<ExtCommListSnapshot, ExtComm, ExtCommClassificationList> {
 public:
  static const Mox::Type type;
};

/// The snapshot of a group of an extended list.
class ExtCommClassificationListSnapshot final
    : public ExtCommGroupSnapshotOf<ExtCommClassificationListSnapshot, ExtComm> {
 public:
  static const Mox::Type type;
  using ExtCommGroupSnapshotOf::ExtCommGroupSnapshotOf;
};

}  // namespace Routing::Bgp
