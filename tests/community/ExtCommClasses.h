// Every class of the 8-octet family, in both layouts where it has two.
#pragma once

#include "community/ZoBgpCommunity.h"

namespace Routing::Bgp {

template <class T, bool... fourByteAs>
ExtComm::Ptr make(const ExtCommContent& content) {
  if constexpr (std::is_constructible_v<T, const ExtCommContent&, decltype(fourByteAs)...>)
    return Mox::makeNew<T>(content, fourByteAs...);
  else
    return Mox::makeNew<T>(extCommClassificationUnSpecified, content, fourByteAs...);
}

struct ExtCommClass {
  const char* name;
  U32 classification;
  ExtComm::Ptr (*make)(const ExtCommContent&);
};

// The places of the classes below.
enum Kind {
  plain,
  subtyped,
  as2,
  as4,
  ipv4,
  rtAs2,
  rtAs4,
  rtIpv4,
  soAs2,
  soAs4,
  soIpv4,
  lbw,
  tunnel,
  color,
  validation,
  gateway
};

inline constexpr ExtCommClass classes[] = {
    {"ExtComm", 0, make<ExtComm>},
    {"ExtCommSubtyped", 0, make<ExtCommSubtyped>},
    {"ExtCommAsNumber", 0, make<ExtCommAsNumber, false>},
    {"ExtCommAsNumber", 0, make<ExtCommAsNumber, true>},
    {"ExtCommIpv4Address", 0, make<ExtCommIpv4Address>},
    {"ExtCommRouteTargetAs", 1, make<ExtCommRouteTargetAs, false>},
    {"ExtCommRouteTargetAs", 1, make<ExtCommRouteTargetAs, true>},
    {"ExtCommRouteTargetIpv4Address", 1, make<ExtCommRouteTargetIpv4Address>},
    {"ExtCommRouteOriginAs", 2, make<ExtCommRouteOriginAs, false>},
    {"ExtCommRouteOriginAs", 2, make<ExtCommRouteOriginAs, true>},
    {"ExtCommRouteOriginIpv4Address", 2, make<ExtCommRouteOriginIpv4Address>},
    {"ExtCommLinkBandwidth", 7, make<ExtCommLinkBandwidth>},
    {"ExtCommTunnelEncap", 4, make<ExtCommTunnelEncap>},
    {"ExtCommColor", 8, make<ExtCommColor>},
    {"ExtCommOriginValidationState", 9, make<ExtCommOriginValidationState>},
    {"ExtCommDefaultGateway", 5, make<ExtCommDefaultGateway>},
};

}  // namespace Routing::Bgp
