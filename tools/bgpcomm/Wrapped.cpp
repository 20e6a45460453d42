#include "Wrapped.h"

#include <algorithm>

#include "Terminal.h"

namespace bgpcomm {
namespace {

/// Counts a character of UTF-8 as one.
std::size_t columnsOf(std::string_view text) {
  return std::size_t(std::ranges::count_if(text, [](char c) { return (U8(c) & 0xC0) != 0x80; }));
}

}  // namespace

std::vector<std::string> wrapped(std::string_view text, std::size_t columns) {
  std::vector<std::string> lines;
  std::size_t taken = 0;  // columns of the last line
  while (!text.empty()) {
    std::string_view word = text.substr(0, text.find(' '));
    std::size_t size = columnsOf(word);
    // A set of AS numbers may be longer than a line.
    if (const auto comma = word.substr(0, columns).rfind(','); size > columns && comma != word.npos)
      size = columnsOf(word = word.substr(0, comma + 1));
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

std::string counted(U64 count, std::string_view what) {
  return grouped(count) + ' ' + std::string(what) + (count == 1 ? "" : "s");
}

}  // namespace bgpcomm
