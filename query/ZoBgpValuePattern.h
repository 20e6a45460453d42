// Patterns of single communities: which ones a text with `*`, ranges and sets means.
//
//   const auto tenants = ValuePattern::parse("route-target-as2:65000:100..199");
//   if (!tenants) return tenants.error.text();
//   tenants->matches(ExtCommContent(0x0002FDE800000064))    // true
//
//   65000:100, no-export, RT:65000:100    one community, in any text that is read, see docs/text.md
//   mac-mobility                          every community of a kind, malformed ones too
//   route-target-as2:65000:*              `*` is any content of one field
//   65000:*   57866:100:*                 two numbers are a standard community, three a large one
//   65000:100..199   65000:{1,5,9..12}    ranges and sets, of fields that are numbers
//   route-target-ipv4:192.0.2.0/24:*      prefixes, of fields that are addresses
//   route-target-ipv6:[2001:db8::]/32:*
//   RT:65000:*   SoO:65000:*              of all kinds of route target, or origin, that read so
//   unknown                               extended communities of kinds that the table has no row
//   of
//
// 1. A pattern with fields means well-formed communities. Fields that texts leave out when they are
//    zero are zero where the pattern leaves them out.
// 2. Letter case never counts.
// 3. A pattern is compiled once to masks and ranges; matching makes no text and allocates nothing.
//
// Threads: a pattern does not change while it is matched; then any may use it.
#pragma once

#include <array>
#include <vector>

#include "kinds/ZoBgpCommunityReader.h"

namespace Routing::Bgp {

class ValuePattern {
 public:
  /// Reads a pattern. The error says where the text is none, and what was expected. The table is
  /// shared: it may go before the pattern does.
  static ParsedCommunity<ValuePattern> parse(std::string_view text,
                                             const KindTable& table = KindTable::builtIn());

  /// The pattern of one community.
  static ValuePattern of(const AnyCommunity& community);

  /// Cost: a comparison of 20 octets and of the ranges, for each kind that is meant; of `unknown` a
  /// look-up of the row.
  bool matches(const AnyCommunity& community) const;
  /// Whether a community of this attribute can match.
  bool mayMatch(BgpPathAttrType attribute) const;
  /// Means also what the other pattern means.
  void add(const ValuePattern& other);

  /// The octets of a community under a mask, and the numbers that some of its fields may have.
  struct Shape {
    /// Numbers of one field, of at most 64 bits; ranges include both ends.
    struct Numbers {
      U16 bit;  ///< as KindField counts
      U8 bits;
      bool rates;  ///< floats, in the order of their numbers
      std::vector<std::pair<U64, U64>> ranges;
    };
    BgpPathAttrType attribute;
    std::array<U8, 20> mask = {};
    std::array<U8, 20> octets = {};  ///< zero where the mask is
    std::vector<Numbers> numbers = {};
  };

 private:
  std::vector<Shape> shapes_;         // of which one must fit
  std::vector<KindTable> unknownTo_;  // tables of which one must have no row
};

}  // namespace Routing::Bgp
