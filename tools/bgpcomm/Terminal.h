// What the tool writes to people: standard output, error lines, the progress bar, colours.
#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include "ReaderNames.h"
#include "mrt/Input.h"

namespace bgpcomm {

/// Standard output, gathered into large writes. When nobody reads it any more the process ends
/// quietly; any other failure to write ends it with an error line and exit code 1.
void print(std::string_view text);
/// Writes what is still held; every command ends with it.
void flushOutput();

/// With control characters as `\xNN`: a file's name may hold any.
std::string visible(std::string_view text);

/// One line, `bgpcomm: what`, on standard error, behind all output so far and in the place of a
/// progress line.
void printError(std::string_view what);

/// Colours, empty unless standard output is a terminal and NO_COLOR is unset or empty.
struct Colours {
  std::string_view strong, bad, plain;
};
const Colours& colours();

/// `1,234,567`.
std::string grouped(U64 number);

/// A line on standard error that shows how far a file is read, when that is a terminal. It goes
/// away with the object, and when a signal from the keyboard or `kill` ends the process.
class Progress {
 public:
  /// `shown` false: never draws.
  Progress(const std::string& file, const Input& input, bool shown);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// To be called for each record; draws at most ten times a second.
  void update(U64 paths) {
    if (enabled_ && ++calls_ % 256 == 0) draw(paths);
  }

 private:
  using Clock = std::chrono::steady_clock;
  void draw(U64 paths);

  std::string file_;
  const Input& input_;
  bool enabled_;
  U64 calls_ = 0;
  Clock::time_point start_ = Clock::now();
  Clock::time_point last_ = start_;
};

}  // namespace bgpcomm
