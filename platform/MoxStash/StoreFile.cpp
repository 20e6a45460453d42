#include "MoxStash/StoreFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <system_error>
#include <utility>

#include "MoxStash/StoreFormat.h"

namespace MoxStash {

namespace {

[[noreturn]] void fail(const Mox::String& file, const Mox::String& reason) {
  throw StoreException(file + ": " + reason);
}

[[noreturn]] void failWith(int error, const Mox::String& file, const char* act) {
  fail(file, act + std::system_category().message(error));
}

constexpr const char* notRegular = "is not a regular file";

/// The call's result; the call is made again as long as a signal interrupts it.
auto uninterrupted(auto call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

/// Names start with the target's, cut so that no file system finds them too long.
Mox::String besideName(const Mox::String& target) {
  static std::atomic<U32> count{0};
  constexpr std::size_t most = 100;
  const std::size_t start = target.rfind('/') + 1;  // 0 when there is no slash
  return target.substr(0, start) + target.substr(start, most) + ".new-" + std::to_string(getpid()) +
         '-' + std::to_string(++count);
}

/// A new file beside the one that it is to replace; gone again unless it does.
class Replacement {
 public:
  Replacement(const Mox::String& target, CheckFile check, StopWriting stop)
      : target_(target), check_(check), stop_(stop) {
    check_(target_);
    // A process of the same number may have left a file behind when it was killed.
    for (U32 attempts = 0; descriptor_ < 0 && attempts < 100; ++attempts) {
      name_ = besideName(target);
      descriptor_ = open(name_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
      if (descriptor_ < 0 && errno != EEXIST) break;
    }
    if (descriptor_ < 0) failWith(errno, target_, "cannot be written: ");
    // A file that was closed to others stays so.
    struct stat replaced;
    if (stat(target.c_str(), &replaced) == 0) fchmod(descriptor_, replaced.st_mode & 0777);
  }
  Replacement(const Replacement&) = delete;
  Replacement& operator=(const Replacement&) = delete;
  ~Replacement() {
    if (descriptor_ >= 0) close(descriptor_);
    if (!replaced_) unlink(name_.c_str());
  }

  void write(std::string_view octets) {
    while (!octets.empty()) {
      failIfStopped();
      const std::size_t most = std::min<std::size_t>(octets.size(), 1u << 20);
      const auto written = uninterrupted([&] { return ::write(descriptor_, octets.data(), most); });
      if (written < 0) failWith(errno, target_, "cannot be written: ");
      octets.remove_prefix(std::size_t(written));
    }
  }
  void replace() {
    if (fsync(descriptor_) < 0) failWith(errno, target_, "cannot be written: ");
    if (close(std::exchange(descriptor_, -1)) < 0) failWith(errno, target_, "cannot be written: ");
    failIfStopped();
    check_(target_);
    if (std::rename(name_.c_str(), target_.c_str()) < 0)
      failWith(errno, target_, "cannot be replaced: ");
    replaced_ = true;
  }

 private:
  void failIfStopped() const {
    if (stop_ && stop_()) fail(target_, "is not written: stopped");
  }

  const Mox::String target_;
  const CheckFile check_;
  const StopWriting stop_;
  Mox::String name_;
  int descriptor_ = -1;
  bool replaced_ = false;
};

}  // namespace

// Opened so that it does not wait for the writer of a pipe, which is refused.
StoreFile::StoreFile(const Mox::String& name)
    : name_(name), descriptor_(open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)), size_(0) {
  if (descriptor_ < 0) failWith(errno, name_, "cannot be opened: ");
  struct stat status {};
  const int error = fstat(descriptor_, &status) < 0 ? errno : 0;
  if (!error && S_ISREG(status.st_mode)) {
    size_ = U64(status.st_size);
    return;
  }
  close(descriptor_);
  error ? failWith(error, name_, "cannot be read: ") : fail(name_, notRegular);
}

StoreFile::~StoreFile() { close(descriptor_); }

void StoreFile::read(char* to, std::size_t size) {
  while (size) {
    const std::size_t most = std::min<std::size_t>(size, 1u << 30);
    const auto got = uninterrupted([&] { return ::read(descriptor_, to, most); });
    if (got < 0) failWith(errno, name_, "cannot be read: ");
    if (got == 0) fail(name_, "was cut while it was read");
    to += got;
    size -= std::size_t(got);
  }
}

void checkReplaceable(const Mox::String& name) {
  struct stat status {};
  if (stat(name.c_str(), &status) < 0) return;
  StoreFile file(name);
  if (file.size() == 0) return;
  U8 magic[sizeof StoreHeader::magicOctets] = {};
  if (file.size() >= sizeof magic) file.read(reinterpret_cast<char*>(magic), sizeof magic);
  if (!std::equal(std::begin(magic), std::end(magic), StoreHeader::magicOctets))
    fail(name, "is not a store, and is not replaced");
}

void replaceFile(const Mox::String& name, CheckFile check, std::span<const std::string_view> pieces,
                 StopWriting stop) {
  Replacement replacement(name, check, stop);
  for (const std::string_view piece : pieces) replacement.write(piece);
  replacement.replace();
}

}  // namespace MoxStash
