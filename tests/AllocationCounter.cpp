#include "AllocationCounter.h"

#include <cstdlib>
#include <new>

thread_local std::size_t allocations = 0;
thread_local std::size_t allocationsLeft = std::size_t(-1);

// Every object shall have memory of its own here, so that each allocation can fail.
static const int plain = setenv("MOX_SLABS", "0", 0);

void* operator new(std::size_t octets) {
  ++allocations;
  if (allocationsLeft == 0) throw std::bad_alloc();
  --allocationsLeft;
  if (void* memory = std::malloc(octets ? octets : 1)) return memory;
  throw std::bad_alloc();
}
// The standard library asks this one for buffers that it can do without.
void* operator new(std::size_t octets, const std::nothrow_t&) noexcept {
  try {
    return operator new(octets);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
