// Bodies of extended lists: building and freezing.
//
// Freezing sorts the communities, deals them out to new groups by classification, interns the
// groups, then the list. A list whose values are known beforehand, as from the wire, gets its
// memory in one piece:
//
//   [ list | values ... | groups ... ]
#pragma once

#include <bit>

#include "Orv/DedupHashTableUnorderedSet.h"
#include "community-list/ZoBgpCommunityListImpl.h"
#include "community-list/internal/ZoBgpCommunityListGroupBodies.h"

namespace Routing::Bgp {

template <class F>
void ExtCommListOf<F>::assertNeverDeduped() const {
  MOX_ASSERT(this->dedupState() == Orv::dedupHandleStateNeverDeduped(),
             "__null == ( this ) || ( this )->dedupState() == Orv::dedupHandleStateNeverDeduped()");
}

template <class F>
void ExtCommListOf<F>::commIs(const ConstValue& comm) {
  assertNeverDeduped();
  ExtCommVectorAdd(comm, comm_);
}

template <class F>
void ExtCommListOf<F>::append(const ConstList& other) {
  assertNeverDeduped();
  const U32 count = other ? other->comms() : 0;  // the other may be this one
  for (U32 i = 0; i < count; ++i) comm_.add(other->comm_[i]);
}

template <class F>
void ExtCommListOf<F>::appendClassificationList(const ConstGroup& group) {
  assertNeverDeduped();
  if (!group) return;
  for (const ConstValue& comm : group->commVector()) comm_.add(comm);
}

template <class F>
void ExtCommListOf<F>::expectedCommunityCountIs(U32 count) {
  assertNeverDeduped();
  comm_.reserve(count);
}

template <class F>
void ExtCommListOf<F>::sortComms() {
  assertNeverDeduped();
  ExtCommVectorSort(comm_);
  comm_.sortedIs(true);
}

template <class F>
auto ExtCommListOf<F>::dedup(const Table& table) -> ConstList {
  MOX_ASSERT(table, "__null != table");
  assertNeverDeduped();
  const Mox::Ptr<Orv::DedupHandle> self(static_cast<List*>(this));  // also in the handler below
  sortComms();
  makeGroups(table, nullptr, placeOf(comm_, table->dedupHashTable()->seed()));
  try {
    return Mox::staticCast<const List>(table->dedup(self));
  } catch (...) {
    comm_.reclaim();  // as if nothing had been tried
    groups_.groupsAre({}, nullptr);
    totalTransitive_ = 0;
    throw;
  }
}

/// The interned group of the communities of one classification, if there is one.
template <class F>
auto ExtCommListOf<F>::findGroup(const Table& table, ExtCommClassification classification,
                                 const Share& share) const -> ConstGroup {
  const auto isOfThese = [&](const Orv::DedupHandle& member) {
    const auto& theirs = static_cast<const Group&>(member).comm_;
    auto at = theirs.begin();
    return theirs.size() == share.members &&
           std::all_of(comm_.begin(), comm_.end(), [&](const ConstValue& comm) {
             return comm->classification() != classification || comm == *at++;
           });
  };
  return Mox::staticCast<const Group>(
      F::groupTable(*table, classification)->lookup(share.place, isOfThese));
}

/// Finds the groups of the sorted communities or makes and interns them. They hold the communities
/// for the list, which keeps its place. When memory runs out, the list is as before.
template <class F>
void ExtCommListOf<F>::makeGroups(const Table& table, void* room, U32 place) {
  const U64 seed = table->dedupHashTable()->seed();  // all tables of a process have one
  std::array<Share, extCommClassificationOneBeyondLast> shares;
  U32 transitive = 0;
  for (const ConstValue& comm : comm_) {
    Share& share = shares[groupIndex(*comm)];
    ++share.members;
    share.place = Group::placeWith(share.place, *comm, seed);
    transitive += comm->transitive();
  }
  typename ExtCommGroupVector<Group>::Slots groups;
  ExtCommNewGroups<F> made;
  for (const ConstGroup& group : groups_.present())  // of an earlier call: refused below
    made[group->classification()] = Mox::Ptr<Group>(const_cast<Group*>(group.get()));
  for (std::size_t i = 0; i < shares.size(); ++i) {
    if (!shares[i].members) continue;
    const auto classification = ExtCommClassification(i);
    Group::assertLinkBandwidths(classification, shares[i].members);
    if (!made[i]) groups[i] = findGroup(table, classification, shares[i]);
    if (groups[i]) continue;
    auto& group =
        ExtCommListFindOrCreateClassificationList<F>(made, classification, shares[i].members);
    group.comm_.reserve(shares[i].members);
    group.comm_.sortedIs(true);
  }
  // From here on the groups hold the communities. Those that were found do so already.
  comm_.lend(place, [&](ConstValue comm) {
    if (const auto& group = made[comm->classification()])
      ExtCommVectorAdd(std::move(comm), group->comm_);
  });
  try {
    for (std::size_t i = 0; i < made.size(); ++i) {
      if (!made[i]) continue;
      auto& set = *F::groupTable(*table, ExtCommClassification(i));
      auto equal = set.enterUnlessEqual(*made[i], shares[i].place);
      groups[i] = equal ? Mox::staticCast<const Group>(std::move(equal)) : std::move(made[i]);
    }
    groups_.groupsAre(std::move(groups), room);
  } catch (...) {
    comm_.reclaim();
    throw;
  }
  totalTransitive_ = transitive;
}

/// A list of sorted values, with room for its groups: behind the object, unless that is not enough
/// for them.
template <class F>
auto ExtCommListOf<F>::made(ExtCommVector<Value>& sorted, U32 groups) -> Mox::Ptr<List> {
  constexpr U32 most = 0xFFFF;
  const U32 pointers = sorted.size() + groups <= most ? sorted.size() + groups : 0;
  auto list = List::withTail(Tail{pointers * sizeof(void*)});
  list->tailPointers_ = U16(pointers);
  if (pointers) list->comm_.roomIs(list->tail(), sorted.size());
  list->comm_.take(sorted);
  list->comm_.sortedIs(true);
  return list;
}

/// The interned list of values that are sorted and may be in one list.
template <class F>
auto ExtCommListOf<F>::dedupValues(const Table& table, ExtCommVector<Value>& sorted, U32 place)
    -> ConstList {
  U32 present = 0;
  for (const ConstValue& value : sorted) present |= 1u << groupIndex(*value);
  auto list = made(sorted, U32(std::popcount(present)));
  list->comm_.trim();
  // Behind the values, if they stand behind the object.
  list->makeGroups(
      table, list->tailPointers_ ? const_cast<ConstValue*>(list->comm_.end()) : nullptr, place);
  return Mox::staticCast<const List>(table->dedupHashTable()->dedup(std::move(list), place));
}

}  // namespace Routing::Bgp
