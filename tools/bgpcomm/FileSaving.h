// Writes files that are whole or not there, even when a signal ends the process meanwhile.
#pragma once

#include <string>
#include <vector>

#include "MoxStash/StoreFile.h"
#include "MoxStash/StoreWriter.h"

namespace bgpcomm {

/// A file to be written.
struct Target {
  std::string name;
  std::string_view option;    ///< which names it
  MoxStash::CheckFile check;  ///< whether it may be replaced
};
/// Refuses a target that is one of the sources, or that may not be replaced, or not be written
/// where it is to be: before hours of reading. UsageError, DataError or StoreException. `what` is
/// what the sources are called.
void checkTarget(const Target& target, const std::vector<std::string>& sources,
                 std::string_view what);

// Each of the next two writes the file, or prints an error line with its name and the reason and
// returns false. SIGHUP, SIGINT, SIGQUIT or SIGTERM give the writing up: an error line, nothing
// beside the file, then the process ends by that signal. Ignored signals stay ignored. Threads: one
// at a time.

/// Replaces a store or an empty file of this name, no other.
bool writeStore(const MoxStash::StoreWriter& writer, const std::string& name);
/// Replaces a page of HTML or an empty file of this name, no other.
bool writeHtml(std::string_view page, const std::string& name);

/// StoreException when a page may not take the place of the file of this name.
void checkReplaceableHtml(const std::string& name);

}  // namespace bgpcomm
