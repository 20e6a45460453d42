// A file, or standard input, as it lies there: what a decoder decodes.
//
// Threads: used by one thread; `position`, `size` and `stop` by any.
#pragma once

#include <atomic>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "mrt/Octets.h"

namespace Routing::Mrt {

/// An open file or standard input, read in large pieces.
class Source {
 public:
  /// `-` is standard input. Throws std::system_error.
  explicit Source(const std::string& file);
  ~Source();
  Source(const Source&) = delete;
  Source& operator=(const Source&) = delete;

  /// The octets read and not yet taken; reads the next piece when there are none. Empty at the end
  /// of the file. Throws std::system_error.
  Octets ahead();
  /// Reads on until `size` octets are ahead, or the file ends.
  Octets ahead(std::size_t size);
  /// Moves on. REQUIRES: `ahead` showed so many.
  void take(std::size_t size) { begin_ += size; }
  /// Straight into the caller's memory; returns 0 at the end of the file.
  std::size_t read(std::span<U8> into);

  /// Thrown by a read that would have to wait for octets, as from a pipe, while the caller has
  /// something to deliver. It has taken nothing: the read may simply come again.
  struct Pause {};
  /// As long as one lives, reads that have to wait throw Pause once the condition holds. Only the
  /// innermost counts.
  class Pausing {
   public:
    /// The condition is asked in the thread that reads.
    Pausing(Source& source, std::function<bool()> condition)
        : source_(source), outer_(std::exchange(source.pauses_, std::move(condition))) {}
    ~Pausing() { source_.pauses_ = std::move(outer_); }
    Pausing(const Pausing&) = delete;
    Pausing& operator=(const Pausing&) = delete;

   private:
    Source& source_;
    std::function<bool()> outer_;
  };
  /// Throws Pause if a read that has to wait would.
  void pause() const {
    if (pauses_ && pauses_()) throw Pause();
  }

  /// Ends the file for a thread that waits for octets, within a tenth of a second.
  void stop() { stopped_.store(true, std::memory_order_relaxed); }

  /// Octets read so far; may be asked for from any thread.
  U64 position() const { return position_.load(std::memory_order_relaxed); }
  /// 0 when it is not known, as of a pipe.
  U64 size() const { return size_; }

 private:
  bool isReady(int milliseconds) const;
  std::size_t readSome(std::span<U8> into);

  const bool owned_;  // not standard input
  const int descriptor_;
  U64 size_ = 0;
  std::atomic<U64> position_{0};
  std::atomic<bool> stopped_{false};
  std::function<bool()> pauses_;
  std::vector<U8> buffer_;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
};

}  // namespace Routing::Mrt
