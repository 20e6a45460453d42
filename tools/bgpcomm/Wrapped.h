// Texts of lines for terminals.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Mox/Types.h"

namespace bgpcomm {
using namespace Mox::Words;

/// The columns of lines for people: the terminal's, or 80 where the output is none.
std::size_t lineColumns();
/// As many as are left behind a margin: at least 20, which a narrow terminal breaks.
std::size_t columnsBehind(std::size_t margin);

/// Lines of at most so many columns, broken at blanks, in longer words behind commas and East Asian
/// characters; a word without these has a line of its own. None of a text without words.
std::vector<std::string> wrapped(std::string_view text, std::size_t columns);

/// A text behind another, in lines of at most `lineColumns`; those below the first stand behind as
/// many blanks as `margin` says.
std::string broken(std::string first, std::string_view text, std::size_t margin);
/// The same on a terminal. Elsewhere one line, whatever its length.
std::string hanging(std::string first, std::string_view text, std::size_t margin);

/// Prints a line of fields that tabs part. On a terminal two blanks part them, and those that it
/// has no room for begin a line below.
void printFields(std::string_view line);

/// Rows of figures, each with a text behind them. On a terminal the columns are as narrow as they
/// can be, and texts that do not fit go on below themselves, or begin there.
class TerminalTable {
 public:
  /// REQUIRES: all rows have as many figures.
  void add(std::vector<std::string> figures, std::string text);
  void print() const;

 private:
  struct Row {
    std::vector<std::string> figures;
    std::string text;
  };
  std::vector<Row> rows_;
};

/// `1 path`, `1,234 paths`.
std::string counted(U64 count, std::string_view what);

}  // namespace bgpcomm
