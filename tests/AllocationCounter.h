// Counts allocations, for tests of what must not allocate. A program gets it by being named in
// tests/CMakeLists.txt: it replaces the `operator new` that the sanitizers would check further.
#pragma once

#include <cstddef>

/// Allocations by this thread so far, of this program and every library in it.
extern thread_local std::size_t allocations;
