// Bodies of extended lists: the way to the store and back.
#pragma once

#include "community-list/ZoBgpCommunityListImpl.h"

namespace Routing::Bgp {

template <class F>
auto ExtCommListOf<F>::destash(MoxStash::StoreReference stored,
                               const MoxStash::StoreManager& manager) -> Mox::Ptr<List> {
  const auto& record = manager.record<StoredCommList>(stored);
  const auto references = storedElements<MoxStash::StoreReference>(record, manager);
  auto list = Mox::makeNew<List>();
  if (F::listRestoreIsHeard) manager.restored();
  list->comm_.reserve(U32(references.size()));
  for (const MoxStash::StoreReference reference : references)
    list->comm_.add(Value::destash(reference, manager));
  list->comm_.sortedIs(record.commVectorSorted != 0);
  checkStoredOrder(manager, list->comm_.sorted(),
                   ascends(std::span(list->comm_.begin(), list->comms()), ExtCommSortFn()));
  return list;
}

template <class F>
auto ExtCommListOf<F>::store(MoxStash::StoreWriter& writer) const -> MoxStash::StoreReference {
  return writer.once(*this, [&] {
    std::vector<MoxStash::StoreReference> references;
    references.reserve(comms());
    for (const ConstValue& comm : comm_) references.push_back(comm->store(writer));
    const bool sorted =
        comm_.sorted() && ascends(std::span(comm_.begin(), comms()), ExtCommSortFn());
    return storeCommList(writer, sorted, std::span(std::as_const(references)));
  });
}

/// Null when the contents are none that a list may have.
template <class F>
auto ExtCommListOf<F>::dedupContentsIfAllowed(const Table& table, const ValueTable& values) const
    -> ConstList {
  MOX_ASSERT(table && values, "__null != table && __null != values");
  ExtCommVector<Value> sorted;
  sorted.reserve(comms());
  for (const ConstValue& comm : comm_) sorted.add(values->dedupContent(comm->getContent()));
  ExtCommVectorSort(sorted);
  if (hasTwoLinkBandwidths(sorted)) return nullptr;
  return dedupValues(table, sorted, placeOf(sorted, table->dedupHashTable()->seed()));
}

constexpr const char* storedLinkBandwidths = "stored list has two different link bandwidths";

template <class F>
auto ExtCommListOf<F>::dedupContents(const Table& table, const ValueTable& values) const
    -> ConstList {
  if (auto list = dedupContentsIfAllowed(table, values)) return list;
  throw MoxStash::StoreException(storedLinkBandwidths);
}

template <class F>
auto ExtCommListOf<F>::dedupStored(const Table& table, const ValueTable& values,
                                   MoxStash::StoreReference stored,
                                   const MoxStash::StoreManager& manager) -> ConstList {
  if (auto list = destash(stored, manager)->dedupContentsIfAllowed(table, values)) return list;
  manager.fail(storedLinkBandwidths);
}

}  // namespace Routing::Bgp
