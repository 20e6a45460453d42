// What lists are made with, beneath their public face: rebuilding them from the store.
#pragma once

#include <algorithm>
#include <span>

#include "Mox/Trace.h"
#include "MoxStash/StoreManager.h"

namespace Routing::Bgp {

/// A list of class `T` with elements `V` from its stored record. The order of the elements and the
/// flag are kept, and the list is not interned. StoreException when the record is damaged.
template <class T, class V>
typename T::Ptr destashCommList(MoxStash::StoreReference stored,
                                const MoxStash::StoreManager& manager) {
  constexpr Mox::U32 level = 8;
  if (Mox::traceEnabled(level)) Mox::trace(level, "Destashing " + T::type.name());
  const auto& record = manager.record<typename T::Stored>(stored);
  if (record.end < record.begin || (record.end - record.begin) % sizeof(V) != 0)
    throw MoxStash::StoreException("stored list has impossible bounds");
  std::span<const V> values;
  if (const Mox::U64 count = (record.end - record.begin) / sizeof(V))
    values = {manager.records<V>(record.begin, count), std::size_t(count)};
  const bool sorted = record.commVectorSorted != 0;
  const auto notAscending = [](const V& a, const V& b) { return !(a < b); };
  if (sorted && std::adjacent_find(values.begin(), values.end(), notAscending) != values.end())
    throw MoxStash::StoreException("stored list is not in the order that it claims");
  auto list = T::restored(sorted, values);
  if (Mox::traceEnabled(level)) Mox::trace(level, "  destashed: " + list->toStrep());
  return list;
}

}  // namespace Routing::Bgp
