#include "Lines.h"

#include <algorithm>

#include "Terminal.h"

namespace bgpcomm {

std::optional<Lines::Line> Lines::next() {
  if (restFollows_) passRest();
  std::size_t size = 0;
  bool more = true;
  while ((size = lineEnd(size)) == ahead_.size() && size <= longestLine && more)
    more = readAhead(size + 1);
  if (ahead_.empty()) return std::nullopt;

  restFollows_ = size > longestLine;
  if (restFollows_) size = longestLine;
  const Line line{asText(ahead_.first(size)), ++number_, restFollows_};
  take(restFollows_ ? size : std::min(size + 1, ahead_.size()));
  return line;
}

std::size_t Lines::lineEnd(std::size_t from) const {
  const auto end = std::find(ahead_.begin() + std::ptrdiff_t(from), ahead_.end(), '\n');
  return std::size_t(end - ahead_.begin());
}

bool Lines::readAhead(std::size_t size) {
  flushOutput();
  ahead_ = source_.ahead(size);
  return ahead_.size() >= size;
}

void Lines::take(std::size_t size) {
  source_.take(size);
  ahead_ = ahead_.subspan(size);
}

void Lines::passRest() {
  std::size_t end = 0;
  while ((end = lineEnd(0)) == ahead_.size()) {
    take(end);
    if (!readAhead(1)) return;
  }
  take(end + 1);
}

std::string_view trimmed(std::string_view line) {
  constexpr std::string_view blanks = " \t\r";
  const std::size_t start = line.find_first_not_of(blanks);
  if (start == line.npos) return {};
  return line.substr(start, line.find_last_not_of(blanks) + 1 - start);
}

}  // namespace bgpcomm
