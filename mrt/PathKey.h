// The fields of an encoded prefix, and the key under which a peer's path stands in a table.
//
//   table[pathKey(path, prefix)] = attributes;  // announced
//   table.erase(pathKey(path, prefix));         // withdrawn
//
// An encoded prefix itself is no key: a withdrawal may hold another label, or other bits behind the
// prefix, than the announcement that it takes back.
//
// Threads: any. Errors: std::bad_alloc, of the keys only.
#pragma once

#include <array>
#include <optional>
#include <string>

#include "mrt/Nlri.h"

namespace Routing::Mrt {

/// An IPv4 or IPv6 prefix: plain, with labels (RFC 8277), or of a VPN (RFC 4364, RFC 4659).
struct IpPrefix {
  Octets labels;              ///< 3 octets each, RFC 8277, section 2; empty without labels
  Octets routeDistinguisher;  ///< 8 octets, RFC 4364, section 4.2; empty outside of VPNs
  U8 length = 0;              ///< of the prefix alone, in bits
  /// The first 4 octets of IPv4; bits behind the prefix are 0 (RFC 4271, section 4.3).
  std::array<U8, 16> address{};
};
/// The fields of a prefix of address families 1 and 2 with SAFI 1, 2, 4, 128 or 129; nothing of
/// others, and of those whose fields do not fit. Labels end with the one that is marked as the
/// last; 0 and 0x800000, which stand in withdrawals (RFC 8277, section 2.4), are one label, and so
/// is what leaves no room for a distinguisher otherwise. SAFI 129 has no labels (RFC 6514).
std::optional<IpPrefix> ipPrefix(const Prefix& prefix);

/// The octets that tell an encoded prefix from others of its address family:
///
///   IPv4 and IPv6   route distinguisher, length, address; no labels
///   EVPN            type, then the fields that are the key (RFC 7432, 7.1 to 7.4; RFC 9136, 3.1;
///                   RFC 9251, 9): no labels, no gateway, no flags or response time of multicast,
///                   the segment only of types 1, 4, 7 and 8
///   route targets   length and octets, the bits behind cleared (RFC 4684, section 4)
///   others          as they are
///
/// Equal octets have equal keys.
std::string nlriKey(const Prefix& prefix);

/// The peer's part of its paths' keys: they stand together in an ordered map.
std::string peerKey(const Peer& peer);
/// The way back from such a key, or from a path's. Its address lies in the key.
/// REQUIRES: `peerKey` or `pathKey` made it.
Peer peerOfKey(std::string_view key);

/// The key of a path's prefix: peer, table (received from the peer or sent to it), address family
/// and path identifier in fixed width, then `nlriKey`.
std::string pathKey(const Path& path, const Prefix& prefix);

}  // namespace Routing::Mrt
