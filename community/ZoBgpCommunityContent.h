// The raw content of an extended community: its eight octets as one number (RFC 4360).
//
//   ExtCommContent content(0x0002FDE800000064);
//   content.type()       // 0x00, wire octet 0
//   content.subtype()    // 0x02, wire octet 1
//   stream << content    // 0x0002fde800000064
//   valueToStrep(content)  // "842122827661412", what reflection reads and writes
//
//   octets    0     1      2  3  4  5  6  7
//            type subtype [     value      ]
//
// A plain value. Two texts on purpose: people read hexadecimal, configuration stores decimal.
#pragma once

#include <array>
#include <compare>
#include <span>

#include "Mox/Text.h"
#include "Orv/HashMix.h"
#include "Zonet/NetworkOrder.h"

namespace Routing::Bgp {

class ExtCommContent {
 public:
  constexpr ExtCommContent() = default;
  /// Wire octet 0 is the most significant.
  constexpr explicit ExtCommContent(U64 value) : value_(value) {}

  /// The content of these octets of the wire.
  static ExtCommContent fromOctets(std::span<const U8, 8> octets) {
    return ExtCommContent(Zonet::loadNetworkOrder<U64>(octets.data()));
  }
  /// Its octets on the wire.
  std::array<U8, 8> octets() const {
    std::array<U8, 8> octets;
    Zonet::storeNetworkOrder(octets.data(), value_);
    return octets;
  }

  /// In host order: wire octet 0 is the most significant.
  constexpr U64 value() const { return value_; }
  /// Octet `index` of the wire. REQUIRES: index < 8; not checked.
  constexpr U8 octet(U32 index) const { return U8(value_ >> (56 - 8 * index)); }
  /// Wire octet 0.
  constexpr U8 type() const { return octet(0); }
  /// Wire octet 1, also of types that have no subtypes.
  constexpr U8 subtype() const { return octet(1); }
  /// Whether bit 0x40 of the type is zero (RFC 4360, section 2).
  constexpr bool transitive() const { return !(type() & 0x40); }

  /// The same in every process.
  constexpr U32 hash() const {
    Orv::HashMix mix;
    mix.feed(value_);
    return mix.finish();
  }

  friend constexpr auto operator<=>(const ExtCommContent&, const ExtCommContent&) = default;

 private:
  U64 value_ = 0;
};

/// Eighteen characters: `0x` and sixteen hexadecimal digits, in upper case when the stream writes
/// so. Nothing else of the stream's format has an effect. A content of zero is eighteen zeros.
std::ostream& operator<<(std::ostream& stream, const ExtCommContent& content);
/// Decimal.
inline Mox::String valueToStrep(const ExtCommContent& content) {
  return Mox::valueToStrep(content.value());
}
/// Reads what `valueToStrep` writes; errors as for any unsigned number.
void sequenceToValue(std::string_view text, ExtCommContent& content);

}  // namespace Routing::Bgp
