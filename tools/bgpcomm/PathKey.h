// The key under which a peer's path stands in its table.
#pragma once

#include <string>

#include "ReaderNames.h"
#include "mrt/Nlri.h"

namespace bgpcomm {

/// The octets of an encoded prefix that tell it from others, the rest left out or zero:
///
///   plain prefixes       length, prefix; bits behind it mean nothing (RFC 4271, 4.3)
///   with labels, VPNs    the same without the labels (RFC 8277, 2.4): a withdrawal has one of any
///                        value, however many were announced
///   EVPN                 type, then the fields that are the key (RFC 7432, 7.1 to 7.4; RFC 9136,
///                        3.1): no labels, no gateway, the segment only of types 1 and 4
///   others               as they are
std::string nlriKey(const Prefix& prefix, bool withdrawn);

/// The peer's part of its paths' keys: they stand together in an ordered map.
std::string peerKey(const Peer& peer);

/// The key of a path's prefix: peer, table (received from the peer or sent to it), address family
/// and path identifier in fixed width, then `nlriKey`.
std::string pathKey(const Path& path, const Prefix& prefix, bool withdrawn);

}  // namespace bgpcomm
