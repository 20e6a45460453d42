// Reading what people type: every text of a community that this library prints, where the text says
// which community it is.
//
//   readCommunity("route-target-as2:65000:100").value    // as parseCanonical
//   readCommunity("RT:65000:100").value                  // the same content
//   readCommunity("local-as").value                      // 0xFFFFFF03
//   readCommunity("0304(NT):0x00 0x01 0x02 0x03 0x04 0x05").value
//   readCommunity("RT:70000:70000").error.text()
//       // at 9: "70000": expected a decimal number below 65536 ...
//   const auto read = readCommunities("RT:1:2, no-export");
//   for (const ExtCommContent& target : read.value->extended) use(target);
//
// Read are canonical texts, policy texts, show texts, names of lists, AS numbers with a dot, octets
// behind `0x`; docs/text.md lists every form, with an example and what it leaves unsaid. Letter
// case never counts.
//
// 1. The whole text is one community: blanks around it are refused, and no number is cut.
// 2. A text that leaves bits unsaid is read with these bits zero, and prints again as it was.
// 3. A text with two readings is an error that says both. A table with rows of the agent's own can
//    make one.
//
// Pure functions; call from any thread. Nothing is thrown but `std::bad_alloc`.
#pragma once

#include "kinds/ZoBgpKindText.h"

namespace Routing::Bgp {

/// Reads one community, of this attribute if one is given.
ParsedCommunity<AnyCommunity> readCommunity(std::string_view text,
                                            const KindTable& table = KindTable::builtIn(),
                                            std::optional<BgpPathAttrType> attribute = {});

/// Communities sorted out by attribute: in the order of the text, repeats kept. For interned lists
/// of them see ZoBgpCommunityLists.h.
struct CommunityVectors {
  std::vector<BgpCommunityValue> standard;
  std::vector<ExtCommContent> extended;
  std::vector<ExtCommIp6Content> ip6Extended;
  std::vector<Acl::CommunityValue> large;

  /// Appends it to the vector of its attribute.
  void add(const AnyCommunity& community);
  std::size_t size() const {
    return standard.size() + extended.size() + ip6Extended.size() + large.size();
  }
};

/// Reads as `readCommunities` does, in the order of the text.
ParsedCommunity<std::vector<AnyCommunity>> readAnyCommunities(
    std::string_view text, const KindTable& table = KindTable::builtIn(),
    std::optional<BgpPathAttrType> attribute = {});

/// Reads texts with blanks (also tabs and ends of lines) or commas between them, of all attributes
/// or of the one given. A text that has blanks of its own stands alone, or in double quotes. No
/// text at all is a list of none. Positions of errors count in the whole text.
ParsedCommunity<CommunityVectors> readCommunities(std::string_view text,
                                                  const KindTable& table = KindTable::builtIn(),
                                                  std::optional<BgpPathAttrType> attribute = {});

}  // namespace Routing::Bgp
