// Texts of lines for terminals.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Mox/Types.h"

namespace bgpcomm {
using namespace Mox::Words;

/// The columns of lines for people.
inline constexpr std::size_t lineColumns = 80;

/// Lines of at most so many columns, broken at blanks, in longer words behind commas; a word
/// without these has a line of its own. None of a text without words.
std::vector<std::string> wrapped(std::string_view text, std::size_t columns);

/// `1 path`, `1,234 paths`.
std::string counted(U64 count, std::string_view what);

}  // namespace bgpcomm
