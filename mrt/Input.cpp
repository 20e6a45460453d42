#include "mrt/Input.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "mrt/internal/Decoder.h"

namespace Routing::Mrt {

Input::Input(const std::string& file, std::function<void()> onWait)
    : source_(file), onWait_(std::move(onWait)), filler_([this] { fillBlocks(); }) {}

Input::~Input() {
  {
    const std::lock_guard lock(mutex_);
    stopped_ = true;
  }
  source_.stop();
  changed_.notify_all();
  filler_.join();
}

void Input::fillBlocks() {
  std::exception_ptr thrown;
  try {
    const std::unique_ptr<Decoder> decoder = makeDecoder(source_);
    bool more = true;
    while (more && waitForFreeBlock()) {
      std::vector<U8>& block = blocks_[filled_ % blockCount];
      if (block.empty()) block.resize(blockSize);
      const std::size_t size = decoder->decode(block, source_);
      more = size > 0;
      if (more) {
        const std::lock_guard lock(mutex_);
        sizes_[filled_ % blockCount] = size;
        ++filled_;
      }
      changed_.notify_all();
    }
  } catch (...) {
    thrown = std::current_exception();
  }
  store(thrown);
}

bool Input::waitForFreeBlock() {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return stopped_ || filled_ - shown_ < blockCount; });
  return !stopped_;
}

/// Texts may need memory, too.
std::optional<Input::Failure> Input::failureOf(std::exception_ptr thrown) noexcept {
  try {
    try {
      if (thrown) std::rethrow_exception(thrown);
      return std::nullopt;
    } catch (const CompressionError& error) {
      return Failure{true, error.what()};
    } catch (const std::system_error& error) {
      return Failure{false, error.code().message()};
    } catch (const std::bad_alloc&) {
      throw;
    } catch (const std::exception& error) {
      return Failure{false, error.what()};
    }
  } catch (...) {
    return Failure{false, "out of memory"};
  }
}

void Input::store(std::exception_ptr thrown) {
  std::optional<Failure> failure = failureOf(thrown);
  {
    const std::lock_guard lock(mutex_);
    stored_ = std::move(failure);
    ended_ = true;
  }
  changed_.notify_all();
}

/// Gives the finished block back and waits for the next.
bool Input::nextBlock() {
  std::unique_lock lock(mutex_);
  if (holdsBlock_) {
    holdsBlock_ = false;
    ++shown_;
    changed_.notify_all();
  }
  const auto isThere = [this] { return ended_ || shown_ < filled_; };
  if (onWait_ && !isThere()) {
    lock.unlock();
    onWait_();
    lock.lock();
  }
  changed_.wait(lock, isThere);
  if (shown_ == filled_) {
    failure_ = stored_;
    return false;
  }
  holdsBlock_ = true;
  current_ = Octets(blocks_[shown_ % blockCount]).first(sizes_[shown_ % blockCount]);
  return true;
}

Octets Input::ahead(std::size_t size) {
  if (joinedTaken_ == joined_.size()) {
    joined_.clear();
    joinedTaken_ = 0;
    while (current_.empty())
      if (!nextBlock()) return {};
    if (current_.size() >= size) return current_;
  }
  // Octets that lie across blocks are copied, no more than asked for.
  joined_.erase(joined_.begin(), joined_.begin() + std::ptrdiff_t(joinedTaken_));
  joinedTaken_ = 0;
  while (joined_.size() < size) {
    if (current_.empty() && !nextBlock()) break;
    const std::size_t part = std::min(size - joined_.size(), current_.size());
    joined_.insert(joined_.end(), current_.begin(), current_.begin() + std::ptrdiff_t(part));
    current_ = current_.subspan(part);
  }
  return joined_;
}

void Input::take(std::size_t size) {
  offset_ += size;
  if (joined_.empty())
    current_ = current_.subspan(size);
  else
    joinedTaken_ += size;
}

U64 Input::skip(U64 size) {
  U64 skipped = 0;
  while (skipped < size) {
    const U64 part = std::min<U64>(size - skipped, ahead(1).size());
    if (part == 0) break;
    take(part);
    skipped += part;
  }
  return skipped;
}

}  // namespace Routing::Mrt
