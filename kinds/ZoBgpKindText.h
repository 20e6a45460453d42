// The canonical text of a community of any attribute: one text for each value, and the way back.
//
//   canonicalText(ExtCommContent(0x0002FDE800000064))   // "route-target-as2:65000:100"
//   canonicalText(ExtCommContent(0x0600010000000005))   // "mac-mobility:S:5"
//   canonicalText(ExtCommContent(0x0407000000000000))
//       // "unknown-transitive:04:07:00:00:00:00:00:00"
//   parseCanonical("esi-label:A:67").value              // the content
//   parseCanonical("rout-target-as2:1:2").error.text()
//       // at 0: "rout-target-as2": expected ...; did you mean "route-target-as2"?
//
//   text = identifier { ":" part }        a row with its fields, in the order of the wire
//        | identifier { ":" part } ":malformed" { ":" octet }
//                                         a reserved bit is set: the administrator, then octets
//        | "unknown-transitive" or "unknown-non-transitive" { ":" octet }
//                                         a kind without a row; of 20 octets and type 0x00 or 0x40
//                                         subtype, address in brackets and number behind the word
//        | number ":" number | number ":" number ":" number | a well-known name
//
// parseCanonical(canonicalText(v)) is v for every value of 4, 8, 12 and 20 octets. Letter case
// never counts in what is read. Read as well, and written otherwise: octets of a kind that has a
// row by now, `malformed:` and all octets of any extended community, numbers for names, flags in
// any order, other spellings of addresses and rates.
//
// Pure functions; call from any thread. A bad text is an error that is returned; nothing is thrown
// but `std::bad_alloc`. Cost: a look-up of the row, and in proportion to the text.
#pragma once

#include "community/ZoBgpCommunityCanonicalText.h"
#include "kinds/ZoBgpKindFields.h"

namespace Routing::Bgp {

// Overloads of those for standard and large communities, see ZoBgpCommunityCanonicalText.h.
Mox::String canonicalText(const ExtCommContent& content,
                          const KindTable& table = KindTable::builtIn());
Mox::String canonicalText(const ExtCommIp6Content& content,
                          const KindTable& table = KindTable::builtIn());
Mox::String canonicalText(const AnyCommunity& community,
                          const KindTable& table = KindTable::builtIn());
/// The same, appended.
void appendCanonicalText(CommText& text, const AnyCommunity& community,
                         const KindTable& table = KindTable::builtIn());

/// How the texts of a kind look: `mac-mobility:<flags:...>:<sequence>`; in brackets what may be
/// left out. Without an identifier, the numbers: `<as>:<value>`.
Mox::String canonicalForm(const Kind& kind);

/// Reads a canonical text, of this attribute if one is given.
ParsedCommunity<AnyCommunity> parseCanonical(std::string_view text,
                                             const KindTable& table = KindTable::builtIn(),
                                             std::optional<BgpPathAttrType> attribute = {});

}  // namespace Routing::Bgp
