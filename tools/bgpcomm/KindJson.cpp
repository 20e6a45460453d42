#include "KindJson.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <deque>
#include <fstream>
#include <set>
#include <sstream>

#include "Errors.h"
#include "Hex.h"
#include "TextStyle.h"
#include "kinds/ZoBgpKindText.h"

namespace bgpcomm {

using namespace Routing::Bgp;

namespace {

template <class Value>
struct Spelling {
  std::string_view text;
  Value value;
};

constexpr Spelling<KindForm> forms[] = {
    {"integer", KindForm::integer},  {"as2", KindForm::as2},
    {"as4", KindForm::as4},          {"ipv4", KindForm::ipv4},
    {"ipv6", KindForm::ipv6},        {"mac", KindForm::mac},
    {"hex", KindForm::hex},          {"enum", KindForm::enumeration},
    {"flags", KindForm::flags},      {"float32", KindForm::float32},
    {"label", KindForm::label},      {"data-collection", KindForm::dataCollection},
    {"reserved", KindForm::reserved}};
constexpr Spelling<KindSource> sources[] = {{"registry", KindSource::registry},
                                            {"draft", KindSource::draft},
                                            {"proposed", KindSource::proposed}};
constexpr Spelling<KindEvidence> evidences[] = {{"standard", KindEvidence::standard},
                                                {"family", KindEvidence::family},
                                                {"decoders", KindEvidence::decoders},
                                                {"layout unknown", KindEvidence::none}};

template <class Value, std::size_t n>
std::string_view spelled(const Spelling<Value> (&rows)[n], Value value) {
  for (const auto& row : rows)
    if (row.value == value) return row.text;
  return {};
}

Json jsonOf(const KindField& field) {
  Json object = {{"name", field.name},
                 {"bit", field.bit},
                 {"bits", field.bits},
                 {"as", spelled(forms, field.form)}};
  if (field.globalAdministrator) object["ga"] = true;
  if (field.form == KindForm::enumeration || field.form == KindForm::flags) {
    Json& names = object[std::string(spelled(forms, field.form))] = Json::object();
    for (const KindName& row : field.names) names[std::to_string(row.number)] = row.name;
  }
  if (field.first) object["first"] = field.first;
  if (field.optional) object["style"] = "optional";
  return object;
}

Json verifiedJson(KindEvidence evidence) {
  if (evidence == KindEvidence::standard || evidence == KindEvidence::none)
    return evidence == KindEvidence::standard;
  return spelled(evidences, evidence);
}

std::string hexOf(U32 number) {
  char text[9];
  std::snprintf(text, sizeof text, "%08x", number);
  return text;
}

/// The community of a row's example.
AnyCommunity exampleOf(const Kind& kind) {
  std::vector<U8> octets;
  for (std::size_t i = 0; i + 1 < kind.example.size(); i += 2)
    octets.push_back(U8(hexDigit(kind.example[i]) << 4 | hexDigit(kind.example[i + 1])));
  return communityOf(kind.attribute, octets);
}

// --- Reading.

/// Reads the keys of one object, and refuses those that it cannot have.
class ObjectReader {
 public:
  ObjectReader(const Json& object, std::string where, std::initializer_list<std::string_view> keys)
      : object_(object), where_(std::move(where)) {
    if (!object.is_object()) fail("is no object");
    for (const auto& item : object.items())
      if (std::find(keys.begin(), keys.end(), item.key()) == keys.end())
        fail(item.key().c_str(), "is a key that it cannot have");
  }

  /// The value of a key; null when there is none.
  const Json* find(const char* key) const {
    const auto at = object_.find(key);
    return at == object_.end() ? nullptr : &*at;
  }
  std::string text(const char* key, bool required = true) {
    const Json* const value = find(key);
    if (!value && !required) return {};
    if (!value) fail(key, "is missing");
    if (!value->is_string()) fail(key, "is no text");
    return value->get<std::string>();
  }
  std::optional<U64> number(const char* key, U64 most, bool required = true) {
    const Json* const value = find(key);
    if (!value && !required) return {};
    if (!value) fail(key, "is missing");
    if (!value->is_number_unsigned() || value->get<U64>() > most)
      fail(key, "is no number from 0 to " + std::to_string(most));
    return value->get<U64>();
  }
  bool flag(const char* key) {
    const Json* const value = find(key);
    if (value && !value->is_boolean()) fail(key, "is neither true nor false");
    return value && value->get<bool>();
  }
  const Json& array(const char* key) {
    const Json* const value = find(key);
    if (!value) fail(key, "is missing");
    if (!value->is_array()) fail(key, "is no array");
    return *value;
  }
  template <class Value, std::size_t n>
  Value word(const char* key, const Spelling<Value> (&rows)[n]) {
    const std::string word = text(key);
    for (const auto& row : rows)
      if (row.text == word) return row.value;
    std::string known;
    for (const auto& row : rows) known += (known.empty() ? "" : ", ") + std::string(row.text);
    fail(key, "is \"" + word + "\", not one of " + known);
  }
  [[noreturn]] void fail(const char* key, const std::string& why) const {
    throw DataError(where_ + ", \"" + key + "\" " + why);
  }

