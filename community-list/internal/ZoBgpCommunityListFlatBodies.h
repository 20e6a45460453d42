// Bodies of flat lists. REQUIRES: only the source that defines a list type includes this and
// instantiates them; everybody else links that.
#pragma once

#include <cstring>

#include "Orv/DedupHashTableUnorderedSet.h"
#include "Orv/HashMix.h"
#include "Orv/Placement.h"
#include "attr/ZoBgpSerialize.h"
#include "community-list/ZoBgpCommunityListFlat.h"

namespace Routing::Bgp {

template <class List, class Traits>
void FlatCommList<List, Traits>::commIs(const Value& value) {
  MOX_ASSERT(!commVectorSorted(), "!commVectorSorted()");
  comm_.add(value);
}

template <class List, class Traits>
auto FlatCommList<List, Traits>::dedup(const Table& table) -> ConstList {
  MOX_ASSERT(table, "__null != table");
  auto* const self = static_cast<List*>(this);
  Mox::Ptr<Orv::DedupHandle> reference(self);
  if (this->dedupState() == Orv::dedupHandleStateNeverDeduped()) {
    if (!commVectorSorted()) comm_.sortAndTrim();
    comm_.sortedIs(true);
    frozenAt(placeOf(values(), table->dedupHashTable()->seed()));
  }
  return Mox::staticCast<const List>(table->dedup(std::move(reference)));
}

/// Keeps what is computed once, and the place in the table: all tables of a process have one seed.
template <class List, class Traits>
void FlatCommList<List, Traits>::frozenAt(U32 place) {
  cached_ = typename Traits::Cached(static_cast<const List&>(*this));
  comm_.wordIs(place);
}

template <class List, class Traits>
bool FlatCommList<List, Traits>::same(std::span<const Value> a, std::span<const Value> b) {
  return a.size() == b.size() &&
         (a.empty() || std::memcmp(a.data(), b.data(), a.size_bytes()) == 0);
}

template <class List, class Traits>
U32 FlatCommList<List, Traits>::placeOf(std::span<const Value> values, U64 seed) {
  return U32(Orv::placeOf(values.data(), values.size_bytes(), seed));
}

template <class List, class Traits>
U64 FlatCommList<List, Traits>::placeOfMember(const Orv::DedupHandle& member, U64 seed) {
  const auto& list = static_cast<const List&>(member);
  return list.comm_.keepsWord() ? list.comm_.word() : placeOf(list.values(), seed);
}

template <class List, class Traits>
U32 FlatCommList<List, Traits>::hash() const {
  if (values().empty()) return 0;
  Orv::HashMix mix;
  forEachWord(values(), [&](U32 word) { mix.feed(word); });
  return mix.finish();
}

template <class List, class Traits>
bool FlatCommList<List, Traits>::compare(const Orv::DedupHandle* other) const {
  return same(values(), static_cast<const List*>(other)->values());
}

template <class List, class Traits>
Mox::String FlatCommList<List, Traits>::serialize() const {
  const auto all = values();
  return pathAttributeString(Traits::attribute, BgpPathAttrFlag::optionalTransitive,
                             U32(all.size_bytes()), [all](U8* at) {
                               forEachWord(all, [&](U32 word) {
                                 Zonet::storeNetworkOrder(at, word);
                                 at += sizeof word;
                               });
                             });
}

template <class List, class Traits>
MoxStash::StoreReference FlatCommList<List, Traits>::store(MoxStash::StoreWriter& writer) const {
  return writer.once(*this, [&] { return storeCommList(writer, comm_.sorted(), unchecked()); });
}

template <class List, class Traits>
Mox::Ptr<List> FlatCommList<List, Traits>::restored(bool sorted, std::span<const Value> values) {
  if (sorted) return frozen(values);
  auto list = Mox::makeNew<List>();
  list->comm_.reserve(U32(values.size()));
  for (const Value& value : values) list->commIs(value);
  return list;
}

template <class List, class Traits>
Mox::Ptr<List> FlatCommList<List, Traits>::frozen(std::span<const Value> ascending) {
  auto list = List::withTail(Tail{ascending.size_bytes()});
  list->comm_.roomIs(list->tail(), U32(ascending.size()));
  for (const Value& value : ascending) list->comm_.add(value);
  list->comm_.sortedIs(true);
  return list;
}

template <class List, class Traits>
FromWire<List> FlatCommList<List, Traits>::fromWire(std::span<const U8> octets) {
  if (auto fault = checkWireLength(Traits::attribute, octets.size(), sizeof(Value)))
    return {nullptr, fault, 0};
  const std::size_t count = octets.size() / sizeof(Value);
  return withScratch<Value>(count, [&](Value* scratch) -> FromWire<List> {
    const auto sorted = decodeAscending(octets, scratch);
    return {restored(true, sorted), std::nullopt, U32(count - sorted.size())};
  });
}

template <class List, class Traits>
template <bool insert>
FromWire<const List> FlatCommList<List, Traits>::findWire(const Table& table,
                                                          std::span<const U8> octets) {
  MOX_ASSERT(table, "__null != table");
  if (auto fault = checkWireLength(Traits::attribute, octets.size(), sizeof(Value))) [[unlikely]]
    return {nullptr, fault, 0};
  const std::size_t count = octets.size() / sizeof(Value);
  return withScratch<Value>(count, [&](Value* scratch) -> FromWire<const List> {
    const auto sorted = decodeAscending(octets, scratch);
    const auto& set = *table->dedupHashTable();
    const U32 place = placeOf(sorted, set.seed());
    auto found = set.lookup(place, [&](const Orv::DedupHandle& member) {
      return same(static_cast<const List&>(member).unchecked(), sorted);
    });
    if (insert && !found) {
      auto list = frozen(sorted);
      list->frozenAt(place);
      found = table->dedupHashTable()->dedup(std::move(list), place);
    }
    return {Mox::staticCast<const List>(std::move(found)), std::nullopt,
            U32(count - sorted.size())};
  });
}

template <class List, class Traits>
FromWire<const List> FlatCommList<List, Traits>::lookupWire(const Table& table,
                                                            std::span<const U8> octets) {
  return findWire<false>(table, octets);
}

template <class List, class Traits>
FromWire<const List> FlatCommList<List, Traits>::dedupWire(const Table& table,
                                                           std::span<const U8> octets) {
  return findWire<true>(table, octets);
}

}  // namespace Routing::Bgp
