// The bodies of extended lists and their groups, the same for both families; only the sources that
// define a family include this.
#pragma once

#include "Orv/DedupHashTableUnorderedSet.h"
#include "attr/ZoBgpSerialize.h"
#include "community-list/ZoBgpCommunityListImpl.h"
#include "community/BgpHashMixImpl.h"

namespace Routing::Bgp {

template <class Group>
void ExtCommGroupVector<Group>::groupsAre(Slots groups, void* room) {
  clear();
  U32 count = 0;
  for (const Slot& group : groups) count += bool(group);
  inside_ = room != nullptr;
  if (count == 0) return;
  slots_ = inside_ ? static_cast<Slot*>(room) : Allocator().allocate(count);
  Slot* at = slots_;
  for (U32 classification = 0; classification < groups.size(); ++classification) {
    if (!groups[classification]) continue;
    new (at++) Slot(std::move(groups[classification]));
    present_ |= U16(1u << classification);
  }
}

template <class Group>
void ExtCommGroupVector<Group>::clear() {
  const std::size_t count = present().size();
  std::destroy_n(slots_, count);
  if (slots_ && !inside_) Allocator().deallocate(slots_, count);
  slots_ = nullptr;
  present_ = 0;
}

/// The place of a community's group among those of a list. Plug-ins bring no classification of
/// their own.
template <class Value>
U32 groupIndex(const Value& comm) {
  const U32 classification = comm.classification();
  MOX_ASSERT(classification < extCommClassificationOneBeyondLast,
             "classification < extCommClassificationOneBeyondLast");
  return classification;
}

// --- Groups.

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
  Mox::Ptr<Orv::DedupHandle> reference(this);
  if (this->dedupState() == Orv::dedupHandleStateNeverDeduped()) {
    ExtCommVectorSort(comm_);
    comm_.sortedIs(true);
    comm_.placeIs(U32(Orv::placeOf(comm_.begin(), comm_.sizeInOctets(), Orv::placementSeed())));
  }
  groupIndex(*this);
  if (F::oneLinkBandwidth && classification() == extCommClassificationLinkBandwidth)
    MOX_ASSERT(comms() <= 1, "comms() <= 1");
  return Mox::staticCast<const typename F::Group>(
      F::groupTable(*table, static_cast<const typename F::Group&>(*this))
          ->dedup(std::move(reference)));
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
  if (seed == Orv::placementSeed()) return comm.place();
  return U32(Orv::placeOf(comm.begin(), comm.sizeInOctets(), seed));
}

// --- Lists.

template <class F>
void ExtCommListOf<F>::assertNeverDeduped() const {
  MOX_ASSERT(this->dedupState() == Orv::dedupHandleStateNeverDeduped(),
             "__null == ( this ) || ( this )->dedupState() == Orv::dedupHandleStateNeverDeduped()");
}

template <class F>
void ExtCommListOf<F>::commIs(const ConstValue& comm) {
  assertNeverDeduped();
  ExtCommVectorAdd(comm, comm_);
}

template <class F>
void ExtCommListOf<F>::append(const ConstList& other) {
  assertNeverDeduped();
  const U32 count = other ? other->comms() : 0;  // the other may be this one
  for (U32 i = 0; i < count; ++i) comm_.add(other->comm_[i]);
}

template <class F>
void ExtCommListOf<F>::appendClassificationList(const ConstGroup& group) {
  assertNeverDeduped();
  if (!group) return;
  for (const ConstValue& comm : group->commVector()) comm_.add(comm);
}

template <class F>
void ExtCommListOf<F>::expectedCommunityCountIs(U32 count) {
  assertNeverDeduped();
  comm_.reserve(count);
}

template <class F>
void ExtCommListOf<F>::sortComms() {
  assertNeverDeduped();
  ExtCommVectorSort(comm_);
  comm_.sortedIs(true);
}

template <class F>
auto ExtCommListOf<F>::dedup(const Table& table) -> ConstList {
  assertNeverDeduped();
  Mox::Ptr<Orv::DedupHandle> reference(static_cast<List*>(this));
  sortComms();
  makeGroups(table, nullptr);
  comm_.placeIs(placeOf(comm_, Orv::placementSeed()));
  try {
    return Mox::staticCast<const List>(table->dedup(std::move(reference)));
  } catch (...) {
    groups_.groupsAre({}, nullptr);  // as if nothing had been tried
    throw;
  }
}

/// Groups the sorted communities and interns the groups.
template <class F>
void ExtCommListOf<F>::makeGroups(const Table& table, void* room) {
  std::array<U32, extCommClassificationOneBeyondLast> members{};
  U32 transitive = 0;
  for (const ConstValue& comm : comm_) {
    ++members[groupIndex(*comm)];
    transitive += comm->transitive();
  }
  ExtCommNewGroups<F> groups;
  for (const ConstGroup& group : groups_.present())  // of an earlier call: refused below
    groups[group->classification()] = Mox::Ptr<Group>(const_cast<Group*>(group.get()));
  for (const ConstValue& comm : comm_) {
    const ExtCommClassification classification = comm->classification();
    ExtCommListFindOrCreateClassificationList<F>(groups, classification, members[classification])
        .commIs(comm);
  }
  typename ExtCommGroupVector<Group>::Slots interned;
  for (std::size_t i = 0; i < groups.size(); ++i) {
    if (!groups[i]) continue;
    interned[i] = groups[i]->dedup(table);
    MOX_ASSERT(interned[i]->commVectorSorted(), "_classificationList->commVectorSorted()");
  }
  groups_.groupsAre(std::move(interned), room);
  totalTransitive_ = transitive;
}

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
  const auto& comm = static_cast<const ExtCommListOf&>(member).comm_;
  MOX_ASSERT(comm.sorted(), "commVectorSorted()");
  if (seed == Orv::placementSeed()) return comm.place();
  return placeOf(comm, seed);
}

