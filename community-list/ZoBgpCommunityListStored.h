// A list in the agent's store.
//
//    begin            end   reference
//    |                |     |
//    elements ........      record
//
// Standard lists have 4 octets per community and large ones 12, in the machine's byte order;
// extended lists have references to their communities, which lists share.
#pragma once

#include "MoxStash/StoreWriter.h"
#include "attr/BgpPathAttributeEnums.h"

namespace Routing::Bgp {

/// `begin`, `end` and `capacity` are references: to the values themselves in lists of plain values,
/// to one reference per community in extended lists.
struct StoredCommList {
  MoxStash::StoreReference begin, end, capacity;
  U32 commVectorSorted;
  U32 unused;
};
static_assert(offsetof(StoredCommList, begin) == offsetof(MoxStash::StoredExtent, begin) &&
              offsetof(StoredCommList, end) == offsetof(MoxStash::StoredExtent, end));

/// The record type of lists of such an attribute.
constexpr MoxStash::RecordType storedListType(BgpPathAttrType attribute) {
  return MoxStash::recordTypeHasExtent | MoxStash::RecordType(attribute);
}

/// Appends the elements of a list and its record.
template <class Element>
MoxStash::StoreReference storeCommList(MoxStash::StoreWriter& writer, bool sorted,
                                       std::span<const Element> elements) {
  const MoxStash::StoreReference begin = writer.append(elements);
  const MoxStash::StoreReference end = begin + elements.size_bytes();
  return writer.append(StoredCommList{begin, end, end, sorted, 0});
}

}  // namespace Routing::Bgp
