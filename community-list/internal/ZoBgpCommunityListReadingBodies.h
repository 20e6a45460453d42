// Bodies of extended lists: reading, comparing, and where the intern table places them.
#pragma once

#include "Orv/Placement.h"
#include "community-list/ZoBgpCommunityListImpl.h"
#include "community/BgpHashMixImpl.h"

namespace Routing::Bgp {

template <class F>
auto ExtCommListOf<F>::comm(const Content& content) const -> ConstValue {
  return ExtCommVectorLookup(commVectorSorted(), comm_, content);
}

template <class F>
auto ExtCommListOf<F>::classificationList(ExtCommClassification classification) const
    -> ConstGroup {
  MOX_ASSERT(this->dedupState() != Orv::dedupHandleStateNeverDeduped(),
             "__null == ( this ) || ( this )->dedupState() != Orv::dedupHandleStateNeverDeduped()");
  return ConstGroup(groups_[classification]);
}

template <class F>
U32 ExtCommListOf<F>::totalCommunities() const {
  MOX_ASSERT(commVectorSorted(), "commVectorSorted()");
  return comms();
}

template <class F>
auto ExtCommListOf<F>::commSnapshot() const -> Mox::Ptr<typename F::ListSnapshot> {
  auto snapshot = Mox::makeNew<typename F::ListSnapshot>();
  for (const ConstGroup& group : groups_.present()) snapshot->classificationListIs(group);
  for (const ConstValue& comm : comm_) snapshot->commIs(comm);
  return snapshot;
}

template <class F>
U32 ExtCommListOf<F>::hash() const {
  if (groups_.empty()) return 0;
  Orv::HashMix mix;
  for (const ConstGroup& group : groups_.present()) _BgpHashMix(&mix, group.get());
  return mix.finish();
}

template <class F>
bool ExtCommListOf<F>::compare(const Orv::DedupHandle* other) const {
  return groups_ == static_cast<const ExtCommListOf*>(other)->groups_;
}

template <class Content>
const Content& contentOf(const Content& content) {
  return content;
}
template <class Value>
auto contentOf(const Mox::Ptr<const Value>& comm) {
  return comm->getContent();
}

/// `comms` are communities or their contents.
template <class F>
U32 ExtCommListOf<F>::placeOf(const auto& comms, U64 seed) {
  U64 place = seed;
  for (const auto& comm : comms)
    place = Orv::foldedProduct(F::ValueTable::place(contentOf(comm), seed) ^ place, seed | 1);
  return U32(place);
}

template <class F>
U64 ExtCommListOf<F>::placeOfMember(const Orv::DedupHandle& member, U64 seed) {
  const auto& list = static_cast<const ExtCommListOf&>(member);
  MOX_ASSERT(list.comm_.sorted(), "commVectorSorted()");
  return list.comm_.keepsWord() ? list.comm_.word() : placeOf(list.comm_, seed);
}

}  // namespace Routing::Bgp
