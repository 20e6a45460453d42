#include <algorithm>

#include "community/ZoBgpCommunityTyped.h"
#include "ip6/ExtCommIp6.h"
#include "kinds/ZoBgpKindCheck.h"
#include "kinds/ZoBgpKindText.h"
#include "kinds/internal/ZoBgpKindForms.h"
#include "kinds/internal/ZoBgpTextForms.h"

namespace Routing::Bgp {
namespace {

using Parsed = ParsedCommunity<AnyCommunity>;

/// A content of zero as streams write it.
constexpr std::string_view zeroContent = "000000000000000000";

bool beginsWith(std::string_view text, std::string_view word) {
  return equalIgnoringCase(text.substr(0, word.size()), word);
}

/// Whether the text is the show text of one of these objects.
bool isShown(std::string_view text, const auto&... objects) {
  return (... || equalIgnoringCase(objects->toStrep(), text));
}

template <class Route>
bool isShownRoute(std::string_view text, const ExtCommContent& content) {
  using As = typename Route::As;
  using Ipv4Address = typename Route::Ipv4Address;
  switch (content.type()) {
    case extCommPktTypeTransIpv4Address:
      return isShown(text, Mox::makeNew<Ipv4Address>(content));
    case extCommPktTypeTransTwoOctetAs:
    case extCommPktTypeTransFourOctetAs:
      return isShown(text,
                     Mox::makeNew<As>(content, content.type() == extCommPktTypeTransFourOctetAs));
    default:
      return false;
  }
}

/// Whether the text is what an object of a class that knows the content's meaning prints.
bool isShownTyped(std::string_view text, const ExtCommContent& content) {
  if (content.subtype() == extCommPktSubtypeTransTwoOctetAsRouteTarget &&
      isShownRoute<RouteTarget>(text, content))
    return true;
  if (content.subtype() == extCommPktSubtypeTransTwoOctetAsRouteOrigin &&
      isShownRoute<RouteOrigin>(text, content))
    return true;
  switch (content.type() << 8 | content.subtype()) {
    case 0x4004:
      return isShown(text, extCommLinkBandwidthFactory(content));
    case 0x030b:
      return isShown(text, extCommColorFactory(content));
    case 0x030c:
      return isShown(text, extCommTunnelEncapFactory(content));
    case 0x030d:
      return isShown(text, extCommDefaultGatewayFactory(content));
    case 0x4300:
      return isShown(text, extCommOriginValidationStateFactory(content));
    default:
      return false;
  }
}

/// Whether the text is what an object of any class of the library prints. Which class it is depends
/// on the plug-ins that are installed.
bool isShown(std::string_view text, const ExtCommContent& content) {
  constexpr auto none = extCommClassificationUnSpecified;
  return isShownTyped(text, content) || isShown(text, extCommFactory(none, content),
                                                ExtCommSubtyped::ExtCommSubtypedIs(none, content),
                                                Mox::makeNew<ExtCommAsNumber>(none, content, false),
                                                Mox::makeNew<ExtCommAsNumber>(none, content, true),
                                                Mox::makeNew<ExtCommIpv4Address>(none, content));
}

/// `<canonical text 0x...>`, of an object that knows its kind.
bool isShownKind(std::string_view text, const ExtCommContent& content, const KindTable& table) {
  return equalIgnoringCase(text.substr(0, text.rfind(' ')), '<' + canonicalText(content, table));
}

Parsed readEightOctets(std::string_view text, std::string_view octets, const KindTable& table) {
  auto parsed = octets.size() == 18 ? readOctetsText(octets) : TextReading();
  if (!parsed || !*parsed) return textFault(text, octets, "`0x` and sixteen hexadecimal digits");
  const auto& content = std::get<ExtCommContent>(**parsed);
  if (isShown(text, content) || isShownKind(text, content, table)) return *parsed;
  return textFault(text, text.substr(1, text.size() - octets.size() - 3),
                   "the words of these octets, which are " + canonicalText(content, table));
}

/// The number of a subtype by its name or as `subtype=77`.
std::optional<U64> subtypeOf(std::string_view word) {
  if (beginsWith(word, "subtype=")) return decimalNumber(word.substr(8), 8);
  for (const auto& row : Mox::enumTableOf<BgpExtCommIp6PktSubtypeTransIpv6Address>)
    if (row.member && equalIgnoringCase(row.name, word)) return row.value;
  return {};
}

/// `<type subtype addr=2001:db8::1 localAdmin=100>`.
Parsed readTwentyOctets(std::string_view text) {
  std::string_view rest = text.substr(1, text.size() - 2);
  std::string_view words[4];
  for (std::string_view& word : words) {
    word = rest.substr(0, rest.find(' '));
    rest.remove_prefix(std::min(rest.size(), word.size() + 1));
  }
  const auto& [type, subtype, address, local] = words;
  const auto read = subtypeOf(subtype);
  const auto read6 = readIp6Address(address.substr(std::min<std::size_t>(5, address.size())));
  const auto number = decimalNumber(local.substr(std::min<std::size_t>(11, local.size())), 16);
  if (read && read6 && number)
    for (const U8 octet : {0x00, 0x40}) {
      const ExtCommIp6Content content(octet, U8(*read), *read6, U16(*number));
      if (isShown(text,
                  Mox::makeNew<ExtCommIp6Subtyped>(extCommClassificationUnSpecified, content)))
        return {content};
    }
  return textFault(text, text,
                   "a show text that says all: type, subtype, `addr=` and `localAdmin=`, or the "
                   "octets");
}

}  // namespace

TextReading readOctetsText(std::string_view text) {
  if (text == zeroContent) return {{ExtCommContent(0)}};
  if (!beginsWith(text, "0x")) return {};
  const std::string_view digits = text.substr(2);
  U8 octets[20] = {};
  const auto attribute = [&]() -> std::optional<BgpPathAttrType> {
    switch (digits.size()) {
      case 8:
        return BgpPathAttrType::community;
      case 16:
        return BgpPathAttrType::extCommunity;
      case 24:
        return BgpPathAttrType::largeCommunity;
      case 40:
        return BgpPathAttrType::extCommunityIp6;
      default:
        return {};
    }
  }();
  for (std::size_t i = 0; attribute && i < digits.size(); i += 2) {
    const auto octet = CommunityTextParts(digits.substr(i, 2)).octet();
    if (!octet) return textFault(text, digits.substr(i, 2), "hexadecimal digits");
    octets[i / 2] = *octet;
  }
  if (!attribute) return textFault(text, text, "`0x` and 8, 16, 24 or 40 hexadecimal digits");
  return {{communityOf(*attribute, std::span(octets).first(digits.size() / 2))}};
}

TextReading readShowText(std::string_view text, const KindTable& table) {
  if (!text.starts_with('<')) return {};
  if (text.size() < 2 || !text.ends_with('>')) return textFault(text, text, "a `>` at the end");
  const std::string_view inner = text.substr(1, text.size() - 2);
  const std::string_view last = inner.substr(inner.rfind(' ') + 1);
  if (beginsWith(last, "localAdmin=")) return readTwentyOctets(text);
  if (last.size() < inner.size()) return readEightOctets(text, last, table);
  auto parsed = parseCanonical(inner, table, BgpPathAttrType::extCommunityIp6);
  parsed.error.position += !parsed;
  return parsed;
}

}  // namespace Routing::Bgp
