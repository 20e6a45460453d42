#include "Mox/Allocation.h"

#include <algorithm>
#include <array>
#include <mutex>

namespace Mox {
namespace {

constexpr U32 maxTypes = 256;  // types beyond share the last slot, named "other types"

// The figures of one thread: written by that thread alone, read by any, hence atomic but never
// read-modify-write. Differences may be "negative" where one thread frees what another made; the
// sums wrap back.
struct Block {
  struct Figures {
    std::atomic<std::size_t> objects{0}, octets{0};
  };
  std::array<Figures, maxTypes> figures;

  void add(U32 slot, std::size_t objects, std::size_t octets) {
    Figures& f = figures[slot];
    f.objects.store(f.objects.load(std::memory_order_relaxed) + objects, std::memory_order_relaxed);
    f.octets.store(f.octets.load(std::memory_order_relaxed) + octets, std::memory_order_relaxed);
  }
};

// Never destroyed: objects of static lifetime are counted to the very end.
struct Registry {
  std::mutex mutex;  // guards all below
  std::vector<String> types;
  std::vector<const Block*> threads;
  Block ended;  // what threads that are no more have counted

  static Registry& instance() {
    static Registry* const registry = new Registry;
    return *registry;
  }
};

thread_local Block* t_block = nullptr;
thread_local bool t_ended = false;

// Enters the thread's block when the thread first counts, and folds it away when the thread ends.
struct ThreadEntry {
  Block block;

  ThreadEntry() {
    Registry& registry = Registry::instance();
    std::lock_guard guard(registry.mutex);
    registry.threads.push_back(&block);
    t_block = &block;
  }
  ~ThreadEntry() {
    Registry& registry = Registry::instance();
    std::lock_guard guard(registry.mutex);
    t_block = nullptr;
    t_ended = true;
    std::erase(registry.threads, &block);
    for (U32 slot = 0; slot < maxTypes; ++slot)
      registry.ended.add(slot, block.figures[slot].objects.load(std::memory_order_relaxed),
                         block.figures[slot].octets.load(std::memory_order_relaxed));
  }
};

void countSlowly(U32 slot, std::size_t objects, std::size_t octets) {
  if (!t_ended) {
    static thread_local ThreadEntry entry;
    entry.block.add(slot, objects, octets);
    return;
  }
  // A destructor that runs after the thread's own block has gone.
  Registry& registry = Registry::instance();
  std::lock_guard guard(registry.mutex);
  registry.ended.add(slot, objects, octets);
}

AllocationCount sum(const Registry& registry, U32 slot) {
  AllocationCount total{registry.types[slot], 0, 0};
  auto add = [&](const Block& block) {
    total.objects += block.figures[slot].objects.load(std::memory_order_relaxed);
    total.octets += block.figures[slot].octets.load(std::memory_order_relaxed);
  };
  add(registry.ended);
  for (const Block* block : registry.threads) add(*block);
  return total;
}

}  // namespace

AllocationTracker::AllocationTracker(std::string_view type) {
  Registry& registry = Registry::instance();
  std::lock_guard guard(registry.mutex);
  auto& types = registry.types;
  if (types.size() == maxTypes - 1) types.emplace_back("other types");
  const auto found = std::find(types.begin(), types.end(), type);
  slot_ = std::min(U32(found - types.begin()), maxTypes - 1);
  if (found == types.end() && types.size() < maxTypes) types.emplace_back(type);
}

void AllocationTracker::count(std::size_t objects, std::size_t octets) const noexcept {
  if (t_block) [[likely]]
    t_block->add(slot_, objects, octets);
  else
    countSlowly(slot_, objects, octets);
}

std::vector<AllocationCount> allocationCounts() {
  Registry& registry = Registry::instance();
  std::lock_guard guard(registry.mutex);
  std::vector<AllocationCount> all;
  for (U32 slot = 0; slot < registry.types.size(); ++slot) all.push_back(sum(registry, slot));
  return all;
}

AllocationCount allocationCount(std::string_view type) {
  Registry& registry = Registry::instance();
  std::lock_guard guard(registry.mutex);
  for (U32 slot = 0; slot < registry.types.size(); ++slot)
    if (registry.types[slot] == type) return sum(registry, slot);
  return {String(type), 0, 0};
}

template <>
const AllocationTracker& storageTracker<U32>() {
  static const AllocationTracker tracker("U32 (vector storage)");
  return tracker;
}

}  // namespace Mox
