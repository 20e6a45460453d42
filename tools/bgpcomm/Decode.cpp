#include <nlohmann/json.hpp>

#include "Attributes.h"
#include "Commands.h"
#include "Hex.h"
#include "Terminal.h"
#include "attr/BgpPathAttributeEnums.h"

namespace bgpcomm {
namespace {

/// One argument of the command line, for messages: `argument 2 (c0080...)`.
std::string named(std::size_t number, const std::string& argument) {
  constexpr std::size_t shown = 24;
  const std::string start = argument.size() > shown ? argument.substr(0, shown) + "..." : argument;
  return "argument " + std::to_string(number) + " (" + start + "): ";
}

/// Digits in pairs; blanks and colons may stand between the pairs.
std::vector<U8> readHex(const std::string& text) {
  std::vector<U8> octets;
  for (std::size_t i = 0; i < text.size();) {
    if (text[i] == ' ' || text[i] == ':') {
      ++i;
      continue;
    }
    const int high = hexDigit(text[i]);
    if (high < 0) throw UsageError("no hexadecimal digit at character " + std::to_string(i + 1));
    const int low = i + 1 < text.size() ? hexDigit(text[i + 1]) : -1;
    if (low < 0) throw UsageError("half an octet at character " + std::to_string(i + 1));
    octets.push_back(U8(high << 4 | low));
    i += 2;
  }
  return octets;
}

struct Attribute {
  AttributeHeader header;
  Octets value;
};

/// The only attribute in these octets.
Attribute readAttribute(Octets octets) {
  Cursor in(octets);
  const AttributeHeader header = takeAttributeHeader(in);
  if (!in) throw UsageError("too short for flags, type and length");
  const std::size_t there = in.left().size();
  if (there != header.length)
    throw UsageError("its length is " + std::to_string(header.length) + ", but " +
                     std::to_string(there) + " octets follow");
  return {header, in.left()};
}

std::string typeName(U8 type) {
  using Routing::Bgp::BgpPathAttrType;
  const auto known = BgpPathAttrType(type);
  if (!Routing::Bgp::bgpIsValidEnumMember(known)) return "Unknown attribute";
  return Routing::Bgp::bgpPathAttrTypeShowString(known);
}

class AttributePrinter {
 public:
  AttributePrinter(bool names, bool json) : names_(names), json_(json) {}

  void print(const Attribute& attribute) {
    const U8 type = attribute.header.type;
    const std::size_t kind = kindOfAttribute(type);
    std::string text = hex(attribute.value);
    std::vector<std::string> values;
    const bool isList = kind < kindCount && tables_[kind];
    if (isList) {
      const KindTable::Text list = tables_[kind]->text(attribute.value, names_);
      if (!list.good) throw UsageError(list.text);
      text = list.text;
      values = tables_[kind]->texts(attribute.value, names_);
    }
    if (!json_)
      return bgpcomm::print(typeName(type) + " (" + std::to_string(type) + "), flags 0x" +
                            hex(Octets(&attribute.header.flags, 1)) + ": " + text + '\n');
    nlohmann::ordered_json object = {{"type", type},
                                     {"name", typeName(type)},
                                     {"flags", attribute.header.flags},
                                     {"value", hex(attribute.value)}};
    if (isList) object[std::string(kindRows[kind].key)] = values;
    bgpcomm::print(object.dump() + '\n');
  }

 private:
  bool names_;
  bool json_;
  KindTables tables_ = makeKindTables();
};

/// A path attribute pasted octet by octet is one argument to whoever typed it.
std::vector<std::string> joinedOctets(std::vector<std::string> arguments) {
  const bool apart = std::all_of(arguments.begin(), arguments.end(),
                                 [](const std::string& one) { return one.size() == 2; });
  if (!apart) return arguments;
  std::string joined;
  for (const std::string& one : arguments) joined += one;
  return {joined};
}

}  // namespace

void addDecode(CLI::App& app, int& exitCode) {
  struct Options {
    std::vector<std::string> attributes;
    bool numeric = false;
    bool json = false;
  };
  const auto options = std::make_shared<Options>();
  CLI::App* const command =
      addCommand(app, "decode", "Print path attributes, given in hex, as text",
                 "Each argument is one attribute: flags, type, length, value. Blanks and colons\n"
                 "may stand between the octets.\n\n"
                 "Example: bgpcomm decode c00808fde80064ffffff01");
  command->add_option("HEX", options->attributes, "Path attributes")->required()->type_name("");
  command->add_flag("--numeric", options->numeric, "All communities as numbers");
  command->add_flag("--json", options->json, "One JSON object per line");
  command->callback([options, &exitCode] {
    AttributePrinter printer(!options->numeric, options->json);
    exitCode = 0;
    std::size_t number = 0;
    for (const std::string& argument : joinedOctets(options->attributes)) try {
        ++number;
        const std::vector<U8> octets = readHex(argument);
        printer.print(readAttribute(octets));
      } catch (const UsageError& error) {
        throw UsageError(named(number, argument) + error.what());
      }
  });
}

}  // namespace bgpcomm
