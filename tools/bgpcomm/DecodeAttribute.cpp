#include "DecodeAttribute.h"

#include <nlohmann/json.hpp>

#include "Errors.h"
#include "Hex.h"
#include "Terminal.h"

namespace bgpcomm {
namespace {

using Routing::Bgp::BgpPathAttrType;
using Routing::Bgp::PathAttributeHeader;

std::string typeName(BgpPathAttrType type) {
  return bgpIsValidEnumMember(type) ? bgpPathAttrTypeShowString(type) : "Unknown attribute";
}

/// The octets may also be a mistyped community, so the message names both.
[[noreturn]] void refuse(const std::string& why) {
  throw DataError("neither a community, 16 or 40 digits in a piece, nor an attribute: " + why);
}

}  // namespace

void AttributePrinter::print(Octets attribute) const {
  const auto header = Routing::Bgp::readPathAttributeHeader(attribute);
  if (!header) refuse("too short for flags, type and length");
  const Octets value = attribute.subspan(header->headerSize);
  if (value.size() != header->attrSize)
    refuse("its length is " + std::to_string(header->attrSize) + ", but " +
           std::to_string(value.size()) +
           (value.size() == 1 ? " octet follows" : " octets follow"));
  printValue(*header, value);
}

void AttributePrinter::printValue(const PathAttributeHeader& header, Octets value) const {
  const U8 code = U8(header.type), flags = U8(header.flags);
  const std::size_t type = listTypeOf(code);
  std::string text = hex(value);
  std::vector<std::string> values, octets;
  const bool isList = type < listTypeCount;
  if (isList) {
    const auto read = json_ ? listTypes[type].values : listTypes[type].text;
    const ListText list = read(tables_, value, names_);
    if (list.fault) throw DataError(list.text);
    text = list.text;
    for (const ValueText& one : list.values) {
      values.push_back(one.text);
      octets.push_back(one.octets);
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
  }
  bgpcomm::print(object.dump() + '\n');
}

}  // namespace bgpcomm
