// Path attributes at random, and what holds of reading any: for tests and fuzzing.
#pragma once

#include <map>
#include <random>
#include <set>

#include "path/ZoBgpCommunityTables.h"

namespace Routing::Bgp {

/// The attributes that a speaker sends for the path.
inline std::vector<U8> serialized(const PathCommunities& path) {
  std::string octets;
  path.forEachList([&](const auto& list) {
    if constexpr (requires { list->serialize(true); })
      octets += list->serialize(true);
    else
      octets += list->serialize();
  });
  return {octets.begin(), octets.end()};
}

/// A rule that does not hold when these octets are read at once and in two parts; null if all do.
inline const char* brokenRule(const CommunityTables& tables, std::span<const U8> octets,
                              std::size_t cut) {
  PathCommunities whole, again, split;
  const PathFaults faults = tables.readAll(octets, whole);
  if (faults.size() > 3 * 4 + 1) return "faults are few";
  if (bool(faults) != (faults.approach() != PathFaultApproach::none)) return "faults are handled";
  std::size_t offset = 0;
  for (const PathFault& fault : faults) {
    if (fault.offset < offset || fault.offset >= octets.size()) return "faults are in order";
    if (fault.toStrep().empty()) return "faults have a text";
    if (fault.approach() > faults.approach()) return "the strongest approach is taken";
    offset = fault.offset;
  }
  bool shown = true;
  whole.forEachList([&](const auto& list) { shown &= !list->empty() && !list->toStrep().empty(); });
  if (!shown) return "lists of a path have values and a text";
  if (tables.readAll(serialized(whole), again) || whole != again) return "what is sent is read";
  // In memory of their own, where reading beyond the end is seen.
  const std::vector<U8> left(octets.begin(), octets.begin() + std::ptrdiff_t(cut));
  const std::vector<U8> right(octets.begin() + std::ptrdiff_t(cut), octets.end());
  if (faults || tables.readAll(left, split)) return nullptr;  // the cut is in an attribute
  return tables.readAll(right, split) || split != whole ? "parts are like the whole" : nullptr;
}

struct RandomPath {
  std::vector<U8> octets;  ///< well-formed attributes, in any order, values in any order, repeated
  std::map<U32, std::set<std::vector<U8>>> values;  ///< by type of the attribute
};

/// A path with up to `most` of few communities of each type, so that lists repeat.
inline RandomPath randomPath(std::mt19937& random, U32 most = 4) {
  RandomPath path;
  // Their types, and the octets of a value.
  std::pair<U32, U32> attributes[] = {{8, 4}, {16, 8}, {25, 20}, {32, 12}};
  std::shuffle(std::begin(attributes), std::end(attributes), random);
  for (const auto& [type, valueSize] : attributes) {
    if (random() % 3 == 0) continue;
    const U32 count = 1 + random() % most, length = count * valueSize;
    for (const U32 octet : {U32(random() % 2 ? 0xD0 : 0xF0), type, length >> 8, length})
      path.octets.push_back(U8(octet));
    for (U32 i = 0; i < count; ++i) {
      // Extended ones are route targets first of all.
      std::vector<U8> value = {0, U8(2 + random() % most / 4)};
      value.resize(valueSize - 1);
      value.push_back(U8(random() % (most - 1)));
      path.octets.insert(path.octets.end(), value.begin(), value.end());
      path.values[type].insert(std::move(value));
    }
  }
  return path;
}

}  // namespace Routing::Bgp
