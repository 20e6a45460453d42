// A part of the table of paths, and the queue on which its thread is told of changes.
#pragma once

#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "Communities.h"

namespace example {

/// A peer's announcement or withdrawal of one prefix, or of all that it has announced.
struct Change {
  enum class What { announced, withdrawn, allGone };
  What what;
  std::string key;                  ///< octets that name peer and prefix, or the peer alone
  std::vector<U8> attributes = {};  ///< of the route that is announced
};

/// On the way from one thread to another. `put` waits while there are too many, so a reader that is
/// faster than the table does not fill the memory.
template <class Item>
class BoundedQueue {
 public:
  void put(Item item) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return items_.size() < capacity; });
    items_.push_back(std::move(item));
    changed_.notify_all();
  }
  /// Nothing once the queue is closed and empty.
  std::optional<Item> take() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return closed_ || !items_.empty(); });
    if (items_.empty()) return std::nullopt;
    std::optional<Item> item = std::move(items_.front());
    items_.pop_front();
    changed_.notify_all();
    return item;
  }
  void close() {
    const std::lock_guard lock(mutex_);
    closed_ = true;
    changed_.notify_all();
  }

 private:
  static constexpr std::size_t capacity = 16;

  std::mutex mutex_;  // guards all below
  std::condition_variable changed_;
  std::deque<Item> items_;
  bool closed_ = false;
};

/// The paths of some prefixes. All changes of a path come to the same shard, in their order, so its
/// table needs no lock. The shards share nothing but the intern tables.
class Shard {
 public:
  using Paths = std::unordered_map<std::string, PathCommunities>;
  struct Figures {
    U64 paths = 0;
    U64 announced = 0;
    U64 withdrawn = 0;
    U64 malformed = 0;
    std::string firstFault;  ///< empty when there was none
  };

  explicit Shard(const CommunityTables& tables) : tables_(tables) {}

  // For the thread that reads.

  void add(Change change) {
    gathered_.push_back(std::move(change));
    if (gathered_.size() == batchSize) send();
  }
  void end() {
    send();
    queue_.close();
  }

  // For the thread of the shard.

  /// Until the end was told.
  void run() {
    while (const std::optional<Batch> batch = queue_.take())
      for (const Change& change : *batch) apply(change);
  }
  void withdrawAll() { paths_.clear(); }

  // While no thread is at work.

  const Paths& paths() const { return paths_; }
  Figures figures() const {
    Figures figures = figures_;
    figures.paths = paths_.size();
    return figures;
  }

 private:
  using Batch = std::vector<Change>;
  static constexpr std::size_t batchSize = 256;

  void send() { queue_.put(std::exchange(gathered_, {})); }

  void apply(const Change& change) {
    switch (change.what) {
      case Change::What::announced:
        return announce(change);
      case Change::What::withdrawn:
        figures_.withdrawn += paths_.erase(change.key);
        break;
      case Change::What::allGone:
        figures_.withdrawn += std::erase_if(
            paths_, [&](const auto& entry) { return entry.first.starts_with(change.key); });
    }
  }

  void announce(const Change& change) {
    ++figures_.announced;
    PathCommunities path;
    const PathFaults faults = tables_.readAll(change.attributes, path);
    if (faults.approach() == PathFaultApproach::treatAsWithdraw) return refuse(change, faults);
    dropNoExport(tables_, path);
    paths_.insert_or_assign(change.key, std::move(path));
  }

  /// The session stays (RFC 7606, section 2).
  void refuse(const Change& change, const PathFaults& faults) {
    if (figures_.malformed++ == 0) figures_.firstFault = faults.begin()->toStrep();
    paths_.erase(change.key);
  }

  const CommunityTables& tables_;
  Batch gathered_;  // the reading thread's own
  BoundedQueue<Batch> queue_;
  Paths paths_;
  Figures figures_;
};

}  // namespace example
