// Where in a table a content lies.
//
// The hash of a value is fixed, public and slow: anybody can make thousands of contents of one
// hash and send them. So a table finds its members by a placement of its own instead, a fast mix
// over the raw content under a secret seed, drawn once per process.
//
//   place = Orv::placeOf(content, table->seed())   // two multiplications for one word
//
// All functions here are pure and may run on any thread.
#pragma once

#include <cstring>

#include "Orv/DedupHandle.h"

namespace Orv {

/// The process's seed, drawn at the first call and the same ever after, on any thread. Taken from
/// the system's randomness; a system without any gives one of the time and of where the code was
/// loaded.
U64 placementSeed();

/// The two halves of the 128-bit product, folded together: every bit of both factors counts.
inline U64 foldedProduct(U64 a, U64 b) {
#ifdef __SIZEOF_INT128__
  __extension__ using U128 = unsigned __int128;
  const U128 product = U128(a) * b;
  return U64(product) ^ U64(product >> 64);
#else
  const U64 aLow = U32(a), aHigh = a >> 32, bLow = U32(b), bHigh = b >> 32;
  const U64 low = aLow * bLow, middle = aHigh * bLow + (low >> 32);
  const U64 middle2 = aLow * bHigh + U32(middle);
  const U64 high = aHigh * bHigh + (middle >> 32) + (middle2 >> 32);
  return (middle2 << 32 | U32(low)) ^ high;
#endif
}

/// The place of a content of one word. Two rounds: one alone gives consecutive contents places at a
/// constant distance, and some seeds make of that distance long runs of taken places.
inline U64 placeOf(U64 content, U64 seed) {
  return foldedProduct(foldedProduct(content ^ seed, seed | 1) ^ seed, 0x9e3779b97f4a7c15);
}

/// The place of `size` octets, in steps of sixteen and one round more. Both factors depend on the
/// seed, so that no content known in advance makes a factor zero and cancels what came before.
/// Contents of different sizes lie apart, even when they differ by octets of zero.
inline U64 placeOf(const void* octets, std::size_t size, U64 seed) {
  const auto* at = static_cast<const unsigned char*>(octets);
  const U64 key = foldedProduct(seed, 0x9e3779b97f4a7c15);
  U64 place = seed;
  const U64 last = (seed ^ size << 1) | 1;  // here an octet of the content cannot cancel the size
  auto step = [&](const unsigned char* from) {
    U64 words[2];
    std::memcpy(words, from, sizeof words);
    place = foldedProduct(words[0] ^ key, words[1] ^ place);
  };
  for (; size >= 16; at += 16, size -= 16) step(at);
  if (size) {
    unsigned char rest[16] = {};
    if (size % 4 == 0) {  // words, as nearly always: copies of fixed size need no call
      std::memcpy(rest, at, 4);
      if (size > 4) std::memcpy(rest + 4, at + 4, 4);
      if (size > 8) std::memcpy(rest + 8, at + 8, 4);
    } else {
      std::memcpy(rest, at, size);
    }
    step(rest);
  }
  return foldedProduct(place ^ key, last);
}

/// How a table places members and contents; given to it when it is made. REQUIRES: the functions
/// agree, so that a member lies where its content is sought.
struct DedupPlacement {
  U64 (*ofMember)(const DedupHandle& member, U64 seed);
  /// Null when contents are sought where their hash places them.
  U64 (*ofContent)(const DedupContentHandle& content, U64 seed);
};

}  // namespace Orv
