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
    const auto end = std::min(text.find(' '), text.size());
    const std::string_view word = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (word.empty()) continue;
    const std::size_t size = columnsOf(word);
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
