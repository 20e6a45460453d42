// The next hop of a path (RFC 4271, section 5.1.3; RFC 4760), which is what its packets are sent
// to.
//
//   std::cout << addressText(nextHop(*path));   // 192.0.2.1, 2001:db8::1; - for none
//
// Given are the 4 or 16 octets of an address: of two next hops the global one (RFC 2545, section
// 3), of one with a route distinguisher the address behind it (RFC 4364, section 4.3.2; RFC 4659,
// section 3.2.1). The address family of the next hop need not be that of the prefixes (RFC 8950).
//
// Nothing is allocated. Threads: any.
#pragma once

#include "mrt/Mrt.h"

namespace Routing::Mrt {

/// The next hop of the path's first prefix, as `PrefixReader::announced` gives them; empty when
/// there is none, or none of a known form. Valid as long as the path's attributes.
Octets nextHop(const Path& path);

/// The next hop of the path's prefixes of an address family. An UPDATE may announce IPv4 prefixes
/// in its own field with NEXT_HOP, and others in MP_REACH_NLRI with a next hop of their own.
Octets nextHop(const Path& path, AddressFamily family);

}  // namespace Routing::Mrt
