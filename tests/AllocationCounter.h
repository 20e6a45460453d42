// Counts allocations, and lets them fail, for tests of what must not allocate or must survive
// without memory. A program gets it by being named in tests/CMakeLists.txt: it replaces the
// `operator new` that the sanitizers would check further.
#pragma once

#include <cstddef>

/// Allocations by this thread so far, of this program and every library in it.
extern thread_local std::size_t allocations;
/// So many more of this thread's allocations succeed.
extern thread_local std::size_t allocationsLeft;

/// Within its scope so many allocations of this thread succeed, and all others fail.
struct MemoryFor {
  explicit MemoryFor(std::size_t count) { allocationsLeft = count; }
  ~MemoryFor() { allocationsLeft = std::size_t(-1); }
};
