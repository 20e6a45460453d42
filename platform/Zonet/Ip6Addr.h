// An IPv6 address: sixteen octets in network order, compared octet by octet.
//
//   Zonet::Ip6Addr address;
//   sequenceToValue("2001:DB8:0:0::1", address);
//   address.toStrep()   // "2001:db8::1"
#pragma once

#include <array>
#include <compare>
#include <iosfwd>

#include "Mox/Types.h"

namespace Zonet {

class Ip6Addr {
 public:
  using Octets = std::array<U8, 16>;
  static constexpr std::size_t longestText = 45;

  /// The unspecified address, `::`.
  constexpr Ip6Addr() = default;
  /// In network order.
  constexpr explicit Ip6Addr(const Octets& octets) : octets_(octets) {}

  /// In network order. A temporary gives a copy, so that a loop over its octets is safe.
  constexpr const Octets& octets() const& { return octets_; }
  /// The same, of a temporary.
  constexpr Octets octets() const&& { return octets_; }
  /// The canonical form (RFC 5952).
  Mox::String toStrep() const;
  /// Writes the text, at most `longestText` characters and a zero, and returns the text's end.
  char* toChars(char* at) const;

  friend constexpr auto operator<=>(const Ip6Addr&, const Ip6Addr&) = default;

 private:
  Octets octets_{};
};

/// As `toStrep`.
inline Mox::String valueToStrep(const Ip6Addr& address) { return address.toStrep(); }
std::ostream& operator<<(std::ostream& stream, const Ip6Addr& address);
/// Reads any of the forms of RFC 4291, section 2.2. ParseException for anything else; the address
/// is then unchanged.
void sequenceToValue(std::string_view text, Ip6Addr& address);

}  // namespace Zonet
