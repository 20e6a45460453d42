// The faults of a file, and the records that are passed over in it, counted under the names that
// `summary --json` prints.
#pragma once

#include <array>
#include <numeric>
#include <string>
#include <string_view>

#include "ReaderNames.h"
#include "mrt/Mrt.h"

namespace bgpcomm {
using namespace Mox::Words;

enum class Fault : U8 {
  attrLength,       ///< a community attribute that is empty or no multiple of its value's size
  attrOverrun,      ///< an attribute that goes beyond its block
  linkBandwidth,    ///< an extended list with two different link bandwidths
  badRecord,        ///< a record whose fields do not fit into it, or that is too long
  truncatedRecord,  ///< the file ends inside a record
  compression,      ///< compressed data that are damaged or cut short
};

inline constexpr std::array<std::string_view, 6> faultNames = {
    "attrLength", "attrOverrun", "linkBandwidth", "badRecord", "truncatedRecord", "compression"};

class FaultCounts {
 public:
  FaultCounts() = default;
  explicit FaultCounts(Fault fault) { add(fault); }

  void add(Fault fault) { ++counts_[std::size_t(fault)]; }
  void add(const FaultCounts& other) {
    for (std::size_t i = 0; i < counts_.size(); ++i) counts_[i] += other.counts_[i];
  }
  void add(Fault fault, U64 count) { counts_[std::size_t(fault)] += count; }
  U64 operator[](Fault fault) const { return counts_[std::size_t(fault)]; }
  /// The first fault that was counted, in the order of the enumeration.
  /// REQUIRES: total() > 0.
  Fault first() const {
    std::size_t i = 0;
    while (counts_[i] == 0) ++i;
    return Fault(i);
  }
  U64 total() const { return std::accumulate(counts_.begin(), counts_.end(), U64{0}); }

 private:
  std::array<U64, faultNames.size()> counts_{};
};

/// The names of records that are passed over, in JSON and for people.
struct SkippedName {
  std::string_view key, words;
};
/// In the order of `Skipped`.
inline constexpr std::array<SkippedName, skippedSorts> skippedNames = {{
    {"ospf", "OSPF"},
    {"isis", "IS-IS"},
    {"deprecatedType", "deprecated types"},
    {"otherType", "other types"},
    {"geoPeerTable", "GEO_PEER_TABLE"},
    {"deprecatedSubtype", "deprecated subtypes"},
    {"otherSubtype", "other subtypes"},
    {"stateChange", "state changes"},
    {"open", "OPEN"},
    {"notification", "NOTIFICATION"},
    {"keepalive", "KEEPALIVE"},
    {"routeRefresh", "ROUTE-REFRESH"},
    {"otherMessage", "other messages"},
    {"noAttributes", "no attributes"},
}};
inline U64 total(const SkippedCounts& skipped) {
  return std::accumulate(skipped.begin(), skipped.end(), U64{0});
}

}  // namespace bgpcomm
