#include "Wanted.h"

#include <algorithm>

#include "Errors.h"
#include "TextStyle.h"
#include "kinds/ZoBgpCommunityReader.h"
#include "kinds/ZoBgpKindCheck.h"

namespace bgpcomm {

using namespace Routing::Bgp;

namespace {

constexpr U8 routeTargetSubtype = 0x02;

Wanted wantedOf(const AnyCommunity& community) {
  const CommunityOctets octets(community);
  return {listTypeOf(U8(attributeOf(community))), {{octets.all().begin(), octets.all().end()}}};
}

/// The community of a text, or of it behind a prefix that says of what kind it is; throws
/// UsageError.
AnyCommunity readText(const std::string& text, std::string_view prefix = "",
                      std::optional<BgpPathAttrType> attribute = {}) {
  const auto& kinds = textStyle().kinds;
  auto read =
      readCommunity(std::string(prefix) + text, kinds ? *kinds : KindTable::builtIn(), attribute);
  if (read) return *read;
  read.error.position -= std::min(read.error.position, prefix.size());
  throw UsageError(read.error.text());
}

/// `0x` for digits of an extended community that stand without it.
std::string_view octetsPrefix(std::string_view text) {
  const bool digits = (text.size() == 16 || text.size() == 40) &&
                      text.find_first_not_of("0123456789abcdefABCDEF") == text.npos;
  return digits ? "0x" : "";
}

bool isRouteTarget(const AnyCommunity& community) {
  if (const auto* content = std::get_if<ExtCommContent>(&community))
    return content->type() <= 0x02 && content->subtype() == routeTargetSubtype;
  const auto* content = std::get_if<ExtCommIp6Content>(&community);
  return content && content->type() == 0x00 && content->subtype() == routeTargetSubtype;
}

}  // namespace

Wanted wantedCommunity(const std::string& text) { return wantedOf(readText(text)); }

Wanted wantedLarge(const std::string& text) {
  return wantedOf(readText(text, "", BgpPathAttrType::largeCommunity));
}

// Both ways to write the AS number print the same policy text.
Wanted wantedRouteTarget(const std::string& text) {
  constexpr std::string_view prefix = "RT:";
  const bool prefixed = equalIgnoringCase(std::string_view(text).substr(0, prefix.size()), prefix);
  const std::string target = prefixed ? text.substr(prefix.size()) : text;
  if (target.find_first_not_of("0123456789:") == target.npos) {
    Wanted wanted{listTypeOf(U8(BgpPathAttrType::extCommunity)), {}};
    for (const char* kind : {"route-target-as2:", "route-target-as4:"})
      if (const auto read = readCommunity(kind + target))
        wanted.values.push_back(wantedOf(*read).values.front());
    if (!wanted.values.empty()) return wanted;
  }
  // Administrator and number: by their looks, or as `fe80::1:100` because they can be read so.
  const bool bare = (text.find_first_of("0123456789[") == 0 && text.find(':') != text.npos) ||
                    readCommunity(std::string(prefix) + text);
  const AnyCommunity community = readText(text, bare ? prefix : octetsPrefix(text));
  if (!isRouteTarget(community)) throw UsageError("it is no route target");
  return wantedOf(community);
}

Wanted wantedExtended(const std::string& text) {
  const AnyCommunity community = readText(text, octetsPrefix(text));
  const auto attribute = attributeOf(community);
  if (attribute == BgpPathAttrType::community || attribute == BgpPathAttrType::largeCommunity)
    throw UsageError("it is no extended community");
  return wantedOf(community);
}

}  // namespace bgpcomm
