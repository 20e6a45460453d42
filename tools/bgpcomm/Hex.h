// Octets as hexadecimal digits, both ways.
#pragma once

#include <string>
#include <vector>

#include "ReaderNames.h"

namespace bgpcomm {

/// Lower case, two digits an octet, nothing between.
inline std::string hex(Octets octets) {
  constexpr char digits[] = "0123456789abcdef";
  std::string text;
  text.reserve(2 * octets.size());
  for (const U8 octet : octets) {
    text += digits[octet >> 4];
    text += digits[octet & 15];
  }
  return text;
}

/// -1 for what is no digit.
inline int hexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

}  // namespace bgpcomm
