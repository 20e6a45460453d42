#include "StandardKind.h"

#include "Numbers.h"

namespace bgpcomm {
namespace {

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
  std::optional<U32> community;
  if (const auto numbers = readNumbers<2>(text, 0xFFFF))
    community = U32((*numbers)[0] << 16 | (*numbers)[1]);
  else
    community = readName(text);
  if (!community) return std::nullopt;
  std::vector<U8> octets;
  appendNumber(octets, *community, 4);
  return octets;
}

}  // namespace bgpcomm
