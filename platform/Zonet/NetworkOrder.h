// Numbers on the wire: most significant octet first (RFC 1700), at any alignment.
//
//   U8 octets[4];
//   Zonet::storeNetworkOrder(octets, U32{0xFDE80064});   // FD E8 00 64
//   Zonet::loadNetworkOrder<U16>(octets + 2);            // 100
#pragma once

#include <bit>
#include <concepts>
#include <cstring>

#include "Mox/Types.h"

namespace Zonet {

/// Between the machine's order and the network's; its own inverse.
template <std::unsigned_integral U>
constexpr U networkOrder(U number) {
  if constexpr (std::endian::native == std::endian::big || sizeof(U) == 1)
    return number;
  else if constexpr (sizeof(U) == 2)
    return __builtin_bswap16(number);
  else if constexpr (sizeof(U) == 4)
    return __builtin_bswap32(number);
  else
    return __builtin_bswap64(number);
}

/// Writes `sizeof(U)` octets.
/// REQUIRES: there is room for them at `octets`.
template <std::unsigned_integral U>
void storeNetworkOrder(U8* octets, U number) {
  number = networkOrder(number);
  std::memcpy(octets, &number, sizeof number);
}

/// Reads `sizeof(U)` octets.
/// REQUIRES: there are so many at `octets`.
template <std::unsigned_integral U>
U loadNetworkOrder(const U8* octets) {
  U number;
  std::memcpy(&number, octets, sizeof number);
  return networkOrder(number);
}

}  // namespace Zonet
