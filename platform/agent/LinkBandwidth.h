// The bandwidth of a link and its text.
//
//   Routing::Rib::LinkBandwidth(1250000000).toStrep(false)   // "10 Gbps"
//   Routing::Rib::LinkBandwidth(1250000000).toStrep(true)    // "1250000000"
#pragma once

#include "Mox/Types.h"

namespace Routing::Rib {

class LinkBandwidth {
 public:
  /// Any number, also none.
  explicit LinkBandwidth(double octetsPerSecond) : octetsPerSecond_(octetsPerSecond) {}

  /// Bits per second, rounded to at most three decimals of the largest unit that leaves something
  /// before the point. `weighted`: the octets per second as they are, in the fewest decimals that
  /// tell them from every other number. Numbers that are not finite print as `nan`, `inf` and
  /// `-inf`.
  Mox::String toStrep(bool weighted) const;

 private:
  double octetsPerSecond_;
};

}  // namespace Routing::Rib
