// The forms of texts that are not canonical. Each reader gives nothing for a text of another form;
// else the community, or why it is none.
#pragma once

#include "community/ZoBgpCommunityTextParts.h"
#include "kinds/ZoBgpKindTable.h"

namespace Routing::Bgp {

using TextReading = std::optional<ParsedCommunity<AnyCommunity>>;

/// An error about a piece of a text. REQUIRES: the piece lies in the text.
ParsedCommunity<AnyCommunity> textFault(std::string_view text, std::string_view piece,
                                        Mox::String expected);

/// An AS number as texts write it: `65000`, `1.10`, and `65000L`, which says that it has four
/// octets.
struct AsNumberText {
  U32 number;
  bool fourOctets;  ///< it says so, or it needs them
};
std::optional<AsNumberText> readAsNumber(std::string_view text);

/// An IPv6 address, in brackets or not.
std::optional<Zonet::Ip6Addr> readIp6Address(std::string_view text);

/// `0x` and the digits of all octets; eighteen zeros, as streams write a content of zero.
TextReading readOctetsText(std::string_view text);
/// `RT:65000:100`, `0304(NT):0x00 ...` and the other texts of policies, with whatever format.
TextReading readPolicyText(std::string_view text);
/// `<RouteTarget2ByteASN 65000:100 0x0002fde800000064>` and the other texts of show commands. The
/// words must be those of the octets.
TextReading readShowText(std::string_view text, const KindTable& table);

}  // namespace Routing::Bgp
