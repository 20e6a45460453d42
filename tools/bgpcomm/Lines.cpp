#include "Lines.h"

#include <algorithm>

#include "Commands.h"
#include "Terminal.h"

namespace bgpcomm {
namespace {
/// The longest attribute as digits, with blanks between its octets; Source holds more than this.
constexpr std::size_t longestLine = 200'000;
}  // namespace

std::optional<std::string_view> Lines::next() {
  ++number_;
  std::size_t size = 0;
  bool more = true;
  while ((size = lineEnd(size)) == ahead_.size() && size <= longestLine && more) {
    flushOutput();
    ahead_ = source_.ahead(size + 1);
    more = ahead_.size() > size;
  }
  if (size > longestLine)
    throw UsageError("standard input, line " + std::to_string(number_) + ": longer than " +
                     std::to_string(longestLine) + " characters");
  if (ahead_.empty()) return std::nullopt;
  const std::string_view line = asText(ahead_.first(size));
  const std::size_t taken = std::min(size + 1, ahead_.size());
  source_.take(taken);
  ahead_ = ahead_.subspan(taken);
  return line;
}

std::size_t Lines::lineEnd(std::size_t from) const {
  const auto end = std::find(ahead_.begin() + std::ptrdiff_t(from), ahead_.end(), '\n');
  return std::size_t(end - ahead_.begin());
}

}  // namespace bgpcomm
