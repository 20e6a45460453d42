#include "mrt/Source.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>

namespace Routing::Mrt {
namespace {
constexpr std::size_t pieceSize = 256 * 1024;

[[noreturn]] void throwErrno(int error) { throw std::system_error(error, std::generic_category()); }
}  // namespace

Source::Source(const std::string& file)
    : owned_(file != "-"),
      descriptor_(!owned_ ? STDIN_FILENO : ::open(file.c_str(), O_RDONLY | O_CLOEXEC)) {
  if (descriptor_ < 0) throwErrno(errno);
  struct stat status {};
  if (::fstat(descriptor_, &status) == 0) {
    if (S_ISREG(status.st_mode)) size_ = U64(status.st_size);
    if (S_ISDIR(status.st_mode)) {
      if (owned_) ::close(descriptor_);
      throwErrno(EISDIR);
    }
  }
}

Source::~Source() {
  if (owned_) ::close(descriptor_);
}

bool Source::isReady(int milliseconds) const {
  pollfd ready{descriptor_, POLLIN, 0};
  return ::poll(&ready, 1, milliseconds) > 0;
}

std::size_t Source::readSome(std::span<U8> into) {
  for (;;) {
    constexpr int tenthOfSecond = 100;
    // At first short, as what the pause depends on may change soon.
    for (int wait = 0; !isReady(wait); wait = std::min(2 * wait + 1, tenthOfSecond)) {
      if (stopped_.load(std::memory_order_relaxed)) return 0;
      pause();
    }
    const ssize_t got = ::read(descriptor_, into.data(), into.size());
    if (got >= 0) {
      position_.fetch_add(U64(got), std::memory_order_relaxed);
      return std::size_t(got);
    }
    if (errno != EINTR) throwErrno(errno);
  }
}

Octets Source::ahead() { return ahead(1); }

Octets Source::ahead(std::size_t size) {
  if (buffer_.empty()) buffer_.resize(pieceSize);
  if (end_ - begin_ < size && begin_ > 0) {
    std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
    end_ -= begin_;
    begin_ = 0;
  }
  while (end_ - begin_ < size) {
    const std::size_t got = readSome(std::span(buffer_).subspan(end_));
    if (got == 0) break;
    end_ += got;
  }
  return Octets(buffer_).subspan(begin_, end_ - begin_);
}

std::size_t Source::read(std::span<U8> into) {
  if (begin_ == end_) return readSome(into);
  const std::size_t size = std::min(into.size(), end_ - begin_);
  std::memcpy(into.data(), buffer_.data() + begin_, size);
  begin_ += size;
  return size;
}

}  // namespace Routing::Mrt