// --- Their text.

template <class F>
Mox::String ExtCommListOf<F>::commsStringForm() const {
  return policyTexts(comm_, strepFormatClassification);
}

template <class F>
Mox::String ExtCommListOf<F>::toStrep() const {
  return streamText([this](std::ostream& stream) { writeTo(stream); });
}

/// The communities are held for themselves, so that the list may go while its text is written.
template <class F>
std::ostream& ExtCommListOf<F>::writeTo(std::ostream& stream) const {
  const std::vector<ConstValue> held(comm_.begin(), comm_.end());
  Mox::writeText(stream, "[ ");
  writeSeparated(stream, held);
  return Mox::writeText(stream, " ]");
}

template <class F>
Mox::String ExtCommListOf<F>::groupsText() const {
  Mox::String text;
  for (const ConstGroup& group : groups_.present())
    text += (text.empty() ? "" : "; ") + group->toStrep();
  return text;
}

// --- Their way to the wire and back.

template <class F>
Mox::String ExtCommListOf<F>::serialize(bool sendNonTransExtComms) const {
  MOX_ASSERT(commVectorSorted(), "commVectorSorted()");
  const auto isSent = [&](const ConstValue& comm) {
    return sendNonTransExtComms || comm->transitive();
  };
  const auto count = U32(std::count_if(comm_.begin(), comm_.end(), isSent));
  if (count == 0) return {};
  SerializePathAttribute out(F::attribute, BgpPathAttrFlag::optionalTransitive,
                             count * U32(sizeof(Content)));
  for (const ConstValue& comm : comm_)
    if (isSent(comm))
      std::ranges::copy(wireOctets(comm->getContent()), out.append(sizeof(Content)));
  return out.serializedString();
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

/// A list of sorted values, with room for its groups: behind the object, unless that is not enough
/// for them.
template <class F>
auto ExtCommListOf<F>::made(ExtCommVector<Value>& sorted, U32 groups) -> Mox::Ptr<List> {
  constexpr U32 most = 0xFFFF;
  const U32 pointers = sorted.size() + groups <= most ? sorted.size() + groups : 0;
  auto list = List::withTail(Tail{pointers * sizeof(void*)});
  list->tailPointers_ = U16(pointers);
  if (pointers) list->comm_.roomIs(list->tail(), sorted.size());
  list->comm_.take(sorted);
  list->comm_.sortedIs(true);
  return list;
}

/// The interned list of values that are sorted and may be in one list.
template <class F>
auto ExtCommListOf<F>::dedupValues(const Table& table, ExtCommVector<Value>& sorted, U32 place)
    -> ConstList {
  U32 present = 0;
  for (const ConstValue& value : sorted) present |= 1u << groupIndex(*value);
  auto list = made(sorted, U32(std::popcount(present)));
  // Behind the values, if they stand behind the object.
  list->makeGroups(table,
                   list->tailPointers_ ? const_cast<ConstValue*>(list->comm_.end()) : nullptr);
  list->comm_.trim();
  list->comm_.placeIs(place);
  return Mox::staticCast<const List>(table->dedupHashTable()->dedup(std::move(list), place));
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

// --- The store.

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

// --- What they have by name, for reflection.

template <class Group>
std::vector<Mox::Attribute> extCommGroupAttributes() {
  using Mox::attribute, Mox::operation;
  return {attribute<&Group::classification>("classification"),
          Mox::collection<&Group::comms>("comm"),
          attribute<&Group::comms>("comms"),
          attribute<&Group::commVectorSorted>("commVectorSorted"),
          attribute<&Group::toStrep>("toStrep"),
          attribute<&Group::hash>("hash"),
          operation("commIs"),
          operation("compare"),
          operation("commSnapshot"),
          operation("dedup")};
}

/// `more` is what only one family has.
template <class List>
std::vector<Mox::Attribute> extCommListAttributes(std::vector<Mox::Attribute> more) {
  using Mox::attribute, Mox::operation;
  std::vector<Mox::Attribute> attributes{
      Mox::collection<&List::toStrep>("comm"),
      Mox::collection<&List::groupsText>("classificationList"),
      attribute<&List::commVectorSorted>("commVectorSorted"),
      attribute<&List::totalCommunities>("totalCommunities"),
      attribute<&List::totalTransitiveCommunities>("totalTransitiveCommunities"),
      attribute<&List::comms>("comms"),
      attribute<&List::empty>("empty"),
      attribute<&List::commsStringForm>("commsStringForm"),
      attribute<&List::toStrep>("toStrep"),
      attribute<&List::hash>("hash")};
  for (const std::string_view name :
       {"commIs", "append", "appendClassificationList", "expectedCommunityCountIs", "sortComms",
        "lookupExtComm", "commSnapshot", "dedup", "serialize", "sendNonTransExtComms", "compare"})
    attributes.push_back(operation(name));
  attributes.insert(attributes.end(), more.begin(), more.end());
  return attributes;
}

}  // namespace Routing::Bgp
