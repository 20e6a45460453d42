#include "Wanted.h"

#include "Hex.h"
#include "Numbers.h"
#include "Zonet/Ip4Addr.h"
#include "community-list/ZoBgpCommunityListStandard.h"

namespace bgpcomm {
namespace {

using Routing::Bgp::BgpPathAttrType;

std::optional<Wanted> oneOf(BgpPathAttrType attribute, std::vector<std::vector<U8>> values) {
  if (values.empty()) return std::nullopt;
  return Wanted{listTypeOf(U8(attribute)), std::move(values)};
}

/// All communities that have names lie in the two ends of the numbers.
std::optional<U32> readName(std::string_view text) {
  using Routing::Bgp::CommList;
  if (text.empty()) return std::nullopt;
  for (U32 wellKnown = 0xffff0000; wellKnown != 0; ++wellKnown)
    if (CommList::wellKnownName(wellKnown) == text) return wellKnown;
  if (CommList::wellKnownName(0) == text) return 0;
  return std::nullopt;
}

/// Type octet, the subtype of route targets, then two numbers that fill the rest.
std::vector<U8> routeTarget(U8 type, U64 administrator, int size, U64 local) {
  std::vector<U8> octets = {type, 0x02};
  appendNumber(octets, administrator, size);
  appendNumber(octets, local, 6 - size);
  return octets;
}

/// The four numbers with dots between them as one.
std::optional<U32> readAddress(std::string text) {
  for (char& c : text) {
    if (c == ':') return std::nullopt;
    if (c == '.') c = ':';
  }
  const auto numbers = readNumbers<4>(text, 0xFF);
  if (!numbers) return std::nullopt;
  U32 address = 0;
  for (const U64 number : *numbers) address = address << 8 | U32(number);
  return address;
}

}  // namespace

std::optional<Wanted> wantedCommunity(const std::string& text) {
  std::optional<U32> community;
  if (const auto numbers = readNumbers<2>(text, 0xFFFF))
    community = U32((*numbers)[0] << 16 | (*numbers)[1]);
  else
    community = readName(text);
  if (!community) return std::nullopt;
  std::vector<U8> octets;
  appendNumber(octets, *community, 4);
  return oneOf(BgpPathAttrType::community, {octets});
}

std::optional<Wanted> wantedLarge(const std::string& text) {
  const auto numbers = readNumbers<3>(text, 0xFFFFFFFF);
  if (!numbers) return std::nullopt;
  std::vector<U8> octets;
  for (const U64 number : *numbers) appendNumber(octets, number, 4);
  return oneOf(BgpPathAttrType::largeCommunity, {octets});
}

std::optional<Wanted> wantedRouteTarget(const std::string& text) {
  constexpr U64 most16 = 0xFFFF, most32 = 0xFFFFFFFF;
  std::vector<std::vector<U8>> values;
  if (const auto numbers = readNumbers<2>(text, most32)) {
    const auto [as, local] = *numbers;
    if (as <= most16) values.push_back(routeTarget(0x00, as, 2, local));
    if (local <= most16) values.push_back(routeTarget(0x02, as, 4, local));
  } else if (const auto colon = text.find(':'); colon != text.npos) {
    const auto address = readAddress(text.substr(0, colon));
    const auto local = readNumbers<1>(std::string_view(text).substr(colon + 1), most16);
    if (address && local) values.push_back(routeTarget(0x01, *address, 4, (*local)[0]));
  }
  return oneOf(BgpPathAttrType::extCommunity, std::move(values));
}

std::optional<Wanted> wantedExtended(const std::string& text) {
  const std::size_t prefix = text.starts_with("0x") || text.starts_with("0X") ? 2 : 0;
  const std::size_t digits = text.size() - prefix;
  if (digits != 16 && digits != 40) return std::nullopt;
  std::vector<U8> octets;
  for (std::size_t i = prefix; i < text.size(); i += 2) {
    const int high = hexDigit(text[i]), low = hexDigit(text[i + 1]);
    if (high < 0 || low < 0) return std::nullopt;
    octets.push_back(U8(high << 4 | low));
  }
  return oneOf(digits == 16 ? BgpPathAttrType::extCommunity : BgpPathAttrType::extCommunityIp6,
               {octets});
}

}  // namespace bgpcomm
