// Counts the objects that are alive and their octets, by type; readable at any time.
//
//   for (const Mox::AllocationCount& c : Mox::allocationCounts())
//     std::printf("%s: %zu objects, %zu octets\n", c.type.c_str(), c.objects, c.octets);
//
// Each thread counts in a block of its own, written by nobody else, so counting is an addition to
// private memory; reading adds up the blocks of all threads. A figure is exact while nobody
// allocates and may be a moment old otherwise.
//
// Counting never fails and needs no memory: all that it uses is static. There is room for 64
// threads at a time, 254 types, and 16,384 characters of their names together. Further threads
// share one block, which costs two atomic additions; further types share the figures of "other
// types".
#pragma once

#include <new>
#include <vector>

#include "Mox/PtrInterface.h"

namespace Mox {

/// The figures of one type.
struct AllocationCount {
  String type;
  std::size_t objects = 0;
  std::size_t octets = 0;
};

/// All types that ever allocated, in the order in which they first did; then, if there are any, the
/// other types together.
std::vector<AllocationCount> allocationCounts();
/// The figures of one type; zeros for a name never heard.
AllocationCount allocationCount(std::string_view type);
/// Octets of the slabs in which objects of these types stand, free room included. Objects that are
/// too large for slabs are not in it.
std::size_t slabOctets();

/// Counts one type. A named constant of the process, defined in a source file; trackers of the
/// same name share their figures. Memory of up to 256 octets comes from slabs, without headers;
/// `MOX_SLABS=0` in the environment has all come from `operator new`.
class AllocationTracker {
 public:
  /// REQUIRES: `type` outlives the tracker.
  explicit constexpr AllocationTracker(std::string_view type) : type_(type) {}

  /// Throws `std::bad_alloc` and counts nothing then.
  void* allocate(std::size_t octets) const;
  /// `octets` as given to `allocate`; the thread may be another.
  void deallocate(void* memory, std::size_t octets) const noexcept;

 private:
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
  /// All of them are alike.
  template <class U>
  TrackedAllocator(const TrackedAllocator<U>&) {}
  /// Throws `std::bad_alloc`; the octets are counted for `T`.
  T* allocate(std::size_t n) {
    if (n > std::size_t(-1) / sizeof(T)) throw std::bad_array_new_length();
    return static_cast<T*>(storageTracker<T>().allocate(n * sizeof(T)));
  }
  /// REQUIRES: `memory` is of `allocate(n)`.
  void deallocate(T* memory, std::size_t n) {
    storageTracker<T>().deallocate(memory, n * sizeof(T));
  }
  /// Always: each frees what another allocated.
  friend bool operator==(TrackedAllocator, TrackedAllocator) { return true; }
};

}  // namespace Mox
