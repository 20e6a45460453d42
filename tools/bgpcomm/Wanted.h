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

// Nothing when the text is of another form.

/// `65000:100`, or a well-known name.
std::optional<Wanted> wantedCommunity(const std::string& text);
/// `65000:100`, whether the AS number is written in two octets or in four, or `192.0.2.1:100`.
std::optional<Wanted> wantedRouteTarget(const std::string& text);
/// `65000:1:2`.
std::optional<Wanted> wantedLarge(const std::string& text);
/// 16 or 40 hexadecimal digits.
std::optional<Wanted> wantedExtended(const std::string& text);

}  // namespace bgpcomm