 private:
  [[noreturn]] void fail(const std::string& why) const { throw DataError(where_ + ' ' + why); }

  const Json& object_;
  const std::string where_;
};

/// Owns what the rows refer to.
class KindFileReader : public KindFile {
 public:
  KindFileReader(const Json& rows, const std::string& file) {
    if (!rows.is_array()) throw DataError(file + ": is no array of rows");
    for (const Json& row : rows) readKind(row, file + ": row " + std::to_string(kinds.size() + 1));
  }

 private:
  std::string_view keep(std::string text) { return texts_.emplace_back(std::move(text)); }

  void readKind(const Json& row, const std::string& where) {
    ObjectReader in(row, where,
                    {"attribute", "type", "subtype", "value", "name", "reference", "identifier",
                     "identifierSource", "aliases", "fields", "verified", "example", "note"});
    Kind kind;
    kind.attribute = BgpPathAttrType(U32(*in.number("attribute", 255)));
    kind.identifier = keep(in.text("identifier"));
    const std::string here = where + " (" + std::string(kind.identifier) + ')';
    if (!kind.isExtended()) in.fail("attribute", "is neither 16 nor 25: others have no kinds");
    kind.type = U8(*in.number("type", 255));
    kind.subtype = U8(*in.number("subtype", 255));
    kind.name = keep(in.text("name"));
    kind.reference = keep(in.text("reference", false));
    kind.note = keep(in.text("note", false));
    if (in.find("identifierSource")) kind.source = in.word("identifierSource", sources);
    kind.evidence = readEvidence(in);
    if (in.find("aliases")) kind.aliases = readAliases(in);
    if (in.find("value")) in.fail("value", "is of well-known standard communities only");
    auto& fields = fields_.emplace_back();
    if (in.array("fields").size() > kind.valueBits())
      in.fail("fields", "has more fields than the value has bits");
    for (const Json& field : in.array("fields"))
      fields.push_back(readField(field, here + ", field " + std::to_string(fields.size() + 1)));
    kind.fields = fields;
    for (const KindField& field : fields)
      if (std::any_of(fields.begin(), fields.end(), [&](const KindField& other) {
            return other.name == std::string(field.name) + "Text";
          }))
        in.fail("fields", "has \"" + std::string(field.name) + "Text\", the name of a text of \"" +
                              std::string(field.name) + '"');
    if (const Json* const example = in.find("example")) {
      ObjectReader of(*example, here + ", example", {"hex", "text"});
      kind.example = keep(of.text("hex"));
      (void)of.text("text", false);
      const bool digits = std::all_of(kind.example.begin(), kind.example.end(),
                                      [](char c) { return hexDigit(c) >= 0; });
      if (!digits || kind.example.size() != 2 * kind.octets())
        of.fail("hex", "is not the digits of a community");
      const CommunityOctets octets(exampleOf(kind));
      if (octets.all()[0] != *kind.type || octets.all()[1] != *kind.subtype)
        of.fail("hex", "is of another type and subtype");
    }
    kinds.push_back(kind);
  }

  static KindEvidence readEvidence(ObjectReader& in) {
    const Json* const value = in.find("verified");
    if (!value) return KindEvidence::standard;
    for (const auto& row : evidences)
      if (verifiedJson(row.value) == *value) return row.value;
    in.fail("verified", "is neither true, false, family nor decoders");
  }

  std::span<const std::string_view> readAliases(ObjectReader& in) {
    auto& words = aliases_.emplace_back();
    for (const Json& alias : in.array("aliases")) {
      if (!alias.is_string()) in.fail("aliases", "has one that is no text");
      words.push_back(keep(alias.get<std::string>()));
    }
    return words;
  }

  KindField readField(const Json& object, const std::string& where) {
    ObjectReader in(object, where,
                    {"name", "bit", "bits", "as", "ga", "first", "style", "enum", "flags"});
    KindField field;
    field.name = keep(in.text("name"));
    field.bit = U16(*in.number("bit", 143));
    field.bits = U16(*in.number("bits", 144));
    field.form = in.word("as", forms);
    field.globalAdministrator = in.flag("ga");
    field.first = U16(in.number("first", 255, false).value_or(0));
    if (in.find("style")) {
      if (in.text("style") != "optional") in.fail("style", "is not \"optional\"");
      field.optional = true;
    }
    for (const char* key : {"enum", "flags"})
      if (const Json* const names = in.find(key)) {
        if (key != formText(field.form)) in.fail(key, "is not of its form");
        field.names = readNames(in, key, *names);
      }
    return field;
  }

