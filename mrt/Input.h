// The plain octets of a file or of standard input, one contiguous piece at a time.
//
//   Input input("rib.bz2");
//   while (!input.ahead(12).empty()) { ... input.take(12); }
//   if (input.failure()) std::cerr << input.failure()->text;
//
// 1. A thread of its own reads and decompresses into a few large blocks; the caller works on one
//    while the next are being filled. Spans point into a block, or into a buffer of their own when
//    they lie across two; they are valid until the next call of `ahead`.
// 2. Memory grows only with octets that have really arrived, whatever length is asked for. A small
//    compressed file may hold gigabytes: callers limit what they ask for.
// 3. Octets that come through a pipe are shown as they come; the destructor waits for no more.
// 4. A failure is reported after everything before it was delivered.
//
// Threads: used by one thread; `position` and `size` by any.
#pragma once

#include <condition_variable>
#include <exception>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "mrt/Source.h"

namespace Routing::Mrt {

class Input {
 public:
  /// Why the octets end before the file does.
  struct Failure {
    bool compression;  ///< Damaged data; otherwise the system refused to read.
    std::string text;
  };

  /// Throws std::system_error when the file cannot be opened. `onWait` is called before `ahead`
  /// waits for octets: time to hand on what was made of those before.
  explicit Input(const std::string& file, std::function<void()> onWait = {});
  ~Input();
  Input(const Input&) = delete;
  Input& operator=(const Input&) = delete;

  /// At least `size` octets; fewer only when the data end or a failure stands before them.
  Octets ahead(std::size_t size);
  /// Moves on by octets that the last call of `ahead` showed.
  void take(std::size_t size);
  /// Moves on without gathering anything. Returns how many octets there were, fewer than asked for
  /// only at the end of the data or at a failure.
  U64 skip(U64 size);
  /// Where `ahead` starts, counted in plain octets.
  U64 offset() const { return offset_; }

  /// The failure that stopped the data early; known once `ahead` has delivered less than asked for.
  const std::optional<Failure>& failure() const { return failure_; }

  /// Progress in octets of the file as it lies there; its size is 0 when unknown.
  U64 position() const { return source_.position(); }
  U64 size() const { return source_.size(); }

 private:
  static constexpr std::size_t blockCount = 4;
  static constexpr std::size_t blockSize = 512 * 1024;

  void fillBlocks();
  bool waitForFreeBlock();
  bool nextBlock();
  static std::optional<Failure> failureOf(std::exception_ptr thrown) noexcept;
  void store(std::exception_ptr thrown);

  Source source_;
  const std::function<void()> onWait_;

  // Shared with the filling thread, under the mutex: blocks [shown_, filled_) are full, and the
  // block of a number lies at that number modulo the count.
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<U8> blocks_[blockCount];
  std::size_t sizes_[blockCount] = {};
  U64 shown_ = 0;
  U64 filled_ = 0;
  bool ended_ = false;
  bool stopped_ = false;
  std::optional<Failure> stored_;

  // The consumer's own.
  Octets current_;
  bool holdsBlock_ = false;
  std::vector<U8> joined_;  // octets that lie across blocks
  std::size_t joinedTaken_ = 0;
  U64 offset_ = 0;
  std::optional<Failure> failure_;

  std::thread filler_;
};

}  // namespace Routing::Mrt
