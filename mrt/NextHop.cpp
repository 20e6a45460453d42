#include "mrt/NextHop.h"

#include "mrt/internal/Attributes.h"

namespace Routing::Mrt {
namespace {

constexpr AddressFamily ipv4Unicast{afiIpv4, safiUnicast};

//   plain:    address 4 or 16; address 16, link-local address 16
//   of VPNs:  zeros 8 and address 4 or 16; zeros 8, address 16, zeros 8, link-local address 16
/// Empty when the octets have another form.
Octets globalAddress(Octets nextHop) {
  constexpr std::size_t distinguisherSize = 8;
  switch (nextHop.size()) {
    case 4:
    case 16:
      return nextHop;
    case 32:
      return nextHop.first(16);
    case distinguisherSize + 4:
    case distinguisherSize + 16:
    case 2 * (distinguisherSize + 16): {
      if (!onlyZeros(nextHop.first(distinguisherSize))) return {};
      const Octets behind = nextHop.subspan(distinguisherSize);
      return behind.first(std::min<std::size_t>(behind.size(), 16));
    }
    default:
      return {};
  }
}

struct MpReach {
  AddressFamily family;
  Octets nextHop;
};

//   in full:      AFI 2, SAFI 1, next hop 1 + n, reserved 1, prefixes
//   abbreviated:  next hop 1 + n
/// Nothing without the attribute. RIB entries have it abbreviated, for their own address family
/// (RFC 6396, section 4.3.4), but some writers give it in full.
std::optional<MpReach> mpReach(const Path& path) {
  const std::optional<Octets> value = findAttribute(path.attributes, mpReachAttribute);
  if (!value) return std::nullopt;
  Cursor in(*value);
  MpReach found{path.addressFamily, {}};
  const bool abbreviated =
      path.fromTable && !value->empty() && value->size() == value->front() + 1u;
  if (!abbreviated) found.family = {in.u16(), in.u8()};
  found.nextHop = globalAddress(in.take(in.u8()));
  return found;
}

/// NEXT_HOP speaks for the prefixes outside of MP_REACH_NLRI alone (RFC 4760, section 3).
Octets nextHopAttributeOf(const Path& path) {
  const std::optional<Octets> value = findAttribute(path.attributes, nextHopAttribute);
  return value && value->size() == 4 ? *value : Octets();
}

}  // namespace

Octets nextHop(const Path& path, AddressFamily family) {
  const bool ownField = !path.fromTable && family == ipv4Unicast && !path.nlri.empty();
  if (ownField) return nextHopAttributeOf(path);
  const std::optional<MpReach> reach = mpReach(path);
  if (reach && reach->family == family) return reach->nextHop;
  return path.fromTable ? nextHopAttributeOf(path) : Octets();
}

Octets nextHop(const Path& path) {
  if (path.fromTable) return nextHop(path, path.addressFamily);
  if (!path.nlri.empty()) return nextHopAttributeOf(path);
  const std::optional<MpReach> reach = mpReach(path);
  return reach ? reach->nextHop : Octets();
}

}  // namespace Routing::Mrt
