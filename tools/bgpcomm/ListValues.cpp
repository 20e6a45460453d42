#include "ListValues.h"

#include "Hex.h"
#include "Zonet/NetworkOrder.h"
#include "community-list/ZoBgpCommunityListStandard.h"

namespace bgpcomm {

using namespace Routing::Bgp;

namespace {

template <class... Words>
auto octetsOfWords(Words... words) {
  std::array<U8, (sizeof words + ...)> octets;
  U8* at = octets.data();
  ((Zonet::storeNetworkOrder(at, words), at += sizeof words), ...);
  return octets;
}

template <class Value>
std::string policyText(const Value& value) {
  using Format = typename Value::StrepFormat;
  std::string text;
  if (value.classification() != extCommClassificationUnSpecified)
    text = value.toStrepForPolicy(Format(strepFormatClassification));
  if (text.empty())
    text = value.toStrepForPolicy(Format(strepFormatClassification | strepFormatUI));
  return text.find(" 0x") == text.npos ? text : "0x" + hex(octetsOf(value));
}

}  // namespace

std::array<U8, 4> octetsOf(U32 community) { return octetsOfWords(community); }
std::array<U8, 12> octetsOf(const Acl::CommunityValue& community) {
  return octetsOfWords(community.globalAdmin(), community.localData1(), community.localData2());
}

std::string textOf(U32 community, bool names) {
  const std::string name = names ? CommList::wellKnownName(community) : "";
  return name.empty() ? CommList::getStringValue(community) : name;
}
std::string textOf(const Acl::CommunityValue& community, bool) {
  return LargeCommList::getStringValue(community);
}
std::string textOf(const ExtComm& community, bool) { return policyText(community); }
std::string textOf(const ExtCommIp6& community, bool) { return policyText(community); }

}  // namespace bgpcomm
