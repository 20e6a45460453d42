// Single communities that a path is asked for, as people write them: the short forms of patterns.
#pragma once

#include <string>

#include "query/ZoBgpValuePattern.h"

namespace bgpcomm {

using Routing::Bgp::ValuePattern;

// Each reads every text that a command prints, see docs/text.md, and throws UsageError for others.

/// A community of any attribute: `65000:100`, `no-export`, `mac-mobility:S:5`.
ValuePattern wantedCommunity(const std::string& text);
/// A route target; `65000:100` and `RT:65000:100`, whether the AS number is written in two octets
/// or in four, and `192.0.2.1:100`.
ValuePattern wantedRouteTarget(const std::string& text);
/// A large community.
ValuePattern wantedLarge(const std::string& text);
/// An extended community, also in 16 or 40 hexadecimal digits.
ValuePattern wantedExtended(const std::string& text);

/// Whether it is a route target, of 8 octets or of 20.
bool isRouteTarget(const Routing::Bgp::AnyCommunity& community);

}  // namespace bgpcomm
