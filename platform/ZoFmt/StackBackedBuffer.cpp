#include "ZoFmt/StackBackedBuffer.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

#include "Mox/Assert.h"

namespace ZoFmt {

DynamicBufferInterface::~DynamicBufferInterface() {
  if (begin_ != inline_) std::free(begin_);
}

void DynamicBufferInterface::grow(std::size_t required) {
  const std::size_t used = this->used();
  const std::size_t capacity = std::max(std::min(2 * used, doublingCap_), used + required);
  const bool first = begin_ == inline_;
  auto* space = static_cast<char*>(std::realloc(first ? nullptr : begin_, capacity));
  if (!space) throw std::bad_alloc();
  if (first) std::memcpy(space, inline_, used);
  begin_ = space;
  write_ = space + used;
  end_ = space + capacity;
  MOX_ASSERT(end_ - write_ >= std::ptrdiff_t(required),
             "endPtr - writePtr >= ptrdiff_t( required )");
}

}  // namespace ZoFmt
