// Bodies of groups of extended lists: building, freezing, reading, text.
#pragma once

#include "Orv/DedupHashTableUnorderedSet.h"
#include "community-list/ZoBgpCommunityListImpl.h"
#include "community-list/internal/ZoBgpCommunityListCommTexts.h"
#include "community/BgpHashMixImpl.h"

namespace Routing::Bgp {

/// The index of a community's group in a list. REQUIRES: no plug-in brings a classification of its
/// own. Asserts "classification < extCommClassificationOneBeyondLast".
template <class Value>
U32 groupIndex(const Value& comm) {
  const U32 classification = comm.classification();
  MOX_ASSERT(classification < extCommClassificationOneBeyondLast,
             "classification < extCommClassificationOneBeyondLast");
  return classification;
}

template <class F>
template <class Group>
Mox::Ptr<Group> ExtCommGroupOf<F>::withRoom(ExtCommClassification classification, U32 members) {
  constexpr U32 most = 0xFFFF;
  const auto pointers = U16(members <= most ? members : 0);
  auto group = Group::withTail(Tail{pointers * sizeof(void*)}, classification);
  group->tailPointers_ = pointers;
  if (pointers) group->comm_.roomIs(group->tail(), pointers);
  return group;
}

template <class F>
void ExtCommGroupOf<F>::commIs(const ConstValue& comm) {
  MOX_ASSERT(this->dedupState() == Orv::dedupHandleStateNeverDeduped(),
             "__null == ( this ) || ( this )->dedupState() == Orv::dedupHandleStateNeverDeduped()");
  ExtCommVectorAdd(comm, comm_);
}

template <class F>
auto ExtCommGroupOf<F>::comm(const Content& content) const -> ConstValue {
  return ExtCommVectorLookup(commVectorSorted(), comm_, content);
}

template <class F>
auto ExtCommGroupOf<F>::dedup(const Table& table) -> Mox::Ptr<const typename F::Group> {
  MOX_ASSERT(table, "__null != table");
  Mox::Ptr<Orv::DedupHandle> reference(this);
  if (this->dedupState() == Orv::dedupHandleStateNeverDeduped()) {
    ExtCommVectorSort(comm_);
    comm_.sortedIs(true);
  }
  groupIndex(*this);
  assertLinkBandwidths(classification(), comms());
  F::assertClass(static_cast<const typename F::Group&>(*this));
  return Mox::staticCast<const typename F::Group>(
      F::groupTable(*table, classification())->dedup(std::move(reference)));
}

template <class F>
void ExtCommGroupOf<F>::assertLinkBandwidths(U32 classification, U32 comms) {
  if (F::oneLinkBandwidth && classification == extCommClassificationLinkBandwidth)
    MOX_ASSERT(comms <= 1, "comms() <= 1");
}

template <class F>
auto ExtCommGroupOf<F>::commSnapshot() const -> Mox::Ptr<typename F::GroupSnapshot> {
  auto snapshot = Mox::makeNew<typename F::GroupSnapshot>(classification());
  for (const ConstValue& comm : comm_) snapshot->commIs(comm);
  return snapshot;
}

template <class F>
U32 ExtCommGroupOf<F>::hash() const {
  MOX_ASSERT(commVectorSorted(), "commVectorSorted()");
  if (comm_.empty()) return 0;
  Orv::HashMix mix;
  for (const ConstValue& comm : comm_) _BgpHashMix(&mix, comm.get());
  return mix.finish();
}

template <class F>
bool ExtCommGroupOf<F>::compare(const Orv::DedupHandle* other) const {
  MOX_ASSERT(commVectorSorted(), "commVectorSorted()");
  const auto& theirs = static_cast<const ExtCommGroupOf*>(other)->comm_;
  return std::equal(comm_.begin(), comm_.end(), theirs.begin(), theirs.end());
}

template <class F>
std::ostream& ExtCommGroupOf<F>::writeTo(std::ostream& stream) const {
  Mox::writeText(stream << classification(), " : ");
  return writeSeparated(stream, comm_);
}

template <class F>
Mox::String ExtCommGroupOf<F>::toStrep() const {
  return streamText([this](std::ostream& stream) { writeTo(stream); });
}

template <class F>
U64 ExtCommGroupOf<F>::placeOfMember(const Orv::DedupHandle& member, U64 seed) {
  const auto& comm = static_cast<const ExtCommGroupOf&>(member).comm_;
  MOX_ASSERT(comm.sorted(), "commVectorSorted()");
  U64 place = 0;
  for (const ConstValue& value : comm) place = placeWith(place, *value, seed);
  return place;
}

}  // namespace Routing::Bgp
