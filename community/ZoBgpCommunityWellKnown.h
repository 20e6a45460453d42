// The standard communities with a meaning of their own (RFC 1997, RFC 8326).
#pragma once

#include "attr/BgpEnum.h"

namespace Routing::Bgp {

enum BgpCommunityValue : U32 {
  communityInternet = 0x00000000,
  communityGshut = 0xFFFF0000,
  communityNoExport = 0xFFFFFF01,
  communityNoAdvertise = 0xFFFFFF02,
  communityNoExportSubconfed = 0xFFFFFF03,
};

/// The row of a value also says how lists print it.
struct BgpCommunityValueRow {
  BgpCommunityValue value;
  std::string_view name;
  std::string_view wellKnownName;
  bool member = true;
};

consteval auto enumTable(BgpCommunityValue) {
  return Mox::enumRows<BgpCommunityValue, BgpCommunityValueRow>(
      "Routing::Bgp::BgpCommunityValue",
      {{communityInternet, "communityInternet", "internet"},
       {communityNoExport, "communityNoExport", "no-export"},
       {communityNoAdvertise, "communityNoAdvertise", "no-advertise"},
       // The name in text is older than the value's name in code; both are in use.
       {communityNoExportSubconfed, "communityNoExportSubconfed", "local-as"},
       {communityGshut, "communityGshut", "GSHUT"}});
}
inline constexpr Mox::EnumInstance<BgpCommunityValue> BgpCommunityValueInstance{};

}  // namespace Routing::Bgp
