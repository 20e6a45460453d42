#include "ListValues.h"

#include "Hex.h"
#include "ListTypes.h"
#include "TextStyle.h"
#include "Zonet/NetworkOrder.h"
#include "community-list/ZoBgpCommunityListStandard.h"
#include "kinds/ZoBgpKindText.h"

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

template <class Value>
std::string extendedText(const Value& value) {
  const TextStyle& style = textStyle();
  switch (style.form()) {
    case TextForm::canonical:
      return canonicalText(value.getContent(), *style.kinds);
    case TextForm::show:
      return value.toStrep();
    case TextForm::policy:
      break;
  }
  return policyText(value);
}

}  // namespace

std::array<U8, 4> octetsOf(U32 community) { return octetsOfWords(community); }
std::array<U8, 12> octetsOf(const Acl::CommunityValue& community) {
  return octetsOfWords(community.globalAdmin(), community.localData1(), community.localData2());
}

std::string textOf(U32 community) {
  const TextStyle& style = textStyle();
  std::string name;
  if (style.names)
    name = style.form() == TextForm::canonical ? canonicalText(BgpCommunityValue(community))
                                               : CommList::wellKnownName(community);
  return name.empty() ? CommList::getStringValue(community) : name;
}
std::string textOf(const Acl::CommunityValue& community) {
  return LargeCommList::getStringValue(community);
}
std::string textOf(const ExtComm& community) { return extendedText(community); }
std::string textOf(const ExtCommIp6& community) { return extendedText(community); }

const Kind* kindOf(const AnyCommunity& community) {
  const auto& kinds = textStyle().kinds;
  return (kinds ? *kinds : KindTable::builtIn()).find(community);
}

std::string kindName(const AnyCommunity& community) {
  const Kind* const kind = kindOf(community);
  if (!kind) return "unknown";
  if (!kind->identifier.empty()) return std::string(kind->identifier);
  return std::string(listTypes[listTypeOf(U8(kind->attribute))].key);
}

}  // namespace bgpcomm
