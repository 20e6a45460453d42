#pragma once

#include <cstddef>

/// Allocations by this thread so far, of this program and every library in it.
extern thread_local std::size_t allocations;
