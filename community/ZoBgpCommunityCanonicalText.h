// The canonical texts of standard and large communities: one text for each value, and the way back.
//
//   canonicalText(BgpCommunityValue(0xFDE80064))       // "65000:100"
//   canonicalText(communityNoExport)                   // "NO_EXPORT"
//   canonicalText(Acl::CommunityValue(65540, 1, 2))    // "65540:1:2"
//   parseCanonicalStandard("no-export").value          // 0xFFFFFF01
//   parseCanonicalStandard("1:65536").error.text()
//       // at 2: "65536": expected a decimal number below 65536
//
// A well-known community has the name that IANA registers, with an underscore for its blank. Other
// texts of this library, `local-as` and `GSHUT` for example, are what policies and show commands
// print; kinds/ZoBgpCommunityReader.h reads them, not this. The texts of extended communities are
// in kinds/ZoBgpKindText.h.
//
// Pure functions; call from any thread.
#pragma once

#include <span>

#include "agent/CommunityValue.h"
#include "community/ZoBgpCommunityTextParts.h"
#include "community/ZoBgpCommunityWellKnown.h"

namespace Routing::Bgp {

/// A row of the registry "BGP Well-known Communities".
struct RegisteredCommunity {
  U32 value;
  std::string_view name;       ///< as IANA spells it
  std::string_view text;       ///< the canonical text
  std::string_view reference;  ///< RFC or Internet-Draft
};
/// All rows, ascending by value.
std::span<const RegisteredCommunity> registeredCommunities();
/// The row of a value; null when it has none.
const RegisteredCommunity* registeredCommunity(BgpCommunityValue value);

/// The registered name, or `high:low` in decimal.
Mox::String canonicalText(BgpCommunityValue value);
/// Three decimal numbers.
Mox::String canonicalText(const Acl::CommunityValue& value);

/// Reads `high:low`, each below 65536, also of a value that has a name, and the names: in any
/// letter case, `-` or a blank for `_`.
ParsedCommunity<BgpCommunityValue> parseCanonicalStandard(std::string_view text);
/// Reads three decimal numbers below 2^32.
ParsedCommunity<Acl::CommunityValue> parseCanonicalLarge(std::string_view text);

}  // namespace Routing::Bgp
