// Numbers as people write communities, and as octets.
#pragma once

#include <array>
#include <charconv>
#include <optional>
#include <string_view>
#include <vector>

#include "ReaderNames.h"

namespace bgpcomm {

/// `65000:100`: so many decimal numbers, none above `most`, with colons between them.
template <std::size_t count>
std::optional<std::array<U64, count>> readNumbers(std::string_view text, U64 most) {
  std::array<U64, count> numbers;
  const char *at = text.data(), *const end = at + text.size();
  for (std::size_t i = 0; i < count; ++i) {
    if (i > 0 && (at == end || *at++ != ':')) return std::nullopt;
    const auto read = std::from_chars(at, end, numbers[i]);
    if (read.ec != std::errc() || numbers[i] > most) return std::nullopt;
    at = read.ptr;
  }
  if (at != end) return std::nullopt;
  return numbers;
}

/// The lowest octets of a number, in network order.
inline void appendNumber(std::vector<U8>& octets, U64 number, int size) {
  for (int shift = 8 * (size - 1); shift >= 0; shift -= 8) octets.push_back(U8(number >> shift));
}

}  // namespace bgpcomm
