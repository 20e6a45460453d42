// The lines of standard input, each as soon as it has arrived.
//
//   Lines lines;
//   while (const std::optional<Lines::Line> line = lines.next()) { ... line->text ... }
#pragma once

#include <optional>
#include <string_view>

#include "ReaderNames.h"
#include "mrt/Source.h"

namespace bgpcomm {

/// Throws std::system_error when standard input cannot be read.
class Lines {
 public:
  /// The longest attribute as digits, with blanks between its octets; Source holds more than this.
  static constexpr std::size_t longestLine = 200'000;

  struct Line {
    std::string_view text;  ///< without its end; valid until the next call
    U64 number;             ///< counted from 1
    bool tooLong;           ///< the text is only the first `longestLine` characters
  };
  /// The next line; nothing behind the last one. Writes the output out before it waits for more.
  std::optional<Line> next();

 private:
  /// The index of the line's end in `ahead_`, searched from an index on; the size of `ahead_` when
  /// it has none.
  std::size_t lineEnd(std::size_t from) const;
  /// Reads until `size` octets are ahead. False when the input has ended before.
  bool readAhead(std::size_t size);
  void take(std::size_t size);
  /// Passes the rest of a line that was too long.
  void passRest();

  Source source_{"-"};
  Octets ahead_;
  U64 number_ = 0;
  bool restFollows_ = false;  ///< the last line was too long, and its rest is not yet taken
};

/// Without the blanks at its ends.
std::string_view trimmed(std::string_view line);

}  // namespace bgpcomm
