#include "Mox/Allocation.h"

#include <algorithm>
#include <array>
#include <memory>
#include <mutex>

namespace Mox {
namespace {

constexpr U32 maxTypes = 256;
constexpr U32 lastSlot = maxTypes - 1;  // shared by all types for which there is no other

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

// Never destroyed: objects of static lifetime are counted to the very end. Slot 0 is no type's.
struct Registry {
  std::mutex mutex;  // guards all below, and who owns which block
  std::vector<String> types{String()};
  std::vector<std::unique_ptr<Block>> blocks;
  std::vector<Block*> free;  // of threads that have ended, with their figures, for threads to come
  Block shared;              // for threads that have given theirs back or could get none

  static Registry& instance() {
    static Registry* const registry = new Registry;
    return *registry;
  }
};

thread_local Block* t_block = nullptr;
thread_local bool t_ended = false;

// A thread's hold on its block, from when it first counts to its end. Without memory for a block it
// holds none, and the thread counts slowly.
struct ThreadEntry {
  ThreadEntry() noexcept {
    Registry& registry = Registry::instance();
    std::lock_guard guard(registry.mutex);
    try {
      if (registry.free.empty()) {
        registry.free.reserve(registry.blocks.size() + 1);  // so that giving back needs no memory
        registry.blocks.push_back(std::make_unique<Block>());
        registry.free.push_back(registry.blocks.back().get());
      }
      t_block = registry.free.back();
      registry.free.pop_back();
    } catch (const std::bad_alloc&) {
    }
  }
  ~ThreadEntry() {
    Registry& registry = Registry::instance();
    std::lock_guard guard(registry.mutex);
    if (t_block) registry.free.push_back(t_block);
    t_block = nullptr;
    t_ended = true;
  }
};

void countSlowly(U32 slot, std::size_t objects, std::size_t octets) {
  if (!t_ended) {
    static thread_local ThreadEntry entry;
  }
  if (t_block) return t_block->add(slot, objects, octets);
  Registry& registry = Registry::instance();
  std::lock_guard guard(registry.mutex);
  registry.shared.add(slot, objects, octets);
}

// The place of a type among the types, a new one if it has none. Types beyond the last place, and
// any that come when there is no memory for a name, share that place.
U32 slotOf(std::string_view type) noexcept {
  Registry& registry = Registry::instance();
  std::lock_guard guard(registry.mutex);
  auto& types = registry.types;
  const auto found = std::find(types.begin(), types.end(), type);
  if (found != types.end()) return U32(found - types.begin());
  if (types.size() >= lastSlot) return lastSlot;
  try {
    types.emplace_back(type);
    return U32(types.size() - 1);
  } catch (const std::bad_alloc&) {
    return lastSlot;
  }
}

AllocationCount sum(const Registry& registry, U32 slot, const String& name) {
  AllocationCount total{name, 0, 0};
  auto add = [&](const Block& block) {
    total.objects += block.figures[slot].objects.load(std::memory_order_relaxed);
    total.octets += block.figures[slot].octets.load(std::memory_order_relaxed);
  };
  add(registry.shared);
  for (const auto& block : registry.blocks) add(*block);
  return total;
}

}  // namespace

U32 AllocationTracker::slot() const noexcept {
  if (const U32 known = slot_.load(std::memory_order_relaxed)) [[likely]]
    return known;
  const U32 slot = slotOf(type_);
  slot_.store(slot, std::memory_order_relaxed);
  return slot;
}

void AllocationTracker::count(std::size_t objects, std::size_t octets) const noexcept {
  if (t_block) [[likely]]
    t_block->add(slot(), objects, octets);
  else
    countSlowly(slot(), objects, octets);
}

std::vector<AllocationCount> allocationCounts() {
  Registry& registry = Registry::instance();
  std::lock_guard guard(registry.mutex);
  std::vector<AllocationCount> all;
  for (U32 slot = 1; slot < registry.types.size(); ++slot)
    all.push_back(sum(registry, slot, registry.types[slot]));
  AllocationCount others = sum(registry, lastSlot, "other types");
  if (others.objects) all.push_back(std::move(others));
  return all;
}

AllocationCount allocationCount(std::string_view type) {
  for (AllocationCount& count : allocationCounts())
    if (count.type == type) return std::move(count);
  return {String(type), 0, 0};
}

template <>
const AllocationTracker& storageTracker<U32>() {
  static constinit const AllocationTracker tracker("U32 (vector storage)");
  return tracker;
}

}  // namespace Mox
