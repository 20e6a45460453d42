// Communities that a path is asked for, as people write them.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ListTypes.h"

namespace bgpcomm {

/// One of these values of a list type, by their octets: some texts stand for several.
struct Wanted {
  std::size_t type;
  std::vector<std::vector<U8>> values;
};

// Each reads every text that a command prints, see docs/text.md, and throws UsageError for others.

/// A community of any attribute: `65000:100`, `no-export`, `mac-mobility:S:5`.
Wanted wantedCommunity(const std::string& text);
/// A route target; `65000:100` and `RT:65000:100`, whether the AS number is written in two octets
/// or in four, and `192.0.2.1:100`.
Wanted wantedRouteTarget(const std::string& text);
/// A large community.
Wanted wantedLarge(const std::string& text);
/// An extended community, also in 16 or 40 hexadecimal digits.
Wanted wantedExtended(const std::string& text);

}  // namespace bgpcomm
