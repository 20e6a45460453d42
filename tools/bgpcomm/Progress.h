// The line that shows how far a file is read.
#pragma once

#include <chrono>
#include <string>

#include "ReaderNames.h"
#include "mrt/Input.h"

namespace bgpcomm {

/// A line on standard error that shows how far a file is read, when that is a terminal that can go
/// back in a line, and ours: the process is not in the background, and nobody writes lines there
/// meanwhile. It goes away with the object, before an error line, and when a signal from the
/// keyboard, `kill` or a closed terminal ends the process.
class Progress {
 public:
  /// `printsLines`: standard output gets lines while the file is read. On a terminal, or from the
  /// reader of a pipe or a socket, they come to the same screen. Output that is held is written.
  Progress(const std::string& file, const Input& input, bool printsLines);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// Call it for each record and path; draws at most ten times a second.
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

/// Takes a line away that is drawn. May be called from a signal's handler.
void clearProgress();

}  // namespace bgpcomm
