#include "DecodeContent.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "Descriptions.h"
#include "Errors.h"
#include "Hex.h"
#include "KindJson.h"
#include "Terminal.h"
#include "TextStyle.h"
#include "Wrapped.h"
#include "kinds/ZoBgpKindText.h"

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

BgpPathAttrType attributeOfSize(std::size_t octets) {
  switch (octets) {
    case 4:
      return BgpPathAttrType::community;
    case 8:
      return BgpPathAttrType::extCommunity;
    case 12:
      return BgpPathAttrType::largeCommunity;
    default:
      return BgpPathAttrType::extCommunityIp6;
  }
}

std::string_view withoutNamespace(std::string_view name) {
  return name.substr(name.rfind(':') + 1);
}

/// The lines, or members of a JSON object, about one community.
struct Row {
  std::string_view key;
  std::string value;
};
using Rows = std::vector<Row>;

template <class Value>
Rows libraryRows(const Value& value, U32 format) {
  return {{"class", std::string(withoutNamespace(value.fwkType().name()))},
          {"classification", valueToStrep(value.classification())},
          {"show", value.toStrep()},
          {"policy", value.toStrepForPolicy(typename Value::StrepFormat(format))}};
}

/// The lines that the library itself has for a community: none for standard and large ones.
Rows libraryRows(const AnyCommunity& community, U32 format,
                 const BgpParseExtendedCommunityRule& parser) {
  if (const auto* content = std::get_if<ExtCommContent>(&community))
    return libraryRows(*parser.parseExtendedCommunity(*content), format);
  if (const auto* content = std::get_if<ExtCommIp6Content>(&community))
    return libraryRows(*parser.parseExtendedCommunityIp6(*content), format);
  return {};
}

void appendLine(std::string& text, std::string_view label, std::string_view value) {
  text += "\n  ";
  text += label;
  text.append(label.size() < 16 ? 16 - label.size() : 1, ' ');
  text += value.empty() ? "-" : value;
}

/// Why a malformed value is that.
std::string malformedText(const AnyCommunity& community, const KindTable& kinds) {
  std::string text = "; malformed: a reserved bit is set";
  forEachKindField(community, kinds, [&](const KindFieldValue& value) {
    if (value.field().form == KindForm::float32 && std::isnan(value.rate()))
      text = "; malformed: the " + std::string(value.field().name) + " is no number";
  });
  return text;
}

void appendKindLines(std::string& text, const AnyCommunity& community, const KindTable& kinds) {
  appendLine(text, "text", canonicalText(community, kinds));
  const Kind* const kind = kinds.find(community);
  if (!kind) return appendLine(text, "kind", "not assigned");
  std::string name(kind->name);
  if (!kind->reference.empty()) name += ", " + std::string(kind->reference);
  if (isMalformed(community, *kind)) name += malformedText(community, kinds);
  if (!kind->name.starts_with('(')) appendLine(text, "kind", name);
  if (kind->value) return;
  forEachKindField(community, kinds, [&](const KindFieldValue& field) {
    if (!field.isReserved()) appendLine(text, "  " + std::string(field.field().name), field.text());
  });
}

std::string textOf(const std::string& content, const AnyCommunity& community, const Rows& rows) {
  std::string text = strong(content);
  if (textStyle().kinds) appendKindLines(text, community, *textStyle().kinds);
  if (explains()) {
    const std::string& meaning = descriptionOf(community);
    const std::string its = hanging("\n  description     ", meaning.empty() ? "-" : meaning, 18);
    text.append(its, 0, its.size() - 1);
  }
  for (const auto& [label, value] : rows) appendLine(text, label, value);
  return text += '\n';
}

/// Text without escapes, which is nearly all, costs a fraction of a JSON object.
std::string jsonString(std::string_view text) {
  const bool plain = std::all_of(text.begin(), text.end(), [](char c) {
    return c >= ' ' && c <= '~' && c != '"' && c != '\\';
  });
  return plain ? '"' + std::string(text) + '"' : nlohmann::json(text).dump();
}

void appendMember(std::string& text, std::string_view key, std::string_view value) {
  text += ",\"";
  text += key;
  text += "\":";
  text += value;
}

std::string jsonOf(const std::string& content, const AnyCommunity& community, const Rows& rows) {
  std::string text = "{\"content\":" + jsonString(content);
  for (const auto& [key, value] : rows) appendMember(text, key, jsonString(value));
  if (const auto& kinds = textStyle().kinds) {
    const Kind* const kind = kinds->find(community);
    const bool named = kind && !kind->identifier.empty();
    appendMember(text, "identifier", named ? jsonString(kind->identifier) : "null");
    appendMember(text, "canonical", jsonString(canonicalText(community, *kinds)));
    appendMember(text, "fields", fieldsJson(community).dump());
  }
  if (descriptions()) appendMember(text, "description", jsonString(descriptionOf(community)));
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

bool ContentPrinter::isSize(std::size_t octets) {
  return octets == 8 || octets == 20 || (textStyle().kinds && (octets == 4 || octets == 12));
}

void ContentPrinter::print(Octets content) const {
  const AnyCommunity community = communityOf(attributeOfSize(content.size()), content);
  const Rows rows = libraryRows(community, format_, *parser_);
  bgpcomm::print(json_ ? jsonOf(hex(content), community, rows)
                       : textOf(hex(content), community, rows));
}

}  // namespace bgpcomm
