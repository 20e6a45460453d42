// The raw content of an IPv6-address-specific extended community (RFC 5701): twenty octets.
//
//   octets    0     1      2 ... 17  18 19
//            type subtype [ address ][local]
//
//   ExtCommIp6Content content(0x00, 0x02, address, 100);
//   stream << content   // "type=", one octet, ";subtype=", one octet,
//                       // ";addr=2001:db8::1;localAdmin=100"
//
// A plain value, ordered field by field. Its text holds the first two octets raw, also a zero: it
// is for reflection, not for people.
#pragma once

#include <span>

#include "Mox/Text.h"
#include "Orv/HashMix.h"
#include "Zonet/Ip6Addr.h"

namespace Routing::Bgp {

class ExtCommIp6Content {
 public:
  constexpr ExtCommIp6Content() = default;
  /// In the order of the wire.
  constexpr ExtCommIp6Content(U8 type, U8 subtype, const Zonet::Ip6Addr& addr, U16 localAdmin)
      : type_(type), subtype_(subtype), addr_(addr), localAdmin_(localAdmin) {}

  /// The content of these octets of the wire.
  static ExtCommIp6Content fromOctets(std::span<const U8, 20> octets);
  /// Its octets on the wire.
  std::array<U8, 20> octets() const;

  /// Wire octet 0.
  constexpr U8 type() const { return type_; }
  /// Wire octet 1.
  constexpr U8 subtype() const { return subtype_; }
  /// Wire octets 2 to 17.
  constexpr Zonet::Ip6Addr addr() const { return addr_; }
  /// Wire octets 18 and 19, in host order.
  constexpr U16 localAdmin() const { return localAdmin_; }
  /// Whether bit 0x40 of the type is zero.
  constexpr bool transitive() const { return !(type_ & 0x40); }

  /// The same in every process.
  constexpr U32 hash() const {
    Orv::HashMix mix;
    mix.feed(type_);
    mix.feed(subtype_);
    for (const U8 octet : addr_.octets()) mix.feed(octet);
    mix.feed(localAdmin_);
    return mix.finish();
  }

  friend constexpr auto operator<=>(const ExtCommIp6Content&, const ExtCommIp6Content&) = default;

 private:
  // In the order by which contents compare.
  U8 type_ = 0;
  U8 subtype_ = 0;
  Zonet::Ip6Addr addr_;
  U16 localAdmin_ = 0;
};

static_assert(sizeof(ExtCommIp6Content) == 20);

/// The text shown at the top of this file.
Mox::String valueToStrep(const ExtCommIp6Content& content);
/// The same text; the stream's format neither changes it nor is changed.
std::ostream& operator<<(std::ostream& stream, const ExtCommIp6Content& content);
/// Reads what `valueToStrep` writes. ParseException says where another text departs from it,
/// RangeException that the local administrator has more than 16 bits; `content` is unchanged then.
void sequenceToValue(std::string_view text, ExtCommIp6Content& content);

}  // namespace Routing::Bgp
