// The message about a command line that cannot be run.
#pragma once

#include "Commands.h"

namespace bgpcomm {

/// One line, with the word that was probably meant where one is unknown, and where to read on.
std::string whatIsWrong(const CLI::App& program, const CLI::ParseError& error);

}  // namespace bgpcomm
