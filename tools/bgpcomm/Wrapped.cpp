#include "Wrapped.h"

#include <wchar.h>

#include <algorithm>
#include <cwchar>
#include <numeric>

#include "Terminal.h"

namespace bgpcomm {
namespace {

struct Character {
  std::size_t octets;
  std::size_t columns;  ///< two of East Asian ones, none of accents that join another
};

/// REQUIRES: the text is not empty.
Character firstOf(std::string_view text) {
  wchar_t character = 0;
  std::mbstate_t state{};
  const std::size_t octets = std::mbrtowc(&character, text.data(), text.size(), &state);
  if (octets == 0 || octets > text.size()) return {1, 1};  // no text
  return {octets, std::size_t(std::max(wcwidth(character), 0))};
}

std::size_t columnsOf(std::string_view text) {
  std::size_t columns = 0;
  while (!text.empty()) {
    const Character first = firstOf(text);
    columns += first.columns;
    text.remove_prefix(first.octets);
  }
  return columns;
}

/// As much of a word as fits and ends where a word may be broken: behind a comma, since a set of AS
/// numbers may be longer than a line, or behind an East Asian character. The whole word if it fits,
/// or cannot be broken so.
std::string_view partOf(std::string_view word, std::size_t columns) {
  std::size_t taken = 0, end = 0;
  for (std::size_t at = 0; at < word.size();) {
    const Character next = firstOf(word.substr(at));
    if ((taken += next.columns) > columns) return end ? word.substr(0, end) : word;
    at += next.octets;
    if (word[at - 1] == ',' || next.columns == 2) end = at;
  }
  return word;
}

}  // namespace

std::vector<std::string> wrapped(std::string_view text, std::size_t columns) {
  std::vector<std::string> lines;
  std::size_t taken = 0;  // columns of the last line
  while (!text.empty()) {
    const std::string_view word = partOf(text.substr(0, text.find(' ')), columns);
    const std::size_t size = columnsOf(word);
    text.remove_prefix(word.size());
    if (text.starts_with(' ')) text.remove_prefix(1);
    if (word.empty()) continue;
    if (!lines.empty() && taken + 1 + size <= columns) {
      (lines.back() += ' ') += word;
      taken += 1 + size;
    } else {
      lines.emplace_back(word);
      taken = size;
    }
  }
  return lines;
}

std::size_t lineColumns() { return terminalColumns().value_or(80); }

std::size_t columnsBehind(std::size_t margin) {
  constexpr std::size_t least = 20;
  return std::max(lineColumns(), margin + least) - margin;
}

std::string broken(std::string first, std::string_view text, std::size_t margin) {
  std::string lines;
  for (const std::string& line : wrapped(text, columnsBehind(margin))) {
    lines.append(first).append(line).append("\n");
    first.assign(margin, ' ');
  }
  // No blanks at the end of a line without text.
  return lines.empty() ? first.substr(0, first.find_last_not_of(' ') + 1) + '\n' : lines;
}

std::string hanging(std::string first, std::string_view text, std::size_t margin) {
  return terminalColumns() ? broken(std::move(first), text, margin) : (first += text) + '\n';
}

void printFields(std::string_view line) {
  if (!terminalColumns()) {
    print(line);
    return print("\n");
  }
  constexpr std::size_t margin = 4, rest = 2;  // of a field that takes several lines: deeper
  std::string text;
  for (std::size_t taken = 0; !line.empty();) {
    const std::string_view field = line.substr(0, line.find('\t'));
    line.remove_prefix(std::min(line.size(), field.size() + 1));
    const std::size_t size = columnsOf(field);
    const std::size_t before = text.empty() ? 0 : 2;
    if (text.empty() || taken + before + size <= lineColumns()) {
      text.append(before, ' ').append(field);
      taken += before + size;
      continue;
    }
    const std::string its = hanging(std::string(margin, ' '), field, margin + rest);
    text.append("\n").append(its, 0, its.size() - 1);
    taken = margin + size + rest <= lineColumns() ? margin + size : lineColumns();
  }
  print(text + '\n');
}

void TerminalTable::add(std::vector<std::string> figures, std::string text) {
  rows_.push_back({std::move(figures), std::move(text)});
}

void TerminalTable::print() const {
  std::vector<std::size_t> widths;
  std::size_t textSize = 0;
  for (const auto& [figures, text] : rows_) {
    widths.resize(figures.size());
    for (std::size_t i = 0; i < figures.size(); ++i)
      widths[i] = std::max(widths[i], figures[i].size());
    textSize = std::max(textSize, columnsOf(text));
  }
  const std::size_t taken = std::accumulate(widths.begin(), widths.end(), 2 * widths.size());
  // Texts stand below their figures where they would be broken all the time.
  constexpr std::size_t enough = 24, margin = 4;
  const bool below = taken + std::min(textSize, enough) > lineColumns();
  for (const auto& [figures, text] : rows_) {
    std::string line;
    for (std::size_t i = 0; i < figures.size(); ++i)
      line.append(widths[i] - figures[i].size(), ' ').append(figures[i]).append("  ");
    if (below) {
      line.resize(line.size() - 2);
      bgpcomm::print(line + '\n');
      line.assign(margin, ' ');
    }
    bgpcomm::print(hanging(line, text, below ? margin : taken));
  }
}

std::string counted(U64 count, std::string_view what) {
  return grouped(count) + ' ' + std::string(what) + (count == 1 ? "" : "s");
}

}  // namespace bgpcomm
