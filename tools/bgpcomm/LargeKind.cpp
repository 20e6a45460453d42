#include "LargeKind.h"

#include "Numbers.h"

namespace bgpcomm {

std::string LargeKind::valueText(Octets value, bool) {
  Cursor in(value);
  const U32 global = in.u32(), first = in.u32();
  return List::getStringValue({global, first, in.u32()});
}

std::optional<std::vector<U8>> LargeKind::readValue(std::string_view text) {
  const auto numbers = readNumbers<3>(text, 0xFFFFFFFF);
  if (!numbers) return std::nullopt;
  std::vector<U8> octets;
  for (const U64 number : *numbers) appendNumber(octets, number, 4);
  return octets;
}

}  // namespace bgpcomm
