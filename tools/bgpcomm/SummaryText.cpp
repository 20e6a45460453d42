#include <algorithm>
#include <cstdio>
#include <functional>
#include <nlohmann/json.hpp>
#include <span>
#include <unordered_map>

#include "Descriptions.h"
#include "Numbering.h"
#include "Summary.h"
#include "Terminal.h"
#include "TextStyle.h"
#include "Wrapped.h"

namespace bgpcomm {
namespace {

constexpr int labelWidth = 18;
constexpr int columnWidth = 14;

std::string padded(std::string_view text, int width) {
  char out[128];
  std::snprintf(out, sizeof out, "%*.*s", width, int(text.size()), text.data());
  return out;
}

/// A label that is too long takes of the value's column.
std::string line(std::string_view label, std::string_view value) {
  const int width = std::max(labelWidth, int(label.size()));
  return "  " + padded(label, -width) + padded(value, labelWidth + columnWidth - width);
}

std::string decimal(double value, int digits) {
  char out[64];
  std::snprintf(out, sizeof out, "%.*f", digits, value);
  return out;
}

std::string malformedLines(const FileFigures& figures) {
  std::string text = line("malformed", grouped(figures.faults.total())) + '\n';
  for (std::size_t i = 0; i < faultNames.size(); ++i)
    if (const U64 count = figures.faults[Fault(i)])
      text += bad(line("  " + std::string(faultNames[i]), grouped(count))) + '\n';
  if (!figures.firstFault.empty()) text += broken("    ", "first" + visible(figures.firstFault), 4);
  return text;
}

/// Attributes that are read all the same, and records passed over; nothing where there are none.
std::string passedLines(const FileFigures& figures) {
  std::string text;
  if (figures.wrongFlags) text += line("wrong flags", grouped(figures.wrongFlags)) + '\n';
  if (const U64 all = total(figures.skipped)) text += line("skipped", grouped(all)) + '\n';
  for (std::size_t i = 0; i < skippedSorts; ++i)
    if (const U64 count = figures.skipped[i])
      text += line("  " + std::string(skippedNames[i].words), grouped(count)) + '\n';
  return text;
}

std::string timeLine(const FileFigures& figures) {
  const std::string text = line("seconds", decimal(figures.seconds, 3));
  const double rate = double(figures.paths) / figures.seconds;
  if (!(rate > 0 && rate < 1e15)) return text + '\n';
  const std::string its = "  " + grouped(U64(rate)) + " paths/s";
  const bool fits = text.size() + its.size() <= lineColumns();
  return text + (fits ? its : '\n' + line("paths/s", grouped(U64(rate)))) + '\n';
}

/// One column for each list type.
std::string typeLines(const FileFigures& figures) {
  struct Row {
    std::string_view label;
    std::function<std::string(const ListFigures&)> value;
  };
  static const Row rows[] = {
      {"attributes", [](const ListFigures& figures) { return grouped(figures.attributes); }},
      {"communities", [](const ListFigures& figures) { return grouped(figures.communities); }},
      {"distinct values",
       [](const ListFigures& figures) {
         return figures.distinctValues ? grouped(*figures.distinctValues) : "?";
       }},
      {"distinct lists", [](const ListFigures& figures) { return grouped(figures.distinctLists); }},
      {"paths per list",
       [](const ListFigures& figures) { return decimal(pathsPerList(figures), 1); }},
      {"octets, shared",
       [](const ListFigures& figures) { return grouped(figures.internedOctets); }},
      {"octets, unshared",
       [](const ListFigures& figures) { return grouped(figures.unsharedOctets); }},
      {"saved",
       [](const ListFigures& figures) {
         return decimal(timesSaved(figures.unsharedOctets, figures.internedOctets), 1) + " times";
       }},
  };
  // As many beside each other as a terminal has room for.
  const std::size_t fit = columnsBehind(2 + labelWidth) / columnWidth;
  std::string text;
  for (std::span left(figures.types); !left.empty();) {
    const auto some = left.first(std::min(left.size(), std::max<std::size_t>(fit, 1)));
    left = left.subspan(some.size());
    text += (text.empty() ? "  " : "\n  ") + padded("", labelWidth);
    for (const auto& one : some) text += padded(one.type->title, columnWidth);
    text += '\n';
    for (const Row& row : rows) {
      text += "  " + padded(row.label, -labelWidth);
      for (const auto& one : some) text += padded(row.value(one.figures), columnWidth);
      text += '\n';
    }
  }
  return text;
}

/// The identifier of a type and subtype as `06/00`; empty for a kind that has none.
std::string_view identifierOf(const std::string& type) {
  if (!textStyle().kinds) return {};
  const U64 head = std::stoul(type.substr(0, 2) + type.substr(3), nullptr, 16);
  const auto* const kind = textStyle().kinds->find(Routing::Bgp::ExtCommContent(head << 48));
  return kind ? kind->identifier : std::string_view();
}

std::string extendedLines(const FileFigures::OfType& one) {
  std::string text;
  if (one.figures.distinctRouteTargetSets)
    text += "\n" + line("route-target sets", grouped(*one.figures.distinctRouteTargetSets)) + '\n';
  if (!one.figures.types || one.figures.types->empty()) return text;
  text += "\n  distinct " + std::string(one.type->title) + " communities by type/subtype\n";
  for (const auto& [type, values] : *one.figures.types)
    text += "  " + padded(grouped(values), labelWidth) + "  " + type +
            (identifierOf(type).empty() ? "" : "  ") + std::string(identifierOf(type)) + '\n';
  return text;
}

/// Octets tell apart values that have the same text.
std::string mostUsedLines(const FileFigures::OfType& one) {
  if (one.figures.mostUsed.empty()) return "";
  std::string text = "\n  most used " + std::string(one.type->title) + " communities, by paths\n";
  const std::vector<ValueUse>& values = one.figures.mostUsed;
  std::unordered_map<std::string_view, U64, SeededHash> alike;
  for (const ValueUse& value : values) ++alike[value.text];
  for (const ValueUse& value : values) {
    std::string shown = value.text;
    if (alike[value.text] > 1) shown += "  0x" + value.octets;
    if (explains()) shown = explained(std::move(shown), value.text, value.description);
    text += hanging("  " + padded(grouped(value.uses), labelWidth) + "  ", shown, labelWidth + 4);
  }
  return text;
}

nlohmann::ordered_json json(const std::vector<ValueUse>& values) {
  auto array = nlohmann::ordered_json::array();
  for (const ValueUse& value : values) {
    array.push_back({{"value", value.text},
                     {"octets", value.octets},
                     {"kind", value.kind},
                     {"paths", value.uses}});
    if (descriptions()) array.back()["description"] = value.description;
  }
  return array;
}

nlohmann::ordered_json number(const std::optional<U64>& value) {
  return value ? nlohmann::ordered_json(*value) : nlohmann::ordered_json();
}

nlohmann::ordered_json json(const FileFigures& figures) {
  auto object = nlohmann::ordered_json::object();
  object["file"] = figures.file;
  object["records"] = figures.records;
  object["paths"] = figures.paths;
  object["malformed"] = figures.faults.total();
  object["malformedBy"] = nlohmann::ordered_json::object();
  for (std::size_t i = 0; i < faultNames.size(); ++i)
    if (const U64 count = figures.faults[Fault(i)])
      object["malformedBy"][std::string(faultNames[i])] = count;
  if (const auto first = figures.firstMalformed(); !first.empty()) object["firstMalformed"] = first;
  object["wrongFlags"] = figures.wrongFlags;
  object["skipped"] = total(figures.skipped);
  object["skippedBy"] = nlohmann::ordered_json::object();
  for (std::size_t i = 0; i < skippedSorts; ++i)
    if (const U64 count = figures.skipped[i])
      object["skippedBy"][std::string(skippedNames[i].key)] = count;
  auto octets = nlohmann::ordered_json::object(), mostUsed = octets;
  for (const auto& [type, ofType] : figures.types) {
    nlohmann::ordered_json& entry = object[std::string(type->key)];
    entry = {{"attributes", ofType.attributes},
             {"communities", ofType.communities},
             {"distinctValues", number(ofType.distinctValues)},
             {"distinctLists", ofType.distinctLists}};
    if (ofType.distinctRouteTargetSets)
      entry["distinctRouteTargetSets"] = *ofType.distinctRouteTargetSets;
    if (ofType.types) entry["types"] = *ofType.types;
    octets[std::string(type->key)] = {{"shared", ofType.internedOctets},
                                      {"unshared", ofType.unsharedOctets}};
    mostUsed[std::string(type->key)] = json(ofType.mostUsed);
  }
  object["octets"] = std::move(octets);
  object["mostUsed"] = std::move(mostUsed);
  object["seconds"] = figures.seconds;
  return object;
}

}  // namespace

std::string summaryTable(const FileFigures& figures) {
  std::string text = strong(visible(shownFile(figures.file)));
  text += '\n' + line("records", grouped(figures.records)) + '\n';
  text += line("paths", grouped(figures.paths)) + '\n';
  text += malformedLines(figures) + passedLines(figures) + timeLine(figures) + '\n' +
          typeLines(figures);
  for (const auto& one : figures.types) text += extendedLines(one) + mostUsedLines(one);
  return text;
}

std::string summaryJson(const std::vector<FileFigures>& files, const FileFigures& total) {
  auto object = nlohmann::ordered_json::object();
  object["files"] = nlohmann::ordered_json::array();
  for (const FileFigures& file : files) object["files"].push_back(json(file));
  object["total"] = json(total);
  // File names need not be UTF-8.
  return object.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + '\n';
}

}  // namespace bgpcomm
