// Finds the community attributes among the path attributes of one path (RFC 4271, 4.3).
//
//   attribute:  flags (0x10: length of two octets), type, length 1 or 2, value
#pragma once

#include "Faults.h"
#include "Kinds.h"
#include "Octets.h"

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

struct AttributeHeader {
  U8 flags;
  U8 type;
  std::size_t length;
};
/// Takes the next header; the cursor fails when it does not fit.
AttributeHeader takeAttributeHeader(Cursor& in);

/// What stands behind the header of a well-formed attribute.
Octets valueOf(Octets attribute);

/// The value of the first attribute of a type, well-formed as far as it is known; nothing when
/// there is none.
std::optional<Octets> findAttribute(Octets attributes, U8 type);

}  // namespace bgpcomm
