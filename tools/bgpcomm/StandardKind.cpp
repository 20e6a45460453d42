#include "StandardKind.h"

#include <charconv>

namespace bgpcomm {
namespace {

std::vector<U8> octetsOf(U32 community) {
  return {U8(community >> 24), U8(community >> 16), U8(community >> 8), U8(community)};
}

/// Two numbers with a colon between them.
std::optional<U32> readNumbers(std::string_view text) {
  U16 high = 0, low = 0;
  const char* const end = text.data() + text.size();
  const auto colon = std::from_chars(text.data(), end, high);
  if (colon.ec != std::errc() || colon.ptr == end || *colon.ptr != ':') return std::nullopt;
  const auto last = std::from_chars(colon.ptr + 1, end, low);
  if (last.ec != std::errc() || last.ptr != end) return std::nullopt;
  return U32(high) << 16 | low;
}

/// All that have names lie in the two ends of the numbers.
std::optional<U32> readName(std::string_view text) {
  if (text.empty()) return std::nullopt;
  for (U32 wellKnown = 0xffff0000; wellKnown != 0; ++wellKnown)
    if (StandardKind::List::wellKnownName(wellKnown) == text) return wellKnown;
  if (StandardKind::List::wellKnownName(0) == text) return 0;
  return std::nullopt;
}

}  // namespace

std::string StandardKind::valueText(Octets value, bool names) {
  const U32 community = Cursor(value).u32();
  const std::string name = names ? List::wellKnownName(community) : "";
  return name.empty() ? List::getStringValue(community) : name;
}

std::optional<std::vector<U8>> StandardKind::readValue(std::string_view text) {
  std::optional<U32> community = readNumbers(text);
  if (!community) community = readName(text);
  if (!community) return std::nullopt;
  return octetsOf(*community);
}

}  // namespace bgpcomm
