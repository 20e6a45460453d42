#include "community/ZoBgpCommunityCanonicalText.h"

#include <algorithm>

namespace Routing::Bgp {
namespace {

constexpr RegisteredCommunity registered[] = {
    {0xFFFF0000, "GRACEFUL_SHUTDOWN", "GRACEFUL_SHUTDOWN", "RFC8326"},
    {0xFFFF0001, "ACCEPT_OWN", "ACCEPT_OWN", "RFC7611"},
    {0xFFFF0002, "ROUTE_FILTER_TRANSLATED_v4", "ROUTE_FILTER_TRANSLATED_v4",
     "draft-l3vpn-legacy-rtc-00"},
    {0xFFFF0003, "ROUTE_FILTER_v4", "ROUTE_FILTER_v4", "draft-l3vpn-legacy-rtc-00"},
    {0xFFFF0004, "ROUTE_FILTER_TRANSLATED_v6", "ROUTE_FILTER_TRANSLATED_v6",
     "draft-l3vpn-legacy-rtc-00"},
    {0xFFFF0005, "ROUTE_FILTER_v6", "ROUTE_FILTER_v6", "draft-l3vpn-legacy-rtc-00"},
    {0xFFFF0006, "LLGR_STALE", "LLGR_STALE", "RFC9494"},
    {0xFFFF0007, "NO_LLGR", "NO_LLGR", "RFC9494"},
    {0xFFFF0008, "accept-own-nexthop", "accept-own-nexthop",
     "draft-agrewal-idr-accept-own-nexthop-00"},
    {0xFFFF0009, "Standby PE", "STANDBY_PE", "RFC9026"},
    {0xFFFF029A, "BLACKHOLE", "BLACKHOLE", "RFC7999"},
    {0xFFFFFF01, "NO_EXPORT", "NO_EXPORT", "RFC1997"},
    {0xFFFFFF02, "NO_ADVERTISE", "NO_ADVERTISE", "RFC1997"},
    {0xFFFFFF03, "NO_EXPORT_SUBCONFED", "NO_EXPORT_SUBCONFED", "RFC1997"},
    {0xFFFFFF04, "NOPEER", "NOPEER", "RFC3765"},
};
static_assert(std::ranges::is_sorted(registered, {}, &RegisteredCommunity::value));

template <std::size_t n>
std::optional<std::array<U64, n>> numbers(CommunityTextParts& parts, U32 bits) {
  std::array<U64, n> numbers{};
  for (U64& number : numbers) {
    const auto read = parts.number(bits);
    if (!read) return {};
    number = *read;
  }
  return numbers;
}

}  // namespace

std::span<const RegisteredCommunity> registeredCommunities() { return registered; }

const RegisteredCommunity* registeredCommunity(BgpCommunityValue value) {
  const auto* const at =
      std::ranges::lower_bound(registered, U32(value), {}, &RegisteredCommunity::value);
  return at != std::end(registered) && at->value == U32(value) ? at : nullptr;
}

Mox::String canonicalText(BgpCommunityValue value) {
  if (const auto* const row = registeredCommunity(value)) return Mox::String(row->text);
  return std::to_string(U32(value) >> 16) + ':' + std::to_string(U32(value) & 0xFFFF);
}

Mox::String canonicalText(const Acl::CommunityValue& value) { return valueToStrep(value); }

ParsedCommunity<BgpCommunityValue> parseCanonicalStandard(std::string_view text) {
  for (const RegisteredCommunity& row : registered)
    if (isSameWord(text, row.text)) return {BgpCommunityValue(row.value)};
  CommunityTextParts parts(text);
  if (parts.count() != 2) {
    parts.fail("a standard community: two decimal numbers, or a well-known name");
    return {{}, parts.error()};
  }
  if (const auto read = numbers<2>(parts, 16))
    return {BgpCommunityValue((*read)[0] << 16 | (*read)[1])};
  return {{}, parts.error()};
}

ParsedCommunity<Acl::CommunityValue> parseCanonicalLarge(std::string_view text) {
  CommunityTextParts parts(text);
  if (parts.count() != 3) {
    parts.fail("a large community: three decimal numbers");
    return {{}, parts.error()};
  }
  if (const auto read = numbers<3>(parts, 32))
    return {Acl::CommunityValue(U32((*read)[0]), U32((*read)[1]), U32((*read)[2]))};
  return {{}, parts.error()};
}

}  // namespace Routing::Bgp
