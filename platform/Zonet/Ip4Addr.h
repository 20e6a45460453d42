// An IPv4 address and its text: a plain value, ordered as a number.
//
//   Zonet::Ip4Addr(0xC0A80001).toStrep()   // "192.168.0.1"
#pragma once

#include <compare>
#include <iosfwd>

#include "Mox/Types.h"

namespace Zonet {

class Ip4Addr {
 public:
  static constexpr std::size_t longestText = 15;

  /// The unspecified address, `0.0.0.0`.
  constexpr Ip4Addr() = default;
  /// The first number of the dotted form is the most significant octet.
  constexpr explicit Ip4Addr(U32 value) : value_(value) {}

  /// The number that the address was made of.
  constexpr U32 value() const { return value_; }
  /// Dotted decimal.
  Mox::String toStrep() const;
  /// Writes the text, at most `longestText` characters, and returns its end.
  char* toChars(char* at) const;

  friend constexpr auto operator<=>(const Ip4Addr&, const Ip4Addr&) = default;

 private:
  U32 value_ = 0;
};

/// As `toStrep`.
inline Mox::String valueToStrep(const Ip4Addr& address) { return address.toStrep(); }
std::ostream& operator<<(std::ostream& stream, const Ip4Addr& address);

}  // namespace Zonet
