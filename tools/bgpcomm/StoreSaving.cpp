#include "StoreSaving.h"

#include <array>
#include <csignal>
#include <cstring>
#include <new>

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

}  // namespace

bool writeStore(const MoxStash::StoreWriter& writer, const std::string& name) {
  const HeldSignals held;
  try {
    writer.write(name, &HeldSignals::caught);
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

}  // namespace bgpcomm
