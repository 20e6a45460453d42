// Octets as hexadecimal digits, both ways.
#pragma once

#include <string>
#include <vector>

#include "ReaderNames.h"

namespace bgpcomm {

/// Two lower-case digits for each octet, nothing between.
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

/// The digit's value; -1 when the character is no hexadecimal digit.
inline int hexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

}  // namespace bgpcomm
