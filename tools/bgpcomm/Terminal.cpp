#include "Terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "Errors.h"
#include "Progress.h"
#include "community/ZoBgpCommunityTextParts.h"

namespace bgpcomm {
namespace {

constexpr std::size_t outputSize = 64 * 1024;

bool anyPrinted = false;

std::string& output() {
  static std::string held;
  return held;
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
      output().clear();
      printError("standard output: ", why);
      std::_Exit(exitBadData);
    }
  }
}

/// Hands the text on in pieces that are safe for a terminal.
template <class Use>
void forEachVisible(std::string_view text, Use use) {
  while (!text.empty()) {
    const std::size_t size = printableSize(text);
    constexpr char digits[] = "0123456789abcdef";
    const char escaped[] = {'\\', 'x', digits[U8(text[0]) >> 4], digits[U8(text[0]) & 15]};
    use(size ? text.substr(0, size) : std::string_view(escaped, sizeof escaped));
    text.remove_prefix(size ? size : 1);
  }
}

/// A line for standard error, written in one piece unless it is very long.
class ErrorLine {
 public:
  ~ErrorLine() { flush(); }

  void add(std::string_view piece) {
    if (piece.size() > sizeof held_ - size_) flush();
    std::memcpy(held_ + size_, piece.data(), piece.size());
    size_ += piece.size();
  }

 private:
  /// There is nobody to be told of a failure.
  void flush() {
    std::string_view left(held_, size_);
    while (!left.empty()) {
      const ssize_t written = ::write(STDERR_FILENO, left.data(), left.size());
      if (written >= 0)
        left.remove_prefix(std::size_t(written));
      else if (errno != EINTR)
        break;
    }
    size_ = 0;
  }

  char held_[4096];
  std::size_t size_ = 0;
};

/// As long as any name that can be opened.
char fileWorkedOn[4096];

std::string shownIn(const char* colour, std::string_view text) {
  static const bool isUsual = [] {
    const char* const noColour = std::getenv("NO_COLOR");
    return ::isatty(STDOUT_FILENO) && (!noColour || !*noColour);
  }();
  if (!terminalOptions().colour.value_or(isUsual)) return std::string(text);
  return colour + std::string(text) + "\033[0m";
}

}  // namespace

void print(std::string_view text) {
  anyPrinted |= !text.empty();
  output() += text;
  if (output().size() >= outputSize) flushOutput();
}

void flushOutput() {
  writeAll(output());
  output().clear();
}

bool hasPrinted() { return anyPrinted; }

std::size_t printableSize(std::string_view text) {
  const U8 first = U8(text[0]);
  if (first < 0x80) return first >= 0x20 && first != 0x7f;
  const std::size_t size = first < 0xe0 ? 2 : first < 0xf0 ? 3 : 4;
  if (first < 0xc0 || first > 0xf7 || size > text.size()) return 0;
  U32 code = first & 0x7fu >> size;
  for (const char next : text.substr(1, size - 1)) {
    if ((U8(next) & 0xc0) != 0x80) return 0;
    code = code << 6 | (U8(next) & 0x3f);
  }
  constexpr U32 leastOfSize[] = {0x80, 0x800, 0x10000};
  constexpr std::pair<U32, U32> unprintable[] = {
      {0x80, 0x9f},     {0x61c, 0x61c},  {0x200e, 0x200f}, {0x2028, 0x202e},
      {0x2066, 0x2069}, {0xd800, 0xdfff}};  // C1, marks of direction, ends of lines, halves of
                                            // UTF-16
  const bool printable = std::none_of(
      std::begin(unprintable), std::end(unprintable),
      [code](const auto& range) { return range.first <= code && code <= range.second; });
  return printable && code >= leastOfSize[size - 2] && code <= 0x10ffff ? size : 0;
}

std::string visible(std::string_view text) {
  std::string out;
  forEachVisible(text, [&out](std::string_view piece) { out += piece; });
  return out;
}

void printErrorLine(std::initializer_list<std::string_view> pieces) {
  flushOutput();
  clearProgress();
  ErrorLine line;
  line.add("bgpcomm: ");
  for (const std::string_view piece : pieces)
    forEachVisible(piece, [&line](std::string_view visible) { line.add(visible); });
  line.add("\n");
}

void workingOn(std::string_view file) {
  file = shownFile(file);
  fileWorkedOn[file.copy(fileWorkedOn, sizeof fileWorkedOn - 1)] = '\0';
}

void printOutOfMemory(std::string_view position) {
  printError(fileWorkedOn, *fileWorkedOn ? ": " : "", "out of memory", position);
}

TerminalOptions& terminalOptions() {
  static TerminalOptions options;
  return options;
}

std::string strong(std::string_view text) { return shownIn("\033[1m", text); }
std::string bad(std::string_view text) { return shownIn("\033[31m", text); }

std::optional<std::size_t> terminalColumns() {
  static const auto known = []() -> std::optional<std::size_t> {
    if (!::isatty(STDOUT_FILENO)) return std::nullopt;
    constexpr std::size_t least = 40, most = 10'000, usual = 80;  // below, nothing can be read
    const char* const named = std::getenv("COLUMNS");
    winsize size{};
    U64 columns = Routing::Bgp::decimalNumber(named ? named : "", 64).value_or(0);
    if (columns == 0 && ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0) columns = size.ws_col;
    return std::clamp(columns ? std::size_t(std::min<U64>(columns, most)) : usual, least, most);
  }();
  return known;
}

std::string_view shownFile(std::string_view file) { return file == "-" ? "standard input" : file; }

std::string grouped(U64 number) {
  std::string text = std::to_string(number);
  for (std::size_t i = text.size(); i > 3; i -= 3) text.insert(i - 3, 1, ',');
  return text;
}

}  // namespace bgpcomm
