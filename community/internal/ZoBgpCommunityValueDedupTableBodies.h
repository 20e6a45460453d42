// Bodies of the intern tables of extended communities. REQUIRES: only the source that defines a
// table includes this and instantiates them; everybody else links that.
#pragma once

#include <cstring>

#include "Mox/ValueText.h"
#include "attr/ZoBgpGlobals.h"
#include "community/ZoBgpCommunityValueDedupTable.h"

namespace Routing::Bgp {

template <class Table, class Value>
ExtCommValueDedupTable<Table, Value>::ExtCommValueDedupTable(const Mox::Ptr<const Rule>& rule)
    : parseExtCommRule_(rule) {
  Mox::refuseNull(rule, Table::type.name(), "parseExtCommRule");
  handleInitialized();
}

template <class Table, class Value>
void ExtCommValueDedupTable<Table, Value>::handleInitialized() {
  dedupHashTable_ = Orv::DedupHashTableUnorderedSet::DedupHashTableUnorderedSetIs(
      ZoBgpGlobals::multiThreaded(), {placeOfMember, placeOfContent});
}

template <class Table, class Value>
auto ExtCommValueDedupTable<Table, Value>::dedupContent(
    const typename Value::Content& content) const -> Mox::Ptr<const Value> {
  const U64 place = Table::place(content, dedupHashTable_->seed());
  auto object = dedupHashTable_->lookup(place, [&](const Orv::DedupHandle& member) {
    return static_cast<const Value&>(member).getContent() == content;
  });
  if (!object) {
    auto made = Table::parse(*parseExtCommRule_, content);
    // An object of another content would be lost in the table.
    MOX_ASSERT(!made || made->getContent() == content, "getContent() == content");
    object = dedupHashTable_->dedup(std::move(made), place);
  }
  MOX_ASSERT(object, "dedupHandle");
  return Mox::staticCast<const Value>(std::move(object));
}

template <class Table, class Value>
void ExtCommValueDedupTable<Table, Value>::dumpState(
    const Mox::Ptr<const Orv::DumpContext>& context, U32 indent) const {
  dedupHashTable_->dumpState(context, indent);
}

template <class Table, class Value>
U64 ExtCommValueDedupTable<Table, Value>::placeOfMember(const Orv::DedupHandle& member, U64 seed) {
  return Table::place(static_cast<const Value&>(member).getContent(), seed);
}

template <class Table, class Value>
U64 ExtCommValueDedupTable<Table, Value>::placeOfContent(const Orv::DedupContentHandle& content,
                                                         U64 seed) {
  typename Value::Content copy;
  std::memcpy(&copy, content.octets, sizeof copy);
  return Table::place(copy, seed);
}

/// The names by which reflection knows both tables.
template <class Table>
std::vector<Mox::Attribute> extCommDedupTableAttributes() {
  return {Mox::attribute<&Table::dedupHashTable>("dedupHashTable"),
          Mox::attribute<&Table::parseExtCommRule>("parseExtCommRule"),
          Mox::operation("handleInitialized"), Mox::operation("dumpState")};
}

}  // namespace Routing::Bgp
