#include "DecodeAttribute.h"

#include "Attributes.h"
#include "Descriptions.h"
#include "Errors.h"
#include "Hex.h"
#include "HexText.h"
#include "KindJson.h"
#include "Terminal.h"
#include "TextStyle.h"
#include "kinds/ZoBgpKindText.h"

namespace bgpcomm {
namespace {

using Routing::Bgp::BgpPathAttrType;
using Routing::Bgp::Kind;
using Routing::Bgp::PathAttributeHeader;

std::string typeName(BgpPathAttrType type) {
  return bgpIsValidEnumMember(type) ? bgpPathAttrTypeShowString(type) : "Unknown attribute";
}

/// The octets may also be a mistyped community, so the message names both.
[[noreturn]] void refuseAll(bool single, const std::string& why) {
  throw DataError((single ? "neither a community, 16 or 40 digits in a piece, nor an attribute: "
                          : "neither a community, 8, 16, 24 or 40 digits in a piece, nor "
                            "attributes: ") +
                  why);
}

std::string octetsFollow(std::size_t count) {
  return std::to_string(count) + (count == 1 ? " octet follows" : " octets follow");
}

/// The attributes of an UPDATE with its header (RFC 4271, sections 4.1 and 4.3); nothing when the
/// octets do not begin as a message does. Throws DataError for a message that is something else.
std::optional<Octets> attributesOfUpdate(Octets message) {
  constexpr std::size_t marker = 16;
  constexpr U8 update = 2;
  if (message.size() < marker + 3) return {};
  for (const U8 octet : message.first(marker))
    if (octet != 0xFF) return {};
  Cursor in(message.subspan(marker));
  if (const std::size_t length = in.u16(); length != message.size())
    throw DataError("a message whose length says " + std::to_string(length) + " octets, not " +
                    std::to_string(message.size()));
  if (const U8 type = in.u8(); type != update)
    throw DataError("a message of type " + std::to_string(type) + ", not an UPDATE");
  (void)in.take(in.u16());  // withdrawn prefixes
  const Octets attributes = in.take(in.u16());
  if (!in) throw DataError("an UPDATE whose prefixes or attributes run over its end");
  return attributes;
}

}  // namespace

bool AttributePrinter::isOne(Octets octets) {
  const auto header = Routing::Bgp::readPathAttributeHeader(octets);
  return header && octets.size() - header->headerSize == header->attrSize;
}

void AttributePrinter::print(Octets octets, bool single,
                             const std::function<void(const std::string&)>& refuse) const {
  const auto update = single ? std::nullopt : attributesOfUpdate(octets);
  if (update) octets = *update;
  if (!update && octets.size() < 3) refuseAll(single, "too short for flags, type and length");
  // All or nothing: octets that do not end with an attribute may be something else.
  const auto eachAttribute = [octets](auto use) {
    for (Octets rest = octets; !rest.empty();) {
      const auto header = Routing::Bgp::readPathAttributeHeader(rest);
      const std::size_t size = header ? header->headerSize + header->attrSize : 0;
      use(header, rest);
      rest = rest.subspan(size);
    }
  };
  eachAttribute([&](const auto& header, Octets rest) {
    if (!header) refuseAll(single, "too short for flags, type and length");
    const std::size_t found = rest.size() - header->headerSize;
    if (single ? found != header->attrSize : found < header->attrSize)
      refuseAll(single, "its length is " + std::to_string(header->attrSize) + ", but " +
                            octetsFollow(found));
  });
  eachAttribute([&](const auto& header, Octets rest) {
    try {
      printValue(*header, rest.subspan(header->headerSize, header->attrSize));
    } catch (const DataError& error) {
      refuse(error.what() + (single ? "" : attributePlace(octets, octets.size() - rest.size())));
    }
  });
}

void AttributePrinter::printValue(const PathAttributeHeader& header, Octets value) const {
  const U8 code = U8(header.type), flags = U8(header.flags);
  const std::size_t type = listTypeOf(code);
  std::string text = hex(value);
  std::vector<std::string> values, octets, meanings;
  Json canonical = Json::array(), identifiers = Json::array(), fields = Json::array();
  const bool isList = type < listTypeCount;
  if (isList) {
    const auto read = json_ ? listTypes[type].values : listTypes[type].text;
    const ListText list = read(tables_, value);
    if (list.fault) throw DataError(list.text);
    text = list.text;
    for (const ValueText& one : list.values) {
      values.push_back(one.text);
      octets.push_back(one.octets);
      meanings.push_back(one.description);
      if (!json_ || !textStyle().kinds) continue;
      const auto community = Routing::Bgp::communityOf(header.type, readHexText(one.octets).octets);
      const Kind* const kind = textStyle().kinds->find(community);
      identifiers.push_back(kind && !kind->identifier.empty() ? Json(kind->identifier) : Json());
      canonical.push_back(canonicalText(community, *textStyle().kinds));
      fields.push_back(fieldsJson(community));
    }
  }
  const std::string name = typeName(header.type);
  if (!json_)
    return bgpcomm::print(name + " (" + std::to_string(code) + "), flags 0x" +
                          hex(Octets(&flags, 1)) + ": " + text + '\n');
  nlohmann::ordered_json object = {
      {"type", code}, {"name", name}, {"flags", flags}, {"value", hex(value)}};
  if (isList) {
    const std::string key(listTypes[type].key);
    object[key] = values;
    object[key + "Octets"] = octets;
    if (descriptions()) object[key + "Descriptions"] = meanings;
    if (textStyle().kinds)
      object.update({{"identifier", identifiers}, {"canonical", canonical}, {"fields", fields}});
  }
  bgpcomm::print(object.dump() + '\n');
}

}  // namespace bgpcomm
