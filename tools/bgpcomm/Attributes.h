// The community attributes among the path attributes of one path (RFC 4271, section 4.3).
#pragma once

#include "Faults.h"
#include "ListTypes.h"
#include "ReaderNames.h"

namespace bgpcomm {

/// The values of the community attributes, by the number of their list type; empty when the path
/// has no such attribute, or a malformed one.
struct CommunityValues : std::array<Octets, listTypeCount> {
  std::array<bool, listTypeCount> malformed{};
  FaultCounts faults;
};

/// Finds the values; of an attribute given twice the first counts. A malformed attribute is counted
/// and left out; one that overruns the block ends it. Whether a value is a list that may be, the
/// library says when it reads it.
CommunityValues findCommunities(Octets attributes);

}  // namespace bgpcomm
