// Mutable copies of extended lists and of their groups, for both families: communities by their
// content, groups by their classification.
//
//   const auto snapshot = list->commSnapshot();
//   snapshot->commDel(content);
//   for (const auto& [content, comm] : snapshot->comms()) edited->commIs(comm);
//
// A snapshot holds its communities and groups, so the list that it was taken of may go. The two are
// edited apart: a community that goes is still in its group.
//
// Threads: a snapshot belongs to the thread that edits it.
#pragma once

#include <map>

#include "Mox/Entity.h"
#include "Mox/ValueText.h"
#include "community/ZoBgpCommunityEnums.h"

namespace Routing::Bgp {

/// Shared objects under a key of their own, ascending.
template <class Key, class Object>
class ExtCommSnapshotMap {
 public:
  using Value = Mox::Ptr<const Object>;
  using Entries = std::map<Key, Value>;

  /// Adds the object, or replaces another of its key. False when this very object is there already.
  bool is(const Key& key, const Value& value) {
    Value& entry = entries_[key];
    const Value replaced = std::exchange(entry, value);
    return replaced != value;
  }
  /// Whether there was one.
  bool del(const Key& key) { return bool(entries_.extract(key)); }
  /// Whether the key has an object.
  bool has(const Key& key) const { return entries_.contains(key); }
  /// Null when there is none.
  Value at(const Key& key) const {
    const auto found = entries_.find(key);
    return found == entries_.end() ? nullptr : found->second;
  }
  /// Valid as long as the map; an iterator as long as its entry.
  const Entries& entries() const { return entries_; }

 private:
  Entries entries_;
};

/// The communities of a snapshot, of a list or of a group. `Value` is the base class of the family.
/// Adding, removing and finding one is O(log n).
template <class Snapshot, class V>
class ExtCommSnapshotOf : public Mox::Entity<Snapshot, Mox::PtrInterface> {
 public:
  using Value = V;
  using Content = typename Value::Content;
  using ConstValue = Mox::Ptr<const Value>;

  /// Adds a community, or replaces another of its content. RangeException on null.
  void commIs(const ConstValue& comm) {
    Mox::refuseNull(comm, Snapshot::type.name(), "comm");
    if (comm_.is(comm->getContent(), comm)) commNotify(comm->getContent());
  }
  /// Removes the one of this content, if there is one.
  void commDel(const Content& content) {
    if (comm_.del(content)) commNotify(content);
  }
  /// Removes all, in ascending order.
  void commDelAll() {
    while (!comms().empty()) commDel(Content(comms().begin()->first));
  }
  /// Whether it is there.
  bool commHas(const Content& content) const { return comm_.has(content); }
  /// Null when it is not there.
  ConstValue comm(const Content& content) const { return comm_.at(content); }
  /// All entries, ascending by content. REQUIRES: no deletion of the entry that an iterator is at.
  const auto& comms() const { return comm_.entries(); }
  /// Called after an entry has changed. Nothing in this library reacts to it.
  void commNotify(const Content& /*content*/) {}

 private:
  ExtCommSnapshotMap<Content, Value> comm_;
};

/// The snapshot of a list: its communities and its groups. `Group` is the class of the family's
/// groups.
template <class Snapshot, class Value, class Group>
class ExtCommListSnapshotOf : public ExtCommSnapshotOf<Snapshot, Value> {
 public:
  using ConstGroup = Mox::Ptr<const Group>;

  // The same for groups, by the classification that a group says it has.
  void classificationListIs(const ConstGroup& group) {
    Mox::refuseNull(group, Snapshot::type.name(), "classificationList");
    if (classificationList_.is(group->classification(), group))
      classificationListNotify(group->classification());
  }
  void classificationListDel(ExtCommClassification classification) {
    if (classificationList_.del(classification)) classificationListNotify(classification);
  }
  void classificationListDelAll() {
    while (!classificationLists().empty())
      classificationListDel(classificationLists().begin()->first);
  }
  bool classificationListHas(ExtCommClassification classification) const {
    return classificationList_.has(classification);
  }
  ConstGroup classificationList(ExtCommClassification classification) const {
    return classificationList_.at(classification);
  }

  /// Ascending by classification.
  const auto& classificationLists() const { return classificationList_.entries(); }
  /// Called after an entry has changed. Nothing in this library reacts to it.
  void classificationListNotify(ExtCommClassification /*classification*/) {}

 private:
  ExtCommSnapshotMap<ExtCommClassification, Group> classificationList_;
};

/// The snapshot of a group, whose classification it keeps.
template <class Snapshot, class Value>
class ExtCommGroupSnapshotOf : public ExtCommSnapshotOf<Snapshot, Value> {
 public:
  /// Empty.
  explicit ExtCommGroupSnapshotOf(ExtCommClassification classification)
      : classification_(classification) {}
  /// As given to the constructor.
  ExtCommClassification classification() const { return classification_; }

 private:
  const ExtCommClassification classification_;
};

/// A map of a snapshot as reflection shows it: the texts of its objects.
template <class Snapshot, auto entries>
Mox::Attribute snapshotCollection(std::string_view name) {
  return {Mox::String(name), Mox::Attribute::Form::collection, [](const void* snapshot) {
            Mox::String text;
            for (const auto& [key, value] : (static_cast<const Snapshot*>(snapshot)->*entries)())
              text += (text.empty() ? "" : ", ") + value->toStrep();
            return text;
          }};
}
// The rows of reflection of a snapshot's class.
template <class Snapshot>
std::vector<Mox::Attribute> extCommListSnapshotAttributes() {
  return {snapshotCollection<Snapshot, &Snapshot::classificationLists>("classificationList"),
          snapshotCollection<Snapshot, &Snapshot::comms>("comm")};
}
template <class Snapshot>
std::vector<Mox::Attribute> extCommGroupSnapshotAttributes() {
  return {Mox::attribute<&Snapshot::classification>("classification"),
          snapshotCollection<Snapshot, &Snapshot::comms>("comm")};
}

}  // namespace Routing::Bgp
