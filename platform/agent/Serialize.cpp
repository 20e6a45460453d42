#include "agent/Serialize.h"

#include <algorithm>
#include <limits>

#include "Mox/Assert.h"

namespace Routing::Bgp {

Serialize& Serialize::operator=(const Serialize& other) {
  if (this == &other) return *this;
  length_ = 0;
  growBuffer(other.length_);
  std::memcpy(data_, other.data_, other.length_);
  length_ = other.length_;
  return *this;
}

void Serialize::growBuffer(U32 capacity) {
  if (capacity <= capacity_) return;
  U8* const grown = new U8[capacity];
  std::memcpy(grown, data_, length_);
  if (data_ != inline_) delete[] data_;
  data_ = grown;
  capacity_ = capacity;
}

void Serialize::makeRoom(U32 octets) {
  constexpr U32 largest = std::numeric_limits<U32>::max();
  MOX_ASSERT(octets <= largest - length_, "octets <= largest - length_");
  const U32 doubled = capacity_ > largest / 2 ? largest : capacity_ * 2;
  growBuffer(std::max(length_ + octets, doubled));
}

Mox::String Serialize::serializedString(U32 offset) const {
  MOX_ASSERT(offset <= length_, "offset <= length_");
  return Mox::String(reinterpret_cast<const char*>(data_) + offset, length_ - offset);
}

}  // namespace Routing::Bgp
