#include "Mox/Allocation.h"

#include <pthread.h>

#include <algorithm>
#include <array>
#include <mutex>

#include "Mox/internal/Slabs.h"

namespace Mox {
namespace {

constexpr U32 maxTypes = 256;
constexpr U32 lastSlot = maxTypes - 1;  // shared by all types for which there is no other
constexpr U32 maxThreads = 64;

// The figures and the free memory of one thread at a time. Differences may be "negative" where one
// thread frees what another made; the sums wrap back.
struct alignas(64) Block {
  struct Figures {
    std::atomic<std::size_t> objects{0}, octets{0};
  };
  std::array<Figures, maxTypes> figures;
  FreePieces memory;  // the thread's alone
  std::atomic<bool> taken{false};

  /// For the thread that has taken the block: written by it alone, read by any, hence atomic but
  /// never read-modify-write.
  void add(U32 slot, std::size_t objects, std::size_t octets) {
    Figures& f = figures[slot];
    f.objects.store(f.objects.load(std::memory_order_relaxed) + objects, std::memory_order_relaxed);
    f.octets.store(f.octets.load(std::memory_order_relaxed) + octets, std::memory_order_relaxed);
  }
  /// For any thread.
  void addShared(U32 slot, std::size_t objects, std::size_t octets) {
    figures[slot].objects.fetch_add(objects, std::memory_order_relaxed);
    figures[slot].octets.fetch_add(octets, std::memory_order_relaxed);
  }
};

// All storage is static, and none of it is destroyed: objects of static lifetime are counted to the
// very end. Pages that no thread has touched take no memory.
constinit std::array<Block, maxThreads> blocks;
constinit Block sharedBlock;  // of the threads that have none of their own

// The names of the types, one behind the other. They are copied: the library that defines a type
// may be unloaded before the figures are read.
struct Names {
  std::mutex mutex;                                  // guards all below
  std::array<std::string_view, lastSlot - 1> types;  // of slot 1, of slot 2, ...
  U32 count = 0;
  std::array<char, 1 << 14> characters{};
  std::size_t used = 0;

  /// A slot of its own while there is room for the name.
  U32 slotOf(std::string_view type) {
    const std::lock_guard guard(mutex);
    const auto found = std::find(types.begin(), types.begin() + count, type);
    if (found != types.begin() + count) return U32(found - types.begin()) + 1;
    if (count == types.size() || type.size() > characters.size() - used) return lastSlot;
    char* const copy = characters.data() + used;
    used += type.copy(copy, type.size());
    types[count++] = {copy, type.size()};
    return count;
  }
};
constinit Names names;

// Memory for a thread's first use of a variable of its own is taken when the thread starts.
[[gnu::tls_model("initial-exec")]] thread_local constinit Block* t_block = nullptr;
[[gnu::tls_model("initial-exec")]] thread_local constinit bool t_asked = false;

// Gives a thread's block back when the thread ends: with its figures, for a thread to come, and
// without free memory.
class BlockReturn {
 public:
  BlockReturn() noexcept : made_(pthread_key_create(&key_, giveBack) == 0) {}
  // The library is unloaded, or the process ends. Blocks stay taken.
  ~BlockReturn() {
    if (made_.exchange(false)) pthread_key_delete(key_);
  }
  bool isPromised(Block& block) { return made_ && pthread_setspecific(key_, &block) == 0; }

 private:
  static void giveBack(void* taken) {
    t_block = nullptr;
    auto* const block = static_cast<Block*>(taken);
    block->memory.giveAll();
    block->taken.store(false, std::memory_order_release);
  }

  pthread_key_t key_{};
  std::atomic<bool> made_;
};

// Asked once per thread. Needs no memory of the heap, except that the system may want some for the
// return of the block; without it, and beyond 64 threads, the thread has no block.
Block* takeBlock() {
  static BlockReturn blockReturn;
  for (Block& block : blocks) {
    if (block.taken.exchange(true, std::memory_order_acquire)) continue;
    if (blockReturn.isPromised(block)) return &block;
    block.taken.store(false, std::memory_order_release);
    break;
  }
  return nullptr;
}

/// Null for a thread that has none.
Block* ownBlock() {
  if (!t_block && !t_asked) [[unlikely]]
    t_asked = true, t_block = takeBlock();
  return t_block;
}

AllocationCount sum(U32 slot, std::string_view name) {
  AllocationCount total{String(name), 0, 0};
  const auto add = [&](const Block& block) {
    total.objects += block.figures[slot].objects.load(std::memory_order_relaxed);
    total.octets += block.figures[slot].octets.load(std::memory_order_relaxed);
  };
  add(sharedBlock);
  for (const Block& block : blocks) add(block);
  return total;
}

}  // namespace

U32 AllocationTracker::slot() const noexcept {
  if (const U32 known = slot_.load(std::memory_order_relaxed)) [[likely]]
    return known;
  const U32 slot = names.slotOf(type_);
  slot_.store(slot, std::memory_order_relaxed);
  return slot;
}

void* AllocationTracker::allocate(std::size_t octets) const {
  if (Block* const block = ownBlock()) [[likely]] {
    void* const memory = block->memory.take(octets);
    block->add(slot(), 1, octets);
    return memory;
  }
  void* const memory = FreePieces::takeShared(octets);
  sharedBlock.addShared(slot(), 1, octets);
  return memory;
}

void AllocationTracker::deallocate(void* memory, std::size_t octets) const noexcept {
  if (Block* const block = ownBlock()) [[likely]] {
    block->add(slot(), -std::size_t{1}, -octets);
    return block->memory.give(memory, octets);
  }
  sharedBlock.addShared(slot(), -std::size_t{1}, -octets);
  FreePieces::giveShared(memory, octets);
}

std::vector<AllocationCount> allocationCounts() {
  std::vector<AllocationCount> all;
  const std::lock_guard guard(names.mutex);
  for (U32 slot = 1; slot <= names.count; ++slot) all.push_back(sum(slot, names.types[slot - 1]));
  AllocationCount others = sum(lastSlot, "other types");
  if (others.objects) all.push_back(std::move(others));
  return all;
}

AllocationCount allocationCount(std::string_view type) {
  for (AllocationCount& count : allocationCounts())
    if (count.type == type) return std::move(count);
  return {String(type), 0, 0};
}

std::size_t slabOctets() { return FreePieces::slabOctets(); }

template <>
const AllocationTracker& storageTracker<U32>() {
  static constinit const AllocationTracker tracker("U32 (vector storage)");
  return tracker;
}

}  // namespace Mox
