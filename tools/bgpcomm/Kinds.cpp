// The command that lists kinds, and the options that say which ones the process knows.
#include <algorithm>
#include <cstdio>

#include "Commands.h"
#include "KindJson.h"
#include "Mox/Exception.h"
#include "Terminal.h"
#include "TextStyle.h"
#include "Wrapped.h"
#include "kinds/ZoBgpKindCheck.h"
#include "kinds/ZoBgpKindText.h"

namespace bgpcomm {
namespace {

using namespace Routing::Bgp;

struct Options {
  std::string pattern;
  bool json = false;
  bool markdown = false;
};

std::string hexOctet(U8 octet) {
  char text[5];
  std::snprintf(text, sizeof text, "0x%02x", octet);
  return text;
}

/// `0x06/0x00`; of well-known communities the value.
std::string numberOf(const Kind& kind) {
  if (kind.isExtended()) return hexOctet(*kind.type) + '/' + hexOctet(*kind.subtype);
  if (!kind.value) return "-";
  char text[11];
  std::snprintf(text, sizeof text, "0x%08X", *kind.value);
  return text;
}

bool contains(std::string_view text, std::string_view part) {
  return std::search(text.begin(), text.end(), part.begin(), part.end(),
                     [](char a, char b) { return lowerCase(a) == lowerCase(b); }) != text.end();
}

bool matches(const Kind& kind, const std::string& pattern) {
  const auto has = [&](std::string_view text) { return contains(text, pattern); };
  return has(kind.identifier) || has(kind.name) || has(numberOf(kind)) || has(kind.reference) ||
         std::any_of(kind.aliases.begin(), kind.aliases.end(), has);
}

constexpr std::size_t detailsMargin = 16;

std::string line(const Kind& kind) {
  char text[64];
  std::snprintf(text, sizeof text, "%2u  %-10s  ", U32(kind.attribute), numberOf(kind).c_str());
  return hanging(text, canonicalForm(kind), detailsMargin);
}

std::string details(const Kind& kind) {
  std::string name(kind.name), text = line(kind);
  if (!kind.reference.empty()) name += ", " + std::string(kind.reference);
  if (kind.evidence != KindEvidence::standard)
    name += " (" + std::string(evidenceText(kind.evidence)) + ')';
  const auto add = [&text](std::string_view its) {
    text += hanging(std::string(detailsMargin, ' '), its, detailsMargin);
  };
  add(name);
  for (const std::string_view alias : kind.aliases)
    if (kind.isExtended()) add("also read: " + std::string(alias));
  if (!kind.note.empty()) add(kind.note);
  return text;
}

/// `flags 8 {7=S}; sequence 32`: the fields with their bits and what is not a plain number.
std::string fieldsText(const Kind& kind) {
  std::string text;
  for (const KindField& field : kind.fields) {
    if (!text.empty()) text += "; ";
    text += std::string(field.name) + ' ' + std::to_string(field.bits);
    const std::string_view form = formText(field.form);
    const bool told = form == field.name || field.form == KindForm::integer;
    if (!told) text += ' ' + std::string(form);
    std::string names;
    for (const KindName& row : field.names)
      names +=
          (names.empty() ? " {" : ", ") + std::to_string(row.number) + '=' + std::string(row.name);
    if (!names.empty()) text += names + '}';
  }
  return text;
}

std::string markdownRow(const Kind& kind) {
  std::string text = "| " + numberOf(kind) + " | " + std::string(kind.name);
  if (!kind.reference.empty()) text += ", " + std::string(kind.reference);
  text += " | `" + canonicalForm(kind) + "` | " + (kind.value ? "" : fieldsText(kind));
  if (kind.evidence != KindEvidence::standard)
    text += " (" + std::string(evidenceText(kind.evidence)) + ')';
  for (const std::string_view alias : kind.aliases)
    if (kind.isExtended()) text += "; also read: `" + std::string(alias) + '`';
  if (!kind.note.empty()) text += ". " + std::string(kind.note);
  return text + " |\n";
}

constexpr std::string_view markdownHead =
    "# Kinds of communities\n"
    "\n"
    "Every kind that the table in `kinds/ZoBgpKindRows.cpp` knows, as `bgpcomm kinds --markdown`\n"
    "prints it. The facts are from the IANA registries \"BGP Extended Communities\" and \"BGP\n"
    "Well-known Communities\" and from the documents that the rows name. The number is type and\n"
    "subtype, or the value of a well-known community. The text has a part for each field, in "
    "brackets\n"
    "one that is left out when it is zero; [text.md](text.md) has its rules. Fields have their "
    "number\n"
    "of bits and their form, enumerations and flags their names. In parentheses where a layout "
    "was\n"
    "not read in a standard: only that of its family is known, two decoders agree on it, or it is "
    "not\n"
    "known and the value is kept as octets.\n";

int runKinds(const Options& options) {
  if (!textStyle().kinds) throw UsageError("kinds: there are none with --core");
  std::vector<const Kind*> found;
  for (const Kind* kind : textStyle().kinds->rows())
    if (matches(*kind, options.pattern)) found.push_back(kind);
  if (found.empty()) {
    printError(options.pattern, ": no kind has this in its identifier, name, number or reference");
    return exitBadData;
  }
  if (options.json) {
    Json rows = Json::array();
    for (const Kind* kind : found) rows.push_back(jsonOf(*kind));
    print(rows.dump(1) + '\n');
    return 0;
  }
  if (options.markdown) print(markdownHead);
  std::optional<BgpPathAttrType> attribute;
  for (const Kind* kind : found) {
    if (options.markdown && kind->attribute != attribute)
      print("\n## Attribute " + std::to_string(U32(kind->attribute)) +
            "\n\n| number | name, reference | text | fields, bits |\n|---|---|---|---|\n");
    attribute = kind->attribute;
    print(options.markdown          ? markdownRow(*kind)
          : options.pattern.empty() ? line(*kind)
                                    : details(*kind));
  }
  return 0;
}

}  // namespace

void addKinds(CLI::App& app, int& exitCode) {
  const auto [command, options] = addCommand(
      app,
      {"kinds", "List the kinds of communities that are known",
       "A line says attribute, type and subtype, and how the text looks: a part in\n"
       "<> for each field, <field:...> where it has several parts (flags, octets), in\n"
       "[] one that may be missing. With a pattern, also names, references and notes.\n\n"
       "Example: bgpcomm kinds evpn"},
      exitCode, runKinds);
  command
      .add_option("PATTERN", options.pattern,
                  "Only those that have it in identifier, name,\nnumber or reference")
      ->type_name("");
  auto* const json = command.add_flag("--json", options.json, "Whole rows, for programs");
  command.add_flag("--markdown", options.markdown, "Tables for documentation")->excludes(json);
}

void addKindOptions(CLI::App& app) {
  auto* const core = app.add_flag_callback(
      "--core", [] { textStyle().kinds.reset(); },
      "Without the table of kinds: what the library\n"
      "knows and prints by itself");
  const auto addFile = [](const std::string& file) {
    const auto read = readKinds(file);
    try {
      textStyle().kinds = textStyle().kinds->with(read->kinds, read);
    } catch (const Mox::RangeException& clash) {
      throw DataError(file + ": " + clash.what());
    }
  };
  app.add_option_function<std::vector<std::string>>(
         "--kinds",
         [addFile](const std::vector<std::string>& files) {
           for (const std::string& file : files) addFile(file);
         },
         "More kinds: new rows of attributes 16 and 25, in\nthe form of kinds --json")
      ->allow_extra_args(false)
      ->option_text("FILE")
      ->excludes(core);
  app.fallthrough();
}

}  // namespace bgpcomm