  std::span<const KindName> readNames(ObjectReader& in, const char* key, const Json& object) {
    if (!object.is_object()) in.fail(key, "is no object of numbers and names");
    auto& names = names_.emplace_back();
    for (const auto& item : object.items()) {
      const auto number = decimalNumber(item.key(), 32);
      if (!number || !item.value().is_string())
        in.fail(key, "has \"" + item.key() + "\", which is no number with a name");
      names.push_back({U32(*number), keep(item.value().get<std::string>())});
    }
    return names;
  }

  // Deques, so that what rows refer to stays where it is.
  std::deque<std::string> texts_;
  std::deque<std::vector<KindField>> fields_;
  std::deque<std::vector<KindName>> names_;
  std::deque<std::vector<std::string_view>> aliases_;
};

}  // namespace

std::string_view formText(KindForm form) { return spelled(forms, form); }
std::string_view evidenceText(KindEvidence evidence) { return spelled(evidences, evidence); }

Json jsonOf(const Kind& kind) {
  const auto optional = [](const auto& value) { return value ? Json(*value) : Json(nullptr); };
  Json object = {{"attribute", U32(kind.attribute)},
                 {"type", optional(kind.type)},
                 {"subtype", optional(kind.subtype)}};
  if (kind.value) object["value"] = hexOf(*kind.value);
  object["name"] = kind.name;
  object["reference"] = kind.reference;
  object["identifier"] = kind.identifier.empty() ? Json(nullptr) : Json(kind.identifier);
  object["identifierSource"] = spelled(sources, kind.source);
  if (kind.value || !kind.aliases.empty()) object["aliases"] = kind.aliases;
  Json& fields = object["fields"] = Json::array();
  for (const KindField& field : kind.fields) fields.push_back(jsonOf(field));
  object["verified"] = verifiedJson(kind.evidence);
  if (!kind.example.empty())
    object["example"] = {{"hex", kind.example},
                         {"text", canonicalText(exampleOf(kind), *textStyle().kinds)}};
  if (!kind.note.empty()) object["note"] = kind.note;
  return object;
}

std::shared_ptr<const KindFile> readKinds(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  std::ostringstream text;
  if (in && in.peek() != std::ifstream::traits_type::eof()) text << in.rdbuf();
  if (in.bad() || !in.is_open()) throw DataError(file + ": cannot be read");
  return readKindsText(text.str(), file);
}

std::shared_ptr<const KindFile> readKindsText(std::string_view text, const std::string& file) {
  // A key that comes twice would count for what it says last; among many, each is sought in turn.
  constexpr std::size_t mostKeys = 4096;
  std::vector<std::set<std::string>> keys;
  const auto checkKeys = [&](int, Json::parse_event_t event, const Json& parsed) {
    if (event == Json::parse_event_t::object_start) keys.emplace_back();
    if (event == Json::parse_event_t::object_end) keys.pop_back();
    if (event != Json::parse_event_t::key) return true;
    if (!keys.back().insert(parsed.get<std::string>()).second)
      throw DataError(file + ": \"" + parsed.get<std::string>() + "\" comes twice in one object");
    if (keys.back().size() > mostKeys)
      throw DataError(file + ": an object has more than " + std::to_string(mostKeys) + " keys");
    return true;
  };
  try {
    return std::make_shared<const KindFileReader>(Json::parse(text, checkKeys), file);
  } catch (const Json::exception& error) {
    throw DataError(file + ": " + error.what());
  }
}

Json fieldsJson(const AnyCommunity& community) {
  Json fields = Json::object();
  if (!textStyle().kinds) return fields;
  forEachKindField(community, *textStyle().kinds, [&](const KindFieldValue& value) {
    const std::string name(value.field().name);
    switch (value.field().form) {
      case KindForm::reserved:
        return;
      case KindForm::integer:
      case KindForm::as2:
      case KindForm::as4:
        fields[name] = value.number();
        if (value.field().bits > 53) fields[name + "Text"] = std::to_string(value.number());
        return;
      case KindForm::flags:
        fields[name] = value.names();
        return;
      case KindForm::enumeration:
        fields[name] = value.names().empty() ? Json(value.number()) : Json(value.names().front());
        return;
      case KindForm::float32:
        fields[name] = std::isfinite(value.rate()) ? Json(value.rate()) : Json(value.text());
        return;
      case KindForm::label:
        fields[name] = value.number() & 15 ? Json(value.text()) : Json(value.number() >> 4);
        return;
      case KindForm::ipv6: {
        const std::string text = value.text();
        fields[name] = text.substr(1, text.size() - 2);
        return;
      }
      default:
        fields[name] = value.text();
    }
  });
  return fields;
}

}  // namespace bgpcomm
