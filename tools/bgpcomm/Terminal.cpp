#include "Terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "Hex.h"

namespace bgpcomm {
namespace {

constexpr std::size_t outputSize = 64 * 1024;

std::string& output() {
  static std::string held;
  return held;
}

volatile std::sig_atomic_t progressDrawn = 0;

/// Callable from a signal's handler.
void clearProgress() {
  if (!progressDrawn) return;
  progressDrawn = 0;
  constexpr std::string_view clear = "\r\033[K";
  if (::write(STDERR_FILENO, clear.data(), clear.size()) < 0) return;
}

void clearAndDie(int signal) {
  clearProgress();
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

void clearProgressWhenKilled() {
  for (const int signal : {SIGINT, SIGTERM})
    if (std::signal(signal, clearAndDie) == SIG_IGN) std::signal(signal, SIG_IGN);
}

void writeAll(std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = ::write(STDOUT_FILENO, text.data(), text.size());
    if (written >= 0) {
      text.remove_prefix(std::size_t(written));
    } else if (errno == EPIPE) {
      // No destructors: the filling thread may wait for input that never comes.
      clearProgress();
      std::_Exit(0);
    } else if (errno != EINTR) {
      const char* const why = std::strerror(errno);
      clearProgress();
      std::fprintf(stderr, "bgpcomm: standard output: %s\n", why);
      std::_Exit(1);
    }
  }
}

std::size_t terminalWidth() {
  winsize size{};
  const bool known = ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return known ? size.ws_col : 80;
}

}  // namespace

void print(std::string_view text) {
  output() += text;
  if (output().size() >= outputSize) flushOutput();
}

void flushOutput() {
  writeAll(output());
  output().clear();
}

std::string visible(std::string_view text) {
  std::string out;
  for (const char c : text) {
    const bool control = U8(c) < 0x20 || c == 0x7f;
    if (control) out += "\\x";
    out += control ? hex(asOctets({&c, 1})) : std::string(1, c);
  }
  return out;
}

void printError(std::string_view what) {
  flushOutput();
  const std::string line = "bgpcomm: " + visible(what) + '\n';
  clearProgress();
  std::fputs(line.c_str(), stderr);
}

const Colours& colours() {
  static const Colours chosen = [] {
    const char* const noColour = std::getenv("NO_COLOR");
    if (!::isatty(STDOUT_FILENO) || (noColour && *noColour)) return Colours{};
    return Colours{"\033[1m", "\033[31m", "\033[0m"};
  }();
  return chosen;
}

std::string grouped(U64 number) {
  std::string text = std::to_string(number);
  for (std::size_t i = text.size(); i > 3; i -= 3) text.insert(i - 3, 1, ',');
  return text;
}

Progress::Progress(const std::string& file, const Input& input, bool shown)
    : file_(visible(file.substr(file.rfind('/') + 1))),
      input_(input),
      enabled_(shown && ::isatty(STDERR_FILENO)) {
  if (enabled_) clearProgressWhenKilled();
}

Progress::~Progress() { clearProgress(); }

void Progress::draw(U64 paths) {
  const Clock::time_point now = Clock::now();
  if (now - last_ < std::chrono::milliseconds(100)) return;
  last_ = now;

  const std::chrono::duration<double> elapsed = now - start_;
  std::string line = ' ' + grouped(U64(double(paths) / elapsed.count())) + " paths/s";
  if (input_.size() > 0) {
    constexpr std::size_t barSize = 24;
    const std::size_t done = std::size_t(input_.position() * barSize / input_.size());
    line = " [" + std::string(std::min(done, barSize), '#') +
           std::string(barSize - std::min(done, barSize), '.') + "] " +
           std::to_string(input_.position() * 100 / input_.size()) + " %" + line;
  }
  // The last column stays free, so that no terminal wraps.
  const std::size_t width = terminalWidth() - 1;
  const std::size_t forName = width > line.size() ? width - line.size() : 0;
  line = file_.substr(file_.size() - std::min(file_.size(), forName)) + line;
  progressDrawn = 1;
  std::fprintf(stderr, "\r%.*s\033[K", int(width), line.c_str());
  std::fflush(stderr);
}

}  // namespace bgpcomm
