// A pointer and a small number in one 64-bit word, for tables whose places should be few octets.
#pragma once

#include <bit>

#include "Mox/Assert.h"
#include "Mox/Types.h"

namespace Mox {

/// Null with the tag 0 by default. A pointer to T, whose lowest bits are zero, without the highest
/// bits, which addresses of processes do not have.
template <class T>
class TaggedPointer {
 public:
  static constexpr U32 tagBits = 19, addressBits = 64 - tagBits;
  static constexpr U32 mostTag = (1 << tagBits) - 1;

  TaggedPointer() = default;
  /// Asserts "address < 2^48" of the pointer. REQUIRES: tag <= mostTag.
  TaggedPointer(U32 tag, T* pointer)
      : word_(U64(tag) << addressBits | reinterpret_cast<std::uintptr_t>(pointer) >> zeroBits) {
    MOX_ASSERT(this->tag() == tag && this->pointer() == pointer, "address < 2^48");
  }
  explicit operator bool() const { return word_; }
  /// At most `mostTag`.
  U32 tag() const { return U32(word_ >> addressBits); }
  /// Without the tag.
  T* pointer() const {
    const U64 address = (word_ & ((U64{1} << addressBits) - 1)) << zeroBits;
    return std::bit_cast<T*>(std::uintptr_t(address));
  }
  friend bool operator==(TaggedPointer, TaggedPointer) = default;

 private:
  // The object begins with a pointer to its class's table.
  static constexpr U32 zeroBits = sizeof(void*) == 8 ? 3 : 2;

  U64 word_ = 0;
};

}  // namespace Mox
