// Templates that lists of several types are made with: vectors of interned communities, groups
// while a list is being frozen, and the way back from the store.
//
//   ExtCommVector<ExtComm> comms;
//   ExtCommVectorAdd(comm, comms);
//   ExtCommVectorSort(comms);
//   ExtCommVectorLookup(true, comms, comm->getContent());   // comm
//
// Users of lists need none of this; authors of list types do.
#pragma once

#include "Mox/Trace.h"
#include "MoxStash/StoreManager.h"
#include "community-list/ZoBgpCommunityListFamilyList.h"

namespace Routing::Bgp {

// --- Vectors of interned communities.

/// Less by content. `T` is a pointer, owning or not, to a community of any family.
struct ExtCommSortFn {
  /// REQUIRES: neither is null.
  bool operator()(const auto& a, const auto& b) const { return a->getContent() < b->getContent(); }
};
/// Equal by content.
struct ExtCommCompareFn {
  /// REQUIRES: neither is null.
  bool operator()(const auto& a, const auto& b) const { return a->getContent() == b->getContent(); }
};

/// Appends an interned community; amortized O(1). Asserts "__null != comm", and that the community
/// is interned.
template <class T>
void ExtCommVectorAdd(Mox::Ptr<const T> comm, ExtCommVector<T>& vector) {
  MOX_ASSERT(comm, "__null != comm");
  MOX_ASSERT(comm->dedupState() != Orv::dedupHandleStateNeverDeduped(),
             "__null == ( comm ) || ( comm )->dedupState() != Orv::dedupHandleStateNeverDeduped()");
  vector.add(std::move(comm));
}

/// The community of a content, or null; O(log n). REQUIRES: the vector is sorted. Asserts
/// "commVectorSorted"; a vector that is not sorted in fact may assert "extComm->community() >
/// community".
template <class T>
Mox::Ptr<const T> ExtCommVectorLookup(bool commVectorSorted, const ExtCommVector<T>& vector,
                                      const typename T::Content& community) {
  MOX_ASSERT(commVectorSorted, "commVectorSorted");
  const auto found = std::lower_bound(
      vector.begin(), vector.end(), community,
      [](const auto& extComm, const auto& content) { return extComm->getContent() < content; });
  if (found == vector.end()) return nullptr;
  if ((*found)->getContent() == community) return *found;
  MOX_ASSERT((*found)->getContent() > community, "extComm->community() > community");
  return nullptr;
}

/// Sorts by content, keeps one of equal ones, trims the storage.
template <class T>
void ExtCommVectorSort(ExtCommVector<T>& vector) {
  vector.sortAndTrim(ExtCommSortFn(), ExtCommCompareFn());
}

// --- Groups while a list is being frozen.

template <class F>
using ExtCommNewGroups =
    std::array<Mox::Ptr<typename F::Group>, extCommClassificationOneBeyondLast>;

/// Enters a group under its classification.
template <class F>
void ExtCommListClassificationListIs(ExtCommNewGroups<F>& groups,
                                     const Mox::Ptr<typename F::Group>& group) {
  groups[group->classification()] = group;
}

/// The group of a classification, made with room for so many members if there is none.
template <class F>
typename F::Group& ExtCommListFindOrCreateClassificationList(ExtCommNewGroups<F>& groups,
                                                             ExtCommClassification classification,
                                                             U32 members) {
  const auto& _classificationList = groups[classification];
  MOX_ASSERT(!_classificationList ||
                 _classificationList->dedupState() == Orv::dedupHandleStateNeverDeduped(),
             "__null == ( _classificationList ) || ( _classificationList )->dedupState() == "
             "Orv::dedupHandleStateNeverDeduped()");
  if (!_classificationList)
    ExtCommListClassificationListIs<F>(groups, F::makeGroup(classification, members));
  return *_classificationList;
}

// --- The store.

constexpr U32 destashTraceLevel = 8;

/// The elements of a stored list. StoreException when they cannot be there.
template <class Element>
std::span<const Element> storedElements(const StoredCommList& record,
                                        const MoxStash::StoreManager& manager) {
  if (record.end < record.begin || (record.end - record.begin) % sizeof(Element) != 0)
    manager.fail("stored list has impossible bounds");
  const U64 count = (record.end - record.begin) / sizeof(Element);
  if (count > CommVector<Element>::longest) manager.fail("stored list is too long");
  if (count == 0) return {};
  return {manager.records<Element>(record.begin, count), std::size_t(count)};
}

/// StoreException when a stored list says that it is sorted and is not.
inline void checkStoredOrder(const MoxStash::StoreManager& manager, bool sorted, bool ascending) {
  if (sorted && !ascending) manager.fail("stored list is not in the order that it claims");
}

/// A list of class `T` with elements `V` from its stored record. The order of the elements and the
/// flag are kept, and the list is not interned. StoreException when the record is damaged.
template <class T, class V>
typename T::Ptr destashCommList(MoxStash::StoreReference stored,
                                const MoxStash::StoreManager& manager) {
  if (Mox::traceEnabled(destashTraceLevel))
    Mox::trace(destashTraceLevel, "Destashing " + T::type.name());
  const auto& record = manager.record<StoredCommList>(stored);
  const auto values = storedElements<V>(record, manager);
  const bool sorted = record.commVectorSorted != 0;
  checkStoredOrder(manager, sorted, ascends(values));
  auto list = T::restored(sorted, values);
  if (Mox::traceEnabled(destashTraceLevel))
    Mox::trace(destashTraceLevel, "  destashed: " + list->toStrep());
  return list;
}

}  // namespace Routing::Bgp
