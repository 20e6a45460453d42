// An AS path as the way that a route took: hop by hop from its origin.
//
//   const AsWay way{AsPath(path)};        // of 64500 64501 64501 {64502,64503}
//   hopText(way.hops[1])                  // AS64501
//   way.times[1]                          // 2
#pragma once

#include <string>
#include <vector>

#include "ReaderNames.h"
#include "mrt/AsPath.h"

namespace bgpcomm {

/// An AS, or a set of them: octets that sort by type of segment and AS numbers.
using AsHop = std::string;

struct AsWay {
  std::vector<AsHop> hops;  ///< at least one, also of a path that is empty or malformed
  std::vector<U32> times;   ///< how often each stands in the path, one behind the other

  explicit AsWay(const AsPath& path);
};

/// `AS64500`; `{64502,64503}`; inside of confederations `(64512)` and `[64513,64514]`.
std::string hopText(const AsHop& hop);

}  // namespace bgpcomm
