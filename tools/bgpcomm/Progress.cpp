#include "Progress.h"

#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include "Terminal.h"

namespace bgpcomm {
namespace {

volatile std::sig_atomic_t progressDrawn = 0;

void clearAndDie(int signal) {
  clearProgress();
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

/// Signals that are ignored stay so.
void clearProgressWhenKilled() {
  for (const int signal : {SIGINT, SIGQUIT, SIGTERM, SIGHUP})
    if (std::signal(signal, clearAndDie) == SIG_IGN) std::signal(signal, SIG_IGN);
}

/// Another job has the terminal then. A terminal of another session has no foreground job. May be
/// called from a signal's handler.
bool isInBackground() {
  const pid_t foreground = ::tcgetpgrp(STDERR_FILENO);
  return foreground >= 0 && foreground != ::getpgrp();
}

/// Whether the screen may get a line of standard output into the one that is drawn.
bool isShared(bool printsLines) {
  if (::isatty(STDOUT_FILENO)) return printsLines;
  struct stat status {};
  const bool hasReader = ::fstat(STDOUT_FILENO, &status) == 0 &&
                         (S_ISFIFO(status.st_mode) || S_ISSOCK(status.st_mode));
  return hasReader && (printsLines || hasPrinted());
}

bool canBeDrawn(bool printsLines) {
  const char* const terminal = std::getenv("TERM");
  return terminalOptions().progress && ::isatty(STDERR_FILENO) &&
         std::string_view(terminal ? terminal : "") != "dumb" && !isShared(printsLines);
}

std::size_t terminalWidth() {
  winsize size{};
  const bool known = ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return known ? size.ws_col : 80;
}

/// The last octets of the text, at most so many, from the start of a character on.
std::string_view endOf(std::string_view text, std::size_t most) {
  text.remove_prefix(text.size() - std::min(text.size(), most));
  while (!text.empty() && (U8(text.front()) & 0xc0) == 0x80) text.remove_prefix(1);
  return text;
}

/// ", 12 s left"; nothing before a guess is worth something.
std::string timeLeft(std::chrono::duration<double> elapsed, double done) {
  if (elapsed < std::chrono::seconds(1) || done <= 0) return "";
  const U64 seconds = U64(elapsed.count() / done * (1 - done)) + 1;
  return seconds < 120 ? ", " + grouped(seconds) + " s left"
                       : ", " + grouped((seconds + 30) / 60) + " min left";
}

}  // namespace

void clearProgress() {
  if (!progressDrawn) return;
  progressDrawn = 0;
  if (isInBackground()) return;  // the shell has gone on in a line of its own
  constexpr std::string_view clear = "\r\033[K";
  if (::write(STDERR_FILENO, clear.data(), clear.size()) < 0) return;
}

Progress::Progress(const std::string& file, const Input& input, bool printsLines)
    : file_(visible(shownFile(file.substr(file.rfind('/') + 1)))),
      input_(input),
      enabled_(canBeDrawn(printsLines)) {
  if (!enabled_) return;
  flushOutput();
  clearProgressWhenKilled();
}

Progress::~Progress() { clearProgress(); }

void Progress::draw(U64 paths) {
  const Clock::time_point now = Clock::now();
  if (now - last_ < std::chrono::milliseconds(100)) return;
  last_ = now;
  if (isInBackground()) return;

  const std::chrono::duration<double> elapsed = now - start_;
  const U64 size = input_.size();
  // Reading may be ahead of what is shown, so the end is not reached before the line goes.
  const double done = size ? std::min(double(input_.position()) / double(size), 0.99) : 0;
  // The last column stays free, so that no terminal wraps.
  const std::size_t width = terminalWidth() - 1;
  std::string line;
  // Part of a figure would be another.
  const auto addIfItFits = [&line, width](const std::string& piece) {
    if (line.size() + piece.size() <= width) line += piece;
  };
  if (size) {
    constexpr std::size_t barSize = 24;
    const std::size_t full = std::size_t(done * barSize);
    addIfItFits(" [" + std::string(full, '#') + std::string(barSize - full, '.') + ']');
    addIfItFits(' ' + std::to_string(int(done * 100)) + " %");
  }
  addIfItFits(' ' + grouped(U64(double(paths) / elapsed.count())) + " paths/s");
  addIfItFits(timeLeft(elapsed, done));
  line.insert(0, endOf(file_, width - line.size()));
  progressDrawn = 1;
  std::fprintf(stderr, "\r%s\033[K", line.c_str());
  std::fflush(stderr);
}

}  // namespace bgpcomm
