// Faults in the community attributes of a path, as values, each with what RFC 7606 says of it.
//
//   const PathFaults faults = tables.readAll(attributes, path);
//   for (const PathFault& fault : faults) log(fault.toStrep());
//   if (faults.approach() == PathFaultApproach::treatAsWithdraw) withdraw(prefixes);
//
// The attributes that hold communities are all optional and transitive, and routes are chosen and
// filtered by them. RFC 7606 therefore names one approach for all that can be wrong with one:
// treat-as-withdraw. A second attribute of a type is no more than left out.
#pragma once

#include <vector>

#include "attr/ZoBgpAttributeReader.h"
#include "community-list/ZoBgpCommunityListWire.h"

namespace Routing::Bgp {

/// A speaker's handling of the message (RFC 7606, section 2), the strongest last. The library never
/// asks for a reset of the session.
///   none              go on: nothing is wrong
///   attributeDiscard  go on without the attribute
///   treatAsWithdraw   withdraw the prefixes of the message, as if it had done so
#define MOX_ROWS(X) X(none, 0) X(attributeDiscard, 1) X(treatAsWithdraw, 2)
enum class PathFaultApproach : U32 { MOX_ROWS(MOX_ENUMERATOR) };
BGP_ENUM_TABLE(PathFaultApproach, MOX_ROWS);
#undef MOX_ROWS

/// The reason of a fault. Sections are of RFC 7606 unless another is named.
///   repeated        Not the first attribute of its type: the first counts, also when that one is
///                   malformed (section 3 g). Told once for each type.
///   wrongFlags      Not optional, or not transitive (section 3 c). Other bits are no fault: any
///                   speaker on the way may set `partial`, and unused bits are ignored (RFC 4271,
///                   section 4.3).
///   malformedValue  The value is no list. Its length is zero or no multiple of a community's
///                   (sections 4, 7.8, 7.14 and 7.15; RFC 8092, section 6), or an extended list has
///                   two different link bandwidths. No RFC names an approach for the latter. The
///                   list cannot just be left out: a route without its route targets must not be
///                   imported (section 2 has attribute discard only for what has no such effect).
///   overrun         The octets end inside an attribute of any type (section 4). Attributes behind
///                   it cannot be found, so the path may lack lists.
#define MOX_ROWS(X)                                        \
  X(repeated, 0, PathFaultApproach::attributeDiscard)      \
  X(wrongFlags, 1, PathFaultApproach::treatAsWithdraw)     \
  X(malformedValue, 2, PathFaultApproach::treatAsWithdraw) \
  X(overrun, 3, PathFaultApproach::treatAsWithdraw)
enum class PathFaultReason : U32 { MOX_ROWS(MOX_ENUMERATOR) };

/// The row of a reason also has its approach.
struct PathFaultReasonRow {
  PathFaultReason value;
  std::string_view name;
  PathFaultApproach approach;
  bool member = true;
};
BGP_ENUM_TABLE(PathFaultReason, MOX_ROWS, PathFaultReasonRow);
#undef MOX_ROWS

/// One thing that is wrong with one attribute.
struct PathFault {
  PathFaultReason reason = {};
  BgpPathAttrType attribute = {};  ///< as received; `invalidPathAttr` when the octets end before it
  std::size_t offset = 0;          ///< where the attribute's header begins; 0 if none was read
  BgpPathAttrFlag flags = {};      ///< of `wrongFlags`, as received
  std::optional<WireFault> value = {};               ///< of `malformedValue`
  std::optional<PathAttributeOverrun> overrun = {};  ///< of `overrun`

  /// As the reason's row says.
  PathFaultApproach approach() const;
  /// One line for people: "Community attribute, offset 8: 3 octets, expected a value of 4".
  Mox::String toStrep() const;
};

/// All faults of a message, in the order of its octets. Takes memory only when there is one, and
/// has a bound: a message gives at most three for each type of list, and an overrun.
class PathFaults {
 public:
  explicit operator bool() const { return !faults_.empty(); }
  std::size_t size() const { return faults_.size(); }
  auto begin() const { return faults_.begin(); }
  auto end() const { return faults_.end(); }

  /// The strongest of all, which is the one to take (RFC 7606, section 3 h).
  PathFaultApproach approach() const;

  /// Appends it. REQUIRES: the order of the octets.
  void add(const PathFault& fault) { faults_.push_back(fault); }

 private:
  std::vector<PathFault> faults_;
};

}  // namespace Routing::Bgp
