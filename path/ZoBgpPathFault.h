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

/// What a speaker does with the message (RFC 7606, section 2), the strongest last. The library
/// never asks for a reset of the session.
enum class PathFaultApproach : U32 {
  none,              ///< go on: nothing is wrong
  attributeDiscard,  ///< go on without the attribute
  treatAsWithdraw,   ///< withdraw the prefixes of the message, as if it had done so
};

/// What is wrong. RFC 7606 unless another is named.
enum class PathFaultReason : U32 {
  /// Not the first attribute of its type: the first counts, also when that is malformed
  /// (section 3 g). Told once for each type.
  repeated,
  /// Not optional and transitive (section 3 c). The other bits have no say: `partial` may be set by
  /// anybody on the way, and unused bits are ignored (RFC 4271, section 4.3).
  wrongFlags,
  /// The value is no list. Its length is zero or no multiple of a community's (sections
  /// 4, 7.8, 7.14
  /// and 7.15; RFC 8092, section 6), or an extended list has two different link bandwidths. No RFC
  /// names an approach for the latter; a route without its route targets must not be imported, so
  /// the list cannot just be left out (section 2).
  malformedValue,
  /// The octets end inside an attribute, of any type (section 4). Attributes behind it cannot be
  /// found, so the path may lack lists.
  overrun,
};

struct PathFaultReasonRow {
  PathFaultReason value;
  std::string_view name;
  PathFaultApproach approach;
  bool member = true;
};

consteval auto enumTable(PathFaultReason) {
  using enum PathFaultReason;
  using enum PathFaultApproach;
  return Mox::enumRows<PathFaultReason, PathFaultReasonRow>(
      "Routing::Bgp::PathFaultReason", {{repeated, "repeated", attributeDiscard},
                                        {wrongFlags, "wrongFlags", treatAsWithdraw},
                                        {malformedValue, "malformedValue", treatAsWithdraw},
                                        {overrun, "overrun", treatAsWithdraw}});
}
inline constexpr Mox::EnumInstance<PathFaultReason> PathFaultReasonInstance{};

consteval auto enumTable(PathFaultApproach) {
  using enum PathFaultApproach;
  return Mox::enumRows<PathFaultApproach>("Routing::Bgp::PathFaultApproach",
                                          {{none, "none"},
                                           {attributeDiscard, "attributeDiscard"},
                                           {treatAsWithdraw, "treatAsWithdraw"}});
}
inline constexpr Mox::EnumInstance<PathFaultApproach> PathFaultApproachInstance{};

struct PathFault {
  PathFaultReason reason = {};
  BgpPathAttrType attribute = {};  ///< as received; `invalidPathAttr` when the octets end before it
  std::size_t offset = 0;          ///< where the attribute's header begins; 0 if none was read
  BgpPathAttrFlag flags = {};      ///< of `wrongFlags`, as received
  std::optional<WireFault> value = {};               ///< of `malformedValue`
  std::optional<PathAttributeOverrun> overrun = {};  ///< of `overrun`

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

  void add(const PathFault& fault) { faults_.push_back(fault); }

 private:
  std::vector<PathFault> faults_;
};

}  // namespace Routing::Bgp
