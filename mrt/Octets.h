// A cursor over octets in network order. Reading beyond the end yields zeros and empty spans and
// marks the cursor as failed, so that a parser asks once, after a group of fields.
//
//   Cursor in(body);
//   const U16 view = in.u16(), sequence = in.u16();
//   if (!in) return false;
#pragma once

#include <algorithm>
#include <span>
#include <string_view>

#include "Mox/Types.h"

namespace Routing::Mrt {
using namespace Mox::Words;

using Octets = std::span<const U8>;

// The same octets under the other name; nothing is copied.
inline Octets asOctets(std::string_view text) {
  return {reinterpret_cast<const U8*>(text.data()), text.size()};
}
inline std::string_view asText(Octets octets) {
  return {reinterpret_cast<const char*>(octets.data()), octets.size()};
}

/// True of none.
inline bool onlyZeros(Octets octets) {
  return std::all_of(octets.begin(), octets.end(), [](U8 octet) { return octet == 0; });
}

class Cursor {
 public:
  /// At their beginning.
  explicit Cursor(Octets octets) : left_(octets) {}

  // The next number, most significant octet first; 0 when there are fewer octets.
  U8 u8() { return U8(number(1)); }
  U16 u16() { return U16(number(2)); }
  U32 u32() { return number(4); }
  /// The next `size` octets; empty, and the cursor failed, when there are fewer.
  Octets take(std::size_t size) {
    if (size > left_.size()) {
      failed_ = true;
      left_ = {};
      return {};
    }
    const Octets taken = left_.first(size);
    left_ = left_.subspan(size);
    return taken;
  }

  /// The octets that are not read yet.
  Octets left() const { return left_; }
  /// Whether there are none.
  bool atEnd() const { return left_.empty(); }
  /// Whether everything asked for was there.
  explicit operator bool() const { return !failed_; }

 private:
  U32 number(std::size_t size) {
    U32 value = 0;
    for (const U8 octet : take(size)) value = value << 8 | octet;
    return value;
  }

  Octets left_;
  bool failed_ = false;
};

}  // namespace Routing::Mrt
