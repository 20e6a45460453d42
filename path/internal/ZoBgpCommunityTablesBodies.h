// Bodies of the front door. A source that has list types of its own includes them; everybody else
// links those of the library.
#pragma once

#include "path/ZoBgpCommunityTables.h"

namespace Routing::Bgp {

/// A table of lists, ready for use. Some tables complete themselves when they are constructed, the
/// others in two steps, as their factories do.
template <class Table>
Mox::Ptr<Table> readyListTable() {
  auto table = Mox::makeNew<Table>();
  if (table->dedupHashTable()) return table;
  table->initDedupTable();
  if constexpr (requires { table->handleInitialized(); }) table->handleInitialized();
  return table;
}

template <class List>
CommunityListTables<List>::CommunityListTables(const BgpParseExtendedCommunityRule::Ptr& rule)
    : lists_(readyListTable<typename List::Table::Object>()) {
  if constexpr (InternsValues<List>)
    values_ = Mox::makeNew<typename List::ValueTable::Object>(rule);
}

template <class List>
FromWire<const List> CommunityListTables<List>::dedupWire(std::span<const U8> octets) const {
  if constexpr (InternsValues<List>)
    return List::dedupWire(lists_, values_, octets);
  else
    return List::dedupWire(lists_, octets);
}

template <class List>
Mox::Ptr<const List> CommunityListTables<List>::dedupStored(
    MoxStash::StoreReference stored, const MoxStash::StoreManager& store) const {
  if constexpr (InternsValues<List>)
    return List::dedupStored(lists_, values_, stored, store);
  else
    return List::dedupStored(lists_, stored, store);
}

template <class... Lists>
template <class List>
std::optional<PathFault> CommunityTablesOf<PathCommunitiesOf<Lists...>>::readValue(
    std::span<const U8> value, Path& path) const {
  auto read = of<List>().dedupWire(value);
  if (read.fault)
    return PathFault{PathFaultReason::malformedValue, List::pathAttribute, 0, {}, read.fault};
  path.template listIs<List>(std::move(read.list));
  return std::nullopt;
}

template <class... Lists>
std::optional<PathFault> CommunityTablesOf<PathCommunitiesOf<Lists...>>::read(
    BgpPathAttrType type, std::span<const U8> value, Path& path) const {
  std::optional<PathFault> fault;
  const auto readOf = [&]<class List>(const Mox::Ptr<const List>& known) {
    if (type != List::pathAttribute) return;
    if (known)
      fault = PathFault{PathFaultReason::repeated, type};
    else
      fault = readValue<List>(value, path);
  };
  (readOf(path.template list<Lists>()), ...);
  return fault;
}

template <class... Lists>
template <class List>
void CommunityTablesOf<PathCommunitiesOf<Lists...>>::readOne(const PathAttribute& attribute,
                                                             Path& path, Seen& seen,
                                                             PathFaults& faults) const {
  const auto& [flags, type, offset, octets] = attribute;
  if (type != List::pathAttribute) return;
  const U8 code = U8(type);
  if (seen.once[code] || path.template list<List>()) {
    if (!seen.twice[code]) faults.add({PathFaultReason::repeated, type, offset});
    seen.twice.set(code);
    return;
  }
  seen.once.set(code);
  constexpr U32 expected = U32(BgpPathAttrFlag::optionalTransitive);
  if ((U32(flags) & expected) != expected)
    faults.add({PathFaultReason::wrongFlags, type, offset, flags});
  if (auto fault = readValue<List>(octets, path)) {
    fault->offset = offset;
    faults.add(*fault);
  }
}

template <class... Lists>
PathFaults CommunityTablesOf<PathCommunitiesOf<Lists...>>::readAll(std::span<const U8> attributes,
                                                                   Path& path) const {
  PathFaults faults;
  Seen seen;
  PathAttributeReader in(attributes);
  while (const auto attribute = in.next()) (readOne<Lists>(*attribute, path, seen, faults), ...);
  if (const auto& overrun = in.overrun())
    faults.add({PathFaultReason::overrun, overrun->type, overrun->offset, {}, {}, overrun});
  return faults;
}

}  // namespace Routing::Bgp
