// The lines of standard input, each as soon as it has arrived.
//
//   Lines lines;
//   while (const std::optional<std::string_view> line = lines.next()) { ... }
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "ReaderNames.h"
#include "mrt/Source.h"

namespace bgpcomm {

/// Made and read, it throws std::system_error.
class Lines {
 public:
  /// The next line without its end, valid until the next call; nothing behind the last one. What
  /// the tool has printed is written out before it waits for more. UsageError for a line that is
  /// longer than anything the tool reads.
  std::optional<std::string_view> next();
  /// Of the line that `next` returned, counted from 1.
  U64 number() const { return number_; }

 private:
  /// Where in `ahead_` the line ends, or how much of it is there.
  std::size_t lineEnd(std::size_t from) const;

  Source source_{"-"};
  Octets ahead_;
  U64 number_ = 0;
};

}  // namespace bgpcomm
