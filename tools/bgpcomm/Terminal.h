// Standard output, error lines, colours: everything that the tool writes to people.
#pragma once

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

#include "Mox/Types.h"

namespace bgpcomm {
using namespace Mox::Words;

/// Writes to standard output, gathered into large pieces. When nobody reads it any more the process
/// ends quietly; any other failure to write ends it with an error line and exit code 1.
void print(std::string_view text);
/// Writes the output that is still held. main calls it after every command.
void flushOutput();
/// Whether there has been any output.
bool hasPrinted();

/// The text, safe for a terminal: `\xNN` stands for each octet of control characters (U+0000 to
/// U+001F, U+007F to U+009F), of line separators and marks of direction, and of anything that is
/// not UTF-8. A file's name may hold any.
std::string visible(std::string_view text);
/// The octets of the character that the text begins with; 0 when `visible` escapes the first octet.
/// REQUIRES: the text is not empty.
std::size_t printableSize(std::string_view text);

/// Writes one line, `bgpcomm: ` and the pieces, made visible, on standard error: behind all output
/// so far and in the place of a progress line. Allocates nothing.
void printErrorLine(std::initializer_list<std::string_view> pieces);
template <class... Pieces>
void printError(const Pieces&... pieces) {
  printErrorLine({std::string_view(pieces)...});
}

/// Names the file that is worked on from now on, for `printOutOfMemory`. Allocates nothing.
void workingOn(std::string_view file);
/// The error line of memory that is not there. `position` says where in the file. Allocates
/// nothing.
void printOutOfMemory(std::string_view position = "");

/// Set by options of the command line, before anything is written.
struct TerminalOptions {
  std::optional<bool> colour;  ///< nothing: on a terminal, unless NO_COLOR is set to something
  bool progress = true;        ///< whether the line that shows progress is drawn on a terminal
};
TerminalOptions& terminalOptions();

/// A heading, and text about what is malformed, as they are shown; unchanged without colours.
std::string strong(std::string_view text);
std::string bad(std::string_view text);

/// The columns of the terminal that standard output is: what COLUMNS in the environment says, or
/// the terminal itself. Nothing where it is none, whatever COLUMNS says: pipes get the same
/// everywhere.
std::optional<std::size_t> terminalColumns();

/// A file's name for people: `-` is standard input.
std::string_view shownFile(std::string_view file);

/// The number with a comma after every third digit from the right: `1,234,567`.
std::string grouped(U64 number);

}  // namespace bgpcomm
