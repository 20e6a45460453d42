// Finds the community attributes among the path attributes of one path (RFC 4271, 4.3).
//
//   attribute:  flags (0x10: length of two octets), type, length 1 or 2, value
#pragma once

#include "Faults.h"
#include "Kinds.h"
#include "ReaderNames.h"
#include "mrt/PathAttributes.h"

namespace bgpcomm {

/// The value of the community attribute of each kind, by the kind's number; empty when the path
/// has none, or a malformed one.
struct CommunityValues : std::array<Octets, kindCount> {
  std::array<bool, kindCount> malformed{};
  FaultCounts faults;
};

/// Of an attribute given twice the first counts. An attribute that is malformed is counted and
/// left out; one that overruns the block ends it.
CommunityValues findCommunities(Octets attributes);

/// What stands behind the header of a well-formed attribute.
Octets valueOf(Octets attribute);

}  // namespace bgpcomm
