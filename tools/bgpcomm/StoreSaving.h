// Writes a store that is whole or not there, even when a signal ends the process meanwhile.
#pragma once

#include <string>

#include "MoxStash/StoreWriter.h"

namespace bgpcomm {

/// Writes the store, or prints an error line with its name and the reason and returns false.
/// SIGHUP, SIGINT, SIGQUIT or SIGTERM give the writing up: an error line, nothing beside the store,
/// then the process ends by that signal. Ignored signals stay ignored. Threads: one at a time.
bool writeStore(const MoxStash::StoreWriter& writer, const std::string& name);

}  // namespace bgpcomm
