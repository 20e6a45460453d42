#include "FileSaving.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <new>

#include "Errors.h"
#include "Terminal.h"

namespace bgpcomm {
namespace {

volatile std::sig_atomic_t caughtSignal = 0;

/// Holds off the signals that end a process, as long as it lives; the last that came is sent again
/// at its end.
class HeldSignals {
 public:
  HeldSignals() {
    caughtSignal = 0;
    struct sigaction note {};
    note.sa_handler = [](int signal) { caughtSignal = signal; };
    for (std::size_t i = 0; i < signals.size(); ++i) {
      sigaction(signals[i], &note, &before_[i]);
      if (before_[i].sa_handler == SIG_IGN) sigaction(signals[i], &before_[i], nullptr);
    }
  }
  ~HeldSignals() {
    for (std::size_t i = 0; i < signals.size(); ++i) sigaction(signals[i], &before_[i], nullptr);
    if (caughtSignal) std::raise(caughtSignal);
  }
  HeldSignals(const HeldSignals&) = delete;
  HeldSignals& operator=(const HeldSignals&) = delete;

  static bool caught() { return caughtSignal != 0; }

 private:
  static constexpr std::array signals = {SIGHUP, SIGINT, SIGQUIT, SIGTERM};
  struct sigaction before_[signals.size()];
};

/// Calls `write(stop)` with signals held off.
bool writeHeld(const std::string& name, auto write) {
  const HeldSignals held;
  try {
    write(&HeldSignals::caught);
    return true;
  } catch (const MoxStash::StoreException& error) {
    if (HeldSignals::caught())
      printError(name, ": is not written: ", strsignal(caughtSignal));
    else
      printError(error.what());
  } catch (const std::bad_alloc&) {
    printOutOfMemory();
  }
  return false;
}

[[noreturn]] void failWith(const std::string& name) {
  throw DataError(name + ": cannot be written: " + std::strerror(errno));
}

}  // namespace

void checkTarget(const Target& target, const std::vector<std::string>& sources,
                 std::string_view what) {
  for (const std::string& source : sources) {
    std::error_code none;
    if (source != "-" && std::filesystem::equivalent(source, target.name, none))
      throw UsageError(std::string(target.option) + ' ' + target.name + ": is one of the " +
                       std::string(what) + " to be read");
  }
  struct stat status {};
  if (::stat(target.name.c_str(), &status) < 0 && errno != ENOENT) failWith(target.name);
  target.check(target.name);
  const auto folder = std::filesystem::path(target.name).parent_path();
  if (::access(folder.empty() ? "." : folder.c_str(), W_OK | X_OK) < 0) failWith(target.name);
}

bool writeStore(const MoxStash::StoreWriter& writer, const std::string& name) {
  return writeHeld(name, [&](MoxStash::StopWriting stop) { writer.write(name, stop); });
}

bool writeHtml(std::string_view page, const std::string& name) {
  return writeHeld(name, [&](MoxStash::StopWriting stop) {
    MoxStash::replaceFile(name, &checkReplaceableHtml, {&page, 1}, stop);
  });
}

void checkReplaceableHtml(const std::string& name) {
  struct stat status {};
  if (::stat(name.c_str(), &status) < 0) return;
  MoxStash::StoreFile file(name);
  if (file.size() == 0) return;
  std::string start("<!doctype html");
  const std::string expected = start;
  const bool longEnough = file.size() >= start.size();
  if (longEnough) file.read(start.data(), start.size());
  std::ranges::transform(start, start.begin(),
                         [](char c) { return char('A' <= c && c <= 'Z' ? c + ('a' - 'A') : c); });
  if (!longEnough || start != expected)
    throw MoxStash::StoreException(name + ": is not an HTML page, and is not replaced");
}

}  // namespace bgpcomm
