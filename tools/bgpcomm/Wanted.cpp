#include "Wanted.h"

#include <algorithm>

#include "Errors.h"
#include "TextStyle.h"
#include "kinds/ZoBgpCommunityReader.h"
#include "kinds/ZoBgpKindCheck.h"

namespace bgpcomm {

using namespace Routing::Bgp;

namespace {

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

}  // namespace

bool isRouteTarget(const AnyCommunity& community) {
  constexpr U8 subtype = 0x02;
  if (const auto* content = std::get_if<ExtCommContent>(&community))
    return content->type() <= 0x02 && content->subtype() == subtype;
  const auto* content = std::get_if<ExtCommIp6Content>(&community);
  return content && content->type() == 0x00 && content->subtype() == subtype;
}

ValuePattern wantedCommunity(const std::string& text) { return ValuePattern::of(readText(text)); }

ValuePattern wantedLarge(const std::string& text) {
  return ValuePattern::of(readText(text, "", BgpPathAttrType::largeCommunity));
}

// Both ways to write the AS number print the same policy text.
ValuePattern wantedRouteTarget(const std::string& text) {
  constexpr std::string_view prefix = "RT:";
  const bool prefixed = equalIgnoringCase(std::string_view(text).substr(0, prefix.size()), prefix);
  const std::string target = prefixed ? text.substr(prefix.size()) : text;
  if (target.find_first_not_of("0123456789:") == target.npos) {
    std::optional<ValuePattern> targets;
    for (const char* kind : {"route-target-as2:", "route-target-as4:"})
      if (const auto read = readCommunity(kind + target)) {
        const ValuePattern one = ValuePattern::of(*read);
        targets ? targets->add(one) : void(targets = one);
      }
    if (targets) return *targets;
  }
  // Administrator and number: by their looks, or as `fe80::1:100` because they can be read so.
  const bool bare = (text.find_first_of("0123456789[") == 0 && text.find(':') != text.npos) ||
                    readCommunity(std::string(prefix) + text);
  const AnyCommunity community = readText(text, bare ? prefix : octetsPrefix(text));
  if (!isRouteTarget(community)) throw UsageError("it is no route target");
  return ValuePattern::of(community);
}

ValuePattern wantedExtended(const std::string& text) {
  const AnyCommunity community = readText(text, octetsPrefix(text));
  const auto attribute = attributeOf(community);
  if (attribute == BgpPathAttrType::community || attribute == BgpPathAttrType::largeCommunity)
    throw UsageError("it is no extended community");
  return ValuePattern::of(community);
}

}  // namespace bgpcomm
