// Bodies of extended lists: the way to the wire and back.
//
// An attribute is decoded and sorted on the stack, and looked up by its contents. Only when that
// finds nothing are the values interned and a list made of them.
#pragma once

#include "Orv/DedupHashTableUnorderedSet.h"
#include "attr/ZoBgpSerialize.h"
#include "community-list/ZoBgpCommunityListImpl.h"

namespace Routing::Bgp {

template <class F>
Mox::String ExtCommListOf<F>::serialize(bool sendNonTransExtComms) const {
  MOX_ASSERT(commVectorSorted(), "commVectorSorted()");
  const auto isSent = [&](const ConstValue& comm) {
    return sendNonTransExtComms || comm->transitive();
  };
  const auto count = U32(std::count_if(comm_.begin(), comm_.end(), isSent));
  if (count == 0) return {};
  return pathAttributeString(F::attribute, BgpPathAttrFlag::optionalTransitive,
                             count * U32(sizeof(Content)), [&](U8* at) {
                               for (const ConstValue& comm : comm_)
                                 if (isSent(comm))
                                   at = std::ranges::copy(wireOctets(comm->getContent()), at).out;
                             });
}

/// Interns the contents on the way to a list.
template <class F>
template <class Use>
auto ExtCommListOf<F>::withValues(const ValueTable& table, std::span<const Content> contents,
                                  Use use) {
  return withScratch<void*>(contents.size(), [&](void** scratch) {
    ExtCommVector<Value> values;
    values.roomIs(scratch, U32(contents.size()));
    for (const Content& content : contents) values.add(table->dedupContent(content));
    return use(values);
  });
}

template <class Value>
bool isLinkBandwidth(const Mox::Ptr<const Value>& comm) {
  return comm->classification() == extCommClassificationLinkBandwidth;
}

/// Whether a list must not be of these distinct communities.
template <class F>
bool ExtCommListOf<F>::hasTwoLinkBandwidths(const ExtCommVector<Value>& comms) {
  return F::oneLinkBandwidth &&
         std::count_if(comms.begin(), comms.end(), isLinkBandwidth<Value>) > 1;
}

/// Names the second in the attribute that differs from the first. There is one.
template <class F>
WireFault ExtCommListOf<F>::linkBandwidthFault(std::span<const U8> octets,
                                               const ExtCommVector<Value>& values) {
  constexpr auto size = U32(sizeof(Content));
  std::optional<Content> first;
  for (U32 offset = 0;; offset += size) {
    const Content content = fromWireOctets<Content>(octets.data() + offset);
    if (!isLinkBandwidth(ExtCommVectorLookup(true, values, content))) continue;
    if (first && *first != content)
      return {F::attribute, WireFault::Reason::linkBandwidth, offset, size, size};
    first = content;
  }
}

template <class F>
auto ExtCommListOf<F>::fromWire(const ValueTable& table, std::span<const U8> octets)
    -> FromWire<List> {
  MOX_ASSERT(table, "__null != table");
  if (const auto fault = checkWireLength(F::attribute, octets.size(), sizeof(Content)))
    return {nullptr, fault, 0};
  const std::size_t count = octets.size() / sizeof(Content);
  return withScratch<Content>(count, [&](Content* scratch) {
    const auto sorted = decodeAscending(octets, scratch);
    return withValues(table, sorted, [&](ExtCommVector<Value>& values) -> FromWire<List> {
      if (hasTwoLinkBandwidths(values)) [[unlikely]]
        return {nullptr, linkBandwidthFault(octets, values), 0};
      return {made(values, 0), std::nullopt, U32(count - sorted.size())};
    });
  });
}

template <class F>
template <bool insert>
auto ExtCommListOf<F>::findWire(const Table& table, const ValueTable* valueTable,
                                std::span<const U8> octets) -> FromWire<const List> {
  MOX_ASSERT(table && (!insert || *valueTable), "__null != table && __null != values");
  if (const auto fault = checkWireLength(F::attribute, octets.size(), sizeof(Content)))
    return {nullptr, fault, 0};
  const std::size_t count = octets.size() / sizeof(Content);
  return withScratch<Content>(count, [&](Content* scratch) -> FromWire<const List> {
    const auto sorted = decodeAscending(octets, scratch);
    const auto repeats = U32(count - sorted.size());
    auto& set = *table->dedupHashTable();
    const U32 place = placeOf(sorted, set.seed());
    auto found = set.lookup(place, [&](const Orv::DedupHandle& member) {
      const auto& list = static_cast<const ExtCommListOf&>(member);
      return std::equal(list.comm_.begin(), list.comm_.end(), sorted.begin(), sorted.end(),
                        [](auto& comm, auto& content) { return comm->getContent() == content; });
    });
    if (!insert || found)
      return {Mox::staticCast<const List>(std::move(found)), std::nullopt, repeats};
    return withValues(*valueTable, sorted, [&](auto& values) -> FromWire<const List> {
      if (hasTwoLinkBandwidths(values)) [[unlikely]]
        return {nullptr, linkBandwidthFault(octets, values), 0};
      return {dedupValues(table, values, place), std::nullopt, repeats};
    });
  });
}

template <class F>
auto ExtCommListOf<F>::lookupWire(const Table& table, std::span<const U8> octets)
    -> FromWire<const List> {
  return findWire<false>(table, nullptr, octets);
}

template <class F>
auto ExtCommListOf<F>::dedupWire(const Table& table, const ValueTable& values,
                                 std::span<const U8> octets) -> FromWire<const List> {
  return findWire<true>(table, &values, octets);
}

}  // namespace Routing::Bgp
