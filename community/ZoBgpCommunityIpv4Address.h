// Extended communities of an IPv4 address and a local administrator (RFC 4360).
//
//   octets    0     1      2  3  4  5  6  7
//            type subtype [ address  ][local]
#pragma once

#include "community/ZoBgpCommunityValue.h"

namespace Routing::Bgp {

class ExtCommIpv4Address : public Mox::Entity<ExtCommIpv4Address, ExtCommSubtyped> {
 public:
  static const Mox::Type type;

  using Entity::Entity;

  /// The global administrator.
  Zonet::Ip4Addr ipv4Address() const { return Zonet::Ip4Addr(bits(16, 32)); }
  /// In host order.
  U16 localAdmin() const { return U16(bits(0, 16)); }

  void formatDerivedType(std::ostream& stream) const override;
  /// `192.168.0.1:100`, after type and subtype when `format.inFull()`.
  Mox::String toStrepForPolicy(StrepFormat format) const override;
};

}  // namespace Routing::Bgp
