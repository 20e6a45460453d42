#include "community-list/ZoBgpCommunityListLarge.h"

#include <charconv>

#include "Zonet/AutonomousSystem.h"
#include "community-list/ZoBgpCommunityListImpl.h"
#include "community-list/internal/ZoBgpCommunityListFlatBodies.h"
#include "community-list/internal/ZoBgpCommunityListFlatText.h"

namespace Routing::Bgp {

using Mox::attribute;
using Mox::operation;

template class FlatCommList<LargeCommList, LargeCommTraits>;

static_assert(sizeof(void*) != 8 || sizeof(LargeCommList) == 48);
static_assert(sizeof(void*) != 4 || sizeof(LargeCommList) == 32);

const Mox::Type LargeCommList::type{
    "Routing::Bgp::LargeCommList",
    &MoxStash::DedupHandle::type,
    {Mox::collection<&LargeCommList::commsStringForm>("comm"),
     attribute<&LargeCommList::commVectorSorted>("commVectorSorted"),
     attribute<&LargeCommList::commsStringForm>("commsStringForm"), operation("displayString"),
     operation("getStringValue"), attribute<&LargeCommList::empty>("empty"),
     attribute<&LargeCommList::comms>("comms"), operation("commIs"), operation("commSnapshot"),
     operation("dedup"), operation("serialize"), attribute<&LargeCommList::hash>("hash"),
     operation("compare")}};

namespace {

constexpr std::size_t longestNumber = 10;
constexpr std::size_t longestValue = Zonet::AutonomousSystem::longestText + 2 * (1 + longestNumber);

char* writeValue(char* at, const Acl::CommunityValue& value, bool asdot) {
  at = Zonet::AutonomousSystem(value.globalAdmin()).toChars(at, asdot);
  for (const U32 number : {value.localData1(), value.localData2()}) {
    *at++ = ':';
    at = std::to_chars(at, at + longestNumber, number).ptr;
  }
  return at;
}

char* writePlain(char* at, const Acl::CommunityValue& value) {
  return writeValue(at, value, false);
}

}  // namespace

Mox::String LargeCommList::commsStringForm() const {
  return joinedText<longestValue>(values(), writePlain);
}

void LargeCommList::appendCommsStringForm(Mox::String& to) const {
  appendJoinedText<longestValue>(to, values(), writePlain);
}

Mox::String LargeCommList::toStrep() const {
  return joinedText<longestValue>(unchecked(), writePlain);
}

Mox::String LargeCommList::displayString(const Acl::CommunityValue& value, bool asdot) {
  ZoFmt::StackBackedBuffer<42, 1024> buffer;
  LargeCommunityFormatter::format(buffer, value, asdot);
  return Mox::String(buffer.text());
}

Mox::Ptr<RouteMap::CommListSnapshot> LargeCommList::commSnapshot() const {
  auto snapshot = Mox::makeNew<RouteMap::CommListSnapshot>();
  for (const Acl::CommunityValue& value : values()) snapshot->commIs(value, true);
  return snapshot;
}

LargeCommList::Ptr LargeCommList::destash(MoxStash::StoreReference stored,
                                          const MoxStash::StoreManager& manager) {
  return destashCommList<LargeCommList, Acl::CommunityValue>(stored, manager);
}

std::ostream& operator<<(std::ostream& stream, const LargeCommList* list) {
  return list ? Mox::writeText(stream, list->toStrep()) : stream;
}

U32 LargeCommunityFormatter::format(ZoFmt::DynamicBufferInterface& buffer,
                                    const Acl::CommunityValue& value, bool asdot) {
  return formatOne<longestValue>(buffer, [&](char* at) { return writeValue(at, value, asdot); });
}

}  // namespace Routing::Bgp
