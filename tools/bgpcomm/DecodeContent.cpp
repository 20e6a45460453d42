#include "DecodeContent.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>

#include "Errors.h"
#include "Hex.h"
#include "Terminal.h"

namespace bgpcomm {
namespace {

using namespace Routing::Bgp;

constexpr struct {
  std::string_view name;
  StrepFormatFlag flag;
} formatFlags[] = {
    {"default", strepFormatDefault},
    {"qualifier", strepFormatQualifier},
    {"classification", strepFormatClassification},
    {"ui", strepFormatUI},
    {"asdot", strepFormatAsdot},
    {"weighted", strepFormatLinkBwWeighted},
};

std::string flagNames() {
  std::string names;
  for (const auto& row : formatFlags) names += (names.empty() ? "" : ", ") + std::string(row.name);
  return names;
}

ExtCommContent read8(Octets octets) {
  Cursor in(octets);
  const U64 high = in.u32();
  return ExtCommContent(high << 32 | in.u32());
}

ExtCommIp6Content read20(Octets octets) {
  Cursor in(octets);
  const U8 type = in.u8(), subtype = in.u8();
  Zonet::Ip6Addr::Octets address;
  const Octets taken = in.take(address.size());
  std::copy(taken.begin(), taken.end(), address.begin());
  return ExtCommIp6Content(type, subtype, Zonet::Ip6Addr(address), in.u16());
}

std::string_view withoutNamespace(std::string_view name) {
  return name.substr(name.rfind(':') + 1);
}

using Row = std::pair<std::string_view, std::string_view>;
using Rows = std::array<Row, 4>;

std::string textOf(const std::string& content, const Rows& rows) {
  std::string text(colours().strong);
  text += content;
  text += colours().plain;
  for (const auto& [label, value] : rows) {
    text += "\n  ";
    text += label;
    text.append(16 - label.size(), ' ');
    text += value.empty() ? "-" : value;
  }
  return text += '\n';
}

/// Text without escapes, which is nearly all, costs a fraction of a JSON object.
std::string jsonString(std::string_view text) {
  const bool plain = std::all_of(text.begin(), text.end(), [](char c) {
    return c >= ' ' && c <= '~' && c != '"' && c != '\\';
  });
  return plain ? '"' + std::string(text) + '"' : nlohmann::json(text).dump();
}

std::string jsonOf(const std::string& content, const Rows& rows) {
  std::string text = "{\"content\":" + jsonString(content);
  for (const auto& [key, value] : rows) {
    text += ',';
    text += jsonString(key);
    text += ':';
    text += jsonString(value);
  }
  return text += "}\n";
}

}  // namespace

U32 readFormat(const std::string& text) {
  U32 format = 0;
  if (text == "none") return format;
  for (std::size_t start = 0, end = 0; end != text.npos; start = end + 1) {
    end = text.find(',', start);
    const std::string name = text.substr(start, end - start);
    const auto* const row = std::find_if(std::begin(formatFlags), std::end(formatFlags),
                                         [&](const auto& one) { return one.name == name; });
    if (row == std::end(formatFlags)) {
      std::string message = "--format " + text;
      message.append(": no flag \"").append(name).append("\", there are ").append(flagNames());
      throw UsageError(message.append(", or none for no flag"));
    }
    format |= row->flag;
  }
  return format;
}

template <class Value>
void ContentPrinter::printValue(Octets content, const Value& value) const {
  const std::string classification = valueToStrep(value.classification());
  const std::string show = value.toStrep();
  const std::string policy = value.toStrepForPolicy(typename Value::StrepFormat(format_));
  const Rows rows = {Row{"class", withoutNamespace(value.fwkType().name())},
                     Row{"classification", classification}, Row{"show", show},
                     Row{"policy", policy}};
  bgpcomm::print(json_ ? jsonOf(hex(content), rows) : textOf(hex(content), rows));
}

void ContentPrinter::print(Octets content) const {
  if (content.size() == 8)
    printValue(content, *parser_->parseExtendedCommunity(read8(content)));
  else
    printValue(content, *parser_->parseExtendedCommunityIp6(read20(content)));
}

}  // namespace bgpcomm
