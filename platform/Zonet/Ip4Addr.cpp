#include "Zonet/Ip4Addr.h"

#include <charconv>

#include "Mox/Text.h"

namespace Zonet {

char* Ip4Addr::toChars(char* at) const {
  for (int shift = 24; shift >= 0; shift -= 8) {
    if (shift < 24) *at++ = '.';
    at = std::to_chars(at, at + 3, value_ >> shift & 0xFF).ptr;
  }
  return at;
}

Mox::String Ip4Addr::toStrep() const {
  char text[longestText];
  return {text, toChars(text)};
}

std::ostream& operator<<(std::ostream& stream, const Ip4Addr& address) {
  return Mox::writeText(stream, address.toStrep());
}

}  // namespace Zonet
