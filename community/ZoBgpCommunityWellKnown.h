// The standard communities with a meaning of their own (RFC 1997, RFC 8326).
//
//   bgpIsValidEnumMember(BgpCommunityValue(0xFFFFFF01))    // true
//   CommList::wellKnownName(communityNoExportSubconfed)    // "local-as"
//
//   octets     0  1     2  3
//             [65535] [number]
//
// IANA registers the numbers as "BGP Well-known Communities" (RFC 1997). It has more than stand
// here, BLACKHOLE of RFC 7999 for one: these print as two numbers like any other.
#pragma once

#include "attr/BgpEnum.h"

namespace Routing::Bgp {

/// Each with its name in texts. "local-as" is older than the value's name in code; both are in use.
/// - `Internet`: to everybody. Zero is reserved, not registered; policies give it this meaning.
/// - `NoExport`: not beyond the autonomous system, or the confederation that it is part of
/// - `NoAdvertise`: to no peer
/// - `NoExportSubconfed`: not beyond the member autonomous system of a confederation
/// - `Gshut`: the session is about to go down; prefer any other path (RFC 8326)
#define MOX_ROWS(X)                                     \
  X(communityInternet, 0x00000000, "internet")          \
  X(communityNoExport, 0xFFFFFF01, "no-export")         \
  X(communityNoAdvertise, 0xFFFFFF02, "no-advertise")   \
  X(communityNoExportSubconfed, 0xFFFFFF03, "local-as") \
  X(communityGshut, 0xFFFF0000, "GSHUT")
enum BgpCommunityValue : U32 { MOX_ROWS(MOX_ENUMERATOR) };

/// The row of a value also says how lists print it.
struct BgpCommunityValueRow {
  BgpCommunityValue value;
  std::string_view name;
  std::string_view wellKnownName;
  bool member = true;
};
BGP_ENUM_TABLE(BgpCommunityValue, MOX_ROWS, BgpCommunityValueRow);
#undef MOX_ROWS

}  // namespace Routing::Bgp
