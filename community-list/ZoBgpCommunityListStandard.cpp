#include "community-list/ZoBgpCommunityListStandard.h"

#include <charconv>

#include "community-list/ZoBgpCommunityListImpl.h"
#include "community-list/ZoBgpCommunityListSnapshotTypes.h"
#include "community-list/internal/ZoBgpCommunityListFlatBodies.h"
#include "community-list/internal/ZoBgpCommunityListFlatText.h"

namespace Routing::Bgp {

using Mox::attribute;
using Mox::operation;

template class FlatCommList<CommList, StandardCommTraits>;

static_assert(sizeof(void*) != 8 || sizeof(CommList) == 48);
static_assert(sizeof(void*) != 4 || sizeof(CommList) == 36);

const Mox::Type CommList::type{
    "Routing::Bgp::CommList",
    &MoxStash::DedupHandle::type,
    {Mox::collection<&CommList::commsStringForm>("comm"),
     attribute<&CommList::commVectorSorted>("commVectorSorted"),
     attribute<&CommList::noExport>("noExport"), attribute<&CommList::noAdvertise>("noAdvertise"),
     attribute<&CommList::noExportSubconfed>("noExportSubconfed"),
     attribute<&CommList::commsStringForm>("commsStringForm"),
     attribute<&CommList::commsWellKnownStringForm>("commsWellKnownStringForm"),
     attribute<&CommList::empty>("empty"), attribute<&CommList::comms>("comms"),
     operation("commIs"), operation("commSnapshot"), operation("getStringValue"),
     operation("wellKnownName"), operation("dedup"), operation("serialize"),
     attribute<&CommList::hash>("hash"), operation("compare")}};

StandardCommTraits::Cached::Cached(const CommList& list)
    : noExport(list.comm(communityNoExport)),
      noAdvertise(list.comm(communityNoAdvertise)),
      noExportSubconfed(list.comm(communityNoExportSubconfed)) {}

namespace {

constexpr std::size_t longestValue = 11;  // 65535:65535
constexpr std::size_t longestName = 12;   // no-advertise

std::string_view nameOf(U32 value) {
  // One comparison rules out nearly every value there is.
  if (value != communityInternet && value < communityGshut) [[likely]]
    return {};
  const auto* row = Mox::enumTableOf<BgpCommunityValue>.find(value);
  return row ? row->wellKnownName : std::string_view{};
}

char* writeValue(char* at, U32 value) {
  at = std::to_chars(at, at + 5, value >> 16).ptr;
  *at++ = ':';
  return std::to_chars(at, at + 5, value & 0xFFFF).ptr;
}

char* writeNamed(char* at, U32 value) {
  const std::string_view name = nameOf(value);
  return name.empty() ? writeValue(at, value) : std::copy(name.begin(), name.end(), at);
}

}  // namespace

Mox::String CommList::commsStringForm() const {
  return joinedText<longestValue>(values(), writeValue);
}

Mox::String CommList::commsWellKnownStringForm() const {
  return joinedText<longestName>(values(), writeNamed);
}

void CommList::appendCommsStringForm(Mox::String& to) const {
  appendJoinedText<longestValue>(to, values(), writeValue);
}

void CommList::appendCommsWellKnownStringForm(Mox::String& to) const {
  appendJoinedText<longestName>(to, values(), writeNamed);
}

Mox::String CommList::toStrep() const { return joinedText<longestName>(unchecked(), writeNamed); }

Mox::String CommList::wellKnownName(U32 value) { return Mox::String(nameOf(value)); }

Mox::String CommList::getStringValue(U32 value) {
  ZoFmt::StackBackedBuffer<20, 1024> buffer;
  CommunityFormatter<true>::formatNotWellKnown(buffer, value);
  return Mox::String(buffer.text());
}

Mox::Ptr<CommListSnapshot> CommList::commSnapshot() const {
  auto snapshot = Mox::makeNew<CommListSnapshot>();
  for (const U32 value : values()) snapshot->commIs(value, true);
  return snapshot;
}

CommList::Ptr CommList::destash(MoxStash::StoreReference stored,
                                const MoxStash::StoreManager& manager) {
  return destashCommList<CommList, U32>(stored, manager);
}

std::ostream& operator<<(std::ostream& stream, const CommList* list) {
  return list ? Mox::writeText(stream, list->toStrep()) : stream;
}

U32 CommunityFormatter<true>::formatNotWellKnown(ZoFmt::DynamicBufferInterface& buffer, U32 value) {
  return formatOne<longestValue>(buffer, [value](char* at) { return writeValue(at, value); });
}

}  // namespace Routing::Bgp
