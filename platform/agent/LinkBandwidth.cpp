#include "agent/LinkBandwidth.h"

#include <charconv>
#include <cmath>

namespace Routing::Rib {
namespace {

constexpr std::string_view prefixes[] = {"", "k", "M", "G", "T", "P", "E", "Z", "Y"};

// Room for any double in full: 309 digits before the point, or 324 and then 17 after it.
using Digits = char[400];

Mox::String withoutTrailingZeros(std::string_view text) {
  text = text.substr(0, text.find_last_not_of('0') + 1);
  if (text.ends_with('.')) text.remove_suffix(1);
  return Mox::String(text);
}

Mox::String inBitsPerSecond(double octetsPerSecond) {
  // Rounding comes before the choice of the unit: 999.9996 Mbps is 1 Gbps.
  double unit = 1;
  for (const std::string_view prefix : prefixes) {
    Digits digits;
    const double inUnit = octetsPerSecond / unit * 8;
    char* const end =
        std::to_chars(digits, std::end(digits), inUnit, std::chars_format::fixed, 3).ptr;
    const std::string_view text(digits, std::size_t(end - digits));
    const bool fits = std::abs(inUnit) < 1000 && !text.ends_with("1000.000");
    if (fits || prefix == std::end(prefixes)[-1])
      return withoutTrailingZeros(text) + ' ' + Mox::String(prefix) + "bps";
    unit *= 1000;
  }
  return {};
}

}  // namespace

Mox::String LinkBandwidth::toStrep(bool weighted) const {
  if (std::isnan(octetsPerSecond_)) return "nan";
  if (!weighted && std::isfinite(octetsPerSecond_)) return inBitsPerSecond(octetsPerSecond_);
  Digits digits;
  return {digits,
          std::to_chars(digits, std::end(digits), octetsPerSecond_, std::chars_format::fixed).ptr};
}

}  // namespace Routing::Rib
