// What is alive, by type: objects and octets of payload, readable at any time.
//
//   for (const Mox::AllocationCount& c : Mox::allocationCounts())
//     std::printf("%s: %zu objects, %zu octets\n", c.type.c_str(), c.objects, c.octets);
//
// Each thread counts in a block of its own, written by nobody else, so counting is an addition to
// private memory; reading adds up the blocks of all threads. A figure is exact while nobody
// allocates and may be a moment old otherwise. Counting itself never fails: without memory for a
// thread's block or a type's name, what is counted goes to places that all share.
#pragma once

#include <new>
#include <vector>

#include "Mox/PtrInterface.h"

namespace Mox {

struct AllocationCount {
  String type;
  std::size_t objects = 0;
  std::size_t octets = 0;
};

/// All types that ever allocated, in the order in which they first did.
std::vector<AllocationCount> allocationCounts();
/// The figures of one type; zeros for a name never heard.
AllocationCount allocationCount(std::string_view type);

/// Counts one type. A named constant of the process, defined in a source file; trackers of the
/// same name share their figures.
class AllocationTracker {
 public:
  /// `type` must outlive the tracker.
  explicit constexpr AllocationTracker(std::string_view type) : type_(type) {}

  void* allocate(std::size_t octets) const {
    void* memory = PtrInterface::moxMemAlloc(octets);
    count(1, octets);
    return memory;
  }
  void deallocate(void* memory, std::size_t octets) const noexcept {
    count(-std::size_t{1}, -octets);
    PtrInterface::moxMemDealloc(memory);
  }

 private:
  void count(std::size_t objects, std::size_t octets) const noexcept;
  U32 slot() const noexcept;

  std::string_view type_;
  mutable std::atomic<U32> slot_{0};  // where the type is counted; 0 before the first time
};

/// The tracker of the storage of `std::vector<T, TrackedAllocator<T>>`. Declared for the element
/// types that the library keeps in vectors; defined in the platform's source.
template <class T>
const AllocationTracker& storageTracker();
template <>
const AllocationTracker& storageTracker<U32>();

/// Allocator of vectors whose memory is to be seen in `allocationCounts()`.
template <class T>
struct TrackedAllocator {
  using value_type = T;
  TrackedAllocator() = default;
  template <class U>
  TrackedAllocator(const TrackedAllocator<U>&) {}
  T* allocate(std::size_t n) {
    if (n > std::size_t(-1) / sizeof(T)) throw std::bad_array_new_length();
    return static_cast<T*>(storageTracker<T>().allocate(n * sizeof(T)));
  }
  void deallocate(T* memory, std::size_t n) {
    storageTracker<T>().deallocate(memory, n * sizeof(T));
  }
  friend bool operator==(TrackedAllocator, TrackedAllocator) { return true; }
};

}  // namespace Mox
