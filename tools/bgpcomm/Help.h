// Help for a terminal, and the message about a command line that cannot be run.
#pragma once

#include "Commands.h"

namespace bgpcomm {

/// One line, with the word that was probably meant where one is unknown, and where to read on.
std::string whatIsWrong(const CLI::App& program, const CLI::ParseError& error);

/// Help, which is written for 80 columns, in the lines of a terminal that has fewer. Examples keep
/// theirs, to be copied.
std::string fitted(const std::string& help);

}  // namespace bgpcomm
