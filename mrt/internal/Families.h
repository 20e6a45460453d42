// The address families whose prefixes are no plain ones, and what stands in front of an address.
#pragma once

#include "mrt/Octets.h"

namespace Routing::Mrt {

inline constexpr U16 afiL2vpn = 25, afiLinkState = 16388;

enum Safi : U8 {
  safiLabels = 4,
  safiMulticastVpn = 5,
  safiVpls = 65,
  safiEvpn = 70,
  safiLinkState = 71,
  safiLinkStateVpn = 72,
  safiMobileUserPlane = 85,
  safiVpn = 128,
  safiVpnMulticast = 129,
  safiRouteTargets = 132,
  safiFlow = 133,
  safiFlowVpn = 134,
};

inline constexpr std::size_t labelSize = 3, distinguisherSize = 8, segmentSize = 10;

/// How many octets of labels stand in front: up to the one marked as the last (RFC 8277, section
/// 2.3). A peer that announces one label need not mark it (section 2.2), and a withdrawal has one
/// field of any value, mostly 0x800000 or 0 (section 2.4), or the labels as they were announced.
/// Before a distinguisher it shows where they end, since only types 0, 1 and 2 of those are
/// assigned.
std::size_t labelsSize(Octets octets, bool distinguisher);

}  // namespace Routing::Mrt
