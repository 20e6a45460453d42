// The one-at-a-time mixer behind every value's hash.
//
//   Orv::HashMix mix;
//   mix.feed(U64{1});
//   mix.finish()   // 0x98adb391
//
// A number of several octets is fed least significant octet first, on every machine. The hash is
// fixed for all time and easy to collide: leading zero octets leave the state at 0, so {0, 5} and
// {5} hash alike, and 0 is a hash like any other. Equality is never decided by it.
#pragma once

#include <concepts>

#include "Mox/Types.h"

namespace Orv {

class HashMix {
 public:
  /// Feeds the octets of a number. The type says how many: a constant needs one, `U32{5}`.
  template <std::unsigned_integral U>
  constexpr void feed(U number) {
    for (std::size_t octet = 0; octet < sizeof(U); ++octet) {
      state_ += U8(number >> (8 * octet));
      state_ += state_ << 10;
      state_ ^= state_ >> 6;
    }
  }

  /// The hash of what was fed so far; feeding may go on afterwards.
  constexpr U32 finish() const {
    U32 hash = state_;
    hash += hash << 3;
    hash ^= hash >> 11;
    hash += hash << 15;
    return hash;
  }

 private:
  U32 state_ = 0;
};

}  // namespace Orv
