#include "DecodeAttribute.h"

#include <nlohmann/json.hpp>

#include "Errors.h"
#include "Hex.h"
#include "Terminal.h"
#include "attr/BgpPathAttributeEnums.h"

namespace bgpcomm {
namespace {

std::string typeName(U8 type) {
  using Routing::Bgp::BgpPathAttrType;
  const auto known = BgpPathAttrType(type);
  if (!Routing::Bgp::bgpIsValidEnumMember(known)) return "Unknown attribute";
  return Routing::Bgp::bgpPathAttrTypeShowString(known);
}

/// The octets may also be a mistyped community, so the message names both.
[[noreturn]] void refuse(const std::string& why) {
  throw DataError("neither a community, 16 or 40 digits in a piece, nor an attribute: " + why);
}

}  // namespace

void AttributePrinter::print(Octets attribute) const {
  Cursor in(attribute);
  const AttributeHeader header = takeAttributeHeader(in);
  if (!in) refuse("too short for flags, type and length");
  const std::size_t there = in.left().size();
  if (there != header.length)
    refuse("its length is " + std::to_string(header.length) + ", but " + std::to_string(there) +
           " octets follow");
  printValue(header, in.left());
}

void AttributePrinter::printValue(const AttributeHeader& header, Octets value) const {
  const std::size_t type = listTypeOf(header.type);
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
    return bgpcomm::print(name + " (" + std::to_string(header.type) + "), flags 0x" +
                          hex(Octets(&header.flags, 1)) + ": " + text + '\n');
  nlohmann::ordered_json object = {
      {"type", header.type}, {"name", name}, {"flags", header.flags}, {"value", hex(value)}};
  if (isList) {
    const std::string key(listTypes[type].key);
    object[key] = values;
    object[key + "Octets"] = octets;
  }
  bgpcomm::print(object.dump() + '\n');
}

}  // namespace bgpcomm
