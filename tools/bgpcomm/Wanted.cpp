#include "Wanted.h"

#include "Hex.h"
#include "LargeKind.h"
#include "Numbers.h"
#include "StandardKind.h"
#include "Zonet/Ip4Addr.h"
#include "attr/BgpPathAttributeEnums.h"

namespace bgpcomm {
namespace {

using Routing::Bgp::BgpPathAttrType;

std::optional<Wanted> oneOf(BgpPathAttrType kind, std::vector<std::vector<U8>> values) {
  if (values.empty()) return std::nullopt;
  return Wanted{kindOfAttribute(U8(kind)), std::move(values)};
}

template <class Kind>
std::optional<Wanted> readOne(const std::string& text) {
  auto value = Kind::readValue(text);
  if (!value) return std::nullopt;
  return oneOf(Kind::attributeType, {std::move(*value)});
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
  return readOne<StandardKind>(text);
}

std::optional<Wanted> wantedLarge(const std::string& text) { return readOne<LargeKind>(text); }

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
