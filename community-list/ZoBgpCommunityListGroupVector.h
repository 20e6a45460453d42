// The groups of an extended list, by classification.
//
//   list->classificationLists()[extCommClassificationColor]   // a group, or null
//   list->classificationLists().present()                     // all groups that are there
//
// 1. There is at most one group per classification.
// 2. Only groups that are there take memory: one pointer each.
// 3. A vector is filled all at once, while its list is frozen; then it is only read.
//
// Threads: as any container of the standard library.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <memory>
#include <new>
#include <span>

#include "Mox/Allocation.h"
#include "Mox/Ptr.h"
#include "community/ZoBgpCommunityEnums.h"

namespace Routing::Bgp {

/// Looks like a vector of groups, indexed by classification, that ends at the highest one present.
/// A look-up is O(1): a bit says whether the group is there, the bits below it say where.
template <class Group>
class ExtCommGroupVector {
 public:
  using Slot = Mox::Ptr<const Group>;
  /// One place for each classification; null for no group.
  using Slots = std::array<Slot, extCommClassificationOneBeyondLast>;

  ExtCommGroupVector() = default;
  ExtCommGroupVector(const ExtCommGroupVector&) = delete;
  ExtCommGroupVector& operator=(const ExtCommGroupVector&) = delete;
  ~ExtCommGroupVector() { clear(); }

  /// One beyond the highest classification present.
  U32 size() const { return U32(std::bit_width(present_)); }
  bool empty() const { return present_ == 0; }
  /// Null when there is no such group, beyond the end too.
  const Group* operator[](U32 classification) const {
    if (classification >= size() || !(present_ >> classification & 1)) return nullptr;
    return slots_[std::popcount(U16(present_ & ((1u << classification) - 1)))].get();
  }
  /// All groups that are there, ascending by classification.
  std::span<const Slot> present() const { return {slots_, std::size_t(std::popcount(present_))}; }

  /// Takes the groups over, in place of those that are there: into `room` behind an object, which
  /// the object frees, or into storage of its own when that is null. REQUIRES: the room is aligned
  /// for pointers and holds one for each group; not checked. std::bad_alloc, without room: no
  /// groups, and `groups` as they were.
  void groupsAre(Slots&& groups, void* room);

  /// Compares identities: groups of one table are equal exactly when they are the same object.
  friend bool operator==(const ExtCommGroupVector& a, const ExtCommGroupVector& b) {
    const auto mine = a.present(), theirs = b.present();
    return a.present_ == b.present_ && std::equal(mine.begin(), mine.end(), theirs.begin());
  }

 private:
  using Allocator = Mox::TrackedAllocator<Slot>;
  void clear();

  Slot* slots_ = nullptr;
  U16 present_ = 0;      // one bit per classification
  bool inside_ = false;  // the slots are part of an object
};

template <class Group>
void ExtCommGroupVector<Group>::groupsAre(Slots&& groups, void* room) {
  clear();
  U32 count = 0;
  for (const Slot& group : groups) count += bool(group);
  inside_ = room != nullptr;
  if (count == 0) return;
  slots_ = inside_ ? static_cast<Slot*>(room) : Allocator().allocate(count);
  Slot* at = slots_;
  for (U32 classification = 0; classification < groups.size(); ++classification) {
    if (!groups[classification]) continue;
    new (at++) Slot(std::move(groups[classification]));
    present_ |= U16(1u << classification);
  }
}

template <class Group>
void ExtCommGroupVector<Group>::clear() {
  const std::size_t count = present().size();
  std::destroy_n(slots_, count);
  if (slots_ && !inside_) Allocator().deallocate(slots_, count);
  slots_ = nullptr;
  present_ = 0;
}

}  // namespace Routing::Bgp
