// The community attributes among the path attributes of one path (RFC 4271, section 4.3).
#pragma once

#include <vector>

#include "Faults.h"
#include "ListTypes.h"
#include "ReaderNames.h"
#include "path/ZoBgpPathFault.h"

namespace bgpcomm {

/// The values of the community attributes, by the number of their list type; empty when the path
/// has no such attribute, or a malformed one.
struct CommunityValues : std::array<Octets, listTypeCount> {
  FaultCounts faults;
  /// Attributes that are not optional and transitive. BGP speakers withdraw such routes (RFC 7606,
  /// section 3 c); here they are counted apart from malformed ones, and their values are read
  /// unless they are malformed, too.
  U64 wrongFlags = 0;
};

/// Finds the values; of an attribute given twice the first counts. A malformed attribute is counted
/// and left out; one that overruns the block ends it. Whether a value is a list that may be, the
/// library says when it reads it.
CommunityValues findCommunities(Octets attributes);

/// The name that a fault is counted under, if it is.
std::optional<Fault> countedAs(const Routing::Bgp::PathFault& fault);

/// A line for people: `REASON (type 8, length 5, octet 0 of the path's attributes)`; no length
/// where the header is cut short.
std::string faultText(const Routing::Bgp::PathFault& fault, Octets attributes);
/// The part in parentheses, with the blank before it, for the attribute that begins at an octet.
std::string attributePlace(Octets attributes, std::size_t offset);

/// A fault of a path, and its line for people.
struct ToldFault {
  Fault fault;
  std::string text;
};
/// All faults of the attributes that are counted, in the order of their places.
std::vector<ToldFault> faultsOf(Octets attributes, const CommunityTables& tables);
/// The first of them that is among the counted ones.
/// REQUIRES: there is one, counted of these attributes.
ToldFault firstFaultOf(Octets attributes, const FaultCounts& counted);

}  // namespace bgpcomm
