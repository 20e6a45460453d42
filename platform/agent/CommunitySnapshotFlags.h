// A mutable copy of a list of plain communities: each with a flag, in ascending order.
//
//   CommListSnapshot::Ptr snapshot = list->commSnapshot();   // {65000:1: True}
//   snapshot->commIs(0xFDE80002, false);
//   snapshot->commDel(0xFDE80001);                           // true, the flag it had
//   snapshot->comms();                                       // {65000:2: False}
//
// The flag is the editor's own; it does not go back into a list.
//
// Threads: a snapshot belongs to the thread that edits it.
#pragma once

#include <map>

#include "Mox/Entity.h"
#include "agent/CommunityValue.h"

namespace Routing {

/// The base of the snapshot class `Snapshot`; a `Community` is a plain ordered value.
template <class Snapshot, class Community>
class CommunitySnapshotFlags : public Mox::Entity<Snapshot, Mox::PtrInterface> {
 public:
  /// Adds the community, or overwrites the flag that it has.
  void commIs(const Community& community, bool value) {
    comm_[community] = value;
    commNotify(community);
  }
  /// Removes it; returns the flag it had, false when it was not there.
  bool commDel(const Community& community) {
    const auto entry = comm_.extract(community);
    if (!entry) return false;
    commNotify(entry.key());
    return entry.mapped();
  }
  /// Removes all, in ascending order.
  void commDelAll() {
    while (!comm_.empty()) commDel(comm_.begin()->first);
  }
  /// Whether it is there, whatever its flag.
  bool commHas(const Community& community) const { return comm_.contains(community); }
  /// Its flag; false when it is not there.
  bool comm(const Community& community) const {
    const auto found = comm_.find(community);
    return found != comm_.end() && found->second;
  }
  /// All entries, ascending. Deleting an entry invalidates the iterators at it and no others.
  const std::map<Community, bool>& comms() const { return comm_; }

  /// The entries as `{1: True, 7: False}`, for reflection.
  Mox::String toStrep() const {
    using Mox::valueToStrep;
    Mox::String text;
    for (const auto& [community, value] : comm_)
      text += (text.empty() ? "" : ", ") + valueToStrep(community) + ": " + valueToStrep(value);
    return "{" + text + "}";
  }
  /// Called after an entry has changed. Nothing in this library reacts to it.
  void commNotify(const Community& /*community*/) {}

 private:
  std::map<Community, bool> comm_;
};

namespace RouteMap {

/// Policy's copy of a list of large communities.
class CommListSnapshot final
    : public CommunitySnapshotFlags<CommListSnapshot, Acl::CommunityValue> {
 public:
  static const Mox::Type type;
};

}  // namespace RouteMap
}  // namespace Routing
